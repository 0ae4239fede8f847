#include "TriangleSurgery.h"
#include "Console.h"
#include "EdgeQuad.h"
#include "Failure.h"
#include "MANBrepElementManager.h"
#include "VertexWalk.h"

namespace tessarine
{
namespace
{
bool IsTriangle(const DSHalfEdge* h)
{
    return h->GetNext()->GetNext()->GetNext() == h && h->GetNext() != h;
}

/// Whether another edge at the start of the half-edge leads to its end, or back: a face there would name the end twice.
bool HasEdgeBeside(DSHalfEdge& ha)
{
    const DSVertex* pEnd = ha.GetNext()->GetVertex();
    for (VertexWalk walk(&ha); !walk.IsAtEnd(); walk.Step())
    {
        const DSVertex* pOther = walk.Get()->GetNext()->GetVertex();
        if (walk.Get() != &ha && (pOther == pEnd || pOther == ha.GetVertex()))
        {
            return true;
        }
    }
    return false;
}

/// Whether the two faces of the edge can melt into their neighbours beyond the half-edges before its own, the second
/// after the first: LKEF wants two different faces each time. It is not so where they are each other's neighbours all
/// around.
bool CanMelt(const DSHalfEdge& ha, const DSHalfEdge& hb)
{
    const DSFace* pFaceA = &GetFaceAt(&ha);
    const DSFace* pBeyondA = &GetFaceAt(ha.GetPrev()->GetTwin());
    const auto afterFirst = [=](const DSFace* pFace) { return pFace == pFaceA ? pBeyondA : pFace; };
    return pBeyondA != pFaceA &&
           afterFirst(&GetFaceAt(hb.GetPrev()->GetTwin())) != afterFirst(&GetFaceAt(&hb));
}
}

DSVertex* TriangleSurgery::Resolve(std::uint32_t nVertexID) const
{
    DSVertex* pVertex = m_pManager->GetVertex(nVertexID);
    ASSERT(pVertex != nullptr);
    return pVertex;
}

DSVertex* TriangleSurgery::SplitFace(DSFace& face, const smVec3d& position)
{
    DSHalfEdge* h0 = face.GetLoopList()[0]->GetHalfEdge();
    DSHalfEdge* h1 = h0->GetNext();
    DSHalfEdge* h2 = h1->GetNext();
    ASSERT(IsTriangle(h0));
    std::uint32_t nVertexID = 0;
    std::uint32_t nFaceID = 0;
    m_Euler.LMEV(face.GetSolid(), h0, h0, nVertexID, position);
    DSVertex* pVertex = Resolve(nVertexID);
    m_Euler.LMEF(face.GetSolid(), h0->GetPrev(), h1, nFaceID);
    m_Euler.LMEF(face.GetSolid(), h1->GetPrev(), h2, nFaceID);
    return pVertex;
}

DSVertex* TriangleSurgery::SplitEdge(DSHalfEdge& h, const smVec3d& position)
{
    DSHalfEdge* t = h.GetTwin();
    DSSolid* pSolid = GetFaceAt(&h).GetSolid();
    ASSERT(&GetFaceAt(&h) != &GetFaceAt(t));
    ASSERT(IsTriangle(&h) && IsTriangle(t));
    std::uint32_t nVertexID = 0;
    std::uint32_t nFaceID = 0;
    m_Euler.LMEV(pSolid, &h, t->GetNext(), nVertexID, position);
    DSVertex* pVertex = Resolve(nVertexID);
    DSHalfEdge* pBeyond = t->GetNext();
    m_Euler.LMEF(pSolid, &h, h.GetNext()->GetNext(), nFaceID);
    m_Euler.LMEF(pSolid, pBeyond, pBeyond->GetNext()->GetNext(), nFaceID);
    DebugConsole() << "Edge collapse ok..." << '\n';
    return pVertex;
}

void TriangleSurgery::CollapseEdge(DSEdge& edge, const DSVertex& vertex)
{
    DSHalfEdge* ha = edge.GetHalfEdge1();
    DSHalfEdge* hb = edge.GetHalfEdge2();
    ASSERT(ha != nullptr && hb != nullptr);
    if ((ha->GetVertex() == &vertex) == (hb->GetVertex() == &vertex))
    {
        DebugConsole() << "CollapseEdge error !!! " << '\n';
        return;
    }
    if (ha->GetVertex() != &vertex)
    {
        std::swap(ha, hb);
    }
    if (!CanMelt(*ha, *hb) || HasEdgeBeside(*ha))
    {
        throw Failure(kTooFewPoints);
    }
    DSSolid* pSolid = GetFaceAt(ha).GetSolid();
    m_Euler.LKEF(pSolid, ha->GetPrev()->GetTwin(), ha->GetPrev());
    m_Euler.LKEF(pSolid, hb->GetPrev()->GetTwin(), hb->GetPrev());
    m_Euler.LKEV(pSolid, hb, ha);
    DebugConsole() << "One edge clipped.." << '\n';
}
}
