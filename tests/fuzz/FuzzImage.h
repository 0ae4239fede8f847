#pragma once
#include "File.h"
#include "Image.h"
#include <cstdint>
#include <cstdlib>
#include <string>

namespace tessarine
{
/// Decodes a hostile file. It is refused, or what comes out is a picture.
inline void FuzzImage(const std::uint8_t* data, std::size_t size, const char* ending)
{
    try
    {
        const Image image = DecodeImage(std::string(data, data + size), ending);
        const bool whole = image.width >= 1 && image.width <= kMostPixelsASide && image.height >= 1 &&
                           image.height <= kMostPixelsASide && image.components >= 1 &&
                           image.components <= 4 &&
                           image.pixels.size() == static_cast<std::size_t>(image.width) *
                                                      static_cast<std::size_t>(image.height) *
                                                      static_cast<std::size_t>(image.components);
        if (!whole)
        {
            std::abort();
        }
    }
    catch (const FileError&) // refused, as it may be
    {
    }
}
}
