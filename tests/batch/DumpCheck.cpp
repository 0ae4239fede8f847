#include "DumpCheck.h"
#include <algorithm>
#include <cstdint>
#include <istream>
#include <map>
#include <nlohmann/json.hpp>
#include <stdexcept>
#include <vector>

namespace tessarine
{
namespace
{
using Link = std::int64_t;
constexpr Link kNull = -1;

struct Breach : std::runtime_error
{
    using std::runtime_error::runtime_error;
};

std::string Name(Link id)
{
    return id == kNull ? "null" : std::to_string(id);
}

/// One of the six arrays of a dump, a column a field.
struct Table
{
    std::vector<bool> live;
    std::map<std::string, std::vector<Link>, std::less<>> links;
    std::map<std::string, std::vector<std::vector<Link>>, std::less<>> lists;

    /// A field that is not there is null.
    Link Get(std::string_view field, std::size_t slot) const
    {
        const auto column = links.find(field);
        return column != links.end() && slot < column->second.size() ? column->second[slot] : kNull;
    }

    /// A list that is not there is empty.
    const std::vector<Link>& GetList(std::string_view field, std::size_t slot) const
    {
        static const std::vector<Link> empty;
        const auto column = lists.find(field);
        return column != lists.end() && slot < column->second.size() ? column->second[slot] : empty;
    }

    std::size_t CountLive() const
    {
        return static_cast<std::size_t>(std::count(live.begin(), live.end(), true));
    }
};

/// Takes the tables, and the solids of the scene's leaves, out of the text while it is read.
class DumpReader : public nlohmann::json_sax<nlohmann::json>
{
public:
    std::map<std::string, Table, std::less<>> tables;
    std::vector<Link> leafSolids;

    bool null() override
    {
        if (m_nDepth == kRecordsDepth && m_pTable != nullptr)
        {
            m_pTable->live.push_back(false);
            return true;
        }
        return Take(kNull);
    }
    bool boolean(bool) override { return true; }
    bool number_integer(number_integer_t value) override { return Take(value); }
    bool number_unsigned(number_unsigned_t value) override { return Take(static_cast<Link>(value)); }
    bool number_float(number_float_t, const string_t&) override { return true; }
    bool string(string_t&) override { return true; }
    bool binary(binary_t&) override { return true; }
    bool start_object(std::size_t) override
    {
        if (m_nDepth++ == kRecordsDepth && m_pTable != nullptr)
        {
            m_pTable->live.push_back(true);
        }
        return true;
    }
    bool end_object() override { return --m_nDepth >= 0; }
    bool start_array(std::size_t) override
    {
        ++m_nDepth;
        return true;
    }
    bool end_array() override { return --m_nDepth >= 0; }
    bool key(string_t& name) override
    {
        m_strField = name;
        if (m_nDepth == 1)
        {
            static const char* const kTables[] = {"solids", "vertices", "halfedges",
                                                  "edges",  "loops",    "faces"};
            const bool isTable = std::find(std::begin(kTables), std::end(kTables), name) != std::end(kTables);
            m_pTable = isTable ? &tables[name] : nullptr;
            m_bInScene = name == "scene";
        }
        static const char* const kLinks[] = {"id",    "prev",     "next",  "v",     "e",
                                             "loop",  "h1",       "h2",    "h",     "face",
                                             "solid", "vertices", "faces", "edges", "loops"};
        m_bIsLink = std::find(std::begin(kLinks), std::end(kLinks), name) != std::end(kLinks);
        return true;
    }
    bool parse_error(std::size_t, const std::string&, const nlohmann::detail::exception& error) override
    {
        throw Breach(std::string("no JSON: ") + error.what());
    }

private:
    static constexpr int kRecordsDepth = 2; ///< in the array of records
    static constexpr int kFieldDepth = 3;   ///< in a record

    bool Take(Link value)
    {
        if (m_bInScene && m_strField == "solid")
        {
            leafSolids.push_back(value);
        }
        if (m_pTable == nullptr || !m_bIsLink)
        {
            return true;
        }
        if (m_nDepth == kFieldDepth)
        {
            Place(m_pTable->links[m_strField], kNull) = value;
        }
        else if (m_nDepth == kFieldDepth + 1)
        {
            Place(m_pTable->lists[m_strField], {}).push_back(value);
        }
        return true;
    }

    /// The cell of the current record in a column.
    template <class T>
    T& Place(std::vector<T>& column, const T& missing)
    {
        column.resize(m_pTable->live.size(), missing);
        return column.back();
    }

    Table* m_pTable = nullptr;
    bool m_bInScene = false;
    bool m_bIsLink = false; ///< the field, or the list's entries, are ids
    std::string m_strField;
    int m_nDepth = 0;
};

/// A table together with how its ids are made.
class Elements
{
public:
    Elements(const DumpReader& reader, const std::string& name, Link tag) : m_strName(name), m_nTag(tag)
    {
        const auto found = reader.tables.find(name);
        if (found == reader.tables.end())
        {
            throw Breach("there is no array \"" + name + "\"");
        }
        m_pTable = &found->second;
    }

    std::size_t CountSlots() const { return m_pTable->live.size(); }
    std::size_t CountLive() const { return m_pTable->CountLive(); }
    Link GetID(std::size_t slot) const { return static_cast<Link>(slot) | m_nTag; }

    /// Calls visit(id) for every live element.
    template <class TVisit>
    void ForEach(TVisit visit) const
    {
        for (std::size_t slot = 0; slot < CountSlots(); ++slot)
        {
            if (m_pTable->live[slot])
            {
                visit(GetID(slot));
            }
        }
    }

    bool IsLive(Link id) const
    {
        const Link slot = id - m_nTag;
        return id != kNull && slot >= 0 && slot < static_cast<Link>(CountSlots()) &&
               m_pTable->live[static_cast<std::size_t>(slot)];
    }

    Link Get(std::string_view field, Link id) const { return m_pTable->Get(field, Slot(id)); }
    const std::vector<Link>& GetList(std::string_view field, Link id) const
    {
        return m_pTable->GetList(field, Slot(id));
    }

    std::size_t Slot(Link id) const { return static_cast<std::size_t>(id - m_nTag); }
    std::string Describe(Link id) const { return m_strName + " " + Name(id); }

    void CheckIds() const
    {
        ForEach(
            [this](Link id)
            {
                if (Get("id", id) != id)
                {
                    throw Breach(Describe(id) + " says that its id is " + Name(Get("id", id)));
                }
            });
    }

private:
    std::string m_strName;
    Link m_nTag;
    const Table* m_pTable = nullptr;
};

class Checker
{
public:
    explicit Checker(const DumpReader& reader)
        : m_Reader(reader),
          m_Solids(reader, "solids", 0xE0000000),
          m_Vertices(reader, "vertices", 0),
          m_HalfEdges(reader, "halfedges", 0x20000000),
          m_Edges(reader, "edges", 0x80000000),
          m_Loops(reader, "loops", 0xA0000000),
          m_Faces(reader, "faces", 0xC0000000),
          m_EdgeUsers(m_Edges.CountSlots()),
          m_LoopUsers(m_Loops.CountSlots()),
          m_VertexUsers(m_Vertices.CountSlots())
    {
    }

    void Check()
    {
        for (const Elements* pKind : {&m_Solids, &m_Vertices, &m_HalfEdges, &m_Edges, &m_Loops, &m_Faces})
        {
            pKind->CheckIds();
        }
        m_HalfEdges.ForEach([this](Link id) { CheckHalfEdge(id); });
        m_Edges.ForEach([this](Link id) { CheckEdge(id); });
        m_HalfEdges.ForEach([this](Link id) { CheckListedByEdge(id); });
        m_Loops.ForEach([this](Link id) { CheckLoop(id); });
        m_Faces.ForEach([this](Link id) { CheckFace(id); });
        m_Vertices.ForEach([this](Link id) { CheckVertex(id); });
        CheckSolids();
        for (const Link id : m_Reader.leafSolids)
        {
            Demand(id == kNull || m_Solids.IsLive(id), "a scene leaf", "shows", m_Solids, id);
        }
    }

    void Count(DumpFindings& findings) const
    {
        findings.solids = m_Solids.CountLive();
        findings.vertices = m_Vertices.CountLive();
        findings.halfEdges = m_HalfEdges.CountLive();
        findings.edges = m_Edges.CountLive();
        findings.faces = m_Faces.CountLive();
        findings.displacedHalfEdges = m_nDisplaced;
        findings.loneHalfEdges = m_nLone;
        findings.clashingEdges = m_nClashing;
        findings.tornHalfEdges = m_nTorn;
    }

private:
    static void Demand(bool holds, const std::string& subject, const char* verb, const Elements& kind,
                       Link id)
    {
        if (!holds)
        {
            throw Breach(subject + " " + verb + " " + kind.Describe(id) + ", wrongly");
        }
    }

    /// The element at the other end of a link that must be there.
    static Link Follow(const Elements& from, Link id, const char* field, const Elements& to)
    {
        const Link other = from.Get(field, id);
        Demand(to.IsLive(other), from.Describe(id), field, to, other);
        return other;
    }

    void CheckHalfEdge(Link h)
    {
        const Link next = Follow(m_HalfEdges, h, "next", m_HalfEdges);
        const Link prev = Follow(m_HalfEdges, h, "prev", m_HalfEdges);
        Demand(m_HalfEdges.Get("prev", next) == h, m_HalfEdges.Describe(h), "is not the prev of its next",
               m_HalfEdges, next);
        Demand(m_HalfEdges.Get("next", prev) == h, m_HalfEdges.Describe(h), "is not the next of its prev",
               m_HalfEdges, prev);
        const Link loop = Follow(m_HalfEdges, h, "loop", m_Loops);
        Demand(m_HalfEdges.Get("loop", next) == loop, m_HalfEdges.Describe(h),
               "is in another loop than its next", m_HalfEdges, next);
        ++m_LoopUsers[m_Loops.Slot(loop)];
        ++m_VertexUsers[m_Vertices.Slot(Follow(m_HalfEdges, h, "v", m_Vertices))];
        if (m_HalfEdges.Get("e", h) == kNull && next == h)
        {
            ++m_nLone;
            return;
        }
        ++m_EdgeUsers[m_Edges.Slot(Follow(m_HalfEdges, h, "e", m_Edges))];
    }

    /// Start and end vertex, the lower id first.
    std::pair<Link, Link> EndsOf(Link h) const
    {
        const Link start = m_HalfEdges.Get("v", h);
        const Link end = m_HalfEdges.Get("v", m_HalfEdges.Get("next", h));
        return {std::min(start, end), std::max(start, end)};
    }

    /// Where two faces run the same way along an edge, its two sides do not split at the same ends: each half of the
    /// edge has the first part of one side and the second part of the other. The solid as it was before, which is kept,
    /// shows the clash.
    bool FollowEachOther(Link h1, Link h2) const
    {
        const auto endOf = [this](Link h) { return m_HalfEdges.Get("v", m_HalfEdges.Get("next", h)); };
        return endOf(h1) == m_HalfEdges.Get("v", h2) || endOf(h2) == m_HalfEdges.Get("v", h1);
    }

    /// A displaced half-edge stays whole when its edge is split.
    bool ShareAnEnd(Link h1, Link h2) const
    {
        const auto a = EndsOf(h1);
        const auto b = EndsOf(h2);
        return a.first == b.first || a.first == b.second || a.second == b.first || a.second == b.second;
    }

    void CheckListedByEdge(Link h)
    {
        const Link edge = m_HalfEdges.Get("e", h);
        if (edge == kNull)
        {
            return;
        }
        const Link h1 = Follow(m_Edges, edge, "h1", m_HalfEdges);
        if (h1 != h && m_Edges.Get("h2", edge) != h)
        {
            Demand(m_EdgeUsers[m_Edges.Slot(edge)] > 2 && m_Edges.Get("h2", edge) != kNull,
                   m_HalfEdges.Describe(h), "is not listed by its edge", m_Edges, edge);
            Demand(ShareAnEnd(h, h1), m_HalfEdges.Describe(h), "lies apart from the first of", m_Edges, edge);
            ++m_nDisplaced;
        }
        else if (EndsOf(h) != EndsOf(h1))
        {
            Demand(m_nClashing > 0 && FollowEachOther(h, h1), m_HalfEdges.Describe(h),
                   "lies between other vertices than the first of", m_Edges, edge);
            ++m_nTorn;
        }
    }

    void CheckEdge(Link edge)
    {
        const Link h1 = Follow(m_Edges, edge, "h1", m_HalfEdges);
        Demand(m_HalfEdges.Get("e", h1) == edge, m_Edges.Describe(edge), "has an h1 of another edge",
               m_HalfEdges, h1);
        const Link h2 = m_Edges.Get("h2", edge);
        if (h2 == kNull)
        {
            return;
        }
        Follow(m_Edges, edge, "h2", m_HalfEdges);
        Demand(h1 != h2 && m_HalfEdges.Get("e", h2) == edge, m_Edges.Describe(edge),
               "has an h2 of another edge", m_HalfEdges, h2);
        m_nClashing += m_HalfEdges.Get("v", h1) == m_HalfEdges.Get("v", h2) ? 1 : 0;
    }

    void CheckLoop(Link loop)
    {
        const Link first = Follow(m_Loops, loop, "h", m_HalfEdges);
        std::size_t length = 0;
        Link h = first;
        do
        {
            Demand(m_HalfEdges.Get("loop", h) == loop, m_Loops.Describe(loop), "runs over", m_HalfEdges, h);
            ++length;
            h = m_HalfEdges.Get("next", h);
        } while (h != first && length <= m_HalfEdges.CountSlots());
        if (length != m_LoopUsers[m_Loops.Slot(loop)])
        {
            throw Breach(m_Loops.Describe(loop) + " has " + std::to_string(length) +
                         " half-edges in its circle, and " + std::to_string(m_LoopUsers[m_Loops.Slot(loop)]) +
                         " that name it");
        }
        const Link face = Follow(m_Loops, loop, "face", m_Faces);
        const auto& loops = m_Faces.GetList("loops", face);
        Demand(std::count(loops.begin(), loops.end(), loop) == 1, m_Loops.Describe(loop),
               "is not listed by its face", m_Faces, face);
    }

    void CheckFace(Link face)
    {
        const auto& loops = m_Faces.GetList("loops", face);
        if (loops.empty())
        {
            throw Breach(m_Faces.Describe(face) + " has no loop");
        }
        for (const Link loop : loops)
        {
            Demand(m_Loops.IsLive(loop) && m_Loops.Get("face", loop) == face, m_Faces.Describe(face), "lists",
                   m_Loops, loop);
        }
        Follow(m_Faces, face, "solid", m_Solids);
    }

    void CheckVertex(Link vertex)
    {
        if (m_Vertices.Get("h", vertex) == kNull)
        {
            if (m_VertexUsers[m_Vertices.Slot(vertex)] != 0)
            {
                throw Breach(m_Vertices.Describe(vertex) + " has no half-edge, but one starts there");
            }
            return;
        }
        const Link h = Follow(m_Vertices, vertex, "h", m_HalfEdges);
        Demand(m_HalfEdges.Get("v", h) == vertex, m_Vertices.Describe(vertex),
               "has a half-edge of another vertex", m_HalfEdges, h);
    }

    /// The solid that lists each live element of a kind, in slot order; every one is listed exactly once.
    std::vector<Link> FindOwners(const Elements& kind, const char* field) const
    {
        std::vector<Link> owners(kind.CountSlots(), kNull);
        m_Solids.ForEach(
            [&](Link solid)
            {
                for (const Link id : m_Solids.GetList(field, solid))
                {
                    Demand(kind.IsLive(id), m_Solids.Describe(solid), "lists", kind, id);
                    Demand(owners[kind.Slot(id)] == kNull, m_Solids.Describe(solid), "lists once more", kind,
                           id);
                    owners[kind.Slot(id)] = solid;
                }
            });
        kind.ForEach([&](Link id) { Demand(owners[kind.Slot(id)] != kNull, "no solid", "lists", kind, id); });
        return owners;
    }

    void CheckSolids() const
    {
        const std::vector<Link> ofVertices = FindOwners(m_Vertices, "vertices");
        const std::vector<Link> ofFaces = FindOwners(m_Faces, "faces");
        const std::vector<Link> ofEdges = FindOwners(m_Edges, "edges");
        m_Faces.ForEach(
            [&](Link face)
            {
                Demand(m_Faces.Get("solid", face) == ofFaces[m_Faces.Slot(face)], "another solid", "lists",
                       m_Faces, face);
            });
        m_HalfEdges.ForEach(
            [&](Link h)
            {
                const Link edge = m_HalfEdges.Get("e", h);
                const Link solid = m_Faces.Get("solid", m_Loops.Get("face", m_HalfEdges.Get("loop", h)));
                Demand(ofVertices[m_Vertices.Slot(m_HalfEdges.Get("v", h))] == solid &&
                           (edge == kNull || ofEdges[m_Edges.Slot(edge)] == solid),
                       "the vertex and the edge", "do not lie in the solid of", m_HalfEdges, h);
            });
    }

    const DumpReader& m_Reader;
    Elements m_Solids;
    Elements m_Vertices;
    Elements m_HalfEdges;
    Elements m_Edges;
    Elements m_Loops;
    Elements m_Faces;
    std::vector<std::size_t> m_EdgeUsers;   ///< half-edges that name the edge, by slot
    std::vector<std::size_t> m_LoopUsers;   ///< half-edges that name the loop
    std::vector<std::size_t> m_VertexUsers; ///< half-edges that start at the vertex
    std::size_t m_nDisplaced = 0;
    std::size_t m_nLone = 0;
    std::size_t m_nClashing = 0;
    std::size_t m_nTorn = 0;
};
}

DumpFindings CheckDump(std::istream& dump)
{
    DumpFindings findings;
    try
    {
        DumpReader reader;
        nlohmann::json::sax_parse(dump, &reader);
        Checker checker(reader);
        checker.Check();
        checker.Count(findings);
    }
    catch (const Breach& breach)
    {
        findings.breach = breach.what();
    }
    return findings;
}
}
