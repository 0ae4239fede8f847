#pragma once
#include "DSBrep.h"
#include <cstdint>
#include <vector>

namespace tessarine
{
/// The place of each vertex in the list of its solid. As long as nothing but a builder made the solid, that is
/// the id less the first vertex's.
class VertexPlaces
{
public:
    explicit VertexPlaces(const DSSolid& solid);

    /// Fails   A vertex that is not in the list is an assertion.
    std::int32_t GetPlace(const DSVertex& vertex) const
    {
        const std::uint32_t nOffset = vertex.GetID() - m_nLowestID;
        const bool isInTheList = nOffset < m_nIDs && (m_Places.empty() || m_Places[nOffset] != kNoPlace);
        ASSERT(isInTheList);
        return m_Places.empty() ? static_cast<std::int32_t>(nOffset) : m_Places[nOffset];
    }

private:
    static constexpr std::int32_t kNoPlace = -1;

    std::uint32_t m_nLowestID = 0;
    std::uint32_t m_nIDs = 0;           ///< from the lowest to the highest
    std::vector<std::int32_t> m_Places; ///< by id from the lowest; empty where ids and places are in step
};
}
