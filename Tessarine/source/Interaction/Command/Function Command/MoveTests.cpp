#include "MoveTests.h"
#include "Angles.h"
#include "Console.h"
#include "Degree.h"
#include "EdgeQuad.h"
#include "TriangleTest.h"
#include "VertexWalk.h"

namespace tessarine
{
namespace
{
/// A vertex stands elsewhere while it lives.
class TrialPosition
{
public:
    TrialPosition(DSVertex& vertex, const smVec3d& target) : m_Vertex(vertex), m_Before(vertex.GetPosition())
    {
        vertex.GetPosition() = target;
    }
    ~TrialPosition() { m_Vertex.GetPosition() = m_Before; }
    TrialPosition(const TrialPosition&) = delete;
    TrialPosition& operator=(const TrialPosition&) = delete;

private:
    DSVertex& m_Vertex;
    smVec3d m_Before;
};

const DSHalfEdge* GetMate(const DSHalfEdge* h)
{
    const DSHalfEdge* pMate = h->GetTwin();
    ASSERT(pMate != nullptr);
    return pMate;
}

const smVec3d& GetEnd(const DSHalfEdge* h)
{
    return h->GetNext()->GetVertex()->GetPosition();
}

/// Whether the face beyond the opposite edge has its corner not behind the face at the vertex.
bool IsNotBehind(const DSHalfEdge* pSpoke, const DSHalfEdge* pBeyond, const smVec3d& normal)
{
    return (pBeyond->GetPrev()->GetVertex()->GetPosition() - GetEnd(pSpoke)).Dot(normal) >= 0.0;
}

bool FoldsAt(DSVertex& vertex, const smVec3d& target, double limit, bool behindIsNoFold)
{
    const TrialPosition trial(vertex, target);
    for (VertexWalk walk(vertex.GetHalfEdge()); !walk.IsAtEnd(); walk.Step())
    {
        const DSHalfEdge* h = walk.Get();
        const DSHalfEdge* pBeyond = GetMate(h->GetNext());
        const smVec3d normal = GetFaceAt(h).ComputeNormal();
        if (AngleBetween(normal, GetFaceAt(pBeyond).ComputeNormal()) > limit &&
            (!behindIsNoFold || IsNotBehind(h, pBeyond, normal)))
        {
            return true;
        }
    }
    return false;
}

TriangleCorners GetCorners(const DSHalfEdge* h)
{
    return {h->GetVertex()->GetPosition(), h->GetNext()->GetVertex()->GetPosition(),
            h->GetPrev()->GetVertex()->GetPosition()};
}
}

bool WouldFold(DSVertex& vertex, const smVec3d& target)
{
    constexpr double kLimit = 160.0 * kDegree;
    return FoldsAt(vertex, target, kLimit, false);
}

bool ProjectsIntoRing(const DSVertex& vertex, const smVec3d& point)
{
    constexpr double kTolerance = 0.00001;
    for (VertexWalk walk(vertex.GetHalfEdge()); !walk.IsAtEnd(); walk.Step())
    {
        const DSFace& face = GetFaceAt(walk.Get());
        const smVec3d foot = ProjectOntoPlane(point, face.CalcCentroid(), face.ComputeNormal());
        if (PointInTriangle(foot, GetCorners(walk.Get()), kTolerance).isInside)
        {
            return true;
        }
    }
    return false;
}

DSEdge* CheckVertexMove(DSVertex& vertex, const smVec3d& target)
{
    constexpr double kLimit = 120.0 * kDegree;
    constexpr double kFarthest = 100.0;
    if (!FoldsAt(vertex, target, kLimit, true))
    {
        return nullptr;
    }
    DebugConsole() << "cannot update this vertex..." << '\n';
    DSEdge* pNearest = nullptr;
    double nearest = kFarthest;
    for (VertexWalk walk(vertex.GetHalfEdge()); !walk.IsAtEnd(); walk.Step())
    {
        const double distance = (GetEnd(walk.Get()) - target).Length();
        if (distance < nearest)
        {
            nearest = distance;
            pNearest = walk.Get()->GetEdge();
        }
    }
    return pNearest;
}
}
