#pragma once
#include "DSBrep.h"
#include <gtest/gtest.h>

namespace tessarine
{
/// What LinksHold lets pass.
struct LinkRules
{
    /// A half-edge may belong to an edge that lists two others: a third face took its place.
    bool allowDisplacedHalfEdges = false;
    /// The half-edge of a loop with one corner has no edge.
    bool allowOneVertexLoops = false;
    /// The two half-edges of an edge may start at the same vertex: the faces run the same way along it.
    bool allowSameDirection = false;
    /// The half-edges of an edge may join different vertices: such an edge was split.
    bool allowTornEdges = false;
};

/// Follows every link of the solid and names the first that is broken, with the id of its element:
/// the circles of the loops in both directions, loop to face to solid, half-edge to edge and back, vertex to
/// half-edge and back (null only where no half-edge starts at it), and that every edge, vertex and face that
/// is met stands in the solid's lists exactly once, and every edge of the list is met.
testing::AssertionResult LinksHold(const DSSolid& solid, LinkRules rules = {});

/// Vertices - edges + faces.
int EulerCharacteristic(const DSSolid& solid);
}
