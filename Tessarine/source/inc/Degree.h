#pragma once

namespace tessarine
{
/// Kept: ten decimals of pi, which show in the last digits of every angle.
inline constexpr double kPi = 3.1415926535;

/// What a degree is in radians.
inline constexpr double kDegree = kPi / 180.0;
}
