#include "IACameraOrbitCommand.h"
#include "Assert.h"
#include "Open3DCamera.h"

namespace tessarine
{
namespace
{
constexpr double kStep = 0.1;

smVec3d Normalized(smVec3d v)
{
    v.Normalize();
    return v;
}
}

void IACameraOrbitCommand::Execute()
{
    ASSERT(m_pCamera != nullptr);
    const smVec3d eye = m_pCamera->GetPosition();
    const smVec3d target = m_pCamera->GetTarget();

    smVec3d direction = Normalized(eye - target);
    const smVec3d right = Normalized(m_pCamera->GetUp().Cross(direction));
    smVec3d up = Normalized(direction.Cross(right));

    direction = Normalized(direction - up * m_dDeltaY * kStep);
    up = Normalized(up - direction * m_dDeltaY * kStep);
    direction = Normalized(direction - right * m_dDeltaX * kStep);
    up = Normalized(up - right * m_dDeltaX * kStep);

    const double distance = (eye - target).Length();
    m_pCamera->SetLookAt(target + direction * distance, target, up);
}
}
