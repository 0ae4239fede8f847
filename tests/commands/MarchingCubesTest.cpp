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
#include <set>

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

TEST(CubeTables, HaveThePublishedRows)
{
    EXPECT_EQ(kTriangleTable[0], "");
    EXPECT_EQ(kTriangleTable[1], "083");
    EXPECT_EQ(kTriangleTable[2], "019");
    EXPECT_EQ(kTriangleTable[3], "183981");
    // FNV-1a over the digits of the published rows, a comma behind each.
    std::uint64_t sum = 0xcbf29ce484222325U;
    for (const std::string_view row : kTriangleTable)
    {
        for (const char letter : std::string(row) + ',')
        {
            sum = (sum ^ static_cast<std::uint64_t>(letter)) * 0x100000001b3U;
        }
    }
    EXPECT_EQ(sum, 0xe7242148da631b7dU);
}

/// From the middle of the unit cell.
smVec3d GetCornerPlace(std::size_t corner)
{
    return smVec3d(MakeUnitCell({}).p[corner]) - smVec3d(0.5, 0.5, 0.5);
}

smVec3d GetMiddleOf(std::size_t edge)
{
    return (GetCornerPlace(kEdgeCorners[edge][0]) + GetCornerPlace(kEdgeCorners[edge][1])) * 0.5;
}

/// The outward normal of the cell's side that has both edges; zero where none has them.
smVec3d FindCommonSide(std::size_t edge, std::size_t other)
{
    const smVec3d sum = GetMiddleOf(edge) + GetMiddleOf(other); // two halves along the normal
    return {std::trunc(sum.x), std::trunc(sum.y), std::trunc(sum.z)};
}

/// A line on a side of the cell, from edge to edge, has the corners below the level on its left, seen from outside.
bool HasBelowOnItsLeft(std::size_t cubeCase, std::size_t from, std::size_t to)
{
    const smVec3d left = FindCommonSide(from, to).Cross(GetMiddleOf(to) - GetMiddleOf(from));
    const auto isBelowOnTheLeft = [&](std::size_t edge)
    {
        const auto [first, second] = kEdgeCorners[edge];
        const std::size_t below = (cubeCase >> first & 1U) != 0 ? first : second;
        return left.Dot(GetCornerPlace(below) - GetMiddleOf(edge)) > 0.0;
    };
    return isBelowOnTheLeft(from) && isBelowOnTheLeft(to);
}

/// The lines of a case's triangles, from edge to edge.
std::set<std::pair<std::size_t, std::size_t>> GetLines(std::size_t cubeCase)
{
    std::set<std::pair<std::size_t, std::size_t>> lines;
    const std::string_view row = kTriangleTable[cubeCase];
    for (std::size_t n = 0; n < row.size(); ++n)
    {
        const std::size_t next = n % 3 == 2 ? n - 2 : n + 1;
        EXPECT_TRUE(lines.emplace(ToEdge(row[n]), ToEdge(row[next])).second) << cubeCase;
    }
    return lines;
}

/// The rim of a surface that separates them runs once through each crossed edge, around the corners below.
TEST(CubeTables, SeparateTheCornersBelowFromThoseAbove)
{
    for (std::size_t cubeCase = 0; cubeCase < kCubeCases; ++cubeCase)
    {
        const auto lines = GetLines(cubeCase);
        std::array<unsigned, kCubeEdges> starts{};
        std::array<unsigned, kCubeEdges> ends{};
        for (const auto& [from, to] : lines)
        {
            if (!lines.contains({to, from})) // else it lies between two triangles
            {
                EXPECT_TRUE(HasBelowOnItsLeft(cubeCase, from, to)) << cubeCase;
                ++starts[from];
                ++ends[to];
            }
        }
        for (std::size_t edge = 0; edge < kCubeEdges; ++edge)
        {
            EXPECT_EQ(starts[edge], kEdgeTable[cubeCase] >> edge & 1U) << cubeCase;
            EXPECT_EQ(ends[edge], starts[edge]) << cubeCase;
        }
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
    const auto triangles = PolygoniseUnitCell({-0x1p-40F, 0x1p10F, 1, 0x1p8F, 0x1p9F, 1, 1, 1});
    EXPECT_EQ(triangles.size(), 1U);
    // All three lie within 1e-10 of the corner: 2^-50 along x, 2^-49 along z and 2^-48 along y. Each line
    // names the first point of its pair.
    EXPECT_THAT(console.GetLines(),
                ElementsAre("same vertex: (8.88178e-16,0,0,)", "same vertex: (0,0,1.77636e-15,)",
                            "same vertex: (0,3.55271e-15,0,)"));
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
