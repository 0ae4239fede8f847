#include "TriangleTest.h"
#include "Vectors.h"
#include <cmath>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
constexpr TriangleCorners kRight{smVec3d(0, 0, 0), smVec3d(1, 0, 0), smVec3d(0, 1, 0)};

TEST(PointInTriangle, GivesTheSharesOfTheCorners)
{
    const TriangleTest test = PointInTriangle({0.25, 0.5, 0}, kRight, 1e-8);
    EXPECT_TRUE(test.isInside);
    EXPECT_EQ(test.barycentric, smVec3d(0.25, 0.25, 0.5));
    EXPECT_EQ(test.doubleArea, 1.0);
    EXPECT_EQ(PointInTriangle({0, 0, 0}, kRight, 1e-8).barycentric, smVec3d(1, 0, 0));
}

TEST(PointInTriangle, TakesAPointOutsideByLessThanTheTolerance)
{
    // Left of the side from (0,0) to (0,1) by d the areas are d too many on either side of zero: 2 d.
    EXPECT_TRUE(PointInTriangle({-0.00004, 0.5, 0}, kRight, 0.0001).isInside);
    EXPECT_FALSE(PointInTriangle({-0.00006, 0.5, 0}, kRight, 0.0001).isInside);
    EXPECT_FALSE(PointInTriangle({-0.00004, 0.5, 0}, kRight, 0.00001).isInside);
}

TEST(PointInTriangle, HasNoSharesWithoutArea)
{
    const TriangleTest test = PointInTriangle({0.5, 0, 0}, {kRight[0], kRight[1], kRight[1]}, 1e-8);
    EXPECT_TRUE(test.isInside); // all three areas are zero
    EXPECT_FALSE(std::isfinite(test.barycentric.x));
    EXPECT_FALSE(PointInTriangle({0.5, 1, 0}, {kRight[0], kRight[1], kRight[1]}, 1e-8).isInside);
}

TEST(SegmentHitsTriangle, LeavesOutItsStart)
{
    const smVec3d normal(0, 0, 1);
    EXPECT_TRUE(SegmentHitsTriangle(kRight, normal, {0.2, 0.2, 1}, {0.2, 0.2, -1}));
    EXPECT_TRUE(SegmentHitsTriangle(kRight, normal, {0.2, 0.2, 1}, {0.2, 0.2, 0}));  // its end counts
    EXPECT_FALSE(SegmentHitsTriangle(kRight, normal, {0.2, 0.2, 0}, {0.2, 0.2, 1})); // its start does not
    EXPECT_FALSE(SegmentHitsTriangle(kRight, normal, {0.2, 0.2, 2}, {0.2, 0.2, 1}));
    EXPECT_FALSE(SegmentHitsTriangle(kRight, normal, {0.7, 0.7, 1}, {0.7, 0.7, -1}));
    EXPECT_FALSE(SegmentHitsTriangle(kRight, normal, {0.2, 0.2, 1}, {0.5, 0.2, 1})); // along the plane
}
}
}
