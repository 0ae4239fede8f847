#include "MarkDrawer.h"
#include "DisplayFlag.h"
#include "MANBrepElementManager.h"
#include "SolidDrawer.h"
#include <GL/gl.h>

namespace tessarine
{
namespace
{
constexpr smVec3f kSelectedColor(1.0F, 0.0F, 0.0F);
constexpr smVec3f kHoverColor(0.0F, 0.0F, 1.0F);
constexpr smVec3f kHoverSelectedColor(1.0F, 1.0F, 0.0F);

void DrawVertexMark(const DSVertex& vertex, const smVec3f& color)
{
    glPushAttrib(GL_POINT_BIT);
    glDisable(GL_LIGHTING);
    glPointSize(5.0F);
    glColor3f(color.x, color.y, color.z);
    glBegin(GL_POINTS);
    glVertex3dv(&vertex.GetPosition().x);
    glEnd();
    glPopAttrib();
    glEnable(GL_LIGHTING);
}

void DrawEdgeMark(const DSEdge& edge, const smVec3f& color)
{
    const EdgeEnds ends = FindEnds(edge);
    if (ends.pFirst == nullptr)
    {
        return;
    }
    glPushAttrib(GL_LINE_BIT);
    glDisable(GL_LIGHTING);
    glLineWidth(2.0F);
    glColor3f(color.x, color.y, color.z);
    glBegin(GL_LINES);
    glVertex3dv(&ends.pFirst->GetPosition().x);
    glVertex3dv(&ends.pSecond->GetPosition().x);
    glEnd();
    glPopAttrib();
    glEnable(GL_LIGHTING);
}
}

bool ShowsMarksOf(std::uint32_t kind, std::uint32_t displayFlags)
{
    std::uint32_t needed = DisplayFlag::FlatShading | DisplayFlag::SmoothShading;
    if (kind == ElementKind::Edge || kind == ElementKind::Vertex)
    {
        needed |= DisplayFlag::Wire;
    }
    if (kind == ElementKind::Vertex)
    {
        needed |= DisplayFlag::Points;
    }
    return (displayFlags & needed) != 0;
}

smVec3f GetHoverColor(const DSElement& element)
{
    return element.IsSelected() ? kHoverSelectedColor : kHoverColor;
}

void MarkDrawer::DrawSelection(const std::vector<std::uint32_t>& ids) const
{
    for (const std::uint32_t id : ids)
    {
        if (const DSElement* pElement = m_Elements.FindLiveElement(id))
        {
            DrawMark(id, *pElement, kSelectedColor);
        }
    }
}

void MarkDrawer::DrawHover(const std::vector<std::uint32_t>& ids) const
{
    for (const std::uint32_t id : ids)
    {
        if (const DSElement* pElement = m_Elements.FindLiveElement(id))
        {
            DrawMark(id, *pElement, GetHoverColor(*pElement));
        }
    }
}

void MarkDrawer::DrawMark(std::uint32_t id, const DSElement& element, const smVec3f& color) const
{
    const std::uint32_t kind = MANBrepElementManager::GetElementType(id);
    if (!ShowsMarksOf(kind, m_nDisplayFlags))
    {
        return;
    }
    switch (kind)
    {
    case ElementKind::Vertex: return DrawVertexMark(static_cast<const DSVertex&>(element), color);
    case ElementKind::Edge: return DrawEdgeMark(static_cast<const DSEdge&>(element), color);
    case ElementKind::Face: return m_Solids.DrawFaceMark(static_cast<const DSFace&>(element), color);
    case ElementKind::Solid: return m_Solids.DrawSolidMark(static_cast<const DSSolid&>(element), color);
    default: break;
    }
}
}
