#include "IOSaveRecovery.h"
#include "CornerWalk.h"
#include "File.h"
#include "IOSaveObj.h"
#include "IOTextOutput.h"
#include <algorithm>
#include <functional>

namespace tessarine
{
namespace
{
namespace fs = std::filesystem;

std::vector<const DSSolid*> FindVisibleSolids(const MANBrepElementManager& elements)
{
    std::vector<const DSSolid*> visible;
    for (const DSSolid* pSolid : elements.GetSolidArray())
    {
        if (pSolid != nullptr && pSolid->IsVisible())
        {
            visible.push_back(pSolid);
        }
    }
    return visible;
}

void WriteWhole(const fs::path& path, const std::function<void(IOTextOutput&)>& writeContent)
{
    ReplacingFile file(path);
    IOTextOutput output([&file](std::string_view text) { file.Write(text); });
    writeContent(output);
    output.Flush();
    file.Commit();
    FlushToDisk(path);
}

void WriteColourOf(std::string_view keyword, const smVec3f& colour, IOTextOutput& file)
{
    file << keyword << double{colour.x} << " " << double{colour.y} << " " << double{colour.z} << " \n";
}

/// Whether a material line can name it: the reader takes a name up to the first blank.
bool IsOneWord(const std::string& name)
{
    return !name.empty() && name.find_first_of(std::string(" \t\r\n\v\f\0", 7)) == std::string::npos;
}

/// What the reader tells the format by: the last four letters of the name.
std::string GetEnding(const fs::path& picture)
{
    const std::string name = picture.filename().string();
    return name.substr(name.size() - std::min<std::size_t>(name.size(), 4));
}
}

std::size_t IOSaveRecovery::CountElements(const MANBrepElementManager& elements)
{
    std::size_t count = 0;
    for (const DSSolid* pSolid : FindVisibleSolids(elements))
    {
        count += pSolid->GetVertexList().size() + pSolid->GetFaceList().size();
    }
    return count;
}

void IOSaveRecovery::Save(const std::string& fileName)
{
    const fs::path path = fileName;
    const fs::path materialPath = fs::path(path).replace_extension(".mtl");
    m_Folder = path.parent_path();
    m_Solids = FindVisibleSolids(*m_pElementManager);
    FindMaterials();
    if (!m_Materials.empty())
    {
        WriteWhole(materialPath, [this](IOTextOutput& file) { WriteMaterials(file); });
    }
    WriteWhole(path,
               [&](IOTextOutput& file)
               {
                   if (!m_Materials.empty())
                   {
                       file << "mtllib " << materialPath.filename().string() << " \n";
                   }
                   WriteObject(file);
               });
}

void IOSaveRecovery::FindMaterials()
{
    const DSMaterial* const pDefault = &m_pElementManager->GetMaterialManager().GetDefaultMaterial();
    m_UsedNames.insert(pDefault->m_Name);
    for (const DSSolid* pSolid : m_Solids)
    {
        for (DSFace* pFace : pSolid->GetFaceList())
        {
            const DSMaterial* const pMaterial = pFace != nullptr ? pFace->GetMaterial() : nullptr;
            if (pMaterial != nullptr && pMaterial != pDefault && !m_MaterialNames.contains(pMaterial))
            {
                NameMaterial(*pMaterial);
            }
        }
    }
}

/// By its own name, where that tells it from the others.
void IOSaveRecovery::NameMaterial(const DSMaterial& material)
{
    std::string name = material.m_Name.c_str();
    for (std::size_t number = m_Materials.size(); !IsOneWord(name) || !m_UsedNames.insert(name).second;
         ++number)
    {
        name = "material" + std::to_string(number);
    }
    m_Materials.push_back(&material);
    m_MaterialNames.emplace(&material, std::move(name));
}

void IOSaveRecovery::WriteObject(IOTextOutput& file)
{
    for (const DSSolid* pSolid : m_Solids)
    {
        WriteSolid(*pSolid, file);
    }
}

void IOSaveRecovery::WriteSolid(const DSSolid& solid, IOTextOutput& file)
{
    IOSaveObj sections(m_pSceneManager, m_pElementManager);
    sections.WriteVertices(solid, file);
    NumberVertices(solid);
    if (!m_Materials.empty()) // without a material line the reader drops them
    {
        sections.WriteTexCoords(solid, file);
    }
    for (const DSFace* pFace : solid.GetFaceList())
    {
        if (pFace != nullptr && !pFace->GetLoopList().empty()) // an import refuses a face without corners
        {
            WriteMaterialLine(*pFace, file);
            WriteFace(*pFace, file);
        }
    }
}

void IOSaveRecovery::NumberVertices(const DSSolid& solid)
{
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        if (pVertex != nullptr)
        {
            const std::size_t id = pVertex->GetID();
            if (id >= m_VertexNumbers.size())
            {
                m_VertexNumbers.resize(std::max(id + 1, 2 * m_VertexNumbers.size()));
            }
            m_VertexNumbers[id] = ++m_nVertices;
        }
    }
}

/// An import would refuse the number of a vertex that was not written.
std::int32_t IOSaveRecovery::GetNumber(const DSVertex* pVertex) const
{
    ASSERT(pVertex != nullptr);
    const std::size_t id = pVertex->GetID();
    const bool isWritten = id < m_VertexNumbers.size() && m_VertexNumbers[id] != 0;
    ASSERT(isWritten);
    return m_VertexNumbers[id];
}

/// The first face of a run has the material, and those behind it have none.
void IOSaveRecovery::WriteMaterialLine(const DSFace& face, IOTextOutput& file)
{
    const DSMaterial* const pMaterial = face.GetMaterial();
    if (pMaterial == nullptr)
    {
        return;
    }
    const auto found = m_MaterialNames.find(pMaterial);
    if (found != m_MaterialNames.end())
    {
        file << "usemtl " << found->second << " \n";
        m_bInMaterial = true;
    }
    else if (m_bInMaterial) // a name that no material has gives the default one
    {
        file << "usemtl " << pMaterial->m_Name << " \n";
        m_bInMaterial = false;
    }
}

void IOSaveRecovery::WriteFace(const DSFace& face, IOTextOutput& file)
{
    file << "f ";
    ForEachCorner(face,
                  [&](const DSHalfEdge& halfEdge)
                  {
                      file << GetNumber(halfEdge.GetVertex());
                      if (!m_Materials.empty())
                      {
                          file << "/" << ++m_nCorners;
                      }
                      file << " ";
                  });
    file << "\n";
}

void IOSaveRecovery::WriteMaterials(IOTextOutput& file)
{
    for (const DSMaterial* pMaterial : m_Materials)
    {
        file << "newmtl " << m_MaterialNames.at(pMaterial) << " \n";
        WriteColourOf("Ka ", pMaterial->m_Ambient, file);
        WriteColourOf("Kd ", pMaterial->m_Diffuse, file);
        WriteColourOf("Ks ", pMaterial->m_Specular, file);
        WriteTexture(*pMaterial, file);
    }
}

/// A link, as the reader takes no name with a blank in it.
void IOSaveRecovery::WriteTexture(const DSMaterial& material, IOTextOutput& file)
{
    const DSTexture* const pTexture =
        material.m_pTexture != nullptr ? material.m_pTexture->m_pTexture : nullptr;
    if (pTexture == nullptr || !pTexture->HasImage() || pTexture->GetPath().empty())
    {
        return;
    }
    const std::string link =
        "texture" + std::to_string(m_LinkNumbers.emplace(pTexture, m_LinkNumbers.size()).first->second) +
        GetEnding(pTexture->GetFileName());
    std::error_code there;
    fs::create_symlink(pTexture->GetPath(), m_Folder / link, there);
    file << "map_Kd " << link << " \n";
}
}
