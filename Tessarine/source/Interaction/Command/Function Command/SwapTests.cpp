#include "SwapTests.h"
#include "Angles.h"
#include "Degree.h"
#include "EdgeQuad.h"
#include "VertexWalk.h"

namespace tessarine
{
namespace
{
smVec3d ToUnit(smVec3d v)
{
    v.Normalize();
    return v;
}

bool HasMoreThanThreeEdges(const DSVertex& vertex)
{
    int count = 0;
    for (VertexWalk walk(vertex.GetHalfEdge()); !walk.IsAtEnd() && count <= 3; walk.Step())
    {
        ++count;
    }
    return count > 3;
}

bool HaveNewTrianglesAnArea(const EdgeQuad& quad)
{
    constexpr double kLeast = 1e-8;
    return quad.newNormal1.Length() > kLeast && quad.newNormal2.Length() > kLeast;
}

/// Whether one of the opposite corners is not behind the other triangle.
bool IsNoRidge(const EdgeQuad& quad)
{
    return (quad.d - quad.c).Dot(quad.normal1) >= 0.0 || (quad.c - quad.d).Dot(quad.normal2) >= 0.0;
}

constexpr double kFold = 120.0 * kDegree;

/// Whether the face beyond a side turns back over a new triangle.
bool IsFoldedOnto(const smVec3d& newNormal, const DSHalfEdge* pBeyond)
{
    const smVec3d way = pBeyond->GetPrev()->GetVertex()->GetPosition() - pBeyond->GetVertex()->GetPosition();
    return AngleBetween(newNormal, GetFaceAt(pBeyond).ComputeNormal()) > kFold && way.Dot(newNormal) >= 0.0;
}

bool IsFoldedAnywhere(const EdgeQuad& quad)
{
    const smVec3d m1 = ToUnit(quad.newNormal1);
    const smVec3d m2 = ToUnit(quad.newNormal2);
    return IsFoldedOnto(m1, quad.beyondAC) || IsFoldedOnto(m2, quad.beyondBC) ||
           IsFoldedOnto(m2, quad.beyondBD) || IsFoldedOnto(m1, quad.beyondAD);
}

bool LiesOverOldTriangles(const TriangleCorners& triangle, const EdgeQuad& quad)
{
    const smVec3d centroid = (triangle[0] + triangle[1] + triangle[2]) / 3.0;
    return FootInsideTriangle(centroid, {quad.a, quad.b, quad.c}) ||
           FootInsideTriangle(centroid, {quad.b, quad.a, quad.d});
}

/// The longest edge squared over the area; infinite without an area.
double MeasureShape(const TriangleCorners& triangle)
{
    const smVec3d ab = triangle[1] - triangle[0];
    const smVec3d bc = triangle[2] - triangle[1];
    const smVec3d ca = triangle[0] - triangle[2];
    const double longest = std::max({ab.Dot(ab), bc.Dot(bc), ca.Dot(ca)});
    return longest / (0.5 * ab.Cross(bc).Length());
}

bool MakesBetterShapes(const EdgeQuad& quad)
{
    constexpr double kLeastImprovement = 1.0;
    const double now = MeasureShape({quad.a, quad.b, quad.c}) + MeasureShape({quad.b, quad.a, quad.d});
    const double after = MeasureShape({quad.a, quad.d, quad.c}) + MeasureShape({quad.b, quad.c, quad.d});
    return now - after > kLeastImprovement;
}
}

bool FootInsideTriangle(const smVec3d& p, const TriangleCorners& triangle)
{
    constexpr double kTolerance = 0.0001;
    const smVec3d centroid = (triangle[0] + triangle[1] + triangle[2]) / 3.0;
    smVec3d normal = (triangle[1] - triangle[0]).Cross(triangle[2] - triangle[1]);
    if (!(normal.Length() > smVec3d_zero))
    {
        return false;
    }
    normal.Normalize();
    return PointInTriangle(ProjectOntoPlane(p, centroid, normal), triangle, kTolerance).isInside;
}

bool ShouldSwap(const DSHalfEdge& h1, const DSHalfEdge& h2)
{
    if (!HasMoreThanThreeEdges(*h1.GetVertex()) || !HasMoreThanThreeEdges(*h2.GetVertex()))
    {
        return false;
    }
    const EdgeQuad quad(h1, h2);
    return HaveNewTrianglesAnArea(quad) &&
           (AngleBetween(quad.normal1, quad.normal2) <= kFold || IsNoRidge(quad)) &&
           !IsFoldedAnywhere(quad) && LiesOverOldTriangles({quad.a, quad.d, quad.c}, quad) &&
           LiesOverOldTriangles({quad.b, quad.c, quad.d}, quad) && MakesBetterShapes(quad);
}

bool ShouldSwapByAngle(const DSHalfEdge& h1, const DSHalfEdge& h2)
{
    constexpr double kAcross = 110.0 * kDegree;
    const EdgeQuad quad(h1, h2);
    return quad.newNormal1.Length() > smVec3d_zero && quad.newNormal2.Length() > smVec3d_zero &&
           AngleBetween(ToUnit(quad.newNormal1), ToUnit(quad.newNormal2)) > kAcross && IsNoRidge(quad) &&
           (LiesOverOldTriangles({quad.a, quad.d, quad.c}, quad) ||
            LiesOverOldTriangles({quad.b, quad.c, quad.d}, quad));
}
}
