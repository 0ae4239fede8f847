#pragma once
#include <cstddef>
#include <iosfwd>
#include <string>

namespace tessarine
{
/// What a reading of a dump found.
struct DumpFindings
{
    std::string breach; ///< the first broken invariant, with its ids; empty when all hold
    std::size_t solids = 0;
    std::size_t vertices = 0;
    std::size_t halfEdges = 0;
    std::size_t edges = 0;
    std::size_t faces = 0;
    /// Half-edges that their edge does not list, because more than two name it. No breach.
    std::size_t displacedHalfEdges = 0;
    /// Half-edges without an edge, which are the faces of one corner. No breach.
    std::size_t loneHalfEdges = 0;
    /// Edges whose two half-edges start at the same vertex. No breach.
    std::size_t clashingEdges = 0;
    /// Half-edges of edges that came from splitting such an edge. A breach where the dump has no edge like that.
    std::size_t tornHalfEdges = 0;
};

/// Reads a dump and checks every invariant of the half-edge structure: ids, links in both directions, closed
/// loops, what lists what, and that every list refers to live elements.
///
/// Cost    Linear in the text; memory is that of the links, not of the text.
DumpFindings CheckDump(std::istream& dump);
}
