#pragma once
#include "Image.h"
#include <string_view>

namespace tessarine
{
/// Reads the first frame of a GIF file, laid on its screen. Three components; what the frame leaves open has
/// the background colour.
/// Throws ImageFault.
Image DecodeGif(std::string_view bytes, ImageBudget& budget);
}
