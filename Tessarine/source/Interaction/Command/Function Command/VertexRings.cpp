#include "VertexRings.h"
#include "VertexWalk.h"

namespace tessarine
{
bool VertexRings::IsNew(Marks& marks, std::uint32_t index) const
{
    if (index >= marks.size())
    {
        marks.resize(index + 1 + marks.size());
    }
    const bool isNew = marks[index] != m_nGrowth;
    marks[index] = m_nGrowth;
    return isNew;
}

void VertexRings::Grow(const DSVertex& centre, int rings)
{
    ++m_nGrowth;
    m_Faces.clear();
    m_Vertices.clear();
    IsNew(m_VertexMarks, centre.GetID());
    std::size_t next = 0;
    for (int ring = 0; ring < rings; ++ring)
    {
        const std::size_t end = m_Vertices.size();
        if (ring == 0)
        {
            WalkAround(centre);
        }
        for (; next < end; ++next)
        {
            WalkAround(*m_Vertices[next]);
        }
    }
}

void VertexRings::WalkAround(const DSVertex& vertex)
{
    VertexWalk walk(vertex.GetHalfEdge());
    for (; !walk.IsAtEnd(); walk.Step())
    {
        const DSHalfEdge* h = walk.Get();
        const DSFace* pFace = h->GetLoop()->GetFace();
        const DSVertex* pVertex = h->GetNext()->GetVertex();
        if (IsNew(m_FaceMarks, pFace->GetID() & ~ElementKind::Face))
        {
            m_Faces.push_back(pFace);
        }
        if (IsNew(m_VertexMarks, pVertex->GetID()))
        {
            m_Vertices.push_back(pVertex);
        }
    }
    ASSERT(!walk.EndedAtBoundary());
}
}
