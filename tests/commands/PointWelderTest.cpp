#include "PointWelder.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <random>

namespace tessarine
{
namespace
{
TEST(PointWelder, TakesPointsWithinTheToleranceForOne)
{
    PointWelder welder;
    EXPECT_EQ(welder.Weld({0.1, 0.2, 0.3}), 0);
    EXPECT_EQ(welder.Weld({0.1 + 9e-11, 0.2 - 9e-11, 0.3}), 0);
    EXPECT_EQ(welder.Weld({0.1 + 2e-10, 0.2, 0.3}), 1);
    EXPECT_EQ(welder.GetPoints().size(), 2U);
}

TEST(PointWelder, TakesTheFirstOfSeveral)
{
    PointWelder welder;
    EXPECT_EQ(welder.Weld({1.5e-10, 0, 0}), 0);
    EXPECT_EQ(welder.Weld({0, 0, 0}), 1);
    EXPECT_EQ(welder.Weld({0.8e-10, 0, 0}), 0); // near both
}

TEST(PointWelder, ReachesOverTheBoundsOfItsCells)
{
    for (const double bound : {0.0, 1e-8, -3e-8, 0.04, 1.0})
    {
        PointWelder welder;
        EXPECT_EQ(welder.Weld({bound - 4e-11, bound - 4e-11, bound - 4e-11}), 0);
        EXPECT_EQ(welder.Weld({bound + 4e-11, bound + 4e-11, bound + 4e-11}), 0) << bound;
    }
}

/// As a search through all points finds them.
TEST(PointWelder, DoesAsASearchThroughAllPoints)
{
    std::mt19937 random(3);
    PointWelder welder;
    std::vector<smVec3d> points;
    for (int i = 0; i < 4000; ++i)
    {
        const auto coordinate = [&random] { return 0.7e-10 * static_cast<double>(random() % 12); };
        const smVec3d place(coordinate() + 1e-8 * static_cast<double>(random() % 3), coordinate(),
                            coordinate() - 1e-8 * static_cast<double>(random() % 3));
        auto found = std::find_if(points.begin(), points.end(),
                                  [&place](const smVec3d& point) { return IsSamePlace(point, place); });
        if (found == points.end())
        {
            points.push_back(place);
            found = points.end() - 1;
        }
        ASSERT_EQ(welder.Weld(place), found - points.begin()) << i;
    }
    EXPECT_GT(points.size(), 1024U); // it has grown meanwhile
}
}
}
