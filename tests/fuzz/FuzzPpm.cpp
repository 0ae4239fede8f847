#include "DSTexture.h"
#include <cstdint>
#include <cstdlib>
#include <string_view>

/// A hostile pixmap leaves no image, or three bytes for each of its pixels.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    tessarine::DSTexture texture;
    texture.DecodePPM("a.ppm", std::string_view(reinterpret_cast<const char*>(data), size));
    const auto pixels =
        static_cast<std::size_t>(texture.GetWidth()) * static_cast<std::size_t>(texture.GetHeight());
    if (texture.GetFileName() != "a.ppm" || texture.GetData().size() != 3 * pixels)
    {
        std::abort();
    }
    return 0;
}
