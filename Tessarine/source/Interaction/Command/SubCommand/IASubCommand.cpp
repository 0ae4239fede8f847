#include "IASubCommand.h"
#include "Assert.h"
#include "MANBrepElementManager.h"
#include "MANSceneManager.h"

namespace tessarine
{
DSSolid* IASubCommand::GetCurrentSolid() const
{
    ASSERT(m_pElementManager != nullptr);
    ASSERT(m_pSceneManager != nullptr);
    return m_pSceneManager->GetCurrentSolid();
}

void IASubCommand::AddLeafOf(DSSolid* pSolid)
{
    m_pSceneManager->AppendLeaf(pSolid);
}

void IASubCommand::KeepHiddenSnapshot(const DSSolid& solid)
{
    DSSolid* pCopy = m_pElementManager->CreateSolid();
    m_pElementManager->CopySolid(&solid, pCopy);
    AddLeafOf(pCopy);
    pCopy->SetVisible(false);
}
}
