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
