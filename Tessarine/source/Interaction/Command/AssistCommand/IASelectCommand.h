#pragma once
#include "IACommand.h"
#include "smVec3d.h"
#include <cstdint>

namespace tessarine
{
class DSFace;
class DSSolid;
class FaceRuns;
class MANSceneManager;
class Open3DCamera;
class PickRay;

/// Finds the element under the mouse, by geometry: the nearest face that the ray through the mouse's pixel goes
/// through from its front, and of this face the solid, the nearest edge, the nearest vertex, or itself.
///
/// Needs   A camera, a scene with a root, and a view with an area (the first two asserted).
/// Leaves  The stored normal of each face that the ray goes through is computed afresh.
/// Cost    One look at each face of the visible solids; with runs that have been made, at a few.
/// Kept    "Nearest" holds within a solid: what is hit of a later solid takes the place of what was hit before.
///         A face behind the eye that the ray's line goes through counts, and wins.
class IASelectCommand : public IACommand
{
public:
    IASelectCommand() : IACommand(false) {}

    /// What is looked for: ElementKind::Vertex, Edge or Face; a solid for all other kinds.
    void SetKind(std::uint32_t kind) { m_nKind = kind; }
    void SetCamera(const Open3DCamera* camera) { m_pCamera = camera; }
    void SetScene(const MANSceneManager* scene) { m_pScene = scene; }
    /// A pixel of the client area, y down.
    void SetMouse(int x, int y)
    {
        m_nMouseX = x;
        m_nMouseY = y;
    }

    /// Boxes of the faces that outlive the run, and must hold; null, as in the beginning, for a look at each face.
    void SetFaceRuns(FaceRuns* runs) { m_pFaceRuns = runs; }
    /// Makes the runs of what a run of the command would look at. Needs a scene.
    void MakeFaceRuns() const;

    void Execute() override;

    /// Whether the last run found an element. A face beyond the far plane is none.
    bool HasHit() const { return m_bHit; }
    /// The element that the last run found, else 0. It may be gone by now.
    std::uint32_t GetElementID() const { return m_nElementID; }

private:
    void PickSolid(const DSSolid& solid, const PickRay& ray);
    void PickFace(DSFace* face, const PickRay& ray, double& best);
    void PickElement();
    void PickOwnerSolid();
    void PickVertex();
    void PickEdge();

    std::uint32_t m_nKind = 0;
    const Open3DCamera* m_pCamera = nullptr;
    const MANSceneManager* m_pScene = nullptr;
    FaceRuns* m_pFaceRuns = nullptr;
    int m_nMouseX = 0;
    int m_nMouseY = 0;
    std::uint32_t m_nElementID = 0;
    bool m_bHit = false;
    DSFace* m_pHitFace = nullptr; ///< for the length of a run
    smVec3d m_EyePoint;
    smVec3d m_NearPoint;
    smVec3d m_ViewDirection; ///< a unit vector
};
}
