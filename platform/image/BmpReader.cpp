#include "BmpReader.h"
#include "ByteReader.h"
#include <algorithm>
#include <array>
#include <bit>

namespace tessarine
{
namespace
{
constexpr std::uint32_t kCoreHeader = 12;
constexpr std::uint32_t kInfoHeader = 40;
constexpr std::uint32_t kOs2Header = 64;

enum Compression : std::uint32_t
{
    kPlain = 0,
    kRle8 = 1,
    kRle4 = 2,
    kBitFields = 3,
    kAlphaBitFields = 6
};

/// One channel of a pixel of 16 or 32 bits.
class ChannelMask
{
public:
    ChannelMask() = default;
    explicit ChannelMask(std::uint32_t mask)
        : m_nMask(mask), m_nShift(mask == 0 ? 0 : std::countr_zero(mask)), m_nMost(mask >> m_nShift)
    {
        if ((m_nMost & (m_nMost + 1)) != 0)
        {
            throw ImageFault("a colour mask of it has gaps");
        }
    }

    bool IsEmpty() const { return m_nMask == 0; }

    /// The channel brought from its own range to 0..255.
    std::uint8_t Read(std::uint32_t pixel) const
    {
        if (IsEmpty())
        {
            return 0;
        }
        const std::uint64_t value = (pixel & m_nMask) >> m_nShift;
        return static_cast<std::uint8_t>((value * 255 + m_nMost / 2) / m_nMost);
    }

private:
    std::uint32_t m_nMask = 0;
    int m_nShift = 0;
    std::uint32_t m_nMost = 0;
};

class BmpReader
{
public:
    explicit BmpReader(std::string_view bytes) : m_Reader(bytes) {}
    Image Read(ImageBudget& budget);

private:
    using Entry = std::array<std::uint8_t, 3>; // red first

    void ReadHeaders();
    void ReadCoreHeader();
    void ReadInfoHeader(std::uint32_t headerSize);
    void CheckFormat(std::uint32_t headerSize) const;
    void ReadMasks(std::uint32_t headerSize);
    void ReadPalette();
    bool IsPaletteGreyRamp() const;

    Image ReadIndexed(ImageBudget& budget);
    Image Colour(const std::vector<std::uint8_t>& indices) const;
    Image ReadDirect(ImageBudget& budget);
    void ReadPlainIndices(std::vector<std::uint8_t>& indices);
    void ReadRunLengths(std::vector<std::uint8_t>& indices);
    void ReadEscape(std::vector<std::uint8_t>& indices, std::uint8_t code);
    void PutIndex(std::vector<std::uint8_t>& indices, std::uint8_t index);
    void RequirePixelBytes() const;

    bool IsRunLengthCoded() const { return m_nCompression == kRle8 || m_nCompression == kRle4; }
    std::size_t GetStride() const
    {
        return (static_cast<std::size_t>(m_nWidth) * m_nBits + 31) / 32 *
               4; // rows end on a multiple of 4 bytes
    }
    /// The row from the bottom that the n-th row of the file is.
    int GetRowOf(int fileRow) const
    {
        return static_cast<int>(m_bTopDown ? m_nHeight - 1 - fileRow : fileRow);
    }

    ByteReader m_Reader;
    std::size_t m_nPixelOffset = 0;
    std::int64_t m_nWidth = 0;
    std::int64_t m_nHeight = 0;
    bool m_bTopDown = false;
    unsigned m_nBits = 0;
    std::uint32_t m_nCompression = kPlain;
    std::uint32_t m_nColoursUsed = 0;
    std::size_t m_nPaletteEntrySize = 4;
    std::vector<Entry> m_Palette;
    std::array<ChannelMask, 4> m_Masks; // red, green, blue, alpha
    std::int64_t m_nX = 0;              // where the next pixel of a run goes
    std::int64_t m_nY = 0;
    bool m_bRunsEnded = false;
};

Image BmpReader::Read(ImageBudget& budget)
{
    ReadHeaders();
    if (m_nBits <= 8)
    {
        ReadPalette();
        return ReadIndexed(budget);
    }
    return ReadDirect(budget);
}

void BmpReader::ReadHeaders()
{
    m_Reader.Take(10); // the mark, the file's size and two reserved fields: never to be relied on
    m_nPixelOffset = m_Reader.Take32();
    const std::uint32_t headerSize = m_Reader.Take32();
    if (headerSize == kCoreHeader)
    {
        ReadCoreHeader();
    }
    else
    {
        ReadInfoHeader(headerSize);
    }
    CheckFormat(headerSize);
    CheckImageSize(m_nWidth, m_nHeight, 1);
    ReadMasks(headerSize);
}

void BmpReader::ReadCoreHeader()
{
    m_nWidth = m_Reader.Take16();
    m_nHeight = m_Reader.Take16();
    m_Reader.Take16(); // planes
    m_nBits = m_Reader.Take16();
    m_nPaletteEntrySize = 3;
}

void BmpReader::ReadInfoHeader(std::uint32_t headerSize)
{
    constexpr std::array<std::uint32_t, 6> kKnown = {kInfoHeader, 52, 56, kOs2Header, 108, 124};
    if (std::find(kKnown.begin(), kKnown.end(), headerSize) == kKnown.end())
    {
        throw ImageFault("its header of " + std::to_string(headerSize) + " bytes is of no known kind");
    }
    m_nWidth = static_cast<std::int32_t>(m_Reader.Take32());
    const std::int64_t height = static_cast<std::int32_t>(m_Reader.Take32());
    m_bTopDown = height < 0;
    m_nHeight = m_bTopDown ? -height : height;
    m_Reader.Take16(); // planes
    m_nBits = m_Reader.Take16();
    m_nCompression = m_Reader.Take32();
    m_Reader.Take(12); // size of the pixels, two resolutions
    m_nColoursUsed = m_Reader.Take32();
    m_Reader.Take32(); // colours that matter
}

void BmpReader::CheckFormat(std::uint32_t headerSize) const
{
    constexpr std::array<unsigned, 6> kDepths = {1, 4, 8, 16, 24, 32};
    const bool depthKnown = std::find(kDepths.begin(), kDepths.end(), m_nBits) != kDepths.end();
    const bool hasMasks = m_nCompression == kBitFields || m_nCompression == kAlphaBitFields;
    const bool fits = m_nCompression == kPlain || (m_nCompression == kRle8 && m_nBits == 8 && !m_bTopDown) ||
                      (m_nCompression == kRle4 && m_nBits == 4 && !m_bTopDown) ||
                      (hasMasks && headerSize != kOs2Header && (m_nBits == 16 || m_nBits == 32));
    if (!depthKnown || !fits)
    {
        throw ImageFault("a BMP of " + std::to_string(m_nBits) + " bits and compression " +
                         std::to_string(m_nCompression) + " is not read");
    }
}

void BmpReader::ReadMasks(std::uint32_t headerSize)
{
    std::array<std::uint32_t, 4> masks = {0xFF0000, 0xFF00, 0xFF, 0};
    if (m_nBits == 16)
    {
        masks = {0x7C00, 0x3E0, 0x1F, 0};
    }
    const bool hasAlpha = headerSize >= 56 || m_nCompression == kAlphaBitFields;
    if (m_nCompression == kBitFields ||
        m_nCompression == kAlphaBitFields) // behind or within the header alike
    {
        for (std::size_t i = 0; i < (hasAlpha ? 4U : 3U); ++i)
        {
            masks[i] = m_Reader.Take32();
        }
    }
    for (std::size_t i = 0; i < masks.size(); ++i)
    {
        m_Masks[i] = ChannelMask(masks[i]);
    }
    constexpr std::size_t kFileHeader = 14;
    m_Reader.SkipTo(std::max(m_Reader.GetPosition(), kFileHeader + headerSize));
}

void BmpReader::ReadPalette()
{
    const std::size_t most = std::size_t{1} << m_nBits;
    std::size_t count = m_nColoursUsed == 0 ? most : std::min<std::size_t>(m_nColoursUsed, most);
    if (m_nPixelOffset > m_Reader.GetPosition()) // a short palette ends where the pixels begin
    {
        count = std::min(count, (m_nPixelOffset - m_Reader.GetPosition()) / m_nPaletteEntrySize);
    }
    for (std::size_t i = 0; i < count; ++i)
    {
        const std::string_view entry = m_Reader.Take(m_nPaletteEntrySize);
        m_Palette.push_back({static_cast<std::uint8_t>(entry[2]), static_cast<std::uint8_t>(entry[1]),
                             static_cast<std::uint8_t>(entry[0])});
    }
}

bool BmpReader::IsPaletteGreyRamp() const
{
    for (std::size_t i = 0; i < m_Palette.size(); ++i)
    {
        const auto grey = static_cast<std::uint8_t>(i);
        if (m_Palette[i] != Entry{grey, grey, grey})
        {
            return false;
        }
    }
    return m_Palette.size() == 256;
}

/// A file that is too short is refused before its picture is allocated.
void BmpReader::RequirePixelBytes() const
{
    if (GetStride() * static_cast<std::size_t>(m_nHeight) > m_Reader.GetLeft())
    {
        throw ImageFault(kEndsEarly);
    }
}

Image BmpReader::ReadIndexed(ImageBudget& budget)
{
    m_Reader.SkipTo(std::max(m_nPixelOffset, m_Reader.GetPosition()));
    const bool grey = IsPaletteGreyRamp();
    TakePixels(budget, m_nWidth, m_nHeight, grey ? 1 : 3);
    std::vector<std::uint8_t> indices;
    IsRunLengthCoded() ? ReadRunLengths(indices) : ReadPlainIndices(indices);
    if (grey)
    {
        return {static_cast<int>(m_nWidth), static_cast<int>(m_nHeight), 1, std::move(indices)};
    }
    return Colour(indices);
}

Image BmpReader::Colour(const std::vector<std::uint8_t>& indices) const
{
    Image image = MakeImage(m_nWidth, m_nHeight, 3);
    auto out = image.pixels.begin();
    for (const std::uint8_t index : indices)
    {
        if (index >= m_Palette.size())
        {
            throw ImageFault("a pixel has colour " + std::to_string(index) + " of a palette of " +
                             std::to_string(m_Palette.size()));
        }
        out = std::copy(m_Palette[index].begin(), m_Palette[index].end(), out);
    }
    return image;
}

void BmpReader::ReadPlainIndices(std::vector<std::uint8_t>& indices)
{
    RequirePixelBytes();
    indices.resize(static_cast<std::size_t>(m_nWidth * m_nHeight));
    const unsigned mask = (1U << m_nBits) - 1;
    const unsigned perByte = 8 / m_nBits;
    for (int row = 0; row < m_nHeight; ++row)
    {
        const std::string_view packed = m_Reader.Take(GetStride());
        std::uint8_t* out = indices.data() + static_cast<std::ptrdiff_t>(GetRowOf(row)) * m_nWidth;
        for (unsigned x = 0; x < static_cast<unsigned>(m_nWidth); ++x)
        {
            const unsigned shift = 8 - m_nBits * (x % perByte + 1); // the leftmost pixel in the highest bits
            out[x] =
                static_cast<std::uint8_t>(static_cast<std::uint8_t>(packed[x / perByte]) >> shift & mask);
        }
    }
}

void BmpReader::ReadRunLengths(std::vector<std::uint8_t>& indices)
{
    indices.resize(static_cast<std::size_t>(m_nWidth * m_nHeight)); // pixels that are skipped have colour 0
    while (!m_bRunsEnded)
    {
        const std::uint8_t count = m_Reader.TakeByte();
        const std::uint8_t value = m_Reader.TakeByte();
        if (count == 0)
        {
            ReadEscape(indices, value);
            continue;
        }
        for (unsigned i = 0; i < count; ++i)
        {
            const unsigned nibble = i % 2 == 0 ? value >> 4U : value & 15U;
            PutIndex(indices, m_nBits == 8 ? value : static_cast<std::uint8_t>(nibble));
        }
    }
}

void BmpReader::ReadEscape(std::vector<std::uint8_t>& indices, std::uint8_t code)
{
    switch (code)
    {
    case 0: // end of the line
        m_nX = 0;
        ++m_nY;
        return;
    case 1: m_bRunsEnded = true; return;
    case 2: // a step to the right and upwards
        m_nX += m_Reader.TakeByte();
        m_nY += m_Reader.TakeByte();
        return;
    default: break;
    }
    const std::size_t bytes = m_nBits == 8 ? code : (code + 1U) / 2;
    const std::string_view values = m_Reader.Take(bytes + bytes % 2); // an even number of bytes
    for (unsigned i = 0; i < code; ++i)
    {
        const auto value = static_cast<std::uint8_t>(values[m_nBits == 8 ? i : i / 2]);
        const unsigned nibble = i % 2 == 0 ? value >> 4U : value & 15U;
        PutIndex(indices, m_nBits == 8 ? value : static_cast<std::uint8_t>(nibble));
    }
}

void BmpReader::PutIndex(std::vector<std::uint8_t>& indices, std::uint8_t index)
{
    if (m_nX >= m_nWidth || m_nY >= m_nHeight)
    {
        throw ImageFault("a run of pixels leaves the picture");
    }
    indices[static_cast<std::size_t>(m_nY * m_nWidth + m_nX)] = index;
    ++m_nX;
}

Image BmpReader::ReadDirect(ImageBudget& budget)
{
    m_Reader.SkipTo(std::max(m_nPixelOffset, m_Reader.GetPosition()));
    RequirePixelBytes();
    const std::size_t components = m_Masks[3].IsEmpty() ? 3 : 4;
    TakePixels(budget, m_nWidth, m_nHeight, static_cast<int>(components));
    Image image = MakeImage(m_nWidth, m_nHeight, static_cast<int>(components));
    const std::size_t pixelBytes = m_nBits / 8;
    for (int row = 0; row < m_nHeight; ++row)
    {
        const std::string_view packed = m_Reader.Take(GetStride());
        std::uint8_t* out = GetRow(image, GetRowOf(row));
        for (std::size_t x = 0; x < static_cast<std::size_t>(m_nWidth); ++x)
        {
            std::uint32_t pixel = 0;
            for (std::size_t i = 0; i < pixelBytes; ++i)
            {
                pixel |= static_cast<std::uint32_t>(static_cast<std::uint8_t>(packed[x * pixelBytes + i]))
                         << 8 * i;
            }
            for (std::size_t i = 0; i < components; ++i)
            {
                *out++ = m_Masks[i].Read(pixel);
            }
        }
    }
    return image;
}
}

Image DecodeBmp(std::string_view bytes, ImageBudget& budget)
{
    CheckMark(bytes, "BM", "BMP");
    return BmpReader(bytes).Read(budget);
}
}
