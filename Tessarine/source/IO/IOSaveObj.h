#pragma once
#include "IOSave.h"
#include "MANBrepElementManager.h"
#include <cstdint>
#include <functional>
#include <string>
#include <unordered_set>
#include <vector>

namespace tessarine
{
class IOTextOutput;

/// Writes the visible solids of the element manager as a Wavefront OBJ file: positions and polygons. One
/// object serves one save.
///
/// The bytes are those of a fixed set of C formats, trailing blanks included, with "\n" as line end
/// everywhere.
///
/// Says    "The file NAME was not opened" when the file cannot be written.
/// Fails   By Failure when the file is not written whole; an older one then stays.
/// Kept    Vertex numbers start at 1 again in each object, so a file of several objects is right only for
///         the first. A vertex that was not written counts as number 0.
class IOSaveObj : public IOSave
{
public:
    IOSaveObj(MANSceneManager* sceneManager, MANBrepElementManager* elementManager);

    void Save(const std::string& fileName) override { SaveObj(fileName); }
    void SaveObj(const std::string& fileName);

    /// Writes the default material and those of the list.
    ///
    /// Kept    The three components of a colour run together, which no reader can take apart.
    void SaveMtl(const std::string& fileName);

    /// The sections of an object.
    void WriteVertices(const DSSolid& solid, IOTextOutput& file);
    void WriteFaces(const DSSolid& solid, IOTextOutput& file);
    /// The normals that were not written yet, compared exactly.
    void WriteNormals(const DSSolid& solid, IOTextOutput& file);
    /// The texture coordinate of each corner.
    void WriteTexCoords(const DSSolid& solid, IOTextOutput& file);

    std::int32_t GetFaceCount() const { return m_nFaceCount; }
    std::int32_t GetVertexBase() const { return m_nVertexBase; }
    std::int32_t GetNormalBase() const { return m_nNormalBase; }
    const PositionList& GetNormals() const { return m_Normals; }

private:
    /// Equal as numbers means equal here: the zeros are one.
    struct NormalHash
    {
        std::size_t operator()(const smVec3d& normal) const;
    };
    struct NormalEqual
    {
        bool operator()(const smVec3d& a, const smVec3d& b) const;
    };

    using WriteContent = std::function<void(IOTextOutput&)>;
    static void WriteFile(const std::string& fileName, const WriteContent& writeContent);
    void WriteObjects(IOTextOutput& file);
    void WriteMaterials(IOTextOutput& file) const;
    /// What is no number equals nothing and is always new.
    bool IsNewNormal(const smVec3d& normal);
    std::int32_t& GetVertexNumber(const DSVertex& vertex);

    std::int32_t m_nFaceCount = 0;
    std::int32_t m_nNormalBase = 1;
    std::int32_t m_nVertexBase = 1;
    PositionList m_Normals;
    std::unordered_set<smVec3d, NormalHash, NormalEqual> m_NormalSet;
    std::vector<std::int32_t> m_VertexNumbers; ///< by vertex id
};
}
