#include "SeedProspects.h"
#include "IncrementalConnection.h"
#include <algorithm>
#include <cmath>

namespace tessarine
{
namespace
{
/// A corner this many times as far as the nearest point makes slivers only: the triangle's double area is at most the
/// longest side times the distance to the nearest, and the cost at least a hundredth of what they are to each other.
constexpr double kFarthestCorner = 101.0;
/// Within this all are taken for nearest, whatever rounding says.
constexpr double kNearestSlack = 1.0 + 1e-9;
}

SeedProspects::SeedProspects(const std::vector<smVec3d>& points) : m_Nearest(points), m_Places(points) {}

bool SeedProspects::MayStartAt(const smVec3d& point)
{
    m_Nearest.Find(point, 2);
    const double distance =
        std::sqrt(m_Nearest.GetSquaredDistances().back()); // the first is the point itself
    const double reach = std::min(kFarthestCorner * distance, IncrementalConnection::kCostLimit);
    return distance > 0.0 &&
           m_Places.AnyWithin(point, kNearestSlack * distance,
                              [&](const smVec3d& nearest) { return HasThird(point, nearest, reach); });
}

/// The places of a and b themselves span no area, and cost too much.
bool SeedProspects::HasThird(const smVec3d& a, const smVec3d& b, double reach) const
{
    return m_Places.AnyWithin(
        a, reach,
        [&](const smVec3d& c)
        { return IncrementalConnection::TriangleCost(a, b, c) < IncrementalConnection::kCostLimit; });
}
}
