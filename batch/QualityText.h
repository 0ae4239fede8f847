#pragma once
#include <string>

namespace tessarine
{
class DSSolid;

/// The quality of a solid's triangles (TriangleQuality): the smallest, the median, the mean and the largest, a line
/// each. A face whose quality is no number counts as infinitely bad. The median of an even number of faces is the mean
/// of the two in the middle.
///
/// Fails   Failure where there is no face, and where one has other than three corners.
std::string MakeQualityText(const DSSolid& solid);
}
