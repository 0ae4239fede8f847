#include "IASelectCommand.h"
#include "Assert.h"
#include "FaceRuns.h"
#include "FaceWalk.h"
#include "MANSceneManager.h"
#include "Open3DCamera.h"
#include "PickRay.h"

namespace tessarine
{
namespace
{
/// No vertex or edge is found further from the ray than this.
constexpr double kFurthestElement = 100000.0;

template <class TVisit>
void ForEachVisibleSolid(const MANSceneGroup& group, const TVisit& visit)
{
    if (!group.IsVisible())
    {
        return;
    }
    for (const MANSceneNode* pChild : group.GetChildren())
    {
        if (MANSceneManager::GetKind(pChild->GetID()) == NodeKind::Group)
        {
            ForEachVisibleSolid(static_cast<const MANSceneGroup&>(*pChild), visit);
            continue;
        }
        const DSSolid* pSolid = static_cast<const MANSceneLeaf&>(*pChild).GetSolid();
        if (pChild->IsVisible() && pSolid != nullptr && pSolid->IsVisible())
        {
            visit(*pSolid);
        }
    }
}

/// The line of sight, for the distances of what lies beside it.
struct SightLine
{
    smVec3d eye;
    smVec3d direction;

    double GetDistance(const smVec3d& point) const
    {
        const double r = (point - eye).Dot(direction) / direction.Dot(direction);
        return ((eye - point) + direction * r).Length();
    }

    /// From the edge between two points: from an end, where the nearest point of its line lies beyond it.
    double GetDistance(const smVec3d& start, const smVec3d& end) const
    {
        const smVec3d side = end - start;
        const double a = direction.Dot(direction);
        const double c = side.Dot(side);
        const double b = direction.Dot(side);
        const double e = direction.Dot(eye - start);
        const double f = side.Dot(eye - start);
        const double den = b * b - a * c;
        const double s = (b * e - a * f) / den;
        const double t = (c * e - b * f) / den;
        if (s < 0.0)
        {
            return GetDistance(start);
        }
        if (s > 1.0)
        {
            return GetDistance(end);
        }
        return ((eye + direction * t) - start - side * s).Length();
    }
};
}

void IASelectCommand::Execute()
{
    ASSERT(m_pCamera != nullptr);
    ASSERT(m_pScene != nullptr);
    ASSERT(m_pScene->GetRootGroup() != nullptr);
    m_NearPoint = m_pCamera->ScreenToNearPlane(m_nMouseX, m_nMouseY);
    m_EyePoint = m_pCamera->GetPosition();
    m_ViewDirection = m_pCamera->GetViewVector();
    m_ViewDirection.Normalize();
    m_bHit = false;
    m_nElementID = 0;
    m_pHitFace = nullptr;
    const PickRay ray(m_EyePoint, m_NearPoint);
    ForEachVisibleSolid(*m_pScene->GetRootGroup(), [&](const DSSolid& solid) { PickSolid(solid, ray); });
    m_bHit = m_pHitFace != nullptr; // what lies beyond the far plane alone is no hit
    if (m_bHit)
    {
        PickElement();
    }
}

void IASelectCommand::MakeFaceRuns() const
{
    if (m_pFaceRuns != nullptr && m_pScene->GetRootGroup() != nullptr)
    {
        ForEachVisibleSolid(*m_pScene->GetRootGroup(),
                            [this](const DSSolid& solid) { m_pFaceRuns->Get(solid); });
    }
}

void IASelectCommand::PickSolid(const DSSolid& solid, const PickRay& ray)
{
    double best = m_pCamera->GetFar();
    if (m_pFaceRuns == nullptr)
    {
        for (DSFace* pFace : solid.GetFaceList())
        {
            PickFace(pFace, ray, best);
        }
        return;
    }
    for (const FaceRun& run : m_pFaceRuns->Get(solid))
    {
        if (ray.MissesSurely(run))
        {
            continue;
        }
        for (auto face = run.begin; face != run.end; ++face)
        {
            PickFace(*face, ray, best);
        }
    }
}

/// @param best depth of what was hit so far
void IASelectCommand::PickFace(DSFace* face, const PickRay& ray, double& best)
{
    if (face == nullptr || !ray.GoesThrough(*face))
    {
        return;
    }
    const smVec3d& direction = ray.GetDirection();
    const smVec3d n = face->CalcNormal();
    const smVec3d q = face->CalcCentroid();
    const double s = (q - ray.GetEye()).Dot(n) / direction.Dot(n);
    const double depth = direction.Dot(m_ViewDirection) * s;
    if (depth < best)
    {
        m_pHitFace = face;
        best = depth;
    }
}

void IASelectCommand::PickElement()
{
    switch (m_nKind)
    {
    case ElementKind::Edge: return PickEdge();
    case ElementKind::Face: m_nElementID = m_pHitFace->GetID(); return;
    case ElementKind::Vertex: return PickVertex();
    default: return PickOwnerSolid();
    }
}

void IASelectCommand::PickOwnerSolid()
{
    ASSERT(m_pHitFace->GetSolid() != nullptr);
    m_nElementID = m_pHitFace->GetSolid()->GetID();
}

void IASelectCommand::PickVertex()
{
    const SightLine line{m_EyePoint, m_NearPoint - m_EyePoint};
    double best = kFurthestElement;
    const DSVertex* pNearest = nullptr;
    ForEachHalfEdge(*m_pHitFace,
                    [&](const DSHalfEdge& halfEdge)
                    {
                        const double distance = line.GetDistance(halfEdge.GetVertex()->GetPosition());
                        if (distance < best)
                        {
                            best = distance;
                            pNearest = halfEdge.GetVertex();
                        }
                    });
    m_bHit = pNearest != nullptr;
    m_nElementID = m_bHit ? pNearest->GetID() : 0;
}

void IASelectCommand::PickEdge()
{
    const SightLine line{m_EyePoint, m_NearPoint - m_EyePoint};
    double best = kFurthestElement;
    const DSEdge* pNearest = nullptr;
    ForEachHalfEdge(*m_pHitFace,
                    [&](const DSHalfEdge& halfEdge)
                    {
                        const double distance =
                            line.GetDistance(halfEdge.GetVertex()->GetPosition(),
                                             halfEdge.GetNext()->GetVertex()->GetPosition());
                        if (distance < best && halfEdge.GetEdge() != nullptr)
                        {
                            best = distance;
                            pNearest = halfEdge.GetEdge();
                        }
                    });
    m_bHit = pNearest != nullptr;
    m_nElementID = m_bHit ? pNearest->GetID() : 0;
}
}
