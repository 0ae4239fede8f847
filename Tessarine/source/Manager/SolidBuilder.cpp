#include "SolidBuilder.h"
#include <stdexcept>
#include <string>

namespace tessarine
{
SolidBuilder::SolidBuilder(MANBrepElementManager& manager, const Lists& lists, bool reversed)
    : m_Manager(manager), m_Lists(lists), m_bReversed(reversed)
{
    CheckFaceSizes();
    CheckNumbers(m_Lists.indices, m_Lists.positions.size(), "vertex");
    if (m_Lists.HasTexCoords())
    {
        CheckNumbers(*m_Lists.pTexIndices, m_Lists.pTexCoords->size(), "texture coordinate");
    }
}

void SolidBuilder::CheckFaceSizes()
{
    for (std::size_t i = 0; i < m_Lists.faceSizes.size(); ++i)
    {
        if (m_Lists.faceSizes[i] < 1)
        {
            throw std::out_of_range("face " + std::to_string(i + 1) + " has no corners");
        }
        m_nCorners += static_cast<std::size_t>(m_Lists.faceSizes[i]);
    }
}

void SolidBuilder::CheckNumbers(const IndexList& numbers, std::size_t limit, const char* what) const
{
    if (numbers.size() < m_nCorners)
    {
        throw std::out_of_range("the faces have " + std::to_string(m_nCorners) + " corners, but there are " +
                                std::to_string(numbers.size()) + " " + what + " numbers");
    }
    for (std::size_t corner = 0; corner < m_nCorners; ++corner)
    {
        if (numbers[corner] < 1 || static_cast<std::size_t>(numbers[corner]) > limit)
        {
            throw std::out_of_range("corner " + std::to_string(corner + 1) + " names " + what + " " +
                                    std::to_string(numbers[corner]) + " of " + std::to_string(limit));
        }
    }
}

DSSolid* SolidBuilder::MakeSolid()
{
    MakeRoom();
    m_pSolid = m_Manager.CreateSolid();
    m_pSolid->GetVertexList().reserve(m_Lists.positions.size());
    m_pSolid->GetFaceList().reserve(m_Lists.faceSizes.size());
    m_pSolid->GetEdgeList().reserve(m_nCorners / 2);
    return m_pSolid;
}

/// A closed mesh has half as many edges as corners. An open one has more, and the array grows.
void SolidBuilder::MakeRoom()
{
    ElementCounts counts;
    counts.vertices = m_Lists.positions.size();
    counts.halfEdges = m_nCorners;
    counts.edges = m_nCorners / 2;
    counts.faces = m_Lists.faceSizes.size();
    counts.loops = counts.faces;
    m_Manager.ReserveMore(counts);
}

void SolidBuilder::MakeVertices()
{
    for (const smVec3d& position : m_Lists.positions)
    {
        DSVertex* pVertex = m_Manager.CreateVertex();
        pVertex->GetPosition() = position;
        m_pSolid->GetVertexList().push_back(pVertex);
    }
}

/// The edges of a face are matched as soon as it is made, while its records are still at hand. That gives the
/// same ids as matching them all at the end, because each kind counts for itself.
void SolidBuilder::MakeFaces(EdgeMatcher::Reports reports)
{
    EdgeMatcher matcher(m_Manager, *m_pSolid, m_nCorners / 2, reports);
    std::size_t offset = 0;
    for (std::size_t i = 0; i < m_Lists.faceSizes.size(); ++i)
    {
        const auto count = static_cast<std::size_t>(m_Lists.faceSizes[i]);
        DSLoop* pLoop = MakeFace();
        MakeCorners(pLoop, offset, count);
        matcher.MatchLoop(*pLoop, i);
        offset += count;
    }
    matcher.Finish();
}

DSLoop* SolidBuilder::MakeFace()
{
    DSFace* pFace = m_Manager.CreateFace();
    pFace->GetSolid() = m_pSolid;
    m_pSolid->GetFaceList().push_back(pFace);
    DSLoop* pLoop = m_Manager.CreateLoop();
    pLoop->GetFace() = pFace;
    pFace->GetLoopList().push_back(pLoop);
    return pLoop;
}

/// Reversed, the first corner stays first and the others run backwards.
void SolidBuilder::MakeCorners(DSLoop* loop, std::size_t offset, std::size_t count)
{
    DSHalfEdge* pFirst = MakeHalfEdge(loop, offset);
    pFirst->MakeCircle();
    loop->GetHalfEdge() = pFirst;
    for (std::size_t corner = offset + 1; corner < offset + count; ++corner)
    {
        DSHalfEdge* pHalfEdge = MakeHalfEdge(loop, corner);
        m_bReversed ? pHalfEdge->InsertBehind(pFirst) : pHalfEdge->InsertBefore(pFirst);
    }
}

DSHalfEdge* SolidBuilder::MakeHalfEdge(DSLoop* loop, std::size_t corner)
{
    DSHalfEdge* pHalfEdge = m_Manager.CreateHalfEdge();
    DSVertex* pVertex = m_pSolid->GetVertexList()[static_cast<std::size_t>(m_Lists.indices[corner]) - 1];
    pHalfEdge->GetVertex() = pVertex;
    pVertex->GetHalfEdge() = pHalfEdge; // the last half-edge at a vertex stays
    pHalfEdge->GetLoop() = loop;
    if (m_Lists.HasTexCoords())
    {
        pHalfEdge->GetTexCoord() =
            (*m_Lists.pTexCoords)[static_cast<std::size_t>((*m_Lists.pTexIndices)[corner]) - 1];
    }
    return pHalfEdge;
}
}
