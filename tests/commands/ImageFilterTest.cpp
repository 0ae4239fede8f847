#include "ImageFilter.h"
#include "Capture.h"
#include "LiteralSilhouette.h"
#include "Silhouettes.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
using ::testing::ElementsAre;

std::vector<std::string> Filter(const std::vector<std::string_view>& rows, int runLength = 1,
                                bool fillBackground = true)
{
    const ConsoleCapture console;
    DrawnImage image(rows);
    FilterImage(image.width, image.height, image.pixels.data(), runLength, fillBackground);
    return image.GetRows();
}

bool HasMarker(const std::vector<std::string_view>& rows)
{
    const ConsoleCapture console;
    DrawnImage image(rows);
    return FilterImage(image.width, image.height, image.pixels.data(), 1, true);
}

TEST(ImageFilter, FillsAGapOfOnePixelInARow)
{
    EXPECT_THAT(Filter({"....", "....", "#.##", "...."}), ElementsAre("....", "....", "####", "...."));
}

TEST(ImageFilter, LeavesAGapOfTwoPixels)
{
    EXPECT_THAT(Filter({".....", ".....", "##..#", "....."}),
                ElementsAre(".....", ".....", "##..#", "....."));
}

TEST(ImageFilter, FillsAGapOfOnePixelInAColumn)
{
    EXPECT_THAT(Filter({"...#...", ".......", "...#..."}), ElementsAre("...#...", "...#...", "...#..."));
}

TEST(ImageFilter, GoesOnFromTheEndOfARowToTheNext)
{
    // One pixel at the end of row 0, then object: the run reaches back over the row's end.
    EXPECT_THAT(Filter({"###.", "####", "####"}), ElementsAre("####", "####", "####"));
    // The same with background below, which no column fills: each run of theirs is of two or more.
    EXPECT_THAT(Filter({"###.", "#...", "....", "...."}), ElementsAre("####", "#...", "....", "...."));
    // One at the end and one at the start are a run of two; in the columns they stay, each ends no short run.
    EXPECT_THAT(Filter({"..#.", ".##.", "...."}), ElementsAre("..#.", ".##.", "...."));
}

TEST(ImageFilter, GoesOnFromTheEndOfAColumnToTheNext)
{
    // The first column ends in one background pixel and the second starts with one: two, which stay.
    EXPECT_THAT(Filter({"#...", "##..", "##..", ".#.."}), ElementsAre("#...", "##..", "##..", ".#.."));
    // Behind a column that ends in object the first pixel is a run of its own.
    EXPECT_THAT(Filter({"#...", "##..", "##..", "##.."}), ElementsAre("##..", "##..", "##..", "##.."));
}

TEST(ImageFilter, StartsAnewBehindALongRun)
{
    EXPECT_THAT(Filter({"......", "......", "#..#.#", "......"}),
                ElementsAre("......", "......", "#..###", "......"));
}

TEST(ImageFilter, LeavesOutWhatFallsBeforeTheImage)
{
    EXPECT_THAT(Filter({".###", "####"}), ElementsAre("####", "####")); // its row's own start
    std::vector<std::uint8_t> pixels(4 * 3, 7);
    FillRun(1, 0, 5, 2, 2, pixels.data(), true, false);
    EXPECT_EQ(pixels[0], 255);
    EXPECT_EQ(pixels[3], 7);
    FillRun(0, 1, 5, 2, 2, pixels.data(), false, true);
    EXPECT_EQ(pixels[0], 0);
    EXPECT_EQ(pixels[6], 7);
}

TEST(ImageFilter, ReachesBackIntoTheRowBefore)
{
    std::vector<std::uint8_t> pixels(4 * 3, 7);
    FillRun(0, 1, 1, 2, 2, pixels.data(), true, false);
    EXPECT_EQ(pixels[3], 255); // the last pixel of row 0
    EXPECT_EQ(pixels[0], 7);
}

TEST(ImageFilter, EmptiesShortRunsOfTheObjectInBlack)
{
    EXPECT_THAT(Filter({".....", ".#.##", ".....", "....."}, 1, false),
                ElementsAre(".....", ".....", ".....", ".....")); // each pixel is alone in its column
}

TEST(ImageFilter, TellsWhetherThereIsAMarker)
{
    EXPECT_TRUE(HasMarker({"....", "..m.", "...."}));
    EXPECT_FALSE(HasMarker({"....", ".##.", "...."}));
}

TEST(ImageFilter, TakesMarkersForBackgroundAndFillsThem)
{
    const std::vector<std::string_view> image = {"....", "....", "#m##", "...."};
    EXPECT_THAT(Filter(image), ElementsAre("....", "....", "####", "...."));
    EXPECT_TRUE(HasMarker(image));
}

TEST(ImageFilter, SaysThatItIsDone)
{
    ConsoleCapture console;
    DrawnImage image({"."});
    FilterImage(1, 1, image.pixels.data(), 1, true);
    EXPECT_EQ(console.GetText(), "Filter image ok..\n");
}

TEST(ImageFilter, DoesAsTheLiteralFormOnRandomImages)
{
    const ConsoleCapture console;
    for (unsigned seed = 0; seed < 400; ++seed)
    {
        const int width = 1 + static_cast<int>(seed % 37);
        const int height = 1 + static_cast<int>(seed / 3 % 29);
        const int runLength = static_cast<int>(seed % 5);
        const bool fillBackground = seed % 2 == 0;
        std::vector<std::uint8_t> expected = MakeRandomSilhouette(width, height, seed, 4, 0.02 * (seed % 30));
        std::vector<std::uint8_t> image = expected;
        const bool hasMarker = FilterLiterally(width, height, expected, runLength, fillBackground);
        ASSERT_EQ(FilterImage(width, height, image.data(), runLength, fillBackground), hasMarker) << seed;
        ASSERT_EQ(image, expected) << "seed " << seed;
    }
}
}
}
