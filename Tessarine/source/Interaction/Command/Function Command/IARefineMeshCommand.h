#pragma once
#include "EdgeSwaps.h"
#include "IACommand.h"
#include <cstdint>

namespace tessarine
{
class MANBrepElementManager;
class MANSceneManager;

/// Optimisation of the current solid without moving a vertex. Modes 1 and 3 swap edges, the best gain first, until no
/// swap gains anything; mode 2 removes the edges that have no length (ZeroEdgeRemoval). Any other mode changes no
/// edge. What the swaps lower is the sum over the edges of length times the angle between the two faces there, so that
/// creases come to lie on edges.
///
/// Needs   For modes 1 and 3 a closed mesh: two faces at each edge, which run in opposite directions along it. Faces are
///         taken for triangles.
/// Leaves  Normals computed anew. Material and texture coordinates of what is new stay unset.
/// Says    A line when a run is ended after a hundred swaps an edge.
/// Fails   Failure without a solid, and in modes 1 and 3 on any other mesh, for positions that are no finite numbers,
///         and where a swap would give a triangle without area. Two opposite corners that are one vertex are an
///         assertion.
/// Units   Model units, double precision. Gains are lengths times radians.
/// Cost    A swap is logarithmic, and local but for that. How many there are depends on the mesh.
/// Kept    The gains of the start are rounded to single precision, and those of the updates are not. An edge at a
///         vertex of valence 3 is never swapped when it is looked at; that a vertex nearby has lost an edge since then
///         is not. Neighbours' normals are those stored. A swap that doubles an edge is made.
class IARefineMeshCommand : public IACommand
{
public:
    IARefineMeshCommand() = default;

    void SetElementManager(MANBrepElementManager* pManager) { m_pElementManager = pManager; }
    void SetSceneManager(MANSceneManager* pManager) { m_pSceneManager = pManager; }
    /// 1, the default, to 3.
    void SetMode(int nMode) { m_nMode = nMode; }

    void Execute() override;

    /// How much the swap of an edge would lower the sum; -10000 where it is not allowed, 0 in a mode without swaps.
    /// Computes the normals of the two faces anew.
    ///
    /// Needs   Two faces at the edge and at all edges around them (asserted).
    /// Fails   Failure for a new triangle without area.
    double EdgeSwapGain(DSEdge* pEdge);

    /// Whether an edge with this gain is swapped: when it is more than 0 in single precision.
    static bool IsWorthASwap(double gain) { return EdgeSwaps::IsWorthASwap(gain, kOptimizingSwaps); }

    /// Takes the edge out of the quadrilateral of its two triangles, and puts in the other diagonal.
    ///
    /// Needs   Two different opposite corners (asserted).
    /// @return the new edge, which is the last one of its solid
    DSEdge* SwapEdge(DSEdge* pEdge);

    static EdgeSwaps::EdgeIDs CollectEdges(const DSEdge* pEdge) { return EdgeSwaps::CollectEdges(pEdge); }

    /// Swaps the edges of the current solid that ShouldSwap favours, in the order of their list.
    ///
    /// Needs   A closed mesh, as modes 1 and 3.
    /// Says    "Current edge number: " and the place, for each place.
    void SwapEdges();

    /// Adds up the angles of all corners around the vertices of the current solid, shows the sum in a message box, and
    /// compares it with that of a closed surface without handles.
    bool CheckGenus();

private:
    void TakeSolid();
    void SwapByPriority();

    MANBrepElementManager* m_pElementManager = nullptr;
    MANSceneManager* m_pSceneManager = nullptr;
    DSSolid* m_pSolid = nullptr;
    std::int32_t m_nMode = 1;
};
}
