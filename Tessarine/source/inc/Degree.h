#pragma once

namespace tessarine
{
/// What a degree is in radians.
///
/// Kept: ten decimals of pi, which show in the last digits of every angle.
inline constexpr double kDegree = 3.1415926535 / 180.0;
}
