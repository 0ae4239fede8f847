#pragma once
#include "IACameraCommand.h"

namespace tessarine
{
/// Moves the eye around the target, which stays, as does the distance.
///
/// Units   A delta of 1 is a tenth of the unit sphere's radius: about 5.7 degrees, as long as it is small.
/// Kept    The up vector follows by a subtraction, where a rotation would add, and the vector to the right is
///         not turned at all; SetLookAt makes up for it. Do not put a rotation in its place.
class IACameraOrbitCommand : public IACameraCommand
{
public:
    /// @param x to the left
    /// @param y downwards
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
