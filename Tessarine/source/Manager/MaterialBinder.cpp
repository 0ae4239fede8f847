#include "MaterialBinder.h"
#include "Console.h"
#include <algorithm>

namespace tessarine
{
namespace
{
std::string_view UpToZero(const std::string& name)
{
    return name.c_str();
}

/// A binding with its place among all bindings, from 1.
struct Numbered
{
    std::size_t number = 0;
    DSTextureBinding* pBinding = nullptr;
};

/// The names of the groups, each with a line end, in the order of the groups.
class GroupLines
{
public:
    explicit GroupLines(const GroupNameMap& groupNames)
    {
        m_Lines.reserve(groupNames.size());
        for (const auto& [group, name] : groupNames)
        {
            m_Lines.push_back(std::string(UpToZero(name)) + '\n');
        }
        for (std::size_t i = 0; i < m_Lines.size(); ++i)
        {
            m_FirstOfName.emplace(m_Lines[i], i);
        }
    }

    /// How many there are up to the first that is this one.
    std::size_t CountUpTo(std::string_view line) const
    {
        const auto found = m_FirstOfName.find(line);
        return found != m_FirstOfName.end() ? found->second + 1 : m_Lines.size();
    }

    const std::string& GetLine(std::size_t index) const { return m_Lines[index]; }

private:
    std::vector<std::string> m_Lines;
    std::unordered_map<std::string_view, std::size_t> m_FirstOfName;
};

bool IsEarlier(const Numbered& a, const Numbered& b)
{
    return a.number < b.number;
}
}

void MaterialBinder::BindTextures(const TextureNameMap& textureMaps)
{
    // The last texture of a file hands its binding out last.
    std::unordered_map<std::string_view, Numbered> lastOfFile;
    for (const auto& pTexture : m_Materials.GetTextureList())
    {
        DSTextureBinding* pBinding = m_Materials.NewImage();
        pBinding->m_pTexture = pTexture.get();
        lastOfFile[UpToZero(pTexture->GetFileName())] = {m_Materials.GetImageList().size(), pBinding};
    }
    std::unordered_map<std::string_view, Numbered> lastOfMaterial;
    for (const auto& [materialName, fileName] : textureMaps)
    {
        if (const auto found = lastOfFile.find(UpToZero(fileName)); found != lastOfFile.end())
        {
            Numbered& last = lastOfMaterial[UpToZero(materialName)];
            last = std::max(last, found->second, IsEarlier);
        }
    }
    for (const auto& pMaterial : m_Materials.GetMaterialList())
    {
        if (const auto found = lastOfMaterial.find(UpToZero(pMaterial->m_Name));
            found != lastOfMaterial.end())
        {
            pMaterial->m_pTexture = found->second.pBinding;
        }
    }
}

/// There can be millions: lines are only copied together here, and given to the console by the block.
void MaterialBinder::SayComparisons(const GroupNameMap& groupNames) const
{
    constexpr std::size_t kBlock = 1U << 16U;
    if (!DebugConsole().IsHeard())
    {
        return;
    }
    const GroupLines groups(groupNames);
    std::string block;
    for (const auto& pMaterial : m_Materials.GetMaterialList())
    {
        const std::string materialLine = std::string(UpToZero(pMaterial->m_Name)) + '\n';
        const std::size_t count = groups.CountUpTo(materialLine);
        for (std::size_t i = 0; i < count; ++i)
        {
            block += groups.GetLine(i);
            block += materialLine;
            if (block.size() >= kBlock)
            {
                DebugConsole() << block;
                block.clear();
            }
        }
    }
    DebugConsole() << block;
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
