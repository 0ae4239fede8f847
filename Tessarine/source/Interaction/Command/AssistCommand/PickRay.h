#pragma once
#include "smVec3d.h"

namespace tessarine
{
class DSFace;
class DSLoop;
struct FaceRun;

/// A ray from the eye, and which faces it goes through.
///
/// The test sums the angles under which the edges of a face are seen around the ray: a whole turn tells that
/// the ray goes through the face from its front. Nothing asks whether the face lies behind the eye.
class PickRay
{
public:
    /// @param nearPoint the ray goes from the eye through it
    PickRay(const smVec3d& eye, const smVec3d& nearPoint);

    const smVec3d& GetEye() const { return m_Eye; }
    /// Not normalised.
    const smVec3d& GetDirection() const { return m_Direction; }

    /// Whether it goes through the front of the face.
    ///
    /// A corner that lies on the ray makes it miss.
    ///
    /// Kept    An angle whose cosine comes out below -1 counts as 180 radians.
    bool GoesThrough(const DSFace& face) const { return !MissesSurely(face) && SumsToAWholeTurn(face); }

    /// Whether it goes through none of the faces for sure. False where a closer look is due.
    bool MissesSurely(const FaceRun& run) const;

private:
    bool MissesSurely(const DSFace& face) const;
    bool SumsToAWholeTurn(const DSFace& face) const;
    bool AddAngles(const DSLoop& loop, double& sum) const;

    smVec3d m_Eye;
    smVec3d m_Direction;
    smVec3d m_Right; ///< with m_Up, unit vectors at right angles to the ray; no numbers where there are none
    smVec3d m_Up;
};
}
