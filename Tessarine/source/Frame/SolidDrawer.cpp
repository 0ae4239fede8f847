#include "SolidDrawer.h"
#include "DSBrep.h"
#include "DisplayFlag.h"
#include "EdgeRun.h"
#include "LookAhead.h"
#include "MANMaterialManager.h"
#include "VertexRun.h"
#include <algorithm>
#include <array>
#include <cmath>

namespace tessarine
{
namespace
{
using Color = std::array<float, 3>;

// A colour that is set within a run belongs to the corners: GL blends it along a line, and its rounding shows.
constexpr Color kEdgeColor{0.5F, 0.7F, 0.4F};
constexpr Color kHighlightColor{1.0F, 0.0F, 0.0F};
constexpr Color kPointColor{1.0F, 1.0F, 1.0F};
constexpr Color kPointWithoutNormalColor{1.0F, 0.0F, 0.0F};
// These two are set before their runs.
constexpr smVec3f kBoundaryColor(0.2F, 1.0F, 0.2F);
constexpr smVec3f kSelectedPointColor(0.5F, 1.0F, 0.2F);

void SetColor(const smVec3f& color)
{
    glColor3f(color.x, color.y, color.z);
}

/// Keeps the filled polygons behind the lines on them, while it lives.
class PolygonOffset
{
public:
    PolygonOffset()
    {
        glEnable(GL_POLYGON_OFFSET_FILL);
        glPolygonOffset(1.0F, 1.0F);
    }
    ~PolygonOffset() { glDisable(GL_POLYGON_OFFSET_FILL); }
    PolygonOffset(const PolygonOffset&) = delete;
    PolygonOffset& operator=(const PolygonOffset&) = delete;
};

/// The first half-edge of a face, or null where it has no corner.
const DSHalfEdge* FindEntry(const DSFace& face)
{
    const LoopList& loops = face.GetLoopList();
    return loops.empty() ? nullptr : loops[0]->GetHalfEdge();
}

/// Adds a face as GL takes a polygon apart. Where it has less than three corners, nothing is drawn.
template <class TCorner, class TMakeCorner>
void AddPolygon(VertexRun<TCorner>& run, const DSFace& face, TMakeCorner makeCorner)
{
    const DSHalfEdge* pEntry = FindEntry(face);
    if (pEntry == nullptr)
    {
        return;
    }
    const TCorner first = makeCorner(*pEntry);
    const DSHalfEdge* pHalfEdge = pEntry->GetNext();
    TCorner before = makeCorner(*pHalfEdge);
    for (pHalfEdge = pHalfEdge->GetNext(); pHalfEdge != pEntry; pHalfEdge = pHalfEdge->GetNext())
    {
        const TCorner corner = makeCorner(*pHalfEdge);
        run.AddTriangle(before, corner, first);
        before = corner;
    }
}

LitCorner MakeSmoothCorner(const DSHalfEdge& halfEdge)
{
    const DSVertex& vertex = *halfEdge.GetVertex();
    return {ToSingle(vertex.GetNormal()), ToSingle(vertex.GetPosition())};
}

TexturedCorner MakeTexturedCorner(const DSHalfEdge& halfEdge)
{
    const DSVertex& vertex = *halfEdge.GetVertex();
    return {ToSingle(halfEdge.GetTexCoord()), ToSingle(vertex.GetNormal()), ToSingle(vertex.GetPosition())};
}

/// With the vertices' normals, or else the face's.
void AddLitPolygon(VertexRun<LitCorner>& run, const DSFace& face, bool smooth)
{
    if (smooth)
    {
        AddPolygon(run, face, MakeSmoothCorner);
        return;
    }
    const auto normal = ToSingle(face.GetNormal());
    AddPolygon(run, face,
               [&normal](const DSHalfEdge& halfEdge) {
                   return LitCorner{normal, ToSingle(halfEdge.GetVertex()->GetPosition())};
               });
}

/// Asks for what stands behind an edge of a list to come: its half-edges, and then their vertices.
void AskForHalfEdges(const DSEdge* edge)
{
    AskForMemory(edge->GetHalfEdge1(), sizeof(DSHalfEdge));
    AskForMemory(edge->GetHalfEdge2(), sizeof(DSHalfEdge));
}

void AskForVertices(const DSEdge* edge)
{
    for (const DSHalfEdge* pHalfEdge : {edge->GetHalfEdge1(), edge->GetHalfEdge2()})
    {
        if (pHalfEdge != nullptr)
        {
            AskForMemory(&pHalfEdge->GetVertex()->GetPosition(), sizeof(smVec3d));
        }
    }
}

void AddEdge(VertexRun<PlainCorner>& run, const DSEdge& edge)
{
    const EdgeEnds ends = FindEnds(edge);
    if (ends.pFirst != nullptr)
    {
        run.AddLine({ToSingle(ends.pFirst->GetPosition())}, {ToSingle(ends.pSecond->GetPosition())});
    }
}

void DrawBoundaryEdges(const DSSolid& solid)
{
    glPushAttrib(GL_LINE_BIT);
    SetColor(kBoundaryColor);
    glLineWidth(2.0F);
    {
        VertexRun<PlainCorner> run(GL_LINES);
        for (const DSEdge* pEdge : solid.GetEdgeList())
        {
            if (pEdge->IsBoundary())
            {
                AddEdge(run, *pEdge);
            }
        }
    }
    glPopAttrib();
}

/// A normal that is no number is none of zero.
bool HasZeroNormal(const DSVertex& vertex)
{
    constexpr double kTolerance = 1e-10;
    const smVec3d& normal = vertex.GetNormal();
    return std::abs(normal.x) < kTolerance && std::abs(normal.y) < kTolerance &&
           std::abs(normal.z) < kTolerance;
}

void DrawAllPoints(const DSSolid& solid)
{
    VertexRun<ColoredCorner> run(GL_POINTS);
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        if (pVertex != nullptr)
        {
            run.AddPoint({HasZeroNormal(*pVertex) ? kPointWithoutNormalColor : kPointColor,
                          ToSingle(pVertex->GetPosition())});
        }
    }
}

void DrawSelectedPoints(const DSSolid& solid)
{
    VertexRun<PlainCorner> run(GL_POINTS);
    SetColor(kSelectedPointColor);
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        if (pVertex != nullptr && pVertex->IsSelected())
        {
            run.AddPoint({ToSingle(pVertex->GetPosition())});
        }
    }
}

/// GL refuses any other, and keeps the one before it.
bool IsShininessTaken(const DSMaterial& material)
{
    constexpr float kLargest = 128.0F;
    return !(material.m_fShininess < 0.0F || material.m_fShininess > kLargest);
}

const DSTextureBinding* FindTexture(const DSFace& face)
{
    return face.GetMaterial() != nullptr ? face.GetMaterial()->m_pTexture : nullptr;
}

void SetTexture(const DSTextureBinding* texture)
{
    if (texture == nullptr)
    {
        glDisable(GL_TEXTURE_2D);
        return;
    }
    glEnable(GL_TEXTURE_2D);
    glBindTexture(GL_TEXTURE_2D, texture->m_nName);
}

void SetMarkMaterial(const smVec3f& color)
{
    const float diffuse[] = {color.x, color.y, color.z, 1.0F};
    glMaterialfv(GL_FRONT, GL_DIFFUSE, diffuse);
}
}

EdgeEnds FindEnds(const DSEdge& edge)
{
    const DSHalfEdge* pFirst = edge.GetHalfEdge1();
    const DSHalfEdge* pSecond = edge.GetHalfEdge2();
    if (pFirst == nullptr && pSecond == nullptr)
    {
        return {};
    }
    return {pFirst != nullptr ? pFirst->GetVertex() : pSecond->GetNext()->GetVertex(),
            pSecond != nullptr ? pSecond->GetVertex() : pFirst->GetNext()->GetVertex()};
}

void ApplyMaterial(const DSMaterial& material)
{
    const auto apply = [](GLenum name, const smVec3f& color, float alpha)
    {
        const float values[] = {color.x, color.y, color.z, alpha};
        glMaterialfv(GL_FRONT, name, values);
    };
    apply(GL_DIFFUSE, material.m_Diffuse, material.m_fTransparency);
    apply(GL_AMBIENT, material.m_Ambient, material.m_fTransparency);
    apply(GL_SPECULAR, material.m_Specular, material.m_fTransparency);
    glMaterialfv(GL_FRONT, GL_SHININESS, &material.m_fShininess);
    apply(GL_EMISSION, material.m_Emission, 0.0F);
}

const DSMaterial& SolidDrawer::GetMaterial(const DSFace& face) const
{
    return face.GetMaterial() != nullptr ? *face.GetMaterial() : m_DefaultMaterial;
}

void SolidDrawer::DrawWire(const DSSolid& solid) const
{
    glDisable(GL_LIGHTING);
    glLineWidth(1.0F);
    {
        EdgeRun run;
        ForEachLookingAhead(
            solid.GetEdgeList(),
            [&run](const DSEdge* edge)
            {
                const EdgeEnds ends = FindEnds(*edge);
                if (ends.pFirst != nullptr)
                {
                    run.AddLine(*ends.pFirst, *ends.pSecond,
                                edge->GetHighlight() ? kHighlightColor : kEdgeColor);
                }
            },
            AskForHalfEdges, AskForVertices);
    }
    if ((m_nDisplayFlags & DisplayFlag::BoundaryEdges) != 0)
    {
        DrawBoundaryEdges(solid);
    }
    glEnable(GL_LIGHTING);
}

void SolidDrawer::DrawSurface(const DSSolid& solid) const
{
    const PolygonOffset offset;
    const bool smooth = (m_nDisplayFlags & DisplayFlag::SmoothShading) != 0;
    const DSMaterial* pCurrent = nullptr;
    VertexRun<LitCorner> run(GL_TRIANGLES);
    ForEachFaceLookingAhead(
        solid.GetFaceList(),
        [this, &run, &pCurrent, smooth](const DSFace* face)
        {
            const DSMaterial* pMaterial = &GetMaterial(*face);
            if (pMaterial != pCurrent)
            {
                run.Flush();
                ApplyMaterial(*pMaterial);
                pCurrent = pMaterial;
            }
            AddLitPolygon(run, *face, smooth);
        },
        AskForVertexAt);
}

void SolidDrawer::ApplyLastMaterial(const DSSolid& solid) const
{
    const auto& faces = solid.GetFaceList();
    const auto isRefused = [this](const DSFace* face) { return !IsShininessTaken(GetMaterial(*face)); };
    if (const auto refused = std::find_if(faces.begin(), faces.end(), isRefused); refused != faces.end())
    {
        ApplyMaterial(GetMaterial(**refused)); // for GL's error, which a later frame tells
    }
    for (std::size_t place = faces.size(); place-- > 0;)
    {
        const DSMaterial& material = GetMaterial(*faces[place]);
        if (IsShininessTaken(material))
        {
            ApplyMaterial(material);
            break;
        }
    }
    if (!faces.empty())
    {
        ApplyMaterial(GetMaterial(*faces.back()));
    }
}

void SolidDrawer::DrawTextured(const DSSolid& solid) const
{
    const DSTextureBinding* pCurrent = nullptr;
    {
        VertexRun<TexturedCorner> run(GL_TRIANGLES);
        for (const DSFace* pFace : solid.GetFaceList())
        {
            const DSTextureBinding* pTexture = FindTexture(*pFace);
            if (pTexture != pCurrent)
            {
                run.Flush();
                SetTexture(pTexture);
                pCurrent = pTexture;
            }
            AddPolygon(run, *pFace, MakeTexturedCorner);
        }
    }
    glDisable(GL_TEXTURE_2D);
}

void SolidDrawer::DrawPoints(const DSSolid& solid) const
{
    glPushAttrib(GL_POINT_BIT);
    glDisable(GL_LIGHTING);
    glPointSize(1.0F);
    DrawAllPoints(solid);
    glPointSize(4.0F);
    DrawSelectedPoints(solid);
    glPopAttrib();
    glEnable(GL_LIGHTING);
}

void SolidDrawer::DrawSolidMark(const DSSolid& solid, const smVec3f& color) const
{
    const bool smooth = (m_nDisplayFlags & DisplayFlag::SmoothShading) != 0;
    glPushAttrib(GL_LIGHTING_BIT);
    SetMarkMaterial(color);
    {
        const PolygonOffset offset;
        VertexRun<LitCorner> run(GL_TRIANGLES);
        ForEachFaceLookingAhead(
            solid.GetFaceList(), [&run, smooth](const DSFace* face) { AddLitPolygon(run, *face, smooth); },
            AskForVertexAt);
    }
    glPopAttrib();
}

void SolidDrawer::DrawFaceMark(const DSFace& face, const smVec3f& color) const
{
    glPushAttrib(GL_LIGHTING_BIT);
    SetMarkMaterial(color);
    {
        const PolygonOffset offset;
        VertexRun<LitCorner> run(GL_TRIANGLES);
        AddLitPolygon(run, face, (m_nDisplayFlags & DisplayFlag::SmoothShading) != 0);
    }
    glPopAttrib();
}
}
