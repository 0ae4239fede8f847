#pragma once
#include "Meshes.h"

namespace tessarine
{
/// Two poles above and below a ring of n, with valence n each.
IndexedMesh Bipyramid(int n);

/// Puts a second mesh beside another, with its first corner in common.
IndexedMesh JoinInFirstCorner(IndexedMesh mesh, const IndexedMesh& other);

/// Puts a second mesh beside another, with nothing in common.
IndexedMesh Beside(IndexedMesh mesh, const IndexedMesh& other);

/// Moves every position by up to a tenth along each axis.
IndexedMesh Shaken(IndexedMesh mesh, unsigned seed);

/// Pulls some corners of triangles onto one beside them.
IndexedMesh Pinched(IndexedMesh mesh, int count, unsigned seed);

/// Turns some faces over, doubles some and leaves some out.
IndexedMesh Spoilt(const IndexedMesh& mesh, unsigned seed);

/// Faces of two to five corners, drawn at random from a few vertices.
IndexedMesh Soup(int vertices, int faces, unsigned seed);

/// Triangles of three vertices each, drawn at random from a few.
IndexedMesh TriangleSoup(int vertices, int faces, unsigned seed);

/// Points on the unit sphere, and the ends of the axes, so that the cube leaves them where they are.
std::vector<smVec3d> SphereCloud(std::size_t count, unsigned seed);
}
