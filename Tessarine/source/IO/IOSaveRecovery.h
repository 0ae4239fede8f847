#pragma once
#include "IOSave.h"
#include "MANBrepElementManager.h"
#include <cstdint>
#include <filesystem>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace tessarine
{
class IOTextOutput;

/// Writes the visible solids so that an import brings them back as they were seen: as one object of an OBJ file, and
/// with a material file beside it, which an export leaves out. Pictures are symbolic links to where they were read.
/// One object serves one save.
///
/// What does not come back: hidden solids, the borders between the solids, normals other than those that an import
/// computes, digits behind the sixth.
///
/// Fails   By FileError when something is not written whole; a face with a vertex that its solid does not list is an
///         assertion. What was written stays.
class IOSaveRecovery : public IOSave
{
public:
    using IOSave::IOSave;

    /// How many vertices and faces a save has to write.
    static std::size_t CountElements(const MANBrepElementManager& elements);

    /// The material file has the same name with the ending ".mtl". A folder of its own keeps the links apart.
    void Save(const std::string& fileName) override;

private:
    void FindMaterials();
    void NameMaterial(const DSMaterial& material);
    void WriteObject(IOTextOutput& file);
    void WriteSolid(const DSSolid& solid, IOTextOutput& file);
    void NumberVertices(const DSSolid& solid);
    std::int32_t GetNumber(const DSVertex* pVertex) const;
    void WriteMaterialLine(const DSFace& face, IOTextOutput& file);
    void WriteFace(const DSFace& face, IOTextOutput& file);
    void WriteMaterials(IOTextOutput& file);
    void WriteTexture(const DSMaterial& material, IOTextOutput& file);

    std::vector<const DSSolid*> m_Solids;
    std::vector<const DSMaterial*> m_Materials; ///< those that faces have, but for the default one
    std::unordered_map<const DSMaterial*, std::string> m_MaterialNames;
    std::unordered_set<std::string> m_UsedNames;
    std::unordered_map<const DSTexture*, std::size_t> m_LinkNumbers;
    std::vector<std::int32_t> m_VertexNumbers; ///< by vertex id
    std::int32_t m_nVertices = 0;
    std::int32_t m_nCorners = 0;
    bool m_bInMaterial = false; ///< the faces that follow are in a run of a material of the list
    std::filesystem::path m_Folder;
};
}
