#include "ACTEuler.h"
#include "Capture.h"
#include "LinksHold.h"
#include "MANBrepElementManager.h"
#include "RecordDump.h"
#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <map>
#include <random>
#include <unordered_map>

namespace tessarine
{
namespace
{
/// Joins elements that belong together: the shells are what stays apart.
class ShellFinder
{
public:
    void Add(const void* element) { m_Parents.try_emplace(element, element); }

    void Join(const void* a, const void* b) { m_Parents[FindRoot(a)] = FindRoot(b); }

    const void* FindRoot(const void* element)
    {
        while (m_Parents.at(element) != element)
        {
            element = m_Parents.at(element) = m_Parents.at(m_Parents.at(element));
        }
        return element;
    }

private:
    std::unordered_map<const void*, const void*> m_Parents;
};

/// V - E + F - (L - F), of the whole and of each shell.
struct Census
{
    int vertices = 0;
    int edges = 0;
    int faces = 0;
    int loops = 0;
    std::map<const void*, int> characteristicOfShell;

    int GetShells() const { return static_cast<int>(characteristicOfShell.size()); }
    int GetCharacteristic() const { return vertices - edges + faces - (loops - faces); }
};

std::vector<DSHalfEdge*> RingOf(const DSLoop* loop)
{
    std::vector<DSHalfEdge*> ring;
    DSHalfEdge* h = loop->GetHalfEdge();
    do
    {
        ring.push_back(h);
        h = h->GetNext();
    } while (h != loop->GetHalfEdge());
    return ring;
}

std::vector<DSHalfEdge*> HalfEdgesOf(const DSFace* face)
{
    std::vector<DSHalfEdge*> all;
    for (const DSLoop* pLoop : face->GetLoopList())
    {
        const auto ring = RingOf(pLoop);
        all.insert(all.end(), ring.begin(), ring.end());
    }
    return all;
}

template <class T>
std::vector<T*> LiveRecords(const RecordArray<T>& array)
{
    std::vector<T*> live;
    for (T* pRecord : array)
    {
        if (pRecord != nullptr)
        {
            live.push_back(pRecord);
        }
    }
    return live;
}

Census Count(const MANBrepElementManager& manager)
{
    Census census;
    ShellFinder finder;
    for (const DSVertex* v : LiveRecords(manager.GetVertexArray()))
    {
        finder.Add(v);
    }
    const auto faces = LiveRecords(manager.GetFaceArray());
    for (const DSFace* f : faces)
    {
        finder.Add(f);
        for (const DSHalfEdge* h : HalfEdgesOf(f))
        {
            finder.Join(h->GetVertex(), f);
        }
    }
    for (const DSVertex* v : LiveRecords(manager.GetVertexArray()))
    {
        ++census.vertices;
        ++census.characteristicOfShell[finder.FindRoot(v)];
    }
    for (const DSEdge* e : LiveRecords(manager.GetEdgeArray()))
    {
        ++census.edges;
        --census.characteristicOfShell[finder.FindRoot(e->GetHalfEdge1()->GetVertex())];
    }
    for (const DSFace* f : faces)
    {
        const int loops = static_cast<int>(f->GetLoopList().size());
        ++census.faces;
        census.loops += loops;
        census.characteristicOfShell[finder.FindRoot(f)] += 2 - loops;
    }
    return census;
}

/// Whether turning around each vertex meets every half-edge that leaves it.
testing::AssertionResult HasOneFanPerVertex(const MANBrepElementManager& manager)
{
    std::map<const DSVertex*, int> leaving;
    for (const DSHalfEdge* h : LiveRecords(manager.GetHalfEdgeArray()))
    {
        ++leaving[h->GetVertex()];
    }
    for (const DSVertex* v : LiveRecords(manager.GetVertexArray()))
    {
        int turns = 0;
        const DSHalfEdge* h = v->GetHalfEdge();
        do
        {
            ++turns;
            h = h->GetEdge() != nullptr ? h->GetTwin()->GetNext() : v->GetHalfEdge();
        } while (h != v->GetHalfEdge());
        if (turns != leaving[v])
        {
            return testing::AssertionFailure()
                   << "vertex " << v->GetID() << ": " << leaving[v] << " half-edges, " << turns << " met";
        }
    }
    return testing::AssertionSuccess();
}

/// Carries out random operators by their ids, with a judgement of its own on which are allowed, and keeps the
/// books on what each does to the counts.
class Sequence
{
public:
    explicit Sequence(unsigned seed) : m_Random(seed) { MakeSolid(); }

    void Step()
    {
        if (m_Expected.edges > 40)
        {
            Pick({&Sequence::KillFace, &Sequence::KillVertex, &Sequence::MakeRing, &Sequence::JoinRing});
            return;
        }
        Pick({&Sequence::MakeSolid, &Sequence::MakeStrut, &Sequence::MakeStrut, &Sequence::MakeVertex,
              &Sequence::MakeVertex, &Sequence::SplitEdge, &Sequence::MakeFace, &Sequence::MakeFace,
              &Sequence::MakeFaceBetweenHalfEdges, &Sequence::KillFace, &Sequence::KillVertex,
              &Sequence::MakeRing, &Sequence::JoinRing, &Sequence::KillFaceMakeRing,
              &Sequence::MakeFaceKillRing});
    }

    testing::AssertionResult Holds() const
    {
        const Census census = Count(m_Manager);
        if (census.vertices != m_Expected.vertices || census.edges != m_Expected.edges ||
            census.faces != m_Expected.faces || census.loops != m_Expected.loops ||
            census.GetShells() != m_nShells)
        {
            return testing::AssertionFailure() << "the counts are not as kept";
        }
        if (census.GetCharacteristic() != 2 * (m_nShells - m_nHandles) || m_nHandles < 0)
        {
            return testing::AssertionFailure() << "V - E + F - (L - F) is not 2 (S - G)";
        }
        for (const auto& [shell, characteristic] : census.characteristicOfShell)
        {
            if (characteristic > 2 || characteristic % 2 != 0)
            {
                return testing::AssertionFailure() << "a shell with characteristic " << characteristic;
            }
        }
        for (const std::uint32_t solid : m_Solids)
        {
            const auto links = LinksHold(*m_Manager.GetSolid(solid), {.allowOneVertexLoops = true});
            if (!links)
            {
                return links;
            }
        }
        return HasOneFanPerVertex(m_Manager);
    }

    /// How often each operator was carried out, and how often it was refused.
    const std::map<std::string, std::pair<int, int>>& GetTally() const { return m_Tally; }

private:
    using Operator = void (Sequence::*)();

    void Pick(std::initializer_list<Operator> operators)
    {
        m_nSolid = m_Solids[Below(m_Solids.size())];
        (this->*operators.begin()[Below(operators.size())])();
    }

    std::size_t Below(std::size_t count) { return m_Random() % count; }

    template <class T>
    T AnyOf(const std::vector<T>& list)
    {
        return list[Below(list.size())];
    }

    DSFace* AnyFace()
    {
        const auto& faces = m_Manager.GetSolid(m_nSolid)->GetFaceList();
        return faces[Below(faces.size())];
    }

    /// A half-edge with its names: the first of the face that has them is what an operator takes.
    DSHalfEdge* AnyHalfEdge(const DSFace* face)
    {
        const auto all = HalfEdgesOf(face);
        const DSHalfEdge* h = AnyOf(all);
        return *std::find_if(all.begin(), all.end(),
                             [h](const DSHalfEdge* pFirst)
                             { return Start(pFirst) == Start(h) && End(pFirst) == End(h); });
    }

    static DSHalfEdge* FirstFrom(const DSFace* face, std::uint32_t v)
    {
        const auto all = HalfEdgesOf(face);
        return *std::find_if(all.begin(), all.end(), [v](const DSHalfEdge* h) { return Start(h) == v; });
    }

    static std::uint32_t Start(const DSHalfEdge* h) { return h->GetVertex()->GetID(); }
    static std::uint32_t End(const DSHalfEdge* h) { return h->GetNext()->GetVertex()->GetID(); }
    static std::uint32_t FaceOf(const DSHalfEdge* h) { return h->GetLoop()->GetFace()->GetID(); }

    /// Carries the operator out, or sees to it that it is refused and nothing has changed.
    bool Do(const char* name, bool isAllowed, const std::function<void()>& call)
    {
        if (isAllowed)
        {
            ++m_Tally[name].first;
            call();
            return true;
        }
        ++m_Tally[name].second;
        const AssertionCapture assertions;
        const ConsoleCapture console;
        const std::string before = DumpRecords(m_Manager);
        EXPECT_THROW(call(), AssertionFailure) << name;
        EXPECT_EQ(DumpRecords(m_Manager), before) << name;
        return false;
    }

    void MakeSolid()
    {
        if (m_Solids.size() == 3)
        {
            return;
        }
        std::uint32_t nSolid = 0;
        std::uint32_t nFace = 0;
        std::uint32_t nVertex = 0;
        Do("MVFS", true, [&] { m_Euler.MVFS(nSolid, nFace, nVertex, smVec3d()); });
        m_Solids.push_back(nSolid);
        ++m_Expected.vertices;
        ++m_Expected.faces;
        ++m_Expected.loops;
        ++m_nShells;
    }

    void MakeStrut()
    {
        const DSHalfEdge* h = AnyHalfEdge(AnyFace());
        std::uint32_t nVertex = 0;
        Do("MEVStrut", true, [&] { m_Euler.MEVStrut(m_nSolid, FaceOf(h), Start(h), nVertex, smVec3d()); });
        ++m_Expected.vertices;
        ++m_Expected.edges;
    }

    void MakeVertex()
    {
        const DSHalfEdge* h1 = AnyHalfEdge(AnyFace());
        std::vector<const DSHalfEdge*> leaving;
        for (const DSHalfEdge* h : LiveRecords(m_Manager.GetHalfEdgeArray()))
        {
            if (h->GetVertex() == h1->GetVertex())
            {
                leaving.push_back(h);
            }
        }
        const DSHalfEdge* h2 = AnyOf(leaving);
        std::uint32_t nVertex = 0;
        Do("MEV", true,
           [&] { m_Euler.MEV(m_nSolid, FaceOf(h1), FaceOf(h2), Start(h1), End(h1), End(h2), nVertex, {}); });
        ++m_Expected.vertices;
        ++m_Expected.edges;
    }

    void SplitEdge()
    {
        const DSHalfEdge* h = AnyHalfEdge(AnyFace());
        if (h->GetEdge() == nullptr)
        {
            return;
        }
        const DSEdge* pEdge = m_Manager.FindEdge(Start(h), End(h));
        const bool isAllowed = FaceOf(pEdge->GetHalfEdge1()) == FaceOf(h);
        std::uint32_t nVertex = 0;
        if (Do("SEMV", isAllowed, [&] { m_Euler.SEMV(m_nSolid, FaceOf(h), Start(h), End(h), nVertex, {}); }))
        {
            ++m_Expected.vertices;
            ++m_Expected.edges;
        }
    }

    void MakeFace()
    {
        const DSFace* pFace = AnyFace();
        const std::uint32_t v1 = Start(AnyHalfEdge(pFace));
        const std::uint32_t v2 = Start(AnyHalfEdge(pFace));
        const bool isAllowed = v1 != v2 && FirstFrom(pFace, v1)->GetLoop() == FirstFrom(pFace, v2)->GetLoop();
        std::uint32_t nFace = 0;
        CountFace(Do("MEF", isAllowed, [&] { m_Euler.MEF(m_nSolid, pFace->GetID(), nFace, v1, v2); }));
    }

    void MakeFaceBetweenHalfEdges()
    {
        const DSFace* pFace = AnyFace();
        const DSHalfEdge* h1 = AnyHalfEdge(pFace);
        const DSHalfEdge* h2 = AnyHalfEdge(pFace);
        const bool isAllowed = h1->GetLoop() == h2->GetLoop();
        std::uint32_t nFace = 0;
        CountFace(Do(
            "MEF4", isAllowed,
            [&] { m_Euler.MEF4(m_nSolid, pFace->GetID(), nFace, Start(h1), End(h1), Start(h2), End(h2)); }));
    }

    void CountFace(bool isMade)
    {
        m_Expected.edges += isMade ? 1 : 0;
        m_Expected.faces += isMade ? 1 : 0;
        m_Expected.loops += isMade ? 1 : 0;
    }

    void KillFace()
    {
        const DSHalfEdge* h = AnyHalfEdge(AnyFace());
        if (h->GetEdge() == nullptr)
        {
            return;
        }
        const DSFace* pOther = h->GetTwin()->GetLoop()->GetFace();
        if (pOther->GetLoopList().size() > 1)
        {
            return; // allowed, but the other loops would be lost
        }
        const bool isAllowed = pOther->GetID() != FaceOf(h);
        if (Do("KEF", isAllowed, [&] { m_Euler.KEF(m_nSolid, FaceOf(h), Start(h), End(h)); }))
        {
            --m_Expected.edges;
            --m_Expected.faces;
            --m_Expected.loops;
        }
    }

    void KillVertex()
    {
        const DSHalfEdge* h = AnyHalfEdge(AnyFace());
        if (h->GetEdge() == nullptr)
        {
            return;
        }
        if (Do("KEV", Start(h) != End(h), [&] { m_Euler.KEV(m_nSolid, FaceOf(h), Start(h), End(h)); }))
        {
            --m_Expected.edges;
            --m_Expected.vertices;
        }
    }

    void MakeRing()
    {
        const DSHalfEdge* h = AnyHalfEdge(AnyFace());
        if (h->GetEdge() == nullptr)
        {
            return;
        }
        const bool isAllowed = h->GetLoop() == h->GetTwin()->GetLoop();
        if (Do("KEMR", isAllowed, [&] { m_Euler.KEMR(m_nSolid, FaceOf(h), Start(h), End(h)); }))
        {
            --m_Expected.edges;
            ++m_Expected.loops;
        }
    }

    void JoinRing()
    {
        const DSFace* pFace = AnyFace();
        const DSHalfEdge* h1 = AnyHalfEdge(pFace);
        const DSHalfEdge* h2 = AnyHalfEdge(pFace);
        const bool isAllowed = h1->GetLoop() != h2->GetLoop();
        if (Do("MEKR", isAllowed,
               [&] { m_Euler.MEKR(m_nSolid, pFace->GetID(), Start(h1), End(h1), Start(h2), End(h2)); }))
        {
            ++m_Expected.edges;
            --m_Expected.loops;
        }
    }

    /// Two faces of one shell make a handle; of two shells, one shell.
    void KillFaceMakeRing()
    {
        const DSFace* pFace1 = AnyFace();
        const DSFace* pFace2 = AnyFace();
        const int shellsBefore = Count(m_Manager).GetShells();
        const std::uint32_t nFace1 = pFace1->GetID();
        const std::uint32_t nFace2 = pFace2->GetID();
        if (Do("KFMRH", pFace1 != pFace2, [&] { m_Euler.KFMRH(m_nSolid, nFace1, nFace2); }))
        {
            --m_Expected.faces;
            const bool joinsShells = Count(m_Manager).GetShells() < shellsBefore;
            joinsShells ? --m_nShells : ++m_nHandles;
        }
    }

    /// A handle less, or a shell more.
    void MakeFaceKillRing()
    {
        const DSFace* pFace = AnyFace();
        const DSHalfEdge* h = AnyHalfEdge(pFace);
        const bool isAllowed = h->GetLoop() != pFace->GetLoopList()[0];
        const int shellsBefore = Count(m_Manager).GetShells();
        std::uint32_t nFace = 0;
        if (Do("MFKRH", isAllowed, [&] { m_Euler.MFKRH(m_nSolid, pFace->GetID(), nFace, Start(h), End(h)); }))
        {
            ++m_Expected.faces;
            const bool partsShells = Count(m_Manager).GetShells() > shellsBefore;
            partsShells ? ++m_nShells : --m_nHandles;
        }
    }

    std::mt19937 m_Random;
    MANBrepElementManager m_Manager;
    ACTEuler m_Euler{&m_Manager};
    std::vector<std::uint32_t> m_Solids;
    std::uint32_t m_nSolid = 0;
    Census m_Expected;
    int m_nShells = 0;
    int m_nHandles = 0;
    std::map<std::string, std::pair<int, int>> m_Tally;
};

class ACTEulerSequenceTest : public testing::TestWithParam<unsigned>
{
};

TEST_P(ACTEulerSequenceTest, KeepsLinksAndEulerPoincareCount)
{
    Sequence sequence(GetParam());
    for (int i = 0; i < 2000; ++i)
    {
        sequence.Step();
        ASSERT_TRUE(sequence.Holds()) << "after step " << i;
    }
    EXPECT_EQ(sequence.GetTally().size(), 12U) << "every operator takes part";
    for (const auto& [name, tally] : sequence.GetTally())
    {
        EXPECT_GT(tally.first, name == "MVFS" ? 0 : 5) << name;
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, ACTEulerSequenceTest, testing::Values(1U, 2U, 3U, 4U, 5U, 6U, 7U, 8U));
}
}
