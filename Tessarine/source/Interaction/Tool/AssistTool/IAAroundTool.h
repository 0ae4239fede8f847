#pragma once
#include "IACameraTool.h"

namespace tessarine
{
/// Turns the view around the eye: 0.4 degrees a pixel.
class IAAroundTool : public IACameraTool
{
public:
    IAAroundTool();
    void OnMouseMove(int x, int y, unsigned flags) override;
};
}
