#include "VertexPlaces.h"
#include <algorithm>

namespace tessarine
{
VertexPlaces::VertexPlaces(const DSSolid& solid)
{
    const auto& vertices = solid.GetVertexList();
    if (vertices.empty())
    {
        return;
    }
    m_nLowestID = vertices[0]->GetID();
    std::uint32_t nHighestID = m_nLowestID;
    std::uint32_t nNextInARow = m_nLowestID;
    bool isInARow = true;
    for (const DSVertex* pVertex : vertices)
    {
        isInARow = isInARow && pVertex->GetID() == nNextInARow++;
        m_nLowestID = std::min(m_nLowestID, pVertex->GetID());
        nHighestID = std::max(nHighestID, pVertex->GetID());
    }
    m_nIDs = nHighestID - m_nLowestID + 1;
    if (isInARow)
    {
        return;
    }
    m_Places.assign(m_nIDs, kNoPlace);
    std::int32_t nPlace = 0;
    for (const DSVertex* pVertex : vertices)
    {
        m_Places[pVertex->GetID() - m_nLowestID] = nPlace++;
    }
}
}
