#include "ImageFilter.h"
#include "Console.h"
#include <cstddef>

namespace tessarine
{
namespace
{
constexpr std::size_t kPixelBytes = 3;

/// One run of the filter over an image.
class RunFilter
{
public:
    RunFilter(int width, int height, std::uint8_t* image, int runLength, bool fillBackground)
        : m_nWidth(width),
          m_nHeight(height),
          m_pImage(image),
          m_nMostLength(runLength),
          m_bFillBackground(fillBackground)
    {
    }

    /// @return whether there is a marker
    bool FilterRows()
    {
        bool hasMarker = false;
        m_nRun = 0;
        for (int y = 0; y < m_nHeight; ++y)
        {
            for (int x = 0; x < m_nWidth; ++x)
            {
                const std::uint8_t* pixel = GetPixel(x, y);
                hasMarker = hasMarker || (pixel[0] == 0 && pixel[1] != 0);
                Count(x, y, true);
            }
        }
        return hasMarker;
    }

    void FilterColumns()
    {
        m_nRun = 0;
        for (int x = 0; x < m_nWidth; ++x)
        {
            for (int y = 0; y < m_nHeight; ++y)
            {
                Count(x, y, false);
            }
        }
    }

private:
    const std::uint8_t* GetPixel(int x, int y) const
    {
        return m_pImage + kPixelBytes * (static_cast<std::size_t>(y) * static_cast<std::size_t>(m_nWidth) +
                                         static_cast<std::size_t>(x));
    }

    void Count(int x, int y, bool horizontal)
    {
        const bool isObject = *GetPixel(x, y) != 0;
        if (isObject != m_bFillBackground)
        {
            ++m_nRun;
            return;
        }
        if (m_nRun <= m_nMostLength)
        {
            FillRun(x, y, m_nRun, m_nWidth, m_nHeight, m_pImage, horizontal, !m_bFillBackground);
        }
        m_nRun = 0;
    }

    int m_nWidth;
    int m_nHeight;
    std::uint8_t* m_pImage;
    int m_nMostLength;
    bool m_bFillBackground;
    int m_nRun = 0;
};
}

bool FilterImage(int width, int height, std::uint8_t* image, int runLength, bool fillBackground)
{
    RunFilter filter(width, height, image, runLength, fillBackground);
    const bool hasMarker = filter.FilterRows();
    filter.FilterColumns();
    DebugConsole() << "Filter image ok.." << '\n';
    return hasMarker;
}

void FillRun(int x, int y, int length, int width, int /*height*/, std::uint8_t* image, bool horizontal,
             bool black)
{
    const std::ptrdiff_t step = horizontal ? 1 : width;
    std::ptrdiff_t index = std::ptrdiff_t{y} * width + x;
    for (int i = 0; i < length && index >= step; ++i)
    {
        index -= step;
        for (std::size_t channel = 0; channel < kPixelBytes; ++channel)
        {
            image[static_cast<std::size_t>(index) * kPixelBytes + channel] = black ? 0 : 255;
        }
    }
}
}
