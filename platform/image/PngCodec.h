#pragma once
#include "Image.h"
#include <string>
#include <string_view>

namespace tessarine
{
/// Reads a PNG file. A palette becomes three components, four with transparency; 16 bits become 8.
/// Throws ImageFault.
Image DecodePng(std::string_view bytes, ImageBudget& budget);

/// Writes 1 to 4 components.
/// Throws ImageFault.
std::string EncodePng(const Image& image);
}
