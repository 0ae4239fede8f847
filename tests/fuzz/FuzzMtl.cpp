// The bytes as a material library.
#include "Console.h"
#include "HeadlessPlatform.h"
#include "IOLoadObj.h"
#include <cstdint>
#include <cstdlib>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace tessarine;
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
