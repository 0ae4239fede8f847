#include "IOSaveObj.h"
#include "Assert.h"
#include "Console.h"
#include "CornerWalk.h"
#include "Failure.h"
#include "File.h"
#include "IOTextOutput.h"
#include "Path.h"
#include <algorithm>
#include <bit>
#include <cmath>
#include <optional>
#include <string_view>

namespace tessarine
{
namespace
{
/// As C's "%s" takes it.
std::string_view UpToZero(const std::string& text)
{
    return text.c_str();
}

std::int32_t ToCount(std::size_t size)
{
    return static_cast<std::int32_t>(size);
}

void WriteVector(std::string_view keyword, const smVec3d& vector, IOTextOutput& file)
{
    file << keyword << vector.x << " " << vector.y << " " << vector.z << " \n";
}

void WriteColour(std::string_view keyword, const smVec3f& colour, IOTextOutput& file)
{
    file << keyword << double{colour.x} << double{colour.y} << double{colour.z} << " \n";
}

void WriteMaterial(const DSMaterial& material, IOTextOutput& file)
{
    file << "newmtl " << UpToZero(material.m_Name) << " \n";
    WriteColour("  Ka ", material.m_Ambient, file);
    WriteColour("  Kd ", material.m_Diffuse, file);
    WriteColour("  Ks ", material.m_Specular, file);
}

/// A file that is not there or cannot be had is said on the console, too.
void OpenForWriting(const std::string& fileName, std::optional<ReplacingFile>& file)
{
    try
    {
        file.emplace(fileName);
    }
    catch (const FileError&)
    {
        DebugConsole() << "The file " << UpToZero(fileName) << " was not opened\n";
        throw;
    }
}
}

IOSaveObj::IOSaveObj(MANSceneManager* sceneManager, MANBrepElementManager* elementManager)
    : IOSave(sceneManager, elementManager)
{
}

void IOSaveObj::SaveObj(const std::string& fileName)
{
    WriteFile(fileName, [this](IOTextOutput& file) { WriteObjects(file); });
}

void IOSaveObj::SaveMtl(const std::string& fileName)
{
    WriteFile(fileName, [this](IOTextOutput& file) { WriteMaterials(file); });
}

void IOSaveObj::WriteFile(const std::string& fileName, const WriteContent& writeContent)
{
    try
    {
        std::optional<ReplacingFile> file;
        OpenForWriting(fileName, file);
        IOTextOutput output([&file](std::string_view text) { file->Write(text); });
        writeContent(output);
        output.Flush();
        file->Commit();
    }
    catch (const FileError& error)
    {
        throw Failure(error.what());
    }
}

void IOSaveObj::WriteObjects(IOTextOutput& file)
{
    file << "# ORCHID zk-------OBJ文件 \n\n";
    m_nVertexBase = 1;
    m_nNormalBase = 1;
    const auto& solids = m_pElementManager->GetSolidArray();
    for (std::size_t i = 0; i < solids.size(); ++i)
    {
        const DSSolid* const pSolid = solids[i];
        if (pSolid == nullptr || !pSolid->IsVisible())
        {
            continue;
        }
        file << "g object" << ToCount(i + 1) << " \n";
        WriteVertices(*pSolid, file);
        WriteFaces(*pSolid, file);
        m_nVertexBase += ToCount(pSolid->GetVertexList().size());
        m_nNormalBase += ToCount(m_Normals.size());
    }
}

void IOSaveObj::WriteVertices(const DSSolid& solid, IOTextOutput& file)
{
    std::int32_t number = 0;
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        if (pVertex != nullptr)
        {
            GetVertexNumber(*pVertex) = ++number;
            WriteVector("v ", pVertex->GetPosition(), file);
        }
    }
    file << "# " << ToCount(solid.GetVertexList().size()) << " vertices in this object!\n\n";
}

void IOSaveObj::WriteFaces(const DSSolid& solid, IOTextOutput& file)
{
    m_nFaceCount = 0;
    for (const DSFace* pFace : solid.GetFaceList())
    {
        if (pFace != nullptr)
        {
            ++m_nFaceCount;
            file << "\nf ";
            ForEachCorner(*pFace,
                          [&](const DSHalfEdge& halfEdge)
                          {
                              ASSERT(halfEdge.GetVertex() != nullptr);
                              file << GetVertexNumber(*halfEdge.GetVertex()) << " ";
                          });
        }
    }
    file << "\n# " << m_nFaceCount << " faces in this object ";
}

void IOSaveObj::WriteNormals(const DSSolid& solid, IOTextOutput& file)
{
    for (const DSVertex* pVertex : solid.GetVertexList())
    {
        if (pVertex != nullptr && IsNewNormal(pVertex->GetNormal()))
        {
            m_Normals.push_back(pVertex->GetNormal());
            WriteVector("vn ", pVertex->GetNormal(), file);
        }
    }
    file << "# " << ToCount(m_Normals.size()) << " vertice normals in this object!\n\n";
}

bool IOSaveObj::IsNewNormal(const smVec3d& normal)
{
    const bool isNumber = !std::isnan(normal.x) && !std::isnan(normal.y) && !std::isnan(normal.z);
    return !isNumber || m_NormalSet.insert(normal).second;
}

void IOSaveObj::WriteTexCoords(const DSSolid& solid, IOTextOutput& file)
{
    for (const DSFace* pFace : solid.GetFaceList())
    {
        if (pFace != nullptr)
        {
            ForEachCorner(*pFace,
                          [&file](const DSHalfEdge& halfEdge)
                          {
                              const smVec2f& texCoord = halfEdge.GetTexCoord();
                              file << "vt " << double{texCoord.x} << " " << double{texCoord.y} << "\n";
                          });
        }
    }
}

void IOSaveObj::WriteMaterials(IOTextOutput& file) const
{
    const MANMaterialManager& materials = m_pElementManager->GetMaterialManager();
    file << "# ORCHID zk-------MTL文件 \n\n";
    WriteMaterial(materials.GetDefaultMaterial(), file);
    for (const auto& pMaterial : materials.GetMaterialList())
    {
        if (pMaterial == nullptr)
        {
            continue;
        }
        WriteMaterial(*pMaterial, file);
        if (const DSTextureBinding* const pBinding = pMaterial->m_pTexture;
            pBinding != nullptr && pBinding->m_pTexture != nullptr)
        {
            file << " map_Kd " << UpToZero(pBinding->m_pTexture->GetFileName()) << " \n";
        }
    }
}

std::int32_t& IOSaveObj::GetVertexNumber(const DSVertex& vertex)
{
    const std::size_t id = vertex.GetID();
    if (id >= m_VertexNumbers.size())
    {
        m_VertexNumbers.resize(std::max(id + 1, 2 * m_VertexNumbers.size()));
    }
    return m_VertexNumbers[id];
}

std::size_t IOSaveObj::NormalHash::operator()(const smVec3d& normal) const
{
    constexpr std::uint64_t kMix = 0x9E3779B97F4A7C15U;
    std::uint64_t hash = 0;
    for (const double component : {normal.x, normal.y, normal.z})
    {
        hash = (hash ^ std::bit_cast<std::uint64_t>(component + 0.0)) * kMix; // + 0.0 makes the zeros one
        hash ^= hash >> 32U;
    }
    return hash;
}

bool IOSaveObj::NormalEqual::operator()(const smVec3d& a, const smVec3d& b) const
{
    return a.x == b.x && a.y == b.y && a.z == b.z;
}
}
