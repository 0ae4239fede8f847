#pragma once
#include "IAFittingCommand.h"
#include "LeastSquaresSystem.h"
#include <cstdint>
#include <map>

namespace tessarine
{
class DSFace;

/// Moves the vertices of the current solid so that its surface comes as close as it can to the cloud
/// "Data\dragon.txta", by one linear least-squares solve: each point is tied to the place of the triangle on which its
/// foot falls. A vertex without a point on any face around it stays.
///
/// Needs   A closed mesh of triangles. The cloud is brought into the cube from -1 to 1, and the solid is taken where it
///         is.
/// Leaves  m_nTag of a face is 1 where a point fell on it, and -1 where none did. Normals stay as they are. The view's
///         overlays have the cloud and its feet; a point without a foot stands for itself.
/// Says    What the search and the solver say, and how many vertices are available.
/// Fails   As IAFittingCommand. Failure for a foot on a triangle without area.
/// Kept    The deepest face inside wins a point, not the nearest. Few points on the faces of a vertex leave the system
///         rank-deficient; the vertex moves all the same.
class IAReconstructionSmoothEnergyFunctionCommand : public IAFittingCommand
{
public:
    void Execute() override;

    /// AddUmbrellas, each vertex standing for itself.
    static void AddUmbrellaTerm(const DSSolid& solid, LeastSquaresSystem& system);

protected:
    // The first steps of the run, and what they add up to.
    void FindFeet();
    void InitSystem();
    void AddPoints();
    const LeastSquaresSystem& GetSystem() const { return m_System; }

private:
    void SetSystem();
    void AddPoint(std::size_t index);
    void MoveVertices(const std::vector<smVec3d>& positions);
    void Release();

    std::vector<smVec3d> m_FitPoints; ///< the points with a foot, in the order of the cloud
    std::vector<DSFace*> m_FitFaces;
    std::vector<smVec3d> m_FitBary;
    LeastSquaresSystem m_System;
    std::int32_t m_nAvailable = 0;
    std::map<std::uint32_t, std::int32_t> m_VertexRow; ///< by id; -1 for a vertex that is not available
};
}
