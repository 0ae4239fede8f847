#pragma once
#include <cstdint>
#include <vector>

namespace tessarine
{
class DSSolid;
class DSVertex;

/// Which vertices of a solid have one plain fan: a closed walk that meets all half-edges which leave the vertex and
/// no other, each of them with another vertex at its end. Around such a vertex the edge of a half-edge is the one
/// that FindEdge finds for its two vertices, and it stays so while edges are split, as the walk stays the same and
/// only ends become new vertices.
class FanCensus
{
public:
    /// Counts the half-edges that leave each vertex.
    explicit FanCensus(const DSSolid& solid);

    /// Walks around a vertex whose walk is known to be closed, and silent.
    void Visit(const DSVertex& vertex);

    /// False as long as the vertex was not visited.
    bool IsPlain(const DSVertex& vertex) const;

private:
    /// Longer walks are not looked at.
    static constexpr std::uint32_t kMostTurns = 32;

    std::size_t PlaceOf(const DSVertex& vertex) const;

    std::uint32_t m_nLowestID = 0;
    std::vector<std::uint32_t> m_Leaving; ///< by place
    std::vector<bool> m_IsPlain;          ///< by place
};
}
