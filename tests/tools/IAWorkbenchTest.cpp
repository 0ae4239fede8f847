#include "Failure.h"
#include "Picture.h"
#include "Vectors.h"
#include "WorkbenchTest.h"
#include <algorithm>
#include <random>
#include <utility>

namespace tessarine
{
namespace
{
using testing::HasSubstr;
using testing::IsEmpty;

TEST_F(WorkbenchTest, StartsWithAnEmptyDocument)
{
    EXPECT_EQ(m_Bench.GetView().GetController(), &GetController());
    EXPECT_EQ(GetScene().GetRootGroup()->GetID(), 0xC0000000U);
    EXPECT_THAT(GetScene().GetRootGroup()->GetChildren(), IsEmpty());
    EXPECT_EQ(m_Bench.GetCommandManager().GetHistorySize(), 0U);
    EXPECT_EQ(m_Platform.GetPaneText(1), "顶点数: 0");
}

TEST_F(WorkbenchTest, ReplacesTheControllerWithEachNewDocument)
{
    Show(Tetrahedron());
    GetScene().GetLight("Main Light")->m_bAmbient = true;
    GetScene().GetCutFaceList().emplace_back();
    GetElements().SetSelectType(0x5000002);
    m_Bench.NewDocument();
    EXPECT_EQ(m_Bench.GetView().GetController(), &GetController());
    EXPECT_THAT(GetScene().GetRootGroup()->GetChildren(), IsEmpty());
    EXPECT_EQ(GetElements().GetVertexArray().size(), 0U);
    EXPECT_FALSE(GetScene().GetLight("Main Light")->m_bAmbient);
    EXPECT_THAT(GetScene().GetCutFaceList(), IsEmpty());
    EXPECT_EQ(m_Bench.GetView().GetSelectType(), 0x5000005U);
    EXPECT_EQ(m_Platform.GetPaneText(1), "顶点数: 0");
}

TEST_F(WorkbenchTest, KeepsCameraFlagsAndHistoryOverANewDocument)
{
    Show(Tetrahedron());
    GetController().SubdivideLoop();
    m_Bench.GetView().GetCamera()->SetLookAt(smVec3d(0.0, 0.0, 9.0), smVec3d(), smVec3d(0.0, 1.0, 0.0));
    m_Bench.GetView().SetDisplayFlags(DisplayFlag::Points);
    m_Bench.NewDocument();
    EXPECT_EQ(m_Bench.GetView().GetCamera()->GetPosition(), smVec3d(0.0, 0.0, 9.0));
    EXPECT_EQ(m_Bench.GetView().GetDisplayFlags(), DisplayFlag::Points);
    EXPECT_EQ(m_Bench.GetCommandManager().GetHistorySize(), 1U);
}

TEST_F(WorkbenchTest, LeavesNoNewMeshOfTheOldDocumentInTheView)
{
    m_Bench.GetView().SetNewMesh(Show(Tetrahedron()));
    m_Bench.NewDocument();
    EXPECT_EQ(m_Bench.GetView().GetNewMesh(), nullptr);
}

TEST_F(WorkbenchTest, CreatesASurfaceThatOutlivesItsDocuments)
{
    m_Platform.SetViewSize(80, 60);
    m_Bench.GetView().Resize(0, 0, 80, 60);
    ASSERT_EQ(m_Bench.CreateView(), 0) << m_Bench.GetView().GetCreateError();
    Show(Tetrahedron())->CalcNormals();
    const auto isLit = [](std::uint8_t byte) { return byte != 0; };
    const Image model = m_Bench.GetView().TakePicture();
    EXPECT_GT(std::count_if(model.pixels.begin(), model.pixels.end(), isLit), 30);

    m_Bench.NewDocument();
    const Image empty = m_Bench.GetView().TakePicture();
    EXPECT_EQ(std::count_if(empty.pixels.begin(), empty.pixels.end(), isLit), 0);

    m_Bench.DestroyView();
    EXPECT_FALSE(m_Bench.GetView().HasSurface());
    EXPECT_THROW(m_Bench.GetView().TakePicture(), Failure);
}

TEST_F(WorkbenchTest, ImportsAndDraws)
{
    m_Folder.Write("a.obj", kTetrahedronObj);
    EXPECT_TRUE(Import("a.obj"));
    EXPECT_EQ(m_Platform.GetPaneText(1), "顶点数: 4");
    EXPECT_EQ(m_Platform.GetPaneText(2), "面片数: 4");
}

TEST_F(WorkbenchTest, DrawsEvenWhenAnImportIsCancelled)
{
    Show(Tetrahedron());
    EXPECT_EQ(m_Platform.GetPaneText(1), "顶点数: 0");
    EXPECT_TRUE(m_Bench.Perform("import", Effect::ReplacesModel, [this] { m_Bench.ImportObj(); }));
    EXPECT_EQ(m_Platform.GetPaneText(1), "顶点数: 4");
    EXPECT_THAT(m_Platform.GetFailures(), IsEmpty());
}

TEST_F(WorkbenchTest, IsBackInItsFolderAfterEveryDialog)
{
    m_Folder.Write("models/a.obj", kTriangleObj);
    EXPECT_TRUE(Import("models/a.obj"));
    EXPECT_EQ(std::filesystem::current_path(), m_Folder.GetPath());

    m_Platform.AnswerFile("models/out.obj");
    m_Bench.ExportObj();
    EXPECT_EQ(std::filesystem::current_path(), m_Folder.GetPath());
    EXPECT_THAT(m_Folder.Read("models/out.obj"), HasSubstr("# 1 faces in this object "));

    m_Platform.AnswerFile("models/a.obj");
    m_Bench.OpenDocument();
    EXPECT_EQ(std::filesystem::current_path(), m_Folder.GetPath());
}

TEST_F(WorkbenchTest, ImportsAndExportsWholePathsFromAFolderThatIsGone)
{
    const std::string model = m_Folder.Write("a.obj", kTetrahedronObj).string();
    std::filesystem::create_directory(m_Folder / "gone");
    std::filesystem::current_path(m_Folder / "gone");
    std::filesystem::remove(m_Folder / "gone");
    EXPECT_TRUE(Import(model));
    m_Platform.AnswerFile((m_Folder / "out.obj").string());
    m_Bench.ExportObj();
    EXPECT_THAT(m_Folder.Read("out.obj"), HasSubstr("# 4 faces in this object "));

    EXPECT_FALSE(Import("a.obj"));
    EXPECT_EQ(m_Platform.GetOnlyReason(),
              "cannot tell the current folder: it was removed; start from another one");
}

TEST_F(WorkbenchTest, IsBackInItsFolderAfterAFailedImport)
{
    m_Folder.Write("models/a.obj", "v 0 0 0\nf 1 2 3\n");
    EXPECT_FALSE(Import("models/a.obj"));
    EXPECT_EQ(std::filesystem::current_path(), m_Folder.GetPath());
}

TEST_F(WorkbenchTest, FindsTheMaterialLibraryBesideTheModel)
{
    m_Folder.Write("models/a.obj", std::string("mtllib a.mtl\nusemtl red\n") + kTriangleObj);
    m_Folder.Write("models/a.mtl", "newmtl red\nKd 1 0 0\n");
    EXPECT_TRUE(Import("models/a.obj"));
    ASSERT_EQ(GetElements().GetMaterialManager().GetMaterialList().size(), 1U);
    EXPECT_EQ(GetElements().GetMaterialManager().GetMaterialList().front()->m_Name, "red");
}

TEST_F(WorkbenchTest, LeavesAModelWhoseFacesRunAgainstTheirNeighboursAsItWas)
{
    IndexedMesh mesh = Torus(60, 60);
    std::mt19937 random(1);
    for (std::size_t i = 0; i < mesh.indices.size(); i += 3)
    {
        if (random() % 2 == 0)
        {
            std::swap(mesh.indices[i], mesh.indices[i + 1]);
        }
    }
    Show(mesh);
    const std::string before = PictureOf(m_Bench);
    EXPECT_FALSE(
        m_Bench.Perform("subdivide-loop", Effect::ChangesModel, [this] { GetController().SubdivideLoop(); }));
    EXPECT_EQ(m_Platform.GetOnlyReason(),
              "too many faces run against their neighbours for Loop subdivision: turn the faces of the model "
              "the same way round and try again");
    EXPECT_TRUE(PictureOf(m_Bench) == before); // too long to print
}

/// An import that fails, with a model before it.
class FailedImport : public WorkbenchTest
{
protected:
    FailedImport()
    {
        m_Folder.Write("good.obj", std::string("mtllib good.mtl\nusemtl red\n") + kTetrahedronObj);
        m_Folder.Write("good.mtl", "newmtl red\nKd 1 0 0\n");
        EXPECT_TRUE(Import("good.obj"));
        GetController().SubdivideLoop();
        GetElements().ToggleSelect(0xE0000000);
        GetElements().DeleteVertex(GetElements().CreateVertex());
        m_Bench.GetView().GetHoverList() = {0xE0000001};
        m_strBefore = PictureOf(m_Bench);
    }

    void ExpectRefused(const std::string& name)
    {
        EXPECT_FALSE(Import(name));
        EXPECT_EQ(PictureOf(m_Bench), m_strBefore);
        EXPECT_EQ(m_Platform.GetFailures().size(), 1U);
        EXPECT_EQ(m_Platform.GetFailures().front().operation, "import");
    }

    std::string m_strBefore;
};

TEST_F(FailedImport, LeavesTheModelWhenTheFileIsMissing)
{
    ExpectRefused("missing.obj");
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("missing.obj"));
    EXPECT_FALSE(m_Platform.GetFailures().front().wasShown);
}

TEST_F(FailedImport, LeavesTheModelWhenTheNameIsAFolder)
{
    std::filesystem::create_directory("folder.obj");
    ExpectRefused("folder.obj");
}

TEST_F(FailedImport, LeavesTheModelWhenTheExtensionIsRefused)
{
    ExpectRefused("good.Obj");
    EXPECT_EQ(m_Platform.GetOnlyReason(), "the name of a model must end in .obj or .OBJ: good.Obj");
    EXPECT_TRUE(m_Platform.GetFailures().front().wasShown);
}

TEST_F(FailedImport, LeavesModelAndMaterialsWhenAnIndexIsOutOfRange)
{
    m_Folder.Write("bad.mtl", "newmtl blue\nKd 0 0 1\nnewmtl red\nmap_Kd missing.png\n");
    m_Folder.Write("bad.obj", "mtllib bad.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl blue\nf 1 2 3\nf 1 2 9\n");
    ExpectRefused("bad.obj");
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("9"));
}

TEST_F(FailedImport, LeavesAModelThatCanBeWorkedOn)
{
    ExpectRefused("missing.obj");
    EXPECT_TRUE(
        m_Bench.Perform("subdivide-loop", Effect::ChangesModel, [this] { GetController().SubdivideLoop(); }));
    EXPECT_EQ(GetElements().GetSolid(0xE0000000)->GetFaceList().size(), 64U); // 4 faces, times 4 twice
}
}
}
