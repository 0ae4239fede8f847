#include "CrowdedFans.h"
#include "Console.h"
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
    const DSHalfEdge* pLast = pStart;
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
            pLast = pStart; // from which the walk goes on backward
            h = FindTwin(*pStart->GetPrev());
        }
        pLast = h != nullptr ? h : pLast;
    } while (h != nullptr && h != pStart);
    fan.pBackwardEnd = fan.pForwardEnd != nullptr ? pLast : nullptr;

    std::sort(fan.spokes.begin(), fan.spokes.end(),
              [](const Spoke& a, const Spoke& b)
              { return std::tie(a.end, a.turn) < std::tie(b.end, b.turn); });
    for (std::size_t i = fan.spokes.size(); i-- != 0;)
    {
        fan.first[fan.spokes[i].end] = i;
    }
    return fan;
}

/// The first spoke of the walk that ends there now.
const CrowdedFans::Spoke* CrowdedFans::FindSpoke(Fan& fan, std::uint32_t end)
{
    const auto first = fan.first.find(end);
    if (first == fan.first.end())
    {
        return nullptr;
    }
    // A spoke that was split never ends there again.
    for (std::size_t& i = first->second; i != fan.spokes.size() && fan.spokes[i].end == end; ++i)
    {
        if (fan.spokes[i].pHalfEdge->GetNext()->GetVertex()->GetID() == end)
        {
            return &fan.spokes[i];
        }
    }
    return nullptr;
}

DSEdge* CrowdedFans::FindEdge(std::uint32_t v1, std::uint32_t v2)
{
    Fan& fan = m_Fans.at(v1);
    const Spoke* pSpoke = FindSpoke(fan, v2);
    // At its ends the walk looks for the twins that are not there, and GetTwin has its say.
    if (fan.pForwardEnd != nullptr && (pSpoke == nullptr || pSpoke->turn >= fan.forwardTurns))
    {
        fan.pForwardEnd->GetTwin();
    }
    if (pSpoke != nullptr)
    {
        return pSpoke->pHalfEdge->GetEdge();
    }
    if (fan.pBackwardEnd != nullptr)
    {
        fan.pBackwardEnd->GetPrev()->GetTwin();
    }
    DebugConsole() << "V1 ID: " << v1 << '\n' << "V2 ID: " << v2 << '\n';
    return nullptr;
}
}
