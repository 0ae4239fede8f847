#pragma once
#include "FootSearch.h"
#include "MANBrepElementManager.h"
#include <string>
#include <vector>

namespace tessarine
{
/// The incremental connection as it is defined: a tree of nearest feet for each query, lists that are searched from the
/// front, Euler operators by the ids of vertices, and the normals of the whole new solid behind each triangle.
class LiteralConnection
{
public:
    LiteralConnection(MANBrepElementManager& elements, DSSolid& solid, FootList feet);

    /// @return false where no face yields a seed
    bool MakeSeed();
    void ConnectNext();

    const std::string& GetConsole() const { return m_Console; }
    const std::vector<DSEdge*>& GetFrontEdges() const { return m_FrontEdges; }
    const std::vector<std::int32_t>& GetFootVertices() const { return m_FootVertex; }

private:
    std::int32_t FindNearest(const smVec3d& point, const std::vector<std::int32_t>& feet) const;
    std::int32_t FindThird(const smVec3d& a, const smVec3d& b, const std::vector<std::int32_t>& feet) const;
    void BuildSeed(std::int32_t a, std::int32_t b, std::int32_t c, const DSFace& face);
    std::int32_t FindCandidate(const DSEdge& edge);
    void BuildCandidates(const DSHalfEdge& open);
    void ConnectEdge(const DSHalfEdge& open, std::int32_t foot);
    bool HasEdge(std::uint32_t v1, std::uint32_t v2) const;
    const DSHalfEdge* FindOpen(const DSEdge& edge) const;
    void CalcNormals();
    const smVec3d& PointOf(std::int32_t foot) const { return m_Feet.points[static_cast<std::size_t>(foot)]; }
    int CountWithVertex() const;

    MANBrepElementManager& m_Elements;
    DSSolid& m_Solid;
    FootList m_Feet;
    std::vector<std::int32_t> m_FootVertex;
    std::vector<DSEdge*> m_FrontEdges;
    std::vector<std::int32_t> m_Candidates;
    std::vector<DSFace*> m_NearFaces;
    std::uint32_t m_nNewSolid = 0;
    std::uint32_t m_nOuterFace = 0;
    int m_nFaces = 0;
    std::string m_Console;
};
}
