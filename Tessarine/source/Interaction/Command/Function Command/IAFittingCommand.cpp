#include "IAFittingCommand.h"
#include "Console.h"
#include "DSBrep.h"
#include "Failure.h"
#include "IAPointCloud.h"
#include "IODatasetText.h"
#include "MANSceneManager.h"
#include "Open3DView.h"

namespace tessarine
{
namespace
{
bool IsSingleTriangle(const DSFace& face)
{
    ASSERT(!face.GetLoopList().empty() && face.GetLoopList()[0] != nullptr);
    const DSHalfEdge* h = face.GetLoopList()[0]->GetHalfEdge();
    ASSERT(h != nullptr);
    return face.GetLoopList().size() == 1 && h->GetNext() != h && h->GetNext()->GetNext() != h &&
           h->GetNext()->GetNext()->GetNext() == h;
}

/// Two faces, which run against each other along the edge; no third one has displaced this half-edge.
bool HasFaceAcross(const DSHalfEdge* h)
{
    const DSEdge* pEdge = h->GetEdge();
    if (pEdge == nullptr || pEdge->IsRepeated() || pEdge->GetHalfEdge2() == nullptr)
    {
        return false;
    }
    const bool isFirst = pEdge->GetHalfEdge1() == h;
    const DSHalfEdge* pMate = isFirst ? pEdge->GetHalfEdge2() : pEdge->GetHalfEdge1();
    return (isFirst || pEdge->GetHalfEdge2() == h) && pMate->GetVertex() == h->GetNext()->GetVertex() &&
           pMate->GetNext()->GetVertex() == h->GetVertex();
}
}

void IAFittingCommand::DemandClosedTriangles(const DSSolid& solid)
{
    for (const DSFace* pFace : solid.GetFaceList())
    {
        ASSERT(pFace != nullptr);
        if (!IsSingleTriangle(*pFace))
        {
            throw Failure(
                "a model of triangles only can be fitted to a cloud, and a face has another number of "
                "corners: split such faces in the file and import again");
        }
        const DSHalfEdge* h = pFace->GetLoopList()[0]->GetHalfEdge();
        if (!HasFaceAcross(h) || !HasFaceAcross(h->GetNext()) || !HasFaceAcross(h->GetPrev()))
        {
            throw Failure(
                "a closed model only can be fitted to a cloud, and an edge has no two faces that run "
                "against each other: mend it in the file and import again");
        }
    }
}

void IAFittingCommand::TakeClosedSolid()
{
    ASSERT(m_pElementManager != nullptr && m_pSceneManager != nullptr && m_pView != nullptr);
    m_pSolid = m_pSceneManager->GetCurrentSolid();
    if (m_pSolid == nullptr || m_pSolid->GetFaceList().empty())
    {
        throw Failure("there is no model with faces to be fitted to a cloud: import one first");
    }
    DemandClosedTriangles(*m_pSolid);
}

void IAFittingCommand::LoadPoints(const std::string& fileName)
{
    IODatasetText file(fileName);
    ASSERT_VALUE(file.IsOpen()); // the reader tells what is missing
    IAPointCloud cloud;
    cloud.ReadPointsRepeatingTheLast(file);
    DebugConsole() << "点云大小: " << cloud.m_Points.size() << '\n';
    cloud.Normalize(file.GetName());
    m_Points = std::move(cloud.m_Points);
}

void IAFittingCommand::ShowCloud()
{
    m_pView->GetPointCloud() = m_Points;
    std::vector<smVec3d>& projected = m_pView->GetProjectedPoints();
    const std::size_t known = std::min(projected.size(), m_Points.size());
    projected.resize(known);
    projected.insert(projected.end(), m_Points.begin() + static_cast<std::ptrdiff_t>(known), m_Points.end());
}
}
