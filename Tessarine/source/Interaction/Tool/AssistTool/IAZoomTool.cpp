#include "IAZoomTool.h"
#include "IACameraZoomCommand.h"
#include "MANCommandManager.h"

namespace tessarine
{
namespace
{
constexpr double kDistanceAPixel = 0.03333333333333333;
}

IAZoomTool::IAZoomTool() : IACameraTool(CommandID::CameraZoom, "res\\Zoom.CUR") {}

void IAZoomTool::OnMouseMove(int /*x*/, int y, unsigned /*flags*/)
{
    if (!IsDragging())
    {
        return;
    }
    GetCommand<IACameraZoomCommand>().SetDistance(GetWayUp(y) * kDistanceAPixel);
    RunStep(m_nX, y);
}
}
