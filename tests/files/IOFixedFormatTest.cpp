#include "IOFixedFormat.h"
#include <bit>
#include <cmath>
#include <cstdio>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

namespace tessarine
{
namespace
{
std::string Format(double value)
{
    char text[kMostFixedCharacters];
    return {text, FormatFixed(text, value)};
}

void ExpectAsPrintf(double value)
{
    char expected[kMostFixedCharacters + 1];
    std::snprintf(expected, sizeof expected, "%f", value);
    ASSERT_EQ(Format(value), expected);
}

TEST(IOFixedFormat, WritesSixDecimals)
{
    EXPECT_EQ(Format(1.0), "1.000000");
    EXPECT_EQ(Format(-0.25), "-0.250000");
    EXPECT_EQ(Format(123456.789), "123456.789000");
}

TEST(IOFixedFormat, KeepsTheSignOfNothing)
{
    EXPECT_EQ(Format(-0.0), "-0.000000");
    EXPECT_EQ(Format(-1e-9), "-0.000000");
}

TEST(IOFixedFormat, RoundsExactHalvesToEven)
{
    EXPECT_EQ(Format(1.0 / 128), "0.007812"); // 0.0078125
    EXPECT_EQ(Format(3.0 / 128), "0.023438"); // 0.0234375
}

TEST(IOFixedFormat, RoundsTheBinaryValueAndNotTheDecimalOneInTheSource)
{
    EXPECT_EQ(Format(5e-7), "0.000000");      // 4.99999999999999977e-7
    EXPECT_EQ(Format(2.5e-6), "0.000003");    // 2.50000000000000020e-6
    EXPECT_EQ(Format(0.9999985), "0.999999"); // 0.99999850000000001
    EXPECT_EQ(Format(9.9999999), "10.000000");
}

TEST(IOFixedFormat, WritesTheLongestNumbersAndThoseThatAreNone)
{
    constexpr double kMost = std::numeric_limits<double>::max();
    EXPECT_EQ(Format(-kMost).size(), kMostFixedCharacters);
    for (const double value :
         {kMost, -kMost, std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity(),
          std::numeric_limits<double>::quiet_NaN(), -std::numeric_limits<double>::quiet_NaN(),
          std::numeric_limits<double>::min(), std::numeric_limits<double>::denorm_min()})
    {
        ExpectAsPrintf(value);
    }
}

TEST(IOFixedFormat, WritesEveryPowerOfTwoAndItsNeighboursAsPrintfDoes)
{
    for (int power = -80; power < 100; ++power)
    {
        const double value = std::ldexp(1.0, power);
        ExpectAsPrintf(value);
        ExpectAsPrintf(std::nextafter(value, 0.0));
        ExpectAsPrintf(-value * 1.5);
    }
}

TEST(IOFixedFormat, WritesRandomNumbersAsPrintfDoes)
{
    std::mt19937_64 random(271828);
    for (int i = 0; i < 100000 && !HasFatalFailure(); ++i)
    {
        const auto bits = random();
        ExpectAsPrintf(std::ldexp(static_cast<double>(static_cast<std::int64_t>(bits)),
                                  static_cast<int>(random() % 120) - 150));
        ExpectAsPrintf(static_cast<double>(static_cast<std::int64_t>(bits) >> 44) / 1048576.0); // halves
    }
    for (int i = 0; i < 2000 && !HasFatalFailure(); ++i)
    {
        ExpectAsPrintf(std::bit_cast<double>(random()));
    }
}
}
}
