#pragma once
#include "IACameraCommand.h"

namespace tessarine
{
/// Moves the eye along the view, to a distance from the target between the near and the far plane.
///
/// Needs   SaveState.
/// Kept    Target and up vector are those of SaveState, not the camera's: a run with the distance 0 sets both
///         back.
class IACameraZoomCommand : public IACameraCommand
{
public:
    /// By how much the eye goes away from the target, in model units.
    void SetDistance(double distance) { m_dDistance = distance; }

    void Execute() override;
    void Undo() override { RestoreState(); }

private:
    double m_dDistance = 0.0;
};
}
