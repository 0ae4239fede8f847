#pragma once
#include <cstdint>

namespace tessarine
{
/// Entries of the 2D field: the layers reach this far from the outline, and pixels beyond have this value
/// outside, and its negative inside.
inline constexpr std::int32_t kMostLayers = 21;
inline constexpr std::int32_t kFarAway = 30;

/// The signed distance of each pixel to the outline of a silhouette (see FilterImage), in layers of the
/// city-block metric: 0 on the outline, to 21 outside, to -21 inside; 30 and -30 beyond.
///
/// The outline are the object's pixels with background around them.
/// Cost    Linear in the pixels.
/// Kept    The neighbour at (x - 1, y + 1) is not looked at. Pixels on the border of the image are outside,
///         whatever they show; a pixel of the border is one layer farther out than its neighbour within.
/// @param field width * height entries
void BuildDistance2D(int width, int height, const std::uint8_t* image, std::int32_t* field);
}
