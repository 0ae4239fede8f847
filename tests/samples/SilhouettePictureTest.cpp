#include "SilhouettePicture.h"
#include <algorithm>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
using ::testing::ElementsAre;

constexpr PicturePlane kPlane{8, 4, 2.0, 1.0}; // two pixels a unit across, two up

/// A square from (-1, -0.5) to (1, 0.5), in two triangles of both orientations.
ShapeMesh MakeSquareMesh()
{
    return {{{-1, -0.5, 0}, {1, -0.5, 0}, {1, 0.5, 0}, {-1, 0.5, 3}}, {}, {{0, 1, 2}, {0, 3, 2}}};
}

TEST(SilhouettePicture, CoversThePixelsWhoseCentresAreInTheMesh)
{
    const Image image = DrawSilhouette(MakeSquareMesh(), smMatrix44d(true), kPlane);
    EXPECT_THAT(image.pixels, ElementsAre(0, 0, 0, 0, 0, 0, 0, 0,         //
                                          0, 0, 255, 255, 255, 255, 0, 0, //
                                          0, 0, 255, 255, 255, 255, 0, 0, //
                                          0, 0, 0, 0, 0, 0, 0, 0));
}

TEST(SilhouettePicture, IsCutOffAtItsBorders)
{
    ShapeMesh mesh = MakeSquareMesh();
    for (smVec3d& point : mesh.points)
    {
        point = point * 10.0;
    }
    const Image image = DrawSilhouette(mesh, smMatrix44d(true), kPlane);
    EXPECT_EQ(std::count(image.pixels.begin(), image.pixels.end(), 255), 8 * 4);
}

TEST(SilhouettePicture, IsSeenThroughTheView)
{
    smMatrix44d quarterTurn; // x goes to y, and y to -x
    quarterTurn.At(0, 1) = 1.0;
    quarterTurn.At(1, 0) = -1.0;
    const Image image = DrawSilhouette(MakeSquareMesh(), quarterTurn, kPlane);
    EXPECT_EQ(std::count(image.pixels.begin(), image.pixels.end(), 255), 2 * 4);
    EXPECT_EQ(image.pixels[3], 255);
}

TEST(SilhouettePicture, TakesAMarkerLineWithoutRedAndWithGreen)
{
    Image image{8, 4, 3, std::vector<std::uint8_t>(8 * 4 * 3, 255)};
    DrawMarkerLine(image, kPlane, {-1.0, 0.2}, {1.0, 0.2});
    for (int x = 0; x < 8; ++x)
    {
        const std::uint8_t* pixel = image.pixels.data() + 3 * (2 * 8 + x);
        const bool isMarked = x >= 2 && x <= 6;
        EXPECT_EQ(pixel[0], isMarked ? 0 : 255) << x;
        EXPECT_EQ(pixel[1], 255);
    }
    EXPECT_EQ(std::count(image.pixels.begin(), image.pixels.end(), 0), 5 * 2);
}
}
}
