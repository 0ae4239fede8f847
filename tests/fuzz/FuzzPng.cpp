#include "FuzzImage.h"
#include <zlib.h>

namespace
{
constexpr std::size_t kSignature = 8;
constexpr std::size_t kAroundData = 12; // length and kind before it, checksum behind

std::size_t ReadLength(const std::string& file, std::size_t position)
{
    std::size_t length = 0;
    for (std::size_t i = 0; i < 4; ++i)
    {
        length = length << 8U | static_cast<unsigned char>(file[position + i]);
    }
    return length;
}

/// Gives every chunk the checksum of its bytes; hardly a changed file would get past the first one otherwise.
void MendChecksums(std::string& file)
{
    std::size_t chunk = kSignature;
    while (chunk + kAroundData <= file.size())
    {
        const std::size_t length = ReadLength(file, chunk);
        if (length > file.size() - chunk - kAroundData)
        {
            return;
        }
        const auto* kind = reinterpret_cast<const unsigned char*>(file.data()) + chunk + 4;
        const auto checksum = ::crc32(0, kind, static_cast<unsigned>(length + 4));
        for (std::size_t i = 0; i < 4; ++i)
        {
            file[chunk + 8 + length + i] = static_cast<char>(checksum >> (24 - 8 * i) & 255U);
        }
        chunk += kAroundData + length;
    }
}
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    tessarine::FuzzImage(data, size, "png");
    std::string file(data, data + size);
    MendChecksums(file);
    tessarine::FuzzImage(reinterpret_cast<const std::uint8_t*>(file.data()), file.size(), "png");
    return 0;
}
