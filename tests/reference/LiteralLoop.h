#pragma once

namespace tessarine
{
class MANBrepElementManager;
class MANSceneManager;

/// One step of Loop subdivision in its plainest form: every walk is walked, every edge is looked up between
/// its two vertices, every corner is cut by a call of its own. The judge of IASubLOOPCommand.
void SubdivideLiterally(MANBrepElementManager& manager, MANSceneManager& scene);
}
