#pragma once
#include "smVec3d.h"
#include <array>

namespace tessarine
{
using TriangleCorners = std::array<smVec3d, 3>;

/// Where a point lies in relation to a triangle, by areas: those of the three triangles that it makes with the sides
/// add up to the triangle's exactly where it is within.
struct TriangleTest
{
    bool isInside = false;
    smVec3d barycentric; ///< of the three corners; no finite numbers where the triangle has no area
    double doubleArea = 0.0;
};

/// Kept    The tolerance is absolute, so that a very small triangle takes in points well outside of it.
TriangleTest PointInTriangle(const smVec3d& p, const TriangleCorners& triangle, double tolerance);

/// Whether two of the three areas alone are too large. Where it says so, PointInTriangle is false: rounding keeps the
/// order of sums.
bool IsClearlyOutside(const smVec3d& p, const TriangleCorners& triangle, double doubleArea, double tolerance);

/// Whether the way from a to b meets a triangle other than at a itself, within 1e-5 of the area.
bool SegmentHitsTriangle(const TriangleCorners& triangle, const smVec3d& normal, const smVec3d& a,
                         const smVec3d& b);

/// The foot of a point on a plane.
inline smVec3d ProjectOntoPlane(const smVec3d& p, const smVec3d& centre, const smVec3d& normal)
{
    return (p - centre) - ((p - centre).Dot(normal)) * normal + centre;
}
}
