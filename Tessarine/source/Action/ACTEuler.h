#pragma once
#include "smVec3d.h"
#include <cstdint>
#include <vector>

namespace tessarine
{
class DSEdge;
class DSFace;
class DSHalfEdge;
class DSLoop;
class DSSolid;
class DSVertex;
class MANBrepElementManager;

/// The Euler operators: the only way in which a solid changes its topology once it has been built.
///
/// The upper layer takes ids and resolves them; a half-edge is named by the ids of its start and end vertices
/// within a face, and the first that fits is taken. The lower layer, with an L in front, takes the records
/// themselves. New elements go to the end of the solid's lists, in the order in which they are made; a
/// removal keeps the order of the others. Ids go out through references.
///
/// Needs   The rules of each operator, asserted before anything is changed: what is refused leaves the model
///         as it was. One rule is the caller's to know, for no local look can tell: the vertex that KEV or
///         LKEV kills has one fan of faces, as on any manifold. Asserted is that this fan is closed and that
///         the vertex's own half-edge lies in it; half-edges of a second fan would go on pointing at the
///         vertex that is gone.
/// Leaves  Links only: normals, valences, boundary marks and texture coordinates are the caller's business.
/// Cost    Local. A list removal is logarithmic, a look-up of a half-edge linear in its face.
/// Source  M. Mäntylä, An Introduction to Solid Modeling, 1988.
class ACTEuler
{
public:
    explicit ACTEuler(MANBrepElementManager* pManager) : m_pManager(pManager) {}

    /// A new solid of one face, one loop, one vertex and one half-edge without an edge.
    void MVFS(std::uint32_t& nSolidID, std::uint32_t& nFaceID, std::uint32_t& nVertexID,
              const smVec3d& position);

    /// A new edge and vertex at v1, which takes over the half-edges from (v1, v2) in face 1 round to (v1, v3)
    /// in face 2, the last one not included.
    void MEV(std::uint32_t nSolidID, std::uint32_t nFaceID1, std::uint32_t nFaceID2, std::uint32_t v1,
             std::uint32_t v2, std::uint32_t v3, std::uint32_t& nVertexID, const smVec3d& position);

    /// A new edge that sticks out from v into the face, with a new vertex at its end.
    void MEVStrut(std::uint32_t nSolidID, std::uint32_t nFaceID, std::uint32_t v, std::uint32_t& nVertexID,
                  const smVec3d& position);

    /// Splits the edge v1-v2 with a new vertex. The face is that of the edge's first half-edge.
    void SEMV(std::uint32_t nSolidID, std::uint32_t nFaceID, std::uint32_t v1, std::uint32_t v2,
              std::uint32_t& nVertexID, const smVec3d& position);

    /// The same where the edge between the vertices is at hand.
    void SEMV(std::uint32_t nSolidID, std::uint32_t nFaceID, const DSEdge* pEdge, std::uint32_t& nVertexID,
              const smVec3d& position);

    /// A new edge between two different corners of a face, and a new face on the way from v1 to v2.
    void MEF(std::uint32_t nSolidID, std::uint32_t nFaceID, std::uint32_t& nNewFaceID, std::uint32_t v1,
             std::uint32_t v2);

    /// The same with the corners given by the half-edges (v1, v2) and (v3, v4).
    void MEF4(std::uint32_t nSolidID, std::uint32_t nFaceID, std::uint32_t& nNewFaceID, std::uint32_t v1,
              std::uint32_t v2, std::uint32_t v3, std::uint32_t v4);

    /// A new edge between (v1, v2) and (v3, v4) in two loops of a face; the second loop joins the first.
    void MEKR(std::uint32_t nSolidID, std::uint32_t nFaceID, std::uint32_t v1, std::uint32_t v2,
              std::uint32_t v3, std::uint32_t v4);

    /// Kills face 2; its loops become rings of face 1.
    void KFMRH(std::uint32_t nSolidID, std::uint32_t nFaceID1, std::uint32_t nFaceID2);

    /// Kills the solid alone: its faces, edges and vertices stay with the manager, in no solid.
    void KillSolid(std::uint32_t nSolidID);

    /// Kills the edge v1-v2 and its end v2.
    void KEV(std::uint32_t nSolidID, std::uint32_t nFaceID, std::uint32_t v1, std::uint32_t v2);

    /// Kills the edge v1-v2 and the face on its other side.
    void KEF(std::uint32_t nSolidID, std::uint32_t nFaceID, std::uint32_t v1, std::uint32_t v2);

    /// Kills the edge v1-v2 that a loop passes twice; the part behind it becomes a ring.
    void KEMR(std::uint32_t nSolidID, std::uint32_t nFaceID, std::uint32_t v1, std::uint32_t v2);

    /// Makes a face of the ring that holds the half-edge (v1, v2).
    void MFKRH(std::uint32_t nSolidID, std::uint32_t nFaceID, std::uint32_t& nNewFaceID, std::uint32_t v1,
               std::uint32_t v2);

    /// Needs   h1 and h2 start at one vertex; they may be the same. Turning by the next of the mate leads
    ///         from h1 to h2 without meeting a hole.
    void LMEV(DSSolid* pSolid, DSHalfEdge* h1, DSHalfEdge* h2, std::uint32_t& nVertexID,
              const smVec3d& position);

    /// Splits the edge of h1. The part at the start of h1 is the new edge and keeps h1.
    ///
    /// Needs   h1 and h2 are the two sides of one edge, or h1 the only side and h2 null.
    void LSEMV(DSHalfEdge* h1, DSHalfEdge* h2, std::uint32_t& nVertexID, const smVec3d& position);

    /// The new face takes the half-edges from h1 up to h2, the last one not included. From a half-edge to
    /// itself the new edge starts and ends at its vertex, and the new face has this one corner.
    ///
    /// Needs   Two half-edges of one loop; they may be the same.
    void LMEF(DSSolid* pSolid, DSHalfEdge* h1, DSHalfEdge* h2, std::uint32_t& nNewFaceID);

    /// What LMEF(next of c, previous of c) leaves when it is called for one corner c after another, in time
    /// linear in the loop.
    ///
    /// Needs   The corners are every second half-edge of one loop of at least four, from any of them on, and
    ///         at most half as many as the loop has.
    void LMEFCorners(DSSolid* pSolid, const std::vector<DSHalfEdge*>& corners);

    /// Needs   Half-edges of two loops of the face.
    void LMEKR(DSSolid* pSolid, DSFace* pFace, DSHalfEdge* h1, DSHalfEdge* h2);

    /// Needs   A loop of the face that is not its first.
    void LMFKRH(DSSolid* pSolid, DSFace* pFace, DSLoop* pLoop, std::uint32_t& nNewFaceID);

    /// Needs   The two sides of an edge that no third half-edge names, in opposite directions, in one loop of
    ///         the face.
    void LKEMR(DSSolid* pSolid, DSFace* pFace, DSHalfEdge* h1, DSHalfEdge* h2);

    /// Kills the face of h2. Its material and its further loops are not carried over.
    ///
    /// Needs   The two sides of an edge that no third half-edge names, in opposite directions, in different
    ///         faces.
    void LKEF(DSSolid* pSolid, DSHalfEdge* h1, DSHalfEdge* h2);

    /// Kills the vertex at which h2 starts.
    ///
    /// Needs   The two sides of an edge that no third half-edge names, in opposite directions, with different
    ///         start vertices. The vertex lies on no hole and has one fan of faces; of the latter, see above,
    ///         a part is asserted.
    void LKEV(DSSolid* pSolid, DSHalfEdge* h1, DSHalfEdge* h2);

    /// Needs   Two different faces of the solid.
    void LKFMRH(DSSolid* pSolid, DSFace* pFace1, DSFace* pFace2);

    /// Deletes the solid's record alone. Its faces belong to no solid then.
    void LKillSolid(DSSolid* pSolid);

    /// The first half-edge over all loops of the face that runs from v1 to v2, or null.
    DSHalfEdge* FindHalfEdge(const DSFace* pFace, std::uint32_t v1, std::uint32_t v2) const;

    /// The first half-edge over all loops of the face that starts at v, or null.
    DSHalfEdge* FindHalfEdge(const DSFace* pFace, std::uint32_t v) const;

    /// Puts a half-edge of the edge, starting at the vertex, in front of h. A half-edge h without an edge is
    /// itself made that half-edge.
    /// @param side 0 for the edge's first half-edge, 1 for its second
    DSHalfEdge* AddHalfEdge(DSEdge* pEdge, DSHalfEdge* h, DSVertex* pVertex, int side);

    /// Takes a half-edge out of its loop and deletes it. The last one of a loop stays, without an edge, and
    /// is deleted when it comes a second time.
    /// @return the half-edge before it, the last one itself, or null when that was deleted
    DSHalfEdge* RemoveHalfEdge(DSHalfEdge* h);

private:
    DSSolid* ResolveSolid(std::uint32_t nSolidID) const;
    DSFace* ResolveFace(std::uint32_t nFaceID) const;
    DSFace* ResolveFace(const DSSolid* pSolid, std::uint32_t nFaceID) const;
    DSHalfEdge* ResolveHalfEdge(const DSFace* pFace, std::uint32_t v1, std::uint32_t v2) const;
    void SplitEdge(const DSSolid* pSolid, const DSFace* pFace, const DSEdge* pEdge, std::uint32_t& nVertexID,
                   const smVec3d& position);
    DSFace* AppendFace(DSSolid* pSolid);
    DSVertex* AppendVertex(DSSolid* pSolid, const smVec3d& position);
    DSLoop* CutLoop(DSSolid* pSolid, DSLoop* pLoop, DSHalfEdge* h1, DSHalfEdge* h2);

    MANBrepElementManager* m_pManager;
};
}
