#pragma once
#include "MANBrepElementManager.h"
#include <map>
#include <string>
#include <vector>

namespace tessarine
{
/// The edges of a build in the plainest form: an ordered map that is asked once for each half-edge, after all
/// of them were made. It judges the fast form.
struct LiteralBuild
{
    struct Edge
    {
        std::uint32_t halfEdge1;
        std::uint32_t halfEdge2; ///< kNone on a boundary
        bool operator==(const Edge&) const = default;
    };
    static constexpr std::uint32_t kNone = 0xFFFFFFFF;

    std::vector<Edge> edges;
    std::vector<std::uint32_t> edgeOfHalfEdge; ///< place in `edges`; kNone without one
    std::vector<std::string> lines;

    LiteralBuild(const IndexList& indices, const IndexList& faceSizes)
    {
        lines.push_back("Number of halfedge: " + std::to_string(indices.size()));
        edgeOfHalfEdge.assign(indices.size(), kNone);
        std::uint32_t offset = 0;
        for (std::size_t face = 0; face < faceSizes.size(); ++face)
        {
            const auto size = static_cast<std::uint32_t>(faceSizes[face]);
            if (size == 1)
            {
                lines.push_back("face id: " + std::to_string(face));
                lines.push_back("error");
            }
            for (std::uint32_t corner = 0; size > 1 && corner < size; ++corner)
            {
                Match(offset + corner, indices, offset + (corner + 1) % size);
            }
            offset += size;
        }
    }

private:
    void Match(std::uint32_t halfEdge, const IndexList& indices, std::uint32_t next)
    {
        const std::pair key(indices[halfEdge] - 1, indices[next] - 1);
        const auto found = m_EdgeOfPair.find(key);
        if (found == m_EdgeOfPair.end())
        {
            edgeOfHalfEdge[halfEdge] = static_cast<std::uint32_t>(edges.size());
            m_EdgeOfPair[key] = edgeOfHalfEdge[halfEdge];
            m_EdgeOfPair[std::pair(key.second, key.first)] = edgeOfHalfEdge[halfEdge];
            edges.push_back({halfEdge, kNone});
            return;
        }
        edgeOfHalfEdge[halfEdge] = found->second;
        Edge& edge = edges[found->second];
        if (edge.halfEdge2 != kNone)
        {
            lines.push_back("Edge has already two halfedges: " + std::to_string(indices[edge.halfEdge1] - 1) +
                            "," + std::to_string(indices[edge.halfEdge2] - 1));
        }
        edge.halfEdge2 = halfEdge;
    }

    std::map<std::pair<std::int32_t, std::int32_t>, std::uint32_t> m_EdgeOfPair;
};
}
