#include "NormalSums.h"
#include "ErrorLine.h"

namespace tessarine
{
namespace
{
const DSFace& FaceOf(const DSHalfEdge& halfEdge)
{
    ASSERT(halfEdge.GetLoop() != nullptr);
    ASSERT(halfEdge.GetLoop()->GetFace() != nullptr);
    return *halfEdge.GetLoop()->GetFace();
}
}

void NormalSums::Finish()
{
    for (bool isWalking = true; isWalking;)
    {
        AskForEdgesAndLoops();
        AskForTwinsAndFaces();
        isWalking = Advance();
    }
    for (const Walk& walk : m_Walks)
    {
        walk.pVertex->GetNormal().Normalize();
    }
    m_Walks.clear();
}

void NormalSums::AskForEdgesAndLoops() const
{
    for (const Walk& walk : m_Walks)
    {
        if (!walk.at.IsAtEnd())
        {
            __builtin_prefetch(walk.at.Get()->GetEdge());
            __builtin_prefetch(walk.at.Get()->GetLoop());
        }
    }
}

void NormalSums::AskForTwinsAndFaces() const
{
    for (const Walk& walk : m_Walks)
    {
        if (!walk.at.IsAtEnd())
        {
            const DSHalfEdge& h = *walk.at.Get();
            ASSERT(h.GetEdge() != nullptr);
            __builtin_prefetch(h.GetEdge()->GetHalfEdge1());
            __builtin_prefetch(h.GetEdge()->GetHalfEdge2());
            __builtin_prefetch(&FaceOf(h).GetNormal());
        }
    }
}

/// @return whether a walk goes on
bool NormalSums::Advance()
{
    bool isWalking = false;
    for (Walk& walk : m_Walks)
    {
        if (walk.at.IsAtEnd())
        {
            continue;
        }
        if (!m_Limit.Allows(*walk.at.Get(), *walk.pVertex))
        {
            walk.at.Stop();
            ++m_nCutWalks;
            continue;
        }
        walk.pVertex->GetNormal() += FaceOf(*walk.at.Get()).GetNormal();
        walk.at.Step();
        __builtin_prefetch(walk.at.Get());
        isWalking = true;
    }
    return isWalking;
}

void NormalSums::SayCutWalks() const
{
    if (m_nCutWalks != 0)
    {
        PrintErrorLine(
            "the faces around " + std::to_string(m_nCutWalks) +
            " vertices run against their neighbours, and lead on and on: the normals there take in "
            "a part of them; turn the faces of the model the same way round");
    }
}
}
