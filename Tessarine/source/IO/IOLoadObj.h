#pragma once
#include "File.h"
#include "IOLoad.h"
#include "MANBrepElementManager.h"
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace tessarine
{
class IOLineCursor;
class IOMtlReader;
class IOTextLines;

/// Reads a Wavefront OBJ file and brings it into the scene. One object serves one load.
///
/// A line's meaning is decided by its first character alone, so the grammar is narrower and looser than the
/// published one: groups are ignored, polygons stay polygons, relative (negative) numbers are not understood,
/// and lines of other kinds are reported on the console and skipped.
///
/// Leaves  A solid, scaled into the cube from -1 to 1, in a new leaf at the end of the root's children.
/// Says    Unknown lines, what the builder and the topology report say, and whether the solid fits the Euler
///         formula.
/// Fails   File that cannot be read; position that is no finite number; face without corners; vertex number,
///         or used texture number, that the file does not have. The managers then hold what was made so far.
/// Kept    Line numbers on the console leave out blank lines and continuations. A material library is opened
///         relative to the current folder. Texture numbers count only in a file with a material line.
class IOLoadObj : public IOLoad
{
public:
    IOLoadObj(MANSceneManager* sceneManager, MANBrepElementManager* elementManager);
    ~IOLoadObj() override;

    void Load(const std::string& fileName) override;

    /// The import of a text in memory; the name appears in failures only.
    void LoadText(const std::string& fileName, const std::string& text);

    /// Fills the arrays from a file, or from a text in memory. Throws Failure, see above.
    void ParseFile(const std::string& fileName);
    void ParseText(const std::string& fileName, const std::string& text);

    /// Reads one material library from a file, or says that it cannot be opened, and why on standard
    /// error; or from a text in memory.
    void ParseMaterialFile(const std::string& fileName);
    void ParseMaterialText(const std::string& text);

    const PositionList& GetPositions() const { return m_Positions; }
    const PositionList& GetNormals() const { return m_Normals; }
    const TexCoordList& GetTexCoords() const { return m_TexCoords; }
    const IndexList& GetVertexIndices() const { return m_VertexIndices; }
    const IndexList& GetFaceSizes() const { return m_FaceSizes; }
    const IndexList& GetTexIndices() const { return m_TexIndices; }
    const IndexList& GetNormalIndices() const { return m_NormalIndices; }
    const IndexList& GetFaceGroups() const { return m_FaceGroups; }
    const GroupNameMap& GetGroupNames() const { return m_GroupNames; }
    const TextureNameMap& GetTextureMaps() const { return m_TextureMaps; }
    bool UsesMaterial() const { return m_bUseMaterial; }
    bool HasTexture() const { return m_bHasTexture; }

private:
    void ParseLine(IOTextLines& lines, IOLineCursor& line);
    void ParseVertexLine(IOLineCursor& line);
    void AddPosition(IOLineCursor& line);
    void ParseFaceLine(IOTextLines& lines, const IOLineCursor& line);
    std::int32_t ParseCorners(IOLineCursor& corners);
    void OpenMaterialGroup(IOLineCursor& line);
    void ReadMaterialLibrary(IOLineCursor& line);
    void ReportUnknownToken() const;

    void TellOddities(const std::string& fileName, const std::string& text) const;
    void CheckNumbers(const std::string& fileName, const std::string& text) const;
    void EnterScene();
    static void ReportTopology(DSSolid& solid);
    void Unitize(DSSolid& solid);
    DSSolid* BuildSolid();
    void DropArrays();

    [[maybe_unused]] std::string m_strName; ///< reserved
    PositionList m_Positions;
    PositionList m_Normals;
    TexCoordList m_TexCoords;
    IndexList m_VertexIndices;
    IndexList m_FaceSizes;
    IndexList m_TexIndices;
    IndexList m_NormalIndices;
    IndexList m_FaceGroups;
    GroupNameMap m_GroupNames;
    TextureNameMap m_TextureMaps;
    bool m_bUseMaterial = false;
    bool m_bHasNormal = false;
    bool m_bHasTexCoord = false;
    bool m_bHasTexture = false;
    [[maybe_unused]] float m_fScale = 1.0F; ///< reserved

    std::unique_ptr<IOMtlReader> m_pMaterialReader;
    /// A model can name one library again and again, and each time makes its materials anew.
    ReadBudget m_LibraryBudget{std::size_t{64} << 20U,
                               "it and the libraries before it have more than 64 MiB"};
    int m_nLine = 0;
    std::int32_t m_nGroup = 0;
    /// The first position, from 0, with a coordinate that is not a number to its end; -1 while there is none.
    std::ptrdiff_t m_nFirstOddPosition = -1;
    /// The first face, from 0, with a corner that has no texture number; -1 while there is none.
    std::ptrdiff_t m_nFirstUnevenFace = -1;
};
}
