#include "ImageBytes.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
using ::testing::EndsWith;
using ::testing::HasSubstr;

/// What stands in the headers; the rest follows from it.
struct BmpForm
{
    int width = 2;
    int height = 2;
    unsigned bits = 24;
    std::uint32_t compression = 0;
    std::uint32_t coloursUsed = 0;
    std::uint32_t headerSize = 40;
    std::string masks = {};
    std::string palette = {};
};

std::string Bmp(const BmpForm& form, const std::string& pixels)
{
    std::string header = Little32(form.headerSize) + Little32(static_cast<std::uint32_t>(form.width)) +
                         Little32(static_cast<std::uint32_t>(form.height)) + Little16(1) +
                         Little16(form.bits) + Little32(form.compression) + std::string(12, '\0') +
                         Little32(form.coloursUsed) + Little32(0) + form.masks;
    if (header.size() < form.headerSize)
    {
        header.resize(form.headerSize, '\0');
    }
    header += form.palette;
    const auto offset = static_cast<std::uint32_t>(14 + header.size());
    return "BM" + Little32(static_cast<std::uint32_t>(offset + pixels.size())) + Little32(0) +
           Little32(offset) + header + pixels;
}

// Blue comes first, rows end on a multiple of four bytes, the bottom row comes first.
const std::string kTwoByTwo = Bytes({1, 2, 3, 4, 5, 6, 0, 0, 7, 8, 9, 10, 11, 12, 0, 0});

const std::string kFourColours =
    Bytes({0, 0, 0, 0, 0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0, 0}); // black, red, green, blue

/// Pixels by the number of their colour in kFourColours.
std::vector<std::uint8_t> Coloured(const std::vector<int>& indices)
{
    std::vector<std::uint8_t> pixels;
    for (const int index : indices)
    {
        for (int channel = 1; channel <= 3; ++channel)
        {
            pixels.push_back(index == channel ? 255 : 0);
        }
    }
    return pixels;
}

std::string Rle8(const std::string& runs, int width = 4, int height = 2)
{
    return Bmp({.width = width,
                .height = height,
                .bits = 8,
                .compression = 1,
                .coloursUsed = 4,
                .palette = kFourColours},
               runs);
}

std::string Rle4(const std::string& runs, int width = 4, int height = 2)
{
    return Bmp({.width = width,
                .height = height,
                .bits = 4,
                .compression = 2,
                .coloursUsed = 4,
                .palette = kFourColours},
               runs);
}
}

TEST(Bmp, HasItsBottomRowFirst)
{
    ExpectImage(DecodeImage(Bmp({}, kTwoByTwo), "bmp"), 2, 2, 3, {3, 2, 1, 6, 5, 4, 9, 8, 7, 12, 11, 10});
}

TEST(Bmp, OfNegativeHeightIsStoredFromTheTop)
{
    ExpectImage(DecodeImage(Bmp({.height = -2}, kTwoByTwo), "bmp"), 2, 2, 3,
                {9, 8, 7, 12, 11, 10, 3, 2, 1, 6, 5, 4});
}

TEST(Bmp, OfOneBitStartsAtTheHighestBit)
{
    const std::string palette = kFourColours.substr(0, 8);
    // 10 pixels take two of the four bytes of a row: 1010 0000 01.. ....
    const std::string file =
        Bmp({.width = 10, .height = 1, .bits = 1, .palette = palette}, Bytes({0xA0, 0x40, 0, 0}));
    ExpectImage(DecodeImage(file, "bmp"), 10, 1, 3, Coloured({1, 0, 1, 0, 0, 0, 0, 0, 0, 1}));
}

TEST(Bmp, OfFourBitsHoldsTwoPixelsAByte)
{
    const std::string file =
        Bmp({.width = 3, .height = 2, .bits = 4, .coloursUsed = 4, .palette = kFourColours},
            Bytes({0x12, 0x30, 0, 0, 0x01, 0x20, 0, 0}));
    ExpectImage(DecodeImage(file, "bmp"), 3, 2, 3, Coloured({1, 2, 3, 0, 1, 2}));
}

TEST(Bmp, OfEightBitsLooksUpItsPalette)
{
    const std::string file =
        Bmp({.width = 3, .height = 2, .bits = 8, .coloursUsed = 4, .palette = kFourColours},
            Bytes({1, 2, 3, 0, 3, 2, 1, 0}));
    ExpectImage(DecodeImage(file, "bmp"), 3, 2, 3, Coloured({1, 2, 3, 3, 2, 1}));
}

TEST(Bmp, WithThe256GreysAsPaletteIsGrey)
{
    std::string palette = {};
    for (int grey = 0; grey < 256; ++grey)
    {
        palette += Bytes({grey, grey, grey, 0});
    }
    const std::string file = Bmp({.bits = 8, .palette = palette}, Bytes({1, 2, 0, 0, 200, 255, 0, 0}));
    ExpectImage(DecodeImage(file, "bmp"), 2, 2, 1, {1, 2, 200, 255});
}

TEST(Bmp, MayNameAColourBeyondItsPaletteOnlyInVain)
{
    const std::string file = Bmp(
        {.width = 3, .height = 1, .bits = 8, .coloursUsed = 4, .palette = kFourColours}, Bytes({1, 4, 3, 0}));
    EXPECT_THAT(FaultOfDecoding(file, "bmp"), EndsWith("a pixel has colour 4 of a palette of 4"));
}

TEST(Bmp, OfTheOldestHeaderHasThreeBytesAColour)
{
    const std::string header = Little32(12) + Little16(2) + Little16(1) + Little16(1) + Little16(4);
    const std::string palette = Bytes({0, 0, 0, 0, 0, 255, 0, 255, 0, 255, 0, 0});
    const std::string file =
        "BM" + Little32(0) + Little32(0) + Little32(38) + header + palette + Bytes({0x13, 0, 0, 0});
    ExpectImage(DecodeImage(file, "bmp"), 2, 1, 3, Coloured({1, 3}));
}

TEST(Bmp, OfSixteenBitsGivesFiveToEachChannel)
{
    // 31 is 255, 1 is 255 / 31 = 8.2, 16 is 131.6
    const std::string file =
        Bmp({.width = 2, .height = 1, .bits = 16}, Little16(31U << 10U | 1U << 5U | 16U) + Little16(0x8000));
    ExpectImage(DecodeImage(file, "bmp"), 2, 1, 3, {255, 8, 132, 0, 0, 0});
}

TEST(Bmp, OfSixteenBitsCanGiveSixToGreen)
{
    const std::string masks = Little32(0xF800) + Little32(0x07E0) + Little32(0x001F);
    const std::string file = Bmp({.width = 2, .height = 1, .bits = 16, .compression = 3, .masks = masks},
                                 Little16(63U << 5U) + Little16(1U << 5U | 31U << 11U));
    ExpectImage(DecodeImage(file, "bmp"), 2, 1, 3, {0, 255, 0, 255, 4, 0}); // 255 / 63 = 4.05
}

TEST(Bmp, OfThirtyTwoBitsHasNoAlphaWithoutAMask)
{
    const std::string file = Bmp({.width = 1, .height = 1, .bits = 32}, Bytes({1, 2, 3, 77}));
    ExpectImage(DecodeImage(file, "bmp"), 1, 1, 3, {3, 2, 1});
}

TEST(Bmp, OfThirtyTwoBitsHasTheAlphaOfItsMask)
{
    const std::string masks = Little32(0xFF) + Little32(0xFF00) + Little32(0xFF0000) + Little32(0xFF000000);
    const std::string file =
        Bmp({.width = 1, .height = 1, .bits = 32, .compression = 3, .headerSize = 108, .masks = masks},
            Bytes({1, 2, 3, 77}));
    ExpectImage(DecodeImage(file, "bmp"), 1, 1, 4, {1, 2, 3, 77});
}

TEST(Bmp, MayHaveMasksOfMoreThanEightBits)
{
    const std::string masks = Little32(0x3FF00000) + Little32(0x000FFC00) + Little32(0x000003FF);
    const std::string file = Bmp({.width = 1, .height = 1, .bits = 32, .compression = 3, .masks = masks},
                                 Little32(1023U << 20U | 512U << 10U | 2U));
    ExpectImage(DecodeImage(file, "bmp"), 1, 1, 3, {255, 128, 0}); // 512 * 255 / 1023 = 127.6, 2 is 0.498
}

TEST(Bmp, MayNotHaveMasksWithGaps)
{
    const std::string masks = Little32(0xF0F0) + Little32(0x0F00) + Little32(0x000F);
    const std::string file =
        Bmp({.width = 1, .height = 1, .bits = 16, .compression = 3, .masks = masks}, Little32(0));
    EXPECT_THAT(FaultOfDecoding(file, "bmp"), EndsWith("a colour mask of it has gaps"));
}

TEST(Bmp, IsReadWhereItsHeaderSaysThatThePixelsAre)
{
    std::string file = Bmp({}, "gap!" + kTwoByTwo);
    file[10] = static_cast<char>(file[10] + 4);
    ExpectImage(DecodeImage(file, "bmp"), 2, 2, 3, {3, 2, 1, 6, 5, 4, 9, 8, 7, 12, 11, 10});
}

TEST(Bmp, RunsOfBytes)
{
    const std::string file = Rle8(Bytes({3, 1, 1, 2, 0, 0, 4, 3, 0, 1}));
    ExpectImage(DecodeImage(file, "bmp"), 4, 2, 3, Coloured({1, 1, 1, 2, 3, 3, 3, 3}));
}

TEST(Bmp, RunsOfBytesBesideLiteralOnes)
{
    // three literal bytes and one that fills up; then one more pixel
    const std::string file = Rle8(Bytes({0, 3, 1, 2, 3, 0, 1, 1, 0, 0, 0, 4, 0, 1, 2, 3, 0, 1}));
    ExpectImage(DecodeImage(file, "bmp"), 4, 2, 3, Coloured({1, 2, 3, 1, 0, 1, 2, 3}));
}

TEST(Bmp, RunsThatStepOverPixels)
{
    const std::string file = Rle8(Bytes({1, 1, 0, 2, 1, 1, 2, 2, 0, 1})); // one right of the run, one up
    ExpectImage(DecodeImage(file, "bmp"), 4, 2, 3, Coloured({1, 0, 0, 0, 0, 0, 2, 2}));
}

TEST(Bmp, RunsThatEndEarlyLeaveTheFirstColour)
{
    ExpectImage(DecodeImage(Rle8(Bytes({1, 2, 0, 1})), "bmp"), 4, 2, 3, Coloured({2, 0, 0, 0, 0, 0, 0, 0}));
}

TEST(Bmp, RunsThatLeaveTheLineAreRefused)
{
    EXPECT_THAT(FaultOfDecoding(Rle8(Bytes({5, 1, 0, 1})), "bmp"),
                EndsWith("a run of pixels leaves the picture"));
}

TEST(Bmp, RunsThatLeaveTheTopAreRefused)
{
    EXPECT_THAT(FaultOfDecoding(Rle8(Bytes({0, 2, 0, 2, 1, 1, 0, 1})), "bmp"),
                EndsWith("a run of pixels leaves the picture"));
}

TEST(Bmp, RunsOfHalfBytesAlternate)
{
    const std::string file = Rle4(Bytes({3, 0x12, 1, 0x30, 0, 0, 4, 0x23, 0, 1}));
    ExpectImage(DecodeImage(file, "bmp"), 4, 2, 3, Coloured({1, 2, 1, 3, 2, 3, 2, 3}));
}

TEST(Bmp, RunsOfHalfBytesBesideLiteralOnes)
{
    // five half-bytes take three bytes, and one fills up
    const std::string file = Rle4(Bytes({0, 5, 0x12, 0x31, 0x20, 0, 0, 1}), 5, 1);
    ExpectImage(DecodeImage(file, "bmp"), 5, 1, 3, Coloured({1, 2, 3, 1, 2}));
}

TEST(Bmp, RunsFromTheTopDoNotExist)
{
    EXPECT_THAT(FaultOfDecoding(Rle8(Bytes({0, 1}), 4, -2), "bmp"), EndsWith("is not read"));
}

TEST(Bmp, CutOffAnywhereIsRefused)
{
    ExpectRefusedAtEveryLength(Bmp({}, kTwoByTwo), "bmp");
    ExpectRefusedAtEveryLength(Rle8(Bytes({3, 1, 0, 4, 1, 2, 3, 0, 0, 1}), 7, 1), "bmp");
    ExpectRefusedAtEveryLength(Rle4(Bytes({3, 0x12, 1, 0x30, 0, 0, 4, 0x23, 0, 1})), "bmp");
}

TEST(Bmp, SurvivesEveryChangedByte)
{
    ExpectSurvivesEveryChangedByte(Bmp({}, kTwoByTwo), "bmp");
    ExpectSurvivesEveryChangedByte(Rle8(Bytes({3, 1, 0, 4, 1, 2, 3, 0, 0, 1}), 7, 1), "bmp");
}

TEST(Bmp, ThatClaimsTooManyPixelsIsRefused)
{
    EXPECT_THAT(FaultOfDecoding(Bmp({.width = 16385, .height = 1}, ""), "bmp"),
                HasSubstr("16385 x 1 pixels large"));
    EXPECT_THAT(FaultOfDecoding(Bmp({.width = 1, .height = -2147483647 - 1}, ""), "bmp"),
                HasSubstr("2147483648"));
    EXPECT_THAT(FaultOfDecoding(Bmp({.width = 16384, .height = 16384}, ""), "bmp"),
                EndsWith("ends before its picture does"));
    const BmpForm large{.width = 16384,
                        .height = 16384,
                        .bits = 8,
                        .compression = 1,
                        .coloursUsed = 4,
                        .palette = kFourColours};
    EXPECT_THAT(FaultOfDecoding(Bmp(large, Bytes({0, 1})), "bmp"), EndsWith("take more than 512 MiB"));
}

TEST(Bmp, WithoutPixelsIsRefused)
{
    EXPECT_THAT(FaultOfDecoding(Bmp({.width = 0}, kTwoByTwo), "bmp"), EndsWith("it has no pixels"));
    EXPECT_THAT(FaultOfDecoding(Bmp({.width = -2}, kTwoByTwo), "bmp"), EndsWith("it has no pixels"));
    EXPECT_THAT(FaultOfDecoding(Bmp({.height = 0}, kTwoByTwo), "bmp"), EndsWith("it has no pixels"));
}

TEST(Bmp, OfAnUnknownKindIsRefused)
{
    EXPECT_THAT(FaultOfDecoding(Bmp({.bits = 2}, kTwoByTwo), "bmp"),
                EndsWith("a BMP of 2 bits and compression 0 is not read"));
    EXPECT_THAT(FaultOfDecoding(Bmp({.compression = 4}, kTwoByTwo), "bmp"),
                EndsWith("compression 4 is not read"));
    EXPECT_THAT(FaultOfDecoding(Bmp({.headerSize = 41}, kTwoByTwo), "bmp"),
                EndsWith("header of 41 bytes is of no known kind"));
    EXPECT_THAT(FaultOfDecoding("GIF89a", "bmp"), EndsWith("it is no BMP file"));
}
}
