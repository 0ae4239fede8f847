#pragma once
#include <cstdint>
#include <vector>

namespace tessarine
{
class DSFace;
class DSVertex;

/// What lies around a vertex, ring by ring: the first ring are the vertices that an edge joins to it, and each further
/// one those beside the ring before.
///
/// Needs   Vertices with faces all around them (asserted).
/// Cost    Linear in what is met, but for the first time.
class VertexRings
{
public:
    void Grow(const DSVertex& centre, int rings);

    /// Those of all rings, without the centre, as they were met.
    const std::vector<const DSVertex*>& GetVertices() const { return m_Vertices; }
    /// Those around the centre and around all rings but the last.
    const std::vector<const DSFace*>& GetFaces() const { return m_Faces; }

private:
    /// For each element, the number of the last growth that met it.
    using Marks = std::vector<std::uint32_t>;

    bool IsNew(Marks& marks, std::uint32_t index) const;
    void WalkAround(const DSVertex& vertex);

    Marks m_VertexMarks;
    Marks m_FaceMarks;
    std::uint32_t m_nGrowth = 0;
    std::vector<const DSVertex*> m_Vertices;
    std::vector<const DSFace*> m_Faces;
};
}
