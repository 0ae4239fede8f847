#pragma once
#include "IACameraCommand.h"

namespace tessarine
{
/// Moves eye and target together, in the plane of the screen.
class IACameraMoveCommand : public IACameraCommand
{
public:
    /// In model units.
    /// @param x to the right
    /// @param y upwards
    void SetDelta(double x, double y)
    {
        m_dDeltaX = x;
        m_dDeltaY = y;
    }

    void Execute() override;
    void Undo() override { RestoreState(); }

private:
    double m_dDeltaX = 0.0;
    double m_dDeltaY = 0.0;
};
}
