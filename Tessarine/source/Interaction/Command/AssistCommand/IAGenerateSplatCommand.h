#pragma once
#include "IACommand.h"

namespace tessarine
{
class MANSceneManager;

/// Adds a splat to the scene's cut faces for each image of "data\man" that has a marker line: the quadrilateral on the
/// line's two ends, in the frame of the unitised model.
///
/// Needs   The scene (asserted).
/// Fails   FileError and Failure name the file, and the line, of what is missing or cannot be used.
///         Such is a camera without an inverse of an image with markers, and a scale that leaves single precision.
/// Says    On standard error, that no image has a marker.
/// Kept    The line counts by the first and the last of its pixels in the order of the rows, however it was drawn.
class IAGenerateSplatCommand : public IACommand
{
public:
    void SetSceneManager(MANSceneManager* scene) { m_pSceneManager = scene; }

    void Execute() override;

private:
    MANSceneManager* m_pSceneManager = nullptr;
};
}
