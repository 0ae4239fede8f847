#include "SolidCopier.h"
#include "CycleGuard.h"
#include "EdgeMatcher.h"
#include "MANBrepElementManager.h"
#include <algorithm>

namespace tessarine
{
namespace
{
constexpr std::uint32_t kNoPlace = 0xFFFFFFFF;
}

SolidCopier::SolidCopier(MANBrepElementManager& manager, const DSSolid& source, DSSolid& target)
    : m_Manager(manager), m_Source(source), m_Target(target)
{
    ASSERT(target.GetVertexList().empty() && target.GetFaceList().empty() && target.GetEdgeList().empty());
    std::uint32_t highestID = 0;
    m_nLowestID = kNoPlace;
    for (const DSVertex* pVertex : source.GetVertexList())
    {
        if (pVertex != nullptr)
        {
            m_nLowestID = std::min(m_nLowestID, pVertex->GetID());
            highestID = std::max(highestID, pVertex->GetID());
        }
    }
    m_PlaceOfID.assign(m_nLowestID <= highestID ? highestID - m_nLowestID + 1 : 0, kNoPlace);
}

void SolidCopier::CopyVertices()
{
    m_Target.GetVertexList().reserve(m_Source.GetVertexList().size());
    std::size_t place = 0;
    for (const DSVertex* pSource : m_Source.GetVertexList())
    {
        DSVertex* pVertex = m_Manager.CreateVertex();
        if (pSource != nullptr)
        {
            pVertex->GetPosition() = pSource->GetPosition();
            NotePlace(*pSource, place);
        }
        m_Target.GetVertexList().push_back(pVertex);
        ++place;
    }
}

/// The first place of a vertex counts.
void SolidCopier::NotePlace(const DSVertex& vertex, std::size_t place)
{
    std::uint32_t& entry = m_PlaceOfID[vertex.GetID() - m_nLowestID];
    entry = std::min(entry, static_cast<std::uint32_t>(place));
}

void SolidCopier::CopyFaces()
{
    m_Target.GetFaceList().reserve(m_Source.GetFaceList().size());
    m_Target.GetEdgeList().reserve(m_Source.GetEdgeList().size());
    EdgeMatcher matcher(m_Manager, m_Target, m_Source.GetEdgeList().size(), EdgeMatcher::Reports::No);
    std::size_t index = 0;
    for (const DSFace* pSource : m_Source.GetFaceList())
    {
        ASSERT(pSource != nullptr);
        DSFace* pFace = m_Manager.CreateFace();
        m_Target.GetFaceList().push_back(pFace);
        pFace->GetSolid() = &m_Target;
        for (const DSLoop* pSourceLoop : pSource->GetLoopList())
        {
            DSLoop* pLoop = CopyLoop(*pSourceLoop);
            pFace->GetLoopList().push_back(pLoop);
            pLoop->GetFace() = pFace;
            matcher.MatchLoop(*pLoop, index);
        }
        ++index;
    }
    matcher.Finish();
}

DSLoop* SolidCopier::CopyLoop(const DSLoop& source)
{
    DSLoop* pLoop = m_Manager.CreateLoop();
    CycleGuard guard;
    const DSHalfEdge* pSource = source.GetHalfEdge();
    do
    {
        ASSERT(pSource != nullptr);
        guard.Visit(pSource);
        DSHalfEdge* pHalfEdge = CopyHalfEdge(*pSource, pLoop);
        if (pLoop->GetHalfEdge() == nullptr)
        {
            pLoop->GetHalfEdge() = pHalfEdge;
            pHalfEdge->MakeCircle();
        }
        else
        {
            pHalfEdge->InsertBefore(pLoop->GetHalfEdge());
        }
        pSource = pSource->GetNext();
    } while (pSource != source.GetHalfEdge());
    return pLoop;
}

DSHalfEdge* SolidCopier::CopyHalfEdge(const DSHalfEdge& source, DSLoop* loop)
{
    DSHalfEdge* pHalfEdge = m_Manager.CreateHalfEdge();
    pHalfEdge->GetVertex() = CopyOf(source.GetVertex());
    pHalfEdge->GetVertex()->GetHalfEdge() = pHalfEdge;
    pHalfEdge->GetLoop() = loop;
    return pHalfEdge;
}

DSVertex* SolidCopier::CopyOf(const DSVertex* vertex) const
{
    ASSERT(vertex != nullptr);
    const std::uint32_t distance = vertex->GetID() - m_nLowestID;
    const std::uint32_t place = distance < m_PlaceOfID.size() ? m_PlaceOfID[distance] : kNoPlace;
    const bool isInSource = place != kNoPlace && m_Source.GetVertexList()[place] == vertex;
    ASSERT(isInSource);
    return m_Target.GetVertexList()[place];
}
}
