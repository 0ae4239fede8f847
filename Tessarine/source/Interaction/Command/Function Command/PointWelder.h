#pragma once
#include "smVec3d.h"
#include <cstdint>
#include <vector>

namespace tessarine
{
/// Whether two points are one: each coordinate differs by less than 1e-10.
bool IsSamePlace(const smVec3d& a, const smVec3d& b);

/// Gathers points that come several times: a point is the first of those before it that are at its place.
/// Needs   Coordinates below 1e9.
/// Cost    Constant for a point, where few lie within 1e-8 of another.
class PointWelder
{
public:
    PointWelder();

    /// @return the number of the point in the list, from 0
    std::int32_t Weld(const smVec3d& point);

    const std::vector<smVec3d>& GetPoints() const { return m_Points; }

private:
    std::int32_t Find(const smVec3d& point) const;
    void Add(const smVec3d& point);
    void LinkToBucket(std::int32_t number);
    void Grow();

    std::vector<smVec3d> m_Points;
    std::vector<std::int32_t> m_Next;    ///< the point before in the same bucket, or -1
    std::vector<std::int32_t> m_Buckets; ///< a power of two; the last point of each, or -1
};
}
