#pragma once
#include "BallSearch.h"
#include "NearestPoints.h"

namespace tessarine
{
/// Tells at which of the points of a face no triangle can start, without the search for one: a point that comes twice,
/// or has nothing around it but points on one line with the nearest of them, makes none that is cheap enough.
///
/// Cost    A point costs a query of two trees, and of the other places one by one those that are no farther than a
///         hundred times the nearest, until a third corner is found.
class SeedProspects
{
public:
    /// Fails   As NearestPoints.
    explicit SeedProspects(const std::vector<smVec3d>& points);

    /// False only where no third point makes a triangle below the limit with the point, one of them, and one of those
    /// that are nearest to it.
    bool MayStartAt(const smVec3d& point);

private:
    bool HasThird(const smVec3d& a, const smVec3d& b, double reach) const;

    NearestPoints m_Nearest;
    BallSearch m_Places;
};
}
