#pragma once
#include "IACameraTool.h"

namespace tessarine
{
/// Moves the camera in the plane of the screen, so that the model follows the mouse: 0.0125 model units a pixel.
class IAMoveCameraTool : public IACameraTool
{
public:
    IAMoveCameraTool();
    void OnMouseMove(int x, int y, unsigned flags) override;
};
}
