#include "LeastSquaresSystem.h"
#include "Capture.h"
#include "Vectors.h"
#include <array>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
TEST(LeastSquaresSystem, SolvesForThreeCoordinates)
{
    ConsoleCapture console;
    LeastSquaresSystem system;
    system.SetSize(2);
    system.GetMatrix().AddValue(0, 0, 2.0);
    system.GetMatrix().AddValue(1, 1, 2.0);
    system.AddToRightSide(0, {2, 4, 6});
    system.AddToRightSide(1, {0, 8, -2});
    system.AddToRightSide(1, {0, 0, -2});
    const std::vector<smVec3d> solution = system.Solve();
    EXPECT_EQ(solution[0], smVec3d(1, 2, 3));
    EXPECT_EQ(solution[1], smVec3d(0, 4, -2));
    EXPECT_EQ(console.Count("Iteration Step = 1, Estimated Error = 0.0000000000"), 3);
}

TEST(LeastSquaresSystem, AddsTheMeanAroundAVertex)
{
    LeastSquaresSystem system;
    system.SetSize(3);
    system.AddUmbrella(std::array{2, 0}, {2, 4, 6});
    EXPECT_THAT(system.GetMatrix().GetColumnsOf(2), testing::ElementsAre(2, 0));
    EXPECT_THAT(system.GetMatrix().GetValuesOf(0), testing::ElementsAre(0.25, 0.25));
    EXPECT_TRUE(system.GetMatrix().GetColumnsOf(1).empty());
    EXPECT_THAT(system.GetRightSide(1), testing::ElementsAre(0, 2, 0, 2));
}

TEST(LeastSquaresSystem, HasNoSolutionWithoutUnknowns)
{
    ConsoleCapture console;
    LeastSquaresSystem system;
    system.SetSize(0);
    EXPECT_TRUE(system.Solve().empty());
}
}
}
