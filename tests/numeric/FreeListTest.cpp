#include "FreeList.h"
#include <gtest/gtest.h>
#include <vector>

namespace tessarine
{
namespace
{
TEST(FreeList, GivesBackTheMemoryOfAList)
{
    std::vector<int> list(1000);
    FreeList(list);
    EXPECT_TRUE(list.empty());
    EXPECT_EQ(list.capacity(), 0U);
}
}
}
