#include "IAMoveTool.h"
#include "Assert.h"
#include "MANCommandManager.h"

namespace tessarine
{
IAMoveTool::~IAMoveTool() = default;

void IAMoveTool::Enter()
{
    ASSERT(m_pCommandManager != nullptr);
    m_pCommand = m_pCommandManager->CreateCommand(m_nCommandID);
}
}
