#pragma once
#include "smVec3d.h"
#include <cstddef>
#include <functional>
#include <vector>

namespace tessarine
{
/// The indices of the points that take part, those side by side that lie side by side (along a Morton curve): what
/// looks things up around each point in turn finds them in the cache. Points in one cell come in rising order.
std::vector<std::size_t> OrderInSpace(const std::vector<smVec3d>& points,
                                      const std::function<bool(std::size_t)>& takesPart);
}
