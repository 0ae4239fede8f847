#include "MaterialBinder.h"
#include "Capture.h"
#include "Meshes.h"
#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <string_view>

namespace tessarine
{
namespace
{
using Lines = std::vector<std::string>;

class MaterialBinding : public testing::Test
{
protected:
    DSMaterial* AddMaterial(const std::string& name)
    {
        DSMaterial* pMaterial = m_Manager.GetMaterialManager().NewMaterial();
        pMaterial->m_Name = name;
        return pMaterial;
    }

    /// A fan with one face for each group.
    DSSolid* Load(const IndexList& faceGroups, const GroupNameMap& groupNames)
    {
        const IndexedMesh mesh = OpenFan(static_cast<int>(faceGroups.size()));
        return m_Manager.LoadMaterialSolid(mesh.positions, mesh.indices, mesh.faceSizes, {}, {}, faceGroups,
                                           groupNames, false);
    }
    DSSolid* LoadTextured(const IndexList& faceGroups, const GroupNameMap& groupNames,
                          const TextureNameMap& textureMaps)
    {
        const IndexedMesh mesh = OpenFan(static_cast<int>(faceGroups.size()));
        return m_Manager.LoadTexturedSolid(mesh.positions, mesh.indices, mesh.faceSizes, {}, {}, faceGroups,
                                           groupNames, textureMaps, false);
    }
    DSMaterial* Default() { return &m_Manager.GetMaterialManager().GetDefaultMaterial(); }

    static std::vector<DSMaterial*> MaterialsOf(DSSolid* solid)
    {
        std::vector<DSMaterial*> materials;
        for (DSFace* pFace : solid->GetFaceList())
        {
            materials.push_back(pFace->GetMaterial());
        }
        return materials;
    }

    MANBrepElementManager m_Manager;
    AssertionCapture m_Assertions;
    ConsoleCapture m_Console;
};

using Materials = std::vector<DSMaterial*>;
}

TEST(MaterialManager, MakesTheDefaultMaterialOfTheTable)
{
    const MANMaterialManager manager;
    const DSMaterial& material = manager.GetDefaultMaterial();
    EXPECT_EQ(material.m_Name, "Default_Mat");
    EXPECT_EQ(material.m_Ambient.x, 1.0F);
    EXPECT_EQ(material.m_Diffuse.y, 1.0F);
    EXPECT_EQ(material.m_Specular.z, 0.75F);
    EXPECT_EQ(material.m_Emission.x, 0.0F);
    EXPECT_EQ(material.m_fShininess, 40.0F);
    EXPECT_EQ(material.m_fTransparency, 1.0F);
    EXPECT_EQ(material.m_pTexture, nullptr);
}

TEST(MaterialManager, AppendsWhatItMakes)
{
    MANMaterialManager manager;
    DSMaterial* pMaterial = manager.NewMaterial();
    EXPECT_EQ(pMaterial->m_Name, "");
    EXPECT_EQ(manager.GetMaterialList().back().get(), pMaterial);
    DSTexture* pTexture = manager.NewTexture();
    EXPECT_EQ(manager.GetTextureList().back().get(), pTexture);
    DSTextureBinding* pBinding = manager.NewImage();
    EXPECT_EQ(manager.GetImageList().back().get(), pBinding);
}

TEST(MaterialManager, RestoresValuesAndLengths)
{
    MANMaterialManager manager;
    DSMaterial* pMaterial = manager.NewMaterial();
    pMaterial->m_Name = "before";
    auto saved = manager.Save();
    pMaterial->m_Name = "after";
    manager.GetDefaultMaterial().m_fShininess = 1;
    manager.NewMaterial();
    manager.NewTexture();
    manager.NewImage();
    manager.Restore(std::move(saved));
    ASSERT_EQ(manager.GetMaterialList().size(), 1U);
    EXPECT_EQ(manager.GetMaterialList()[0].get(), pMaterial);
    EXPECT_EQ(pMaterial->m_Name, "before");
    EXPECT_EQ(manager.GetDefaultMaterial().m_fShininess, 40.0F);
    EXPECT_TRUE(manager.GetTextureList().empty());
    EXPECT_TRUE(manager.GetImageList().empty());
}

TEST_F(MaterialBinding, PutsTheMaterialOnTheFirstFaceOfARunAlone)
{
    DSMaterial* pRed = AddMaterial("red");
    DSMaterial* pBlue = AddMaterial("blue");
    EXPECT_EQ(MaterialsOf(Load({1, 1, 2, 2, 2, 1}, {{1, "red"}, {2, "blue"}})),
              (Materials{pRed, nullptr, pBlue, nullptr, nullptr, pRed}));
}

TEST_F(MaterialBinding, StartsARunOfNoGroupWithTheDefaultMaterial)
{
    DSMaterial* pRed = AddMaterial("red");
    EXPECT_EQ(MaterialsOf(Load({0, 0, 1, 0, 0}, {{1, "red"}})),
              (Materials{Default(), nullptr, pRed, Default(), nullptr}));
}

TEST_F(MaterialBinding, GivesAGroupWithoutAMaterialTheDefaultMaterial)
{
    AddMaterial("red");
    EXPECT_EQ(MaterialsOf(Load({7, 7, 8}, {{7, "green"}})), (Materials{Default(), nullptr, Default()}));
}

TEST_F(MaterialBinding, BindsTwoGroupsOfOneName)
{
    DSMaterial* pRed = AddMaterial("red");
    EXPECT_EQ(MaterialsOf(Load({1, 2}, {{1, "red"}, {2, "red"}})), (Materials{pRed, pRed}));
}

TEST_F(MaterialBinding, TakesTheLastOfSeveralMaterialsOfOneName)
{
    AddMaterial("red");
    DSMaterial* pLast = AddMaterial("red");
    EXPECT_EQ(MaterialsOf(Load({1}, {{1, "red"}})), Materials{pLast});
}

TEST_F(MaterialBinding, ComparesNamesUpToTheirFirstZero)
{
    DSMaterial* pRed = AddMaterial(std::string("red\0dish", 8));
    EXPECT_EQ(MaterialsOf(Load({1}, {{1, std::string("red\0", 4)}})), Materials{pRed});
}

TEST_F(MaterialBinding, NeedsAGroupForEachFace)
{
    const IndexedMesh mesh = OpenFan(2);
    EXPECT_THROW(
        m_Manager.LoadMaterialSolid(mesh.positions, mesh.indices, mesh.faceSizes, {}, {}, {1}, {}, false),
        AssertionFailure);
#if TESSARINE_ASSERTIONS
    EXPECT_EQ(m_Assertions.GetExpressions().size(), 1U);
#endif
}

TEST_F(MaterialBinding, SaysNothingOfTheNamesWithoutTextures)
{
    AddMaterial("red");
    Load({1}, {{1, "red"}});
    EXPECT_EQ(m_Console.GetLines(), (Lines{"texcoord number: 0", "texcoord index number: 0"}));
}

TEST_F(MaterialBinding, SaysTheTwoNamesOfEachComparisonWithTextures)
{
    DSMaterial* pRed = AddMaterial("red");
    DSMaterial* pBlue = AddMaterial("blue");
    DSSolid* pSolid = LoadTextured({1, 2, 3}, {{1, "blue"}, {2, "red"}, {3, "red"}}, {});
    // red meets group 1, then group 2, which is it; blue meets group 1, which is it.
    EXPECT_EQ(m_Console.GetLines(), (Lines{"texcoord number: 0", "texcoord index number: 0", "blue", "red",
                                           "red", "red", "blue", "blue"}));
    EXPECT_EQ(MaterialsOf(pSolid), (Materials{pBlue, pRed, pRed}));
}

TEST_F(MaterialBinding, MakesABindingForEachTexture)
{
    m_Manager.GetMaterialManager().NewTexture();
    m_Manager.GetMaterialManager().NewTexture();
    LoadTextured({1}, {}, {});
    const auto& images = m_Manager.GetMaterialManager().GetImageList();
    ASSERT_EQ(images.size(), 2U);
    EXPECT_EQ(images[1]->m_pTexture, m_Manager.GetMaterialManager().GetTextureList()[1].get());
}

TEST_F(MaterialBinding, HandsABindingToEveryMaterialThatNamesItsFile)
{
    // A texture of no file has the empty name.
    DSMaterial* pRed = AddMaterial("red");
    DSMaterial* pOther = AddMaterial("red");
    DSMaterial* pBlue = AddMaterial("blue");
    m_Manager.GetMaterialManager().NewTexture();
    LoadTextured({1}, {}, {{"red", ""}, {"blue", "sky.bmp"}});
    DSTextureBinding* pBinding = m_Manager.GetMaterialManager().GetImageList()[0].get();
    EXPECT_EQ(pRed->m_pTexture, pBinding);
    EXPECT_EQ(pOther->m_pTexture, pBinding);
    EXPECT_EQ(pBlue->m_pTexture, nullptr);
}

namespace
{
/// Texture by texture through all names, and each name through all materials.
void BindOneByOne(MANMaterialManager& materials, const TextureNameMap& textureMaps)
{
    const auto isSame = [](const std::string& a, const std::string& b)
    { return std::string_view(a.c_str()) == std::string_view(b.c_str()); };
    for (const auto& pTexture : materials.GetTextureList())
    {
        DSTextureBinding* pBinding = materials.NewImage();
        pBinding->m_pTexture = pTexture.get();
        for (const auto& [materialName, fileName] : textureMaps)
        {
            for (const auto& pMaterial : materials.GetMaterialList())
            {
                if (isSame(fileName, pTexture->GetFileName()) && isSame(materialName, pMaterial->m_Name))
                {
                    pMaterial->m_pTexture = pBinding;
                }
            }
        }
    }
}

/// The number of the texture that each binding ties.
std::vector<std::ptrdiff_t> TexturesOfBindings(const MANMaterialManager& materials)
{
    std::vector<std::ptrdiff_t> textures;
    for (const auto& pBinding : materials.GetImageList())
    {
        const auto& list = materials.GetTextureList();
        const auto found =
            std::find_if(list.begin(), list.end(),
                         [&](const auto& pTexture) { return pTexture.get() == pBinding->m_pTexture; });
        textures.push_back(found - list.begin());
    }
    return textures;
}

/// The number of the binding that each material has, or -1.
std::vector<std::ptrdiff_t> BindingsOfMaterials(const MANMaterialManager& materials)
{
    std::vector<std::ptrdiff_t> bindings;
    for (const auto& pMaterial : materials.GetMaterialList())
    {
        const auto& list = materials.GetImageList();
        const auto found =
            std::find_if(list.begin(), list.end(),
                         [&](const auto& pBinding) { return pBinding.get() == pMaterial->m_pTexture; });
        bindings.push_back(found == list.end() ? -1 : found - list.begin());
    }
    return bindings;
}

/// A name of one letter, now and then with something behind a zero.
std::string PickName(std::mt19937& random)
{
    std::string name(1, static_cast<char>('a' + random() % 4));
    return random() % 4 == 0 ? name + '\0' + static_cast<char>('a' + random() % 2) : name;
}

void AddPicture(MANMaterialManager& materials, const std::string& fileName)
{
    materials.NewTexture()->DecodePPM(fileName, "P6 \n1 1 255\nabc");
}
}

TEST_F(MaterialBinding, BindsRandomNamesAsASearchOneByOneDoes)
{
    std::mt19937 random(271828);
    for (int i = 0; i < 2000 && !HasFailure(); ++i)
    {
        MANMaterialManager materials;
        MANMaterialManager expected;
        TextureNameMap textureMaps;
        for (auto count = random() % 5; count > 0; --count)
        {
            const std::string name = PickName(random);
            materials.NewMaterial()->m_Name = name;
            expected.NewMaterial()->m_Name = name;
        }
        for (auto count = random() % 5; count > 0; --count)
        {
            textureMaps[PickName(random)] = PickName(random);
        }
        for (int import = 0; import < 2; ++import) // the second finds what the first has bound
        {
            for (auto count = random() % 5; count > 0; --count)
            {
                const std::string name = PickName(random);
                AddPicture(materials, name);
                AddPicture(expected, name);
            }
            MaterialBinder(materials).BindTextures(textureMaps);
            BindOneByOne(expected, textureMaps);
            EXPECT_EQ(TexturesOfBindings(materials), TexturesOfBindings(expected));
            EXPECT_EQ(BindingsOfMaterials(materials), BindingsOfMaterials(expected));
        }
    }
}

TEST_F(MaterialBinding, SaysRandomComparisonsAsASearchOneByOneDoes)
{
    std::mt19937 random(314159);
    for (int i = 0; i < 500 && !HasFailure(); ++i)
    {
        MANMaterialManager materials;
        GroupNameMap groupNames;
        for (auto count = random() % 8; count > 0; --count)
        {
            materials.NewMaterial()->m_Name = PickName(random);
        }
        for (auto count = random() % 8; count > 0; --count)
        {
            groupNames[static_cast<std::int32_t>(random() % 100)] = PickName(random);
        }
        std::string expected;
        for (const auto& pMaterial : materials.GetMaterialList())
        {
            const std::string material = pMaterial->m_Name.c_str();
            for (auto group = groupNames.begin(); group != groupNames.end(); ++group)
            {
                const std::string name = group->second.c_str();
                expected += name + "\n" + material + "\n";
                if (name == material)
                {
                    break;
                }
            }
        }
        ConsoleCapture console;
        MaterialBinder(materials).SayComparisons(groupNames);
        EXPECT_EQ(console.GetText(), expected);
    }
}

TEST_F(MaterialBinding, SaysComparisonsOfManyBlocksWhole)
{
    MANMaterialManager materials;
    GroupNameMap groupNames;
    std::string expected;
    const std::string longName(40000, 'g');
    for (std::int32_t i = 1; i <= 3; ++i)
    {
        materials.NewMaterial()->m_Name = "m";
        groupNames[i] = longName;
    }
    for (int i = 0; i < 9; ++i)
    {
        expected += longName + "\nm\n";
    }
    ConsoleCapture console;
    MaterialBinder(materials).SayComparisons(groupNames);
    EXPECT_EQ(console.GetText(), expected);
}

TEST_F(MaterialBinding, BindsManyTexturesOfOneFileToManyMaterialsOfOneName)
{
    const std::string name = "a";
    constexpr int kMany = 200'000; // to hand every binding to every material would be 4e10 steps
    MANMaterialManager materials;
    for (int i = 0; i < kMany; ++i)
    {
        materials.NewTexture();
        materials.NewMaterial()->m_Name = name;
    }
    MaterialBinder(materials).BindTextures({{name, ""}});
    ASSERT_EQ(materials.GetImageList().size(), std::size_t{kMany});
    EXPECT_EQ(materials.GetMaterialList().front()->m_pTexture, materials.GetImageList().back().get());
    EXPECT_EQ(materials.GetMaterialList().back()->m_pTexture, materials.GetImageList().back().get());
}

TEST_F(MaterialBinding, BindsManyTexturesThatManyNamesShare)
{
    constexpr int kMany = 100'000;
    MANMaterialManager materials;
    TextureNameMap textureMaps;
    for (int i = 0; i < kMany; ++i)
    {
        materials.NewTexture();
        materials.NewMaterial()->m_Name = std::to_string(i);
        textureMaps[std::to_string(i)] = "";
    }
    MaterialBinder(materials).BindTextures(textureMaps);
    EXPECT_EQ(materials.GetMaterialList().front()->m_pTexture, materials.GetImageList().back().get());
    EXPECT_EQ(materials.GetMaterialList().back()->m_pTexture, materials.GetImageList().back().get());
}
}
