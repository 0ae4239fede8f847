#include "Cursor.h"
#include "File.h"
#include <cstdint>
#include <cstdlib>
#include <string>

/// Decodes a hostile cursor. It is refused, or what comes out is a picture with its hot spot in it.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace tessarine;
    try
    {
        const Cursor cursor = DecodeCursor(std::string(data, data + size));
        const Image& image = cursor.image;
        const bool whole = image.width >= 1 && image.width <= 256 && image.height >= 1 &&
                           image.height <= 256 && image.components == 4 &&
                           image.pixels.size() == static_cast<std::size_t>(image.width) *
                                                      static_cast<std::size_t>(image.height) * 4 &&
                           cursor.hotX >= 0 && cursor.hotX < image.width && cursor.hotY >= 0 &&
                           cursor.hotY < image.height;
        if (!whole)
        {
            std::abort();
        }
    }
    catch (const FileError&) // refused, as it may be
    {
    }
    return 0;
}
