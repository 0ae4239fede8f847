#pragma once
#include "smVec3d.h"
#include <cstddef>
#include <optional>

namespace tessarine
{
class DSSolid;
class MANBrepElementManager;

struct BoundingBox
{
    smVec3d low;
    smVec3d high;
};

/// What a solid consists of.
struct SolidCounts
{
    std::size_t vertices = 0;
    std::size_t faces = 0;
    std::size_t edges = 0;
    std::size_t boundaryEdges = 0;    ///< without a second half-edge
    std::size_t crowdedEdges = 0;     ///< named by more than two half-edges of the solid's faces
    std::size_t pieces = 0;           ///< connected parts of the graph of vertices and edges
    std::size_t isolatedVertices = 0; ///< without an edge; no pieces
    long long eulerNumber = 0;        ///< vertices - edges + faces
    std::optional<BoundingBox> box;   ///< none without vertices
};

/// Cost    Linear in the records of the manager, nearly.
SolidCounts CountSolid(const DSSolid& solid, const MANBrepElementManager& elements);
}
