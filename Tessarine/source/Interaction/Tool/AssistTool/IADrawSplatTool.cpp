#include "IADrawSplatTool.h"
#include "Assert.h"
#include "MANCommandManager.h"
#include <utility>

namespace tessarine
{
IADrawSplatTool::~IADrawSplatTool() = default;

void IADrawSplatTool::Enter()
{
    ASSERT(m_pCommandManager != nullptr);
    m_pCommand = m_pCommandManager->CreateCommand(CommandID::DrawSplat);
}

void IADrawSplatTool::Leave()
{
    MANCommandManager::ReleaseCommand(std::move(m_pCommand));
}
}
