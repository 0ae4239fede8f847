#include "Distance2D.h"
#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace tessarine
{
namespace
{
/// A pixel of the object, as a byte so that many are looked at in one step.
constexpr std::uint8_t kObject = 1;

/// Layers are counted to where the field says "far away", and can be added to without harm.
constexpr std::uint8_t kBeyond = kMostLayers + 1;

/// How far the steps of a spread along a row lead together: 1 + 2 + 4 + 8 + 16.
constexpr std::size_t kReach = 31;
constexpr std::size_t kLastStep = 16;

/// Whether the pixels of a row are the object's.
void FindObject(const std::uint8_t* image, std::uint8_t* object, std::size_t width)
{
    constexpr std::size_t kPixels = 4; // four pixels are three words, and their first bytes make one
    std::size_t x = 0;
    for (; x + kPixels <= width; x += kPixels)
    {
        std::array<std::uint32_t, 3> words{};
        std::memcpy(words.data(), image + 3 * x, sizeof words);
        const std::uint32_t first = (words[0] & 0xFFU) | (words[0] >> 24U << 8U) | (words[1] & 0xFF0000U) |
                                    (words[2] & 0xFF00U) << 16U;
        std::memcpy(object + x, &first, sizeof first);
    }
    for (; x < width; ++x)
    {
        object[x] = image[3 * x];
    }
    for (x = 0; x < width; ++x)
    {
        object[x] = object[x] != 0 ? kObject : 0;
    }
}

/// Each pixel's layer, or that of another row one layer farther.
void TakeFrom(std::uint8_t* layers, const std::uint8_t* others, std::size_t width)
{
    for (std::size_t x = 0; x < width; ++x)
    {
        layers[x] = std::min(layers[x], static_cast<std::uint8_t>(others[x] + 1));
    }
}

/// Each pixel's layer, or that of the pixels `step` to its left and right, so much farther.
void TakeFromBothSides(const std::uint8_t* layers, std::uint8_t* spread, std::size_t step, std::size_t width)
{
    const auto farther = static_cast<std::uint8_t>(step);
    const std::uint8_t* left = layers - step; // in the margin, at first
    const std::uint8_t* right = layers + step;
    for (std::size_t x = 0; x < width; ++x)
    {
        const std::uint8_t nearest = std::min(left[x], right[x]);
        spread[x] = std::min(layers[x], static_cast<std::uint8_t>(nearest + farther));
    }
}

/// Builds the field in two sweeps, down and up.
///
/// Within the image's border no pixel outside is beside one inside without the outline between them, so that
/// the layers are the city-block distances to the outline: the least over the column's pixels, and over the
/// row's of these.
class LayerSweep
{
public:
    LayerSweep(int width, int height, const std::uint8_t* image)
        : m_pImage(image),
          m_nWidth(static_cast<std::size_t>(width)),
          m_nHeight(static_cast<std::size_t>(height)),
          m_nStride(m_nWidth + 2 * kReach),
          m_Object(m_nWidth * m_nHeight),
          m_Layers(m_nStride * m_nHeight, kBeyond),
          m_Spread(2 * m_nStride, kBeyond)
    {
    }

    /// The outline, and the layers that the rows above give.
    void GoDown()
    {
        for (std::size_t y = 0; y < m_nHeight; ++y)
        {
            FindObject(m_pImage + 3 * y * m_nWidth, GetObject(y), m_nWidth);
            if (y >= 2)
            {
                MarkOutline(y - 1);
                TakeFrom(GetLayers(y - 1), GetLayers(y - 2), m_nWidth);
            }
        }
    }

    /// The layers that the rows below give, then those along each row, which is then done.
    void GoUp(std::int32_t* field)
    {
        for (std::size_t y = m_nHeight; y-- > 0;)
        {
            if (y > 0 && y + 1 < m_nHeight)
            {
                TakeFrom(GetLayers(y), GetLayers(y + 1), m_nWidth);
            }
            WriteRow(SpreadRow(GetLayers(y)), GetObject(y), field + y * m_nWidth);
        }
        WriteBorder(field);
    }

private:
    std::uint8_t* GetObject(std::size_t y) { return m_Object.data() + y * m_nWidth; }
    /// Between margins as wide as the reach of a spread.
    std::uint8_t* GetLayers(std::size_t y) { return m_Layers.data() + y * m_nStride + kReach; }

    /// The object's pixels of a row that are not surrounded, but for the one neighbour that is not asked.
    void MarkOutline(std::size_t y)
    {
        const std::uint8_t* row = GetObject(y);
        const std::uint8_t* before = row - m_nWidth;
        const std::uint8_t* behind = row + m_nWidth;
        std::uint8_t* layers = GetLayers(y);
        for (std::size_t x = 1; x + 1 < m_nWidth; ++x)
        {
            const auto isSurrounded =
                static_cast<std::uint8_t>(before[x - 1] & before[x] & before[x + 1] & row[x - 1] &
                                          row[x + 1] & behind[x] & behind[x + 1]);
            layers[x] = row[x] > isSurrounded ? 0 : kBeyond;
        }
    }

    /// A pixel would wait for the one beside it: steps of doubling length go for all at once.
    const std::uint8_t* SpreadRow(const std::uint8_t* layers)
    {
        std::uint8_t* spread = m_Spread.data() + kReach;
        std::uint8_t* other = spread + m_nStride;
        for (std::size_t step = 1; step <= kLastStep; step *= 2)
        {
            TakeFromBothSides(layers, spread, step, m_nWidth);
            layers = spread;
            std::swap(spread, other);
        }
        return layers;
    }

    void WriteRow(const std::uint8_t* layers, const std::uint8_t* object, std::int32_t* field) const
    {
        for (std::size_t x = 0; x < m_nWidth; ++x)
        {
            const std::int32_t distance = layers[x] > kMostLayers ? kFarAway : std::int32_t{layers[x]};
            field[x] = object[x] == kObject ? -distance : distance;
        }
    }

    /// A pixel of the border is outside, and is reached from the one beside it within only, when the layers
    /// come to that. Corners are never reached.
    void WriteBorder(std::int32_t* field) const
    {
        const std::size_t last = m_nWidth * m_nHeight - 1;
        for (std::size_t x = 0; x < m_nWidth; ++x)
        {
            field[x] = field[last - x] = kFarAway;
        }
        for (std::size_t y = 0; y < m_nHeight; ++y)
        {
            field[y * m_nWidth] = field[last - y * m_nWidth] = kFarAway;
        }
        const auto reach = [field](std::size_t border, std::size_t beside)
        {
            if (std::abs(field[beside]) < kMostLayers)
            {
                field[border] = field[beside] + 1;
            }
        };
        for (std::size_t x = 1; x + 1 < m_nWidth && m_nHeight > 2; ++x)
        {
            reach(x, x + m_nWidth);
            reach(last - x, last - x - m_nWidth);
        }
        for (std::size_t y = 1; y + 1 < m_nHeight && m_nWidth > 2; ++y)
        {
            reach(y * m_nWidth, y * m_nWidth + 1);
            reach(last - y * m_nWidth, last - y * m_nWidth - 1);
        }
    }

    const std::uint8_t* m_pImage;
    std::size_t m_nWidth;
    std::size_t m_nHeight;
    std::size_t m_nStride;
    std::vector<std::uint8_t> m_Object;
    std::vector<std::uint8_t> m_Layers;
    std::vector<std::uint8_t> m_Spread; ///< two rows, in turns
};
}

void BuildDistance2D(int width, int height, const std::uint8_t* image, std::int32_t* field)
{
    LayerSweep sweep(width, height, image);
    sweep.GoDown();
    sweep.GoUp(field);
}
}
