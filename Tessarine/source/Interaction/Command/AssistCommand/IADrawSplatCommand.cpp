#include "IADrawSplatCommand.h"
#include "Assert.h"
#include "Open3DCamera.h"

namespace tessarine
{
namespace
{
constexpr float kHalfDepth = 0.01F;
}

CutFace IADrawSplatCommand::MakeQuad() const
{
    ASSERT(m_pCamera != nullptr);
    ASSERT(m_pCamera->GetWidth() > 0 && m_pCamera->GetHeight() > 0);
    smVec3d depth = m_pCamera->GetViewVector();
    depth.Normalize();
    depth *= kHalfDepth;
    const smVec3d start = m_pCamera->ScreenToNearPlane(m_nStartX, m_nStartY);
    const smVec3d end = m_pCamera->ScreenToNearPlane(m_nEndX, m_nEndY);
    return {start - depth, end - depth, end + depth, start + depth};
}

void IADrawSplatCommand::Execute()
{
    ASSERT(m_pScene != nullptr);
    m_pScene->GetCutFaceList().push_back(MakeQuad());
}
}
