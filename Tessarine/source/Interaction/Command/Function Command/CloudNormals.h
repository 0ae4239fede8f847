#pragma once
#include "smVec3d.h"
#include <vector>

namespace tessarine
{
class NearestPoints;

/// The unit normal at each point of a cloud: the direction in which the six points nearest to it, itself one of them,
/// spread the least.
///
/// Fails   An eigen-analysis that does not end is an assertion.
/// @param nearest an index of these points
std::vector<smVec3d> EstimateCloudNormals(const std::vector<smVec3d>& points, NearestPoints& nearest);
}
