#include "coord.h"
#include "Capture.h"
#include <cmath>
#include <gtest/gtest.h>
#include <type_traits>

namespace tessarine
{
namespace
{
static_assert(std::is_trivially_copyable_v<Coord> && sizeof(Coord) == 24);
static_assert(std::is_trivially_copyable_v<Coord2D> && sizeof(Coord2D) == 16);

const double kQuarterTurn = std::acos(0.0);

testing::AssertionResult IsNear(const Coord& a, const Coord& b)
{
    if ((a - b).Length() <= 1e-14)
    {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "(" << a.x << ", " << a.y << ", " << a.z << ") is not (" << b.x
                                       << ", " << b.y << ", " << b.z << ")";
}

TEST(Coord, StartsAsZeros)
{
    EXPECT_TRUE(Coord() == Coord(0, 0, 0));
}

TEST(Coord, ComparesExactly)
{
    const Coord a(1, 2, 3);
    EXPECT_TRUE(a == Coord(1, 2, 3));
    EXPECT_FALSE(a != Coord(1, 2, 3));
    EXPECT_TRUE(a != Coord(std::nextafter(1.0, 2.0), 2, 3));
    EXPECT_TRUE(a != Coord(1, std::nextafter(2.0, 3.0), 3));
    EXPECT_TRUE(a != Coord(1, 2, std::nextafter(3.0, 4.0)));
}

TEST(Coord, AddsSubtractsAndScales)
{
    EXPECT_EQ(Coord(1, 2, 3) + Coord(10, 20, 30), Coord(11, 22, 33));
    EXPECT_EQ(Coord(1, 2, 3) - Coord(10, 20, 30), Coord(-9, -18, -27));
    EXPECT_EQ(Coord(1, 2, 3) * 2.0, Coord(2, 4, 6));
    EXPECT_EQ(2.0 * Coord(1, 2, 3), Coord(2, 4, 6));
    EXPECT_EQ(Coord(1, 2, 3) / 2.0, Coord(0.5, 1, 1.5));
}

TEST(Coord, MultipliesTwoVectorsBothWays)
{
    EXPECT_EQ(Coord(1, 2, 3).Dot(Coord(4, 5, 7)), 35.0);               // 4 + 10 + 21
    EXPECT_EQ(Coord(1, 2, 3).Cross(Coord(4, 5, 7)), Coord(-1, 5, -3)); // (14-15, 12-7, 5-8)
    EXPECT_EQ(Coord(2, 3, 6).Length(), 7.0);                           // 4 + 9 + 36
}

TEST(Coord, SaysThatItCannotDivideByZeroAndStays)
{
    ConsoleCapture console;
    EXPECT_EQ(Coord(1, 2, 3) / 0.0, Coord(1, 2, 3));
    EXPECT_EQ(Coord(1, 2, 3) / -9e-15, Coord(1, 2, 3));
    EXPECT_EQ(console.GetText(), "Coord Error: Divided by Zero\nCoord Error: Divided by Zero\n");
}

TEST(Coord, DividesByANumberAtTheThreshold)
{
    ConsoleCapture console;
    EXPECT_EQ(Coord(1, 2, 3) / 1e-14, Coord(1 / 1e-14, 2 / 1e-14, 3 / 1e-14));
    EXPECT_EQ((Coord(1, 2, 3) / -1e-14).x, -1 / 1e-14);
    EXPECT_EQ(console.GetText(), "");
}

TEST(Coord, GivesAUnitCopy)
{
    const Coord v(0, 3, 4);
    EXPECT_EQ(v.Unit(), Coord(0, 0.6, 0.8));
    EXPECT_EQ(v, Coord(0, 3, 4));
}

TEST(Coord, GivesAnUnchangedCopyWhereThereIsNoUnit)
{
    ConsoleCapture console;
    EXPECT_EQ(Coord(0, 9e-15, 0).Unit(), Coord(0, 9e-15, 0));
    EXPECT_EQ(console.GetText(), "Coord Error: unit, divided by zero\n");
}

TEST(Coord, NormalizesInPlace)
{
    Coord v(0, 3, 4);
    EXPECT_TRUE(v.Normalize());
    EXPECT_EQ(v, Coord(0, 0.6, 0.8));
}

TEST(Coord, RefusesToNormalizeZeroAndPrintsOneLine)
{
    ConsoleCapture console;
    Coord v(0, 0, 0);
    EXPECT_FALSE(v.Normalize());
    EXPECT_EQ(v, Coord(0, 0, 0));
    EXPECT_EQ(console.GetText(), "Coord Error: normalize, divided by zero\n");
}

TEST(Coord, NormalizesFromTheThresholdOn)
{
    ConsoleCapture console;
    Coord above(0, 0, 1.1e-14);
    EXPECT_TRUE(above.Normalize());
    EXPECT_EQ(above, Coord(0, 0, 1));
    Coord below(0, 0, 9e-15);
    EXPECT_FALSE(below.Normalize());
    EXPECT_EQ(below, Coord(0, 0, 9e-15));
}

TEST(Coord, RotatesAboutAnAxisThroughAPoint)
{
    // About the vertical through (1, 1, 0), the arm (1, 0) becomes (0, 1); the height stays.
    const Coord turned = Coord(2, 1, 5).Rotated(Coord(0, 0, 3), Coord(1, 1, 0), kQuarterTurn);
    EXPECT_TRUE(IsNear(turned, Coord(1, 2, 5)));
    Coord inPlace(2, 1, 5);
    inPlace.Rotate(Coord(0, 0, 3), Coord(1, 1, 0), kQuarterTurn);
    EXPECT_EQ(inPlace, turned);
}

TEST(Coord, RotatesTheAxesIntoEachOtherAboutTheSpaceDiagonal)
{
    const double third = 4.0 * kQuarterTurn / 3.0;
    const Coord diagonal(1, 1, 1);
    EXPECT_TRUE(IsNear(Coord(1, 0, 0).Rotated(diagonal, Coord(), third), Coord(0, 1, 0)));
    EXPECT_TRUE(IsNear(Coord(0, 1, 0).Rotated(diagonal, Coord(), third), Coord(0, 0, 1)));
    EXPECT_TRUE(IsNear(Coord(2, 2, 2).Rotated(diagonal, Coord(), third), Coord(2, 2, 2)));
}

TEST(Coord, StaysWhereTheAxisHasNoDirection)
{
    ConsoleCapture console;
    EXPECT_EQ(Coord(1, 2, 3).Rotated(Coord(), Coord(5, 5, 5), 1.0), Coord(1, 2, 3));
    EXPECT_EQ(console.GetText(), "Coord Error: normalize, divided by zero\n");
}

TEST(Coord2D, ReckonsLikeItsElderInTwoComponents)
{
    EXPECT_TRUE(Coord2D() == Coord2D(0, 0));
    EXPECT_TRUE(Coord2D(1, 2) != Coord2D(1, std::nextafter(2.0, 3.0)));
    EXPECT_EQ(Coord2D(1, 2) + Coord2D(10, 20), Coord2D(11, 22));
    EXPECT_EQ(Coord2D(1, 2) - Coord2D(10, 20), Coord2D(-9, -18));
    EXPECT_EQ(Coord2D(1, 2) * 2.0, Coord2D(2, 4));
    EXPECT_EQ(2.0 * Coord2D(1, 2), Coord2D(2, 4));
    EXPECT_EQ(Coord2D(1, 2) / 2.0, Coord2D(0.5, 1));
    EXPECT_EQ(Coord2D(1, 2).Dot(Coord2D(3, 4)), 11.0);
    EXPECT_EQ(Coord2D(1, 2).Cross(Coord2D(3, 4)), -2.0);
    EXPECT_EQ(Coord2D(3, 4).Length(), 5.0);
    EXPECT_EQ(Coord2D(3, 4).Unit(), Coord2D(0.6, 0.8));
}

TEST(Coord2D, SaysThatItCannotDivideByZeroAndStays)
{
    ConsoleCapture console;
    EXPECT_EQ(Coord2D(1, 2) / 9e-15, Coord2D(1, 2));
    EXPECT_EQ(console.GetText(), "Coord2D Error: divided by zero\n");
}

TEST(Coord2D, GivesAnUnchangedCopyWhereThereIsNoUnit)
{
    ConsoleCapture console;
    EXPECT_EQ(Coord2D().Unit(), Coord2D());
    EXPECT_EQ(console.GetText(), "Coord2D Error: unit, divided by zero\n");
}

TEST(Coord2D, NormalizesInPlaceOrSaysWhyNot)
{
    ConsoleCapture console;
    Coord2D v(3, 4);
    EXPECT_TRUE(v.Normalize());
    EXPECT_EQ(v, Coord2D(0.6, 0.8));
    Coord2D tiny(9e-15, 0);
    EXPECT_FALSE(tiny.Normalize());
    EXPECT_EQ(tiny, Coord2D(9e-15, 0));
    EXPECT_EQ(console.GetText(), "Coord2D Error: normalize, divided by zero\n");
}

TEST(Coord2D, RotatesAboutAPoint)
{
    Coord2D v(2, 1);
    v.Rotate(Coord2D(1, 1), kQuarterTurn);
    EXPECT_NEAR(v.x, 1.0, 1e-15);
    EXPECT_NEAR(v.y, 2.0, 1e-15);
}
}
}
