#include "FanValences.h"
#include "CycleGuard.h"
#include <algorithm>

namespace tessarine
{
FanValences::FanValences(const DSSolid& solid)
{
    std::uint32_t highestID = 0;
    m_nLowestID = UINT32_MAX;
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        ASSERT(pVertex != nullptr);
        m_nLowestID = std::min(m_nLowestID, pVertex->GetID());
        highestID = std::max(highestID, pVertex->GetID());
    }
    m_Counts.resize(m_nLowestID <= highestID ? std::size_t{highestID} - m_nLowestID + 1 : 0);
    for (const DSFace* pFace : solid.GetFaceList())
    {
        ASSERT(pFace != nullptr && !pFace->GetLoopList().empty());
        CycleGuard guard;
        const DSHalfEdge* h = pFace->GetLoopList()[0]->GetHalfEdge();
        do
        {
            guard.Visit(h);
            ++GetCount(*h->GetVertex()).nLeaving;
            h = h->GetNext();
        } while (h != pFace->GetLoopList()[0]->GetHalfEdge());
    }
}

std::size_t FanValences::PlaceOf(const DSVertex& vertex) const
{
    const std::size_t place = vertex.GetID() - m_nLowestID;
    ASSERT(place < m_Counts.size());
    return place;
}

int FanValences::GetValence(DSVertex& vertex)
{
    Count& count = GetCount(vertex);
    if (count.nValence == kUnknown)
    {
        count.nValence = vertex.GetValence();
    }
    return count.nValence;
}

/// All half-edges in one fan stay in one fan.
void FanValences::Note(const DSVertex& vertex, int nChange)
{
    Count& count = GetCount(vertex);
    const bool hasOneFan = count.nValence == count.nLeaving;
    count.nLeaving += nChange;
    count.nValence = hasOneFan ? count.nLeaving : kUnknown;
}
}
