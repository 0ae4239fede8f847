#include "EdgeStack.h"
#include "Capture.h"
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <map>
#include <random>

namespace tessarine
{
namespace
{
constexpr std::uint32_t EdgeID(std::uint32_t index)
{
    return 0x80000000U | index;
}

std::vector<std::uint32_t> TakeAll(EdgeStack stack)
{
    std::vector<std::uint32_t> ids;
    while (!stack.IsEmpty())
    {
        ids.push_back(stack.GetTopEdge());
        stack.Erase(stack.GetTopEdge());
    }
    return ids;
}

TEST(EdgeStack, HasTheLargestGainFirstAndEqualOnesInTheirOrder)
{
    EdgeStack stack;
    stack.Enter(1.0, EdgeID(7));
    stack.Enter(2.0, EdgeID(3));
    stack.Enter(1.0, EdgeID(5));
    stack.Enter(-10000.0, EdgeID(1));
    stack.Enter(1.0, EdgeID(9));
    EXPECT_EQ(stack.GetTopGain(), 2.0);
    EXPECT_EQ(TakeAll(stack), (std::vector{EdgeID(3), EdgeID(7), EdgeID(5), EdgeID(9), EdgeID(1)}));
}

TEST(EdgeStack, PutsAnEntryThatComesBackBehindThoseOfItsGain)
{
    EdgeStack stack;
    stack.Enter(0.0, EdgeID(0));
    stack.Enter(-0.0, EdgeID(1));
    stack.Erase(EdgeID(0));
    stack.Enter(0.0, EdgeID(0));
    EXPECT_EQ(TakeAll(stack), (std::vector{EdgeID(1), EdgeID(0)}));
}

TEST(EdgeStack, AssertsWhatItIsAskedFor)
{
    const AssertionCapture assertions;
    EdgeStack stack;
    EXPECT_THROW(stack.GetTopEdge(), AssertionFailure);
    EXPECT_THROW(stack.Erase(EdgeID(0)), AssertionFailure);
    EXPECT_THROW(stack.Enter(std::numeric_limits<double>::quiet_NaN(), EdgeID(0)), AssertionFailure);
    stack.Enter(1.0, EdgeID(2));
    EXPECT_THROW(stack.Enter(1.0, EdgeID(2)), AssertionFailure);
    EXPECT_THROW(stack.Erase(EdgeID(1)), AssertionFailure);
    EXPECT_THROW(stack.IsBefore(EdgeID(2), EdgeID(1)), AssertionFailure);
}

TEST(EdgeStack, KeepsTheOrderOfAMultimap)
{
    std::mt19937 random(1);
    EdgeStack stack;
    std::multimap<double, std::uint32_t, std::greater<>> map;
    for (std::uint32_t i = 0; i < 300; ++i)
    {
        const double gain = static_cast<int>(random() % 20) - 10;
        stack.Enter(gain, EdgeID(i));
        map.insert({gain, EdgeID(i)});
    }
    for (int round = 0; round < 2000; ++round)
    {
        const auto entry = std::next(map.begin(), static_cast<int>(random() % map.size()));
        const std::uint32_t id = entry->second;
        map.erase(entry);
        stack.Erase(id);
        const double gain = static_cast<int>(random() % 20) - 10;
        map.insert({gain, id});
        stack.Enter(gain, id);
        ASSERT_EQ(stack.GetTopEdge(), map.begin()->second);
    }
    std::vector<std::uint32_t> expected;
    for (const auto& [gain, id] : map)
    {
        expected.push_back(id);
    }
    EXPECT_TRUE(stack.IsBefore(expected[10], expected[11]));
    EXPECT_FALSE(stack.IsBefore(expected[11], expected[10]));
    EXPECT_EQ(TakeAll(stack), expected);
}
}
}
