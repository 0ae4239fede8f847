#include "IATriangleQualityCommand.h"
#include "Assert.h"
#include "DSBrep.h"
#include "MANSceneManager.h"
#include "SolidNormalization.h"
#include <algorithm>

namespace tessarine
{
namespace
{
void CalcNormalOfFace(const DSHalfEdge& halfEdge)
{
    ASSERT(halfEdge.GetLoop() != nullptr && halfEdge.GetLoop()->GetFace() != nullptr);
    halfEdge.GetLoop()->GetFace()->CalcNormal();
}
}

double TriangleQuality(const smVec3d& p, const smVec3d& q, const smVec3d& r)
{
    const smVec3d pq = q - p;
    const smVec3d pr = r - p;
    const smVec3d qr = r - q;
    return std::max({pq.Dot(pq), pr.Dot(pr), qr.Dot(qr)}) / pq.Cross(pr).Length();
}

void IATriangleQualityCommand::Execute()
{
    ASSERT(m_pSceneManager != nullptr);
    m_pSolid = m_pSceneManager->GetCurrentSolid();
    NormalizeSolid();
}

void IATriangleQualityCommand::NormalizeSolid()
{
    ASSERT(m_pSolid != nullptr);
    tessarine::NormalizeSolid(*m_pSolid);
}

void IATriangleQualityCommand::EvaluateEdges()
{
    ASSERT(m_pSolid != nullptr);
    for (const DSEdge* pEdge : m_pSolid->GetEdgeList())
    {
        ASSERT(pEdge != nullptr);
        EvaluateEdge(*pEdge);
        CalcNormalOfFace(*pEdge->GetHalfEdge1());
        CalcNormalOfFace(*pEdge->GetHalfEdge2());
    }
}

IATriangleQualityCommand::EdgeQuality IATriangleQualityCommand::EvaluateEdge(const DSEdge& edge)
{
    const DSHalfEdge* h1 = edge.GetHalfEdge1();
    const DSHalfEdge* h2 = edge.GetHalfEdge2();
    ASSERT(h1 != nullptr);
    ASSERT(h2 != nullptr);
    const smVec3d& a = h1->GetVertex()->GetPosition();
    const smVec3d& b = h2->GetVertex()->GetPosition();
    const smVec3d& c = h1->GetPrev()->GetVertex()->GetPosition();
    const smVec3d& d = h2->GetPrev()->GetVertex()->GetPosition();
    return {TriangleQuality(a, b, c) + TriangleQuality(a, b, d),
            TriangleQuality(a, c, d) + TriangleQuality(b, c, d)};
}
}
