#pragma once
#include "DSBrep.h"
#include "TriangleTest.h"

namespace tessarine
{
/// Whether swapping the edge of two half-edges mends the mesh. Each of these has to favour it:
///  - both ends have a valence above 3;
///  - both new triangles have an area (twice that is above 1e-8);
///  - the two triangles are no sharp ridge: more than 120 degrees between their normals, and both opposite corners
///    behind the plane of the other triangle;
///  - no new triangle is folded onto the face beyond one of its sides: more than 120 degrees between their normals, and
///    that face's corner not behind the new triangle;
///  - the centroid of each new triangle lies over one of the two old ones;
///  - the triangles come nearer to equilateral: their longest edges squared over their areas, added up, get smaller by
///    more than 1.
///
/// Needs   As EdgeQuad.
bool ShouldSwap(const DSHalfEdge& h1, const DSHalfEdge& h2);

/// A simpler test, for edges that lie across a fold: there are more than 110 degrees between the normals of the new
/// triangles, one of the opposite corners is not behind the other triangle, and the centroid of a new triangle lies
/// over an old one.
bool ShouldSwapByAngle(const DSHalfEdge& h1, const DSHalfEdge& h2);

/// Whether the foot of a point on the plane of a triangle lies in it, within 1e-4 of its double area.
bool FootInsideTriangle(const smVec3d& p, const TriangleCorners& triangle);
}
