// Adaptive subdivision of closed models: how the cost grows, against the literal form, and, where all faces are split,
// against Loop steps.
#include "Console.h"
#include "HeadlessPlatform.h"
#include "IASubAdaptiveCommand.h"
#include "IASubLOOPCommand.h"
#include "IOLoadObj.h"
#include "LiteralAdaptive.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "Memory.h"
#include "Models.h"
#include "Peers.h"
#include "Timing.h"
#include <memory>
#include <sys/resource.h>

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

    MANSceneManager scene;
    MANBrepElementManager elements;
};

HeadlessPlatform& Machine()
{
    static HeadlessPlatform platform;
    return platform;
}

void SubdivideAdaptively(Stores& stores, float maxArea)
{
    Machine().AnswerAreaThreshold(maxArea);
    IASubAdaptiveCommand command;
    command.SetElementManager(&stores.elements);
    command.SetSceneManager(&stores.scene);
    command.SetClearModels(
        [&]
        {
            stores.scene.Clear();
            stores.elements.Clear();
        });
    command.Execute();
}

void SubdivideLoop(Stores& stores)
{
    IASubLOOPCommand command;
    command.SetElementManager(&stores.elements);
    command.SetSceneManager(&stores.scene);
    command.Execute();
}

/// The measure that half of the faces are above.
float FindMedianArea(const std::filesystem::path& model)
{
    const Stores stores(model);
    std::vector<double> areas;
    for (const DSFace* pFace : stores.elements.GetSolid(ElementKind::Solid)->GetFaceList())
    {
        const DSHalfEdge* h = pFace->GetLoopList()[0]->GetHalfEdge();
        const smVec3d& a = h->GetVertex()->GetPosition();
        const smVec3d& b = h->GetNext()->GetVertex()->GetPosition();
        const smVec3d& c = h->GetPrev()->GetVertex()->GetPosition();
        areas.push_back((b - a).Cross(c - b).Length());
    }
    return static_cast<float>(Median(std::move(areas)));
}

/// Median seconds of an operation on the model as it was read.
double TimeOnFreshModel(const std::filesystem::path& model, int rounds,
                        const std::function<void(Stores&)>& operation, double (*clock)() = ProcessorSeconds)
{
    KeepFreedMemory(); // as the programs do
    std::unique_ptr<Stores> stores;
    const auto reload = [&]
    {
        stores.reset();
        stores = std::make_unique<Stores>(model);
    };
    return Race({{"", reload, [&] { operation(*stores); }}}, rounds, clock)[0];
}

double TimeAdaptive(const std::filesystem::path& model, float maxArea, int rounds,
                    double (*clock)() = ProcessorSeconds)
{
    const auto subdivide = [maxArea](Stores& stores) { SubdivideAdaptively(stores, maxArea); };
    return InAProcessOfItsOwn([&] { return TimeOnFreshModel(model, rounds, subdivide, clock); });
}

double TimeLiteral(const std::filesystem::path& model, float maxArea)
{
    return InAProcessOfItsOwn(
        [&]
        {
            return TimeOnFreshModel(model, 1,
                                    [&](Stores& stores) {
                                        SubdivideAdaptivelyLiterally(stores.elements, stores.scene, maxArea);
                                    });
        });
}

double TimePeer(LoopPeer& peer)
{
    return Race({{"", [&] { peer.Reset(); }, [&] { peer.Subdivide(); }}}, 5)[0];
}

/// The processor's time of this process outside of the system: without the clearing of fresh pages, whose cost hangs
/// on what the machine did before.
double OwnSeconds()
{
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return static_cast<double>(usage.ru_utime.tv_sec) + 1e-6 * static_cast<double>(usage.ru_utime.tv_usec);
}

/// How the cost grows where half of the faces are split.
bool JudgeGrowth(const std::filesystem::path& folder)
{
    std::vector<double> perFace;
    for (const int faces : {10000, 100000, 1000000})
    {
        const auto model = WriteClosedModel(folder, faces);
        const auto median = static_cast<float>(InAProcessOfItsOwn([&] { return FindMedianArea(model); }));
        const int rounds = faces > 100000 ? 3 : 9;
        const double all = TimeAdaptive(model, median, rounds, ProcessorSeconds) / faces * 1e6;
        perFace.push_back(TimeAdaptive(model, median, rounds, OwnSeconds) / faces * 1e6);
        std::printf(
            "  half of %7d faces split: %.2f us an input face, %.2f with the system's clearing of pages\n",
            faces, perFace.back(), all);
    }
    return Judge("Adaptive subdivision: time a face of 1M faces against 10k",
                 perFace.back() / perFace.front(), 2.5);
}

bool JudgeAgainstLiteral(const std::filesystem::path& folder)
{
    const auto model = WriteClosedModel(folder, 10000);
    const double own = TimeAdaptive(model, 0.0F, 5);
    const double literal = TimeLiteral(model, 0.0F);
    std::printf("  10000 faces, all split: %.1f ms, literally %.1f ms\n", own * 1e3, literal * 1e3);
    return Judge("Adaptive subdivision: time against the literal form", own / literal, 1.0);
}

/// With a threshold of 0 it does the work of a Loop step, and builds the model anew. The peers have no adaptive
/// operator, and neither normals nor a report in their steps.
bool JudgeAgainstLoopSteps(const std::filesystem::path& folder)
{
    const auto model = WriteClosedModel(folder, 250000);
    const double own = TimeAdaptive(model, 0.0F, 5, OwnSeconds);
    const double loop =
        InAProcessOfItsOwn([&] { return TimeOnFreshModel(model, 5, SubdivideLoop, OwnSeconds); });
    const double cgal = InAProcessOfItsOwn([&] { return TimePeer(*MakeCgalLoop(model)); });
    const double openMesh = InAProcessOfItsOwn([&] { return TimePeer(*MakeOpenMeshLoop(model)); });
    std::printf("  250000 faces, all split: %.0f ms; a Loop step of ours %.0f ms, by CGAL %.0f ms, by "
                "OpenMesh %.0f ms\n",
                own * 1e3, loop * 1e3, cgal * 1e3, openMesh * 1e3);
    return Judge("Adaptive subdivision of all faces: time against a Loop step of ours", own / loop, 2.5);
}
}

int main()
{
    SetPlatform(&Machine());
    DebugConsole().SetSink([](std::string_view) {});
    const TemporaryFolder folder;
    bool good = JudgeGrowth(folder.GetPath());
    good &= JudgeAgainstLiteral(folder.GetPath());
    good &= JudgeAgainstLoopSteps(folder.GetPath());
    return good ? 0 : 1;
}
