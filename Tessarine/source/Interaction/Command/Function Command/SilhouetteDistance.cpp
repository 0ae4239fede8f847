#include "SilhouetteDistance.h"
#include "Distance2D.h"
#include "DistanceField.h"
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdlib>

namespace tessarine
{
namespace
{
constexpr float kPlaneWidth = 2.4F;
constexpr int kOutermostTraced = kMostLayers - 1;
constexpr int kRings = 2;

struct PixelOffset
{
    int x;
    int y;
};

/// In the order in which a trace asks them.
constexpr std::array<PixelOffset, 8> kPixelNeighbours{
    {{1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}, {-1, -1}, {0, -1}, {1, -1}}};

/// From a pixel with this margin no trace comes to the border, where layers do not lead to the outline.
constexpr int kReach = kMostLayers + 2 + kRings;
}

SilhouetteDistance::SilhouetteDistance(int width, int height, const std::int32_t* layers)
    : m_nWidth(width), m_nHeight(height), m_pLayers(layers), m_fScale(static_cast<float>(width) / kPlaneWidth)
{
}

float SilhouetteDistance::GetDistance(int x, int y) const
{
    const std::int32_t layer = GetLayer(x, y);
    if (layer > kOutermostTraced)
    {
        return DistanceField::kOutside;
    }
    if (layer < -kOutermostTraced)
    {
        return DistanceField::kInside;
    }
    if (layer == 0)
    {
        return 0.0F;
    }
    const int square = IsWithinReach(x, y) ? TraceOutline<true>(x, y) : TraceOutline<false>(x, y);
    const double distance = std::sqrt(static_cast<double>(square)) / double{m_fScale};
    return static_cast<float>(layer > 0 ? distance : -distance);
}

/// A pixel of layer n is between n / sqrt(2) and n * sqrt(2) pixels from the outline. The factors leave room for
/// rounding.
bool SilhouetteDistance::CannotExceed(int x, int y, float value) const
{
    constexpr float kMost = 1.41422F;
    constexpr float kLeast = 0.7071F;
    const std::int32_t layer = GetLayer(x, y);
    if (layer < -kOutermostTraced)
    {
        return true;
    }
    const float farthest = static_cast<float>(layer) * (layer > 0 ? kMost : kLeast);
    return layer <= kOutermostTraced && value * m_fScale >= farthest && IsWithinReach(x, y);
}

bool SilhouetteDistance::IsWithinReach(int x, int y) const
{
    return x >= kReach && y >= kReach && x < m_nWidth - kReach && y < m_nHeight - kReach;
}

template <bool isWithinReach>
int SilhouetteDistance::TraceOutline(int x, int y) const
{
    int foundX = x;
    int foundY = y;
    bool found = false;
    int stepsLeft = std::abs(GetLayer(x, y)) + 2;
    while (!found && stepsLeft-- > 0 && StepDown<isWithinReach>(foundX, foundY, found))
    {
    }
    if (!found)
    {
        return 0;
    }
    int nearest = (foundX - x) * (foundX - x) + (foundY - y) * (foundY - y);
    for (int ring = 1; ring <= kRings; ++ring)
    {
        for (const PixelOffset& offset : kPixelNeighbours)
        {
            const int column = foundX + ring * offset.x;
            const int row = foundY + ring * offset.y;
            const bool isInside =
                isWithinReach || (column >= 0 && column < m_nWidth && row >= 0 && row < m_nHeight);
            if (isInside && GetLayer(column, row) == 0)
            {
                nearest = std::min(nearest, (column - x) * (column - x) + (row - y) * (row - y));
            }
        }
    }
    return nearest;
}

/// To the first neighbour that is on the outline or nearer to it.
/// @return false where there is none: no further step would find one either
template <bool isWithinReach>
bool SilhouetteDistance::StepDown(int& x, int& y, bool& found) const
{
    const int layer = std::abs(GetLayer(x, y));
    for (const PixelOffset& offset : kPixelNeighbours)
    {
        const int column = x + offset.x;
        const int row = y + offset.y;
        if (!isWithinReach && (column < 0 || column >= m_nWidth || row < 0 || row >= m_nHeight))
        {
            continue;
        }
        const int next = std::abs(GetLayer(column, row));
        if (next < layer)
        {
            found = next == 0;
            x = column;
            y = row;
            return true;
        }
    }
    return false;
}
}
