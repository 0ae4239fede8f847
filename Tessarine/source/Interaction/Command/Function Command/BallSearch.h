#pragma once
#include "smVec3d.h"
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace tessarine
{
/// The places within a ball around any point, by a balanced kd-tree over the places of a list of points. However many
/// points share a place, it counts once.
///
/// Cost    The start n log n for n points. A search meets the tree's boxes at the ball, and the places within.
class BallSearch
{
public:
    /// Needs   Finite positions.
    explicit BallSearch(std::vector<smVec3d> points);

    /// Visits the places within the ball, its surface included, in no order that is told, until one answers true.
    ///
    /// @return whether one did
    bool AnyWithin(const smVec3d& centre, double radius,
                   const std::function<bool(const smVec3d&)>& visit) const;

private:
    /// A part of the tree by its places: the middle one parts the others.
    struct Range
    {
        std::size_t begin;
        std::size_t end;

        std::size_t GetMiddle() const { return begin + (end - begin) / 2; }
    };

    void Split(Range range);
    int FindWidestAxis(Range range) const;

    std::vector<smVec3d> m_Places;
    std::vector<std::uint8_t> m_Axes; ///< along which each place parts its range
};
}
