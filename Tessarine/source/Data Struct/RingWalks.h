#pragma once
#include "LookAhead.h"
#include "VertexWalk.h"
#include <array>
#include <optional>
#include <vector>

namespace tessarine
{
/// The half-edges that leave a vertex, in the order of its VertexWalk; none at a vertex without faces.
struct VertexRing
{
    std::vector<const DSHalfEdge*> halfEdges;
    bool endedAtBoundary = false;
};

/// Walks around the vertices of a list, several of them side by side: a walk waits for memory at each link, and the
/// waits of such walks overlap.
///
/// Needs   Half-edges with edges, and no null entry (asserted).
class RingWalks
{
public:
    /// Visits each vertex with its ring, in the order of the list.
    ///
    /// @param ask called for each half-edge as it is met, to ask for the memory that the visit will read; the edge and its
    ///        sides are at hand by then
    template <class TAsk, class TVisit>
    static void ForEach(const ElementList<DSVertex>& list, TAsk ask, TVisit visit)
    {
        RingWalks walks;
        ForEachVertexLookingAhead(list,
                                  [&](const DSVertex* pVertex)
                                  {
                                      walks.Add(pVertex);
                                      if (walks.m_nWalks == kWalksAtATime)
                                      {
                                          walks.Finish(ask, visit);
                                      }
                                  });
        walks.Finish(ask, visit);
    }

private:
    static constexpr std::size_t kWalksAtATime = 16;

    struct Walk
    {
        const DSVertex* pVertex = nullptr;
        std::optional<VertexWalk> at;
        VertexRing ring;

        bool IsWalking() const { return at && !at->IsAtEnd(); }
    };

    void Add(const DSVertex* pVertex)
    {
        ASSERT(pVertex != nullptr);
        Walk& walk = m_Walks[m_nWalks++];
        walk.pVertex = pVertex;
        walk.at.reset();
        walk.ring.halfEdges.clear();
        if (pVertex->GetHalfEdge() != nullptr)
        {
            walk.at.emplace(pVertex->GetHalfEdge());
        }
    }

    template <class TAsk, class TVisit>
    void Finish(TAsk& ask, TVisit& visit)
    {
        for (bool isWalking = true; isWalking;)
        {
            AskForEdges();
            AskForTwins();
            isWalking = Advance(ask);
        }
        for (std::size_t i = 0; i < m_nWalks; ++i)
        {
            Walk& walk = m_Walks[i];
            walk.ring.endedAtBoundary = walk.at && walk.at->EndedAtBoundary();
            visit(*walk.pVertex, static_cast<const VertexRing&>(walk.ring));
        }
        m_nWalks = 0;
    }

    void AskForEdges() const
    {
        for (std::size_t i = 0; i < m_nWalks; ++i)
        {
            if (m_Walks[i].IsWalking())
            {
                __builtin_prefetch(m_Walks[i].at->Get()->GetEdge());
            }
        }
    }

    void AskForTwins() const
    {
        for (std::size_t i = 0; i < m_nWalks; ++i)
        {
            if (m_Walks[i].IsWalking())
            {
                const DSEdge* pEdge = m_Walks[i].at->Get()->GetEdge();
                ASSERT(pEdge != nullptr);
                __builtin_prefetch(pEdge->GetHalfEdge1());
                __builtin_prefetch(pEdge->GetHalfEdge2());
            }
        }
    }

    /// @return whether a walk goes on
    template <class TAsk>
    bool Advance(TAsk& ask)
    {
        bool isWalking = false;
        for (std::size_t i = 0; i < m_nWalks; ++i)
        {
            Walk& walk = m_Walks[i];
            if (!walk.IsWalking())
            {
                continue;
            }
            const DSHalfEdge* h = walk.at->Get();
            walk.ring.halfEdges.push_back(h);
            ask(*h);
            walk.at->Step();
            __builtin_prefetch(walk.at->Get());
            isWalking = true;
        }
        return isWalking;
    }

    std::array<Walk, kWalksAtATime> m_Walks;
    std::size_t m_nWalks = 0;
};
}
