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

void IASubCommand::KeepHiddenSnapshot(const DSSolid& solid)
{
    DSSolid* pCopy = m_pElementManager->CreateSolid();
    MANSceneLeaf* pLeaf = m_pSceneManager->NewLeaf();
    m_pElementManager->CopySolid(&solid, pCopy);
    MANSceneGroup* pRoot = m_pSceneManager->GetRootGroup();
    ASSERT(pRoot != nullptr);
    pRoot->AddChild(pLeaf);
    pLeaf->SetParent(pRoot);
    pLeaf->SetSolid(pCopy);
    pCopy->SetVisible(false);
}
}
