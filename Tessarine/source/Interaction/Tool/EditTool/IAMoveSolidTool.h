#pragma once
#include "IAMoveTool.h"
#include "MANCommandManager.h"

namespace tessarine
{
/// Moves the selected solids.
class IAMoveSolidTool : public IAMoveTool
{
public:
    IAMoveSolidTool() : IAMoveTool(CommandID::MoveSolid) {}
};
}
