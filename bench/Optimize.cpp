// Optimisation by swaps of a closed model of 200k faces with the noise of a scan, against the literal form, which walks
// its stack of edges after every swap. The two leave the same at 5k faces and below. At 200k the literal form would take
// most of an hour: its first swaps tell what each costs. How far the first ones are those of all is told at 10k, where it
// runs to its end.
#include "Console.h"
#include "HeadlessPlatform.h"
#include "IARefineMeshCommand.h"
#include "IOLoadObj.h"
#include "LiteralOptimize.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "Memory.h"
#include "Models.h"
#include "RecordDump.h"
#include "Timing.h"
#include <memory>

using namespace tessarine;
using namespace tessarine::bench;

namespace
{
struct Stores
{
    explicit Stores(const std::filesystem::path& path)
    {
        IOLoadObj reader(&scene, &elements);
        reader.Load(path.string());
    }

    std::size_t CountSwaps() const
    {
        return elements.GetEdgeArray().size() - scene.GetCurrentSolid()->GetEdgeList().size();
    }

    MANSceneManager scene;
    MANBrepElementManager elements;
};

void Optimize(Stores& stores)
{
    IARefineMeshCommand command;
    command.SetElementManager(&stores.elements);
    command.SetSceneManager(&stores.scene);
    command.Execute();
}

struct Cost
{
    double seconds = 0.0;
    double swaps = 0.0;
};

Cost TimeOwn(const std::filesystem::path& model)
{
    Cost cost;
    const auto measure = [&](bool isSwaps)
    {
        return InAProcessOfItsOwn(
            [&]
            {
                KeepFreedMemory(); // as the programs do
                Stores stores(model);
                const double begin = ProcessorSeconds();
                Optimize(stores);
                return isSwaps ? static_cast<double>(stores.CountSwaps()) : ProcessorSeconds() - begin;
            });
    };
    cost.swaps = measure(true);
    cost.seconds = measure(false);
    return cost;
}

/// Seconds of the literal form, without those of the start, up to so many swaps.
double TimeLiteral(const std::filesystem::path& model, std::size_t swaps)
{
    return InAProcessOfItsOwn(
        [&]
        {
            const auto run = [&model](std::size_t mostSwaps)
            {
                Stores stores(model);
                const double begin = ProcessorSeconds();
                OptimizeLiterally(stores.elements, stores.scene, 1, mostSwaps);
                return ProcessorSeconds() - begin;
            };
            const double start = run(0);
            return run(swaps) - start;
        });
}

bool LeaveTheSame(const std::filesystem::path& model)
{
    Stores own(model);
    Stores literal(model);
    Optimize(own);
    OptimizeLiterally(literal.elements, literal.scene, 1);
    const bool isSame = DumpRecords(own.elements) == DumpRecords(literal.elements);
    std::printf("optimize 1 of %zu faces: %zu swaps, %s\n", own.scene.GetCurrentSolid()->GetFaceList().size(),
                own.CountSwaps(),
                isSame ? "the same as the literal form's" : "ANOTHER RESULT than the literal form's");
    return isSame && own.CountSwaps() > 0;
}

bool JudgeAgainstLiteral(const std::filesystem::path& model, std::size_t literalSwaps)
{
    const Cost own = TimeOwn(model);
    std::printf("optimize 1 of %s: %.2f s, %.0f swaps, %.1f us each with the start\n", model.stem().c_str(),
                own.seconds, own.swaps, own.seconds / own.swaps * 1e6);
    const double literal = TimeLiteral(model, literalSwaps);
    const double perSwap = literal / static_cast<double>(literalSwaps);
    std::printf("  the literal form: %.1f ms for each of its first %zu swaps, %.0f s for all\n",
                perSwap * 1e3, literalSwaps, perSwap * own.swaps);
    return Judge("optimize 1 at 200k faces: literal form against it", perSwap * own.swaps / own.seconds, 100,
                 false);
}

void ShowLiteralRates(const std::filesystem::path& model)
{
    const double swaps = TimeOwn(model).swaps;
    const double first = TimeLiteral(model, 300) / 300;
    const double all = TimeLiteral(model, static_cast<std::size_t>(swaps)) / swaps;
    std::printf(
        "  the literal form at %s: %.2f ms for each of its first 300 swaps, %.2f ms for each of all %.0f\n",
        model.stem().c_str(), first * 1e3, all * 1e3, swaps);
}

void ShowGrowth(const std::filesystem::path& folder)
{
    for (const int faces : {5000, 50000, 500000})
    {
        const Cost own = TimeOwn(WriteScannedModel(folder, faces));
        std::printf("  optimize 1 of %6d faces: %.2f us a face, %.2f swaps a face\n", faces,
                    own.seconds / faces * 1e6, own.swaps / faces);
    }
}
}

int main()
{
    HeadlessPlatform platform;
    SetPlatform(&platform);
    DebugConsole().SetSink([](std::string_view) {});
    TemporaryFolder folder;
    bool good = LeaveTheSame(WriteScannedModel(folder.GetPath(), 2000));
    good &= LeaveTheSame(WriteScannedModel(folder.GetPath(), 5000));
    good &= JudgeAgainstLiteral(WriteScannedModel(folder.GetPath(), 200000), 300);
    ShowLiteralRates(WriteScannedModel(folder.GetPath(), 10000));
    ShowGrowth(folder.GetPath());
    return good ? 0 : 1;
}
