// The table for the limit surface up to valence 50, in seconds; and points of the limit surface by the thousand on each
// patch, against the literal form that projects a patch anew for each of them.
#include "LimitEvaluation.h"
#include "LiteralLimit.h"
#include "LoopEigenAnalysis.h"
#include "Models.h"
#include "Timing.h"
#include <random>

using namespace tessarine;
using namespace tessarine::bench;

namespace
{
constexpr int kPatches = 60;
constexpr int kGrid = 50; ///< steps along a side of the triangle

std::vector<std::array<double, 2>> MakeGrid()
{
    std::vector<std::array<double, 2>> grid;
    for (int i = 0; i <= kGrid; ++i)
    {
        for (int j = i == 0 ? 1 : 0; i + j <= kGrid; ++j)
        {
            grid.push_back({0.02 * i, 0.02 * j});
        }
    }
    return grid;
}

std::vector<smVec3d> MakeControlPoints(std::size_t count, std::mt19937& random)
{
    const auto draw = [&random] { return static_cast<double>(random()) / 4294967296.0; };
    std::vector<smVec3d> points(count);
    for (smVec3d& point : points)
    {
        point = smVec3d(draw(), draw(), draw());
    }
    return points;
}

bool JudgeTable()
{
    const TemporaryFolder folder;
    const double begin = ProcessorSeconds();
    WriteEigenTable(folder.GetPath() / "table.dat", 50);
    return Judge("table up to valence 50: seconds", ProcessorSeconds() - begin, 10.0);
}

bool JudgeSamples(int nValence)
{
    const EigenData data = AnalyseLoopStep(nValence);
    const std::vector<std::array<double, 2>> grid = MakeGrid();
    std::mt19937 random(1);
    std::vector<std::vector<smVec3d>> patches;
    for (int i = 0; i < kPatches; ++i)
    {
        patches.push_back(MakeControlPoints(static_cast<std::size_t>(data.GetOrder()), random));
    }
    smVec3d sum;
    const auto literal = [&]
    {
        sum = smVec3d();
        Matrix weights;
        for (const auto& patch : patches)
        {
            for (const auto& [v, w] : grid)
            {
                sum += EvalLimitPointLiterally(patch, v, w, data, weights);
            }
        }
    };
    smVec3d sumOfPatches;
    const auto byPatch = [&]
    {
        sumOfPatches = smVec3d();
        std::vector<LimitSample> samples;
        for (const auto& [v, w] : grid)
        {
            samples.emplace_back(data, v, w);
        }
        for (const auto& points : patches)
        {
            const LimitPatch patch(data, points);
            for (const LimitSample& sample : samples)
            {
                sumOfPatches += patch.EvalEigenPatch(sample);
            }
        }
    };
    const auto seconds = Race({{"literal", nullptr, literal}, {"patches", nullptr, byPatch}}, 3);
    const double count = static_cast<double>(grid.size()) * kPatches;
    std::printf("valence %d: %.2f million points a second, literally %.3f\n", nValence,
                1e-6 * count / seconds[1], 1e-6 * count / seconds[0]);
    const bool isSame = sum.x == sumOfPatches.x && sum.y == sumOfPatches.y && sum.z == sumOfPatches.z;
    return Judge("points of the limit surface: share of the literal form", seconds[1] / seconds[0], 0.1) &&
           isSame;
}
}

int main()
{
    bool good = JudgeTable();
    for (const int n : {6, 5, 12})
    {
        good &= JudgeSamples(n);
    }
    return good ? 0 : 1;
}
