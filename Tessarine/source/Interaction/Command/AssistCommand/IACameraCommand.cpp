#include "IACameraCommand.h"
#include "Assert.h"
#include "Open3DCamera.h"

namespace tessarine
{
void IACameraCommand::SaveState()
{
    ASSERT(m_pCamera != nullptr);
    m_SavedPosition = m_pCamera->GetPosition();
    m_SavedTarget = m_pCamera->GetTarget();
    m_SavedUp = m_pCamera->GetUp();
}

void IACameraCommand::RestoreState()
{
    ASSERT(m_pCamera != nullptr);
    m_pCamera->SetLookAt(m_SavedPosition, m_SavedTarget, m_SavedUp);
}
}
