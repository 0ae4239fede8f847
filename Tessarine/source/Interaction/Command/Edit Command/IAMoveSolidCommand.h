#pragma once
#include "IAMoveCommand.h"

namespace tessarine
{
/// Moves the selected solids along an axis.
///
/// Cost    Two looks at each vertex.
class IAMoveSolidCommand : public IAMoveCommand
{
public:
    IAMoveSolidCommand();
    void Execute() override;

protected:
    std::vector<DSVertex*> CollectVertices() const override;
};
}
