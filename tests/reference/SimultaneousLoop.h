#pragma once
#include "Meshes.h"
#include <array>
#include <vector>

namespace tessarine
{
/// A step of Loop subdivision that makes all new points from the old ones, of a closed mesh of triangles.
///
/// The triangles of face f are 4f (its first corner) to 4f + 3 (its middle); the old vertices keep their numbers.
IndexedMesh SubdivideSimultaneously(const IndexedMesh& mesh);

/// A vertex within a triangle, many steps later.
struct LimitVertex
{
    double v;
    double w;
    smVec3d point;
};

/// Where the vertices that so many steps make within a triangle end: v runs to its second corner, w to its third. The
/// first corner, which may be irregular, is left out.
std::vector<LimitVertex> FindLimitVertices(const IndexedMesh& mesh, std::size_t face, int steps);
}
