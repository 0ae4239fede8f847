#include "CrowdedFans.h"
#include "DSBrep.h"
#include <algorithm>
#include <tuple>

namespace tessarine
{
namespace
{
/// GetTwin that says nothing.
const DSHalfEdge* FindTwin(const DSHalfEdge& halfEdge)
{
    const DSEdge* pEdge = halfEdge.GetEdge();
    ASSERT(pEdge != nullptr);
    if (pEdge->GetHalfEdge1() == &halfEdge)
    {
        return pEdge->GetHalfEdge2();
    }
    return pEdge->GetHalfEdge2() == &halfEdge ? pEdge->GetHalfEdge1() : nullptr;
}
}

void CrowdedFans::Add(const DSVertex& vertex)
{
    m_Fans[vertex.GetID()] = WalkAround(vertex);
}

/// Kept: where faces run the same way along an edge the walk leaves the vertex, and what it meets there
/// counts.
CrowdedFans::Fan CrowdedFans::WalkAround(const DSVertex& vertex)
{
    Fan fan;
    const DSHalfEdge* pStart = vertex.GetHalfEdge();
    const DSHalfEdge* h = pStart;
    do
    {
        fan.spokes.push_back({h->GetNext()->GetVertex()->GetID(), fan.spokes.size(), h});
        if (fan.pForwardEnd != nullptr)
        {
            h = FindTwin(*h->GetPrev());
        }
        else if (const DSHalfEdge* pTwin = FindTwin(*h); pTwin != nullptr)
        {
            h = pTwin->GetNext();
        }
        else
        {
            fan.pForwardEnd = h;
            fan.forwardTurns = fan.spokes.size();
            h = FindTwin(*pStart->GetPrev());
        }
    } while (h != nullptr && h != pStart);

    std::sort(fan.spokes.begin(), fan.spokes.end(),
              [](const Spoke& a, const Spoke& b)
              { return std::tie(a.end, a.turn) < std::tie(b.end, b.turn); });
    for (std::size_t i = fan.spokes.size(); i-- != 0;)
    {
        fan.first[fan.spokes[i].end] = i;
    }
    return fan;
}

DSEdge* CrowdedFans::FindEdge(std::uint32_t v1, std::uint32_t v2)
{
    const auto found = m_Fans.empty() ? m_Fans.end() : m_Fans.find(v1);
    if (found == m_Fans.end())
    {
        return nullptr;
    }
    Fan& fan = found->second;
    const auto first = fan.first.find(v2);
    if (first == fan.first.end())
    {
        return nullptr;
    }
    std::size_t& place = first->second;
    while (place != fan.spokes.size() && fan.spokes[place].end == v2)
    {
        const Spoke& spoke = fan.spokes[place];
        if (spoke.pHalfEdge->GetNext()->GetVertex()->GetID() == v2)
        {
            if (fan.pForwardEnd != nullptr && spoke.turn >= fan.forwardTurns)
            {
                fan.pForwardEnd->GetTwin(); // says what the walk says when it turns back
            }
            return spoke.pHalfEdge->GetEdge();
        }
        ++place; // split: it never ends there again
    }
    return nullptr;
}
}
