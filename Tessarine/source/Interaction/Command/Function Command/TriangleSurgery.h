#pragma once
#include "ACTEuler.h"

namespace tessarine
{
/// Why a vertex cannot be taken away.
inline constexpr char kTooFewPoints[] =
    "the cloud has too few points near this mesh, which would lose too many of its vertices: simplify the "
    "model, export it, import that file and run this again, or take a cloud that covers the model more "
    "densely";

/// Cuts and joins triangles of a closed mesh. Local: what it costs does not grow with the solid.
///
/// Needs   Faces that are triangles (asserted).
/// Leaves  Normals to its caller.
class TriangleSurgery
{
public:
    explicit TriangleSurgery(MANBrepElementManager* pManager) : m_pManager(pManager), m_Euler(pManager) {}

    /// Puts a vertex into a face, which becomes three. Its own record keeps the part at its last edge.
    DSVertex* SplitFace(DSFace& face, const smVec3d& position);

    /// Puts a vertex on an edge and cuts both of its triangles there. The record of the half-edge's face keeps the part
    /// at the start of the half-edge, that of the face across the part at its end.
    ///
    /// Needs   Two different faces at the edge (asserted).
    /// Says    "Edge collapse ok...".
    DSVertex* SplitEdge(DSHalfEdge& h, const smVec3d& position);

    /// Takes a vertex away along an edge: the two triangles of the edge go with their records, and the faces around the
    /// vertex get its other end, which stays where it is.
    ///
    /// Says    "One edge clipped.."; where the vertex is not the start of just one half-edge of the edge "CollapseEdge
    ///         error !!! ", and nothing changes.
    /// Fails   Failure, before anything changes, where the mesh would lose its last faces, or one of its faces would
    ///         name a vertex twice. Two edges between the same vertices may come about, and a body of two faces.
    void CollapseEdge(DSEdge& edge, const DSVertex& vertex);

private:
    DSVertex* Resolve(std::uint32_t nVertexID) const;

    MANBrepElementManager* m_pManager;
    ACTEuler m_Euler;
};
}
