// One Loop step of a closed model of 250k faces, snapshot included; how the cost grows; against the literal
// form.
#include "Console.h"
#include "HeadlessPlatform.h"
#include "IASubLOOPCommand.h"
#include "IOLoadObj.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "Memory.h"
#include "Models.h"
#include "Peers.h"
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

    MANSceneManager scene;
    MANBrepElementManager elements;
};

void Subdivide(Stores& stores)
{
    IASubLOOPCommand command;
    command.SetElementManager(&stores.elements);
    command.SetSceneManager(&stores.scene);
    command.Execute();
}

/// Median seconds of a step of the current solid. Every round starts from the model as it was read.
double TimeOwnStep(const std::filesystem::path& model, int rounds)
{
    KeepFreedMemory(); // as the programs do
    std::unique_ptr<Stores> stores;
    const auto reload = [&]
    {
        stores.reset();
        stores = std::make_unique<Stores>(model);
    };
    return Race({{"Tessarine", reload, [&] { Subdivide(*stores); }}}, rounds)[0];
}

/// Where the heap of a process happens to need new pages from the system in most rounds, these cost more than the step.
double FastestOfThreeProcesses(const std::function<double()>& measure)
{
    return std::min({InAProcessOfItsOwn(measure), InAProcessOfItsOwn(measure), InAProcessOfItsOwn(measure)});
}

double TimePeer(LoopPeer& peer)
{
    return Race({{"peer", [&] { peer.Reset(); }, [&] { peer.Subdivide(); }}}, 5)[0];
}

std::size_t CountFaces(const std::filesystem::path& model)
{
    return Stores(model).elements.GetFaceArray().size();
}

/// A step by each of the libraries, each in a process of its own with the memory allocator as it sets it: the
/// blocks that Tessarine's programs keep for themselves would serve the others, too.
/// @return microseconds an input face: ours, CGAL's, OpenMesh's
std::vector<double> RaceOn(const std::filesystem::path& model)
{
    std::vector<double> step{InAProcessOfItsOwn([&] { return TimeOwnStep(model, 5); }),
                             InAProcessOfItsOwn([&] { return TimePeer(*MakeCgalLoop(model)); }),
                             InAProcessOfItsOwn([&] { return TimePeer(*MakeOpenMeshLoop(model)); })};
    const auto faces = static_cast<double>(CountFaces(model));
    for (double& seconds : step)
    {
        seconds *= 1e6 / faces;
    }
    std::printf("One Loop step of %.0f faces, microseconds an input face (median of 5)\n", faces);
    std::printf("  Tessarine %.2f, CGAL %.2f, OpenMesh %.2f\n", step[0], step[1], step[2]);
    return step;
}

/// What it costs to be able to go back: a copy of the records before a step, as the boundary takes it.
void TellCheckpoint(const std::filesystem::path& model)
{
    KeepFreedMemory(); // as the programs do
    std::unique_ptr<Stores> stores;
    const auto reload = [&]
    {
        stores.reset();
        stores = std::make_unique<Stores>(model);
    };
    const auto taken =
        Race({{"step", reload, [&] { Subdivide(*stores); }},
              {"checkpoint", reload, [&] { stores->elements.Save(); }},
              {"normals", reload, [&] { stores->elements.GetSolid(ElementKind::Solid)->CalcNormals(); }}},
             5);
    std::printf(
        "  checkpoint before the step: %.0f ms, %.0f %% of the step; normals of the input mesh: %.0f ms\n",
        taken[1] * 1e3, 100.0 * taken[1] / taken[0], taken[2] * 1e3);
}

bool JudgeAgainstCgal(const std::filesystem::path& model)
{
    const auto step = RaceOn(model);
    return Judge("Loop step with its snapshot: time against CGAL's", step[0] / step[1], 3.0);
}
}

int main(int argc, char** argv)
{
    HeadlessPlatform platform;
    SetPlatform(&platform);
    DebugConsole().SetSink([](std::string_view) {});
    if (argc > 1)
    {
        return JudgeAgainstCgal(argv[1]) ? 0 : 1;
    }
    TemporaryFolder folder;
    const auto model = WriteClosedModel(folder.GetPath(), 250000);
    bool good = JudgeAgainstCgal(model);

    std::vector<double> perFace;
    for (const int faces : {10000, 50000, 250000})
    {
        const auto path = WriteClosedModel(folder.GetPath(), faces);
        const double seconds = FastestOfThreeProcesses([&] { return TimeOwnStep(path, 5); });
        perFace.push_back(seconds / faces * 1e6);
        std::printf("  Loop step of %6d faces: %.2f us an input face\n", faces, perFace.back());
    }
    good &= Judge("Loop step: time a face of 250k faces against 10k", perFace.back() / perFace.front(), 1.6);
    TellCheckpoint(model);
    return good ? 0 : 1;
}
