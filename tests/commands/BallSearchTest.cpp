#include "BallSearch.h"
#include "Vectors.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <tuple>

namespace tessarine
{
namespace
{
std::vector<smVec3d> FindWithin(const BallSearch& search, const smVec3d& centre, double radius)
{
    std::vector<smVec3d> found;
    EXPECT_FALSE(search.AnyWithin(centre, radius,
                                  [&found](const smVec3d& place)
                                  {
                                      found.push_back(place);
                                      return false;
                                  }));
    std::sort(found.begin(), found.end(),
              [](const smVec3d& p, const smVec3d& q)
              { return std::tie(p.x, p.y, p.z) < std::tie(q.x, q.y, q.z); });
    return found;
}

TEST(BallSearch, VisitsEachPlaceWithinTheBallOnce)
{
    std::mt19937 random(1);
    const auto draw = [&random] { return (random() % 17) / 8.0 - 1.0; }; // many doubles, many on the surface
    std::vector<smVec3d> points;
    for (int i = 0; i < 3000; ++i)
    {
        points.emplace_back(draw(), draw(), i % 3 == 0 ? 0.0 : draw());
    }
    const BallSearch search(points);
    std::sort(points.begin(), points.end(),
              [](const smVec3d& p, const smVec3d& q)
              { return std::tie(p.x, p.y, p.z) < std::tie(q.x, q.y, q.z); });
    points.erase(std::unique(points.begin(), points.end()), points.end());
    for (const double radius : {0.0, 0.125, 0.5, 3.5})
    {
        const smVec3d centre(draw(), draw(), 0.0);
        std::vector<smVec3d> expected;
        std::copy_if(points.begin(), points.end(), std::back_inserter(expected),
                     [&](const smVec3d& p) { return (p - centre).Length() <= radius; });
        EXPECT_EQ(FindWithin(search, centre, radius), expected) << radius;
    }
}

TEST(BallSearch, EndsWithTheFirstThatIsTaken)
{
    const BallSearch search({{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}});
    int visits = 0;
    EXPECT_TRUE(search.AnyWithin({1.5, 0, 0}, 10.0, [&visits](const smVec3d&) { return ++visits == 2; }));
    EXPECT_EQ(visits, 2);
}

TEST(BallSearch, FindsNothingAmongNoPoints)
{
    EXPECT_FALSE(BallSearch({}).AnyWithin({0, 0, 0}, 1.0, [](const smVec3d&) { return true; }));
}

TEST(BallSearch, TakesAnyNumberOfPointsAtOnePlace)
{
    const BallSearch search(std::vector<smVec3d>(100000, smVec3d(1, 2, 3)));
    EXPECT_EQ(FindWithin(search, {1, 2, 3}, 0.0).size(), 1U);
}
}
}
