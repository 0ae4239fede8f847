#include "Failure.h"
#include "IAReconstructionCommand.h"
#include "Image.h"
#include "Vectors.h"
#include "WorkbenchTest.h"

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

class ControllerTest : public WorkbenchTest
{
protected:
    /// The text of the Failure that ends an operation.
    template <class TOperation>
    std::string GetRefusal(TOperation operation)
    {
        try
        {
            operation(GetController());
        }
        catch (const Failure& failure)
        {
            return failure.GetMessage();
        }
        return "";
    }

    /// Imports through the dialog, past the boundary.
    void ImportPlainly(const std::string& name)
    {
        m_Platform.AnswerFile(name);
        GetController().ImportObj();
    }

    std::size_t CountVertices() const
    {
        const auto& children = m_Bench.GetController().GetRootGroup()->GetChildren();
        return children.empty()
                   ? 0
                   : static_cast<const MANSceneLeaf*>(children.front())->GetSolid()->GetVertexList().size();
    }
};

TEST_F(ControllerTest, JoinsTheViewToItselfAndItsStores)
{
    IAController controller;
    Open3DView view;
    controller.SetView(&view);
    EXPECT_EQ(view.GetController(), &controller);
    controller.GetElementManager().SetSelectType(0x5000003);
    EXPECT_EQ(view.GetSelectType(), 0x5000003U);
}

TEST_F(ControllerTest, KeepsNoCommandBeforeTheFirst)
{
    EXPECT_EQ(GetController().GetIncrementalCommand(), nullptr);
    EXPECT_EQ(GetController().GetTwoStepCommand(), nullptr);
}

TEST_F(ControllerTest, CannotDrawOrRunBeforeItIsConnected)
{
    IAController controller;
    EXPECT_THROW(controller.Redraw(), AssertionFailure);
    EXPECT_THROW(controller.SubdivideLoop(), AssertionFailure);
}

TEST_F(ControllerTest, HasTheRootOfIndexOneAfterResetAndZeroAfterClear)
{
    Show(Tetrahedron());
    GetController().ResetModels();
    EXPECT_EQ(GetController().GetRootGroup()->GetID(), 0xC0000001U);
    EXPECT_EQ(GetElements().GetVertexArray().size(), 0U);

    Show(Tetrahedron());
    GetController().ClearModels();
    EXPECT_EQ(GetController().GetRootGroup()->GetID(), 0xC0000000U);
    EXPECT_EQ(GetElements().GetVertexArray().size(), 0U);
}

TEST_F(ControllerTest, LeavesNoNewMeshInTheViewWithoutItsElements)
{
    m_Bench.GetView().SetNewMesh(Show(Tetrahedron()));
    GetController().ResetModels();
    EXPECT_EQ(m_Bench.GetView().GetNewMesh(), nullptr);
    m_Bench.GetView().SetNewMesh(Show(Tetrahedron()));
    GetController().ClearModels();
    EXPECT_EQ(m_Bench.GetView().GetNewMesh(), nullptr);
}

TEST_F(ControllerTest, KeepsMaterialsAndSelectionListOverReset)
{
    const std::uint32_t id = Show(Tetrahedron())->GetID();
    GetElements().ToggleSelect(id);
    GetElements().GetMaterialManager().NewMaterial();
    GetController().ResetModels();
    EXPECT_THAT(GetElements().GetSelectList(), ElementsAre(id));
    EXPECT_EQ(GetElements().GetMaterialManager().GetMaterialList().size(), 1U);
}

TEST_F(ControllerTest, ImportsEitherSpellingOfTheExtension)
{
    m_Folder.Write("small.obj", kTriangleObj);
    m_Folder.Write("LARGE.OBJ", kTetrahedronObj);
    ImportPlainly("small.obj");
    EXPECT_EQ(CountVertices(), 3U);
    ImportPlainly("LARGE.OBJ");
    EXPECT_EQ(CountVertices(), 4U);
    EXPECT_THAT(m_Platform.GetTexts(), IsEmpty());
}

TEST_F(ControllerTest, LeavesOnlyTheSecondModelOfTwoImports)
{
    m_Folder.Write("a.obj", kTetrahedronObj);
    m_Folder.Write("b.obj", kTriangleObj);
    ImportPlainly("a.obj");
    ImportPlainly("b.obj");
    EXPECT_EQ(GetController().GetRootGroup()->GetChildren().size(), 1U);
    EXPECT_EQ(GetElements().GetVertexArray().size(), 3U);
    EXPECT_EQ(GetElements().GetSolidArray().size(), 1U);
    EXPECT_EQ(GetController().GetRootGroup()->GetID(), 0xC0000001U);
}

TEST_F(ControllerTest, RefusesAnyOtherNameBeforeItTouchesTheModels)
{
    m_Folder.Write("a.obj", kTetrahedronObj);
    ImportPlainly("a.obj");
    for (const char* name : {"a.Obj", "a.obj.txt", "obj", "a.ply"})
    {
        EXPECT_EQ(GetRefusal([&](IAController&) { ImportPlainly(name); }),
                  "the name of a model must end in .obj or .OBJ: " + std::string(name));
        EXPECT_EQ(CountVertices(), 4U);
    }
    EXPECT_THAT(m_Platform.GetMessages(), testing::SizeIs(4));
    EXPECT_THAT(m_Platform.GetMessages(),
                testing::Each(HeadlessPlatform::Message{"错误", "不能导入此类型文件!"}));
}

TEST_F(ControllerTest, NamesTheFolderThatIsNoModel)
{
    const std::string folder = m_Folder.GetPath().string() + "/";
    EXPECT_EQ(GetRefusal([&](IAController&) { ImportPlainly(folder); }),
              "the name of a model must end in .obj or .OBJ: " + folder);
}

TEST_F(ControllerTest, TellsThatTheUserHasSeenTheRefusal)
{
    m_Platform.AnswerFile("a.ply");
    try
    {
        GetController().ExportObj();
        FAIL() << "the name was not refused";
    }
    catch (const Failure& failure)
    {
        EXPECT_TRUE(failure.WasShown());
    }
}

TEST_F(ControllerTest, AsksForObjFiles)
{
    GetController().ImportObj();
    GetController().ExportObj();
    EXPECT_THAT(m_Platform.GetFileQuestions(),
                ElementsAre(FileQuestion{"Wavefront OBJ(*.obj)|*.obj||所有文件(*.*)|*.*||", ".obj"},
                            FileQuestion{"Obj Files(*.obj)|*.obj||", ".obj"}));
}

TEST_F(ControllerTest, LooksAtTheNameOfTheFileAlone)
{
    m_Folder.Write("folder.ply/a.obj", kTriangleObj);
    m_Folder.Write("folder.obj/a.ply", kTriangleObj);
    ImportPlainly("folder.ply/a.obj");
    EXPECT_EQ(CountVertices(), 3U);
    std::filesystem::current_path(m_Folder.GetPath());
    EXPECT_EQ(GetRefusal([&](IAController&) { ImportPlainly("folder.obj/a.ply"); }),
              "the name of a model must end in .obj or .OBJ: a.ply");
}

TEST_F(ControllerTest, ChangesNothingWhenADialogIsCancelled)
{
    Show(Tetrahedron());
    GetController().ImportObj();
    GetController().ExportObj();
    EXPECT_EQ(CountVertices(), 4U);
    EXPECT_THAT(m_Platform.GetTexts(), IsEmpty());
    EXPECT_TRUE(std::filesystem::is_empty(m_Folder.GetPath()));
}

TEST_F(ControllerTest, ExportsIntoTheFolderThatTheDialogMadeCurrent)
{
    std::filesystem::create_directory("elsewhere");
    Show(SingleTriangle());
    m_Platform.AnswerFile("elsewhere/out.obj");
    GetController().ExportObj();
    EXPECT_THAT(m_Folder.Read("elsewhere/out.obj"), HasSubstr("g object1 \n"));
    EXPECT_EQ(std::filesystem::current_path(), m_Folder.GetPath() / "elsewhere");
}

TEST_F(ControllerTest, RefusesToExportUnderAnyOtherName)
{
    m_Platform.AnswerFile("out.Obj");
    EXPECT_EQ(GetRefusal([](IAController& controller) { controller.ExportObj(); }),
              "the name of a model must end in .obj or .OBJ: out.Obj");
    EXPECT_THAT(m_Platform.GetMessages(),
                ElementsAre(HeadlessPlatform::Message{"错误", "不能保存成此类型文件!"}));
    EXPECT_TRUE(std::filesystem::is_empty(m_Folder.GetPath()));
}

TEST_F(ControllerTest, SubdividesKeepsTheCommandAndDraws)
{
    const DSSolid* solid = Show(SingleTriangle());
    GetController().SubdivideLoop();
    EXPECT_EQ(solid->GetFaceList().size(), 4U);
    EXPECT_EQ(m_Bench.GetCommandManager().GetHistorySize(), 1U);
    EXPECT_EQ(m_Platform.GetPaneText(2), "面片数: 4");
}

TEST_F(ControllerTest, SubdividesNothingWithoutAWord)
{
    GetController().SubdivideLoop();
    EXPECT_EQ(m_Bench.GetCommandManager().GetHistorySize(), 1U);
    EXPECT_EQ(GetElements().GetSolidArray().size(), 0U);
    EXPECT_THAT(m_Platform.GetTexts(), IsEmpty());
}

TEST_F(ControllerTest, SubdividesAdaptivelyByTheAnswerOfTheDialog)
{
    m_Bench.GetView().SetNewMesh(Show(CentredTetrahedron()));
    m_Platform.AnswerAreaThreshold(0.0F);
    GetController().SubdivideAdaptive();
    EXPECT_EQ(GetElements().GetFaceArray().size(), 16U);
    EXPECT_EQ(m_Bench.GetView().GetNewMesh(), nullptr) << "its solid is gone";
    EXPECT_EQ(m_Bench.GetCommandManager().GetHistorySize(), 1U);
    EXPECT_EQ(m_Platform.GetPaneText(2), "面片数: 16");
}

TEST_F(ControllerTest, LeavesTheModelWhereTheDialogIsCancelled)
{
    DSSolid* solid = Show(CentredTetrahedron());
    m_Bench.GetView().SetNewMesh(solid);
    GetController().SubdivideAdaptive();
    EXPECT_EQ(m_Platform.CountThresholdQuestions(), 1);
    EXPECT_EQ(solid->GetFaceList().size(), 4U);
    EXPECT_EQ(m_Bench.GetView().GetNewMesh(), solid);
}

TEST_F(ControllerTest, SetsTheMaterialOfASelectedSolid)
{
    GetElements().ToggleSelect(Show(CentredTetrahedron())->GetID());
    GetController().SetMaterialOfSelection();
    const auto& materials = GetElements().GetMaterialManager().GetMaterialList();
    ASSERT_EQ(materials.size(), 1U);
    ASSERT_EQ(m_Platform.GetMaterialDialogs().size(), 1U);
    EXPECT_EQ(m_Platform.GetMaterialDialogs()[0].lock(), materials[0]);
    EXPECT_EQ(m_Bench.GetCommandManager().GetHistorySize(), 1U);
}

/// One view of a disc, with a marker line, as both datasets of silhouettes have it.
void WriteMarkedDataset(const TemporaryFolder& folder)
{
    constexpr int kSide = 40;
    Image image{kSide, kSide, 3, {}};
    for (int i = 0; i < kSide * kSide; ++i)
    {
        const int x = i % kSide - kSide / 2;
        const int y = i / kSide - kSide / 2;
        const std::uint8_t byte = x * x + y * y < 100 ? 255 : 0;
        const bool isMarker = y == 0 || y == 1;
        image.pixels.insert(image.pixels.end(), {isMarker ? std::uint8_t{0} : byte, byte, byte});
    }
    for (const char* name : {"bunny", "man"})
    {
        folder.Write(std::filesystem::path("data") / name / "param.dat",
                     "1\n40 40\n1 0 0 0 0 1 0 0 0 0 1 0 0 0 0 1\n");
        WriteImage(image, folder / "data" / name / "1.bmp");
    }
    folder.Write("data/man/unitize.dat", "0 0 0 1\n2 2\n");
    folder.Write("data/bunny.txta", "2\n-1 0 0\n1 0 0\n");
}

TEST_F(ControllerTest, KeepsTheLastReconstructionForItsSurface)
{
    WriteMarkedDataset(m_Folder);
    GetController().BuildInitialMesh();
    const IAReconstructionCommand* first = &GetController().GetReconstructionCommand();
    EXPECT_EQ(GetScene().GetCutFaceList().size(), 1U);
    EXPECT_TRUE(GetController().GetRootGroup()->GetChildren().empty());
    GetController().BuildInitialMesh();
    EXPECT_NE(&GetController().GetReconstructionCommand(), first);
    EXPECT_EQ(m_Bench.GetCommandManager().GetHistorySize(), 2U);
    GetController().GenerateMesh(0.0F);
    GetController().ShowField();
    EXPECT_EQ(GetController().GetRootGroup()->GetChildren().size(), 2U);
    EXPECT_GT(CountVertices(), 0U);
}

TEST_F(ControllerTest, RefusesASurfaceBeforeAReconstruction)
{
    const std::string refusal = "there is no distance field: build the initial mesh first (\"构造初始网格\")";
    EXPECT_EQ(GetRefusal([](IAController& c) { c.GenerateMesh(0.0F); }), refusal);
    EXPECT_EQ(GetRefusal([](IAController& c) { c.ShowField(); }), refusal);
}

TEST_F(ControllerTest, TurnsTheCutFacesOnWithTheSplats)
{
    WriteMarkedDataset(m_Folder);
    GetController().GenerateSplats();
    EXPECT_EQ(m_Bench.GetView().GetDisplayFlags(), 0xCU | 0x20000U);
    GetController().GenerateSplats();
    EXPECT_EQ(m_Bench.GetView().GetDisplayFlags(), 0xCU | 0x20000U); // no switch
    EXPECT_EQ(GetScene().GetCutFaceList().size(), 2U);
}

TEST_F(ControllerTest, GoesBackToWhatWasWhereAReconstructionFails)
{
    WriteMarkedDataset(m_Folder);
    EXPECT_TRUE(
        m_Bench.Perform("build", Effect::ChangesModel, [this] { GetController().BuildInitialMesh(); }));
    const OCTNODE* octree = m_Bench.GetView().GetOctree();
    const IAReconstructionCommand* kept = &GetController().GetReconstructionCommand();
    m_Folder.Write("data/bunny.txta", "2\n1 0 0\n1 0 0\n");
    EXPECT_FALSE(
        m_Bench.Perform("build", Effect::ChangesModel, [this] { GetController().BuildInitialMesh(); }));
    EXPECT_EQ(m_Bench.GetView().GetOctree(), octree);
    EXPECT_EQ(octree->GetPoints().size(), 2U);
    EXPECT_EQ(&GetController().GetReconstructionCommand(), kept);
    EXPECT_EQ(GetScene().GetCutFaceList().size(), 1U); // that of the failed run is gone
    EXPECT_EQ(m_Bench.GetCommandManager().GetHistorySize(), 1U);
    std::filesystem::remove(m_Folder / "data/man/unitize.dat");
    EXPECT_FALSE(
        m_Bench.Perform("splats", Effect::ChangesModel, [this] { GetController().GenerateSplats(); }));
    EXPECT_EQ(m_Bench.GetView().GetDisplayFlags(), 0xCU);
}

TEST_F(ControllerTest, KeepsTheOctreeOfTheDocumentBefore)
{
    WriteMarkedDataset(m_Folder);
    GetController().BuildInitialMesh();
    m_Bench.NewDocument();
    EXPECT_THAT(GetRefusal([](IAController& c) { c.GenerateMesh(0.0F); }), HasSubstr("no distance field"));
    EXPECT_EQ(m_Bench.GetView().GetOctree()->GetPoints().size(), 2U); // the history has its nodes
}

TEST_F(ControllerTest, RefusesTheTwoStepsBeforeTheTwoStepRefinement)
{
    EXPECT_EQ(GetRefusal([](IAController& c) { c.TwoStepFirst(); }),
              "the first step needs a two-step refinement that has run on this model: run it first "
              "(\"两步对应算法\", refine-two-step)");
    EXPECT_THAT(GetRefusal([](IAController& c) { c.TwoStepSecond(); }), HasSubstr("the second step needs"));
    EXPECT_THAT(GetRefusal([](IAController& c) { c.TwoStepThird(); }), HasSubstr("the third step needs"));
}
}
}
