#include "SolidCounts.h"
#include "MANBrepElementManager.h"
#include <algorithm>
#include <numeric>

namespace tessarine
{
namespace
{
constexpr std::uint32_t kEdgeIndexMask = ~ElementKind::Edge;

/// Sets of vertices that grow together (Tarjan 1975, halving paths). A vertex's number is its id.
class VertexSets
{
public:
    explicit VertexSets(std::size_t count) : m_Parents(count), m_Joined(count, false)
    {
        std::iota(m_Parents.begin(), m_Parents.end(), 0U);
    }

    void Join(const DSVertex& a, const DSVertex& b)
    {
        m_Joined[a.GetID()] = true;
        m_Joined[b.GetID()] = true;
        m_Parents[Find(a.GetID())] = Find(b.GetID());
    }

    bool IsJoined(const DSVertex& vertex) const { return m_Joined[vertex.GetID()]; }

    /// One vertex of each set is its first.
    bool IsFirst(const DSVertex& vertex) { return Find(vertex.GetID()) == vertex.GetID(); }

private:
    std::uint32_t Find(std::uint32_t vertex)
    {
        while (m_Parents[vertex] != vertex)
        {
            m_Parents[vertex] = m_Parents[m_Parents[vertex]];
            vertex = m_Parents[vertex];
        }
        return vertex;
    }

    std::vector<std::uint32_t> m_Parents;
    std::vector<bool> m_Joined;
};

void CountPieces(const DSSolid& solid, const MANBrepElementManager& elements, SolidCounts& counts)
{
    VertexSets sets(elements.GetVertexArray().size());
    for (const DSEdge* pEdge : solid.GetEdgeList())
    {
        const DSHalfEdge* pHalfEdge = pEdge->GetHalfEdge1();
        ASSERT(pHalfEdge != nullptr);
        sets.Join(*pHalfEdge->GetVertex(), *pHalfEdge->GetNext()->GetVertex());
        counts.boundaryEdges += pEdge->GetHalfEdge2() == nullptr ? 1 : 0;
    }
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        const bool joined = sets.IsJoined(*pVertex);
        counts.isolatedVertices += joined ? 0 : 1;
        counts.pieces += joined && sets.IsFirst(*pVertex) ? 1 : 0;
    }
}

/// Calls visit(half-edge) for every half-edge of the face.
template <class TVisit>
void ForEachHalfEdge(const DSFace& face, TVisit visit)
{
    for (const DSLoop* pLoop : face.GetLoopList())
    {
        const DSHalfEdge* pFirst = pLoop->GetHalfEdge();
        for (const DSHalfEdge* pHalfEdge = pFirst; pHalfEdge != nullptr;)
        {
            visit(*pHalfEdge);
            pHalfEdge = pHalfEdge->GetNext() != pFirst ? pHalfEdge->GetNext() : nullptr;
        }
    }
}

std::size_t CountCrowdedEdges(const DSSolid& solid, const MANBrepElementManager& elements)
{
    std::vector<std::uint32_t> users(elements.GetEdgeArray().size(), 0);
    for (const DSFace* pFace : solid.GetFaceList())
    {
        ForEachHalfEdge(*pFace,
                        [&users](const DSHalfEdge& halfEdge)
                        {
                            if (halfEdge.GetEdge() != nullptr) // a face of one corner has none
                            {
                                ++users[halfEdge.GetEdge()->GetID() & kEdgeIndexMask];
                            }
                        });
    }
    return static_cast<std::size_t>(
        std::count_if(users.begin(), users.end(), [](std::uint32_t count) { return count > 2; }));
}

std::optional<BoundingBox> FindBox(const DSSolid& solid)
{
    if (solid.GetVertexList().empty())
    {
        return std::nullopt;
    }
    const smVec3d& first = solid.GetVertexList()[0]->GetPosition();
    BoundingBox box{first, first};
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            box.low[axis] = std::min(box.low[axis], pVertex->GetPosition()[axis]);
            box.high[axis] = std::max(box.high[axis], pVertex->GetPosition()[axis]);
        }
    }
    return box;
}
}

SolidCounts CountSolid(const DSSolid& solid, const MANBrepElementManager& elements)
{
    SolidCounts counts;
    counts.vertices = solid.GetVertexList().size();
    counts.faces = solid.GetFaceList().size();
    counts.edges = solid.GetEdgeList().size();
    counts.eulerNumber = static_cast<long long>(counts.vertices) - static_cast<long long>(counts.edges) +
                         static_cast<long long>(counts.faces);
    CountPieces(solid, elements, counts);
    counts.crowdedEdges = CountCrowdedEdges(solid, elements);
    counts.box = FindBox(solid);
    return counts;
}
}
