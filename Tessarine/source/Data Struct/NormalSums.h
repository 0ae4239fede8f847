#pragma once
#include "VertexWalk.h"
#include "WanderingLimit.h"
#include <vector>

namespace tessarine
{
/// The sum of the normals around vertices, several of them at a time: a walk waits for memory at each link, and
/// the waits of walks that go on side by side overlap. Every sum has the order of its own walk.
class NormalSums
{
public:
    explicit NormalSums(WanderingLimit limit) : m_Limit(limit) { m_Walks.reserve(kWalksAtATime); }

    /// A vertex that no face uses has no normal, nor has one whose half-edge makes up a face of one corner.
    static bool HasFacesAround(const DSVertex* vertex)
    {
        return vertex != nullptr && vertex->GetHalfEdge() != nullptr &&
               vertex->GetHalfEdge()->GetEdge() != nullptr;
    }

    /// Needs   The vertex has a half-edge. Its normal stands when Finish has been called.
    void Add(DSVertex& vertex)
    {
        m_Walks.push_back({&vertex, VertexWalk(vertex.GetHalfEdge())});
        if (m_Walks.size() == kWalksAtATime)
        {
            Finish();
        }
    }

    /// Ends all walks, and makes the sums unit vectors.
    void Finish();

    /// How many walks the limit has cut short.
    std::size_t CountCutWalks() const { return m_nCutWalks; }
    /// Tells on standard error how many walks the limit has cut short, if it has any.
    void SayCutWalks() const;

private:
    struct Walk
    {
        DSVertex* pVertex;
        VertexWalk at;
    };

    static constexpr std::size_t kWalksAtATime = 16;

    void AskForEdgesAndLoops() const;
    void AskForTwinsAndFaces() const;
    bool Advance();

    WanderingLimit m_Limit;
    std::size_t m_nCutWalks = 0;
    std::vector<Walk> m_Walks;
};
}
