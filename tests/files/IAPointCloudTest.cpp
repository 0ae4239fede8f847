#include "IAPointCloud.h"
#include "Capture.h"
#include "IODatasetText.h"
#include "Refusal.h"
#include "TemporaryFolder.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
using ::testing::HasSubstr;

IAPointCloud ReadCloud(const std::string& content)
{
    IODatasetText text("cloud.txta", content);
    IAPointCloud cloud;
    cloud.ReadPoints(text);
    return cloud;
}

std::string RefuseCloud(const std::string& content)
{
    return GetRefusal([&content] { ReadCloud(content); });
}

IAPointCloud MakeCloud(std::vector<smVec3d> points)
{
    IAPointCloud cloud;
    cloud.m_Points = std::move(points);
    return cloud;
}

void ExpectPoint(const smVec3d& point, double x, double y, double z)
{
    EXPECT_EQ(point.x, x);
    EXPECT_EQ(point.y, y);
    EXPECT_EQ(point.z, z);
}

TEST(IAPointCloud, ReadsPointsInSinglePrecisionAndInTheirOrder)
{
    const IAPointCloud cloud = ReadCloud("2\n0.1 2 3\n-1 -2 -3\n");
    ASSERT_EQ(cloud.m_Points.size(), 2U);
    ExpectPoint(cloud.m_Points[0], double{0.1F}, 2.0, 3.0);
    ExpectPoint(cloud.m_Points[1], -1.0, -2.0, -3.0);
}

TEST(IAPointCloud, DropsTheNamesOfLabelledPoints)
{
    IODatasetText text("man.data", "2\nhead 0 1 2\na-name-of-more-than-twenty-characters 3 4 5\n");
    IAPointCloud cloud;
    cloud.ReadLabelledPoints(text);
    ASSERT_EQ(cloud.m_Points.size(), 2U);
    ExpectPoint(cloud.m_Points[0], 0.0, 1.0, 2.0);
    ExpectPoint(cloud.m_Points[1], 3.0, 4.0, 5.0);
}

TEST(IAPointCloud, ReadsACountInAnyBase)
{
    EXPECT_EQ(ReadCloud("0x1 1 2 3").m_Points.size(), 1U);
    EXPECT_EQ(ReadCloud("01 1 2 3").m_Points.size(), 1U);
}

TEST(IAPointCloud, IsEmptyWithACountOfNothing)
{
    EXPECT_TRUE(ReadCloud("0\n").m_Points.empty());
}

TEST(IAPointCloud, ReadsNoMoreThanItsCount)
{
    EXPECT_EQ(ReadCloud("1\n1 2 3\n4 5 6\n").m_Points.size(), 1U);
}

TEST(IAPointCloud, ReplacesThePointsThatItHad)
{
    IAPointCloud cloud = MakeCloud({{9, 9, 9}});
    IODatasetText text("cloud.txta", "1 1 2 3");
    cloud.ReadPoints(text);
    EXPECT_EQ(cloud.m_Points.size(), 1U);
}

TEST(IAPointCloud, RefusesACountThatTheFileDoesNotKeep)
{
    EXPECT_EQ(RefuseCloud("3\n1 2 3\n4 5 6\n"), "cloud.txta, line 4: the file ends after 2 of 3 points");
    EXPECT_EQ(RefuseCloud("2147483647\n1 2 3\n"),
              "cloud.txta, line 3: the file ends after 1 of 2147483647 points");
    EXPECT_EQ(RefuseCloud("1\n1 2\n"), "cloud.txta, line 3: the file ends before a point's z");
    EXPECT_EQ(RefuseCloud("-1\n"), "cloud.txta, line 1: the number of points is -1");
}

TEST(IAPointCloud, RefusesCoordinatesThatAreNoneOrNotFinite)
{
    EXPECT_EQ(RefuseCloud("1\n1 nan 3\n"), "cloud.txta, line 2: a point's y is not finite");
    EXPECT_EQ(RefuseCloud("1\none 2 3\n"), "cloud.txta, line 2: \"one\" stands where a point's x should be");
}

TEST(IAPointCloud, BringsItsLongestSideToMinusOneAndOne)
{
    IAPointCloud cloud = MakeCloud({{10, 0, 5}, {14, 1, 5}, {12, 2, 5}}); // 4 x 2 x 0 around (12, 1, 5)
    cloud.Unitize("cloud.txta");
    ExpectPoint(cloud.m_Points[0], -1.0, -0.5, 0.0);
    ExpectPoint(cloud.m_Points[1], 1.0, 0.0, 0.0);
    ExpectPoint(cloud.m_Points[2], 0.0, 0.5, 0.0);
}

TEST(IAPointCloud, UnitizesInSinglePrecisionStepByStep)
{
    IAPointCloud cloud = MakeCloud({{0, 0, 0}, {0.3, 0.1, 0}, {0.7, 0, 0}});
    cloud.Unitize("cloud.txta");
    const float centre = 0.35F;
    const float scale = static_cast<float>(2.0 / 0.7);
    EXPECT_EQ(cloud.m_Points[1].x, double{(0.3F - centre) * scale});
}

TEST(IAPointCloud, NormalizesInDoublePrecisionFromAnyPlaceAndSize)
{
    // From (10, 0.1, 5) to (10.7, 0.3, 5): the scale is 2 over 0.7, and the z axis has no extent.
    IAPointCloud cloud = MakeCloud({{10.0, 0.1, 5.0}, {10.7, 0.2, 5.0}, {10.3, 0.3, 5.0}});
    cloud.Normalize("cloud.txta");
    const double scale = 2.0 / (10.7 - 10.0);
    const smVec3d centre((10.7 + 10.0) / 2, (0.3 + 0.1) / 2, 5.0);
    ExpectPoint(cloud.m_Points[0], (10.0 - centre.x) * scale, (0.1 - centre.y) * scale, 0.0);
    ExpectPoint(cloud.m_Points[1], (10.7 - centre.x) * scale, (0.2 - centre.y) * scale, 0.0);
    ExpectPoint(cloud.m_Points[2], (10.3 - centre.x) * scale, (0.3 - centre.y) * scale, 0.0);
    EXPECT_NEAR(cloud.m_Points[0].x, -1.0, 1e-14);
    EXPECT_NEAR(cloud.m_Points[1].x, 1.0, 1e-14);
    // No coordinate was rounded to single precision on its way.
    EXPECT_NE(cloud.m_Points[2].x, static_cast<double>(static_cast<float>(cloud.m_Points[2].x)));
    EXPECT_NEAR(cloud.m_Points[2].x, (10.3 - 10.35) / 0.35, 1e-14);
}

TEST(IAPointCloud, IsNormalizedByAnyLongestAxis)
{
    for (int axis = 0; axis < 3; ++axis)
    {
        smVec3d far(1, 1, 1);
        far[axis] = 5.0;
        IAPointCloud cloud = MakeCloud({{0, 0, 0}, far});
        cloud.Normalize("cloud.txta");
        for (int other = 0; other < 3; ++other)
        {
            EXPECT_EQ(cloud.m_Points[1][other], other == axis ? 1.0 : 0.2); // scale 2/5
        }
    }
}

TEST(IAPointCloud, RefusesToNormalizeWhatHasNoExtent)
{
    EXPECT_THAT(GetRefusal([] { MakeCloud({}).Normalize("a.txta"); }), HasSubstr("a.txta holds no points"));
    EXPECT_THAT(GetRefusal(
                    [] {
                        MakeCloud({{1, 2, 3}, {1, 2, 3}}).Normalize("a.txta");
                    }),
                HasSubstr("all points of a.txta are at one place"));
}

TEST(IAPointCloud, RefusesToUnitizeWhatHasNoExtent)
{
    EXPECT_THAT(GetRefusal([] { MakeCloud({}).Unitize("Data/man.data"); }),
                HasSubstr("Data/man.data holds no points"));
    EXPECT_THAT(GetRefusal(
                    [] {
                        MakeCloud({{1, 2, 3}}).Unitize("Data/man.data");
                    }),
                HasSubstr("all points of Data/man.data are at one place"));
    EXPECT_THAT(GetRefusal(
                    [] {
                        MakeCloud({{0, 0, 0}, {1e-45, 0, 0}}).Unitize("Data/man.data");
                    }),
                HasSubstr("at one place")); // twice the scale's largest value would be needed
}

TEST(WritePointDistances, WritesALineForEachPoint)
{
    const TemporaryCurrentFolder folder;
    WritePointDistances({{1, 2, 3}, {-0.5, 0, 0.25}}, {1000.0F, -0.1F});
    EXPECT_EQ(folder.Read("pointDistance.dat"), "1.000000 2.000000 3.000000 1000.000000\n"
                                                "-0.500000 0.000000 0.250000 -0.100000\n");
}

TEST(WritePointDistances, AssertsADistanceForEachPoint)
{
    const TemporaryCurrentFolder folder;
    const AssertionCapture assertions;
    EXPECT_THROW(WritePointDistances({{1, 2, 3}}, {}), AssertionFailure);
    EXPECT_TRUE(folder.List().empty());
}
}
}
