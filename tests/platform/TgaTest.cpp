#include "ImageBytes.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
using ::testing::EndsWith;
using ::testing::HasSubstr;

struct TgaForm
{
    int type = 2;
    unsigned width = 2;
    unsigned height = 2;
    int bits = 24;
    int descriptor = 0; ///< 0x10 from the right, 0x20 from the top
    std::string id = {};
    unsigned mapFirst = 0;
    unsigned mapLength = 0;
    int mapBits = 0;
    std::string map = {};
};

std::string Tga(const TgaForm& form, const std::string& pixels)
{
    return Bytes({static_cast<int>(form.id.size()), form.map.empty() ? 0 : 1, form.type}) +
           Little16(form.mapFirst) + Little16(form.mapLength) + Bytes({form.mapBits}) + Little32(0) +
           Little16(form.width) + Little16(form.height) + Bytes({form.bits, form.descriptor}) + form.id +
           form.map + pixels;
}

const std::string kTwoByTwo = Bytes({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12});
}

TEST(Tga, StartsAtTheBottomLeft)
{
    ExpectImage(DecodeImage(Tga({}, kTwoByTwo), "tga"), 2, 2, 3, {3, 2, 1, 6, 5, 4, 9, 8, 7, 12, 11, 10});
}

TEST(Tga, MayStartAtTheTopLeft)
{
    ExpectImage(DecodeImage(Tga({.descriptor = 0x20}, kTwoByTwo), "tga"), 2, 2, 3,
                {9, 8, 7, 12, 11, 10, 3, 2, 1, 6, 5, 4});
}

TEST(Tga, MayStartAtTheBottomRight)
{
    ExpectImage(DecodeImage(Tga({.descriptor = 0x10}, kTwoByTwo), "tga"), 2, 2, 3,
                {6, 5, 4, 3, 2, 1, 12, 11, 10, 9, 8, 7});
}

TEST(Tga, MayStartAtTheTopRight)
{
    ExpectImage(DecodeImage(Tga({.descriptor = 0x30}, kTwoByTwo), "tga"), 2, 2, 3,
                {12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1});
}

TEST(Tga, OfThirtyTwoBitsHasAlpha)
{
    const std::string file = Tga({.width = 1, .height = 1, .bits = 32, .descriptor = 8}, Bytes({1, 2, 3, 4}));
    ExpectImage(DecodeImage(file, "tga"), 1, 1, 4, {3, 2, 1, 4});
}

TEST(Tga, OfFifteenAndSixteenBitsGivesFiveToEachChannel)
{
    for (const int bits : {15, 16})
    {
        const std::string file = Tga({.width = 2, .height = 1, .bits = bits},
                                     Little16(31U << 10U | 1U << 5U | 16U) + Little16(0x8000));
        ExpectImage(DecodeImage(file, "tga"), 2, 1, 3, {255, 8, 132, 0, 0, 0}); // as in a BMP
    }
}

TEST(Tga, OfGreyHasOneComponent)
{
    ExpectImage(DecodeImage(Tga({.type = 3, .bits = 8}, Bytes({1, 2, 3, 4})), "tga"), 2, 2, 1, {1, 2, 3, 4});
}

TEST(Tga, OfGreyWithAlphaHasTwo)
{
    const std::string file = Tga({.type = 3, .width = 2, .height = 1, .bits = 16}, Bytes({1, 2, 3, 4}));
    ExpectImage(DecodeImage(file, "tga"), 2, 1, 2, {1, 2, 3, 4});
}

TEST(Tga, LooksUpItsColourMapFromItsFirstEntry)
{
    const TgaForm form{.type = 1,
                       .width = 2,
                       .height = 1,
                       .bits = 8,
                       .mapFirst = 10,
                       .mapLength = 2,
                       .mapBits = 24,
                       .map = Bytes({1, 2, 3, 4, 5, 6})};
    ExpectImage(DecodeImage(Tga(form, Bytes({11, 10})), "tga"), 2, 1, 3, {6, 5, 4, 3, 2, 1});
    EXPECT_THAT(FaultOfDecoding(Tga(form, Bytes({11, 9})), "tga"), HasSubstr("a pixel has colour 9,"));
    EXPECT_THAT(FaultOfDecoding(Tga(form, Bytes({12, 10})), "tga"), HasSubstr("a pixel has colour 12,"));
}

TEST(Tga, HasMapsOfEveryDepth)
{
    const TgaForm five{.type = 1,
                       .width = 1,
                       .height = 1,
                       .bits = 16,
                       .mapLength = 1,
                       .mapBits = 15,
                       .map = Little16(31U << 10U)};
    ExpectImage(DecodeImage(Tga(five, Little16(0)), "tga"), 1, 1, 3, {255, 0, 0});
    const TgaForm alpha{.type = 1,
                        .width = 1,
                        .height = 1,
                        .bits = 8,
                        .mapLength = 1,
                        .mapBits = 32,
                        .map = Bytes({1, 2, 3, 4})};
    ExpectImage(DecodeImage(Tga(alpha, Bytes({0})), "tga"), 1, 1, 4, {3, 2, 1, 4});
}

TEST(Tga, SkipsItsNameAndAMapThatIsOfNoUse)
{
    const TgaForm form{.width = 1, .height = 1, .id = "name", .mapLength = 2, .mapBits = 16, .map = "gaps"};
    ExpectImage(DecodeImage(Tga(form, Bytes({1, 2, 3})), "tga"), 1, 1, 3, {3, 2, 1});
}

TEST(Tga, HasRunsAndLiteralPixels)
{
    const std::string runs = Bytes({0x82, 1, 2, 3, 0, 4, 5, 6}); // three times one pixel, then one
    ExpectImage(DecodeImage(Tga({.type = 10}, runs), "tga"), 2, 2, 3, {3, 2, 1, 3, 2, 1, 3, 2, 1, 6, 5, 4});
}

TEST(Tga, HasRunsOfGreyAndOfMappedColours)
{
    ExpectImage(DecodeImage(Tga({.type = 11, .bits = 8}, Bytes({0x81, 7, 1, 8, 9})), "tga"), 2, 2, 1,
                {7, 7, 8, 9});
    const TgaForm mapped{.type = 9,
                         .width = 3,
                         .height = 1,
                         .bits = 8,
                         .mapLength = 2,
                         .mapBits = 24,
                         .map = Bytes({1, 2, 3, 4, 5, 6})};
    ExpectImage(DecodeImage(Tga(mapped, Bytes({0x81, 1, 0, 0})), "tga"), 3, 1, 3,
                {6, 5, 4, 6, 5, 4, 3, 2, 1});
}

TEST(Tga, RunsThatLeaveThePictureAreRefused)
{
    EXPECT_THAT(FaultOfDecoding(Tga({.type = 10}, Bytes({0x84, 1, 2, 3})), "tga"),
                EndsWith("a run of pixels leaves the picture"));
}

TEST(Tga, CutOffAnywhereIsRefused)
{
    ExpectRefusedAtEveryLength(Tga({.id = "name"}, kTwoByTwo), "tga");
    ExpectRefusedAtEveryLength(Tga({.type = 10}, Bytes({0x82, 1, 2, 3, 0, 4, 5, 6})), "tga");
}

TEST(Tga, SurvivesEveryChangedByte)
{
    ExpectSurvivesEveryChangedByte(Tga({.type = 10, .id = "name"}, Bytes({0x82, 1, 2, 3, 0, 4, 5, 6})),
                                   "tga");
}

TEST(Tga, ThatClaimsTooManyPixelsIsRefused)
{
    EXPECT_THAT(FaultOfDecoding(Tga({.width = 16385, .height = 1}, ""), "tga"),
                HasSubstr("16385 x 1 pixels large"));
    EXPECT_THAT(FaultOfDecoding(Tga({.width = 16384, .height = 16384}, ""), "tga"),
                EndsWith("take more than 512 MiB"));
    EXPECT_THAT(FaultOfDecoding(Tga({.type = 11, .width = 16384, .height = 16384, .bits = 8}, "few"), "tga"),
                EndsWith("the file ends before its picture does"));
}

TEST(Tga, WithoutPixelsIsRefused)
{
    EXPECT_THAT(FaultOfDecoding(Tga({.width = 0}, kTwoByTwo), "tga"), EndsWith("it has no pixels"));
    EXPECT_THAT(FaultOfDecoding(Tga({.type = 0}, kTwoByTwo), "tga"),
                EndsWith("a TGA of type 0 with 24 bits is not read"));
}

TEST(Tga, OfAnUnknownKindIsRefused)
{
    EXPECT_THAT(FaultOfDecoding(Tga({.bits = 8}, kTwoByTwo), "tga"), EndsWith("is not read"));
    EXPECT_THAT(FaultOfDecoding(Tga({.type = 18}, kTwoByTwo), "tga"), EndsWith("is not read"));
    EXPECT_THAT(FaultOfDecoding(Tga({.type = 1, .bits = 8}, kTwoByTwo), "tga"),
                EndsWith("is not read")); // no map
}
}
