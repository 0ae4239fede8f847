#include "TriangleTest.h"

namespace tessarine
{
TriangleTest PointInTriangle(const smVec3d& p, const TriangleCorners& triangle, double tolerance)
{
    const smVec3d& t0 = triangle[0];
    const smVec3d& t1 = triangle[1];
    const smVec3d& t2 = triangle[2];
    const double area = (t1 - t0).Cross(t2 - t0).Length();
    const double a0 = (t1 - p).Cross(t2 - p).Length();
    const double a1 = (t2 - p).Cross(t0 - p).Length();
    const double a2 = (t0 - p).Cross(t1 - p).Length();
    TriangleTest test;
    test.isInside = std::abs(a0 + a1 + a2 - area) < tolerance;
    test.barycentric = {a0 / area, a1 / area, a2 / area};
    test.doubleArea = area;
    return test;
}

bool IsClearlyOutside(const smVec3d& p, const TriangleCorners& triangle, double doubleArea, double tolerance)
{
    const smVec3d toT2 = triangle[2] - p;
    const double a0 = (triangle[1] - p).Cross(toT2).Length();
    if (a0 - doubleArea >= tolerance)
    {
        return true;
    }
    const double a1 = toT2.Cross(triangle[0] - p).Length();
    return a0 + a1 - doubleArea >= tolerance;
}

bool SegmentHitsTriangle(const TriangleCorners& triangle, const smVec3d& normal, const smVec3d& a,
                         const smVec3d& b)
{
    constexpr double kTolerance = 0.00001;
    const double t = (triangle[0] - a).Dot(normal) / (b - a).Dot(normal);
    return t >= 0.0 && t <= 1.0 && std::abs(t) >= kTolerance &&
           PointInTriangle(a + t * (b - a), triangle, kTolerance).isInside;
}
}
