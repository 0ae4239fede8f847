#pragma once
#include <cstddef>

namespace tessarine
{
/// The largest number of characters that FormatFixed writes: a sign, 309 digits, a point and six digits.
inline constexpr std::size_t kMostFixedCharacters = 317;

/// Writes a number as the C library's "%f" does in the C locale: six decimals, rounded from the exact binary
/// value, halves to even; "inf" and "nan" with their sign.
/// @return behind the last character; no zero is written
char* FormatFixed(char* out, double value);
}
