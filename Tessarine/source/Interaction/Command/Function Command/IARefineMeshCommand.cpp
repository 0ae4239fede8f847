#include "IARefineMeshCommand.h"
#include "Angles.h"
#include "CycleGuard.h"
#include "ErrorLine.h"
#include "Failure.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "Platform.h"
#include "SwapTests.h"
#include "ZeroEdgeRemoval.h"
#include <cmath>
#include <string>

namespace tessarine
{
namespace
{
bool Swaps(int nMode)
{
    return nMode == 1 || nMode == 3;
}

bool IsBetweenTwoFaces(const DSHalfEdge* h)
{
    const DSEdge* pEdge = h->GetEdge();
    if (pEdge == nullptr || pEdge->IsRepeated() || pEdge->GetHalfEdge2() == nullptr)
    {
        return false;
    }
    const DSHalfEdge* pMate = h->GetTwin();
    return pMate != nullptr && pMate->GetVertex() == h->GetNext()->GetVertex() &&
           h->GetVertex() == pMate->GetNext()->GetVertex();
}

void DemandClosedMesh(const DSSolid& solid)
{
    std::size_t others = 0;
    for (const DSFace* pFace : solid.GetFaceList())
    {
        ASSERT(pFace != nullptr && !pFace->GetLoopList().empty());
        CycleGuard guard;
        const DSHalfEdge* h = pFace->GetLoopList()[0]->GetHalfEdge();
        do
        {
            guard.Visit(h);
            others += IsBetweenTwoFaces(h) ? 0 : 1;
            h = h->GetNext();
        } while (h != pFace->GetLoopList()[0]->GetHalfEdge());
    }
    if (others != 0)
    {
        throw Failure("optimisation swaps edges between two faces, and the model has " +
                      std::to_string(others) +
                      " sides of faces without just one other face that runs against them (holes, faces "
                      "turned over, more than two faces at an edge): mend these and import again");
    }
}

void DemandFinitePositions(const DSSolid& solid)
{
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        ASSERT(pVertex != nullptr);
        const smVec3d& p = pVertex->GetPosition();
        if (!std::isfinite(p.x) || !std::isfinite(p.y) || !std::isfinite(p.z))
        {
            throw Failure(
                "a vertex stands at a position that is not a finite number, where no edge can be measured: "
                "mend it in the file and import again");
        }
    }
}
}

void IARefineMeshCommand::TakeSolid()
{
    ASSERT(m_pElementManager != nullptr);
    ASSERT(m_pSceneManager != nullptr);
    m_pSolid = m_pSceneManager->GetCurrentSolid();
    if (m_pSolid == nullptr)
    {
        throw Failure("optimisation needs a model: import one first");
    }
}

void IARefineMeshCommand::Execute()
{
    TakeSolid();
    if (Swaps(m_nMode))
    {
        SwapByPriority();
    }
    else if (m_nMode == 2)
    {
        ZeroEdgeRemoval(m_pElementManager, *m_pSolid).Run();
    }
    else
    {
        PrintErrorLine(
            "optimisation knows the modes 1 and 3, which swap edges, and 2, which removes edges without "
            "length; mode " +
            std::to_string(m_nMode) + " computes normals alone");
    }
    m_pSolid->CalcNormals();
}

double IARefineMeshCommand::EdgeSwapGain(DSEdge* pEdge)
{
    return Swaps(m_nMode) ? EdgeSwaps(m_pElementManager).GetGain(pEdge) : 0.0;
}

DSEdge* IARefineMeshCommand::SwapEdge(DSEdge* pEdge)
{
    return EdgeSwaps(m_pElementManager).Swap(pEdge);
}

void IARefineMeshCommand::SwapByPriority()
{
    DemandClosedMesh(*m_pSolid);
    DemandFinitePositions(*m_pSolid);
    EdgeSwaps(m_pElementManager).SwapByPriority(*m_pSolid, kOptimizingSwaps);
}

void IARefineMeshCommand::SwapEdges()
{
    TakeSolid();
    DemandClosedMesh(*m_pSolid);
    EdgeSwaps(m_pElementManager).SwapWhere(*m_pSolid, ShouldSwap);
}

bool IARefineMeshCommand::CheckGenus()
{
    ASSERT(m_pSceneManager != nullptr);
    const DSSolid* pSolid = m_pSceneManager->GetCurrentSolid();
    ASSERT(pSolid != nullptr);
    const double sum = SumCornerAngles(*pSolid);
    ShowMessage(std::to_string(sum));
    return IsAngleSumOfSphere(*pSolid, sum);
}
}
