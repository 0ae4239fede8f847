// Import of an OBJ file of a million faces, whole and the parse alone; how the cost grows; memory in the
// stores.
#include "Console.h"
#include "HeadlessPlatform.h"
#include "IOLoadObj.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "Memory.h"
#include "Models.h"
#include "Peers.h"
#include "Timing.h"
#include <malloc.h>
#include <memory>

using namespace tessarine;
using namespace tessarine::bench;

namespace
{
struct Stores
{
    MANSceneManager scene;
    MANBrepElementManager elements;
};

std::unique_ptr<Stores> ImportWhole(const std::filesystem::path& path)
{
    auto stores = std::make_unique<Stores>();
    IOLoadObj reader(&stores->scene, &stores->elements);
    reader.Load(path.string());
    return stores;
}

void ParseOnly(const std::filesystem::path& path)
{
    Stores stores;
    IOLoadObj reader(&stores.scene, &stores.elements);
    reader.ParseFile(path.string());
}

std::size_t BytesInUse()
{
    const auto info = mallinfo2();
    return info.uordblks + info.hblkhd;
}

double BytesATriangle(const std::filesystem::path& path, int faces)
{
    const std::size_t before = BytesInUse();
    const auto stores = ImportWhole(path);
    return static_cast<double>(BytesInUse() - before) / faces;
}

double NanosecondsAFace(double seconds, int faces)
{
    return seconds / faces * 1e9;
}

/// To be called before anything else has filled the heap.
/// @return nanoseconds a face for each size
std::vector<double> MeasureGrowth(const std::filesystem::path& folder, const std::vector<int>& sizes)
{
    std::vector<double> perFace;
    for (const int faces : sizes)
    {
        const auto path = WriteClosedModel(folder, faces);
        std::vector<double> seconds;
        for (int round = 0; round < 15; ++round)
        {
            seconds.push_back(SecondsInAFreshProcess({"", nullptr, [&] { ImportWhole(path); }}));
        }
        perFace.push_back(NanosecondsAFace(Median(std::move(seconds)), faces));
        std::printf("  whole import of %7d faces in a fresh process: %.0f ns a face\n", faces,
                    perFace.back());
        std::fflush(stdout);
    }
    return perFace;
}
}

int main()
{
    KeepFreedMemory(); // as the programs do
    HeadlessPlatform platform;
    SetPlatform(&platform);
    DebugConsole().SetSink([](std::string_view) {});
    TemporaryFolder folder;
    constexpr int kFaces = 1000000;
    const auto big = WriteClosedModel(folder.GetPath(), kFaces);
    const auto perFace = MeasureGrowth(folder.GetPath(), {10000, 100000, kFaces});

    std::unique_ptr<Stores> kept;
    const auto drop = [&] { kept.reset(); };
    const auto whole = Race({{"Tessarine", drop, [&] { kept = ImportWhole(big); }},
                             {"CGAL", drop, [&] { ReadWithCgal(big); }},
                             {"OpenMesh", drop, [&] { ReadWithOpenMesh(big); }}},
                            5);
    kept.reset();
    const auto parse = Race({{"Tessarine", nullptr, [&] { ParseOnly(big); }},
                             {"tinyobjloader", nullptr, [&] { ParseWithTinyObj(big); }}},
                            5);

    std::printf("Import of %d faces, nanoseconds a face (median of 5, taking turns)\n", kFaces);
    std::printf("  whole: Tessarine %.0f, CGAL %.0f, OpenMesh %.0f\n", NanosecondsAFace(whole[0], kFaces),
                NanosecondsAFace(whole[1], kFaces), NanosecondsAFace(whole[2], kFaces));
    std::printf("  parse: Tessarine %.0f, tinyobjloader %.0f\n", NanosecondsAFace(parse[0], kFaces),
                NanosecondsAFace(parse[1], kFaces));
    bool good = Judge("import, whole: time against CGAL's Surface_mesh", whole[0] / whole[1], 0.6);
    good &= Judge("import, parse alone: time against tinyobjloader", parse[0] / parse[1], 0.5);

    good &= Judge("import: time a face of 1M faces against 10k", perFace.back() / perFace.front(), 1.3);
    good &= Judge("stores after an import: bytes a triangle", BytesATriangle(big, kFaces), 700);
    return good ? 0 : 1;
}
