#pragma once
#include "MANBrepElementManager.h"
#include <cstdint>
#include <vector>

namespace tessarine
{
struct FootList;

/// Sets m_nTag of each face with two feet or more to the one nearest to its centroid, the earliest of equal ones; of
/// all others to -1.
///
/// Leaves  The cloud points of these feet marked in `isPointDone`.
/// Kept    A face with a single foot gets none.
void SelectFaceFeet(DSSolid& solid, const FootList& feet, std::vector<bool>& isPointDone);

/// What the dual of a solid is built from: a vertex for each face with a selected foot, a polygon around each vertex
/// with three such faces or more.
struct DualMesh
{
    PositionList positions;
    IndexList corners; ///< one-based
    IndexList faceSizes;
    std::vector<std::int32_t> cloudIndices; ///< for each position, of its foot's cloud point
};

/// Needs   Selected feet, and vertices whose own half-edge leads round a closed fan, or that have none (asserted).
/// Kept    Foot 0 is a vertex of the dual, and a corner of no polygon.
DualMesh MakeDualMesh(const DSSolid& solid, const FootList& feet);
}
