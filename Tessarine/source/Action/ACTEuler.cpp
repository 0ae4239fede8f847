#include "ACTEuler.h"
#include "Assert.h"
#include "DSBrep.h"
#include "MANBrepElementManager.h"

namespace tessarine
{
namespace
{
bool IsIn(const DSSolid* pSolid, const DSHalfEdge* h)
{
    return pSolid != nullptr && h != nullptr && h->GetLoop() != nullptr &&
           h->GetLoop()->GetFace() != nullptr && h->GetLoop()->GetFace()->GetSolid() == pSolid;
}

bool IsIn(const DSFace* pFace, const DSHalfEdge* h)
{
    return pFace != nullptr && h != nullptr && h->GetLoop() != nullptr && h->GetLoop()->GetFace() == pFace;
}

bool ShareEdge(const DSHalfEdge* h1, const DSHalfEdge* h2)
{
    return h1->GetEdge() != nullptr && h1->GetEdge() == h2->GetEdge();
}

/// Whether the edge lists these two and nothing else: a half-edge that a third face has displaced shares the
/// edge as well, and cannot be taken out without breaking the two that are listed.
bool AreTheSides(const DSEdge* pEdge, const DSHalfEdge* h1, const DSHalfEdge* h2)
{
    return (pEdge->GetHalfEdge1() == h1 && pEdge->GetHalfEdge2() == h2) ||
           (h2 != nullptr && pEdge->GetHalfEdge1() == h2 && pEdge->GetHalfEdge2() == h1);
}

/// Whether turning around the start vertex of h1 comes to h2 before it meets a hole or goes astray.
bool TurnsTo(const DSHalfEdge* h1, const DSHalfEdge* h2)
{
    for (const DSHalfEdge* h = h1; h != h2;)
    {
        const DSHalfEdge* pTwin = h->GetTwin();
        if (pTwin == nullptr)
        {
            return false;
        }
        h = pTwin->GetNext();
        if (h == h1 || h->GetVertex() != h1->GetVertex())
        {
            return false;
        }
    }
    return true;
}

/// Whether the half-edge is one of those around a vertex from h1 up to and with h2.
bool IsInFan(const DSHalfEdge* pSought, const DSHalfEdge* h1, const DSHalfEdge* h2)
{
    const DSHalfEdge* h = h1;
    while (h != h2 && h != pSought)
    {
        h = h->GetTwin()->GetNext();
    }
    return h == pSought;
}

bool RunOpposite(const DSHalfEdge* h1, const DSHalfEdge* h2)
{
    return h1->GetVertex() == h2->GetNext()->GetVertex() && h2->GetVertex() == h1->GetNext()->GetVertex();
}

bool LeadsTo(const DSHalfEdge* h1, const DSHalfEdge* h2)
{
    for (const DSHalfEdge* h = h1; h != h2;)
    {
        h = h->GetNext();
        if (h == h1)
        {
            return false;
        }
    }
    return true;
}

bool HasLoop(const DSFace* pFace, const DSLoop* pLoop)
{
    for (const DSLoop* pOther : pFace->GetLoopList())
    {
        if (pOther == pLoop)
        {
            return true;
        }
    }
    return false;
}

/// Gives the start vertices of the half-edges from h1 up to h2 around their vertex to another.
void MoveFan(DSHalfEdge* h1, const DSHalfEdge* h2, DSVertex* pVertex)
{
    for (DSHalfEdge* h = h1; h != h2; h = h->GetTwin()->GetNext())
    {
        h->GetVertex() = pVertex;
    }
}

/// Gives the whole ring of h to a loop.
void MoveRing(DSHalfEdge* h, DSLoop* pLoop)
{
    DSHalfEdge* pStart = h;
    do
    {
        h->GetLoop() = pLoop;
        h = h->GetNext();
    } while (h != pStart);
}

void Follow(DSHalfEdge* pBefore, DSHalfEdge* pBehind)
{
    pBefore->GetNext() = pBehind;
    pBehind->GetPrev() = pBefore;
}

/// Exchanges what stands before two half-edges: one ring becomes two, or two become one.
void ExchangeTails(DSHalfEdge* n1, DSHalfEdge* n2)
{
    DSHalfEdge* pBefore1 = n1->GetPrev();
    DSHalfEdge* pBefore2 = n2->GetPrev();
    Follow(pBefore1, n2);
    Follow(pBefore2, n1);
}

/// Exchanges what stands behind two half-edges.
void ExchangeHeads(DSHalfEdge* h1, DSHalfEdge* h2)
{
    DSHalfEdge* pBehind1 = h1->GetNext();
    DSHalfEdge* pBehind2 = h2->GetNext();
    Follow(h1, pBehind2);
    Follow(h2, pBehind1);
}

/// Whether they are every second half-edge of a loop from the first on, and not more than half of it.
bool AreEverySecond(const std::vector<DSHalfEdge*>& corners)
{
    const DSHalfEdge* h = corners.front();
    for (std::size_t i = 0; i < corners.size(); ++i)
    {
        const bool isBackAtFirst = i != 0 && h == corners.front();
        if (h != corners[i] || isBackAtFirst || h->GetNext() == corners.front())
        {
            return false;
        }
        h = h->GetNext()->GetNext();
    }
    return true;
}

/// Leaves no link to a lone half-edge behind.
void ForgetLone(const DSHalfEdge* h)
{
    if (h->GetLoop() != nullptr && h->GetLoop()->GetHalfEdge() == h)
    {
        h->GetLoop()->GetHalfEdge() = nullptr;
    }
    if (h->GetVertex() != nullptr && h->GetVertex()->GetHalfEdge() == h)
    {
        h->GetVertex()->GetHalfEdge() = nullptr;
    }
}

template <class TTest>
DSHalfEdge* FindIf(const DSFace* pFace, TTest isSought)
{
    ASSERT(pFace != nullptr);
    for (const DSLoop* pLoop : pFace->GetLoopList())
    {
        DSHalfEdge* pStart = pLoop->GetHalfEdge();
        for (DSHalfEdge* h = pStart; h != nullptr;)
        {
            if (isSought(*h))
            {
                return h;
            }
            h = h->GetNext() != pStart ? h->GetNext() : nullptr;
        }
    }
    return nullptr;
}
}

DSSolid* ACTEuler::ResolveSolid(std::uint32_t nSolidID) const
{
    DSSolid* pSolid = m_pManager->GetSolid(nSolidID);
    ASSERT(pSolid != nullptr);
    return pSolid;
}

DSFace* ACTEuler::ResolveFace(std::uint32_t nFaceID) const
{
    DSFace* pFace = m_pManager->GetFace(nFaceID);
    ASSERT(pFace != nullptr);
    return pFace;
}

DSFace* ACTEuler::ResolveFace(const DSSolid* pSolid, std::uint32_t nFaceID) const
{
    DSFace* pFace = ResolveFace(nFaceID);
    ASSERT(pFace->GetSolid() == pSolid);
    return pFace;
}

DSHalfEdge* ACTEuler::ResolveHalfEdge(const DSFace* pFace, std::uint32_t v1, std::uint32_t v2) const
{
    DSHalfEdge* h = FindHalfEdge(pFace, v1, v2);
    ASSERT(h != nullptr);
    return h;
}

void ACTEuler::MVFS(std::uint32_t& nSolidID, std::uint32_t& nFaceID, std::uint32_t& nVertexID,
                    const smVec3d& position)
{
    DSSolid* pSolid = m_pManager->CreateSolid();
    DSFace* pFace = m_pManager->CreateFace();
    DSLoop* pLoop = m_pManager->CreateLoop();
    DSVertex* pVertex = m_pManager->CreateVertex();
    DSHalfEdge* h = m_pManager->CreateHalfEdge();
    nSolidID = pSolid->GetID();
    nFaceID = pFace->GetID();
    nVertexID = pVertex->GetID();

    pSolid->GetFaceList().push_back(pFace);
    pSolid->GetVertexList().push_back(pVertex);
    pFace->GetSolid() = pSolid;
    pFace->GetLoopList().push_back(pLoop);
    pLoop->GetFace() = pFace;
    pLoop->GetHalfEdge() = h;
    h->GetLoop() = pLoop;
    h->GetEdge() = nullptr;
    h->GetVertex() = pVertex;
    Follow(h, h);
    pVertex->GetHalfEdge() = h;
    pVertex->GetPosition() = position;
}

void ACTEuler::MEV(std::uint32_t nSolidID, std::uint32_t nFaceID1, std::uint32_t nFaceID2, std::uint32_t v1,
                   std::uint32_t v2, std::uint32_t v3, std::uint32_t& nVertexID, const smVec3d& position)
{
    DSSolid* pSolid = ResolveSolid(nSolidID);
    const DSFace* pFace1 = ResolveFace(pSolid, nFaceID1);
    const DSFace* pFace2 = ResolveFace(pSolid, nFaceID2);
    ASSERT(pFace1->GetSolid() == pFace2->GetSolid());
    DSHalfEdge* h1 = ResolveHalfEdge(pFace1, v1, v2);
    DSHalfEdge* h2 = ResolveHalfEdge(pFace2, v1, v3);
    LMEV(pSolid, h1, h2, nVertexID, position);
}

void ACTEuler::MEVStrut(std::uint32_t nSolidID, std::uint32_t nFaceID, std::uint32_t v,
                        std::uint32_t& nVertexID, const smVec3d& position)
{
    DSSolid* pSolid = ResolveSolid(nSolidID);
    const DSFace* pFace = ResolveFace(pSolid, nFaceID);
    DSHalfEdge* h = FindHalfEdge(pFace, v);
    ASSERT(h != nullptr);
    LMEV(pSolid, h, h, nVertexID, position);
}

void ACTEuler::SEMV(std::uint32_t nSolidID, std::uint32_t nFaceID, std::uint32_t v1, std::uint32_t v2,
                    std::uint32_t& nVertexID, const smVec3d& position)
{
    const DSSolid* pSolid = ResolveSolid(nSolidID);
    const DSFace* pFace = ResolveFace(nFaceID);
    SplitEdge(pSolid, pFace, m_pManager->FindEdge(v1, v2), nVertexID, position);
}

void ACTEuler::SEMV(std::uint32_t nSolidID, std::uint32_t nFaceID, const DSEdge* pEdge,
                    std::uint32_t& nVertexID, const smVec3d& position)
{
    const DSSolid* pSolid = ResolveSolid(nSolidID);
    const DSFace* pFace = ResolveFace(nFaceID);
    SplitEdge(pSolid, pFace, pEdge, nVertexID, position);
}

void ACTEuler::SplitEdge(const DSSolid* pSolid, const DSFace* pFace, const DSEdge* pEdge,
                         std::uint32_t& nVertexID, const smVec3d& position)
{
    ASSERT(pEdge != nullptr);
    ASSERT(pFace->GetSolid() == pSolid);
    ASSERT(IsIn(pFace, pEdge->GetHalfEdge1()));
    LSEMV(pEdge->GetHalfEdge1(), pEdge->GetHalfEdge2(), nVertexID, position);
}

void ACTEuler::MEF(std::uint32_t nSolidID, std::uint32_t nFaceID, std::uint32_t& nNewFaceID, std::uint32_t v1,
                   std::uint32_t v2)
{
    DSSolid* pSolid = ResolveSolid(nSolidID);
    const DSFace* pFace = ResolveFace(pSolid, nFaceID);
    ASSERT(v1 != v2);
    DSHalfEdge* h1 = FindHalfEdge(pFace, v1);
    DSHalfEdge* h2 = FindHalfEdge(pFace, v2);
    ASSERT(h1 != h2);
    LMEF(pSolid, h1, h2, nNewFaceID);
}

void ACTEuler::MEF4(std::uint32_t nSolidID, std::uint32_t nFaceID, std::uint32_t& nNewFaceID,
                    std::uint32_t v1, std::uint32_t v2, std::uint32_t v3, std::uint32_t v4)
{
    DSSolid* pSolid = ResolveSolid(nSolidID);
    const DSFace* pFace = ResolveFace(pSolid, nFaceID);
    DSHalfEdge* h1 = ResolveHalfEdge(pFace, v1, v2);
    DSHalfEdge* h2 = ResolveHalfEdge(pFace, v3, v4);
    LMEF(pSolid, h1, h2, nNewFaceID);
}

void ACTEuler::MEKR(std::uint32_t nSolidID, std::uint32_t nFaceID, std::uint32_t v1, std::uint32_t v2,
                    std::uint32_t v3, std::uint32_t v4)
{
    DSSolid* pSolid = ResolveSolid(nSolidID);
    DSFace* pFace = ResolveFace(pSolid, nFaceID);
    DSHalfEdge* h1 = ResolveHalfEdge(pFace, v1, v2);
    DSHalfEdge* h2 = ResolveHalfEdge(pFace, v3, v4);
    LMEKR(pSolid, pFace, h1, h2);
}

void ACTEuler::KFMRH(std::uint32_t nSolidID, std::uint32_t nFaceID1, std::uint32_t nFaceID2)
{
    DSSolid* pSolid = ResolveSolid(nSolidID);
    DSFace* pFace1 = ResolveFace(pSolid, nFaceID1);
    DSFace* pFace2 = ResolveFace(pSolid, nFaceID2);
    LKFMRH(pSolid, pFace1, pFace2);
}

void ACTEuler::KillSolid(std::uint32_t nSolidID)
{
    LKillSolid(ResolveSolid(nSolidID));
}

void ACTEuler::KEV(std::uint32_t nSolidID, std::uint32_t nFaceID, std::uint32_t v1, std::uint32_t v2)
{
    DSSolid* pSolid = ResolveSolid(nSolidID);
    DSHalfEdge* h = ResolveHalfEdge(ResolveFace(pSolid, nFaceID), v1, v2);
    ASSERT(h->GetEdge() != nullptr);
    LKEV(pSolid, h, h->GetTwin());
}

void ACTEuler::KEF(std::uint32_t nSolidID, std::uint32_t nFaceID, std::uint32_t v1, std::uint32_t v2)
{
    DSSolid* pSolid = ResolveSolid(nSolidID);
    DSHalfEdge* h = ResolveHalfEdge(ResolveFace(pSolid, nFaceID), v1, v2);
    ASSERT(h->GetEdge() != nullptr);
    LKEF(pSolid, h, h->GetTwin());
}

void ACTEuler::KEMR(std::uint32_t nSolidID, std::uint32_t nFaceID, std::uint32_t v1, std::uint32_t v2)
{
    DSSolid* pSolid = ResolveSolid(nSolidID);
    DSFace* pFace = ResolveFace(pSolid, nFaceID);
    DSHalfEdge* h = ResolveHalfEdge(pFace, v1, v2);
    ASSERT(h->GetEdge() != nullptr);
    LKEMR(pSolid, pFace, h, h->GetTwin());
}

void ACTEuler::MFKRH(std::uint32_t nSolidID, std::uint32_t nFaceID, std::uint32_t& nNewFaceID,
                     std::uint32_t v1, std::uint32_t v2)
{
    DSSolid* pSolid = ResolveSolid(nSolidID);
    DSFace* pFace = ResolveFace(pSolid, nFaceID);
    const DSHalfEdge* h = ResolveHalfEdge(pFace, v1, v2);
    LMFKRH(pSolid, pFace, h->GetLoop(), nNewFaceID);
}

DSFace* ACTEuler::AppendFace(DSSolid* pSolid)
{
    DSFace* pFace = m_pManager->CreateFace();
    pSolid->GetFaceList().push_back(pFace);
    pFace->GetSolid() = pSolid;
    return pFace;
}

DSVertex* ACTEuler::AppendVertex(DSSolid* pSolid, const smVec3d& position)
{
    DSVertex* pVertex = m_pManager->CreateVertex();
    pSolid->GetVertexList().push_back(pVertex);
    pVertex->GetPosition() = position;
    return pVertex;
}

void ACTEuler::LMEV(DSSolid* pSolid, DSHalfEdge* h1, DSHalfEdge* h2, std::uint32_t& nVertexID,
                    const smVec3d& position)
{
    ASSERT(IsIn(pSolid, h1));
    ASSERT(IsIn(pSolid, h2));
    ASSERT(h1->GetVertex() == h2->GetVertex());
    ASSERT(TurnsTo(h1, h2));

    DSVertex* pOld = h2->GetVertex();
    DSEdge* pEdge = m_pManager->CreateEdge();
    pSolid->GetEdgeList().push_back(pEdge);
    DSVertex* pNew = AppendVertex(pSolid, position);
    nVertexID = pNew->GetID();

    MoveFan(h1, h2, pNew);
    AddHalfEdge(pEdge, h1, pOld, 0);
    AddHalfEdge(pEdge, h2, pNew, 1);
    pNew->GetHalfEdge() = h2->GetPrev();
    pOld->GetHalfEdge() = h2;
}

void ACTEuler::LSEMV(DSHalfEdge* h1, DSHalfEdge* h2, std::uint32_t& nVertexID, const smVec3d& position)
{
    ASSERT(h1 != nullptr);
    ASSERT(h2 == nullptr || ShareEdge(h1, h2));
    DSEdge* pOld = h1->GetEdge();
    ASSERT(pOld != nullptr);
    ASSERT(AreTheSides(pOld, h1, h2));
    ASSERT(h1->GetLoop() != nullptr && h1->GetLoop()->GetFace() != nullptr);
    DSSolid* pSolid = h1->GetLoop()->GetFace()->GetSolid();
    ASSERT(pSolid != nullptr);

    DSEdge* pNew = m_pManager->CreateEdge();
    pNew->SetRepeated(pOld->IsRepeated());
    pSolid->GetEdgeList().push_back(pNew);
    DSVertex* pVertex = AppendVertex(pSolid, position);
    nVertexID = pVertex->GetID();

    AddHalfEdge(pOld, h1->GetNext(), pVertex, 0);
    pOld->GetHalfEdge2() = h2;
    if (h2 != nullptr)
    {
        AddHalfEdge(pNew, h2->GetNext(), pVertex, 1);
    }
    pNew->GetHalfEdge1() = h1;
    h1->GetEdge() = pNew;
    pVertex->GetHalfEdge() = h1->GetNext();
}

/// Cuts a loop between h1 and h2 but leaves all half-edges with the loop that they say. Gives the new loop.
DSLoop* ACTEuler::CutLoop(DSSolid* pSolid, DSLoop* pLoop, DSHalfEdge* h1, DSHalfEdge* h2)
{
    DSFace* pFace = AppendFace(pSolid);
    DSLoop* pNew = m_pManager->CreateLoop();
    DSEdge* pEdge = m_pManager->CreateEdge();
    pSolid->GetEdgeList().push_back(pEdge);
    pFace->GetLoopList().push_back(pNew);
    pNew->GetFace() = pFace;

    DSHalfEdge* n1 = AddHalfEdge(pEdge, h1, h2->GetVertex(), 0);
    DSHalfEdge* n2 = AddHalfEdge(pEdge, h2, h1->GetVertex(), 1);
    ExchangeTails(n1, n2);
    n1->GetLoop() = pNew;
    n2->GetLoop() = pLoop;
    // Between a half-edge and itself n1 is cut off alone; a lone half-edge is n1.
    pNew->GetHalfEdge() = h1 != h2 ? h1 : n1;
    pLoop->GetHalfEdge() = h2 != n1 ? h2 : n2;
    return pNew;
}

void ACTEuler::LMEF(DSSolid* pSolid, DSHalfEdge* h1, DSHalfEdge* h2, std::uint32_t& nNewFaceID)
{
    ASSERT(IsIn(pSolid, h1));
    ASSERT(IsIn(pSolid, h2));
    ASSERT(h1->GetLoop() == h2->GetLoop());
    ASSERT(LeadsTo(h1, h2));

    DSLoop* pNew = CutLoop(pSolid, h1->GetLoop(), h1, h2);
    nNewFaceID = pNew->GetFace()->GetID();
    MoveRing(pNew->GetHalfEdge(), pNew);
}

void ACTEuler::LMEFCorners(DSSolid* pSolid, const std::vector<DSHalfEdge*>& corners)
{
    ASSERT(corners.size() >= 2);
    ASSERT(IsIn(pSolid, corners.front()));
    ASSERT(AreEverySecond(corners));

    std::vector<DSLoop*> loops;
    loops.reserve(corners.size() + 1);
    loops.push_back(corners.front()->GetLoop());
    for (const DSHalfEdge* pCorner : corners)
    {
        loops.push_back(CutLoop(pSolid, loops.back(), pCorner->GetNext(), pCorner->GetPrev()));
    }
    for (DSLoop* pLoop : loops)
    {
        MoveRing(pLoop->GetHalfEdge(), pLoop);
    }
}

void ACTEuler::LMEKR(DSSolid* pSolid, DSFace* pFace, DSHalfEdge* h1, DSHalfEdge* h2)
{
    ASSERT(IsIn(pSolid, h1));
    ASSERT(IsIn(pFace, h1));
    ASSERT(IsIn(pFace, h2));
    ASSERT(h1->GetLoop() != h2->GetLoop());

    DSVertex* pVertex1 = h1->GetVertex();
    DSVertex* pVertex2 = h2->GetVertex();
    DSLoop* pKeep = h1->GetLoop();
    DSLoop* pKill = h2->GetLoop();
    DSEdge* pEdge = m_pManager->CreateEdge();
    pSolid->GetEdgeList().push_back(pEdge);
    pFace->GetLoopList().Remove(pKill);
    m_pManager->DeleteLoop(pKill);
    MoveRing(h2, pKeep);

    DSHalfEdge* n1 = AddHalfEdge(pEdge, h1, pVertex2, 0);
    DSHalfEdge* n2 = AddHalfEdge(pEdge, h2, pVertex1, 1);
    ExchangeTails(n1, n2);
    if (n1 == h1) // a lone half-edge has changed its vertex
    {
        pVertex1->GetHalfEdge() = n2;
    }
    if (n2 == h2)
    {
        pVertex2->GetHalfEdge() = n1;
    }
}

void ACTEuler::LMFKRH(DSSolid* pSolid, DSFace* pFace, DSLoop* pLoop, std::uint32_t& nNewFaceID)
{
    ASSERT(pSolid != nullptr && pFace != nullptr && pFace->GetSolid() == pSolid);
    ASSERT(HasLoop(pFace, pLoop));
    ASSERT(pLoop != pFace->GetLoopList()[0]);

    DSFace* pNew = AppendFace(pSolid);
    nNewFaceID = pNew->GetID();
    pFace->GetLoopList().Remove(pLoop);
    pNew->GetLoopList().push_back(pLoop);
    pLoop->GetFace() = pNew;
}

void ACTEuler::LKEMR(DSSolid* pSolid, DSFace* pFace, DSHalfEdge* h1, DSHalfEdge* h2)
{
    ASSERT(IsIn(pSolid, h1));
    ASSERT(IsIn(pFace, h1));
    ASSERT(IsIn(pFace, h2));
    ASSERT(ShareEdge(h1, h2));
    ASSERT(AreTheSides(h1->GetEdge(), h1, h2));
    ASSERT(!h1->GetEdge()->IsRepeated());
    ASSERT(RunOpposite(h1, h2));
    ASSERT(h1->GetLoop() == h2->GetLoop());

    DSLoop* pLoop = m_pManager->CreateLoop();
    pSolid->GetEdgeList().Remove(h1->GetEdge());
    pFace->GetLoopList().push_back(pLoop);
    pLoop->GetFace() = pFace;
    m_pManager->DeleteEdge(h1->GetEdge());
    h1->GetVertex()->GetHalfEdge() = h2->GetNext();
    h2->GetVertex()->GetHalfEdge() = h1->GetNext();
    for (DSHalfEdge* h = h2; h != h1; h = h->GetPrev())
    {
        h->GetLoop() = pLoop;
    }
    ExchangeHeads(h1, h2);
    RemoveHalfEdge(h1);
    RemoveHalfEdge(h2);
}

void ACTEuler::LKEF(DSSolid* pSolid, DSHalfEdge* h1, DSHalfEdge* h2)
{
    ASSERT(IsIn(pSolid, h1));
    ASSERT(IsIn(pSolid, h2));
    ASSERT(ShareEdge(h1, h2));
    ASSERT(AreTheSides(h1->GetEdge(), h1, h2));
    ASSERT(!h1->GetEdge()->IsRepeated());
    DSFace* pFace2 = h2->GetLoop()->GetFace();
    ASSERT(h1->GetLoop()->GetFace()->GetID() != pFace2->GetID());
    ASSERT(RunOpposite(h1, h2));

    DSLoop* pLoop1 = h1->GetLoop();
    DSLoop* pLoop2 = h2->GetLoop();
    // A ring of one half-edge goes with its edge: its vertex is then found behind the other side.
    DSHalfEdge* pAtStart2 = h1->GetNext() != h1 ? h1->GetNext() : h2->GetNext();
    DSHalfEdge* pAtStart1 = h2->GetNext() != h2 ? h2->GetNext() : pAtStart2;
    pSolid->GetFaceList().Remove(pFace2);
    pSolid->GetEdgeList().Remove(h1->GetEdge());
    pFace2->GetLoopList().Remove(pLoop2);
    for (DSLoop* pLost : pFace2->GetLoopList())
    {
        pLost->GetFace() = nullptr;
    }
    m_pManager->DeleteFace(pFace2);
    m_pManager->DeleteLoop(pLoop2);
    m_pManager->DeleteEdge(h1->GetEdge());

    pLoop1->GetHalfEdge() = h1->GetNext();
    MoveRing(h2, pLoop1);
    h1->GetVertex()->GetHalfEdge() = pAtStart1;
    h2->GetVertex()->GetHalfEdge() = pAtStart2;
    ExchangeHeads(h1, h2);
    RemoveHalfEdge(h1);
    RemoveHalfEdge(h2);
}

void ACTEuler::LKEV(DSSolid* pSolid, DSHalfEdge* h1, DSHalfEdge* h2)
{
    ASSERT(IsIn(pSolid, h1));
    ASSERT(IsIn(pSolid, h2));
    ASSERT(ShareEdge(h1, h2));
    ASSERT(AreTheSides(h1->GetEdge(), h1, h2));
    ASSERT(!h1->GetEdge()->IsRepeated());
    DSVertex* pKeep = h1->GetVertex();
    DSVertex* pKill = h2->GetVertex();
    ASSERT(pKeep != pKill);
    ASSERT(RunOpposite(h1, h2));
    ASSERT(TurnsTo(h1->GetNext(), h2));
    ASSERT(IsInFan(pKill->GetHalfEdge(), h1->GetNext(), h2));

    pSolid->GetEdgeList().Remove(h1->GetEdge());
    pSolid->GetVertexList().Remove(pKill);
    MoveFan(h1->GetNext(), h2, pKeep);
    m_pManager->DeleteEdge(h1->GetEdge());
    m_pManager->DeleteVertex(pKill);
    RemoveHalfEdge(h2);
    pKeep->GetHalfEdge() = RemoveHalfEdge(h1)->GetNext();
}

void ACTEuler::LKFMRH(DSSolid* pSolid, DSFace* pFace1, DSFace* pFace2)
{
    ASSERT(pSolid != nullptr && pFace1 != nullptr && pFace2 != nullptr);
    ASSERT(pFace1->GetSolid() == pSolid && pFace2->GetSolid() == pSolid);
    ASSERT(pFace1 != pFace2);

    pSolid->GetFaceList().Remove(pFace2);
    for (DSLoop* pLoop : pFace2->GetLoopList())
    {
        pFace1->GetLoopList().push_back(pLoop);
        pLoop->GetFace() = pFace1;
    }
    pFace2->GetLoopList().clear();
    m_pManager->DeleteFace(pFace2);
}

void ACTEuler::LKillSolid(DSSolid* pSolid)
{
    ASSERT(pSolid != nullptr);
    for (DSFace* pFace : pSolid->GetFaceList())
    {
        if (pFace != nullptr)
        {
            pFace->GetSolid() = nullptr;
        }
    }
    m_pManager->DeleteSolid(pSolid);
}

DSHalfEdge* ACTEuler::FindHalfEdge(const DSFace* pFace, std::uint32_t v1, std::uint32_t v2) const
{
    return FindIf(pFace, [=](const DSHalfEdge& h)
                  { return h.GetVertex()->GetID() == v1 && h.GetNext()->GetVertex()->GetID() == v2; });
}

DSHalfEdge* ACTEuler::FindHalfEdge(const DSFace* pFace, std::uint32_t v) const
{
    return FindIf(pFace, [=](const DSHalfEdge& h) { return h.GetVertex()->GetID() == v; });
}

DSHalfEdge* ACTEuler::AddHalfEdge(DSEdge* pEdge, DSHalfEdge* h, DSVertex* pVertex, int side)
{
    ASSERT(pEdge != nullptr && h != nullptr && pVertex != nullptr);
    ASSERT(side == 0 || side == 1);
    DSHalfEdge* n = h;
    if (h->GetEdge() != nullptr)
    {
        n = m_pManager->CreateHalfEdge();
        Follow(h->GetPrev(), n);
        Follow(n, h);
    }
    n->GetLoop() = h->GetLoop();
    n->GetEdge() = pEdge;
    n->GetVertex() = pVertex;
    (side == 0 ? pEdge->GetHalfEdge1() : pEdge->GetHalfEdge2()) = n;
    return n;
}

DSHalfEdge* ACTEuler::RemoveHalfEdge(DSHalfEdge* h)
{
    ASSERT(h != nullptr);
    DSLoop* pLoop = h->GetLoop();
    if (h->GetEdge() == nullptr)
    {
        ForgetLone(h);
        m_pManager->DeleteHalfEdge(h);
        return nullptr;
    }
    if (h->GetNext() == h)
    {
        h->GetEdge() = nullptr;
        pLoop->GetHalfEdge() = h;
        return h;
    }
    DSHalfEdge* pBefore = h->GetPrev();
    Follow(pBefore, h->GetNext());
    pLoop->GetHalfEdge() = pBefore;
    m_pManager->DeleteHalfEdge(h);
    return pBefore;
}
}
