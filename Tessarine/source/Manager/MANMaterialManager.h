#pragma once
#include "DSTexture.h"
#include "smVec3f.h"
#include <memory>
#include <string>
#include <vector>

namespace tessarine
{
/// Ties a texture to a material, and holds its name in the graphics library while a frame is drawn.
struct DSTextureBinding
{
    DSTexture* m_pTexture = nullptr; ///< not owning
    unsigned m_nName = 0;
};

/// How a surface answers light. Colours are red, green, blue from 0 to 1.
struct DSMaterial
{
    smVec3f m_Ambient{1.0F, 1.0F, 1.0F};
    smVec3f m_Diffuse{1.0F, 1.0F, 1.0F};
    smVec3f m_Specular{0.75F, 0.75F, 0.75F};
    float m_fShininess = 40.0F;
    smVec3f m_Emission;
    float m_fTransparency = 1.0F; ///< fourth component of the three colours in drawing; 1 is opaque
    std::string m_Name;
    DSTextureBinding* m_pTexture = nullptr; ///< not owning
};

/// Owns the materials, the textures that were loaded, and the bindings between them.
/// They live as long as the element manager that holds this one: an import only adds.
class MANMaterialManager
{
public:
    MANMaterialManager();
    ~MANMaterialManager();
    MANMaterialManager(const MANMaterialManager&) = delete;
    MANMaterialManager& operator=(const MANMaterialManager&) = delete;

    DSMaterial* NewMaterial();
    DSTexture* NewTexture();
    DSTextureBinding* NewImage();

    DSMaterial& GetDefaultMaterial() { return m_DefaultMaterial; }
    const DSMaterial& GetDefaultMaterial() const { return m_DefaultMaterial; }

    const std::vector<std::shared_ptr<DSMaterial>>& GetMaterialList() const { return m_MaterialList; }
    const std::vector<std::unique_ptr<DSTexture>>& GetTextureList() const { return m_TextureList; }
    const std::vector<std::unique_ptr<DSTextureBinding>>& GetImageList() const { return m_ImageList; }

    /// The materials' values and the lengths of the lists: enough to go back to, as the lists only grow.
    struct Checkpoint
    {
        std::vector<DSMaterial> materials;
        DSMaterial defaultMaterial;
        std::size_t textures = 0;
        std::size_t images = 0;
    };
    Checkpoint Save() const;
    void Restore(Checkpoint&& checkpoint) noexcept;

private:
    std::vector<std::shared_ptr<DSMaterial>> m_MaterialList; ///< shared with nobody: who outlives it watches
    std::vector<std::unique_ptr<DSTexture>> m_TextureList;
    std::vector<std::unique_ptr<DSTextureBinding>> m_ImageList;
    DSMaterial m_DefaultMaterial;
};
}
