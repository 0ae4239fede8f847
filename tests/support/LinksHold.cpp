#include "LinksHold.h"
#include <cstdio>
#include <unordered_set>

namespace tessarine
{
namespace
{
/// The first broken link ends the search.
struct BrokenLink
{
    std::string what;
    std::uint32_t id;
};

void Demand(bool holds, const char* what, const DSElement& element)
{
    if (!holds)
    {
        throw BrokenLink{what, element.GetID()};
    }
}

class LinkChecker
{
public:
    LinkChecker(const DSSolid& solid, LinkRules rules) : m_Solid(solid), m_Rules(rules) {}

    void Check()
    {
        CollectList(m_Solid.GetVertexList(), m_Vertices, "vertex list entries are not null and not repeated");
        CollectList(m_Solid.GetEdgeList(), m_Edges, "edge list entries are not null and not repeated");
        CollectList(m_Solid.GetFaceList(), m_Faces, "face list entries are not null and not repeated");
        for (const DSFace* pFace : m_Solid.GetFaceList())
        {
            CheckFace(*pFace);
        }
        for (const DSEdge* pEdge : m_Solid.GetEdgeList())
        {
            CheckEdge(*pEdge);
        }
        for (const DSVertex* pVertex : m_Solid.GetVertexList())
        {
            CheckVertex(*pVertex);
        }
    }

private:
    template <class T>
    void CollectList(const ElementList<T>& list, std::unordered_set<const T*>& set, const char* rule)
    {
        for (const T* pElement : list)
        {
            Demand(pElement != nullptr && set.insert(pElement).second, rule, m_Solid);
        }
    }

    void CheckFace(const DSFace& face)
    {
        Demand(face.GetSolid() == &m_Solid, "face.m_pSolid is the solid", face);
        Demand(!face.GetLoopList().empty(), "a face has a loop", face);
        for (const DSLoop* pLoop : face.GetLoopList())
        {
            Demand(pLoop != nullptr, "a face's loop is not null", face);
            Demand(pLoop->GetFace() == &face, "loop.m_pFace is the face that lists the loop", *pLoop);
            Demand(pLoop->GetHalfEdge() != nullptr, "loop.m_pHalfEdge is not null", *pLoop);
            CheckCircle(*pLoop);
        }
    }

    void CheckCircle(const DSLoop& loop)
    {
        const DSHalfEdge* pHalfEdge = loop.GetHalfEdge();
        do
        {
            Demand(m_HalfEdges.insert(pHalfEdge).second, "a half-edge is met once, in one circle",
                   *pHalfEdge);
            Demand(pHalfEdge->GetLoop() == &loop, "halfEdge.m_pLoop is the loop whose circle it is in",
                   *pHalfEdge);
            Demand(pHalfEdge->GetNext() != nullptr, "halfEdge.m_pNext is not null", *pHalfEdge);
            Demand(pHalfEdge->GetPrev() != nullptr, "halfEdge.m_pPrev is not null", *pHalfEdge);
            Demand(pHalfEdge->GetNext()->GetPrev() == pHalfEdge, "halfEdge.m_pNext.m_pPrev is the half-edge",
                   *pHalfEdge);
            Demand(pHalfEdge->GetPrev()->GetNext() == pHalfEdge, "halfEdge.m_pPrev.m_pNext is the half-edge",
                   *pHalfEdge);
            CheckHalfEdge(*pHalfEdge);
            pHalfEdge = pHalfEdge->GetNext();
        } while (pHalfEdge != loop.GetHalfEdge());
    }

    void CheckHalfEdge(const DSHalfEdge& halfEdge)
    {
        Demand(halfEdge.GetVertex() != nullptr, "halfEdge.m_pVertex is not null", halfEdge);
        Demand(m_Vertices.count(halfEdge.GetVertex()) == 1, "halfEdge.m_pVertex is in the solid's list",
               halfEdge);
        m_UsedVertices.insert(halfEdge.GetVertex());
        const DSEdge* pEdge = halfEdge.GetEdge();
        if (pEdge == nullptr)
        {
            Demand(m_Rules.allowOneVertexLoops && halfEdge.GetNext() == &halfEdge,
                   "halfEdge.m_pEdge is not null", halfEdge);
            return;
        }
        Demand(m_Edges.count(pEdge) == 1, "halfEdge.m_pEdge is in the solid's list", halfEdge);
        if (pEdge->GetHalfEdge1() != &halfEdge && pEdge->GetHalfEdge2() != &halfEdge)
        {
            Demand(m_Rules.allowDisplacedHalfEdges, "halfEdge.m_pEdge lists the half-edge", halfEdge);
            Demand(pEdge->IsRepeated(), "the edge of a displaced half-edge is marked as repeated", halfEdge);
            Demand(pEdge->GetHalfEdge1() != nullptr && pEdge->GetHalfEdge2() != nullptr,
                   "the edge of a displaced half-edge lists two others", halfEdge);
        }
    }

    void CheckEdge(const DSEdge& edge)
    {
        const DSHalfEdge* pFirst = edge.GetHalfEdge1();
        const DSHalfEdge* pSecond = edge.GetHalfEdge2();
        Demand(pFirst != nullptr, "edge.m_pHalfEdge1 is not null", edge);
        Demand(m_HalfEdges.count(pFirst) == 1, "edge.m_pHalfEdge1 is in a loop of the solid", edge);
        Demand(pFirst->GetEdge() == &edge, "edge.m_pHalfEdge1.m_pEdge is the edge", edge);
        if (pSecond == nullptr)
        {
            return;
        }
        Demand(pSecond != pFirst, "the two half-edges of an edge differ", edge);
        Demand(m_HalfEdges.count(pSecond) == 1, "edge.m_pHalfEdge2 is in a loop of the solid", edge);
        Demand(pSecond->GetEdge() == &edge, "edge.m_pHalfEdge2.m_pEdge is the edge", edge);
        const bool runsAgainst = pFirst->GetVertex() == pSecond->GetNext()->GetVertex() &&
                                 pSecond->GetVertex() == pFirst->GetNext()->GetVertex();
        const bool runsAlong = pFirst->GetVertex() == pSecond->GetVertex() &&
                               pFirst->GetNext()->GetVertex() == pSecond->GetNext()->GetVertex();
        Demand(runsAgainst || runsAlong || m_Rules.allowTornEdges,
               "the two half-edges of an edge join the same vertices", edge);
        Demand(runsAgainst || m_Rules.allowSameDirection || m_Rules.allowTornEdges,
               "the two half-edges of an edge run in opposite directions", edge);
    }

    void CheckVertex(const DSVertex& vertex)
    {
        const DSHalfEdge* pHalfEdge = vertex.GetHalfEdge();
        if (pHalfEdge == nullptr)
        {
            Demand(m_UsedVertices.count(&vertex) == 0,
                   "vertex.m_pHalfEdge is not null where half-edges start at it", vertex);
            return;
        }
        Demand(m_HalfEdges.count(pHalfEdge) == 1, "vertex.m_pHalfEdge is in a loop of the solid", vertex);
        Demand(pHalfEdge->GetVertex() == &vertex, "vertex.m_pHalfEdge.m_pVertex is the vertex", vertex);
    }

    const DSSolid& m_Solid;
    LinkRules m_Rules;
    std::unordered_set<const DSVertex*> m_Vertices;
    std::unordered_set<const DSVertex*> m_UsedVertices; ///< those at which a half-edge starts
    std::unordered_set<const DSEdge*> m_Edges;
    std::unordered_set<const DSFace*> m_Faces;
    std::unordered_set<const DSHalfEdge*> m_HalfEdges;
};
}

testing::AssertionResult LinksHold(const DSSolid& solid, LinkRules rules)
{
    try
    {
        LinkChecker(solid, rules).Check();
    }
    catch (const BrokenLink& broken)
    {
        char id[16];
        std::snprintf(id, sizeof id, "0x%08X", static_cast<unsigned>(broken.id));
        return testing::AssertionFailure() << "broken link at element " << id << ": " << broken.what;
    }
    return testing::AssertionSuccess();
}

int EulerCharacteristic(const DSSolid& solid)
{
    return static_cast<int>(solid.GetVertexList().size()) - static_cast<int>(solid.GetEdgeList().size()) +
           static_cast<int>(solid.GetFaceList().size());
}
}
