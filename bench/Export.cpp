// Export of a million faces: megabytes of text a second, against the C library's printf.
#include "Console.h"
#include "HeadlessPlatform.h"
#include "IOLoadObj.h"
#include "IOSaveObj.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "Memory.h"
#include "Models.h"
#include "Timing.h"
#include <cstdio>

using namespace tessarine;
using namespace tessarine::bench;

namespace
{
/// The same text by printf, element by element.
void ExportByPrintf(const MANBrepElementManager& elements, const std::filesystem::path& path)
{
    std::FILE* const file = std::fopen(path.c_str(), "w");
    const DSSolid* const solid = elements.GetSolid(ElementKind::Solid);
    std::fprintf(file, "# ORCHID zk-------OBJ文件 \n\ng object1 \n");
    for (const DSVertex* const vertex : solid->GetVertexList())
    {
        const smVec3d& p = vertex->GetPosition();
        std::fprintf(file, "v %f %f %f \n", p.x, p.y, p.z);
    }
    for (const DSFace* const face : solid->GetFaceList())
    {
        std::fprintf(file, "\nf ");
        const DSHalfEdge* const first = face->GetLoopList()[0]->GetHalfEdge();
        const DSHalfEdge* halfEdge = first;
        do
        {
            std::fprintf(file, "%u ", halfEdge->GetVertex()->GetID() + 1);
            halfEdge = halfEdge->GetNext();
        } while (halfEdge != first);
    }
    std::fclose(file);
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
    const auto model = WriteClosedModel(folder.GetPath(), kFaces);
    MANSceneManager scene;
    MANBrepElementManager elements;
    IOLoadObj(&scene, &elements).Load(model.string());

    const auto ours = folder.GetPath() / "ours.obj";
    const auto theirs = folder.GetPath() / "printf.obj";
    const auto taken =
        Race({{"Tessarine", nullptr, [&] { IOSaveObj(&scene, &elements).SaveObj(ours.string()); }},
              {"printf", nullptr, [&] { ExportByPrintf(elements, theirs); }}},
             5);
    const double megabytes = static_cast<double>(std::filesystem::file_size(ours)) / 1e6;
    const double printfMegabytes = static_cast<double>(std::filesystem::file_size(theirs)) / 1e6;
    std::printf("Export of %d faces, %.1f MB (median of 5, taking turns)\n", kFaces, megabytes);
    std::printf("  Tessarine %.0f MB/s, printf %.0f MB/s, ratio of times %.2f\n", megabytes / taken[0],
                printfMegabytes / taken[1], taken[0] / taken[1]);
    return Judge("export: megabytes a second", megabytes / taken[0], 250, false) ? 0 : 1;
}
