#pragma once
#include "smVec3f.h"
#include <cstdint>
#include <span>
#include <vector>

namespace tessarine
{
/// A triangle mesh as flat lists, which it does not own: three places in `positions`, and a normal, for each face.
struct FlatMesh
{
    std::span<const smVec3f> positions;
    std::span<const std::int32_t> corners; ///< three times as many as normals, or more
    std::span<const smVec3f> normals;

    std::size_t CountFaces() const { return normals.size(); }
    /// Corners go round: 3 is the first again.
    std::int32_t GetCorner(std::size_t face, std::size_t corner) const
    {
        return corners[3 * face + corner % 3];
    }
};

/// The edges of a triangle mesh, each once, at its lower vertex, and the vertices on its rims: those that have not as
/// many neighbours as corners of faces. A face that has a vertex twice makes it its own neighbour.
///
/// Cost    Linear.
class VertexLinks
{
public:
    explicit VertexLinks(const FlatMesh& mesh);

    std::size_t CountEdges() const { return m_UpperEnds.size(); }

    /// The other vertices of the edges at a lower vertex, in the order in which the faces show them.
    std::span<const std::int32_t> GetUpperEnds(std::size_t vertex) const
    {
        const std::int32_t nFirst = m_FirstEnds[vertex];
        return {m_UpperEnds.data() + nFirst, static_cast<std::size_t>(m_FirstEnds[vertex + 1] - nFirst)};
    }

    /// How many edges end at the vertex; one with itself ends there twice.
    std::int32_t GetValence(std::size_t vertex) const { return m_Valences[vertex]; }
    bool IsOnRim(std::int32_t nVertex) const { return m_IsOnRim[static_cast<std::size_t>(nVertex)] != 0; }

private:
    void CollectUpperEnds(const FlatMesh& mesh);
    void DropRepeatedEnds(std::vector<std::int32_t> corners);

    std::vector<std::int32_t> m_FirstEnds; ///< by vertex, and one more: where its upper ends begin
    std::vector<std::int32_t> m_UpperEnds;
    std::vector<std::int32_t> m_Valences;
    std::vector<std::uint8_t> m_IsOnRim;
};
}
