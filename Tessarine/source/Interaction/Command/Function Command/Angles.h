#pragma once
#include "smVec3d.h"
#include <algorithm>
#include <cmath>

namespace tessarine
{
class DSSolid;

/// Between unit vectors, in radians. Rounding may carry their product a little beyond 1.
inline double AngleBetween(const smVec3d& a, const smVec3d& b)
{
    return std::acos(std::clamp(a.Dot(b), -1.0, 1.0));
}

/// The angles of all corners around the vertices, in radians. Vertices without faces have none.
///
/// Needs   Edges with length, and vertices that can be walked around.
double SumCornerAngles(const DSSolid& solid);

/// Whether the sum is that of a closed surface without handles (Gauss and Bonnet), within 1e-6.
///
/// Kept    Pi has ten decimals, so that the answer is false on large spheres. A vertex without faces makes it false.
bool IsAngleSumOfSphere(const DSSolid& solid, double sum);
}
