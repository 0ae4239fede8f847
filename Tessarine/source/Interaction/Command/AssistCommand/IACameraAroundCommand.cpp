#include "IACameraAroundCommand.h"
#include "Assert.h"
#include "Degree.h"
#include "Open3DCamera.h"
#include <algorithm>
#include <cmath>

namespace tessarine
{
namespace
{
constexpr double kSteepest = 89.0;
constexpr smVec3d kWorldUp(0.0, 1.0, 0.0);
constexpr smVec3d kWorldFront(0.0, 0.0, 1.0);

/// In degrees, of a view of this length.
double GetElevation(const smVec3d& view, double length)
{
    return std::asin(view.Dot(kWorldUp) / length) / kDegree;
}

/// In degrees from the z axis, 0 to 360.
double GetAzimuth(const smVec3d& view, double length)
{
    const double angle = std::acos(view.Dot(kWorldFront) / length) / kDegree;
    return view.x < 0.0 ? 360.0 - angle : angle;
}
}

void IACameraAroundCommand::Execute()
{
    ASSERT(m_pCamera != nullptr);
    const smVec3d eye = m_pCamera->GetPosition();
    const smVec3d view = m_pCamera->GetTarget() - eye;
    const double length = view.Length();

    const double elevation =
        std::clamp(GetElevation(view, length) + m_dDeltaY, -kSteepest, kSteepest) * kDegree;
    const double azimuth = (GetAzimuth(view, length) + m_dDeltaX) * kDegree;
    const smVec3d turned(length * std::cos(elevation) * std::sin(azimuth), length * std::sin(elevation),
                         length * std::cos(elevation) * std::cos(azimuth));
    m_pCamera->SetLookAt(eye, eye + turned, kWorldUp);
}
}
