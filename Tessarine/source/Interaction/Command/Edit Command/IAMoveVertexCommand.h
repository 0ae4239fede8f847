#pragma once
#include "IAMoveCommand.h"

namespace tessarine
{
/// Moves the selected vertices, along an axis or each along its normal.
///
/// Kept    A vertex's normal is computed before each step along it, and the sum starts from the last one
///         (DSVertex::CalcNormal): a long way may be bent.
class IAMoveVertexCommand : public IAMoveCommand
{
public:
    IAMoveVertexCommand();
    void Execute() override;

protected:
    std::vector<DSVertex*> CollectVertices() const override;
};
}
