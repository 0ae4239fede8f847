#pragma once
#include "smVec3d.h"
#include <vector>

namespace tessarine
{
class DSSolid;
class MANBrepElementManager;

/// Cuts corners off the faces with more than three until only triangles are left: the flattest corner first, and of
/// four the sharpest; the earliest of equal ones.
///
/// Needs   Faces of one loop (asserted).
/// Leaves  Normals as they are.
/// Cost    n log n in the corners of a face.
void TriangulateFaces(MANBrepElementManager& elements, DSSolid& solid);

/// Divides each face with more than three corners and a selected foot (m_nTag) into triangles around a new vertex there.
///
/// Needs   Faces of one loop; tags below the number of feet (asserted).
/// Leaves  Normals as they are.
void StarFaces(MANBrepElementManager& elements, DSSolid& solid, const std::vector<smVec3d>& feet);
}
