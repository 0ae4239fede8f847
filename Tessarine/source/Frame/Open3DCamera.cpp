#include "Open3DCamera.h"
#include "Assert.h"
#include "Degree.h"
#include <cmath>

namespace tessarine
{
namespace
{
/// The sine of an angle that the rounding of two parallel vectors may make.
constexpr double kParallel = 1e-15;
}

smVec3d Open3DCamera::GetViewVector() const
{
    return m_Target - m_Position;
}

smVec3d Open3DCamera::GetSideVector() const
{
    return GetViewVector().Cross(m_Up);
}

void Open3DCamera::SetLookAt(const smVec3d& position, const smVec3d& target, const smVec3d& up)
{
    const smVec3d view = position - target;
    const smVec3d side = up.Cross(view);
    const bool upLeavesTheView = side.Length() > kParallel * up.Length() * view.Length();
    ASSERT(upLeavesTheView);
    smVec3d newUp = view.Cross(side);
    const double t = newUp.Length();
    ASSERT(std::isfinite(t));
    ASSERT(t > smVec3d_zero);
    newUp.Normalize();

    m_Position = position;
    m_Target = target;
    m_Up = newUp;
}

smVec3d Open3DCamera::ScreenToNearPlane(int x, int y) const
{
    const double nx = 2.0 * x / m_nWidth - 1.0;
    const double ny = 1.0 - 2.0 * y / m_nHeight;
    smVec3d view = GetViewVector();
    view.Normalize();
    smVec3d up = m_Up;
    smVec3d right = up.Cross(-view);
    right.Normalize();
    up.Normalize();
    const double height = m_fNear * std::tan(m_fFovy * kDegree / 2.0);
    const double width = m_fAspect * height;
    return m_Position + view * m_fNear + up * height * ny + right * width * nx;
}

void Open3DCamera::SetSize(int width, int height)
{
    if (height != 0)
    {
        m_fAspect = static_cast<float>(width) / static_cast<float>(height);
    }
    m_nWidth = width;
    m_nHeight = height;
}
}
