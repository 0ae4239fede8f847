#pragma once

namespace tessarine
{
class MANBrepElementManager;
class MANSceneManager;

/// The adaptive subdivision in its plainest form, for closed models of triangles. The judge of
/// IASubAdaptiveCommand.
void SubdivideAdaptivelyLiterally(MANBrepElementManager& manager, MANSceneManager& scene, float maxArea);
}
