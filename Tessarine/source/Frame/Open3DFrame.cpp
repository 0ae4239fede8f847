#include "Open3DFrame.h"
#include "Assert.h"
#include "FrameSetup.h"
#include "FrameTextures.h"
#include "GridAndAxes.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "MarkDrawer.h"
#include "Open3DView.h"
#include "OverlayDrawer.h"

namespace tessarine
{
Open3DFrame::Open3DFrame(const Open3DView& view, const MANSceneManager& scene,
                         const MANBrepElementManager& elements, bool isWatched)
    : m_View(view),
      m_Scene(scene),
      m_Elements(elements),
      m_bWatched(isWatched),
      m_Solids(view.GetDisplayFlags(), elements.GetMaterialManager().GetDefaultMaterial())
{
}

bool Open3DFrame::HasFlag(std::uint32_t flag) const
{
    return (m_View.GetDisplayFlags() & flag) != 0;
}

void Open3DFrame::Say() const
{
    SayLights(m_Scene.GetLightList());
    if (HasFlag(DisplayFlag::Octree) && m_View.GetOctree() != nullptr)
    {
        CheckOctree(*m_View.GetOctree());
    }
    if (HasFlag(DisplayFlag::ProjectionLines))
    {
        const auto& points = m_View.GetPointCloud();
        const auto& projections = m_View.GetProjectedPoints();
        ASSERT_VALUE(projections.size() == points.size());
    }
}

void Open3DFrame::Draw(FrameTextures& textures) const
{
    Say();
    SetUp();
    DrawScene(textures);
    if (m_bWatched && HasFlag(DisplayFlag::CutFaces))
    {
        DrawCutFaces();
    }
}

void Open3DFrame::SetUp() const
{
    SetCamera(*m_View.GetCamera());
    SetLights(m_Scene.GetLightList());
    if (m_bWatched)
    {
        ClearFrame(m_View.GetClearColor());
    }
    if (m_bWatched && HasFlag(DisplayFlag::Grid))
    {
        DrawGrid();
    }
    if (m_bWatched && HasFlag(DisplayFlag::Axes))
    {
        DrawAxes();
    }
    SetRasterState(m_View.GetDisplayFlags());
    if (m_bWatched)
    {
        DrawOverlays();
    }
}

void Open3DFrame::DrawOverlays() const
{
    if (HasFlag(DisplayFlag::Octree) && m_View.GetOctree() != nullptr)
    {
        DrawOctree(*m_View.GetOctree());
    }
    if (HasFlag(DisplayFlag::PointCloud))
    {
        DrawPointCloud(m_View.GetPointCloud());
    }
    if (HasFlag(DisplayFlag::PointNormals))
    {
        DrawPointNormals(m_View.GetPointCloud(), m_View.GetPointNormals());
    }
    if (HasFlag(DisplayFlag::ProjectedPoints) && !m_View.GetProjectedPoints().empty())
    {
        DrawProjectedPoints(m_View.GetProjectedPoints());
    }
    if (HasFlag(DisplayFlag::ProjectionLines) &&
        m_View.GetProjectedPoints().size() == m_View.GetPointCloud().size())
    {
        DrawProjectionLines(m_View.GetPointCloud(), m_View.GetProjectedPoints());
    }
    if (HasFlag(DisplayFlag::NewMesh) && m_View.GetNewMesh() != nullptr)
    {
        DrawNewMesh();
    }
}

void Open3DFrame::DrawNewMesh() const
{
    const DSSolid& solid = *m_View.GetNewMesh();
    m_Solids.DrawSolidMark(solid, GetHoverColor(solid));
    if (HasFlag(DisplayFlag::Wire))
    {
        m_Solids.DrawWire(solid);
    }
    if (HasFlag(DisplayFlag::Points))
    {
        m_Solids.DrawPoints(solid);
    }
}

void Open3DFrame::DrawScene(FrameTextures& textures) const
{
    const auto& bindings = m_Elements.GetMaterialManager().GetImageList();
    const bool hasTextures = HasFlag(DisplayFlag::Texture);
    if (hasTextures)
    {
        textures.Create(bindings);
    }
    if (const MANSceneGroup* pRoot = m_Scene.GetRootGroup())
    {
        DrawGroup(*pRoot);
    }
    if (hasTextures)
    {
        textures.Delete(bindings);
    }
    if (m_bWatched)
    {
        DrawMarks();
    }
}

void Open3DFrame::DrawGroup(const MANSceneGroup& group) const
{
    if (!group.IsVisible())
    {
        return;
    }
    for (const MANSceneNode* pChild : group.GetChildren())
    {
        DrawNode(*pChild);
    }
}

void Open3DFrame::DrawNode(const MANSceneNode& node) const
{
    if (MANSceneManager::GetKind(node.GetID()) == NodeKind::Group)
    {
        DrawGroup(static_cast<const MANSceneGroup&>(node));
    }
    else
    {
        DrawLeaf(static_cast<const MANSceneLeaf&>(node));
    }
}

/// Kept    The solid's own visibility does not concern its wire frame.
void Open3DFrame::DrawLeaf(const MANSceneLeaf& leaf) const
{
    const DSSolid* pSolid = leaf.GetSolid();
    if (!leaf.IsVisible() || pSolid == nullptr)
    {
        return;
    }
    if (m_bWatched && HasFlag(DisplayFlag::Wire))
    {
        m_Solids.DrawWire(*pSolid);
    }
    if (!pSolid->IsVisible())
    {
        return;
    }
    DrawFilled(*pSolid);
    if (m_bWatched && HasFlag(DisplayFlag::Points))
    {
        m_Solids.DrawPoints(*pSolid);
    }
}

void Open3DFrame::DrawFilled(const DSSolid& solid) const
{
    const bool isShaded = HasFlag(DisplayFlag::FlatShading | DisplayFlag::SmoothShading);
    if (isShaded && m_bWatched)
    {
        m_Solids.DrawSurface(solid);
    }
    else if (isShaded)
    {
        m_Solids.ApplyLastMaterial(solid);
    }
    else if (m_bWatched && HasFlag(DisplayFlag::Texture))
    {
        m_Solids.DrawTextured(solid);
    }
}

void Open3DFrame::DrawMarks() const
{
    const MarkDrawer marks(m_View.GetDisplayFlags(), m_Elements, m_Solids);
    marks.DrawSelection(m_Elements.GetSelectList());
    marks.DrawHover(m_View.GetHoverList());
}

void Open3DFrame::DrawCutFaces() const
{
    for (const CutFace& face : m_Scene.GetCutFaceList())
    {
        DrawQuad(face);
    }
}
}
