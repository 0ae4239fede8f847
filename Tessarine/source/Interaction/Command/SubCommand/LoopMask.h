#pragma once
#include "smVec3d.h"

/// The masks that both subdivisions share, with J. Warren's weights.
namespace tessarine::LoopMask
{
/// Where a vertex with faces all around goes.
/// @param neighbours the sum of the n vertices at the other ends of its edges
inline smVec3d OfVertex(const smVec3d& p, const smVec3d& neighbours, int n)
{
    return n <= 3 ? (1.0 - 3.0 * n / 16.0) * p + 3.0 * neighbours / 16.0
                  : 5.0 * p / 8.0 + 3.0 * neighbours / (8.0 * n);
}

/// The new vertex of an edge between two faces.
/// @param a, b its ends
/// @param c, d the corners opposite to it
inline smVec3d OfInnerEdge(const smVec3d& a, const smVec3d& b, const smVec3d& c, const smVec3d& d)
{
    return (3.0 * (a + b) + (c + d)) / 8.0;
}
}
