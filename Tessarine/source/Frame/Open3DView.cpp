#include "Open3DView.h"
#include "Assert.h"
#include "Failure.h"
#include "FrameSetup.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"
#include "MarkDrawer.h"
#include "OffscreenBuffer.h"
#include "Open3DFrame.h"
#include "OverlayDrawer.h"
#include "Platform.h"
#include <GL/gl.h>
#include <utility>

namespace tessarine
{
namespace
{
constexpr int kVertexPane = 1;
constexpr int kFacePane = 2;

/// Turns a flag on while it lives.
class FlagGuard
{
public:
    explicit FlagGuard(bool& flag) : m_Flag(flag) { m_Flag = true; }
    ~FlagGuard() { m_Flag = false; }
    FlagGuard(const FlagGuard&) = delete;
    FlagGuard& operator=(const FlagGuard&) = delete;

private:
    bool& m_Flag;
};

/// Puts the state of GL back at its end, but for matrices and arrays.
class StateGuard
{
public:
    StateGuard() { glPushAttrib(GL_ALL_ATTRIB_BITS); }
    ~StateGuard() { glPopAttrib(); }
    StateGuard(const StateGuard&) = delete;
    StateGuard& operator=(const StateGuard&) = delete;
};

std::string GetText(GLenum name)
{
    const auto* text = reinterpret_cast<const char*>(glGetString(name));
    return text != nullptr ? text : "unknown";
}

/// What the current context draws with, when it has no fixed-function pipeline; else nothing.
std::string FindModernPipeline()
{
    glMatrixMode(GL_MODELVIEW);
    return glGetError() == GL_NO_ERROR ? "" : "GL " + GetText(GL_VERSION) + " on " + GetText(GL_RENDERER);
}

/// What the current context has drawn, in lines without gaps.
void ReadFrame(Image& picture)
{
    picture.pixels.resize(std::size_t{3} * static_cast<unsigned>(picture.width) *
                          static_cast<unsigned>(picture.height));
    glPushClientAttrib(GL_CLIENT_PIXEL_STORE_BIT);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    glReadPixels(0, 0, picture.width, picture.height, GL_RGB, GL_UNSIGNED_BYTE, picture.pixels.data());
    glPopClientAttrib();
}
}

void Open3DView::SetController(IAController* controller, MANSceneManager* scene,
                               MANBrepElementManager* elements)
{
    m_pController = controller;
    m_pSceneManager = scene;
    m_pElementManager = elements;
}

int Open3DView::Create()
{
    m_strCreateError.clear();
    try
    {
        m_pSurface = GetPlatform().CreateGLSurface();
        CheckPipeline();
        return 0;
    }
    catch (const GLSurfaceError& error)
    {
        m_pSurface.reset();
        m_strCreateError = error.what();
        ShowMessage(error.GetStep());
        return -1;
    }
}

void Open3DView::CheckPipeline()
{
    constexpr char kStep[] = "wglCreateContext failed";
    if (!m_pSurface->MakeCurrent())
    {
        throw GLSurfaceError(kStep, "the GL context cannot be used");
    }
    const std::string modern = FindModernPipeline();
    m_pSurface->Release();
    if (!modern.empty())
    {
        throw GLSurfaceError(
            kStep, modern + " has no compatibility profile, whose fixed-function pipeline draws here; "
                            "use a driver that has it, as the one of the package libgl1-mesa-dri");
    }
}

void Open3DView::Destroy()
{
    ASSERT(m_pSurface != nullptr);
    m_pSurface.reset();
}

int Open3DView::BeginContext()
{
    ASSERT(m_pSurface != nullptr);
    m_bLostContext = !m_pSurface->MakeCurrent();
    if (m_bLostContext)
    {
        ShowMessage("Context activiate failed");
        return -1;
    }
    return 0;
}

int Open3DView::EndContext()
{
    ASSERT(m_pSurface != nullptr);
    m_bLostContext = !m_pSurface->Release();
    if (m_bLostContext)
    {
        ShowMessage("Context deactiviate failed");
        return -1;
    }
    return 0;
}

void Open3DView::InitState()
{
    if (BeginContext() == 0)
    {
        SetFixedState();
        EndContext();
    }
}

void Open3DView::Resize(int x, int y, int width, int height)
{
    if (m_pSurface != nullptr && BeginContext() == 0)
    {
        glViewport(x, y, width, height);
        EndContext();
    }
    m_Camera.SetSize(width, height);
}

void Open3DView::Redraw()
{
    DrawFrame(IsWatched(), [] {});
}

void Open3DView::RedrawUnder(const std::array<smVec3d, 4>& quad)
{
    DrawFrame(IsWatched(),
              [&]
              {
                  if (IsWatched())
                  {
                      DrawQuad(quad);
                  }
              });
}

Image Open3DView::TakePicture()
{
    Image picture{m_Camera.GetWidth(), m_Camera.GetHeight(), 3, {}};
    DemandSurface();
    if (picture.width <= 0 || picture.height <= 0)
    {
        throw Failure("the view has no area: there is nothing to take a picture of");
    }
    bool isDrawn = false;
    DrawFrame(true,
              [&picture, &isDrawn]
              {
                  ReadFrame(picture);
                  isDrawn = true;
              });
    if (!isDrawn)
    {
        throw Failure("the frame could not be drawn: its GL context cannot be used");
    }
    return picture;
}

void Open3DView::DrawApart(Image& picture, const std::function<void()>& draw)
{
    DemandSurface();
    if (BeginContext() != 0)
    {
        throw Failure("the picture could not be drawn: its GL context cannot be used");
    }
    try
    {
        const StateGuard state;
        const OffscreenBuffer buffer(picture.width, picture.height);
        draw();
        ReadFrame(picture);
        if (m_pSurface->IsWatched())
        {
            buffer.CopyToSurface();
            m_pSurface->SwapBuffers();
        }
    }
    catch (...)
    {
        EndContext();
        throw;
    }
    EndContext();
}

void Open3DView::DemandSurface() const
{
    if (m_pSurface == nullptr)
    {
        throw Failure("nothing can be drawn here: " +
                      (m_strCreateError.empty() ? "the view has no surface" : m_strCreateError));
    }
}

/// @param beforeSwap is called in the context, when the frame is complete
void Open3DView::DrawFrame(bool isWatched, const std::function<void()>& beforeSwap)
{
    if (m_bDrawing)
    {
        return;
    }
    const FlagGuard drawing(m_bDrawing);
    if (m_pSurface == nullptr || BeginContext() != 0)
    {
        SayFrame();
        ShowCounters();
        return;
    }
    try
    {
        DrawInContext(isWatched);
        beforeSwap();
        m_pSurface->SwapBuffers();
    }
    catch (...)
    {
        EndContext();
        throw;
    }
    EndContext();
}

void Open3DView::DrawInContext(bool isWatched)
{
    if (m_pSceneManager != nullptr)
    {
        Open3DFrame(*this, *m_pSceneManager, *m_pElementManager, isWatched).Draw(m_Textures);
    }
    ShowCounters();
}

/// Where nothing can be drawn.
void Open3DView::SayFrame() const
{
    if (m_pSceneManager != nullptr)
    {
        Open3DFrame(*this, *m_pSceneManager, *m_pElementManager, false).Say();
    }
}

void Open3DView::ShowCounters() const
{
    const DSSolid* solid = GetCountedSolid();
    const std::size_t faces = solid != nullptr ? solid->GetFaceList().size() : 0;
    const std::size_t vertices = solid != nullptr ? solid->GetVertexList().size() : 0;
    GetPlatform().SetPaneText(kFacePane, "面片数: " + std::to_string(faces));
    GetPlatform().SetPaneText(kVertexPane, "顶点数: " + std::to_string(vertices));
}

void Open3DView::Toggle(std::uint32_t flag)
{
    m_nDisplayFlags ^= flag;
    Redraw();
}

void Open3DView::ToggleShading(std::uint32_t flag, std::uint32_t other)
{
    if (!HasFlag(flag))
    {
        m_nDisplayFlags &= ~other;
    }
    Toggle(flag);
}

void Open3DView::ShowTexture()
{
    if (m_pSurface == nullptr && !m_strCreateError.empty())
    {
        throw Failure("textures need GL: " + m_strCreateError);
    }
    constexpr std::uint32_t kOtherModes =
        DisplayFlag::Wire | DisplayFlag::FlatShading | DisplayFlag::SmoothShading | DisplayFlag::Points;
    m_nDisplayFlags = (m_nDisplayFlags & ~kOtherModes) | DisplayFlag::Texture;
    Redraw();
}

void Open3DView::ToggleOctree()
{
    if (!HasFlag(DisplayFlag::Octree) && m_pOctree == nullptr)
    {
        throw Failure("there is no octree to show: a reconstruction makes one (\"构造初始网格\")");
    }
    Toggle(DisplayFlag::Octree);
}

void Open3DView::TogglePointNormals()
{
    if (!HasFlag(DisplayFlag::PointNormals) && m_PointNormals.size() < m_PointCloud.size())
    {
        throw Failure("the normals of the point cloud cannot be shown: there are " +
                      std::to_string(m_PointNormals.size()) + " for " + std::to_string(m_PointCloud.size()) +
                      " points");
    }
    Toggle(DisplayFlag::PointNormals);
}

void Open3DView::ToggleProjectionLines()
{
    if (!HasFlag(DisplayFlag::ProjectionLines) && m_ProjectedPoints.size() != m_PointCloud.size())
    {
        throw Failure("the projection lines cannot be shown: there are " +
                      std::to_string(m_ProjectedPoints.size()) + " projected points for " +
                      std::to_string(m_PointCloud.size()) + " points");
    }
    Toggle(DisplayFlag::ProjectionLines);
}

void Open3DView::ToggleOriginalModel()
{
    const MANSceneGroup* pRoot = m_pSceneManager != nullptr ? m_pSceneManager->GetRootGroup() : nullptr;
    if (pRoot == nullptr || pRoot->GetChildren().empty())
    {
        throw Failure("there is no model to show or hide: import one first");
    }
    MANSceneNode* pModel = pRoot->GetChildren().front();
    const bool wasVisible = pModel->IsVisible();
    pModel->SetVisible(!wasVisible);
    try
    {
        Redraw();
    }
    catch (...)
    {
        pModel->SetVisible(wasVisible);
        throw;
    }
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

const DSSolid* Open3DView::GetLastMarkedSolid(const std::vector<std::uint32_t>& ids) const
{
    for (auto id = ids.rbegin(); id != ids.rend(); ++id)
    {
        if (MANBrepElementManager::GetElementType(*id) != ElementKind::Solid)
        {
            continue;
        }
        if (const DSElement* pElement = m_pElementManager->FindLiveElement(*id))
        {
            return static_cast<const DSSolid*>(pElement);
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
    if (ShowsMarksOf(ElementKind::Solid, m_nDisplayFlags))
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
