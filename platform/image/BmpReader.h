#pragma once
#include "Image.h"
#include <string_view>

namespace tessarine
{
/// Reads a BMP file: 1, 4, 8, 16, 24 and 32 bits a pixel, plain or run-length coded, either way up.
/// One component where the palette is the ramp of 256 greys, four where there is an alpha mask, else three.
/// Throws ImageFault.
Image DecodeBmp(std::string_view bytes, ImageBudget& budget);
}
