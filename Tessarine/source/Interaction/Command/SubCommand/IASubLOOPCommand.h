#pragma once
#include "IASubCommand.h"

namespace tessarine
{
/// One level of Loop subdivision of the current solid, in place.
///
/// Needs   Each edge of the solid has its first half-edge (asserted).
/// Leaves  Each face of k corners as k corner triangles and one face of k corners; normals computed anew; the
///         old mesh as a hidden last child of the root. A vertex that no face uses stays where it is.
///         Material and texture coordinates of what is new stay unset.
/// Says    "boudary!" for each open vertex and each open edge; what GetTwin and FindEdge say where a third
///         face has displaced a half-edge, where fans meet in a vertex, and where faces clash in direction.
/// Fails   No current solid: nothing happens, nothing is said. Failure when a position would not be finite,
///         when most faces clash in direction with their neighbours, and when a vertex leads into a face of one
///         corner.
/// Units   Model units, double precision. Mask weights are pure numbers.
/// Cost    Linear in the half-edges, n log n with crowded vertices.
/// Source  C. Loop 1987; J. Warren's weights: 3/16 up to valence 3, then 3/(8n).
/// Kept    An edge is split as soon as its point is known, so that the order of the edge list shows in the
///         result. Do not gather the edge points first. A vertex normal is summed onto the one before.
class IASubLOOPCommand : public IASubCommand
{
public:
    void Execute() override;
};
}
