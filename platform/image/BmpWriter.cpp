#include "BmpWriter.h"
#include "ImageDecoding.h"

namespace tessarine
{
namespace
{
constexpr std::size_t kFileHeader = 14;
constexpr std::size_t kPlainHeader = 40;
constexpr std::size_t kMaskedHeader = 108;
constexpr std::uint32_t kBitFields = 3;
constexpr std::uint32_t kSrgb = 0x73524742;

void Put16(std::string& out, unsigned value)
{
    out += static_cast<char>(value & 255U);
    out += static_cast<char>(value >> 8U & 255U);
}

void Put32(std::string& out, std::uint32_t value)
{
    Put16(out, value & 0xFFFFU);
    Put16(out, value >> 16U);
}

void PutMasks(std::string& out)
{
    for (const std::uint32_t mask : {0xFF0000U, 0xFF00U, 0xFFU, 0xFF000000U, kSrgb})
    {
        Put32(out, mask);
    }
    out.append(48, '\0'); // end points and gammas, unused
}

void PutGreyPalette(std::string& out)
{
    for (int grey = 0; grey < 256; ++grey)
    {
        out.append(3, static_cast<char>(grey));
        out += '\0';
    }
}

void PutRow(std::string& out, const std::uint8_t* pixel, std::size_t components, std::size_t width)
{
    if (components == 1)
    {
        out.append(pixel, pixel + width);
        return;
    }
    for (std::size_t x = 0; x < width; ++x, pixel += components) // blue first
    {
        out += static_cast<char>(pixel[2]);
        out += static_cast<char>(pixel[1]);
        out += static_cast<char>(pixel[0]);
        if (components == 4)
        {
            out += static_cast<char>(pixel[3]);
        }
    }
}
}

std::string EncodeBmp(const Image& image)
{
    const auto components = static_cast<std::size_t>(image.components);
    const auto width = static_cast<std::size_t>(image.width);
    const std::size_t stride = (width * components + 3) / 4 * 4;
    const std::size_t headerSize = components == 4 ? kMaskedHeader : kPlainHeader;
    const std::size_t paletteSize = components == 1 ? 1024 : 0;
    const std::size_t pixelSize = stride * static_cast<std::size_t>(image.height);
    const std::size_t pixelOffset = kFileHeader + headerSize + paletteSize;

    std::string out;
    out.reserve(pixelOffset + pixelSize);
    out += "BM";
    Put32(out, static_cast<std::uint32_t>(pixelOffset + pixelSize));
    Put32(out, 0);
    Put32(out, static_cast<std::uint32_t>(pixelOffset));
    Put32(out, static_cast<std::uint32_t>(headerSize));
    Put32(out, static_cast<std::uint32_t>(image.width));
    Put32(out, static_cast<std::uint32_t>(image.height)); // positive: the bottom row first, as in the buffer
    Put16(out, 1);
    Put16(out, static_cast<unsigned>(components * 8));
    Put32(out, components == 4 ? kBitFields : 0);
    Put32(out, static_cast<std::uint32_t>(pixelSize));
    out.append(16, '\0'); // resolutions unknown; the whole palette, all of it important
    if (components == 4)
    {
        PutMasks(out);
    }
    if (components == 1)
    {
        PutGreyPalette(out);
    }
    for (int row = 0; row < image.height; ++row)
    {
        PutRow(out, GetRow(image, row), components, width);
        out.append(stride - width * components, '\0');
    }
    return out;
}
}
