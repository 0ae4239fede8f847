#pragma once
#include <cstdint>
#include <map>
#include <vector>

namespace tessarine
{
/// Which vertices of a mesh stand for which points of a cloud, one for one.
struct PointPairs
{
    static constexpr std::int32_t kNone = -1;

    std::vector<std::int32_t> m_PointOwner; ///< by point: the id of its vertex
    std::map<std::uint32_t, std::int32_t>
        m_VertexPoint; ///< by vertex id: its point; also of vertices that are gone

    bool IsFree(std::size_t point) const { return m_PointOwner[point] < 0; }
    void Pair(std::uint32_t vertexID, std::size_t point)
    {
        m_VertexPoint[vertexID] = static_cast<std::int32_t>(point);
        m_PointOwner[point] = static_cast<std::int32_t>(vertexID);
    }
    /// The point of a vertex, or kNone.
    std::int32_t FindPoint(std::uint32_t vertexID) const
    {
        const auto found = m_VertexPoint.find(vertexID);
        return found == m_VertexPoint.end() ? kNone : found->second;
    }
};
}
