#include "LimitEvaluation.h"
#include "Capture.h"
#include "LiteralLimit.h"
#include "LoopEigenAnalysis.h"
#include "PatchStage.h"
#include "Vectors.h"
#include <cmath>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>
#include <random>

namespace tessarine
{
namespace
{
constexpr int kMostTested = 50;

/// Whether the told level meets the sub-triangle of the limit surface.
bool IsOnLimit(double v, double w)
{
    const int n = static_cast<int>(std::floor(-std::log2(std::max(v, w))));
    return n >= 1 && v + w >= std::ldexp(1.0, -n);
}

EigenTable MakeTableUpTo(int nValence)
{
    std::vector<EigenData> entries;
    for (int n = EigenTable::kLeastValence; n <= nValence; ++n)
    {
        entries.push_back(AnalyseLoopStep(n));
    }
    return EigenTable(std::move(entries));
}

double FindLargestError(int nValence, bool everywhere)
{
    const PatchStage stage(nValence);
    const EigenData data = AnalyseLoopStep(nValence);
    const LimitPatch patch(data, stage.GetControlPoints());
    double error = 0.0;
    int tested = 0;
    for (const LimitVertex& vertex : FindLimitVertices(stage.GetMesh(), stage.GetFace(), 4))
    {
        if (everywhere || IsOnLimit(vertex.v, vertex.w))
        {
            ++tested;
            const smVec3d point = patch.EvalEigenPatch(LimitSample(data, vertex.v, vertex.w));
            error = std::max(error, (point - vertex.point).Length());
        }
    }
    EXPECT_GT(tested, 30);
    return error;
}

TEST(LimitEvaluation, AgreesWithManyStepsOfTheSameSubdivision)
{
    for (int n = 4; n <= kMostTested; ++n)
    {
        EXPECT_LT(FindLargestError(n, false), 1e-9) << n;
    }
}

TEST(LimitEvaluation, StaysExactWhereEigenvaluesCrowd)
{
    // The waves of shortest length come within 5e-4 and 2e-5 of the eigenvalue 1/8 beyond the ring.
    for (const int n : {51, 251})
    {
        EXPECT_LT(FindLargestError(n, false), 1e-9) << n;
    }
}

TEST(LimitEvaluation, IsTheLimitInTheWholeTriangleWhereAllVerticesAreRegular)
{
    EXPECT_LT(FindLargestError(6, true), 1e-9);
}

TEST(LimitEvaluation, AtValenceThreeIsOffByTheSizeOfItsSplit)
{
    const EigenData data = AnalyseLoopStep(3);
    // 1, twice 1/4, three times 1/8, then what was 1/16 three times.
    EXPECT_EQ(data.m_Eigenvalues[6], 1.0 / 16.0 + std::ldexp(1.0, -26));
    EXPECT_EQ(data.m_Eigenvalues[7], 1.0 / 16.0);
    EXPECT_EQ(data.m_Eigenvalues[8], 1.0 / 16.0);
    EXPECT_LT(FindLargestError(3, false), 1e-7);
}

TEST(LimitEvaluation, OfARegularPatchIsItsQuarticSpline)
{
    const PatchStage stage(6);
    const EigenData data = AnalyseLoopStep(6);
    const LimitPatch patch(data, stage.GetControlPoints());
    // The patch's vertices in the rows of the lattice: 2, 3, 4 and 3 of them.
    constexpr std::array<std::size_t, 12> kLattice{3, 4, 2, 0, 5, 9, 1, 6, 11, 8, 7, 10};
    for (int i = 0; i <= 10; ++i)
    {
        for (int j = i == 0 ? 1 : 0; i + j <= 10; ++j)
        {
            const double v = i / 10.0;
            const double w = j / 10.0;
            const smVec3d point = patch.EvalEigenPatch(LimitSample(data, v, w));
            for (int axis = 0; axis < 3; ++axis)
            {
                std::array<double, 12> b{};
                std::transform(kLattice.begin(), kLattice.end(), b.begin(),
                               [&](std::size_t place) { return stage.GetControlPoints()[place][axis]; });
                EXPECT_NEAR(point[axis], EvalBoxSpline(b, v, w), 1e-12);
            }
        }
    }
}

TEST(LimitEvaluation, WeighsTheControlVerticesByOneInAll)
{
    for (int n = 3; n <= kMostTested; ++n)
    {
        const EigenData data = AnalyseLoopStep(n);
        for (const auto& [v, w] :
             {std::array{0.3, 0.3}, std::array{0.02, 0.0}, std::array{0.0, 1.0}, std::array{1.0, 0.0},
              std::array{0.6, 0.1}, std::array{0.5, 0.5}, std::array{1e-6, 1e-6}})
        {
            const std::vector<double> weights = LimitSample(data, v, w).GetWeights();
            const double sum = std::accumulate(weights.begin(), weights.end(), 0.0);
            EXPECT_NEAR(sum, 1.0, n == 3 ? 1e-6 : 1e-12) << n << ' ' << v << ' ' << w;
        }
    }
}

TEST(LimitEvaluation, GivesThePointThatItsWeightsGive)
{
    for (const int n : {3, 4, 7, 20})
    {
        const PatchStage stage(n);
        const EigenTable table = MakeTableUpTo(n);
        Matrix weights;
        const smVec3d point = EvalLimitPoint(stage.GetControlPoints(), 0.25, 0.375, n, table, weights);
        ASSERT_EQ(weights.GetRowCount(), n + 6);
        smVec3d sum;
        for (int j = 0; j < n + 6; ++j)
        {
            sum += stage.GetControlPoints()[static_cast<std::size_t>(j)] * weights.GetElement(j, 0);
        }
        EXPECT_LT((sum - point).Length(), n == 3 ? 1e-6 : 1e-13);
    }
}

/// Places of all kinds: corners, edges, near the vertex, and where a halving is met exactly or just missed.
std::vector<std::array<double, 2>> GetPlaces()
{
    std::vector<std::array<double, 2>> places{{0.0, 1.0}, {1.0, 0.0},  {1.0, 1.0},   {0.5, 0.5},
                                              {0.5, 0.0}, {0.0, 0.25}, {1e-6, 1e-6}, {1e-300, 1e-307}};
    for (int k = 0; k <= 40; ++k)
    {
        const double power = std::ldexp(1.0, -k);
        places.push_back({power, power / 3.0});
        places.push_back({std::nextafter(power, 0.0), power});
        places.push_back({std::min(1.0, std::nextafter(power, 2.0)), power / 2.0});
        places.push_back({power / 2.0, std::min(1.0, std::nextafter(power, 2.0))});
    }
    std::mt19937 random(7);
    const auto draw = [&random] { return static_cast<double>(random()) / 4294967296.0; };
    for (int i = 0; i < 200; ++i)
    {
        places.push_back({draw(), draw()});
    }
    return places;
}

TEST(LimitEvaluation, GivesTheBitsOfTheLiteralForm)
{
    for (const int n : {3, 4, 5, 6, 9, 50})
    {
        const PatchStage stage(n);
        const EigenTable table = MakeTableUpTo(n);
        const LimitPatch patch(table.Get(n), stage.GetControlPoints());
        for (const auto& [v, w] : GetPlaces())
        {
            const LimitSample sample(table.Get(n), v, w);
            Matrix expected;
            const smVec3d literal =
                EvalLimitPointLiterally(stage.GetControlPoints(), v, w, table.Get(n), expected);
            Matrix weights;
            ASSERT_EQ(EvalLimitPoint(stage.GetControlPoints(), v, w, n, table, weights), literal)
                << v << ' ' << w;
            ASSERT_EQ(patch.EvalEigenPatch(sample), literal) << v << ' ' << w;
            for (int j = 0; j < n + 6; ++j)
            {
                ASSERT_EQ(weights.GetElement(j, 0), expected.GetElement(j, 0));
                ASSERT_EQ(sample.GetWeights()[static_cast<std::size_t>(j)], expected.GetElement(j, 0));
            }
        }
    }
}

TEST(LimitEvaluation, GoesOverAHalvingWithoutAGap)
{
    const PatchStage stage(6);
    const EigenData data = AnalyseLoopStep(6);
    const LimitPatch patch(data, stage.GetControlPoints());
    for (int k = 1; k < 12; ++k)
    {
        const double half = std::ldexp(1.0, -k);
        const smVec3d at = patch.EvalEigenPatch(LimitSample(data, half, half / 4.0));
        const smVec3d behind = patch.EvalEigenPatch(LimitSample(data, std::nextafter(half, 1.0), half / 4.0));
        EXPECT_LT((at - behind).Length(), 1e-12) << k;
    }
}

/// The value of an eigenbasis function within a sub-triangle.
double EvalBasisFunction(const EigenData& data, int i, std::size_t subTriangle, double v, double w)
{
    std::array<double, EigenData::kBasisSize> b{};
    for (std::size_t j = 0; j < b.size(); ++j)
    {
        b[j] = data.m_Coefficients[subTriangle][static_cast<std::size_t>(i) + j * data.m_Eigenvalues.size()];
    }
    return EvalBoxSpline(b, v, w);
}

TEST(LimitEvaluation, BasisFunctionsGoOverFromOneSubTriangleToTheNext)
{
    for (int n = 3; n <= 50; ++n)
    {
        const EigenData data = AnalyseLoopStep(n);
        for (int i = 0; i < data.GetOrder(); ++i)
        {
            for (const double t : {0.0, 0.125, 0.5, 0.875, 1.0})
            {
                // Where v is a half, and where w is one, in the parameters of the sub-triangles.
                const double above = EvalBasisFunction(data, i, 1, 0.0, 1.0 - t);
                const double right = EvalBasisFunction(data, i, 1, 1.0 - t, 0.0);
                EXPECT_NEAR(EvalBasisFunction(data, i, 0, 0.0, t), above,
                            1e-12 * std::max(1.0, std::abs(above)));
                EXPECT_NEAR(EvalBasisFunction(data, i, 2, t, 0.0), right,
                            1e-12 * std::max(1.0, std::abs(right)));
            }
        }
    }
}

TEST(LimitEvaluation, RefusesAPlaceThatTheRoundedLevelLeavesOutside)
{
    // The logarithm takes it for 1/8, from where a step brings it beyond 1.
    const double place = std::nextafter(0.125, 1.0);
    const AssertionCapture assertions;
    EXPECT_THROW(LimitSample(AnalyseLoopStep(6), place, place), AssertionFailure);
}

TEST(LimitEvaluation, BasisOfARegularPatchSumsToOne)
{
    for (const auto& [v, w] :
         {std::array{0.0, 0.0}, std::array{1.0, 0.0}, std::array{0.3, 0.2}, std::array{1.0, 1.0}})
    {
        const auto basis = GetBoxSplineBasis(v, w);
        EXPECT_NEAR(std::accumulate(basis.begin(), basis.end(), 0.0), 1.0, 1e-14);
    }
}

TEST(LimitEvaluation, OfASplineAtItsCornerTakesHalfOfTheVertex)
{
    std::array<double, 12> b{};
    b[3] = 2.0;
    EXPECT_EQ(EvalBoxSpline(b, 0.0, 0.0), 1.0); // 6/12
    b = {};
    b[2] = 12.0;
    EXPECT_EQ(EvalBoxSpline(b, 0.0, 0.0), 1.0); // a neighbour, 1/12
}

TEST(LimitEvaluation, RefusesPlacesOutsideOfItsRange)
{
    const AssertionCapture capture;
    const EigenData data = AnalyseLoopStep(5);
    constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
    constexpr double kTiny = std::numeric_limits<double>::denorm_min();
    for (const auto& [v, w] : {std::array{0.0, 0.0}, std::array{-0.1, 0.5}, std::array{0.5, 1.01},
                               std::array{kNaN, 0.5}, std::array{0.5, kNaN}, std::array{kTiny, kTiny}})
    {
        EXPECT_THROW(LimitSample(data, v, w), AssertionFailure) << v << ' ' << w;
    }
    const double smallest = std::ldexp(1.0, -1024);
    EXPECT_NO_THROW(LimitSample(data, smallest, smallest));
    EXPECT_THROW(LimitSample(data, smallest / 2.0, smallest / 2.0), AssertionFailure);
    EXPECT_THROW(GetBoxSplineBasis(-0.1, 0.0), AssertionFailure);
    EXPECT_THROW(GetBoxSplineBasis(0.0, 1.5), AssertionFailure);
}

TEST(LimitEvaluation, RefusesDataFromWhichNoPointComes)
{
    const auto tellsOfTheTable = testing::HasSubstr("the table for the limit surface (data/lpdata50NT.dat)");
    const EigenData sound = AnalyseLoopStep(5);
    EigenData large = sound;
    large.m_Coefficients[1].assign(large.m_Coefficients[1].size(), 1e308);
    EXPECT_THAT(GetRefusal([&] { LimitSample(large, 0.25, 0.3); }), tellsOfTheTable);
    EigenData flat = sound;
    flat.m_Eigenvalues[3] = 0.0; // has no power below zero
    EXPECT_THAT(GetRefusal([&] { LimitSample(flat, 0.75, 0.2); }), tellsOfTheTable);
    // Weights are finite where an eigenvector without a share is too large for positions.
    EigenData hidden = sound;
    for (std::size_t j = 0; j < 11; ++j)
    {
        hidden.m_InvEigenvectors[10 + 11 * j] = 1e308;
    }
    for (std::size_t j = 0; j < 12; ++j)
    {
        hidden.m_Coefficients[1][10 + 11 * j] = 0.0;
    }
    const LimitSample sample(hidden, 0.25, 0.3);
    const LimitPatch patch(hidden, std::vector<smVec3d>(11, smVec3d(1.0, 1.0, 1.0)));
    EXPECT_THAT(GetRefusal([&] { patch.EvalEigenPatch(sample); }), tellsOfTheTable);
}

TEST(LimitEvaluation, RefusesPatchesAndSamplesOfAnotherValence)
{
    const AssertionCapture capture;
    const EigenData data = AnalyseLoopStep(5);
    EXPECT_THROW(LimitPatch(data, std::vector<smVec3d>(12)), AssertionFailure);
    const LimitPatch patch(data, std::vector<smVec3d>(11));
    EXPECT_THROW(patch.EvalEigenPatch(LimitSample(AnalyseLoopStep(6), 0.5, 0.5)), AssertionFailure);
    EXPECT_THROW(AnalyseLoopStep(2), AssertionFailure);
}
}
}
