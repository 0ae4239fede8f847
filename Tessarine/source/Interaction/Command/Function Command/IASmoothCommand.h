#pragma once
#include "CloudOctree.h"
#include "DualMesh.h"
#include "EigenTable.h"
#include "FitError.h"
#include "FootSearch.h"
#include "IAFittingCommand.h"
#include "IncrementalConnection.h"
#include "LeastSquaresSystem.h"
#include "NearestPoints.h"
#include <cstdint>
#include <ctime>
#include <functional>
#include <memory>
#include <vector>

namespace tessarine
{
class ReplacingFile;

/// Builds the dual of the current solid over the cloud "Data\horse.txta": for each face the cloud point whose foot is
/// nearest to its centre, joined around each vertex. Beyond its run it fits the solid itself to the cloud.
///
/// Needs   A closed solid; faces of up to 19 corners where feet are looked for (asserted).
/// Leaves  The solid, brought into the cube from -1 to 1, with fresh normals; the dual as the view's new mesh, in no
///         node of the scene; the cloud and its feet in the view. A point without a foot has the one of the file.
/// Says    What the search, the builder and the topology report say; why the dual has no polygon, where it has none.
/// Fails   As IAFittingCommand.
class IASmoothCommand : public IAFittingCommand
{
public:
    void Execute() override;

    /// The run's beginning, which all below needs (asserted): takes the solid and the cloud, and brings both into the
    /// cube from -1 to 1.
    void TakeSolidAndCloud();

    /// The run's middle.
    void BuildDualMesh();

    // What the command can do beyond its run. Normals are left as they are.

    /// Moves each vertex to the cloud point nearest to it, but for what a term that holds neighbours together keeps
    /// of the way. Twice.
    ///
    /// Needs   A solid whose vertices' ids are their places (asserted).
    /// Says    The error before each time, and what the solver says.
    /// Leaves  "Data\CheckFootPoint.data" and "Data\CheckCofficientMatrix.data" of the last time.
    /// Fails   FileError where these cannot be written; neither is touched then.
    void FitVertices();

    /// Moves all vertices so that the limit surface of Loop subdivision comes as close as it can to the cloud points
    /// that are nearest to its samples. Four times.
    ///
    /// Needs   The eigen table; triangles with at most one corner of another valence than 6.
    /// Says    The error before each time, and what the solver says.
    /// Leaves  "Data\CheckFootPoint.data" of the last time.
    /// Fails   Failure for a table that is missing or does not have a valence, and for other faces; FileError.
    void FitLimitSurface();

    /// A new child of the root from "Data\result.txt": the number of triangles, and three places in the cloud for
    /// each.
    ///
    /// Fails   FileError and Failure name the file, and the line.
    void ReadResult();

    /// Moves each vertex along its normal, up to 0.06. All moves of one second have one length.
    ///
    /// Fails   Failure for a vertex whose normal is no number; nothing was moved then.
    void PerturbVertices();

    /// Gives each cloud point the normal of the plane through its six nearest, in the view.
    void EstimateNormals();

    /// Gives each vertex one of the eight cloud points nearest to it, the first that is still free.
    ///
    /// @return for each cloud point the id of its vertex, or -1
    const std::vector<std::int32_t>& FindVertexFeet();

    /// For each cloud point itself where it has a foot, and the origin where it has none.
    ///
    /// Says    How many have none.
    std::vector<smVec3d> CheckProjection() const;

    /// Cuts the faces of the solid into triangles; those with a selected foot around a new vertex there.
    void TriangulateFaces();
    void StarFaces();

    /// Divides the space of the cloud into boxes of fewer than a hundred points, or six levels.
    ///
    /// Says    "total face number:" and the number of points.
    void BuildOctree();
    const OCTNODE* GetOctreeRoot() const { return m_Octree.GetRoot(); }
    /// The leaf of the octree that a point falls into; null outside of the cube, and before BuildOctree.
    const OCTNODE* FindLeaf(const smVec3d& point) const { return m_Octree.FindLeaf(point); }
    /// The nearest of the points that this leaf holds, the earliest of equal ones; null where it holds none.
    const smVec3d* NearestInLeaf(const smVec3d& point) const;

    /// A mesh that grows over the feet of the last BuildDualMesh (see IncrementalConnection): its first triangle, one
    /// triangle more, its state as a file.
    void MakeSeed();
    void ConnectNext();
    void SaveEnvironment() const;

    /// Frees what the steps have worked on, for a command that nobody asks any more: the history keeps it.
    void Release();

    /// Where the seconds come from that seed PerturbVertices; the system's clock if not set.
    void SetClock(std::function<std::time_t()> clock) { m_Clock = std::move(clock); }

    DSSolid* GetDualSolid() const { return m_pDualSolid; }
    /// For each vertex of the dual the index of its cloud point.
    const std::vector<std::int32_t>& GetDualPointIndices() const { return m_DualPointIndex; }
    const FootList& GetFeet() const { return m_Feet; }
    const IncrementalConnection& GetConnection() const { return m_Connection; }
    /// Of the last fit's last time.
    double GetMaxError() const { return m_fMaxError; }
    double GetAverageError() const { return m_fAverageError; }

private:
    void BuildDualSolid();
    void SayWhyTheDualIsEmpty() const;
    void SnapToCloud();

    void PrepareSamples();
    void FindTargets();
    std::unique_ptr<ReplacingFile> CheckError();
    void BuildConstMatrix();
    void ResetSystem();
    void AssembleLimitSystem();
    std::unique_ptr<ReplacingFile> WriteMatrix() const;
    void SolveSystem();
    void ReleaseSystem();

    std::vector<smVec3d> m_SamplePoints;
    std::vector<smVec3d> m_TargetPoints; ///< the cloud point that each sample is to reach
    LeastSquaresSystem m_System;
    EigenTable m_EigenTable = ReadEigenTable();
    double m_fMaxError = 0.0;
    double m_fAverageError = 0.0;
    std::vector<bool> m_PointDone; ///< for each cloud point, whether it takes no part any more
    FootList m_Feet;
    std::vector<std::int32_t> m_PointVertex; ///< for each cloud point the id of its vertex
    std::vector<std::int32_t> m_DualPointIndex;
    DSSolid* m_pDualSolid = nullptr;
    IncrementalConnection m_Connection;
    CloudOctree m_Octree;
    std::function<std::time_t()> m_Clock = [] { return std::time(nullptr); };
};
}
