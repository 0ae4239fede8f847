#pragma once
#include "IACameraTool.h"

namespace tessarine
{
/// Moves the eye around the target: half a unit of IACameraOrbitCommand a pixel.
class IAOrbitTool : public IACameraTool
{
public:
    IAOrbitTool();
    void OnMouseMove(int x, int y, unsigned flags) override;
};
}
