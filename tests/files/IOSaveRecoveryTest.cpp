#include "IOSaveRecovery.h"
#include "Capture.h"
#include "IOLoadObj.h"
#include "Image.h"
#include "MANSceneManager.h"
#include "Meshes.h"
#include "Refusal.h"
#include "TemporaryFolder.h"
#include "Vectors.h"
#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

/// A model that was imported, or is to be saved.
struct Model
{
    void Import(const std::string& name)
    {
        const ConsoleCapture quiet;
        IOLoadObj(&scene, &elements).Load(name);
    }
    void Save(const std::filesystem::path& path) { IOSaveRecovery(&scene, &elements).Save(path.string()); }
    DSSolid& GetSolid(std::size_t index = 0) const { return *elements.GetSolidArray()[index]; }

    /// Of each face the name of its material, "-" for none, and the texture coordinates of its corners.
    std::vector<std::string> DescribeFaces() const
    {
        std::vector<std::string> faces;
        for (const DSFace* face : GetSolid().GetFaceList())
        {
            std::string text = face->GetMaterial() != nullptr ? face->GetMaterial()->m_Name : "-";
            const DSHalfEdge* const first = face->GetLoopList()[0]->GetHalfEdge();
            const DSHalfEdge* half = first;
            do
            {
                text +=
                    " " + std::to_string(half->GetTexCoord().x) + "," + std::to_string(half->GetTexCoord().y);
                half = half->GetNext();
            } while (half != first);
            faces.push_back(text);
        }
        return faces;
    }
    std::vector<smVec3d> GetPositions() const
    {
        std::vector<smVec3d> positions;
        for (const DSVertex* vertex : GetSolid().GetVertexList())
        {
            positions.push_back(vertex->GetPosition());
        }
        return positions;
    }
    DSMaterial& GetMaterial(const std::string& name) const
    {
        for (const auto& material : elements.GetMaterialManager().GetMaterialList())
        {
            if (material->m_Name == name)
            {
                return *material;
            }
        }
        throw std::out_of_range(name);
    }

    MANBrepElementManager elements;
    MANSceneManager scene;
};

/// Saves models and imports what was saved, as another process would do it.
class SaveRecoveryTest : public testing::Test
{
protected:
    SaveRecoveryTest() { std::filesystem::create_directory("kept"); }

    void ImportSaved(Model& model)
    {
        const CurrentFolderGuard back;
        SetCurrentFolder("kept");
        model.Import("recovered.obj");
    }
    void SaveAndImport(Model& model, Model& again)
    {
        model.Save("kept/recovered.obj");
        ImportSaved(again);
    }
    std::string Saved(Model& model)
    {
        model.Save("kept/recovered.obj");
        return m_Folder.Read("kept/recovered.obj");
    }
    void WriteTexturedModel()
    {
        std::filesystem::create_directory("my pictures");
        WriteImage({.width = 2, .height = 1, .components = 3, .pixels = {1, 2, 3, 4, 5, 6}},
                   "my pictures/wood.png");
        std::filesystem::create_symlink("my pictures/wood.png", "wood.png");
        m_Folder.Write("m.mtl", "newmtl red\nKa 0.1 0.2 0.3\nKd 1 0.5 0\nKs 0 0.25 0.125\n"
                                "newmtl board\nmap_Kd wood.png\nnewmtl unused\n");
        m_Folder.Write(
            "m.obj",
            "mtllib m.mtl\nv -1 -1 0\nv 1 -1 0\nv 1 1 0\nv -1 1 0\nv 0 0 1\n"
            "vt 0 0\nvt 1 0\nvt 0.5 0.25\n"
            "f 1/1 2/2 3/3\nusemtl board\nf 1/3 3/2 4/1\nf 1/1 2/1 5/1\n"
            "usemtl red\nf 2/2 3/2 5/1\nusemtl nothing\nf 3/1 4/2 5/3\nusemtl board\nf 4/1 1/2 5/3\n");
    }

    TemporaryCurrentFolder m_Folder;
};

TEST_F(SaveRecoveryTest, BringsBackPositionsAndFaces)
{
    Model model;
    LoadQuietly(model.elements, Placed(QuadCube(), 2.0, smVec3d(-1, -1, -1)));
    Model again;
    SaveAndImport(model, again);
    EXPECT_EQ(again.GetPositions(), model.GetPositions()); // the cube from -1 to 1 stays where it is
    EXPECT_EQ(again.DescribeFaces(), model.DescribeFaces());
}

TEST_F(SaveRecoveryTest, LosesNoMoreThanTheSeventhDigit)
{
    Model model;
    LoadQuietly(model.elements, Sphere(3)); // reaches from -1 to 1
    Model again;
    SaveAndImport(model, again);
    const auto before = model.GetPositions();
    const auto after = again.GetPositions();
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t i = 0; i < before.size(); ++i)
    {
        EXPECT_LT((after[i] - before[i]).Length(),
                  1.5e-6); // half a unit of the sixth digit, thrice, and single precision
    }
}

TEST_F(SaveRecoveryTest, BringsBackMaterialsAndTextures)
{
    WriteTexturedModel();
    Model model;
    model.Import("m.obj");
    Model again;
    SaveAndImport(model, again);
    EXPECT_EQ(again.DescribeFaces(), model.DescribeFaces());
    EXPECT_EQ(again.GetPositions(), model.GetPositions());
    const DSMaterial& red = again.GetMaterial("red");
    EXPECT_EQ(red.m_Ambient, smVec3f(0.1F, 0.2F, 0.3F));
    EXPECT_EQ(red.m_Diffuse, smVec3f(1.0F, 0.5F, 0.0F));
    EXPECT_EQ(red.m_Specular, smVec3f(0.0F, 0.25F, 0.125F));
    ASSERT_NE(again.GetMaterial("board").m_pTexture, nullptr);
    EXPECT_EQ(again.GetMaterial("board").m_pTexture->m_pTexture->GetData(),
              model.GetMaterial("board").m_pTexture->m_pTexture->GetData());
    EXPECT_EQ(again.elements.GetMaterialManager().GetMaterialList().size(), 2U); // those that are used
}

TEST_F(SaveRecoveryTest, FindsTheTexturesOfAModelThatWasRecoveredBefore)
{
    WriteTexturedModel();
    Model model;
    model.Import("m.obj");
    Model again;
    SaveAndImport(model, again);
    std::filesystem::create_directory("next");
    again.Save("next/recovered.obj");
    std::filesystem::remove_all("kept");
    EXPECT_EQ(std::filesystem::read_symlink("next/texture0.png"), m_Folder / "my pictures/wood.png");
}

TEST_F(SaveRecoveryTest, LeavesOutATextureThatWasNotThere)
{
    WriteTexturedModel();
    std::filesystem::remove("wood.png");
    Model model;
    const ErrorLineCapture quiet;
    model.Import("m.obj");
    model.Save("kept/recovered.obj");
    EXPECT_THAT(m_Folder.Read("kept/recovered.mtl"), Not(HasSubstr("map_Kd")));
    EXPECT_THAT(m_Folder.List("kept"), ElementsAre("recovered.mtl", "recovered.obj"));
}

TEST_F(SaveRecoveryTest, WritesNoMaterialsWhereAllFacesHaveTheDefaultOne)
{
    Model model;
    LoadQuietly(model.elements, SingleTriangle());
    EXPECT_THAT(Saved(model), StartsWith("v 0.000000 0.000000 0.000000 \n"));
    EXPECT_THAT(m_Folder.List("kept"), ElementsAre("recovered.obj"));
}

TEST_F(SaveRecoveryTest, TellsMaterialsWithUselessNamesApart)
{
    Model model;
    DSSolid* const solid = LoadQuietly(model.elements, Tetrahedron());
    MANMaterialManager& materials = model.elements.GetMaterialManager();
    const std::vector<std::string> names{"steel", "steel", "two words", ""};
    for (std::size_t i = 0; i < names.size(); ++i)
    {
        DSMaterial* const material = materials.NewMaterial();
        material->m_Name = names[i];
        material->m_Diffuse = smVec3f(static_cast<float>(i), 0.0F, 0.0F);
        solid->GetFaceList()[i]->GetMaterial() = material;
    }
    Model again;
    SaveAndImport(model, again);
    for (std::size_t i = 0; i < names.size(); ++i)
    {
        const DSMaterial* const material = again.GetSolid().GetFaceList()[i]->GetMaterial();
        ASSERT_NE(material, nullptr);
        EXPECT_EQ(material->m_Diffuse.x, static_cast<float>(i));
    }
    EXPECT_EQ(again.GetSolid().GetFaceList()[0]->GetMaterial()->m_Name, "steel");
}

TEST_F(SaveRecoveryTest, WritesVisibleSolidsAsOneWithRunningNumbers)
{
    Model model;
    LoadQuietly(model.elements, Tetrahedron())->SetVisible(false);
    LoadQuietly(model.elements, SingleTriangle());
    model.elements.DeleteSolid(LoadQuietly(model.elements, SingleTriangle()));
    LoadQuietly(model.elements, SingleTriangle());
    const std::string text = Saved(model);
    EXPECT_THAT(text, HasSubstr("f 1 2 3 \n"));
    EXPECT_THAT(text, HasSubstr("f 4 5 6 \n"));
    EXPECT_EQ(IOSaveRecovery::CountElements(model.elements), 2U * (3 + 1));
}

TEST_F(SaveRecoveryTest, SkipsNullEntriesAndFacesWithoutCorners)
{
    Model model;
    DSSolid* const solid = LoadQuietly(model.elements, SingleTriangle());
    solid->GetVertexList().push_back(nullptr);
    solid->GetFaceList().push_back(nullptr);
    solid->GetFaceList().push_back(model.elements.CreateFace());
    Model again;
    SaveAndImport(model, again);
    EXPECT_EQ(again.GetSolid().GetFaceList().size(), 1U);
}

TEST_F(SaveRecoveryTest, RefusesAFaceWhoseVertexWouldHaveNoNumber)
{
    Model model;
    DSSolid* const solid = LoadQuietly(model.elements, SingleTriangle());
    solid->GetFaceList()[0]->GetLoopList()[0]->GetHalfEdge()->GetVertex() = model.elements.CreateVertex();
    const AssertionCapture assertions;
    EXPECT_THROW(model.Save("kept/recovered.obj"), AssertionFailure);
    EXPECT_THAT(m_Folder.List("kept"), IsEmpty());
}

TEST_F(SaveRecoveryTest, SaysWhyAFileIsNotWritten)
{
    Model model;
    LoadQuietly(model.elements, SingleTriangle());
    EXPECT_THAT(GetRefusal([&] { model.Save("missing/recovered.obj"); }), HasSubstr("no such folder"));
}
}
}
