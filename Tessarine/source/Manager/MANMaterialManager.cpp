#include "MANMaterialManager.h"
#include <type_traits>

namespace tessarine
{
MANMaterialManager::MANMaterialManager()
{
    m_DefaultMaterial.m_Name = "Default_Mat";
}

MANMaterialManager::~MANMaterialManager()
{
    m_ImageList.clear();
    m_TextureList.clear();
    m_MaterialList.clear();
}

DSMaterial* MANMaterialManager::NewMaterial()
{
    return m_MaterialList.emplace_back(std::make_shared<DSMaterial>()).get();
}

DSTexture* MANMaterialManager::NewTexture()
{
    return m_TextureList.emplace_back(std::make_unique<DSTexture>()).get();
}

DSTextureBinding* MANMaterialManager::NewImage()
{
    return m_ImageList.emplace_back(std::make_unique<DSTextureBinding>()).get();
}

MANMaterialManager::Checkpoint MANMaterialManager::Save() const
{
    Checkpoint saved;
    saved.materials.reserve(m_MaterialList.size());
    for (const auto& pMaterial : m_MaterialList)
    {
        saved.materials.push_back(*pMaterial);
    }
    saved.defaultMaterial = m_DefaultMaterial;
    saved.textures = m_TextureList.size();
    saved.images = m_ImageList.size();
    return saved;
}

void MANMaterialManager::Restore(Checkpoint&& checkpoint) noexcept
{
    static_assert(std::is_nothrow_move_assignable_v<DSMaterial>);
    m_ImageList.resize(checkpoint.images);
    m_TextureList.resize(checkpoint.textures);
    m_MaterialList.resize(checkpoint.materials.size());
    for (std::size_t i = 0; i < m_MaterialList.size(); ++i)
    {
        *m_MaterialList[i] = std::move(checkpoint.materials[i]);
    }
    m_DefaultMaterial = std::move(checkpoint.defaultMaterial);
}
}
