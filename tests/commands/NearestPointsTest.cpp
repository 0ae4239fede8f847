#include "NearestPoints.h"
#include "Capture.h"
#include "Refusal.h"
#include <algorithm>
#include <cmath>
#include <fstream>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <malloc.h>
#include <random>
#include <sys/resource.h>
#include <unistd.h>

namespace tessarine
{
namespace
{
using ::testing::ElementsAre;
using ::testing::HasSubstr;

std::vector<smVec3d> DrawPoints(std::size_t count)
{
    std::mt19937 random(5);
    const auto draw = [&random] { return static_cast<double>(random()) / 4294967296.0; };
    std::vector<smVec3d> points(count);
    for (smVec3d& p : points)
    {
        p = {draw(), draw(), draw()};
    }
    return points;
}

TEST(NearestPoints, FindsTheNearestFirst)
{
    const std::vector<smVec3d> points = DrawPoints(300);
    NearestPoints nearest(points);
    for (const smVec3d& query : DrawPoints(50))
    {
        std::vector<double> expected;
        for (const smVec3d& p : points)
        {
            expected.push_back((p - query).Dot(p - query));
        }
        std::sort(expected.begin(), expected.end());
        const auto found = nearest.Find(query, 5);
        ASSERT_EQ(found.size(), 5U);
        for (std::size_t i = 0; i < 5; ++i)
        {
            const smVec3d way = points[static_cast<std::size_t>(found[i])] - query;
            EXPECT_EQ(way.Dot(way), expected[i]);
            EXPECT_EQ(nearest.GetSquaredDistances()[i], expected[i]);
        }
    }
}

#if !defined(__SANITIZE_ADDRESS__) // which has memory of its own without a measure
/// The process gets so much more memory while it lives.
class MemoryLimit
{
public:
    explicit MemoryLimit(std::size_t bytes)
    {
        std::size_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        ::getrlimit(RLIMIT_AS, &m_Before);
        const rlimit limit{pages * static_cast<std::size_t>(::getpagesize()) + bytes, m_Before.rlim_max};
        ::setrlimit(RLIMIT_AS, &limit);
    }
    ~MemoryLimit() { ::setrlimit(RLIMIT_AS, &m_Before); }
    MemoryLimit(const MemoryLimit&) = delete;
    MemoryLimit& operator=(const MemoryLimit&) = delete;

private:
    rlimit m_Before{};
};

/// @return whether there was memory for it
bool BuildWithin(std::size_t bytes, const std::vector<smVec3d>& points)
{
    const MemoryLimit limit(bytes);
    try
    {
        const NearestPoints nearest(points);
        return true;
    }
    catch (const std::bad_alloc&)
    {
        return false;
    }
}

TEST(NearestPoints, ForgetsNothingWhereverTheMemoryEnds)
{
    constexpr std::size_t kStep = std::size_t{1} << 20U;
    constexpr std::size_t kNoise = 16384; // what the system keeps at hand
    const std::vector<smVec3d> points = DrawPoints(200000);
    bool isBuilt = false;
    std::size_t failures = 0;
    for (std::size_t bytes = kStep; !isBuilt; bytes += kStep)
    {
        ::malloc_trim(0);
        const std::size_t before = ::mallinfo2().uordblks;
        isBuilt = BuildWithin(bytes, points);
        EXPECT_LT(::mallinfo2().uordblks, before + kNoise) << bytes;
        failures += isBuilt ? 0 : 1;
    }
    EXPECT_GT(failures, 10U);
}
#endif

TEST(NearestPoints, GivesAllWhereThereAreFewerThanAskedFor)
{
    NearestPoints nearest(std::vector<smVec3d>{{0, 0, 0}, {3, 0, 0}});
    EXPECT_THAT(nearest.Find({2, 0, 0}, 16), ElementsAre(1, 0));
    EXPECT_THAT(nearest.GetSquaredDistances(), ElementsAre(1.0, 4.0));
    EXPECT_THAT(nearest.Find({2, 0, 0}, 1), ElementsAre(1));
}

TEST(NearestPoints, TakesManyPointsAtOnePlace)
{
    std::vector<smVec3d> points(100000, smVec3d(0.5, 0.5, 0.5));
    points.emplace_back(0.0, 0.0, 0.0);
    NearestPoints nearest(points);
    EXPECT_THAT(nearest.Find({0, 0, 0.1}, 1), ElementsAre(100000));
    EXPECT_EQ(nearest.Find({0.5, 0.5, 0.5}, 3).size(), 3U);
    EXPECT_THAT(nearest.GetSquaredDistances(), ElementsAre(0.0, 0.0, 0.0));
}

TEST(NearestPoints, RefusesNothingAndWhatIsNoNumber)
{
    EXPECT_THAT(GetRefusal([] { NearestPoints(std::vector<smVec3d>()); }), HasSubstr("there is no point"));
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_THAT(GetRefusal(
                    [nan] {
                        NearestPoints(std::vector<smVec3d>{{0, 0, 0}, {0, nan, 0}});
                    }),
                HasSubstr("point 1 of the model or the cloud is at no finite position"));
    const AssertionCapture assertions;
    NearestPoints nearest(DrawPoints(3));
    EXPECT_THROW(nearest.Find({nan, 0, 0}, 1), AssertionFailure);
    EXPECT_THROW(nearest.Find({0, 0, 0}, 0), AssertionFailure);
}
}
}
