#include "IACameraMoveCommand.h"
#include "Assert.h"
#include "Open3DCamera.h"

namespace tessarine
{
void IACameraMoveCommand::Execute()
{
    ASSERT(m_pCamera != nullptr);
    smVec3d side = m_pCamera->GetSideVector();
    side.Normalize();
    smVec3d up = m_pCamera->GetUp();
    up.Normalize();

    const smVec3d step = side * m_dDeltaX + up * m_dDeltaY;
    m_pCamera->SetLookAt(m_pCamera->GetPosition() + step, m_pCamera->GetTarget() + step, up);
}
}
