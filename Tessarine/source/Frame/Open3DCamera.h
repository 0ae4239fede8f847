#pragma once
#include "smVec3d.h"

namespace tessarine
{
/// Where the view is seen from. It keeps its place for the whole run, over new documents and imports.
class Open3DCamera
{
public:
    smVec3d GetPosition() const { return m_Position; }
    smVec3d GetTarget() const { return m_Target; }
    smVec3d GetUp() const { return m_Up; }

    /// From the eye to the target; not normalised.
    smVec3d GetViewVector() const;
    /// To the right of the view; not normalised.
    smVec3d GetSideVector() const;

    /// Moves the camera. The up vector that is kept is the unit vector at right angles to the view.
    ///
    /// Fails   An eye on the target, an up vector along the view, or a number that is none is an assertion,
    ///         and the camera stays as it was.
    void SetLookAt(const smVec3d& position, const smVec3d& target, const smVec3d& up);

    /// The point of the near plane under a pixel of the view, which must have an area.
    smVec3d ScreenToNearPlane(int x, int y) const;

    /// Near plane; also the smallest distance of a zoom.
    float GetNear() const { return m_fNear; }
    void SetNear(float distance) { m_fNear = distance; }
    /// Far plane; also the largest distance of a zoom.
    float GetFar() const { return m_fFar; }
    void SetFar(float distance) { m_fFar = distance; }
    /// Vertical field of view in degrees.
    float GetFovy() const { return m_fFovy; }
    void SetFovy(float degrees) { m_fFovy = degrees; }
    /// Width / height.
    float GetAspect() const { return m_fAspect; }
    /// Client size in pixels.
    int GetWidth() const { return m_nWidth; }
    int GetHeight() const { return m_nHeight; }

    /// Sets size and aspect. A height of 0 leaves the aspect at its last value.
    void SetSize(int width, int height);

private:
    float m_fNear = 0.1F;
    float m_fFar = 200.0F;
    float m_fFovy = 45.0F;
    float m_fAspect = 1.0F;
    smVec3d m_Position{10.0, 4.0, 10.0};
    smVec3d m_Target;
    smVec3d m_Up{0.0, 1.0, 0.0};
    int m_nWidth = 0;
    int m_nHeight = 0;
};
}
