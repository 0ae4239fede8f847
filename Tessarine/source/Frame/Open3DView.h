#pragma once
#include "Open3DCamera.h"
#include "smVec3d.h"
#include "smVec3f.h"
#include <cstdint>
#include <vector>

namespace tessarine
{
class DSSolid;
class IAController;
class MANBrepElementManager;
class MANSceneManager;
class OCTNODE;

/// The switches of the view, one bit each.
namespace DisplayFlag
{
inline constexpr std::uint32_t Grid = 0x1;
inline constexpr std::uint32_t Axes = 0x2;
inline constexpr std::uint32_t Wire = 0x4;
inline constexpr std::uint32_t FlatShading = 0x8;
inline constexpr std::uint32_t Texture = 0x10;
inline constexpr std::uint32_t BoundaryEdges = 0x20;
inline constexpr std::uint32_t LineSmoothing = 0x40;
inline constexpr std::uint32_t PolygonSmoothing = 0x80;
inline constexpr std::uint32_t Blending = 0x100;
inline constexpr std::uint32_t Points = 0x200;
inline constexpr std::uint32_t Octree = 0x400;
inline constexpr std::uint32_t PointCloud = 0x800;
inline constexpr std::uint32_t PointNormals = 0x1000;
inline constexpr std::uint32_t SmoothShading = 0x2000;
inline constexpr std::uint32_t ProjectedPoints = 0x4000;
inline constexpr std::uint32_t ProjectionLines = 0x8000;
inline constexpr std::uint32_t NewMesh = 0x10000;
inline constexpr std::uint32_t CutFaces = 0x20000;
}

/// The view of one model: camera, switches, and what the commands leave to be shown over the scene.
///
/// It draws nothing yet: a frame is the two counters of the status bar.
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

    /// One whole frame: writes the counts of vertices (pane 1) and faces (pane 2) of the last solid that is
    /// marked as selected or hovered, else of the root's first child.
    void Redraw();

    /// Size of the client area in pixels. A height of 0 gives the camera an infinite aspect.
    void Resize(int x, int y, int width, int height);

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
    const DSSolid* GetFirstSolid() const;
    const DSSolid* GetLastMarkedSolid(const std::vector<std::uint32_t>& ids) const;
    const DSSolid* GetCountedSolid() const;
    bool ShowsSolidMarks() const;

    const OCTNODE* m_pOctree = nullptr;
    std::vector<smVec3d> m_PointCloud;
    std::vector<smVec3d> m_PointNormals;
    std::vector<smVec3d> m_ProjectedPoints;
    DSSolid* m_pNewMesh = nullptr;
    std::uint32_t m_nDisplayFlags = DisplayFlag::Wire | DisplayFlag::FlatShading;
    smVec3f m_ClearColor;
    IAController* m_pController = nullptr;
    MANSceneManager* m_pSceneManager = nullptr;
    MANBrepElementManager* m_pElementManager = nullptr;
    Open3DCamera m_Camera;
    std::vector<std::uint32_t> m_HoverList;
};
}
