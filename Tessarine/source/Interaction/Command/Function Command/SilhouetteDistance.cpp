#include "SilhouetteDistance.h"
#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace tessarine
{
namespace
{
constexpr float kPlaneWidth = 2.4F;

struct PixelOffset
{
    int x;
    int y;
};

/// In the order in which a trace asks them.
constexpr std::array<PixelOffset, 8> kPixelNeighbours{
    {{1, 0}, {1, 1}, {0, 1}, {-1, 1}, {-1, 0}, {-1, -1}, {0, -1}, {1, -1}}};
}

SilhouetteDistance::SilhouetteDistance(int width, int height, const std::int32_t* layers)
    : m_nWidth(width), m_nHeight(height), m_pLayers(layers), m_fScale(static_cast<float>(width) / kPlaneWidth)
{
    std::transform(kPixelNeighbours.begin(), kPixelNeighbours.end(), m_Steps.begin(),
                   [width](const PixelOffset& offset)
                   { return std::ptrdiff_t{offset.y} * width + offset.x; });
}

float SilhouetteDistance::TraceDistance(int x, int y) const
{
    const std::int32_t layer = GetLayer(x, y);
    if (layer == 0)
    {
        return 0.0F;
    }
    const int square = IsWithinReach(x, y) ? TraceOutline<true>(x, y) : TraceOutline<false>(x, y);
    const double distance = std::sqrt(static_cast<double>(square)) / double{m_fScale};
    return static_cast<float>(layer > 0 ? distance : -distance);
}

/// Where a trace stands: its layer in memory, and the way from its start.
struct SilhouetteDistance::Trace
{
    const std::int32_t* pLayer;
    int x = 0;
    int y = 0;
};

template <bool isWithinReach>
int SilhouetteDistance::TraceOutline(int x, int y) const
{
    const auto isInside = [this, x, y](int wayX, int wayY) {
        return isWithinReach ||
               (x + wayX >= 0 && x + wayX < m_nWidth && y + wayY >= 0 && y + wayY < m_nHeight);
    };
    Trace trace{m_pLayers + (std::ptrdiff_t{y} * m_nWidth + x)};
    for (int stepsLeft = std::abs(*trace.pLayer) + 2; *trace.pLayer != 0; --stepsLeft)
    {
        if (stepsLeft == 0 || !StepDown(trace, isInside))
        {
            return 0;
        }
    }
    int nearest = trace.x * trace.x + trace.y * trace.y;
    for (int ring = 1; ring <= kRings; ++ring)
    {
        for (std::size_t n = 0; n < kPixelNeighbours.size(); ++n)
        {
            const int wayX = trace.x + ring * kPixelNeighbours[n].x;
            const int wayY = trace.y + ring * kPixelNeighbours[n].y;
            if (isInside(wayX, wayY) && trace.pLayer[ring * m_Steps[n]] == 0)
            {
                nearest = std::min(nearest, wayX * wayX + wayY * wayY);
            }
        }
    }
    return nearest;
}

/// To the first neighbour that is on the outline or nearer to it.
/// @return false where there is none: no further step would find one either
template <class TIsInside>
bool SilhouetteDistance::StepDown(Trace& trace, TIsInside isInside) const
{
    const int layer = std::abs(*trace.pLayer);
    for (std::size_t n = 0; n < kPixelNeighbours.size(); ++n)
    {
        const int wayX = trace.x + kPixelNeighbours[n].x;
        const int wayY = trace.y + kPixelNeighbours[n].y;
        if (isInside(wayX, wayY) && std::abs(trace.pLayer[m_Steps[n]]) < layer)
        {
            trace = {trace.pLayer + m_Steps[n], wayX, wayY};
            return true;
        }
    }
    return false;
}
}
