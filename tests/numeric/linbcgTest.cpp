#include "linbcg.h"
#include "Capture.h"
#include "LiteralMatrix.h"
#include <Eigen/Dense>
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace tessarine
{
namespace
{
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;

using OneBasedVector = std::vector<double>;

struct LinearSystem
{
    CSparseMatrix matrix;
    CSparseMatrix transposed;
    OneBasedVector rightSide;

    int GetSize() const { return matrix.GetRowCount(); }
};

struct Solution
{
    OneBasedVector x;
    int iter = 0;
    double err = 0.0;
};

/// A diagonal that outweighs the few entries beside it.
LinearSystem MakeRandomSystem(int n, unsigned seed)
{
    std::mt19937 random(seed);
    const auto draw = [&random] { return static_cast<double>(random()) / 4294967296.0 - 0.5; };
    LinearSystem system{CSparseMatrix(n, n), {}, OneBasedVector(static_cast<std::size_t>(n) + 1)};
    for (int row = 0; row < n; ++row)
    {
        for (int i = 0; i < 4; ++i)
        {
            system.matrix.SetValue(row, static_cast<int>(random() % static_cast<unsigned>(n)), draw());
        }
        system.matrix.SetValue(row, row, 3.0 + draw());
        system.rightSide[static_cast<std::size_t>(row) + 1] = draw();
    }
    system.matrix.Transpose(system.transposed);
    return system;
}

LinearSystem MakeDiagonalSystem(const std::vector<double>& diagonal, const std::vector<double>& rightSide)
{
    const int n = static_cast<int>(diagonal.size());
    LinearSystem system{CSparseMatrix(n, n), {}, {0.0}};
    for (int row = 0; row < n; ++row)
    {
        system.matrix.SetValue(row, row, diagonal[static_cast<std::size_t>(row)]);
        system.rightSide.push_back(rightSide[static_cast<std::size_t>(row)]);
    }
    system.matrix.Transpose(system.transposed);
    return system;
}

Solution Solve(const LinearSystem& system, int itol, double tol, int itmax)
{
    Solution solution{OneBasedVector(system.rightSide.size())};
    linbcg(system.matrix, system.transposed, system.GetSize(), system.rightSide, solution.x, itol, tol, itmax,
           solution.iter, solution.err);
    return solution;
}

TEST(Linbcg, AgreesWithADirectSolution)
{
    for (unsigned seed = 0; seed < 30; ++seed)
    {
        const LinearSystem system = MakeRandomSystem(60, seed);
        Eigen::MatrixXd dense = Eigen::MatrixXd::Zero(60, 60);
        Eigen::VectorXd b(60);
        for (int row = 0; row < 60; ++row)
        {
            b(row) = system.rightSide[static_cast<std::size_t>(row) + 1];
            for (int column = 0; column < 60; ++column)
            {
                system.matrix.GetValue(row, column, dense(row, column));
            }
        }
        const Eigen::VectorXd expected = dense.partialPivLu().solve(b);
        for (int itol = 1; itol <= 4; ++itol)
        {
            const Solution solution = Solve(system, itol, 1e-13, 200);
            EXPECT_LE(solution.err, 1e-13);
            for (int row = 0; row < 60; ++row)
            {
                ASSERT_NEAR(solution.x[static_cast<std::size_t>(row) + 1], expected(row), 1e-11);
            }
        }
    }
}

TEST(Linbcg, StepsAsItsDefinition)
{
    for (unsigned seed = 0; seed < 20; ++seed)
    {
        const LinearSystem system = MakeRandomSystem(50, seed);
        for (int itol = 1; itol <= 4; ++itol)
        {
            const Solution solution = Solve(system, itol, 1e-7, 200);
            Solution literal{OneBasedVector(system.rightSide.size())};
            SolveLiterally(system.matrix, system.transposed, system.rightSide, literal.x, itol, 1e-7, 200,
                           literal.iter, literal.err);
            EXPECT_EQ(solution.x, literal.x);
            EXPECT_EQ(solution.iter, literal.iter);
            EXPECT_EQ(solution.err, literal.err);
        }
    }
}

TEST(Linbcg, StopsWhereTheErrorIsExactlyTheTolerance)
{
    const LinearSystem system = MakeRandomSystem(50, 7);
    const Solution two = Solve(system, 1, 0.0, 1);
    ASSERT_EQ(two.iter, 2);
    EXPECT_EQ(Solve(system, 1, two.err, 100).iter, 2);
    EXPECT_GT(Solve(system, 1, std::nextafter(two.err, 0.0), 100).iter, 2);
}

TEST(Linbcg, DoesOneStepMoreThanTheMost)
{
    EXPECT_EQ(Solve(MakeRandomSystem(50, 7), 3, 0.0, 0).iter, 1);
    EXPECT_EQ(Solve(MakeRandomSystem(50, 7), 3, 0.0, 4).iter, 5);
    EXPECT_EQ(Solve(MakeRandomSystem(50, 7), 3, 0.0, -1).iter, 0);
}

TEST(Linbcg, SaysItsProgressEveryHundredSteps)
{
    ConsoleCapture console;
    std::vector<double> diagonal;
    for (int i = 0; i < 400; ++i)
    {
        diagonal.push_back(std::pow(10.0, i * 0.02)); // from 1 to 1e8
    }
    const Solution solution =
        Solve(MakeDiagonalSystem(diagonal, std::vector<double>(400, 1.0)), 1, 1e-300, 199);
    EXPECT_EQ(solution.iter, 200);
    const std::vector<std::string> lines = console.GetLines();
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_THAT(lines[0], ::testing::MatchesRegex("iter=   100 err= +[0-9.]+"));
    EXPECT_THAT(lines[1], ::testing::MatchesRegex("iter=   200 err= +[0-9.]+"));
}

TEST(Linbcg, SaysAnIllegalRuleOnceAndGoesOnToItsFirstStep)
{
    for (const int itol : {5, 0})
    {
        ConsoleCapture console;
        const Solution solution = Solve(MakeRandomSystem(10, 1), itol, 1e-7, 20);
        EXPECT_EQ(console.Count("illegal itol in linbcg"), 1);
        EXPECT_EQ(solution.iter, 1); // z is zero, and so is what the step would divide by
        EXPECT_EQ(solution.err, 0.0);
        EXPECT_EQ(solution.x, OneBasedVector(11));
    }
}

TEST(Linbcg, GivesZeroForARightSideOfZeros)
{
    ConsoleCapture console;
    LinearSystem system = MakeRandomSystem(10, 1);
    system.rightSide.assign(11, 0.0);
    const Solution solution = Solve(system, 3, 1e-7, 200);
    EXPECT_EQ(solution.x, OneBasedVector(11));
    EXPECT_EQ(console.GetText(), "linbcg cannot go on behind step 0\n");
}

TEST(Linbcg, EndsWithTheLastFiniteSolutionWhereItBreaksDown)
{
    ConsoleCapture console;
    // The first direction is (1, 1), and its image (1, -1) at right angles to it.
    const Solution flat = Solve(MakeDiagonalSystem({1.0, -1.0}, {1.0, 1.0}), 3, 1e-7, 200);
    EXPECT_THAT(flat.x, ElementsAre(0.0, 0.0, 0.0));
    // 1e300 squared is infinite, and so is what a step would be divided by.
    const Solution large = Solve(MakeDiagonalSystem({1.0, 1.0}, {1e300, 1e300}), 3, 1e-7, 200);
    EXPECT_THAT(large.x, ElementsAre(0.0, 0.0, 0.0));
    EXPECT_EQ(console.Count("linbcg cannot go on behind step 0"), 2);
}

TEST(Linbcg, SolvesNothingInNoStep)
{
    const Solution solution = Solve(LinearSystem{{}, {}, {0.0}}, 3, 1e-7, 200);
    EXPECT_EQ(solution.x.size(), 1U);
}

TEST(Linbcg, TellsWhetherItBrokeDown)
{
    const ConsoleCapture console;
    const auto goesOn = [](const LinearSystem& system, int itol)
    {
        OneBasedVector x(system.rightSide.size());
        int iter = 0;
        double err = 0.0;
        return linbcg(system.matrix, system.transposed, system.GetSize(), system.rightSide, x, itol, 1e-7,
                      200, iter, err);
    };
    EXPECT_TRUE(goesOn(MakeRandomSystem(10, 1), 3));
    EXPECT_FALSE(goesOn(MakeRandomSystem(10, 1), 5));
    EXPECT_FALSE(goesOn(MakeDiagonalSystem({1.0, -1.0}, {1.0, 1.0}), 3));
}

TEST(Linbcg, AssertsItsSizesAndThatItCanCountItsSteps)
{
    const AssertionCapture assertions;
    LinearSystem system = MakeRandomSystem(10, 1);
    system.rightSide.pop_back();
    EXPECT_THROW(Solve(system, 3, 1e-7, 200), AssertionFailure);
    system = MakeRandomSystem(10, 1);
    system.transposed.SetSize(10, 9);
    EXPECT_THROW(Solve(system, 3, 1e-7, 200), AssertionFailure);
    system = MakeRandomSystem(10, 1);
    constexpr int kMost = std::numeric_limits<int>::max();
    EXPECT_THROW(Solve(system, 3, 1e-7, kMost), AssertionFailure);
    EXPECT_LT(Solve(system, 3, 1e-7, kMost - 1).iter, 100);
}

TEST(Linbcg, SaysItsEstimate)
{
    ConsoleCapture console;
    SayEstimate(7, 0.125);
    EXPECT_EQ(console.GetText(), "Iteration Step = 7, Estimated Error = 0.1250000000\n");
}
}
}
