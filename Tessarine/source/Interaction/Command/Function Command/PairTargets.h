#pragma once
#include "Quadric.h"
#include "smVec3f.h"

namespace tessarine
{
/// What a vertex brings into a pair.
struct PairEnd
{
    Quadric quadric;
    smVec3f position;
};

/// Where the two vertices of a pair would meet, and what that costs.
struct PairTarget
{
    smVec3f position;
    float cost = 0.0F;
};

/// Pairs whose targets are found side by side.
inline constexpr int kPairsAtATime = 4;

/// The target of each pair (ends[0][i], ends[1][i]): the point where the sum of the two quadrics is smallest,
/// as Gauss-Jordan elimination with complete pivoting finds it; where the planes hardly tell such a point, the
/// cheapest of the first position, the second, and the middle, the earlier one of equals.
///
/// Units   Single precision in every value and every operation. Each target is what it would be alone, bit for
///         bit.
/// Kept    Costs are rounded like everything else: on a smooth mesh of small triangles most of a cost is
///         rounding.
void FindPairTargets(const PairEnd* const (&ends)[2][kPairsAtATime], PairTarget (&targets)[kPairsAtATime]);
}
