#pragma once
#include <cstdint>

namespace tessarine
{
/// Cleans a silhouette of runs of at most `runLength` pixels, first along the rows, then along the columns.
///
/// An image has three bytes a pixel, no gaps between its rows, and row 0 first. The first byte decides: zero
/// is background, all else object. A marker is a background pixel whose second byte is not zero.
///
/// Leaves  Short runs of background in white with fillBackground, else short runs of object in black. Markers
///         are background like any other.
/// Says    "Filter image ok.."
/// Kept    A run goes on from the end of a row or column to the start of the next; a pixel that ends one of
///         any length starts the count anew. What is filled then reaches back into the row before, or falls
///         before the image, where it is left out.
/// @return whether the image had a marker before it was filtered
bool FilterImage(int width, int height, std::uint8_t* image, int runLength, bool fillBackground);

/// Fills the `length` pixels before (x, y), along its row or else along its column, in white or in black.
/// Those that fall before the image are left out.
void FillRun(int x, int y, int length, int width, int height, std::uint8_t* image, bool horizontal,
             bool black);
}
