#pragma once
#include "File.h"
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

/// How many bytes pictures may take together, decoded, and how many their files may have.
class ImageBudget
{
public:
    /// @param leastComponents as which pixels with fewer count, as they will be spread to as many
    explicit ImageBudget(std::size_t bytes = kMostDecodedBytes, int leastComponents = 1)
        : m_nBytes(bytes), m_nLeft(bytes), m_nLeastComponents(leastComponents)
    {
    }

    /// Takes the bytes of a picture. The first that are too many spend the budget, so that pictures behind need not
    /// be looked at.
    /// @return whether they were left
    bool Take(std::size_t bytes);

    bool IsSpent() const { return m_nLeft == 0; }

    ReadBudget& GetFiles() { return m_Files; }

    int GetLeastComponents() const { return m_nLeastComponents; }

    /// Why a picture is refused. Completes "cannot read NAME: ".
    std::string GetRefusal() const;

private:
    std::size_t m_nBytes;
    std::size_t m_nLeft;
    int m_nLeastComponents;
    ReadBudget m_Files{std::size_t{1} << 30U,
                       "its file and those of the pictures before it have more than 1024 MiB"};
};

/// Decodes a BMP, PNG, JPEG, GIF (first frame), TGA or TIFF file; the format is the one of its name's ending.
/// Throws FileError (see File.h) when it cannot be read, is broken or too large.
Image ReadImage(const std::filesystem::path& path);

/// The same, and refused when the budget has too few bytes left. Where it is spent the file is not opened.
Image ReadImage(const std::filesystem::path& path, ImageBudget& budget);

/// The same from memory. `ending` is the lower-case ending of the name, without its dot.
Image DecodeImage(const std::string& bytes, const std::string& ending);

/// Encodes 1, 3 or 4 components as the name's ending says: BMP, PNG or JPEG. The file is replaced whole.
/// Throws FileError.
void WriteImage(const Image& image, const std::filesystem::path& path);
}
