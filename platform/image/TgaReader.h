#pragma once
#include "Image.h"
#include <string_view>

namespace tessarine
{
/// Reads a TGA file: grey, colour and colour-mapped, plain or run-length coded, from any origin.
/// Grey of 16 bits has alpha, and so has colour of 32 bits; 15 and 16 bits are three components.
/// Throws ImageFault.
Image DecodeTga(std::string_view bytes, ImageBudget& budget);
}
