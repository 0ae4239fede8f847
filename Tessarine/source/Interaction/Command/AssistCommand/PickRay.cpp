#include "PickRay.h"
#include "CycleGuard.h"
#include "DSBrep.h"
#include "Degree.h"
#include "FaceRuns.h"
#include <cmath>
#include <limits>

namespace tessarine
{
namespace
{
constexpr double kWholeTurn = 2.0 * kPi;
constexpr double kTurnTolerance = 1e-6; ///< of the square

/// How far to the side of a plane through the ray a corner must lie, against its distance from the eye, for the
/// side to be beyond doubt.
constexpr double kSureSide = 1e-6;
/// Squares and products of numbers up to here are finite.
constexpr double kTame = 1e70;
constexpr int kMostCorners = 1000;

constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

/// The unit vector, or no numbers where there is none.
smVec3d UnitOrNone(const smVec3d& v)
{
    const double length = v.Length();
    const bool isTame = length > 1.0 / kTame && length < kTame;
    return isTame ? smVec3d(v.x / length, v.y / length, v.z / length)
                  : smVec3d(kNoNumber, kNoNumber, kNoNumber);
}

/// The axis that leans the least towards v.
smVec3d AxisAcross(const smVec3d& v)
{
    const double x = std::abs(v.x);
    const double y = std::abs(v.y);
    const double z = std::abs(v.z);
    if (x <= y && x <= z)
    {
        return {1.0, 0.0, 0.0};
    }
    return y <= z ? smVec3d(0.0, 1.0, 0.0) : smVec3d(0.0, 0.0, 1.0);
}

/// Normalises without a report.
/// @return whether the length is one to divide by
bool NormalizeQuietly(smVec3d& v)
{
    const double t = v.Length();
    if (!(t > smVec3d_zero))
    {
        return false;
    }
    v = smVec3d(v.x / t, v.y / t, v.z / t);
    return true;
}

double SumOfSizes(const smVec3d& v)
{
    return std::abs(v.x) + std::abs(v.y) + std::abs(v.z);
}

/// How far a box reaches from its centre in a direction.
double GetReach(const smVec3d& halfExtent, const smVec3d& direction)
{
    return halfExtent.x * std::abs(direction.x) + halfExtent.y * std::abs(direction.y) +
           halfExtent.z * std::abs(direction.z);
}

const smVec3d& StartOf(const DSHalfEdge& halfEdge)
{
    ASSERT(halfEdge.GetVertex() != nullptr);
    return halfEdge.GetVertex()->GetPosition();
}

/// From a to b, two unit vectors at right angles to d.
double GetAngle(const smVec3d& a, const smVec3d& b, const smVec3d& d)
{
    const double c = a.Dot(b);
    double angle = 0.0;
    if (c < -1.0)
    {
        angle = 180.0;
    }
    else if (!(c > 1.0))
    {
        angle = std::acos(c);
    }
    return a.Cross(b).Dot(d) > 0.0 ? -angle : angle;
}
}

PickRay::PickRay(const smVec3d& eye, const smVec3d& nearPoint)
    : m_Eye(eye),
      m_Direction(nearPoint - eye),
      m_Right(UnitOrNone(AxisAcross(m_Direction).Cross(UnitOrNone(m_Direction)))),
      m_Up(UnitOrNone(m_Direction).Cross(m_Right))
{
}

/// Whether a plane through the ray has all corners of the face clearly on one side. A glance at four such
/// planes, which nearly every face fails, in place of its angles.
///
/// It is safe. Seen along the ray, such corners lie within half a turn, at least a millionth of a radian from
/// both its ends: with p from the eye to a corner, the vector p x d is longer than 1e-6 |p| |d|, so that the
/// rounding (some 1e-16 |p| |d|) turns it by less than 1e-9. Hence no angle between two corners comes near to
/// half a turn, none counts as 180, all have the right sign or are next to zero, and an arc cosine is off by
/// 1e-7 at most, next to zero. As the corners come round to the first, the angles sum to zero, within 1e-7 a
/// corner: far from a whole turn. Where the numbers are so large that a product may overflow, and where there
/// are none, no comparison here holds.
bool PickRay::MissesSurely(const DSFace& face) const
{
    if (face.GetLoopList().size() != 1 || face.GetLoopList()[0] == nullptr)
    {
        return false;
    }
    const DSHalfEdge* const pStart = face.GetLoopList()[0]->GetHalfEdge();
    const DSHalfEdge* pHalfEdge = pStart;
    bool isRight = true;
    bool isLeft = true;
    bool isAbove = true;
    bool isBelow = true;
    int corners = 0;
    do
    {
        if (pHalfEdge == nullptr || pHalfEdge->GetVertex() == nullptr || ++corners > kMostCorners)
        {
            return false;
        }
        const smVec3d p = pHalfEdge->GetVertex()->GetPosition() - m_Eye;
        const double size = SumOfSizes(p);
        const double sure = size < kTame ? kSureSide * size : kNoNumber;
        const double right = p.Dot(m_Right);
        const double up = p.Dot(m_Up);
        isRight = isRight && right > sure;
        isLeft = isLeft && right < -sure;
        isAbove = isAbove && up > sure;
        isBelow = isBelow && up < -sure;
        pHalfEdge = pHalfEdge->GetNext();
    } while (pHalfEdge != pStart);
    return isRight || isLeft || isAbove || isBelow;
}

/// Whether a plane through the ray has the whole box clearly on one side. So it has each corner of each face
/// then, and what is said above holds: the doubled distance, and the centre's share in it, make up for the rounding
/// of the box.
bool PickRay::MissesSurely(const FaceRun& run) const
{
    const smVec3d p = run.centre - m_Eye;
    const double size = SumOfSizes(p) + SumOfSizes(run.halfExtent) + SumOfSizes(run.centre);
    const double sure = size < kTame ? 2.0 * kSureSide * size : kNoNumber;
    return std::abs(p.Dot(m_Right)) > GetReach(run.halfExtent, m_Right) + sure ||
           std::abs(p.Dot(m_Up)) > GetReach(run.halfExtent, m_Up) + sure;
}

bool PickRay::SumsToAWholeTurn(const DSFace& face) const
{
    double sum = 0.0;
    bool isHit = false;
    for (const DSLoop* pLoop : face.GetLoopList())
    {
        ASSERT(pLoop != nullptr);
        if (!AddAngles(*pLoop, sum))
        {
            return false;
        }
        const double off = sum - kWholeTurn;
        isHit = isHit || off * off < kTurnTolerance;
    }
    return isHit;
}

/// @return whether all corners lie beside the ray
bool PickRay::AddAngles(const DSLoop& loop, double& sum) const
{
    const DSHalfEdge* const pStart = loop.GetHalfEdge();
    const DSHalfEdge* pHalfEdge = pStart;
    CycleGuard guard;
    do
    {
        ASSERT(pHalfEdge != nullptr && pHalfEdge->GetNext() != nullptr);
        smVec3d a = (StartOf(*pHalfEdge) - m_Eye).Cross(m_Direction);
        smVec3d b = (StartOf(*pHalfEdge->GetNext()) - m_Eye).Cross(m_Direction);
        if (!NormalizeQuietly(a) || !NormalizeQuietly(b))
        {
            return false;
        }
        sum += GetAngle(a, b, m_Direction);
        guard.Visit(pHalfEdge);
        pHalfEdge = pHalfEdge->GetNext();
    } while (pHalfEdge != pStart);
    return true;
}
}
