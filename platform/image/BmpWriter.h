#pragma once
#include "Image.h"
#include <string>

namespace tessarine
{
/// A BMP file of 1 component (8 bits, grey palette), 3 (24 bits) or 4 (32 bits with an alpha mask).
std::string EncodeBmp(const Image& image);
}
