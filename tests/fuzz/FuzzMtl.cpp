// The bytes as a material library, in a folder with a few pictures.
#include "Console.h"
#include "HeadlessPlatform.h"
#include "IOLoadObj.h"
#include "ScratchFolder.h"
#include "SilhouetteFiles.h"
#include <cstdint>
#include <cstdlib>
#include <string>

namespace
{
void WritePictures()
{
    using namespace tessarine;
    for (const char* name : {"a.bmp", "a.png", "a.jpg"})
    {
        WriteImage(DrawDisc(4, 2), name);
    }
    std::ofstream("a.ppm") << "P6\n1 1\n255\nabc";
}
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace tessarine;
    static const ScratchFolder folder;
    static const bool isPrepared = (WritePictures(), true);
    static_cast<void>(isPrepared);
    static HeadlessPlatform platform;
    SetPlatform(&platform);
    DebugConsole().SetSink([](std::string_view) {});

    MANBrepElementManager elements;
    IOLoadObj reader(nullptr, &elements);
    reader.ParseMaterialText(std::string(data, data + size));
    const auto& materials = elements.GetMaterialManager().GetMaterialList();
    if (reader.GetTextureMaps().size() > materials.size())
    {
        std::abort(); // a texture of no material
    }
    return 0;
}
