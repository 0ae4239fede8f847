#include "IASetMaterialCommand.h"
#include "Assert.h"
#include "MANBrepElementManager.h"
#include "Platform.h"

namespace tessarine
{
void IASetMaterialCommand::SetElementManager(MANBrepElementManager* pManager)
{
    m_pElementManager = pManager;
    m_pMaterialManager = pManager != nullptr ? &pManager->GetMaterialManager() : nullptr;
}

void IASetMaterialCommand::Execute()
{
    ASSERT(m_pElementManager != nullptr);
    ASSERT(m_pMaterialManager != nullptr);
    if (m_pElementManager->GetSelectList().empty())
    {
        return;
    }
    const std::uint32_t id = m_pElementManager->GetSelectList().front();
    DSMaterial* pNewMaterial = m_pMaterialManager->NewMaterial();
    if (m_nKind != ElementKind::Face && m_nKind != ElementKind::Solid)
    {
        return;
    }
    if (const DSMaterial* pOldMaterial = FindOldMaterial(id))
    {
        pNewMaterial->m_Ambient = pOldMaterial->m_Ambient;
        pNewMaterial->m_Diffuse = pOldMaterial->m_Diffuse;
        pNewMaterial->m_Specular = pOldMaterial->m_Specular;
        pNewMaterial->m_Emission = pOldMaterial->m_Emission;
        pNewMaterial->m_fShininess = pOldMaterial->m_fShininess;
        pNewMaterial->m_fTransparency = pOldMaterial->m_fTransparency;
    }
    GetPlatform().OpenMaterialDialog(m_pMaterialManager->GetMaterialList().back());
}

const DSMaterial* IASetMaterialCommand::FindOldMaterial(std::uint32_t id) const
{
    if (m_nKind == ElementKind::Face)
    {
        const DSFace* pFace = m_pElementManager->GetFace(id);
        ASSERT(pFace != nullptr);
        return pFace->GetMaterial();
    }
    const DSSolid* pSolid = m_pElementManager->GetSolid(id);
    ASSERT(pSolid != nullptr);
    return pSolid->GetMaterial();
}
}
