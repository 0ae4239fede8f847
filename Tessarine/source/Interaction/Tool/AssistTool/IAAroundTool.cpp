#include "IAAroundTool.h"
#include "IACameraAroundCommand.h"
#include "MANCommandManager.h"

namespace tessarine
{
namespace
{
constexpr double kDegreesAPixel = 0.4;
}

IAAroundTool::IAAroundTool() : IACameraTool(CommandID::CameraAround, "res\\Around.CUR") {}

void IAAroundTool::OnMouseMove(int x, int y, unsigned /*flags*/)
{
    if (!IsDragging())
    {
        return;
    }
    GetCommand<IACameraAroundCommand>().SetDelta(GetWayRight(x) * kDegreesAPixel,
                                                 GetWayUp(y) * kDegreesAPixel);
    RunStep(x, y);
}
}
