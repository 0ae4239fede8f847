#pragma once
#include "Image.h"
#include <string>
#include <string_view>

namespace tessarine
{
/// Reads a JPEG file: one component for grey, else three.
/// Throws ImageFault.
Image DecodeJpeg(std::string_view bytes, ImageBudget& budget);

/// Writes grey or colour; alpha is left out.
/// Throws ImageFault.
std::string EncodeJpeg(const Image& image);
}
