#pragma once
#include "Meshes.h"

namespace tessarine
{
/// A closed body with a quadrilateral of the triangles a, b, c and b, a, d in the middle of its top, which is the
/// rectangle from (-4, -3) to (4, 3) at z = 0. Vertices 1 to 4 are a to d.
IndexedMesh QuadOnABody(const smVec3d& a, const smVec3d& b, const smVec3d& c, const smVec3d& d);
}
