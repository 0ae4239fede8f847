#pragma once
#include "smVec3d.h"
#include <vector>

namespace tessarine
{
class DSSolid;
class EigenTable;
class LeastSquaresSystem;
class NearestPoints;

/// Samples of a limit surface, and the cloud point nearest to each.
struct LimitSamples
{
    std::vector<smVec3d> points;
    std::vector<smVec3d> targets;
};

/// Refuses a solid whose faces are not all patches that can be evaluated: Failure for a face that is no triangle, for
/// one with two corners of another valence than 6, and for a valence that the table does not have.
///
/// Needs   A closed solid.
void DemandLimitPatches(const DSSolid& solid, const EigenTable& table);

/// Sums up, over a grid of 1326 samples on each face, the mean of the squared distances between the limit surface of
/// Loop subdivision and the cloud points nearest to it now, as a system over the vertices by their places.
///
/// Needs   What DemandLimitPatches demands; a system without terms, of as many unknowns as there are vertices
///         (asserted).
/// Kept    The corner (0, 0), which cannot be evaluated, is taken a millionth beside it.
/// Cost    For each sample, a query of the tree and the square of its control vertices.
LimitSamples AssembleLimitSystem(const DSSolid& solid, const EigenTable& table, NearestPoints& nearest,
                                 const std::vector<smVec3d>& cloud, LeastSquaresSystem& system);
}
