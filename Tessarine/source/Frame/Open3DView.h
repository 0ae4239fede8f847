#pragma once
#include "DisplayFlag.h"
#include "FrameTextures.h"
#include "GLSurface.h"
#include "Image.h"
#include "Open3DCamera.h"
#include "smVec3d.h"
#include "smVec3f.h"
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tessarine
{
class DSSolid;
class IAController;
class MANBrepElementManager;
class MANSceneManager;
class OCTNODE;

/// The view of one model: the GL surface and its frames, camera, switches, and what the commands leave to be
/// shown over the scene.
///
/// The surface's context is current within one operation only. Without a surface (before Create, after
/// Destroy, or where the machine has none) a frame is what others than the eye notice of it: the counters of
/// the status bar and the console's lines.
/// The controller stands above the view; the view only keeps its address for those who ask, and reads the
/// stores that came with it.
class Open3DView
{
public:
    Open3DView() = default;
    Open3DView(const Open3DView&) = delete;
    Open3DView& operator=(const Open3DView&) = delete;

    /// Joins the view to a controller and the stores of its document (IAController::SetView does).
    void SetController(IAController* controller, MANSceneManager* scene, MANBrepElementManager* elements);
    IAController* GetController() const { return m_pController; }

    /// Gets a surface from the platform.
    /// @return 0; -1 where there is none, or none with fixed-function GL: a message box has named the step
    ///         that failed
    int Create();
    /// What the last Create missed, and what to do; empty when it missed nothing.
    const std::string& GetCreateError() const { return m_strCreateError; }
    bool HasSurface() const { return m_pSurface != nullptr; }
    /// Frees the surface.
    ///
    /// Needs   A surface (asserted).
    void Destroy();

    /// What stays for all frames. Once behind Create.
    void InitState();

    /// Makes the context current, and none.
    ///
    /// Needs   A surface (asserted).
    /// @return 0, or -1 with a message box
    int BeginContext();
    int EndContext();
    /// Whether the last of the two that was called has failed.
    bool HasLostContext() const { return m_bLostContext; }

    /// One whole frame, shown before this returns. Writes the counts of vertices (pane 1) and faces (pane 2)
    /// of the last solid that is marked as selected or hovered, else of the root's first child.
    /// A call from within a frame, as by a message box that lets the window paint itself, does nothing.
    ///
    /// Of a frame that nobody sees (GLSurface::IsWatched) only what outlives it is done: GL's state and the
    /// console's lines.
    void Redraw();

    /// One whole frame, read before it is shown. Three components a pixel.
    ///
    /// Fails   Failure, where the machine has no surface or the view no area.
    Image TakePicture();

    /// Size of the client area in pixels. Nothing is redrawn. A height of 0 leaves the camera its aspect.
    void Resize(int x, int y, int width, int height);

    // The switches. Each draws a frame. One whose overlay could not be drawn throws Failure when it is turned
    // on, and stays off.

    void ToggleGrid() { Toggle(DisplayFlag::Grid); }
    void ToggleAxes() { Toggle(DisplayFlag::Axes); }
    void ToggleWire() { Toggle(DisplayFlag::Wire); }
    void TogglePoints() { Toggle(DisplayFlag::Points); }
    /// Flat and smooth shading exclude each other.
    void ToggleFlatShading() { ToggleShading(DisplayFlag::FlatShading, DisplayFlag::SmoothShading); }
    void ToggleSmoothShading() { ToggleShading(DisplayFlag::SmoothShading, DisplayFlag::FlatShading); }
    /// The textured model alone, until one of the shadings is turned on. Fails where there is no GL.
    void ShowTexture();
    /// Fails without an octree.
    void ToggleOctree();
    void TogglePointCloud() { Toggle(DisplayFlag::PointCloud); }
    /// Fails with fewer normals than points.
    void TogglePointNormals();
    void ToggleProjectedPoints() { Toggle(DisplayFlag::ProjectedPoints); }
    /// Fails with another number of projected points than of points.
    void ToggleProjectionLines();
    void ToggleNewMesh() { Toggle(DisplayFlag::NewMesh); }
    void ToggleCutFaces() { Toggle(DisplayFlag::CutFaces); }
    /// The visibility of the root's first child. Fails with an empty root.
    void ToggleOriginalModel();

    std::uint32_t GetDisplayFlags() const { return m_nDisplayFlags; }
    void SetDisplayFlags(std::uint32_t flags) { m_nDisplayFlags = flags; }

    Open3DCamera* GetCamera() { return &m_Camera; }
    const Open3DCamera* GetCamera() const { return &m_Camera; }

    /// The selection of the joined element manager.
    std::uint32_t GetSelectType() const;
    void SetSelectType(std::uint32_t type);
    void ToggleSelect(std::uint32_t id);

    /// Ids of what is under the mouse. They may outlive their elements: a frame skips those.
    std::vector<std::uint32_t>& GetHoverList() { return m_HoverList; }
    const std::vector<std::uint32_t>& GetHoverList() const { return m_HoverList; }

    /// The overlays, written by the commands that were given the view: the points of a cloud, a normal and a
    /// foot point for each, a mesh in the making, and the root of an octree.
    std::vector<smVec3d>& GetPointCloud() { return m_PointCloud; }
    const std::vector<smVec3d>& GetPointCloud() const { return m_PointCloud; }
    std::vector<smVec3d>& GetPointNormals() { return m_PointNormals; }
    const std::vector<smVec3d>& GetPointNormals() const { return m_PointNormals; }
    std::vector<smVec3d>& GetProjectedPoints() { return m_ProjectedPoints; }
    const std::vector<smVec3d>& GetProjectedPoints() const { return m_ProjectedPoints; }
    DSSolid* GetNewMesh() const { return m_pNewMesh; }
    void SetNewMesh(DSSolid* solid) { m_pNewMesh = solid; }
    const OCTNODE* GetOctree() const { return m_pOctree; }
    void SetOctree(const OCTNODE* root) { m_pOctree = root; }

    const smVec3f& GetClearColor() const { return m_ClearColor; }
    void SetClearColor(const smVec3f& color) { m_ClearColor = color; }

    /// What a command on the model can change here, to go back to when it fails.
    struct Checkpoint
    {
        std::vector<smVec3d> pointCloud;
        std::vector<smVec3d> pointNormals;
        std::vector<smVec3d> projectedPoints;
        std::vector<std::uint32_t> hoverList;
        DSSolid* newMesh = nullptr;
        const OCTNODE* octree = nullptr;
        std::uint32_t displayFlags = 0;
    };
    Checkpoint Save() const;
    /// Allocates nothing.
    void Restore(Checkpoint&& checkpoint) noexcept;

private:
    void CheckPipeline();
    void Toggle(std::uint32_t flag);
    void ToggleShading(std::uint32_t flag, std::uint32_t other);
    bool HasFlag(std::uint32_t flag) const { return (m_nDisplayFlags & flag) != 0; }

    void DrawFrame(bool isWatched, const std::function<void()>& beforeSwap);
    void DrawInContext(bool isWatched);
    void SayFrame() const;
    void ShowCounters() const;
    const DSSolid* GetFirstSolid() const;
    const DSSolid* GetLastMarkedSolid(const std::vector<std::uint32_t>& ids) const;
    const DSSolid* GetCountedSolid() const;

    const OCTNODE* m_pOctree = nullptr;
    std::vector<smVec3d> m_PointCloud;
    std::vector<smVec3d> m_PointNormals;
    std::vector<smVec3d> m_ProjectedPoints;
    DSSolid* m_pNewMesh = nullptr;
    std::unique_ptr<GLSurface> m_pSurface;
    std::string m_strCreateError;
    std::uint32_t m_nDisplayFlags = DisplayFlag::Wire | DisplayFlag::FlatShading;
    smVec3f m_ClearColor;
    IAController* m_pController = nullptr;
    MANSceneManager* m_pSceneManager = nullptr;
    MANBrepElementManager* m_pElementManager = nullptr;
    Open3DCamera m_Camera;
    std::vector<std::uint32_t> m_HoverList;
    FrameTextures m_Textures;
    bool m_bDrawing = false; ///< a frame is under way
    bool m_bLostContext = false;
};
}
