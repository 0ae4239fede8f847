#pragma once
#include "DSBrep.h"

namespace tessarine
{
/// An edge between two triangles, the two corners that a swap would join, and the normals around.
///
/// Needs   Two half-edges of one edge, and a face beyond each other side of their triangles (asserted).
/// Kept    The normals of the two triangles are computed, and stored; those of the faces beyond are the stored ones.
struct EdgeQuad
{
    EdgeQuad(const DSHalfEdge& h1, const DSHalfEdge& h2);

    smVec3d a; ///< start of the first half-edge
    smVec3d b; ///< start of the second
    smVec3d c; ///< opposite corner in the triangle of the first
    smVec3d d; ///< in that of the second
    smVec3d normal1;
    smVec3d normal2;
    smVec3d newNormal1; ///< of a, d, c; its length is twice the area
    smVec3d newNormal2; ///< of b, c, d
    const DSHalfEdge* beyondAC;
    const DSHalfEdge* beyondBC;
    const DSHalfEdge* beyondBD;
    const DSHalfEdge* beyondAD;
};

/// The face whose corner this is; there must be one (asserted).
DSFace& GetFaceAt(const DSHalfEdge* h);
}
