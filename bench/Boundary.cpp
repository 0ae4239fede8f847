// What it costs to be able to go back: the share of a command's time in which its checkpoint is taken and dropped, for the
// commands that take over 100 ms, and the memory that is in use behind a command against the same without a way back. Each
// command runs on a model of its own in a process of its own.
#include "Console.h"
#include "File.h"
#include "HeadlessPlatform.h"
#include "IAWorkbench.h"
#include "Memory.h"
#include "Models.h"
#include "SilhouetteFiles.h"
#include "Timing.h"
#include <algorithm>
#include <fstream>
#include <malloc.h>
#include <map>
#include <random>

using namespace tessarine;
using namespace tessarine::bench;

namespace
{
constexpr int kFaces = 250'000;
constexpr int kFewFaces = 2'000;      // for the sampling of every face
constexpr int kManyFaces = 1'000'000; // for what hardly looks at them
constexpr double kMostShare = 0.15;
constexpr double kMostGrowth = 1.03;

/// Message boxes that nobody wants to see.
class SilentPlatform : public HeadlessPlatform
{
public:
    void ShowMessage(const std::string& /*title*/, const std::string& /*text*/) override {}
    void ShowFailure(const std::string& /*operation*/, const std::string& reason, bool /*shown*/) override
    {
        m_strReason = reason;
    }
    const std::string& GetReason() const { return m_strReason; }

private:
    std::string m_strReason;
};

SilentPlatform& GetSilentPlatform()
{
    static SilentPlatform platform;
    return platform;
}

/// A command as the router runs it, on a model of so many faces.
struct BoundedCommand
{
    const char* name;
    int faces;
    Effect effect;
    void (*run)(IAController& controller);
    void (*prepare)(IAController& controller) = [](IAController&) {};
};

void SelectSolid(IAController& controller)
{
    MANBrepElementManager& elements = controller.GetElementManager();
    elements.SetSelectType(SelectType::Solids);
    elements.ToggleSelect(controller.GetSceneManager().GetCurrentSolid()->GetID());
}

const BoundedCommand kCommands[] = {
    {"subdivide-loop", kFaces, Effect::ChangesModel, [](IAController& c) { c.SubdivideLoop(); }},
    {"subdivide-adaptive", kFaces, Effect::ReplacesModel, [](IAController& c) { c.SubdivideAdaptive(); }},
    {"simplify 0.2", kFaces, Effect::Adds, [](IAController& c) { c.Simplify(0.2F); }},
    {"simplify 0.8", kFaces, Effect::Adds, [](IAController& c) { c.Simplify(0.8F); }},
    {"optimize 1", kFaces, Effect::ChangesModel, [](IAController& c) { c.OptimizeMesh(1); }},
    {"optimize 2", kFaces, Effect::ChangesModel, [](IAController& c) { c.OptimizeMesh(2); }},
    {"optimize 3", kFaces, Effect::ChangesModel, [](IAController& c) { c.OptimizeMesh(3); }},
    {"refine-energy", kFaces, Effect::ChangesModel, [](IAController& c) { c.RefineEnergy(); }},
    {"refine-hierarchical", kFaces, Effect::ChangesModel, [](IAController& c) { c.RefineHierarchical(); }},
    {"fit-vertices", kFaces, Effect::ChangesModel, [](IAController& c) { c.FitVertices(); }},
    {"refine-incremental", kFaces, Effect::ChangesModel, [](IAController& c) { c.RefineIncremental(); }},
    {"refine-two-step", kFaces, Effect::ChangesModel, [](IAController& c) { c.RefineTwoStep(); }},
    {"two-step-first", kFaces, Effect::ChangesModel, [](IAController& c) { c.TwoStepFirst(); },
     [](IAController& c) { c.RefineTwoStep(); }},
    {"connect-next 1", kFaces, Effect::ChangesModel, [](IAController& c) { c.ConnectNext(1); },
     [](IAController& c) { c.RefineIncremental(); }},
    {"set-material", kManyFaces, Effect::Adds, [](IAController& c) { c.SetMaterialOfSelection(); },
     SelectSolid},
    {"generate-splats", kManyFaces, Effect::Adds, [](IAController& c) { c.GenerateSplats(); }},
    {"build-octree", kFewFaces, Effect::ChangesModel, [](IAController& c) { c.BuildOctree(); }},
};

/// A workbench with a model, and a cloud near its vertices under every name that a command reads.
class LoadedBench
{
public:
    explicit LoadedBench(const std::filesystem::path& model)
    {
        KeepFreedMemory(); // as the programs do
        m_Platform.AnswerFile(model.string());
        m_Platform.AnswerAreaThreshold(1e-5F);
        m_Bench.Perform("import", Effect::ReplacesModel, [this] { m_Bench.ImportObj(); });
    }

    IAWorkbench& GetBench() { return m_Bench; }
    std::string GetReason() const { return m_Platform.GetReason(); }

    void Prepare(const BoundedCommand& command)
    {
        if (!m_Bench.Perform("prepare", Effect::ChangesModel,
                             [&] { command.prepare(m_Bench.GetController()); }))
        {
            throw std::runtime_error(std::string(command.name) + ": " + GetReason());
        }
    }

    bool Run(const BoundedCommand& command)
    {
        return m_Bench.Perform(command.name, command.effect, [&] { command.run(m_Bench.GetController()); });
    }

private:
    SilentPlatform& m_Platform = GetSilentPlatform();
    IAWorkbench m_Bench;
};

void WriteClouds(const std::filesystem::path& model)
{
    constexpr int kPoints = 100'000;
    LoadedBench loaded(model);
    const auto& vertices =
        loaded.GetBench().GetController().GetSceneManager().GetCurrentSolid()->GetVertexList();
    std::mt19937 random(1);
    const auto draw = [&random] { return 0.01 * static_cast<double>(random()) / 4294967296.0; };
    std::string cloud = std::to_string(kPoints) + '\n';
    for (int i = 0; i < kPoints; ++i)
    {
        const smVec3d& p = vertices[random() % vertices.size()]->GetPosition();
        cloud += std::to_string(p.x + draw()) + ' ' + std::to_string(p.y + draw()) + ' ' +
                 std::to_string(p.z + draw()) + '\n';
    }
    std::filesystem::create_directory("data");
    for (const char* name : {"data/bunny.txta", "data/box.txta", "data/dragon.txta", "data/horse.txta"})
    {
        std::ofstream(name) << cloud;
    }
    WriteSilhouetteFiles("."); // for the splats
}

/// Takes a checkpoint and drops it.
double SecondsOfCheckpoint(IAWorkbench& bench, Effect effect)
{
    const double begin = ProcessorSeconds();
    {
        const IACheckpoint before(bench.GetController(), bench.GetView(), bench.GetCommandManager(), effect);
    }
    return ProcessorSeconds() - begin;
}

/// The boundary's own part.
double MeasureCheckpoint(const BoundedCommand& command, const std::filesystem::path& model)
{
    LoadedBench loaded(model);
    loaded.Prepare(command);
    return SecondsOfCheckpoint(loaded.GetBench(), command.effect);
}

double MeasureCommand(const BoundedCommand& command, const std::filesystem::path& model)
{
    LoadedBench loaded(model);
    loaded.Prepare(command);
    const double begin = ProcessorSeconds();
    if (!loaded.Run(command))
    {
        throw std::runtime_error(std::string(command.name) + ": " + loaded.GetReason());
    }
    return ProcessorSeconds() - begin;
}

/// The least of five processes: where a machine's memory is handed out by another one, a first touch now and then
/// takes ten times as long.
double LeastOf(const BoundedCommand& command, const std::filesystem::path& model,
               double (*measure)(const BoundedCommand&, const std::filesystem::path&))
{
    const auto once = [&] { return InAProcessOfItsOwn([&] { return measure(command, model); }); };
    return std::min({once(), once(), once(), once(), once()});
}

bool JudgePrice(const BoundedCommand& command, const std::filesystem::path& model)
{
    constexpr double kShortest = 0.1; // seconds
    const double checkpoint = LeastOf(command, model, MeasureCheckpoint);
    const double whole = LeastOf(command, model, MeasureCommand);
    char text[96];
    std::snprintf(text, sizeof text, "%s of %d faces, %.0f ms: share of the checkpoint", command.name,
                  command.faces, whole * 1e3);
    if (whole < kShortest)
    {
        std::printf("%-66s %8.3f  (under 100 ms)\n", text, checkpoint / whole);
        return true;
    }
    return Judge(text, checkpoint / whole, kMostShare);
}

double BytesInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

enum class Way
{
    Bounded, ///< by the boundary, as every operation of the programs
    Bare     ///< without anything to go back to
};

/// The bytes in use behind a command.
double MeasureMemoryBehind(const std::filesystem::path& model,
                           const std::function<void(IAController&)>& command, Way way)
{
    LoadedBench loaded(model);
    IAController& controller = loaded.GetBench().GetController();
    if (way == Way::Bare)
    {
        command(controller);
    }
    else
    {
        loaded.GetBench().Perform("operation", Effect::ChangesModel, [&] { command(controller); });
    }
    return BytesInUse();
}

/// Against the same command without a way back, as a command may itself leave more than there was.
bool JudgeMemory(const char* name, const std::filesystem::path& model,
                 const std::function<void(IAController&)>& bounded,
                 const std::function<void(IAController&)>& bare)
{
    const double behind =
        InAProcessOfItsOwn([&] { return MeasureMemoryBehind(model, bounded, Way::Bounded); });
    const double least = InAProcessOfItsOwn([&] { return MeasureMemoryBehind(model, bare, Way::Bare); });
    return Judge(std::string("memory behind ") + name + " against without a way back", behind / least,
                 kMostGrowth);
}
}

int main()
{
    SetPlatform(&GetSilentPlatform());
    DebugConsole().SetSink([](std::string_view) {}); // the lines are made, and go nowhere
    const bench::TemporaryFolder folder;
    SetCurrentFolder(folder.GetPath());
    const auto model = WriteScannedModel(folder.GetPath(), kFaces);
    const std::map<int, std::filesystem::path> models{
        {kFaces, model},
        {kFewFaces, WriteScannedModel(folder.GetPath(), kFewFaces)},
        {kManyFaces, WriteScannedModel(folder.GetPath(), kManyFaces)}};
    InAProcessOfItsOwn(
        [&]
        {
            WriteClouds(model);
            return 0.0;
        });
    bool good = true;
    for (const BoundedCommand& command : kCommands)
    {
        good &= JudgePrice(command, models.at(command.faces));
    }
    const auto nothing = [](IAController&) {};
    const auto optimize = [](IAController& c) { c.OptimizeMesh(1); };
    const auto fit = [](IAController& c) { c.RefineEnergy(); };
    const auto failAtEnd = [](IAController& c)
    {
        c.SubdivideLoop();
        throw std::bad_alloc();
    };
    good &= JudgeMemory("an operation that does nothing", model, nothing, nothing);
    good &= JudgeMemory("optimize 1", model, optimize, optimize);
    good &= JudgeMemory("refine-energy", model, fit, fit);
    good &= JudgeMemory("a subdivision that fails at its end", model, failAtEnd, nothing);
    return good ? 0 : 1;
}
