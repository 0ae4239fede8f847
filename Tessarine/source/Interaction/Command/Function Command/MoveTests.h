#pragma once
#include "smVec3d.h"

namespace tessarine
{
class DSEdge;
class DSVertex;

/// What moving a vertex would do to the faces around it. A test that tries a position puts the old one back; normals
/// are computed from the positions as they stand, and none is stored.
///
/// Needs   Vertices with faces all around them (asserted).

/// Whether a face around the vertex would turn by more than 160 degrees against its neighbour beyond the edge opposite
/// the vertex. Faces that share a spoke are not compared.
bool WouldFold(DSVertex& vertex, const smVec3d& target);

/// Whether the foot of a point on the plane of a face around the vertex lies in that face.
bool ProjectsIntoRing(const DSVertex& vertex, const smVec3d& point);

/// As WouldFold, from 120 degrees on, where the neighbour's corner is not behind the face.
///
/// Says    "cannot update this vertex..." when it is so.
/// @return the edge around the vertex whose far end is nearest to the target, none further than 100; null where the
///         vertex may move
DSEdge* CheckVertexMove(DSVertex& vertex, const smVec3d& target);
}
