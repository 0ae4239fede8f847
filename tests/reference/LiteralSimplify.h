#pragma once

namespace tessarine
{
class MANBrepElementManager;
class MANSceneManager;

/// Simplification step by step and in floats alone, with lists, searches and a heap as plain as they can be:
/// what the command must leave, and say, bit for bit. The ratio is one that the command accepts, and the root's
/// first child has a solid.
void SimplifyLiterally(MANBrepElementManager& elements, MANSceneManager& scene, float ratio);
}
