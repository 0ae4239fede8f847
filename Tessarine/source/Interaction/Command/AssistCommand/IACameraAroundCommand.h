#pragma once
#include "IACameraCommand.h"

namespace tessarine
{
/// Turns the view around the eye. The eye and its distance to the target stay; the target goes.
///
/// Leaves  An elevation from -89 to 89 degrees, and the world's y axis as the direction that is up.
/// Kept    The azimuth is the angle between the view and the z axis in space, not in the ground plane: on an
///         inclined view a step of zero turns, too. Do not measure it with atan2.
class IACameraAroundCommand : public IACameraCommand
{
public:
    /// @param x degrees to the left
    /// @param y degrees upwards
    void SetDelta(double x, double y)
    {
        m_dDeltaX = x;
        m_dDeltaY = y;
    }

    void Execute() override;

private:
    double m_dDeltaX = 0.0;
    double m_dDeltaY = 0.0;
};
}
