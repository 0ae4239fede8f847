#pragma once
#include "IACameraTool.h"

namespace tessarine
{
/// Moves the eye to the target or away from it, by the vertical motion of the mouse: a thirtieth of a model unit a
/// pixel, upwards away.
class IAZoomTool : public IACameraTool
{
public:
    IAZoomTool();
    void OnMouseMove(int x, int y, unsigned flags) override;
};
}
