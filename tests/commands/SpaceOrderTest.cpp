#include "SpaceOrder.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

bool TakeAll(std::size_t /*index*/)
{
    return true;
}

TEST(SpaceOrder, PutsPointsInOneOctantBehindOneAnother)
{
    // The first bit of x counts most, then that of y, then that of z.
    const std::vector<smVec3d> points{{1, 1, 1}, {0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {0.9, 0.9, 0.9}};
    EXPECT_THAT(OrderInSpace(points, TakeAll), ElementsAre(1, 4, 3, 2, 5, 0));
}

TEST(SpaceOrder, LeavesOutWhatTakesNoPart)
{
    const std::vector<smVec3d> points{{2, 0, 0}, {1, 0, 0}, {0, 0, 0}};
    EXPECT_THAT(OrderInSpace(points, [](std::size_t i) { return i != 1; }), ElementsAre(2, 0));
    EXPECT_THAT(OrderInSpace(points, [](std::size_t) { return false; }), IsEmpty());
    EXPECT_THAT(OrderInSpace({}, TakeAll), IsEmpty());
}

TEST(SpaceOrder, KeepsTheOrderOfPointsInOnePlace)
{
    const std::vector<smVec3d> points(4, smVec3d(3, 3, 3));
    EXPECT_THAT(OrderInSpace(points, TakeAll), ElementsAre(0, 1, 2, 3));
}
}
}
