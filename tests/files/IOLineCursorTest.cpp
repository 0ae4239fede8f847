#include "IOLineCursor.h"
#include "LiteralObjReader.h"
#include <bit>
#include <cmath>
#include <cstdint>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

namespace tessarine
{
namespace
{
/// A line and a cursor on it.
struct Line
{
    explicit Line(std::string characters) : text(std::move(characters)) {}
    std::string text;
    IOLineCursor cursor{text.data(), text.data() + text.size()};
};

std::int32_t IntOf(const std::string& text)
{
    return Line(text).cursor.ReadInt();
}
float FloatOf(const std::string& text)
{
    return Line(text).cursor.ReadFloat();
}

TEST(IOLineCursor, ReadsAnIntegerBehindBlanksAndTabs)
{
    Line line(" \t 12 -7");
    EXPECT_EQ(line.cursor.ReadInt(), 12);
    EXPECT_EQ(line.cursor.ReadInt(), -7);
    EXPECT_EQ(line.cursor.GetIndex(), line.text.size());
}

TEST(IOLineCursor, ReadsNoDigitsAsZeroAndConsumesNothing)
{
    Line line("+5");
    EXPECT_EQ(line.cursor.ReadInt(), 0);
    EXPECT_EQ(line.cursor.ReadFloat(), 0.0F);
    EXPECT_EQ(line.cursor.Peek(), '+');
}

TEST(IOLineCursor, SaturatesIntegersBeyond32Bits)
{
    EXPECT_EQ(IntOf("2147483647"), 2147483647);
    EXPECT_EQ(IntOf("2147483648"), 2147483647);
    EXPECT_EQ(IntOf("-2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(IntOf("-2147483649"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(IntOf("18446744073709551617"), 2147483647); // 2^64 + 1: must not come round to 1
    EXPECT_EQ(IntOf(std::string(5000, '9')), 2147483647);
    EXPECT_EQ(IntOf(std::string("-").append(5000, '9')), std::numeric_limits<std::int32_t>::min());
}

TEST(IOLineCursor, ReadsFractionsAndExponents)
{
    Line line("1.5e2 -2 .5");
    EXPECT_EQ(line.cursor.ReadFloat(), 150.0F);
    EXPECT_EQ(line.cursor.ReadFloat(), -2.0F);
    EXPECT_EQ(line.cursor.ReadFloat(), 0.5F);
    EXPECT_EQ(FloatOf("3E-1"), 3.0F / 10.0F);
}

TEST(IOLineCursor, DividesTheFractionOnceForEachOfItsDigits)
{
    // 123456 is exact; six divisions by 10, each rounded, are not one division by a million.
    float expected = 123456.0F;
    for (int i = 0; i < 6; ++i)
    {
        expected /= 10.0F;
    }
    EXPECT_EQ(FloatOf("0.123456"), expected);
}

TEST(IOLineCursor, LeavesThePlusOfAnExponentBehind)
{
    Line line("1e+5 7");
    EXPECT_EQ(line.cursor.ReadFloat(), 1.0F);
    EXPECT_EQ(line.cursor.ReadFloat(), 0.0F); // stands at the plus, and consumes nothing
    EXPECT_EQ(line.cursor.Peek(), '+');
}

TEST(IOLineCursor, ReadsAnExponentBehindBlanks)
{
    Line line("1e 2 7");
    EXPECT_EQ(line.cursor.ReadFloat(), 100.0F);
    EXPECT_EQ(line.cursor.ReadFloat(), 7.0F);
}

TEST(IOLineCursor, TakesNoTimeForAnExponentInTheMilliards)
{
    EXPECT_EQ(FloatOf("1e2000000000"), std::numeric_limits<float>::infinity());
    EXPECT_EQ(FloatOf("1e-2000000000"), 0.0F);
    EXPECT_EQ(FloatOf("0e2000000000"), 0.0F);
}

TEST(IOLineCursor, ReadsAMinusAloneAsMinusZero)
{
    const float value = FloatOf("-");
    EXPECT_EQ(value, 0.0F);
    EXPECT_TRUE(std::signbit(value));
}

TEST(IOLineCursor, ReadsWordsForNoNumberAsZero)
{
    EXPECT_EQ(FloatOf("nan"), 0.0F);
    EXPECT_EQ(FloatOf("inf"), 0.0F);
}

TEST(IOLineCursor, ReadsThousandsOfDigits)
{
    EXPECT_EQ(FloatOf(std::string(5000, '9')), std::numeric_limits<float>::infinity());
    EXPECT_EQ(FloatOf(std::string("0.").append(5000, '0') + '1'), 0.0F);
    // The digits of a fraction are gathered before they are divided, and overflow.
    EXPECT_EQ(FloatOf(std::string("0.").append(5000, '3')), std::numeric_limits<float>::infinity());
}

TEST(IOLineCursor, ReadsZeroBehindTheLinesEnd)
{
    Line line("7");
    EXPECT_EQ(line.cursor.ReadInt(), 7);
    EXPECT_EQ(line.cursor.ReadChar(), '\0');
    EXPECT_EQ(line.cursor.ReadChar(), '\0');
    EXPECT_EQ(line.cursor.ReadInt(), 0);
    EXPECT_EQ(line.cursor.ReadFloat(), 0.0F);
    EXPECT_EQ(line.cursor.ReadToken(), "");
}

TEST(IOLineCursor, TakesAZeroWithinTheLineForACharacter)
{
    Line line(std::string("1\0002", 3));
    EXPECT_EQ(line.cursor.ReadInt(), 1);
    EXPECT_TRUE(line.cursor.IsAtZero());
    EXPECT_EQ(line.cursor.ReadChar(), '\0');
    EXPECT_EQ(line.cursor.ReadInt(), 2);
}

TEST(IOLineCursor, EndsATokenAtBlankTabOrZeroButNotAtACarriageReturn)
{
    Line line(std::string(" my\tmat a\r b\0c", 14));
    EXPECT_EQ(line.cursor.ReadToken(), "my");
    EXPECT_FALSE(line.cursor.IsAtZero());
    EXPECT_EQ(line.cursor.ReadToken(), "mat");
    EXPECT_EQ(line.cursor.ReadToken(), "a\r");
    EXPECT_EQ(line.cursor.ReadToken(), "b");
    EXPECT_TRUE(line.cursor.IsAtZero());
}

TEST(IOLineCursor, StaysWithinTheLineForAnyIndex)
{
    Line line("abc");
    line.cursor.SetIndex(6);
    EXPECT_TRUE(line.cursor.IsAtZero());
    EXPECT_EQ(line.cursor.GetIndex(), 3U);
    EXPECT_EQ(line.cursor.Peek(1), '\0');
}

std::string RandomNumberText(std::mt19937& random)
{
    static constexpr char kCharacters[] = "0123456789012345678901234567890123456789..--+eE \t/x";
    const auto pick = [&](unsigned count) { return static_cast<unsigned>(random() % count); };
    std::string text;
    if (pick(3) == 0) // anything
    {
        for (unsigned i = pick(24); i > 0; --i)
        {
            text += kCharacters[pick(sizeof kCharacters - 1)];
        }
        return text;
    }
    text.append(pick(3) == 0 ? 1 : 0, '-');
    const auto addDigits = [&](unsigned count)
    {
        for (; count > 0; --count)
        {
            text += static_cast<char>('0' + pick(10));
        }
    };
    addDigits(pick(10) == 0 ? pick(60) : pick(4));
    if (pick(4) != 0)
    {
        text += '.';
        addDigits(pick(10) == 0 ? pick(60) : pick(10));
    }
    if (pick(5) == 0)
    {
        text += pick(2) == 0 ? "e" : "E-";
        addDigits(pick(4));
    }
    return text;
}

void ExpectSameAsLiteral(const std::string& text)
{
    Line line(text);
    const float value = line.cursor.ReadFloat();
    std::size_t index = 0;
    const float expected = LiteralScanner::ReadFloat(text, index);
    ASSERT_EQ(std::bit_cast<std::uint32_t>(value), std::bit_cast<std::uint32_t>(expected))
        << '"' << text << "\": " << value << " for " << expected;
    ASSERT_EQ(line.cursor.GetIndex(), index) << '"' << text << '"';

    line.cursor.SetIndex(0);
    const std::int32_t whole = line.cursor.ReadInt();
    index = 0;
    ASSERT_EQ(whole, LiteralScanner::ReadInt(text, index)) << '"' << text << '"';
    ASSERT_EQ(line.cursor.GetIndex(), index) << '"' << text << '"';
}

TEST(IOLineCursor, ReadsRandomTextsBitForBitAsTheLiteralScannerDoes)
{
    std::mt19937 random(20010401);
    for (int i = 0; i < 500000 && !::testing::Test::HasFatalFailure(); ++i)
    {
        ExpectSameAsLiteral(RandomNumberText(random));
    }
}

TEST(IOLineCursor, ReadsOddFormsBitForBitAsTheLiteralScannerDoes)
{
    for (const char* text : {"1e+5",
                             "-",
                             ".",
                             "1.2.3",
                             "+1",
                             "1e-400",
                             "1e400",
                             "-.e",
                             "e5",
                             ".e-3",
                             "--1",
                             "-e-",
                             "16777215",
                             "16777216",
                             "16777217",
                             "1677721.6",
                             "0.16777217",
                             "99999999999",
                             "1e38",
                             "3.5e38",
                             "1e-45",
                             "-0.0",
                             "0.00000000000000000000000000000000000000000000001",
                             "1 2",
                             "1\t2",
                             "1e\t-2",
                             "",
                             " "})
    {
        ExpectSameAsLiteral(text);
    }
}
}
}
