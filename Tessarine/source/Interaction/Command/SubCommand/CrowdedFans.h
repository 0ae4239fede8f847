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
/// Needs   Nothing but edge splits changes the links after a vertex was added, and none of the vertices that
///         are asked for comes from them.
/// Says    "Border exist.." where the walk of FindEdge does, and both ids where there is no edge.
/// Cost    n log n once for a fan of n, then constant on the average.
class CrowdedFans
{
public:
    /// Names a vertex as crowded. It has a half-edge.
    void Add(const DSVertex& vertex);

    bool Contains(std::uint32_t vertex) const { return !m_Fans.empty() && m_Fans.count(vertex) != 0; }

    /// What FindEdge gives and says, for a vertex v1 that was added.
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
        const DSHalfEdge* pForwardEnd = nullptr; ///< where the walk meets a hole; null when the fan closes
        const DSHalfEdge* pBackwardEnd = nullptr;
        std::size_t forwardTurns = 0;
    };

    static Fan WalkAround(const DSVertex& vertex);
    static const Spoke* FindSpoke(Fan& fan, std::uint32_t end);

    std::unordered_map<std::uint32_t, Fan> m_Fans;
};
}
