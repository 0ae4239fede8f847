#pragma once
#include "IAMoveCommand.h"

namespace tessarine
{
/// Moves the selected faces by their corners, along an axis or each face along its stored normal, which stays.
///
/// Kept    A corner that two selected faces share moves twice.
class IAMoveFaceCommand : public IAMoveCommand
{
public:
    IAMoveFaceCommand();
    void Execute() override;

protected:
    std::vector<DSVertex*> CollectVertices() const override;
};
}
