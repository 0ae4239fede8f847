#include "MarchingCubes.h"
#include "Capture.h"
#include "DistanceField.h"
#include "LiteralSurface.h"
#include "Meshes.h"
#include "PointWelder.h"
#include <cmath>
#include <gmock/gmock.h>
#include <map>
#include <random>

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

GridCell MakeUnitCell(const std::array<float, 8>& values)
{
    GridCell cell;
    cell.p = {{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}}};
    cell.val = values;
    return cell;
}

std::vector<MCTriangle> PolygoniseUnitCell(const std::array<float, 8>& values, float isoLevel = 0.0F)
{
    std::vector<MCTriangle> triangles;
    const int count = Polygonise(MakeUnitCell(values), isoLevel, triangles);
    EXPECT_EQ(static_cast<std::size_t>(count), triangles.size());
    return triangles;
}

testing::AssertionResult IsAt(const smVec3f& point, float x, float y, float z)
{
    if (point.x == x && point.y == y && point.z == z)
    {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << point.x << ' ' << point.y << ' ' << point.z;
}

void FillSphere(DistanceField& field, double radius)
{
    for (int i = 0; i < DistanceField::kCountX; ++i)
    {
        for (int j = 0; j < DistanceField::kCountY; ++j)
        {
            for (int k = 0; k < DistanceField::kCountZ; ++k)
            {
                field.SetValue(i, j, k,
                               static_cast<float>(DistanceField::GetPosition(i, j, k).Length() - radius));
            }
        }
    }
}

TEST(CubeTables, HaveThePublishedNumberOfTriangles)
{
    int sum = 0;
    for (const std::uint8_t count : kTriangleCounts)
    {
        sum += count;
    }
    EXPECT_EQ(sum, 820);
    EXPECT_EQ(kTriangleTable[1], "083");
    EXPECT_EQ(kTriangleTable[3], "183981");
}

TEST(CubeTables, UseTheEdgesThatTheLevelCrosses)
{
    for (std::size_t cubeCase = 0; cubeCase < kCubeCases; ++cubeCase)
    {
        ASSERT_EQ(kTriangleTable[cubeCase].size() % 3, 0U);
        unsigned used = 0;
        for (const char digit : kTriangleTable[cubeCase])
        {
            used |= 1U << ToEdge(digit);
        }
        EXPECT_EQ(used, kEdgeTable[cubeCase]) << cubeCase;
    }
}

TEST(InterpolateVertex, GoesByTheProportionOfTheValues)
{
    EXPECT_TRUE(IsAt(InterpolateVertex(0.0F, {0, 0, 0}, {4, 8, 0}, -1.0F, 3.0F), 1, 2, 0));
    EXPECT_TRUE(IsAt(InterpolateVertex(2.0F, {0, 0, 0}, {4, 8, 0}, -1.0F, 3.0F), 3, 6, 0));
    EXPECT_TRUE(IsAt(InterpolateVertex(0.0F, {0, 0, 0}, {1, 0, 0}, -1000.0F, 1000.0F), 0.5F, 0, 0));
}

TEST(InterpolateVertex, TakesTheMiddleWhereAValueIsZeroOrBothAreNearlyEqual)
{
    EXPECT_TRUE(IsAt(InterpolateVertex(0.0F, {0, 0, 0}, {1, 0, 0}, 0.0F, 9.0F), 0.5F, 0, 0));
    EXPECT_TRUE(IsAt(InterpolateVertex(0.0F, {0, 0, 0}, {1, 0, 0}, -9.0F, 0.0F), 0.5F, 0, 0));
    EXPECT_TRUE(IsAt(InterpolateVertex(0.0F, {0, 0, 0}, {1, 0, 0}, -1e-6F, 8e-6F), 0.5F, 0, 0));
    EXPECT_FALSE(IsAt(InterpolateVertex(0.0F, {0, 0, 0}, {1, 0, 0}, -1e-5F, 8e-5F), 0.5F, 0, 0));
}

TEST(Polygonise, GivesNothingOnOneSideOfTheLevel)
{
    EXPECT_TRUE(PolygoniseUnitCell({-1, -2, -3, -4, -5, -6, -7, -8}).empty());
    EXPECT_TRUE(PolygoniseUnitCell({1, 2, 3, 4, 5, 6, 7, 8}).empty());
    EXPECT_TRUE(PolygoniseUnitCell({0, 0, 0, 0, 0, 0, 0, 0}).empty()); // at the level is not below it
    EXPECT_TRUE(PolygoniseUnitCell({3, 3, 3, 3, 3, 3, 3, 3}, 3.0F).empty());
}

TEST(Polygonise, CutsOffACorner)
{
    const auto triangles = PolygoniseUnitCell({-1, 1, 1, 3, 1, 1, 1, 1});
    ASSERT_EQ(triangles.size(), 1U);
    EXPECT_TRUE(IsAt(triangles[0].p[0], 0.5F, 0, 0));
    EXPECT_TRUE(IsAt(triangles[0].p[1], 0, 0, 0.5F));
    EXPECT_TRUE(IsAt(triangles[0].p[2], 0, 0.25F, 0));
}

TEST(Polygonise, AveragesAtACornerOnTheLevel)
{
    const auto triangles = PolygoniseUnitCell({-1, 0, 1, 1, 1, 1, 1, 1});
    ASSERT_EQ(triangles.size(), 1U);
    EXPECT_TRUE(IsAt(triangles[0].p[0], 0.5F, 0, 0)); // not at (1, 0, 0), where the value is zero
}

TEST(Polygonise, TellsOfCornersAtOnePlaceAndKeepsTheTriangle)
{
    ConsoleCapture console;
    const auto triangles = PolygoniseUnitCell({-1e-13F, 1000, 1000, 1000, 1000, 1000, 1000, 1000});
    EXPECT_EQ(triangles.size(), 1U);
    EXPECT_EQ(console.GetLines().size(), 3U); // all three lie within 1e-10 of the corner
    EXPECT_THAT(console.GetLines().front(), testing::MatchesRegex("same vertex: \\(.*,.*,.*,\\)"));
}

TEST(GenerateMesh, SaysThatItHasGoneThroughAllCells)
{
    ConsoleCapture console;
    std::vector<MCTriangle> triangles;
    GenerateMesh(DistanceField(), 0.0F, triangles);
    EXPECT_THAT(console.GetLines(), ElementsAre("Generate triangles mesh ok.."));
    // The first cell cuts off its last corner, from edge 10 on, halfway between the sentinels.
    EXPECT_TRUE(IsAt(triangles.front().p[0], -1.16F, -1.16F, -3.98F));
    triangles.clear();
    GenerateMesh(DistanceField(), -2000.0F, triangles);
    EXPECT_TRUE(triangles.empty());
}

TEST(GenerateMesh, GoesOnBehindTheTrianglesThatAreThere)
{
    DistanceField field;
    FillSphere(field, 0.3);
    std::vector<MCTriangle> once;
    GenerateMesh(field, 0.0F, once);
    std::vector<MCTriangle> twice = once;
    GenerateMesh(field, 0.0F, twice);
    EXPECT_EQ(twice.size(), 2 * once.size());
}

TEST(GenerateMesh, StopsWithoutAWordWhereACellMightFindNoRoom)
{
    ConsoleCapture console;
    DistanceField field;
    FillSphere(field, 0.3);
    std::vector<MCTriangle> triangles(999990); // ten more would be a million
    GenerateMesh(field, 0.0F, triangles);
    EXPECT_EQ(triangles.size(), 999990U);
    EXPECT_THAT(console.GetLines(), IsEmpty());
    triangles.resize(999989);
    GenerateMesh(field, 0.0F, triangles);
    EXPECT_GT(triangles.size(), 999989U);
    EXPECT_LE(triangles.size(), 999994U); // one cell has five at most
    EXPECT_THAT(console.GetLines(), IsEmpty());
}

TEST(GenerateMesh, GivesTheTrianglesOfTheLiteralForm)
{
    std::mt19937 random(5);
    DistanceField field;
    for (float& value : field.GetValues())
    {
        const bool isUnseen = random() % 8 != 0; // where the soup would else be cut off early
        value = isUnseen ? -1000.0F : 0.25F * (static_cast<float>(random() % 9) - 4.0F);
    }
    std::vector<MCTriangle> triangles;
    const ConsoleCapture console;
    GenerateMesh(field, 0.0F, triangles);
    const std::vector<LiteralTriangle> literal = GenerateLiterally(field.GetValues(), 0.0F);
    ASSERT_EQ(triangles.size(), literal.size());
    for (std::size_t n = 0; n < literal.size(); ++n)
    {
        for (std::size_t corner = 0; corner < 3; ++corner)
        {
            const smVec3f& point = triangles[n].p[corner];
            const smVec3d& other = literal[n][corner];
            ASSERT_TRUE(double{point.x} == other.x && double{point.y} == other.y &&
                        double{point.z} == other.z)
                << n;
        }
    }
}

/// All 256 cases stand side by side in noise: a surface without a rim shows that the table's rows fit one another.
TEST(GenerateMesh, HasNoRimInNoise)
{
    std::mt19937 random(7);
    DistanceField field;
    for (int n = 0; n < 20000; ++n)
    {
        field.SetValue(1 + static_cast<int>(random() % 59), 1 + static_cast<int>(random() % 59),
                       1 + static_cast<int>(random() % 20), random() % 2 == 0 ? 0.7F : -0.4F);
    }
    std::vector<MCTriangle> triangles;
    const ConsoleCapture console;
    GenerateMesh(field, 0.0F, triangles);
    ASSERT_LT(triangles.size(), 900000U);
    PointWelder welder;
    std::map<std::pair<int, int>, int> balance; // of the directions in which an edge is run through
    for (const MCTriangle& triangle : triangles)
    {
        std::array<int, 3> corners{};
        for (std::size_t i = 0; i < 3; ++i)
        {
            corners[i] = welder.Weld(triangle.p[i]);
        }
        for (std::size_t i = 0; i < 3; ++i)
        {
            const int from = corners[i];
            const int to = corners[(i + 1) % 3];
            balance[std::minmax(from, to)] += from < to ? 1 : -1;
        }
    }
    for (const auto& [edge, sum] : balance)
    {
        ASSERT_EQ(sum, 0);
    }
}
}
}
