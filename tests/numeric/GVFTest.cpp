#include "GVF.h"
#include "Capture.h"
#include "Reports.h"
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <vector>

namespace tessarine
{
namespace
{
using ::testing::DoubleNear;
using ::testing::ElementsAre;
using ::testing::Pointwise;

struct Flow
{
    Flow(int n, int m, const std::vector<double>& edgeMap, double mu, int iterations)
        : u(edgeMap.size()), v(edgeMap.size())
    {
        ConsoleCapture console;
        GVF(n, m, edgeMap.data(), u.data(), v.data(), mu, iterations);
        text = console.GetText();
    }

    std::vector<double> u;
    std::vector<double> v;
    std::string text;
};

auto IsNearTo(const std::vector<double>& values)
{
    return Pointwise(DoubleNear(1e-15), values);
}

TEST(GVF, IsTheGradientBeforeAnyIteration)
{
    // Normalised to 0, 1/4, ... 1; corners have no gradient, and sides none across.
    const Flow flow(3, 3, {0, 1, 2, 1, 2, 3, 2, 3, 4}, 0.2, 0);
    EXPECT_THAT(flow.u, ElementsAre(0, 0.25, 0, 0, 0.25, 0, 0, 0.25, 0));
    EXPECT_THAT(flow.v, ElementsAre(0, 0, 0, 0.25, 0.25, 0.25, 0, 0, 0));
}

TEST(GVF, TakesTheFirstIndexAcross)
{
    const Flow flow(3, 2, {0, 0, 1, 0, 0, 1}, 0.2, 0);
    EXPECT_THAT(flow.u, ElementsAre(0, 0.5, 0, 0, 0.5, 0));
    EXPECT_THAT(flow.v, ElementsAre(0, 0, 0, 0, 0, 0));
}

TEST(GVF, SpreadsTheGradientInOneIteration)
{
    // A ramp across: u is 1/2 in the middle column. There L = (0 + 0 + 1/2 + 1/2) / 4 - 1/2 = -1/4, and
    // 4 * 0.2 L + (1 - 1/4) / 2 + 1/8 = 0.3; at the sides L = (2 * 1/2) / 4 = 1/4, in the corners 1/2 * 1/2.
    const Flow flow(3, 3, {0, 1, 2, 0, 1, 2, 0, 1, 2}, 0.2, 1);
    EXPECT_THAT(flow.u, IsNearTo({0.2, 0.3, 0.2, 0.2, 0.3, 0.2, 0.2, 0.3, 0.2}));
    EXPECT_THAT(flow.v, IsNearTo(std::vector<double>(9, 0.0)));
}

TEST(GVF, TreatsBothWaysAlike)
{
    const std::vector<double> map = {0, 3, 1, 4, 1, 5, 9, 2, 6, 5, 3, 5};
    std::vector<double> turned(map.size());
    for (std::size_t x = 0; x < 4; ++x)
    {
        for (std::size_t y = 0; y < 3; ++y)
        {
            turned[y + x * 3] = map[x + y * 4];
        }
    }
    const Flow flow(4, 3, map, 0.15, 7);
    const Flow turnedFlow(3, 4, turned, 0.15, 7);
    for (std::size_t x = 0; x < 4; ++x)
    {
        for (std::size_t y = 0; y < 3; ++y)
        {
            EXPECT_NEAR(flow.u[x + y * 4], turnedFlow.v[y + x * 3], 1e-14);
        }
    }
}

TEST(GVF, PrintsEachIteration)
{
    EXPECT_EQ(Flow(2, 2, {0, 1, 0, 1}, 0.2, 1).text, "    1\n");
    EXPECT_EQ(Flow(2, 2, {0, 1, 0, 1}, 0.2, 0).text, "\n");
    EXPECT_EQ(Flow(2, 2, {0, 1, 0, 1}, 0.2, 16).text,
              "    1    2    3    4    5    6    7    8    9   10   11   12   13   14   15\n   16\n");
}

TEST(GVF, SaysThatAMapIsConstantAndGoesOn)
{
    const MessageCapture messages;
    const Flow flow(2, 2, {3, 3, 3, 3}, 0.2, 1);
    EXPECT_THAT(messages.GetTexts(), ElementsAre("Edge map is a constant image."));
    EXPECT_THAT(messages.GetTitles(), ElementsAre("error"));
    EXPECT_EQ(flow.text, "    1\n");
}

TEST(GVF, AssertsTwoSamplesEachWay)
{
    const AssertionCapture assertions;
    const double sample = 0.0;
    double u = 0.0;
    double v = 0.0;
    EXPECT_THROW(GVF(1, 1, &sample, &u, &v, 0.2, 1), AssertionFailure);
    EXPECT_THAT(assertions.GetExpressions(), testing::ElementsAreArray(WhereReported({"n >= 2 && m >= 2"})));
}
}
}
