#include "BallSearch.h"
#include <algorithm>
#include <tuple>

namespace tessarine
{
namespace
{
bool IsBefore(const smVec3d& p, const smVec3d& q)
{
    return std::tie(p.x, p.y, p.z) < std::tie(q.x, q.y, q.z);
}
}

BallSearch::BallSearch(std::vector<smVec3d> points) : m_Places(std::move(points))
{
    std::sort(m_Places.begin(), m_Places.end(), IsBefore);
    m_Places.erase(std::unique(m_Places.begin(), m_Places.end(),
                               [](const smVec3d& p, const smVec3d& q) { return !IsBefore(p, q); }),
                   m_Places.end());
    m_Axes.resize(m_Places.size());
    Split({0, m_Places.size()});
}

void BallSearch::Split(Range range)
{
    if (range.begin == range.end)
    {
        return;
    }
    const int axis = FindWidestAxis(range);
    const std::size_t middle = range.GetMiddle();
    const auto at = [this](std::size_t place)
    { return m_Places.begin() + static_cast<std::ptrdiff_t>(place); };
    std::nth_element(at(range.begin), at(middle), at(range.end),
                     [axis](const smVec3d& p, const smVec3d& q) { return p[axis] < q[axis]; });
    m_Axes[middle] = static_cast<std::uint8_t>(axis);
    Split({range.begin, middle});
    Split({middle + 1, range.end});
}

int BallSearch::FindWidestAxis(Range range) const
{
    smVec3d low = m_Places[range.begin];
    smVec3d high = low;
    for (std::size_t i = range.begin; i < range.end; ++i)
    {
        for (int axis = 0; axis < 3; ++axis)
        {
            low[axis] = std::min(low[axis], m_Places[i][axis]);
            high[axis] = std::max(high[axis], m_Places[i][axis]);
        }
    }
    const smVec3d size = high - low;
    const int widerOfTwo = size.y > size.x ? 1 : 0;
    return size.z > size[widerOfTwo] ? 2 : widerOfTwo;
}

bool BallSearch::AnyWithin(const smVec3d& centre, double radius,
                           const std::function<bool(const smVec3d&)>& visit) const
{
    std::vector<Range> pending{{0, m_Places.size()}};
    while (!pending.empty())
    {
        const Range range = pending.back();
        pending.pop_back();
        if (range.begin == range.end)
        {
            continue;
        }
        const std::size_t middle = range.GetMiddle();
        const smVec3d& place = m_Places[middle];
        if ((place - centre).Length() <= radius && visit(place))
        {
            return true;
        }
        const int axis = m_Axes[middle];
        const double way = centre[axis] - place[axis];
        if (way <= radius)
        {
            pending.push_back({range.begin, middle});
        }
        if (-way <= radius)
        {
            pending.push_back({middle + 1, range.end});
        }
    }
    return false;
}
}
