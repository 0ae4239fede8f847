#include "IAFittingCommand.h"
#include "Console.h"
#include "DSBrep.h"
#include "Failure.h"
#include "IAPointCloud.h"
#include "IODatasetText.h"
#include "MANSceneManager.h"
#include "Open3DView.h"
#include "VertexWalk.h"
#include <unordered_map>

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

/// Each vertex of a closed mesh has one fan, which its walk meets whole.
void DemandSingleFans(const DSSolid& solid)
{
    std::unordered_map<const DSVertex*, std::size_t> unmet; // corners that no walk has met
    for (const DSFace* pFace : solid.GetFaceList())
    {
        const DSHalfEdge* h = pFace->GetLoopList()[0]->GetHalfEdge();
        for (const DSVertex* corner : {h->GetVertex(), h->GetNext()->GetVertex(), h->GetPrev()->GetVertex()})
        {
            ++unmet[corner];
        }
    }
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        if (pVertex->GetHalfEdge() != nullptr)
        {
            for (VertexWalk walk(pVertex->GetHalfEdge()); !walk.IsAtEnd(); walk.Step())
            {
                --unmet[walk.Get()->GetVertex()];
            }
        }
        if (unmet[pVertex] != 0)
        {
            const smVec3d& place = pVertex->GetPosition();
            throw Failure(
                "a model can be fitted to a cloud only where each vertex has one ring of faces, and at (" +
                std::to_string(place.x) + ", " + std::to_string(place.y) + ", " + std::to_string(place.z) +
                ") two parts of the surface share one: give each part a vertex of its own in the file and "
                "import again");
        }
    }
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

void DemandClosedTriangles(const DSSolid& solid)
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
    DemandSingleFans(solid);
}
}

void IAFittingCommand::TakeClosedSolid()
{
    ASSERT(m_pElementManager != nullptr && m_pSceneManager != nullptr && m_pView != nullptr);
    m_pSolid = m_pSceneManager->GetCurrentSolid();
    ASSERT_VALUE(m_pSolid != nullptr); // told below what to do
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
    ASSERT_VALUE(!cloud.m_Points.empty()); // told below which file it is
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
