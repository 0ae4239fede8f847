#pragma once
#include <string>

namespace tessarine
{
class IAWorkbench;

/// Everything that an operation must leave alone when it fails, a line an item: every slot of the stores with
/// the address and the values of its record, the selection, materials and textures, the scene with its lights
/// and cut faces, the view's overlays and flags, the tool on top and the history.
std::string PictureOf(IAWorkbench& bench);
}
