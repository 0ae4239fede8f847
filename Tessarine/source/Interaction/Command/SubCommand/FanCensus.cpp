#include "FanCensus.h"
#include "CycleGuard.h"
#include "DSBrep.h"
#include <algorithm>
#include <array>

namespace tessarine
{
FanCensus::FanCensus(const DSSolid& solid)
{
    std::uint32_t highestID = 0;
    m_nLowestID = UINT32_MAX;
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        ASSERT(pVertex != nullptr);
        m_nLowestID = std::min(m_nLowestID, pVertex->GetID());
        highestID = std::max(highestID, pVertex->GetID());
    }
    const std::size_t places = m_nLowestID <= highestID ? std::size_t{highestID} - m_nLowestID + 1 : 0;
    m_Leaving.assign(places, 0);
    m_Uncut.assign(places, kNotPlain);
    for (const DSFace* pFace : solid.GetFaceList())
    {
        ASSERT(pFace != nullptr);
        for (const DSLoop* pLoop : pFace->GetLoopList())
        {
            CycleGuard guard;
            const DSHalfEdge* h = pLoop->GetHalfEdge();
            do
            {
                guard.Visit(h);
                ++m_Leaving.at(PlaceOf(*h->GetVertex()));
                h = h->GetNext();
            } while (h != pLoop->GetHalfEdge());
        }
    }
}

std::size_t FanCensus::PlaceOf(const DSVertex& vertex) const
{
    return vertex.GetID() - m_nLowestID;
}

void FanCensus::Visit(const DSVertex& vertex)
{
    const std::uint32_t leaving = m_Leaving[PlaceOf(vertex)];
    if (leaving > kMostTurns)
    {
        return;
    }
    std::array<std::uint32_t, kMostTurns> ends{};
    std::uint32_t met = 0;
    const DSHalfEdge* h = vertex.GetHalfEdge();
    do
    {
        const std::uint32_t end = h->GetNext()->GetVertex()->GetID();
        const bool isNew = std::find(ends.begin(), ends.begin() + met, end) == ends.begin() + met;
        if (h->GetVertex() != &vertex || met == leaving || !isNew)
        {
            return;
        }
        ends[met++] = end;
        h = h->GetTwin()->GetNext();
    } while (h != vertex.GetHalfEdge());
    if (met == leaving)
    {
        m_Uncut[PlaceOf(vertex)] = static_cast<std::uint8_t>(leaving);
    }
}

bool FanCensus::IsPlain(const DSVertex& vertex) const
{
    const std::size_t place = PlaceOf(vertex);
    return place < m_Leaving.size() && m_Uncut[place] != kNotPlain;
}

void FanCensus::NoteSplit(std::uint32_t vertexID)
{
    const std::size_t place = vertexID - m_nLowestID;
    if (place >= m_Uncut.size())
    {
        m_Uncut.resize(place + 1, kNotPlain);
    }
    m_Uncut[place] = 2;
}

bool FanCensus::NoteCut(const DSVertex& vertex)
{
    const std::size_t place = PlaceOf(vertex);
    if (place >= m_Uncut.size() || m_Uncut[place] == kNotPlain)
    {
        return false;
    }
    return --m_Uncut[place] == 0;
}
}
