#include "Open3DView.h"
#include "Assert.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "Platform.h"
#include <string>
#include <utility>

namespace tessarine
{
namespace
{
constexpr int kVertexPane = 1;
constexpr int kFacePane = 2;
constexpr std::uint32_t kSolidIndexMask = 0x1FFFFFFF;

/// The solid of an id, or null where the id names none that is still there. A frame reports nothing.
const DSSolid* FindSolid(const MANBrepElementManager& elements, std::uint32_t id)
{
    if (MANBrepElementManager::GetElementType(id) != ElementKind::Solid)
    {
        return nullptr;
    }
    const std::size_t index = id & kSolidIndexMask;
    const auto& solids = elements.GetSolidArray();
    return index < solids.size() ? solids[index] : nullptr;
}
}

void Open3DView::SetController(IAController* controller, MANSceneManager* scene,
                               MANBrepElementManager* elements)
{
    m_pController = controller;
    m_pSceneManager = scene;
    m_pElementManager = elements;
}

void Open3DView::Redraw()
{
    const DSSolid* solid = GetCountedSolid();
    const std::size_t faces = solid != nullptr ? solid->GetFaceList().size() : 0;
    const std::size_t vertices = solid != nullptr ? solid->GetVertexList().size() : 0;
    GetPlatform().SetPaneText(kFacePane, "面片数: " + std::to_string(faces));
    GetPlatform().SetPaneText(kVertexPane, "顶点数: " + std::to_string(vertices));
}

void Open3DView::Resize(int /*x*/, int /*y*/, int width, int height)
{
    m_Camera.SetSize(width, height);
}

std::uint32_t Open3DView::GetSelectType() const
{
    ASSERT(m_pElementManager != nullptr);
    return m_pElementManager->GetSelectType();
}

void Open3DView::SetSelectType(std::uint32_t type)
{
    ASSERT(m_pElementManager != nullptr);
    m_pElementManager->SetSelectType(type);
}

void Open3DView::ToggleSelect(std::uint32_t id)
{
    ASSERT(m_pElementManager != nullptr);
    m_pElementManager->ToggleSelect(id);
}

/// The solid of the root's first child, if that is a leaf.
const DSSolid* Open3DView::GetFirstSolid() const
{
    const MANSceneGroup* root = m_pSceneManager->GetRootGroup();
    if (root == nullptr || root->GetChildren().empty())
    {
        return nullptr;
    }
    const MANSceneNode* child = root->GetChildren().front();
    return MANSceneManager::GetKind(child->GetID()) == NodeKind::Leaf
               ? static_cast<const MANSceneLeaf*>(child)->GetSolid()
               : nullptr;
}

bool Open3DView::ShowsSolidMarks() const
{
    return (m_nDisplayFlags & (DisplayFlag::FlatShading | DisplayFlag::SmoothShading)) != 0;
}

const DSSolid* Open3DView::GetLastMarkedSolid(const std::vector<std::uint32_t>& ids) const
{
    for (auto id = ids.rbegin(); id != ids.rend(); ++id)
    {
        if (const DSSolid* solid = FindSolid(*m_pElementManager, *id))
        {
            return solid;
        }
    }
    return nullptr;
}

/// What is marked last counts: the hover marks are drawn over those of the selection.
const DSSolid* Open3DView::GetCountedSolid() const
{
    if (m_pSceneManager == nullptr)
    {
        return nullptr;
    }
    if (ShowsSolidMarks())
    {
        if (const DSSolid* hovered = GetLastMarkedSolid(m_HoverList))
        {
            return hovered;
        }
        if (const DSSolid* selected = GetLastMarkedSolid(m_pElementManager->GetSelectList()))
        {
            return selected;
        }
    }
    return GetFirstSolid();
}

Open3DView::Checkpoint Open3DView::Save() const
{
    return {m_PointCloud, m_PointNormals, m_ProjectedPoints, m_HoverList,
            m_pNewMesh,   m_pOctree,      m_nDisplayFlags};
}

void Open3DView::Restore(Checkpoint&& checkpoint) noexcept
{
    m_PointCloud = std::move(checkpoint.pointCloud);
    m_PointNormals = std::move(checkpoint.pointNormals);
    m_ProjectedPoints = std::move(checkpoint.projectedPoints);
    m_HoverList = std::move(checkpoint.hoverList);
    m_pNewMesh = checkpoint.newMesh;
    m_pOctree = checkpoint.octree;
    m_nDisplayFlags = checkpoint.displayFlags;
}
}
