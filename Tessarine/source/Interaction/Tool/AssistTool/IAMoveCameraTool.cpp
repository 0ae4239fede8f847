#include "IAMoveCameraTool.h"
#include "IACameraMoveCommand.h"
#include "MANCommandManager.h"

namespace tessarine
{
namespace
{
constexpr double kUnitsAPixel = -0.0125; // against the mouse
}

IAMoveCameraTool::IAMoveCameraTool() : IACameraTool(CommandID::CameraMove, "res\\Move.CUR") {}

void IAMoveCameraTool::OnMouseMove(int x, int y, unsigned /*flags*/)
{
    if (!IsDragging())
    {
        return;
    }
    GetCommand<IACameraMoveCommand>().SetDelta(GetWayRight(x) * kUnitsAPixel, GetWayUp(y) * kUnitsAPixel);
    RunStep(x, y);
}
}
