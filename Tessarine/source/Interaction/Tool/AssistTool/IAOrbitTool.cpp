#include "IAOrbitTool.h"
#include "IACameraOrbitCommand.h"
#include "MANCommandManager.h"

namespace tessarine
{
namespace
{
constexpr double kDeltaAPixel = 0.5;
}

IAOrbitTool::IAOrbitTool() : IACameraTool(CommandID::CameraOrbit, "res\\Orbit.CUR") {}

void IAOrbitTool::OnMouseMove(int x, int y, unsigned /*flags*/)
{
    if (!IsDragging())
    {
        return;
    }
    GetCommand<IACameraOrbitCommand>().SetDelta(GetWayRight(x) * kDeltaAPixel, GetWayUp(y) * kDeltaAPixel);
    RunStep(x, y);
}
}
