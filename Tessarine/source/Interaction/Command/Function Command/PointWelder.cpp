#include "PointWelder.h"
#include <array>
#include <cmath>
#include <cstddef>

namespace tessarine
{
namespace
{
constexpr double kWeldTolerance = 1e-10;
constexpr double kWeldCell = 1e-8; ///< most points are nearest to points of one cell alone
constexpr std::size_t kFirstBuckets = 1024;
constexpr std::int32_t kNoPoint = -1;

std::int64_t ToWeldCell(double coordinate)
{
    return static_cast<std::int64_t>(std::floor(coordinate / kWeldCell));
}

std::uint64_t HashWeldCell(std::int64_t x, std::int64_t y, std::int64_t z)
{
    std::uint64_t hash = 0;
    for (const std::int64_t cell : {x, y, z})
    {
        hash = (hash ^ static_cast<std::uint64_t>(cell)) * 0x9E3779B97F4A7C15U;
        hash ^= hash >> 32U;
    }
    return hash;
}
}

bool IsSamePlace(const smVec3d& a, const smVec3d& b)
{
    return std::abs(a.x - b.x) < kWeldTolerance && std::abs(a.y - b.y) < kWeldTolerance &&
           std::abs(a.z - b.z) < kWeldTolerance;
}

PointWelder::PointWelder() : m_Buckets(kFirstBuckets, kNoPoint) {}

std::int32_t PointWelder::Weld(const smVec3d& point)
{
    const std::int32_t found = Find(point);
    if (found != kNoPoint)
    {
        return found;
    }
    Add(point);
    return static_cast<std::int32_t>(m_Points.size()) - 1;
}

/// The first of all points of the cells that the tolerance reaches.
std::int32_t PointWelder::Find(const smVec3d& point) const
{
    constexpr double kReach = 2 * kWeldTolerance; // room for rounding
    std::int32_t first = kNoPoint;
    for (std::int64_t x = ToWeldCell(point.x - kReach); x <= ToWeldCell(point.x + kReach); ++x)
    {
        for (std::int64_t y = ToWeldCell(point.y - kReach); y <= ToWeldCell(point.y + kReach); ++y)
        {
            for (std::int64_t z = ToWeldCell(point.z - kReach); z <= ToWeldCell(point.z + kReach); ++z)
            {
                std::int32_t number = m_Buckets[HashWeldCell(x, y, z) & (m_Buckets.size() - 1)];
                for (; number != kNoPoint; number = m_Next[static_cast<std::size_t>(number)])
                {
                    const bool isBefore = first == kNoPoint || number < first;
                    if (isBefore && IsSamePlace(m_Points[static_cast<std::size_t>(number)], point))
                    {
                        first = number;
                    }
                }
            }
        }
    }
    return first;
}

void PointWelder::Add(const smVec3d& point)
{
    m_Points.push_back(point);
    if (m_Points.size() > m_Buckets.size())
    {
        Grow();
        return;
    }
    m_Next.push_back(kNoPoint);
    LinkToBucket(static_cast<std::int32_t>(m_Points.size()) - 1);
}

void PointWelder::LinkToBucket(std::int32_t number)
{
    const smVec3d& point = m_Points[static_cast<std::size_t>(number)];
    const std::uint64_t hash = HashWeldCell(ToWeldCell(point.x), ToWeldCell(point.y), ToWeldCell(point.z));
    std::int32_t& bucket = m_Buckets[hash & (m_Buckets.size() - 1)];
    m_Next[static_cast<std::size_t>(number)] = bucket;
    bucket = number;
}

void PointWelder::Grow()
{
    m_Buckets.assign(2 * m_Buckets.size(), kNoPoint);
    m_Next.assign(m_Points.size(), kNoPoint);
    for (std::int32_t number = 0; number < static_cast<std::int32_t>(m_Points.size()); ++number)
    {
        LinkToBucket(number);
    }
}
}
