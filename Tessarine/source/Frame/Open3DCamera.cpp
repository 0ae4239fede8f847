#include "Open3DCamera.h"
#include "Assert.h"
#include <cmath>

namespace tessarine
{
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
    smVec3d newUp = view.Cross(side);
    const double t = newUp.Length();
    ASSERT(std::isfinite(t));
    ASSERT(t > smVec3d_zero);
    newUp.Normalize();

    m_Position = position;
    m_Target = target;
    m_Up = newUp;
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
