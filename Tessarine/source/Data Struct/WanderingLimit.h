#pragma once
#include "DSBrep.h"
#include <cstdint>

namespace tessarine
{
/// How far the walks around the vertices of one solid may lead away from them, all together. Where many faces run
/// the same way along their edges, each walk can visit most of the mesh.
class WanderingLimit
{
public:
    explicit WanderingLimit(std::uint64_t steps) : m_nLeft(steps) {}

    /// A million half-edges and eight times the edges.
    static WanderingLimit OfEdges(std::size_t edges)
    {
        return WanderingLimit(1'000'000 + 8 * std::uint64_t{edges});
    }

    /// 30 million half-edges: about a second.
    static WanderingLimit OfPatience() { return WanderingLimit(30'000'000); }

    /// Lets a walk go as far as it leads.
    static WanderingLimit None() { return WanderingLimit(UINT64_MAX); }

    /// To be asked at each half-edge of the walk around a vertex. One that leaves the vertex costs nothing.
    /// @return false when the walk has to end
    bool Allows(const DSHalfEdge& halfEdge, const DSVertex& vertex)
    {
        if (halfEdge.GetVertex() == &vertex)
        {
            return true;
        }
        if (m_nLeft == 0)
        {
            return false;
        }
        --m_nLeft;
        return true;
    }

private:
    std::uint64_t m_nLeft;
};
}
