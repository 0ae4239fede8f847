#pragma once
#include <cstdint>
#include <vector>

namespace tessarine
{
/// The filter as it is defined: pixel by pixel, with one counter that goes through all columns.
bool FilterLiterally(int width, int height, std::vector<std::uint8_t>& image, int runLength,
                     bool fillBackground);

/// The 2D field as it is defined: forty-two sweeps over the whole image.
std::vector<std::int32_t> BuildDistanceLiterally(int width, int height,
                                                 const std::vector<std::uint8_t>& image);
}
