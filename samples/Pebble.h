#pragma once
#include <filesystem>

namespace tessarine
{
/// Writes pebble.obj, pebble.mtl and pebble.ppm into the folder: a smooth closed stone of 12 n^2 triangles
/// with two materials, one of them textured, and texture coordinates at every corner.
/// @param n cells along an edge of the cube that the stone is blown up from, 1 or more
void WritePebble(const std::filesystem::path& folder, int n);
}
