#pragma once
#include "DSBrep.h"
#include <cstdint>
#include <vector>

namespace tessarine
{
/// The half-edges that leave each vertex of a solid, and from that the valences, without a walk around the vertex for
/// each question. A vertex with several fans has the valence of the fan of its own half-edge, as GetValence tells it.
///
/// Needs   Every change of the solid is noted. A vertex that is asked for has no rim around it.
/// Cost    Making it is linear. A question is constant, but for the first one after a change at a vertex with several
///         fans.
class FanValences
{
public:
    explicit FanValences(const DSSolid& solid);

    int GetValence(DSVertex& vertex);
    /// How many half-edges leave the vertex, in all its fans.
    int CountLeaving(const DSVertex& vertex) const { return GetCount(vertex).nLeaving; }

    /// So many half-edges that leave the vertex are new, or gone where the number is negative.
    void Note(const DSVertex& vertex, int nChange);

private:
    static constexpr std::int32_t kUnknown = 0;

    struct Count
    {
        std::int32_t nLeaving = 0;
        std::int32_t nValence = kUnknown;
    };

    std::size_t PlaceOf(const DSVertex& vertex) const;
    Count& GetCount(const DSVertex& vertex) { return m_Counts[PlaceOf(vertex)]; }
    const Count& GetCount(const DSVertex& vertex) const { return m_Counts[PlaceOf(vertex)]; }

    std::uint32_t m_nLowestID = 0;
    std::vector<Count> m_Counts; ///< by id from the lowest
};
}
