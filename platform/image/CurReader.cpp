#include "CurReader.h"
#include "ByteReader.h"
#include <algorithm>
#include <array>
#include <cstdlib>

namespace tessarine
{
namespace
{
constexpr unsigned kCursorType = 2;
constexpr std::uint32_t kInfoHeader = 40;
constexpr std::int64_t kMostCursorPixels = 256;
constexpr int kUsualWidth = 32;
constexpr int kComponents = 4;
constexpr std::string_view kPngMark = "\x89PNG";

/// What the directory of the file says of one of its pictures.
struct Entry
{
    int width = 0;
    int hotX = 0;
    int hotY = 0;
    std::size_t size = 0;
    std::size_t offset = 0;
};

Entry TakeEntry(ByteReader& reader)
{
    Entry entry;
    const int width = reader.TakeByte();
    entry.width = width == 0 ? static_cast<int>(kMostCursorPixels) : width;
    reader.Take(3); // height and number of colours, which the picture tells again, and a reserved byte
    entry.hotX = reader.Take16();
    entry.hotY = reader.Take16();
    entry.size = reader.Take32();
    entry.offset = reader.Take32();
    return entry;
}

Entry ChooseEntry(std::string_view bytes)
{
    ByteReader reader(bytes);
    const unsigned reserved = reader.Take16();
    const unsigned type = reader.Take16();
    const unsigned count = reader.Take16();
    if (reserved != 0 || type != kCursorType || count == 0)
    {
        throw ImageFault("it is no CUR file");
    }
    Entry chosen = TakeEntry(reader);
    for (unsigned i = 1; i < count; ++i)
    {
        const Entry entry = TakeEntry(reader);
        if (std::abs(entry.width - kUsualWidth) < std::abs(chosen.width - kUsualWidth))
        {
            chosen = entry;
        }
    }
    return chosen;
}

/// One picture of the file: colours, and below them the mask, whose bits are set where nothing is drawn.
class PictureReader
{
public:
    explicit PictureReader(std::string_view bytes) : m_Reader(bytes) {}
    Image Read();

private:
    using Colour = std::array<std::uint8_t, kComponents>; // red first

    void ReadHeader();
    void ReadPalette();
    void ReadColours(Image& image);
    void ApplyMask(Image& image);
    Colour ColourAt(std::string_view row, std::size_t x) const;

    /// Rows end on a multiple of 4 bytes.
    std::size_t GetStride(unsigned bits) const
    {
        return (static_cast<std::size_t>(m_nWidth) * bits + 31) / 32 * 4;
    }

    ByteReader m_Reader;
    std::int64_t m_nWidth = 0;
    std::int64_t m_nHeight = 0;
    unsigned m_nBits = 0;
    std::uint32_t m_nColoursUsed = 0;
    std::vector<Colour> m_Palette;
};

Image PictureReader::Read()
{
    ReadHeader();
    ReadPalette();
    const std::size_t rowBytes = GetStride(m_nBits) + GetStride(1);
    if (rowBytes * static_cast<std::size_t>(m_nHeight) > m_Reader.GetLeft())
    {
        throw ImageFault("the file ends before its picture does");
    }
    Image image = MakeImage(m_nWidth, m_nHeight, kComponents);
    ReadColours(image);
    ApplyMask(image);
    return image;
}

void PictureReader::ReadHeader()
{
    if (m_Reader.Take32() != kInfoHeader)
    {
        throw ImageFault("its picture is of no known kind");
    }
    m_nWidth = static_cast<std::int32_t>(m_Reader.Take32());
    const std::int64_t bothHeights = static_cast<std::int32_t>(m_Reader.Take32());
    m_Reader.Take16(); // planes
    m_nBits = m_Reader.Take16();
    const std::uint32_t compression = m_Reader.Take32();
    m_Reader.Take(12); // size of the pixels, two resolutions
    m_nColoursUsed = m_Reader.Take32();
    m_Reader.Take32(); // colours that matter

    m_nHeight = bothHeights / 2;
    constexpr std::array<unsigned, 5> kDepths = {1, 4, 8, 24, 32};
    if (std::find(kDepths.begin(), kDepths.end(), m_nBits) == kDepths.end() || compression != 0)
    {
        throw ImageFault("a cursor of " + std::to_string(m_nBits) + " bits and compression " +
                         std::to_string(compression) + " is not read");
    }
    if (m_nWidth < 1 || m_nHeight < 1 || bothHeights % 2 != 0 || m_nWidth > kMostCursorPixels ||
        m_nHeight > kMostCursorPixels)
    {
        throw ImageFault("a cursor of " + std::to_string(m_nWidth) + " x " + std::to_string(bothHeights) +
                         " pixels with its mask is not read; at most " + std::to_string(kMostCursorPixels) +
                         " a side are");
    }
}

/// A palette beside plain colours is of no use.
void PictureReader::ReadPalette()
{
    std::size_t count = m_nColoursUsed;
    if (m_nBits <= 8)
    {
        const std::size_t most = std::size_t{1} << m_nBits;
        count = m_nColoursUsed == 0 ? most : std::min<std::size_t>(m_nColoursUsed, most);
    }
    const std::string_view entries = m_Reader.Take(count * 4);
    for (std::size_t i = 0; i < (m_nBits <= 8 ? count : 0); ++i)
    {
        m_Palette.push_back({static_cast<std::uint8_t>(entries[4 * i + 2]),
                             static_cast<std::uint8_t>(entries[4 * i + 1]),
                             static_cast<std::uint8_t>(entries[4 * i]), 0});
    }
}

void PictureReader::ReadColours(Image& image)
{
    for (int y = 0; y < m_nHeight; ++y)
    {
        const std::string_view row = m_Reader.Take(GetStride(m_nBits));
        std::uint8_t* out = GetRow(image, y);
        for (std::size_t x = 0; x < static_cast<std::size_t>(m_nWidth); ++x)
        {
            const Colour colour = ColourAt(row, x);
            out = std::copy(colour.begin(), colour.end(), out);
        }
    }
}

PictureReader::Colour PictureReader::ColourAt(std::string_view row, std::size_t x) const
{
    const auto byteAt = [row](std::size_t i) { return static_cast<std::uint8_t>(row[i]); };
    if (m_nBits > 8)
    {
        const std::size_t i = x * m_nBits / 8;
        return {byteAt(i + 2), byteAt(i + 1), byteAt(i), m_nBits == 32 ? byteAt(i + 3) : std::uint8_t{0}};
    }
    const std::size_t perByte = 8 / m_nBits;
    const std::size_t shift = 8 - m_nBits * (x % perByte + 1); // the leftmost pixel in the highest bits
    const unsigned index = static_cast<unsigned>(byteAt(x / perByte)) >> shift & ((1U << m_nBits) - 1);
    if (index >= m_Palette.size())
    {
        throw ImageFault("a pixel has colour " + std::to_string(index) + " of a palette of " +
                         std::to_string(m_Palette.size()));
    }
    return m_Palette[index];
}

void PictureReader::ApplyMask(Image& image)
{
    bool hasAlpha = false;
    for (std::size_t i = kComponents - 1; i < image.pixels.size(); i += kComponents)
    {
        hasAlpha = hasAlpha || image.pixels[i] != 0;
    }
    for (int y = 0; y < m_nHeight; ++y)
    {
        const std::string_view row = m_Reader.Take(GetStride(1));
        std::uint8_t* pixel = GetRow(image, y);
        for (std::size_t x = 0; x < static_cast<std::size_t>(m_nWidth) && !hasAlpha; ++x)
        {
            const bool isMasked = (static_cast<std::uint8_t>(row[x / 8]) >> (7 - x % 8) & 1U) != 0;
            const bool isBlack = pixel[0] == 0 && pixel[1] == 0 && pixel[2] == 0;
            pixel[3] = isMasked && isBlack ? 0 : 255;
            pixel += kComponents;
        }
    }
}
}

Cursor DecodeCur(std::string_view bytes)
{
    const Entry entry = ChooseEntry(bytes);
    if (entry.offset > bytes.size())
    {
        throw ImageFault("the file ends before its picture does");
    }
    const std::string_view picture = bytes.substr(entry.offset, entry.size);
    if (picture.starts_with(kPngMark))
    {
        throw ImageFault("a cursor that is packed as PNG is not read");
    }
    Cursor cursor{PictureReader(picture).Read(), entry.hotX, entry.hotY};
    if (cursor.hotX >= cursor.image.width || cursor.hotY >= cursor.image.height)
    {
        throw ImageFault("its hot spot lies outside its picture");
    }
    return cursor;
}
}
