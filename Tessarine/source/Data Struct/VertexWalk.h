#pragma once
#include "CycleGuard.h"
#include "DSBrep.h"

namespace tessarine
{
/// The walk over the faces around a vertex. From the start it turns one way, from each half-edge to the next
/// of its twin, until it is back or meets the boundary; from there it turns the other way, again from the
/// start. Each half-edge that leaves the vertex is visited once where the surface is a manifold.
///
/// Needs   A half-edge with an edge to start from.
/// Kept    Where faces run the same way along an edge the walk wanders off to other vertices. It comes back
///         all the same: each step can be undone, so the first half-edge met again is the start.
///
///     for (VertexWalk walk(start); !walk.IsAtEnd(); walk.Step())
class VertexWalk
{
public:
    explicit VertexWalk(DSHalfEdge* start) : m_pStart(start), m_pHalfEdge(start) { ASSERT(start != nullptr); }

    DSHalfEdge* Get() const { return m_pHalfEdge; }

    bool IsAtEnd() const { return m_bDone; }

    /// Whether the walk ended because the vertex is open. To be asked at its end.
    bool EndedAtBoundary() const { return m_pHalfEdge == nullptr; }

    /// Ends the walk here.
    void Stop() { m_bDone = true; }

    void Step()
    {
        m_Guard.Visit(m_pHalfEdge);
        if (m_bForward)
        {
            StepForward();
        }
        else
        {
            m_pHalfEdge = TwinOfPrev(m_pHalfEdge);
        }
        m_bDone = m_pHalfEdge == nullptr || m_pHalfEdge == m_pStart;
    }

private:
    static DSHalfEdge* TwinOfPrev(const DSHalfEdge* halfEdge)
    {
        const DSHalfEdge* pPrev = halfEdge->GetPrev();
        ASSERT(pPrev != nullptr);
        return pPrev->GetTwin();
    }

    void StepForward()
    {
        if (const DSHalfEdge* pTwin = m_pHalfEdge->GetTwin(); pTwin != nullptr)
        {
            m_pHalfEdge = pTwin->GetNext();
            ASSERT(m_pHalfEdge != nullptr);
            return;
        }
        m_pHalfEdge = TwinOfPrev(m_pStart);
        m_bForward = false;
    }

    DSHalfEdge* m_pStart;
    DSHalfEdge* m_pHalfEdge;
    CycleGuard m_Guard;
    bool m_bForward = true;
    bool m_bDone = false;
};
}
