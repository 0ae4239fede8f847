#include "EdgeMatcher.h"
#include "Console.h"
#include "MANBrepElementManager.h"

namespace tessarine
{
namespace
{
std::uint32_t FirstIDOf(const ElementList<DSVertex>& vertices)
{
    return vertices.empty() ? 0 : vertices[0]->GetID();
}
}

EdgeMatcher::EdgeMatcher(MANBrepElementManager& manager, DSSolid& solid, std::size_t expectedEdges,
                         Reports reports)
    : m_Manager(manager),
      m_Solid(solid),
      m_EdgeOfPair(FirstIDOf(solid.GetVertexList()), solid.GetVertexList().size(), expectedEdges),
      m_Reports(reports)
{
}

void EdgeMatcher::MatchLoop(const DSLoop& loop, std::size_t faceIndex)
{
    DSHalfEdge* pHalfEdge = loop.GetHalfEdge();
    if (pHalfEdge->GetNext() == pHalfEdge)
    {
        if (m_Reports == Reports::Yes)
        {
            Finish(); // the lines of the faces before come first
            DebugConsole() << "face id: " << faceIndex << '\n' << "error" << '\n';
        }
        return;
    }
    do
    {
        Queue(pHalfEdge);
        pHalfEdge = pHalfEdge->GetNext();
    } while (pHalfEdge != loop.GetHalfEdge());
}

void EdgeMatcher::Finish()
{
    while (m_nMatched != m_nQueued)
    {
        Match(m_Pending[m_nMatched++ % kMostPending]);
    }
}

void EdgeMatcher::Queue(DSHalfEdge* halfEdge)
{
    if (m_nQueued - m_nMatched == kMostPending)
    {
        Match(m_Pending[m_nMatched++ % kMostPending]);
    }
    const VertexPairMap::Pair pair(halfEdge->GetVertex()->GetID(), halfEdge->GetNext()->GetVertex()->GetID());
    m_EdgeOfPair.Prefetch(pair);
    m_Pending[m_nQueued++ % kMostPending] = {halfEdge, pair};
}

void EdgeMatcher::Match(const Pending& pending)
{
    std::uint32_t& place = m_EdgeOfPair.Find(pending.pair);
    if (place != VertexPairMap::kNone)
    {
        JoinEdge(*m_Solid.GetEdgeList()[place], pending.pHalfEdge);
        return;
    }
    DSEdge* pEdge = m_Manager.CreateEdge();
    pEdge->GetHalfEdge1() = pending.pHalfEdge;
    pending.pHalfEdge->GetEdge() = pEdge;
    place = static_cast<std::uint32_t>(m_Solid.GetEdgeList().size());
    m_Solid.GetEdgeList().push_back(pEdge);
}

void EdgeMatcher::JoinEdge(DSEdge& edge, DSHalfEdge* halfEdge)
{
    halfEdge->GetEdge() = &edge;
    if (edge.GetHalfEdge2() != nullptr)
    {
        NoteRepeated(edge);
    }
    edge.GetHalfEdge2() = halfEdge;
}

void EdgeMatcher::NoteRepeated(DSEdge& edge) const
{
    edge.SetRepeated(true);
    if (m_Reports == Reports::Yes)
    {
        DebugConsole() << "Edge has already two halfedges: " << edge.GetHalfEdge1()->GetVertex()->GetID()
                       << "," << edge.GetHalfEdge2()->GetVertex()->GetID() << '\n';
    }
}
}
