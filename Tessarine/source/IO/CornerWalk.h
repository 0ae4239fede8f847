#pragma once
#include "Assert.h"
#include "CycleGuard.h"
#include "DSBrep.h"

namespace tessarine
{
/// Calls visit(halfEdge) for each corner of the face, loop by loop.
template <class TVisit>
void ForEachCorner(const DSFace& face, TVisit visit)
{
    for (const DSLoop* pLoop : face.GetLoopList())
    {
        const DSHalfEdge* const pFirst = pLoop->GetHalfEdge();
        ASSERT(pFirst != nullptr);
        CycleGuard guard;
        const DSHalfEdge* pHalfEdge = pFirst;
        do
        {
            guard.Visit(pHalfEdge);
            visit(*pHalfEdge);
            pHalfEdge = pHalfEdge->GetNext();
            ASSERT(pHalfEdge != nullptr);
        } while (pHalfEdge != pFirst);
    }
}
}
