#include "IACameraZoomCommand.h"
#include "Assert.h"
#include "Open3DCamera.h"

namespace tessarine
{
void IACameraZoomCommand::Execute()
{
    ASSERT(m_pCamera != nullptr);
    smVec3d direction = m_pCamera->GetPosition() - m_pCamera->GetTarget();
    double distance = direction.Length();
    direction.Normalize();

    distance += m_dDistance;
    if (m_pCamera->GetNear() > distance)
    {
        distance = m_pCamera->GetNear();
    }
    if (m_pCamera->GetFar() < distance)
    {
        distance = m_pCamera->GetFar();
    }
    m_pCamera->SetLookAt(m_SavedTarget + direction * distance, m_SavedTarget, m_SavedUp);
}
}
