// Feet of half a million points on a model of 200k faces against the queries of the tree alone, console lines included;
// the product of a sparse matrix with a vector against compressed rows; assembly of the energy's matrix.
#include "Console.h"
#include "FootSearch.h"
#include "HeadlessPlatform.h"
#include "IAWorkbench.h"
#include "Memory.h"
#include "Models.h"
#include "SparseMatrix.h"
#include "Timing.h"
#include <Eigen/Sparse>
#include <functional>
#include <random>

using namespace tessarine;
using namespace tessarine::bench;

namespace
{
constexpr int kFaces = 200'000;
constexpr int kPoints = 500'000;

/// Points near the vertices of a model, in random order.
std::vector<smVec3d> MakeCloud(const DSSolid& solid)
{
    std::mt19937 random(1);
    const auto draw = [&random] { return static_cast<double>(random()) / 4294967296.0; };
    const std::size_t vertices = solid.GetVertexList().size();
    std::vector<smVec3d> cloud;
    for (int i = 0; i < kPoints; ++i)
    {
        const smVec3d& p = solid.GetVertexList()[random() % vertices]->GetPosition();
        cloud.push_back(p + smVec3d(draw(), draw(), draw()) * 0.01);
    }
    return cloud;
}

/// @param isPass over the cloud as a whole, which the commands with this variant do; else point by point
bool JudgeFeet(DSSolid& solid, const FootVariant& variant, bool isPass, const char* name)
{
    const std::vector<smVec3d> cloud = MakeCloud(solid);
    int found = 0;
    const auto search = [&]
    {
        FootSearch feet(solid, variant);
        found = 0;
        for (const smVec3d& p : cloud)
        {
            found += feet.Find(p).has_value() ? 1 : 0;
        }
    };
    const auto pass = [&]
    {
        FootSearch feet(solid, variant);
        const auto all = [](std::size_t) { return true; };
        found = static_cast<int>(CalculateFootPoints(solid, cloud, all, feet, nullptr).points.size());
    };
    const auto query = [&]
    {
        NearestPoints nearest(solid);
        for (const smVec3d& p : cloud)
        {
            nearest.Find(p, variant.neighbours);
        }
    };
    const auto seconds = Race(
        {{"queries", nullptr, query}, {"feet", nullptr, isPass ? std::function<void()>(pass) : search}}, 3);
    std::printf("%s: %d of %d points have a foot; queries %.0f ms, feet %.0f ms\n", name, found, kPoints,
                1e3 * seconds[0], 1e3 * seconds[1]);
    return Judge(std::string("feet of 500k points, ") + name + ": times the queries alone",
                 seconds[1] / seconds[0], 2.0);
}

/// The pattern of an energy: the edges of a model, and the diagonal.
void ForEachEntry(const DSSolid& solid, const std::function<void(int, int, double)>& visit)
{
    for (const DSFace* face : solid.GetFaceList())
    {
        const DSHalfEdge* h = face->GetLoopList()[0]->GetHalfEdge();
        for (int i = 0; i < 3; ++i)
        {
            const auto from = static_cast<int>(h->GetVertex()->GetID());
            h = h->GetNext();
            const auto to = static_cast<int>(h->GetVertex()->GetID());
            visit(from, from, 0.3);
            visit(from, to, 0.1);
        }
    }
}

bool JudgeMatrix(const DSSolid& solid)
{
    const int n = static_cast<int>(solid.GetVertexList().size());
    std::vector<double> x(static_cast<std::size_t>(n) + 1, 1.25);
    std::vector<double> y(x.size());
    CSparseMatrix matrix;
    Eigen::SparseMatrix<double, Eigen::RowMajor> rows(n, n);
    const auto assemble = [&]
    {
        matrix.SetSize(n, n);
        ForEachEntry(solid, [&](int row, int column, double value) { matrix.AddValue(row, column, value); });
        matrix.MultiplyVector2(x, y, n); // makes the compressed rows
    };
    const auto assembleRows = [&]
    {
        std::vector<Eigen::Triplet<double>> entries;
        ForEachEntry(solid,
                     [&](int row, int column, double value) { entries.emplace_back(row, column, value); });
        rows.setFromTriplets(entries.begin(), entries.end());
    };
    const auto assembly = Race({{"matrix", nullptr, assemble}, {"rows", nullptr, assembleRows}}, 5);
    const Eigen::VectorXd v = Eigen::VectorXd::Constant(n, 1.25);
    Eigen::VectorXd w(n);
    const auto repeat = [](const auto& action)
    {
        for (int i = 0; i < 50; ++i)
        {
            action();
        }
    };
    const auto product = Race({{"matrix", nullptr, [&] { repeat([&] { matrix.MultiplyVector2(x, y, n); }); }},
                               {"rows", nullptr, [&] { repeat([&] { w.noalias() = rows * v; }); }}},
                              9);
    std::printf("assembly %.1f ms, of compressed rows %.1f ms; product %.3f ms, of compressed rows %.3f ms\n",
                1e3 * assembly[0], 1e3 * assembly[1], 20.0 * product[0], 20.0 * product[1]);
    bool good = Judge("assembly over 200k faces: times compressed rows", assembly[0] / assembly[1], 2.0);
    good &= Judge("product with a vector: times compressed rows", product[0] / product[1], 2.0);
    return good;
}
}

int main()
{
    KeepFreedMemory(); // as the programs do
    HeadlessPlatform platform;
    SetPlatform(&platform);
    DebugConsole().SetSink([](std::string_view) {}); // the lines are made, and go nowhere
    const TemporaryFolder folder;
    IAWorkbench bench;
    platform.AnswerFile(WriteClosedModel(folder.GetPath(), kFaces).string());
    bench.Perform("import", Effect::ReplacesModel, [&bench] { bench.ImportObj(); });
    DSSolid* solid = bench.GetController().GetSceneManager().GetCurrentSolid();
    bool good = JudgeFeet(*solid, kHierarchicalFeet, true, "first face");
    good &= JudgeFeet(*solid, kEnergyFeet, false, "deepest face");
    good &= JudgeFeet(*solid, kTwoStepFeet, true, "largest move");
    good &= JudgeMatrix(*solid);
    return good ? 0 : 1;
}
