#pragma once
#include "DSTexture.h"
#include <cstdint>
#include <vector>

namespace tessarine
{
/// The samplers of a texture in their literal form, a byte at a time: the judge of DSTexture::Resample.
///
/// `pixels` is an image of width * height * components bytes; the result has newWidth * newHeight *
/// components.
std::vector<std::uint8_t> ResampleLiterally(const std::vector<std::uint8_t>& pixels, int width, int height,
                                            int components, int newWidth, int newHeight,
                                            DSTexture::ResampleMode mode);
}
