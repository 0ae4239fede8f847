#pragma once
#include "MANBrepElementManager.h"
#include <string_view>
#include <unordered_map>

namespace tessarine
{
/// Gives the faces of an imported solid the materials of their groups, and the materials their textures.
/// Names are compared up to their first zero byte.
class MaterialBinder
{
public:
    explicit MaterialBinder(MANMaterialManager& materials) : m_Materials(materials) {}

    /// Makes a binding for each loaded texture, and hands it to the materials that name the texture's file.
    void BindTextures(const TextureNameMap& textureMaps);

    /// Prints the two names of every comparison of a search that takes each material in turn through the
    /// groups until one has its name.
    void SayComparisons(const GroupNameMap& groupNames) const;

    /// The first face of each run of one group gets the material, the others of the run none. A group has the
    /// last material of its name; without one, and for group 0, it is the default material.
    void BindFaces(DSSolid& solid, const IndexList& faceGroups, const GroupNameMap& groupNames);

private:
    std::unordered_map<std::int32_t, DSMaterial*> FindGroupMaterials(const GroupNameMap& groupNames) const;

    MANMaterialManager& m_Materials;
};
}
