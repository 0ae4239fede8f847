#pragma once
#include "DSBrep.h"
#include <cstdint>

namespace tessarine
{
/// How far the walks around the vertices of one solid may lead away from them, all together: a million
/// half-edges and eight times the edges. Where many faces run the same way along their edges, each walk can
/// visit most of the mesh.
class WanderingLimit
{
public:
    explicit WanderingLimit(std::size_t edges) : m_nLeft(kStepsOfASmallSolid + kStepsOfAnEdge * edges) {}

    /// Lets a walk go as far as it leads.
    static WanderingLimit None()
    {
        WanderingLimit none(0);
        none.m_nLeft = UINT64_MAX;
        return none;
    }

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
    static constexpr std::uint64_t kStepsOfASmallSolid = 1'000'000;
    static constexpr std::uint64_t kStepsOfAnEdge = 8;

    std::uint64_t m_nLeft;
};
}
