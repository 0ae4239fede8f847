#include "MaterialBinder.h"
#include "Console.h"

namespace tessarine
{
namespace
{
std::string_view UpToZero(const std::string& name)
{
    return name.c_str();
}
}

void MaterialBinder::BindTextures(const TextureNameMap& textureMaps)
{
    std::unordered_multimap<std::string_view, DSMaterial*> materialsOfName;
    for (const auto& pMaterial : m_Materials.GetMaterialList())
    {
        materialsOfName.emplace(UpToZero(pMaterial->m_Name), pMaterial.get());
    }
    std::unordered_multimap<std::string_view, std::string_view> namesOfFile;
    for (const auto& [materialName, fileName] : textureMaps)
    {
        namesOfFile.emplace(UpToZero(fileName), UpToZero(materialName));
    }
    for (const auto& pTexture : m_Materials.GetTextureList())
    {
        DSTextureBinding* pBinding = m_Materials.NewImage();
        pBinding->m_pTexture = pTexture.get();
        const auto [firstName, lastName] = namesOfFile.equal_range(UpToZero(pTexture->GetFileName()));
        for (auto name = firstName; name != lastName; ++name)
        {
            const auto [first, last] = materialsOfName.equal_range(name->second);
            for (auto material = first; material != last; ++material)
            {
                material->second->m_pTexture = pBinding;
            }
        }
    }
}

void MaterialBinder::SayComparisons(const GroupNameMap& groupNames) const
{
    for (const auto& pMaterial : m_Materials.GetMaterialList())
    {
        const std::string_view materialName = UpToZero(pMaterial->m_Name);
        for (const auto& [group, groupName] : groupNames)
        {
            DebugConsole() << UpToZero(groupName) << '\n' << materialName << '\n';
            if (UpToZero(groupName) == materialName)
            {
                break;
            }
        }
    }
}

void MaterialBinder::BindFaces(DSSolid& solid, const IndexList& faceGroups, const GroupNameMap& groupNames)
{
    ASSERT(faceGroups.size() == solid.GetFaceList().size());
    const auto materialOfGroup = FindGroupMaterials(groupNames);
    std::int32_t last = -1;
    auto group = faceGroups.begin();
    for (DSFace* pFace : solid.GetFaceList())
    {
        if (*group != last)
        {
            const auto found = materialOfGroup.find(*group);
            const bool hasMaterial = *group != 0 && found != materialOfGroup.end();
            pFace->GetMaterial() = hasMaterial ? found->second : &m_Materials.GetDefaultMaterial();
            last = *group;
        }
        ++group;
    }
}

std::unordered_map<std::int32_t, DSMaterial*>
MaterialBinder::FindGroupMaterials(const GroupNameMap& groupNames) const
{
    std::unordered_map<std::string_view, DSMaterial*> materialOfName;
    for (const auto& pMaterial : m_Materials.GetMaterialList())
    {
        materialOfName[UpToZero(pMaterial->m_Name)] = pMaterial.get();
    }
    std::unordered_map<std::int32_t, DSMaterial*> materialOfGroup;
    for (const auto& [group, name] : groupNames)
    {
        if (const auto found = materialOfName.find(UpToZero(name)); found != materialOfName.end())
        {
            materialOfGroup.emplace(group, found->second);
        }
    }
    return materialOfGroup;
}
}
