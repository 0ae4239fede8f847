#pragma once
#include "Image.h"
#include <string_view>

namespace tessarine
{
/// Reads the first picture of a TIFF file. Grey and colour keep their alpha; every other kind is three
/// components. Throws ImageFault.
Image DecodeTiff(std::string_view bytes, ImageBudget& budget);
}
