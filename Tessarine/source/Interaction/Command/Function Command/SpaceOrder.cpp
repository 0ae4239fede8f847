#include "SpaceOrder.h"
#include <algorithm>
#include <cstdint>
#include <utility>

namespace tessarine
{
namespace
{
constexpr unsigned kBitsAnAxis = 10;

/// Two zeros behind each of the bits.
std::uint32_t Spread(std::uint32_t bits)
{
    bits = (bits | bits << 16U) & 0x030000FFU;
    bits = (bits | bits << 8U) & 0x0300F00FU;
    bits = (bits | bits << 4U) & 0x030C30C3U;
    return (bits | bits << 2U) & 0x09249249U;
}

/// The cells of a cube around points.
class CellGrid
{
public:
    explicit CellGrid(const std::vector<smVec3d>& points) : m_Low(points.front())
    {
        smVec3d high = m_Low;
        for (const smVec3d& p : points)
        {
            for (int axis = 0; axis < 3; ++axis)
            {
                m_Low[axis] = std::min(m_Low[axis], p[axis]);
                high[axis] = std::max(high[axis], p[axis]);
            }
        }
        const smVec3d size = high - m_Low;
        const double longest = std::max({size.x, size.y, size.z});
        m_fScale = longest > 0.0 ? (1U << kBitsAnAxis) / longest : 0.0;
    }

    std::uint32_t GetCode(const smVec3d& p) const
    {
        return Spread(GetCell(p.x - m_Low.x)) << 2U | Spread(GetCell(p.y - m_Low.y)) << 1U |
               Spread(GetCell(p.z - m_Low.z));
    }

private:
    std::uint32_t GetCell(double way) const
    {
        constexpr double kLast = (1U << kBitsAnAxis) - 1;
        return static_cast<std::uint32_t>(std::clamp(way * m_fScale, 0.0, kLast));
    }

    smVec3d m_Low;
    double m_fScale = 0.0;
};
}

std::vector<std::size_t> OrderInSpace(const std::vector<smVec3d>& points,
                                      const std::function<bool(std::size_t)>& takesPart)
{
    std::vector<std::size_t> order;
    if (points.empty())
    {
        return order;
    }
    const CellGrid grid(points);
    std::vector<std::pair<std::uint32_t, std::size_t>> byCode;
    for (std::size_t i = 0; i < points.size(); ++i)
    {
        if (takesPart(i))
        {
            byCode.emplace_back(grid.GetCode(points[i]), i);
        }
    }
    std::sort(byCode.begin(), byCode.end());
    order.reserve(byCode.size());
    for (const auto& [code, index] : byCode)
    {
        order.push_back(index);
    }
    return order;
}
}
