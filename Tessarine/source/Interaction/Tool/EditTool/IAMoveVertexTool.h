#pragma once
#include "IAMoveTool.h"
#include "MANCommandManager.h"

namespace tessarine
{
/// Moves the selected vertices.
class IAMoveVertexTool : public IAMoveTool
{
public:
    IAMoveVertexTool() : IAMoveTool(CommandID::MoveVertex) {}
};
}
