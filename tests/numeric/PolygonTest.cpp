#include "Polygon.h"
#include "Reports.h"
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
std::vector<std::int32_t> VerticesOf(const Polygon& polygon)
{
    std::vector<std::int32_t> vertices;
    vertices.reserve(static_cast<std::size_t>(polygon.GetSize()));
    for (int i = 0; i < polygon.GetSize(); ++i)
    {
        vertices.push_back(polygon[i]);
    }
    return vertices;
}

TEST(Polygon, GoesRoundAsARing)
{
    const Polygon polygon({10, 20, 30});
    EXPECT_EQ(polygon.Next(10), 20);
    EXPECT_EQ(polygon.Next(30), 10);
    EXPECT_EQ(polygon.Previous(30), 20);
    EXPECT_EQ(polygon.Previous(10), 30);
}

TEST(Polygon, FindsTheFirstOccurrence)
{
    const Polygon polygon({4, 5, 4, 5});
    EXPECT_EQ(polygon.Find(5), 1);
    EXPECT_EQ(polygon.Find(6), -1);
    EXPECT_EQ(Polygon().Find(0), -1);
}

TEST(Polygon, RefusesTheNextOfAnAbsentVertex)
{
    AssertionCapture reports;
    EXPECT_THROW(Polygon({1, 2}).Next(3), AssertionFailure);
    EXPECT_THROW(Polygon().Next(3), AssertionFailure);
}

TEST(Polygon, GivesNothingAndSaysNothingForThePreviousOfAnAbsentVertex)
{
    AssertionCapture reports;
    MessageCapture messages;
    EXPECT_EQ(Polygon({1, 2}).Previous(3), std::nullopt);
    EXPECT_TRUE(messages.GetTexts().empty());
    EXPECT_TRUE(reports.GetExpressions().empty());
}

TEST(Polygon, RemovesTheFirstOccurrence)
{
    Polygon polygon({1, 2, 3, 2});
    polygon.Remove(2);
    EXPECT_EQ(VerticesOf(polygon), (std::vector<std::int32_t>{1, 3, 2}));
}

TEST(Polygon, RefusesToRemoveAnAbsentVertex)
{
    AssertionCapture reports;
    Polygon polygon({1, 2});
    EXPECT_THROW(polygon.Remove(3), AssertionFailure);
    EXPECT_EQ(polygon.GetSize(), 2);
}

TEST(Polygon, ReadsAndWritesByIndexWithinItsBounds)
{
    AssertionCapture reports;
    Polygon polygon;
    polygon.Append(1);
    polygon.Append(2);
    polygon[0] = 9;
    const Polygon& fixed = polygon;
    EXPECT_EQ(fixed[0], 9);
    EXPECT_THROW(polygon[-1], AssertionFailure);
    EXPECT_THROW(polygon[2], AssertionFailure);
    EXPECT_THROW(fixed[-1], AssertionFailure);
    EXPECT_THROW(fixed[2], AssertionFailure);
}

TEST(Polygon, TakesTheElementThatManyStepsOn)
{
    const std::vector<std::int32_t> vertices{0, 10, 20, 30, 40};
    for (int k = 1; k < 5; ++k)
    {
        Polygon polygon(vertices);
        polygon.Rotate(k);
        for (int i = 0; i < 5; ++i)
        {
            EXPECT_EQ(polygon[i], 10 * ((i + k) % 5)) << "k " << k << ", i " << i;
        }
    }
}

TEST(Polygon, StaysForAnyOtherNumberOfSteps)
{
    const std::vector<std::int32_t> vertices{1, 2, 3};
    for (const int k : {-1, 0, 3, 4})
    {
        Polygon polygon(vertices);
        polygon.Rotate(k);
        EXPECT_EQ(VerticesOf(polygon), vertices) << "k " << k;
    }
    Polygon empty;
    empty.Rotate(1);
    EXPECT_EQ(empty.GetSize(), 0);
}

TEST(Polygon, KnowsWhetherAVertexOccursTwice)
{
    EXPECT_FALSE(Polygon().HasRepeatedVertex());
    EXPECT_FALSE(Polygon({1}).HasRepeatedVertex());
    EXPECT_FALSE(Polygon({3, 1, 2}).HasRepeatedVertex());
    EXPECT_TRUE(Polygon({3, 1, 2, 3}).HasRepeatedVertex());
    EXPECT_TRUE(Polygon({7, 7}).HasRepeatedVertex());
}

TEST(Polygon, PrintsItsVerticesOnOneLine)
{
    ConsoleCapture console;
    Polygon({3, -1, 2}).Print();
    Polygon({5}).Print();
    EXPECT_EQ(console.GetText(), "3, -1, 2\n5\n");
}

TEST(Polygon, PrintsNothingWhenEmpty)
{
    ConsoleCapture console;
    Polygon().Print();
    EXPECT_EQ(console.GetText(), "");
}
}
}
