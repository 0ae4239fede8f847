#include "Distance2D.h"
#include "LiteralSilhouette.h"
#include "Silhouettes.h"
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
using ::testing::Each;
using ::testing::ElementsAre;

std::vector<std::int32_t> Build(const DrawnImage& image)
{
    std::vector<std::int32_t> field(image.pixels.size() / 3, 12345);
    BuildDistance2D(image.width, image.height, image.pixels.data(), field.data());
    return field;
}

/// A square of object pixels around the middle of a square image.
DrawnImage MakeSquare(int side, int margin)
{
    const std::string blank(static_cast<std::size_t>(side), '.');
    const std::string filled = std::string(static_cast<std::size_t>(margin), '.') +
                               std::string(static_cast<std::size_t>(side - 2 * margin), '#') +
                               std::string(static_cast<std::size_t>(margin), '.');
    std::vector<std::string_view> rows;
    for (int y = 0; y < side; ++y)
    {
        rows.emplace_back(y < margin || y >= side - margin ? blank : filled);
    }
    return DrawnImage(rows);
}

TEST(Distance2D, IsFarAwayEverywhereInAnEmptyImage)
{
    EXPECT_THAT(Build(DrawnImage({"....", "....", "....", "...."})), Each(30));
}

TEST(Distance2D, CountsLayersAroundASinglePixel)
{
    EXPECT_THAT(Build(DrawnImage({".....", ".....", "..#..", ".....", "....."})),
                ElementsAre(30, 3, 2, 3, 30,   //
                            3, 2, 1, 2, 3,     //
                            2, 1, 0, 1, 2,     //
                            3, 2, 1, 2, 3,     //
                            30, 3, 2, 3, 30)); // corners are beside border pixels alone
}

TEST(Distance2D, CountsInward)
{
    EXPECT_THAT(
        Build(DrawnImage({".......", ".#####.", ".#####.", ".#####.", ".#####.", ".#####.", "......."})),
        ElementsAre(30, 1, 1, 1, 1, 1, 30,  //
                    1, 0, 0, 0, 0, 0, 1,    //
                    1, 0, -1, -1, -1, 0, 1, //
                    1, 0, -1, -2, -1, 0, 1, //
                    1, 0, -1, -1, -1, 0, 1, //
                    1, 0, 0, 0, 0, 0, 1,    //
                    30, 1, 1, 1, 1, 1, 30));
}

TEST(Distance2D, PassesOverTheNeighbourBehindAndBelow)
{
    // Background at (1, 3) alone: it is (x - 1, y + 1) of the pixel in the middle, which counts as inside,
    // and takes a layer from the outline beside it.
    const std::vector<std::int32_t> field = Build(DrawnImage({"#####", "#####", "#####", "#.###", "#####"}));
    EXPECT_EQ(field[2 * 5 + 2], -1);
    // The mirrored place, (x + 1, y + 1) of it, is looked at.
    EXPECT_EQ(Build(DrawnImage({"#####", "#####", "#####", "###.#", "#####"}))[2 * 5 + 2], 0);
}

TEST(Distance2D, KeepsTheFarInside)
{
    const std::vector<std::int32_t> field = Build(MakeSquare(61, 2)); // the middle is 28 layers in
    EXPECT_EQ(field[30 * 61 + 30], -30);
    EXPECT_EQ(field[30 * 61 + 2 + 21], -21);
    EXPECT_EQ(field[30 * 61 + 2 + 22], -30);
    EXPECT_EQ(field[30 * 61 + 2 + 25], -30);
}

TEST(Distance2D, KeepsTheFarOutside)
{
    const std::vector<std::int32_t> field = Build(MakeSquare(61, 28));
    EXPECT_EQ(field[30 * 61 + 28 - 21], 21);
    EXPECT_EQ(field[30 * 61 + 28 - 22], 30);
}

TEST(Distance2D, TakesTheBorderForOutsideBesideTheObject)
{
    // All object: nothing is outline, and so nothing has a layer.
    EXPECT_THAT(Build(DrawnImage({"####", "####", "####", "####"})),
                ElementsAre(30, 30, 30, 30, 30, -30, -30, 30, 30, -30, -30, 30, 30, 30, 30, 30));
}

TEST(Distance2D, GoesOnIntoTheBorderFromInside)
{
    // (2, 3) and (2, 2) are inside and beside the border (or two from it); one layer in, the border counts 0.
    const DrawnImage image({"......", ".#####", ".#####", ".#####", "......"});
    const std::vector<std::int32_t> field = Build(image);
    EXPECT_EQ(field[2 * 6 + 4], -1);
    EXPECT_EQ(field[2 * 6 + 5], 0); // -1 + 1
}

TEST(Distance2D, TakesImagesWithoutAnInside)
{
    EXPECT_THAT(Build(DrawnImage({"#"})), ElementsAre(30));
    EXPECT_THAT(Build(DrawnImage({"##", "##"})), Each(30));
    EXPECT_THAT(Build(DrawnImage({"#######"})), Each(30));
    EXPECT_THAT(Build(DrawnImage({"#", "#", "#"})), Each(30));
}

TEST(Distance2D, DoesAsTheLiteralFormOnRandomImages)
{
    for (unsigned seed = 0; seed < 300; ++seed)
    {
        const int width = 1 + static_cast<int>(seed * 7 % 90);
        const int height = 1 + static_cast<int>(seed * 11 % 80);
        const std::vector<std::uint8_t> image =
            MakeRandomSilhouette(width, height, seed, static_cast<int>(seed % 6), 0.001 * (seed % 20));
        std::vector<std::int32_t> field(image.size() / 3);
        BuildDistance2D(width, height, image.data(), field.data());
        ASSERT_EQ(field, BuildDistanceLiterally(width, height, image)) << "seed " << seed;
    }
}
}
}
