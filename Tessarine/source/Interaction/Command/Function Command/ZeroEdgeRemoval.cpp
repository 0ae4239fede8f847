#include "ZeroEdgeRemoval.h"
#include "ErrorLine.h"
#include "Failure.h"
#include <cmath>
#include <string>

namespace tessarine
{
namespace
{
const DSFace* GetFaceOf(const DSHalfEdge* h)
{
    return h->GetLoop()->GetFace();
}

/// The other side of the edge, where there is just one.
const DSHalfEdge* FindMate(const DSHalfEdge* h)
{
    const DSEdge* pEdge = h->GetEdge();
    return pEdge == nullptr || pEdge->IsRepeated() ? nullptr : h->GetTwin();
}

/// The same, where LKEF can take the edge out between two faces.
const DSHalfEdge* FindRemovableMate(const DSHalfEdge* h)
{
    const DSHalfEdge* pMate = FindMate(h);
    const bool isOpposite = pMate != nullptr && pMate->GetVertex() == h->GetNext()->GetVertex() &&
                            h->GetVertex() == pMate->GetNext()->GetVertex();
    return isOpposite && GetFaceOf(pMate) != GetFaceOf(h) ? pMate : nullptr;
}

/// Of all vertices that go, together.
std::uint64_t MostSteps(const DSSolid& solid)
{
    return 1'000'000 + 100 * std::uint64_t{solid.GetEdgeList().size()};
}
}

ZeroEdgeRemoval::ZeroEdgeRemoval(MANBrepElementManager* pManager, DSSolid& solid)
    : m_Euler(pManager), m_Solid(solid), m_Fans(solid), m_nStepsLeft(MostSteps(solid))
{
}

void ZeroEdgeRemoval::Run()
{
    std::size_t left = 0;
    for (std::size_t i = 0; i < m_Solid.GetEdgeList().size(); ++i)
    {
        const DSEdge* pEdge = m_Solid.GetEdgeList()[i];
        if (pEdge == nullptr || pEdge->GetHalfEdge1() == nullptr || pEdge->GetHalfEdge2() == nullptr ||
            !HasNoLength(*pEdge))
        {
            continue;
        }
        if (CanCollapse(*pEdge))
        {
            CollapseEdge(*pEdge);
        }
        else if (RunsOppositeWays(*pEdge))
        {
            ++left;
        }
    }
    if (left != 0)
    {
        PrintErrorLine(
            "edges without length that stay, as the mesh around them would be torn without them: " +
            std::to_string(left));
    }
}

/// Else the starts of its sides are one vertex, which tells nothing of its length.
bool ZeroEdgeRemoval::RunsOppositeWays(const DSEdge& edge)
{
    return edge.GetHalfEdge1()->GetVertex() != edge.GetHalfEdge2()->GetVertex();
}

bool ZeroEdgeRemoval::HasNoLength(const DSEdge& edge)
{
    constexpr double kTolerance = 1e-10;
    const smVec3d way =
        edge.GetHalfEdge1()->GetVertex()->GetPosition() - edge.GetHalfEdge2()->GetVertex()->GetPosition();
    return std::abs(way.x) < kTolerance && std::abs(way.y) < kTolerance && std::abs(way.z) < kTolerance;
}

/// The start of the first half-edge is the vertex that goes.
bool ZeroEdgeRemoval::CanCollapse(const DSEdge& edge) const
{
    const DSHalfEdge* h1 = edge.GetHalfEdge1();
    const DSHalfEdge* h2 = edge.GetHalfEdge2();
    if (FindRemovableMate(h1) != h2 || h1->GetVertex() == h2->GetVertex())
    {
        return false;
    }
    const DSHalfEdge* pMate1 = FindRemovableMate(h1->GetPrev());
    const DSHalfEdge* pMate2 = FindRemovableMate(h2->GetNext());
    return pMate1 != nullptr && pMate2 != nullptr && GetFaceOf(pMate1) != GetFaceOf(h2) &&
           GetFaceOf(pMate2) != GetFaceOf(h1) && IsInOneClosedFan(*h1);
}

/// Whether a walk around its start meets all half-edges that leave it.
bool ZeroEdgeRemoval::IsInOneClosedFan(const DSHalfEdge& start) const
{
    const int nLeaving = m_Fans.CountLeaving(*start.GetVertex());
    const DSHalfEdge* h = &start;
    for (int nMet = 1; nMet <= nLeaving; ++nMet)
    {
        const DSHalfEdge* pMate = FindMate(h);
        if (pMate == nullptr || pMate->GetNext()->GetVertex() != start.GetVertex())
        {
            return false;
        }
        h = pMate->GetNext();
        if (h == &start)
        {
            return nMet == nLeaving;
        }
    }
    return false;
}

/// Between four triangles around the edge, in two of them.
void ZeroEdgeRemoval::CollapseEdge(const DSEdge& edge)
{
    DSHalfEdge* h1 = edge.GetHalfEdge1();
    DSHalfEdge* h2 = edge.GetHalfEdge2();
    DSHalfEdge* pSide1 = h1->GetPrev();
    DSHalfEdge* pSide2 = h2->GetNext();
    const int nMoved = m_Fans.CountLeaving(*h1->GetVertex()) - 3;
    SpendSteps(nMoved);
    m_Fans.Note(*pSide1->GetVertex(), -1);
    m_Fans.Note(*pSide2->GetNext()->GetVertex(), -1);
    m_Fans.Note(*h2->GetVertex(), nMoved - 1);

    m_Euler.LKEF(&m_Solid, pSide1, pSide1->GetTwin());
    m_Euler.LKEF(&m_Solid, pSide2, pSide2->GetTwin());
    m_Euler.LKEV(&m_Solid, h2, h1);
}

void ZeroEdgeRemoval::SpendSteps(int nSteps)
{
    const auto steps = static_cast<std::uint64_t>(nSteps);
    if (steps > m_nStepsLeft)
    {
        throw Failure(
            "too many edges without length meet in one place: scale the model up, or join the vertices "
            "there in the program that made it, and import again");
    }
    m_nStepsLeft -= steps;
}
}
