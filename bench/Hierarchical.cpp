// Four rounds of the fit of a limit surface on a model of 5000 faces, 6.6 million samples each, with the file of all
// samples; a dual mesh and the fit of the vertices of a model of 200k faces; and the literal form of the limit fit, which
// projects every sample's patch and looks up every entry, on a small model.
#include "Console.h"
#include "EigenTable.h"
#include "File.h"
#include "HeadlessPlatform.h"
#include "IAPointCloud.h"
#include "IAWorkbench.h"
#include "IODatasetText.h"
#include "LiteralSmooth.h"
#include "Memory.h"
#include "Models.h"
#include "Timing.h"
#include <fstream>
#include <random>

using namespace tessarine;
using namespace tessarine::bench;

namespace
{
constexpr int kFitFaces = 5'000;
constexpr int kDualFaces = 200'000;
constexpr int kPoints = 20'000;
constexpr int kRounds = 4;

/// A model of so many faces, imported, and a cloud of points near its vertices as the command's file.
DSSolid& Prepare(HeadlessPlatform& platform, IAWorkbench& bench, const std::filesystem::path& folder,
                 int faces, int points)
{
    platform.AnswerFile(WriteClosedModel(folder, faces).string());
    bench.Perform("import", Effect::ReplacesModel, [&bench] { bench.ImportObj(); });
    DSSolid& solid = *bench.GetController().GetSceneManager().GetCurrentSolid();
    std::mt19937 random(1);
    const auto draw = [&random] { return static_cast<double>(random()) / 4294967296.0; };
    std::ofstream file(folder / "Data/horse.txta");
    file << points << '\n';
    for (int i = 0; i < points; ++i)
    {
        const smVec3d& p = solid.GetVertexList()[random() % solid.GetVertexList().size()]->GetPosition();
        file << p.x + 0.02 * draw() << ' ' << p.y + 0.02 * draw() << ' ' << p.z + 0.02 * draw() << '\n';
    }
    return solid;
}

double SecondsOf(IAWorkbench& bench, const char* name, void (IAController::*operation)())
{
    const double begin = ProcessorSeconds();
    const bool isDone =
        bench.Perform(name, Effect::ChangesModel, [&] { (bench.GetController().*operation)(); });
    const double taken = ProcessorSeconds() - begin;
    return isDone ? taken : 1e9;
}

/// Seconds a sample.
double MeasureLiteral(HeadlessPlatform& platform, const std::filesystem::path& folder)
{
    IAWorkbench bench;
    DSSolid& solid = Prepare(platform, bench, folder, 100, 100);
    IAPointCloud cloud;
    IODatasetText text("Data/horse.txta");
    cloud.ReadPoints(text);
    cloud.Normalize("the cloud");
    const EigenTable table = ReadEigenTable();
    const double begin = ProcessorSeconds();
    FitLimitSurfaceLiterally(solid, cloud.m_Points, table);
    return (ProcessorSeconds() - begin) /
           (kRounds * 1326.0 * static_cast<double>(solid.GetFaceList().size()));
}
}

int main()
{
    KeepFreedMemory(); // as the programs do
    HeadlessPlatform platform;
    SetPlatform(&platform);
    DebugConsole().SetSink([](std::string_view) {}); // the lines are made, and go nowhere
    const TemporaryFolder folder;
    SetCurrentFolder(folder.GetPath());
    std::filesystem::create_directory("Data");
    WriteEigenTable("Data/lpdata50NT.dat", 8);

    IAWorkbench bench;
    const std::size_t faces =
        Prepare(platform, bench, folder.GetPath(), kFitFaces, kPoints).GetFaceList().size();
    const double round = SecondsOf(bench, "fit-limit-surface", &IAController::FitLimitSurface) / kRounds;
    const double samples = 1326.0 * static_cast<double>(faces);
    bool good = Judge("limit fit of 6.6M samples, file included: seconds a round", round, 60.0);
    const double literal = MeasureLiteral(platform, folder.GetPath());
    std::printf(
        "%.0f samples a round, %.2f us each; of the literal form, on a small model and cloud, %.2f us\n",
        samples, 1e6 * round / samples, 1e6 * literal);

    Prepare(platform, bench, folder.GetPath(), kDualFaces, 25 * kPoints);
    const double dual = SecondsOf(bench, "refine-hierarchical", &IAController::RefineHierarchical);
    const double vertices = SecondsOf(bench, "fit-vertices", &IAController::FitVertices);
    std::printf("200k faces, 500k points: dual mesh %.2f s, fit of the vertices %.2f s\n", dual, vertices);
    good &= Judge("dual mesh of 200k faces over 500k points: seconds", dual, 6.0);
    good &= Judge("fit of the vertices of 200k faces to 500k points: seconds", vertices, 12.0);
    SetCurrentFolder("/");
    return good ? 0 : 1;
}
