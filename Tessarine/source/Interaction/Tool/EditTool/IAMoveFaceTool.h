#pragma once
#include "IAMoveTool.h"
#include "MANCommandManager.h"

namespace tessarine
{
/// Moves the selected faces.
class IAMoveFaceTool : public IAMoveTool
{
public:
    IAMoveFaceTool() : IAMoveTool(CommandID::MoveFace) {}
};
}
