#pragma once
#include "FootSearch.h"
#include "IAFittingCommand.h"
#include "PointPairs.h"
#include <cstdint>
#include <functional>

namespace tessarine
{
class DSEdge;
class DSFace;
class DSHalfEdge;
class DSVertex;

/// Has each vertex of the current solid stand for a point of the cloud "Data\bunny.txta", one for one. The run pairs
/// the vertices with points near them, takes those away that find none, and moves the others onto their points. The
/// command is kept, and each further step brings more points into the mesh, one a face at most.
///
/// Needs   A closed mesh of triangles, in the run and in each step. Solid and cloud are brought into the cube from -1
///         to 1, each by its own box.
/// Leaves  Normals computed anew, those of vertices added to what they were, twice. m_nTag of a face is -1, its tag
///         list holds the feet of the last step. The view's overlays have the cloud, and for a point what stood for it
///         last: a vertex before it moved, or a foot.
/// Says    What the search and the removals say.
/// Fails   As IAFittingCommand and VertexMatching. An operation that fails leaves the stores to its caller, who also
///         puts the command's own state back (SaveState).
class IAReconstructionSmoothTwoStepCommand : public IAFittingCommand
{
public:
    /// What the steps hand on to one another.
    struct State
    {
        PointPairs pairs;
        std::vector<smVec3d> oldPositions;
        std::int32_t stepCount = 0;
    };

    void Execute() override;

    /// Brings further points into the mesh, each where its foot falls on a face, and moves the vertices (Update).
    ///
    /// Says    How long the search, the choice and the splits took, in message boxes; "After sub Self Intersection!"
    ///         and "After update Self Intersection!" in message boxes where the sum of the angles is not that of a
    ///         sphere then.
    void Step();

    /// Puts the vertices back to where the last Update found them.
    ///
    /// Fails   Failure where vertices have been removed: fewer old positions are known than vertices.
    /// Kept    Vertices that are gone count, so that the positions of those behind them are not their own.
    void Restore();

    /// Moves the vertices onto their points.
    ///
    /// Says    The manager's message box for each vertex that is gone, twice.
    void Update();

    State SaveState() const { return {m_Pairs, m_OldPositions, m_nStep}; }
    /// Allocates nothing.
    void RestoreState(State&& state) noexcept;

    const PointPairs& GetPairs() const { return m_Pairs; }
    const std::vector<smVec3d>& GetOldPositions() const { return m_OldPositions; }
    /// Steps done.
    int GetStepCount() const { return m_nStep; }

    // What follows belongs to an earlier form of the refinement, and stands behind no entry of the window. All of it
    // works on the solid and the pairs of the last run (asserted).

    /// One step in which the foot nearest to its face's centroid wins, and a new vertex is at once where its point is.
    void RefineStep();

    /// How far the points without a vertex are from their feet, or from the nearest vertex where they have none: the
    /// sum, the largest, and the sum over the number of all points.
    void ReportError(double& total, double& max, double& average);

    /// Swaps the edges that ShouldSwap favours; the other swaps those that ShouldSwapByAngle does.
    ///
    /// Says    "Current edge number: " for each place of the edge list, and at the end how many were swapped.
    void SwapEdges();
    void SwapEdgesByAngle();

    /// Whether a vertex keeps its place among those in two rings around it, by their points, and the way there meets no
    /// face of four rings, other than at the vertex itself.
    ///
    /// Says    "Cannot pass test 1..." or "cannot pass test 2..." where it is not so.
    bool CanMoveVertex(const DSVertex& vertex, const smVec3d& target) const;

    /// Moves all vertices to where each point lies in the mean of the vertices beside its own. A vertex without a point
    /// stands for itself.
    ///
    /// Says    "Init CGM ok...", and what the solver says.
    void SmoothByCGM();

    /// Swaps the edge with the largest gain until none gains more than 0.001.
    ///
    /// Says    What is measured and how large the stack is, for each swap.
    void CollapseByPriority();

private:
    void CheckSolid() const;
    void FindFeet();
    void SelectFoot(DSFace& face);
    void SelectFootNearestToCentroid(DSFace& face);
    void SelectFeet(const std::function<void(DSFace& face)>& select);
    void SplitFaces(bool movesAtOnce);
    DSVertex* SplitAtFoot(DSFace& face, const smVec3d& foot);
    void SwapWhere(bool (*test)(const DSHalfEdge&, const DSHalfEdge&));
    void SayWhereNoSphere(const char* text) const;

    PointPairs m_Pairs;
    std::vector<smVec3d>
        m_OldPositions; ///< of the entries of the pairs whose vertex is there, before the last move
    std::vector<smVec3d> m_FootPoints;          ///< of the last step
    std::vector<std::int32_t> m_FootPointIndex; ///< their points
    std::int32_t m_nStep = 0;
};
}
