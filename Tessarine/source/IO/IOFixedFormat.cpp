#include "IOFixedFormat.h"
#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>

namespace tessarine
{
namespace
{
__extension__ using UInt128 = unsigned __int128;

constexpr std::uint64_t kMillion = 1000000;
constexpr int kMantissaBits = 52;
constexpr int kExponentBias = 1075; ///< of the mantissa as a whole number
constexpr int kLargestPower = 43;   ///< 2^43 * 10^6 fits in 63 bits

constexpr auto kPairs = []
{
    std::array<char, 200> pairs{};
    for (std::size_t i = 0; i < 100; ++i)
    {
        pairs[2 * i] = static_cast<char>('0' + i / 10);
        pairs[2 * i + 1] = static_cast<char>('0' + i % 10);
    }
    return pairs;
}();

void PutPair(char* out, std::uint64_t value)
{
    std::memcpy(out, kPairs.data() + 2 * value, 2);
}

/// mantissa * 2^-shift * 10^6, rounded to the nearest whole number, halves to even.
std::uint64_t ScaleToMillionths(std::uint64_t mantissa, int shift)
{
    constexpr int kProductBits = 73;
    if (shift > kProductBits + 1)
    {
        return 0;
    }
    const UInt128 product = static_cast<UInt128>(mantissa) * kMillion;
    const auto whole = static_cast<std::uint64_t>(product >> shift);
    const UInt128 rest = product - (static_cast<UInt128>(whole) << shift);
    const UInt128 half = static_cast<UInt128>(1) << (shift - 1);
    const bool up = rest > half || (rest == half && (whole & 1U) != 0);
    return whole + (up ? 1 : 0);
}

char* PutMillionths(char* out, std::uint64_t millionths)
{
    const std::uint64_t whole = millionths / kMillion;
    const std::uint64_t fraction = millionths % kMillion;
    if (whole < 10)
    {
        *out++ = static_cast<char>('0' + whole);
    }
    else
    {
        out = std::to_chars(out, out + kMostFixedCharacters, whole).ptr;
    }
    *out++ = '.';
    PutPair(out, fraction / 10000);
    PutPair(out + 2, fraction / 100 % 100);
    PutPair(out + 4, fraction % 100);
    return out + 6;
}
}

char* FormatFixed(char* out, double value)
{
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const int exponent = static_cast<int>((bits >> kMantissaBits) & 0x7FFU);
    const std::uint64_t fraction = bits & ((std::uint64_t{1} << kMantissaBits) - 1);
    if (exponent > kExponentBias - kMantissaBits - 1 + kLargestPower)
    {
        return std::to_chars(out, out + kMostFixedCharacters, value, std::chars_format::fixed, 6).ptr;
    }
    *out = '-';
    out += bits >> 63U;
    if (exponent == 0)
    {
        return PutMillionths(out, 0); // smaller than any that could round up
    }
    const std::uint64_t mantissa = fraction | (std::uint64_t{1} << kMantissaBits);
    return PutMillionths(out, ScaleToMillionths(mantissa, kExponentBias - exponent));
}
}
