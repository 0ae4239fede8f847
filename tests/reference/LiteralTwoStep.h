#pragma once
#include "smVec3d.h"
#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace tessarine
{
class DSHalfEdge;
class DSSolid;
class MANBrepElementManager;

/// The two-step correspondence in its plainest form: each normal stored as it is computed, each neighbourhood searched
/// from the front, a tree made anew for each point of a step. The judge of IAReconstructionSmoothTwoStepCommand, from
/// its unitised solid and cloud on.
class LiteralTwoStep
{
public:
    LiteralTwoStep(MANBrepElementManager& elements, DSSolid& solid, const std::vector<smVec3d>& cloud);

    /// @return false where a vertex that finds no point cannot be taken away
    bool Run();
    void Step();

    std::string m_Console;
    std::vector<smVec3d> m_Projected;
    std::vector<std::int32_t> m_PointOwner;
    std::map<std::uint32_t, std::int32_t> m_VertexPoint;
    std::vector<smVec3d> m_OldPositions;

private:
    bool MatchVertices();
    bool CanCollapse(const DSHalfEdge* ha) const;
    void Update();
    void FindFeet();
    void SelectFeet();
    void SplitFaces();

    MANBrepElementManager& m_Elements;
    DSSolid& m_Solid;
    std::vector<smVec3d> m_Points;
    std::vector<smVec3d> m_FootPoints;
    std::vector<std::int32_t> m_FootPointIndex;
};
}
