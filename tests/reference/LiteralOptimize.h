#pragma once
#include <cstddef>
#include <cstdint>

namespace tessarine
{
class MANBrepElementManager;
class MANSceneManager;

/// Optimisation in its plainest form: the edges stand in an ordered multimap, which is walked from its beginning after
/// every swap; valences are counted by a walk, and half-edges by a look at all faces. The judge of IARefineMeshCommand,
/// for meshes that are closed where the mode swaps.
/// @param mostSwaps ends the run there, to measure a part of it
void OptimizeLiterally(MANBrepElementManager& elements, MANSceneManager& scene, int mode,
                       std::size_t mostSwaps = SIZE_MAX);
}
