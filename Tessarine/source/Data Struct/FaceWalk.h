#pragma once
#include "CycleGuard.h"
#include "DSBrep.h"

namespace tessarine
{
/// Goes over the half-edges of a face, loop by loop, along their order.
///
/// Needs   Loops with a half-edge, and half-edges with a vertex (asserted).
template <class TVisit>
void ForEachHalfEdge(const DSFace& face, TVisit visit)
{
    for (const DSLoop* pLoop : face.GetLoopList())
    {
        ASSERT(pLoop != nullptr);
        DSHalfEdge* const pStart = pLoop->GetHalfEdge();
        DSHalfEdge* pHalfEdge = pStart;
        CycleGuard guard;
        do
        {
            ASSERT(pHalfEdge != nullptr && pHalfEdge->GetVertex() != nullptr);
            visit(*pHalfEdge);
            guard.Visit(pHalfEdge);
            pHalfEdge = pHalfEdge->GetNext();
        } while (pHalfEdge != pStart);
    }
}
}
