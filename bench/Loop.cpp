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

double MicrosecondsAFace(double seconds, int faces)
{
    return seconds / faces * 1e6;
}
}

int main()
{
    KeepFreedMemory(); // as the programs do
    HeadlessPlatform platform;
    SetPlatform(&platform);
    DebugConsole().SetSink([](std::string_view) {});
    TemporaryFolder folder;
    constexpr int kFaces = 250000;
    const auto model = WriteClosedModel(folder.GetPath(), kFaces);

    std::unique_ptr<Stores> stores;
    const auto reload = [&](const std::filesystem::path& path)
    {
        stores.reset();
        stores = std::make_unique<Stores>(path);
    };
    const auto cgal = MakeCgalLoop(model);
    const auto openMesh = MakeOpenMeshLoop(model);
    const auto step = Race({{"Tessarine", [&] { reload(model); }, [&] { Subdivide(*stores); }},
                            {"CGAL", [&] { cgal->Reset(); }, [&] { cgal->Subdivide(); }},
                            {"OpenMesh", [&] { openMesh->Reset(); }, [&] { openMesh->Subdivide(); }}},
                           5);
    std::printf("One Loop step of %d faces, microseconds an input face (median of 5, taking turns)\n",
                kFaces);
    std::printf("  Tessarine %.2f, CGAL %.2f, OpenMesh %.2f\n", MicrosecondsAFace(step[0], kFaces),
                MicrosecondsAFace(step[1], kFaces), MicrosecondsAFace(step[2], kFaces));
    bool good = Judge("Loop step with its snapshot: time against CGAL's", step[0] / step[1], 3.0);

    std::vector<double> perFace;
    for (const int faces : {10000, 50000, kFaces})
    {
        const auto path = WriteClosedModel(folder.GetPath(), faces);
        const auto taken = Race({{"Tessarine", [&] { reload(path); }, [&] { Subdivide(*stores); }}}, 9);
        perFace.push_back(MicrosecondsAFace(taken[0], faces));
        std::printf("  Loop step of %6d faces: %.2f us an input face\n", faces, perFace.back());
    }
    good &= Judge("Loop step: time a face of 250k faces against 10k", perFace.back() / perFace.front(), 1.6);
    return good ? 0 : 1;
}
