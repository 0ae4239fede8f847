#include "IAFittingCommand.h"
#include "Console.h"
#include "CycleGuard.h"
#include "DSBrep.h"
#include "Failure.h"
#include "FanValences.h"
#include "IAPointCloud.h"
#include "IODatasetText.h"
#include "LookAhead.h"
#include "MANSceneManager.h"
#include "Open3DView.h"
#include "RingWalks.h"
#include "SolidNormalization.h"
#include <algorithm>

namespace tessarine
{
namespace
{
bool HasThreeCorners(const DSHalfEdge* h)
{
    return h->GetNext()->GetNext()->GetNext() == h;
}

/// One loop of three corners or more.
bool IsPolygon(const DSFace& face)
{
    ASSERT(!face.GetLoopList().empty() && face.GetLoopList()[0] != nullptr);
    const DSHalfEdge* h = face.GetLoopList()[0]->GetHalfEdge();
    ASSERT(h != nullptr);
    return face.GetLoopList().size() == 1 && h->GetNext() != h && h->GetNext()->GetNext() != h;
}

[[noreturn]] void RefuseSharedVertex(const DSVertex& vertex)
{
    const smVec3d& place = vertex.GetPosition();
    throw Failure("a model can be fitted to a cloud only where each vertex has one ring of faces, and at (" +
                  std::to_string(place.x) + ", " + std::to_string(place.y) + ", " + std::to_string(place.z) +
                  ") two parts of the surface share one: give each part a vertex of its own in the file and "
                  "import again");
}

/// Each vertex of a closed mesh has one fan, which its walk meets whole: all walks together meet each half-edge.
void DemandSingleFans(const DSSolid& solid, std::size_t nHalfEdges)
{
    std::vector<std::size_t> met;
    std::size_t sum = 0;
    RingWalks::ForEach(
        solid.GetVertexList(), [](const DSHalfEdge& /*h*/) {},
        [&](const DSVertex& /*vertex*/, const VertexRing& ring)
        {
            met.push_back(ring.halfEdges.size());
            sum += met.back();
        });
    if (sum == nHalfEdges)
    {
        return;
    }
    const FanValences fans(solid);
    auto inFan = met.begin();
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        if (pVertex->GetHalfEdge() != nullptr &&
            *inFan != static_cast<std::size_t>(fans.CountLeaving(*pVertex)))
        {
            RefuseSharedVertex(*pVertex);
        }
        ++inFan;
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

/// The number of half-edges around a face; none where one of them has no face across.
std::size_t CountFacesAcross(const DSHalfEdge* pStart)
{
    CycleGuard guard;
    std::size_t count = 0;
    const DSHalfEdge* h = pStart;
    do
    {
        if (!HasFaceAcross(h))
        {
            return 0;
        }
        guard.Visit(h);
        ++count;
        h = h->GetNext();
    } while (h != pStart);
    return count;
}

/// @return the number of the face's half-edges
std::size_t DemandClosedFace(const DSFace& face, bool isTriangleNeeded)
{
    if (!IsPolygon(face))
    {
        throw Failure("a face of the model has fewer than three corners, or a hole: mend it in the file and "
                      "import again");
    }
    const DSHalfEdge* h = face.GetLoopList()[0]->GetHalfEdge();
    if (isTriangleNeeded && !HasThreeCorners(h))
    {
        throw Failure("a model of triangles only can be fitted to a cloud, and a face has another number of "
                      "corners: split such faces in the file and import again");
    }
    const std::size_t nHalfEdges = CountFacesAcross(h);
    if (nHalfEdges == 0)
    {
        throw Failure("a closed model only can be fitted to a cloud, and an edge has no two faces that run "
                      "against each other: mend it in the file and import again");
    }
    return nHalfEdges;
}

bool HasExtent(const DSSolid& solid)
{
    const auto& vertices = solid.GetVertexList();
    const smVec3d& first = vertices[0]->GetPosition();
    return std::any_of(vertices.begin(), vertices.end(),
                       [&first](const DSVertex* pVertex)
                       {
                           const smVec3d& p = pVertex->GetPosition();
                           return p.x != first.x || p.y != first.y || p.z != first.z;
                       });
}
}

void IAFittingCommand::TakeSolid()
{
    ASSERT(m_pElementManager != nullptr && m_pSceneManager != nullptr && m_pView != nullptr);
    m_pSolid = m_pSceneManager->GetCurrentSolid();
    ASSERT_VALUE(m_pSolid != nullptr); // told below what to do
    if (m_pSolid == nullptr || m_pSolid->GetFaceList().empty())
    {
        throw Failure("there is no model with faces to be fitted to a cloud: import one first");
    }
}

void IAFittingCommand::TakeClosedSolid(FaceForm form)
{
    TakeSolid();
    DemandClosed(*m_pSolid, form);
}

void IAFittingCommand::DemandClosed(const DSSolid& solid, FaceForm form)
{
    std::size_t nHalfEdges = 0;
    ForEachFaceLookingAhead(
        solid.GetFaceList(),
        [&nHalfEdges, form](const DSFace* pFace)
        {
            ASSERT(pFace != nullptr);
            nHalfEdges += DemandClosedFace(*pFace, form == FaceForm::Triangles);
        },
        [](const DSHalfEdge& h) { AskForMemory(h.GetEdge(), sizeof(DSEdge)); });
    DemandSingleFans(solid, nHalfEdges);
}

void IAFittingCommand::NormalizeCurrentSolid()
{
    ASSERT(m_pSolid != nullptr && !m_pSolid->GetVertexList().empty());
    if (!HasExtent(*m_pSolid))
    {
        throw Failure("all vertices of the model are at one place: a fit needs a model with an extent");
    }
    NormalizeSolid(*m_pSolid);
}

void IAFittingCommand::ReadPoints(const std::string& fileName)
{
    IODatasetText file(fileName);
    ASSERT_VALUE(file.IsOpen()); // the reader tells what is missing
    IAPointCloud cloud;
    cloud.ReadPointsRepeatingTheLast(file);
    DebugConsole() << "点云大小: " << cloud.m_Points.size() << '\n';
    ASSERT_VALUE(!cloud.m_Points.empty()); // told below which file it is
    m_Points = std::move(cloud.m_Points);
    m_strCloudName = file.GetName();
}

void IAFittingCommand::NormalizePoints()
{
    IAPointCloud cloud;
    cloud.m_Points = std::move(m_Points);
    cloud.Normalize(m_strCloudName);
    m_Points = std::move(cloud.m_Points);
}

void IAFittingCommand::LoadPoints(const std::string& fileName)
{
    ReadPoints(fileName);
    NormalizePoints();
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
