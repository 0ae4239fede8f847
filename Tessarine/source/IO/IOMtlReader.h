#pragma once
#include "Image.h"
#include "MANBrepElementManager.h"
#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_set>

namespace tessarine
{
class IOLineCursor;

/// Reads material libraries (MTL) into the material manager, and notes which texture file each material
/// names.
///
/// Needs   Both stores outlive the reader.
/// Leaves  A material for each "newmtl", with its colours; a texture for each file that a "map_Kd" names
///         first; the pictures that together are too large leave theirs without an image.
/// Says    The keywords that are recognised and not used, and the unknown ones, each with its line.
/// Kept    A keyword with nothing behind it on its line is an unknown one. Blank lines do not count as lines.
class IOMtlReader
{
public:
    /// The textures of all libraries together may take so many bytes, decoded.
    static constexpr std::size_t kMostTextureBytes = std::size_t{1} << 30U;

    IOMtlReader(MANMaterialManager& materialManager, TextureNameMap& textureMaps,
                std::size_t mostTextureBytes = kMostTextureBytes)
        : m_MaterialManager(materialManager), m_TextureMaps(textureMaps), m_TextureBudget(mostTextureBytes)
    {
    }

    /// One library. The current material does not outlast it.
    void ParseText(const std::string& text);

    /// A "map_Kd" was met.
    bool HasTexture() const { return m_bHasTexture; }

private:
    void ParseLine(IOLineCursor& line);
    /// @return false when the token is unknown; the line's index is then the one behind it
    bool ParseToken(std::string_view token, IOLineCursor& line);
    void OpenMaterial(IOLineCursor& line);
    /// @return false when the token is none of a current material's
    bool ParseMaterialLine(std::string_view token, IOLineCursor& line);
    void BindTexture(IOLineCursor& line);
    bool IsTextureLoaded(const std::string& fileName);
    void ReportUnknownToken(const IOLineCursor& line) const;

    MANMaterialManager& m_MaterialManager;
    TextureNameMap& m_TextureMaps;
    ImageBudget m_TextureBudget;
    DSMaterial* m_pMaterial = nullptr;
    int m_nLine = 0;
    bool m_bHasTexture = false;
    /// The names of the first m_nKnownTextures textures of the manager.
    std::unordered_set<std::string> m_TextureNames;
    std::size_t m_nKnownTextures = 0;
};
}
