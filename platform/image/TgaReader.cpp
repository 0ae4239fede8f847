#include "TgaReader.h"
#include "ByteReader.h"
#include <algorithm>
#include <array>

namespace tessarine
{
namespace
{
/// The pixel kinds, with kRunLengthCoded added where runs are coded.
enum ImageType : unsigned
{
    kMapped = 1,
    kColour = 2,
    kGrey = 3,
    kRunLengthCoded = 8
};

constexpr unsigned kFromRight = 0x10;
constexpr unsigned kFromTop = 0x20;

class TgaReader
{
public:
    explicit TgaReader(std::string_view bytes) : m_Reader(bytes) {}
    Image Read(ImageBudget& budget);

private:
    using Pixel = std::array<std::uint8_t, 4>;

    void ReadHeader();
    void CheckFormat() const;
    void ReadColourMap();
    void RequirePixelBytes() const;
    void ReadRuns(Image& image);
    Pixel TakePixel();
    Pixel TakeColour(unsigned bits);
    Pixel LookUp(unsigned index) const;
    void Put(Image& image, std::int64_t position, const Pixel& pixel) const;

    unsigned GetKind() const { return m_nType & ~static_cast<unsigned>(kRunLengthCoded); }
    bool IsRunLengthCoded() const { return (m_nType & kRunLengthCoded) != 0; }
    /// Bits of a colour, in the map or in the picture.
    unsigned GetColourBits() const { return GetKind() == kMapped ? m_nMapBits : m_nBits; }
    int GetComponents() const
    {
        return GetKind() == kGrey ? static_cast<int>(m_nBits / 8) : (GetColourBits() == 32 ? 4 : 3);
    }

    ByteReader m_Reader;
    unsigned m_nMapType = 0;
    unsigned m_nType = 0;
    unsigned m_nMapFirst = 0;
    unsigned m_nMapLength = 0;
    unsigned m_nMapBits = 0;
    std::int64_t m_nWidth = 0;
    std::int64_t m_nHeight = 0;
    unsigned m_nBits = 0;
    unsigned m_nDescriptor = 0;
    std::vector<Pixel> m_Map;
};

Image TgaReader::Read(ImageBudget& budget)
{
    ReadHeader();
    ReadColourMap();
    RequirePixelBytes();
    TakePixels(budget, m_nWidth, m_nHeight, GetComponents());
    Image image = MakeImage(m_nWidth, m_nHeight, GetComponents());
    if (IsRunLengthCoded())
    {
        ReadRuns(image);
        return image;
    }
    for (std::int64_t i = 0; i < m_nWidth * m_nHeight; ++i)
    {
        Put(image, i, TakePixel());
    }
    return image;
}

void TgaReader::ReadHeader()
{
    const std::size_t idLength = m_Reader.TakeByte();
    m_nMapType = m_Reader.TakeByte();
    m_nType = m_Reader.TakeByte();
    m_nMapFirst = m_Reader.Take16();
    m_nMapLength = m_Reader.Take16();
    m_nMapBits = m_Reader.TakeByte();
    m_Reader.Take(4); // place on the screen
    m_nWidth = m_Reader.Take16();
    m_nHeight = m_Reader.Take16();
    m_nBits = m_Reader.TakeByte();
    m_nDescriptor = m_Reader.TakeByte();
    CheckFormat();
    CheckImageSize(m_nWidth, m_nHeight, GetComponents());
    m_Reader.Take(idLength);
}

void TgaReader::CheckFormat() const
{
    const auto isColour = [](unsigned bits) { return bits == 15 || bits == 16 || bits == 24 || bits == 32; };
    const bool isByte = m_nBits == 8 || m_nBits == 16;
    const bool fits = (GetKind() == kMapped && isByte && m_nMapType == 1 && isColour(m_nMapBits)) ||
                      (GetKind() == kColour && isColour(m_nBits)) || (GetKind() == kGrey && isByte);
    if (!fits || m_nType > (kGrey | kRunLengthCoded) || m_nMapType > 1)
    {
        throw ImageFault("a TGA of type " + std::to_string(m_nType) + " with " + std::to_string(m_nBits) +
                         " bits is not read");
    }
}

void TgaReader::ReadColourMap()
{
    if (m_nMapType == 0)
    {
        return;
    }
    if (GetKind() != kMapped) // a map beside plain colours is of no use
    {
        m_Reader.Take(std::size_t{m_nMapLength} * ((m_nMapBits + 7) / 8));
        return;
    }
    for (unsigned i = 0; i < m_nMapLength; ++i)
    {
        m_Map.push_back(TakeColour(m_nMapBits));
    }
}

/// A file that is too short is refused before its picture is allocated.
void TgaReader::RequirePixelBytes() const
{
    constexpr std::size_t kLongestRun = 128;
    const auto pixels = static_cast<std::size_t>(m_nWidth * m_nHeight);
    const std::size_t pixelBytes = (m_nBits + 7) / 8;
    const std::size_t least = IsRunLengthCoded() ? (pixels + kLongestRun - 1) / kLongestRun * (1 + pixelBytes)
                                                 : pixels * pixelBytes;
    if (least > m_Reader.GetLeft())
    {
        throw ImageFault(kEndsEarly);
    }
}

void TgaReader::ReadRuns(Image& image)
{
    const std::int64_t end = m_nWidth * m_nHeight;
    for (std::int64_t position = 0; position < end;)
    {
        const unsigned head = m_Reader.TakeByte();
        const bool repeats = (head & 0x80U) != 0;
        const std::int64_t count = (head & 0x7FU) + 1;
        if (position + count > end)
        {
            throw ImageFault("a run of pixels leaves the picture");
        }
        Pixel pixel = TakePixel();
        for (std::int64_t i = 0; i < count; ++i, ++position)
        {
            if (i > 0 && !repeats)
            {
                pixel = TakePixel();
            }
            Put(image, position, pixel);
        }
    }
}

TgaReader::Pixel TgaReader::TakePixel()
{
    switch (GetKind())
    {
    case kMapped: return LookUp(m_nBits == 8 ? m_Reader.TakeByte() : m_Reader.Take16());
    case kGrey:
    {
        const std::uint8_t grey = m_Reader.TakeByte();
        return {grey, m_nBits == 16 ? m_Reader.TakeByte() : std::uint8_t{0}, 0, 0};
    }
    default: return TakeColour(m_nBits);
    }
}

/// Blue comes first; of 15 and 16 bits five go to each channel.
TgaReader::Pixel TgaReader::TakeColour(unsigned bits)
{
    if (bits <= 16)
    {
        const unsigned packed = m_Reader.Take16();
        const auto widen = [](unsigned five) { return static_cast<std::uint8_t>((five * 255 + 15) / 31); };
        return {widen(packed >> 10U & 31U), widen(packed >> 5U & 31U), widen(packed & 31U), 0};
    }
    const std::uint8_t blue = m_Reader.TakeByte();
    const std::uint8_t green = m_Reader.TakeByte();
    const std::uint8_t red = m_Reader.TakeByte();
    return {red, green, blue, bits == 32 ? m_Reader.TakeByte() : std::uint8_t{0}};
}

TgaReader::Pixel TgaReader::LookUp(unsigned index) const
{
    if (index < m_nMapFirst || index - m_nMapFirst >= m_Map.size())
    {
        throw ImageFault("a pixel has colour " + std::to_string(index) + ", which its colour map has not");
    }
    return m_Map[index - m_nMapFirst];
}

/// Stores the n-th pixel of the file where the origin of the picture puts it.
void TgaReader::Put(Image& image, std::int64_t position, const Pixel& pixel) const
{
    const std::int64_t fileX = position % m_nWidth;
    const std::int64_t fileY = position / m_nWidth;
    const std::int64_t x = (m_nDescriptor & kFromRight) != 0 ? m_nWidth - 1 - fileX : fileX;
    const std::int64_t y = (m_nDescriptor & kFromTop) != 0 ? m_nHeight - 1 - fileY : fileY;
    std::copy_n(pixel.begin(), image.components, GetRow(image, static_cast<int>(y)) + x * image.components);
}
}

Image DecodeTga(std::string_view bytes, ImageBudget& budget)
{
    return TgaReader(bytes).Read(budget);
}
}
