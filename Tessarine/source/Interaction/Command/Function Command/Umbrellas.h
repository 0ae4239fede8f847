#pragma once
#include "smVec3d.h"
#include <functional>

namespace tessarine
{
class DSSolid;
class DSVertex;
class LeastSquaresSystem;

/// Adds the umbrella of every vertex that has faces, and the point that it stands for, to a system over all vertices
/// by their places in the list.
///
/// Needs   A closed solid; a system of as many unknowns as it has vertices (asserted).
void AddUmbrellas(const DSSolid& solid, const std::function<smVec3d(const DSVertex&)>& pointOf,
                  LeastSquaresSystem& system);
}
