#pragma once
#include "smVec3d.h"
#include <cmath>
#include <vector>

namespace tessarine
{
class DSElement;
class DSVertex;

inline bool IsFinite(const smVec3d& v)
{
    return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

/// Throws Failure: the step would leave the numbers.
[[noreturn]] void RefuseFarPosition();

/// One run of a move, vertex by vertex. Without Finish everything goes back to where it was before.
class MoveStep
{
public:
    MoveStep() = default;
    MoveStep(const MoveStep&) = delete;
    MoveStep& operator=(const MoveStep&) = delete;
    ~MoveStep();

    /// Moves a vertex. Throws Failure where that leads to no finite position.
    void Move(DSVertex& vertex, const smVec3d& way);
    /// Moves a vertex along its normal, which is computed first.
    void MoveAlongNormal(DSVertex& vertex, double distance);

    void Finish() { m_Before.clear(); }

    /// Throws Failure where the normal of an element is no finite vector.
    static void CheckNormal(const DSElement& element, const smVec3d& normal);

private:
    struct State
    {
        DSVertex* pVertex;
        smVec3d position;
        smVec3d normal;
    };

    void Keep(DSVertex& vertex);

    std::vector<State> m_Before;
};
}
