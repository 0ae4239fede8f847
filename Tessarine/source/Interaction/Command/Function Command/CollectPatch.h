#pragma once
#include <vector>

namespace tessarine
{
class DSFace;
class DSVertex;

/// The control vertices of a triangle's patch: its irregular corner C[0] (the first corner where all have valence 6),
/// the N vertices around it from the end of its half-edge on, so that the triangle is C[0], C[1], C[N]; and the five
/// beyond the edge across.
///
/// Needs   Triangles all around the three corners, which are not on a boundary; at most one corner of another valence
///         than 6, and that of 3 or more (all asserted).
/// @param vertices takes N + 6
/// @return N
int CollectPatch(const DSFace& face, std::vector<DSVertex*>& vertices);
}
