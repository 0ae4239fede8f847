#pragma once
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tessarine
{
/// A decoded picture. Row 0 is the bottom line; a pixel is `components` bytes, red first.
struct Image
{
    int width = 0;
    int height = 0;
    int components = 0; ///< 1 grey, 2 grey and alpha, 3 colour, 4 colour and alpha
    std::vector<std::uint8_t> pixels;
};

/// No picture has more pixels a side, nor more decoded bytes.
inline constexpr int kMostPixelsASide = 16384;
inline constexpr std::size_t kMostDecodedBytes = std::size_t{512} << 20U;

/// Decodes a BMP, PNG, JPEG, GIF (first frame), TGA or TIFF file; the format is the one of its name's ending.
/// Throws FileError (see File.h) when it cannot be read, is broken or too large.
Image ReadImage(const std::filesystem::path& path);

/// The same from memory. `ending` is the lower-case ending of the name, without its dot.
Image DecodeImage(const std::string& bytes, const std::string& ending);

/// Encodes 1, 3 or 4 components as the name's ending says: BMP, PNG or JPEG. The file is replaced whole.
/// Throws FileError.
void WriteImage(const Image& image, const std::filesystem::path& path);
}
