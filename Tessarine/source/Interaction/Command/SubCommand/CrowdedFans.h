#pragma once
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

namespace tessarine
{
class DSEdge;
class DSHalfEdge;
class DSVertex;

/// Finds the edges at vertices with many neighbours as MANBrepElementManager::FindEdge does, while edges are
/// split one after another: the same edge for the same pair of vertices, without a walk for each of them.
///
/// The walk around a vertex passes the same half-edges before and after a split, whichever edge it was: they
/// only end at the new vertex. So the fan is walked once, and an edge is looked up by the vertex at its end.
///
/// Needs   Nothing but edge splits changes the links after a vertex was added.
/// Says    "Border exist.." where the walk of FindEdge does.
/// Cost    n log n once for a fan of n, then constant on the average.
class CrowdedFans
{
public:
    /// Names a vertex as crowded.
    void Add(const DSVertex& vertex);

    /// The edge that FindEdge would find, or null: the vertex is not crowded, or FindEdge has to decide.
    DSEdge* FindEdge(std::uint32_t v1, std::uint32_t v2);

private:
    struct Spoke
    {
        std::uint32_t end; ///< the id of the vertex at which it ended when the fan was walked
        std::size_t turn;  ///< its place in the walk
        const DSHalfEdge* pHalfEdge;
    };
    struct Fan
    {
        std::vector<Spoke> spokes; ///< by end and turn
        /// Where the spokes to an end begin that may not be split yet.
        std::unordered_map<std::uint32_t, std::size_t> first;
        const DSHalfEdge* pForwardEnd = nullptr; ///< on a hole; null when the fan closes
        std::size_t forwardTurns = 0;
    };

    static Fan WalkAround(const DSVertex& vertex);

    std::unordered_map<std::uint32_t, Fan> m_Fans;
};
}
