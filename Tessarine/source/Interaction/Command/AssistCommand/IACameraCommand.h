#pragma once
#include "IACommand.h"
#include "smVec3d.h"

namespace tessarine
{
class Open3DCamera;

/// Base of the commands that move the camera. A tool gives the camera and the step, and runs the command once
/// for each motion of the mouse: every run reads the camera afresh and is one small step of the drag.
///
/// Needs   A camera (asserted in Execute).
/// Fails   A step that leads to no view (Open3DCamera::SetLookAt) is an assertion; the camera stays.
class IACameraCommand : public IACommand
{
public:
    void SetCamera(Open3DCamera* camera) { m_pCamera = camera; }

    /// Keeps where the camera is now, for Undo. Asserts that there is a camera.
    void SaveState();

protected:
    /// Puts the camera back to what SaveState kept.
    void RestoreState();

    Open3DCamera* m_pCamera = nullptr;
    smVec3d m_SavedPosition;
    smVec3d m_SavedTarget;
    smVec3d m_SavedUp;
};
}
