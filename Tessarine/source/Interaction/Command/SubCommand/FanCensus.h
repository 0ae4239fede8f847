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
///
/// Then it tells when all faces in a plain fan have been cut: from there on nothing around the vertex changes.
class FanCensus
{
public:
    /// Counts the half-edges that leave each vertex.
    explicit FanCensus(const DSSolid& solid);

    /// Walks around a vertex whose walk is known to be closed, and silent.
    void Visit(const DSVertex& vertex);

    /// False as long as the vertex was not visited. To be asked before the first cut.
    bool IsPlain(const DSVertex& vertex) const;

    /// The vertex was put on an edge between two faces that run in opposite directions along it.
    void NoteSplit(std::uint32_t vertexID);

    /// A face has been cut, one of whose corners was at the vertex.
    /// @return whether it was the last one of a plain fan
    bool NoteCut(const DSVertex& vertex);

private:
    /// Longer walks are not looked at.
    static constexpr std::uint32_t kMostTurns = 32;
    /// In the place of a count: the fan is not plain.
    static constexpr std::uint8_t kNotPlain = 0xFF;

    std::size_t PlaceOf(const DSVertex& vertex) const;

    std::uint32_t m_nLowestID = 0;
    std::vector<std::uint32_t> m_Leaving; ///< by place
    std::vector<std::uint8_t> m_Uncut;    ///< by place: the faces of a plain fan that are still to be cut
};
}
