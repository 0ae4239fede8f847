#include "ACTEuler.h"
#include "CExcp.h"
#include "FailingMemory.h"
#include "Failure.h"
#include "File.h"
#include "LinksHold.h"
#include "Picture.h"
#include "WorkbenchTest.h"
#include <new>
#include <stdexcept>

namespace tessarine
{
namespace
{
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

/// The boundary of a workbench that holds a model with everything that can be lost: gaps in the arrays, a
/// selection with a stale id, materials, a hidden snapshot, cut faces, overlays.
class BoundaryTest : public WorkbenchTest
{
protected:
    BoundaryTest()
    {
        m_pSolid = Show(Tetrahedron());
        MANBrepElementManager& elements = GetElements();
        elements.DeleteVertex(elements.CreateVertex());
        elements.DeleteFace(elements.CreateFace());
        Show(QuadCube())->SetVisible(false);

        elements.ToggleSelect(m_pSolid->GetID());
        const std::uint32_t stale = elements.CreateSolid()->GetID();
        elements.ToggleSelect(stale);
        elements.DeleteSolid(elements.GetSolid(stale));

        DSMaterial* material = elements.GetMaterialManager().NewMaterial();
        material->m_Name = "steel";
        m_pSolid->SetMaterial(material);
        GetScene().GetCutFaceList().emplace_back();
        m_Bench.GetView().GetPointCloud() = {smVec3d(1.0, 2.0, 3.0)};
        m_Bench.GetView().GetHoverList() = {0xE0000001};
        m_Bench.GetView().SetNewMesh(m_pSolid);
        m_strBefore = PictureOf(m_Bench);
    }

    /// Changes something of every kind, some of it through the Euler operators.
    void ChangeEverything()
    {
        MANBrepElementManager& elements = GetElements();
        ChangeTopology(elements);
        elements.SetSelectType(0x5000002);
        elements.ToggleSelect(m_pSolid->GetVertexList()[0]->GetID());
        m_pSolid->GetVertexList()[1]->SetPosition(7.0, 7.0, 7.0);
        elements.DeleteHalfEdge(elements.GetHalfEdge(0x20000000));
        elements.GetMaterialManager().NewMaterial()->m_Name = "glass";
        elements.GetMaterialManager().GetMaterialList().front()->m_Name = "iron";
        elements.GetMaterialManager().GetDefaultMaterial().m_fShininess = 1.0F;
        elements.GetMaterialManager().NewTexture();
        elements.GetMaterialManager().NewImage();
        GetScene().DeleteLeaf(0xE0000000);
        GetScene().NewGroup();
        GetScene().NewLight();
        GetScene().GetLight("Main Light")->m_bAmbient = true;
        GetScene().GetCutFaceList().clear();
        m_Bench.GetView().GetPointCloud().clear();
        m_Bench.GetView().GetHoverList() = {1, 2};
        m_Bench.GetView().SetNewMesh(nullptr);
        m_Bench.GetView().SetDisplayFlags(0);
    }

    void ChangeTopology(MANBrepElementManager& elements)
    {
        ACTEuler euler(&elements);
        const DSFace* face = m_pSolid->GetFaceList()[0];
        const DSHalfEdge* half = face->GetLoopList()[0]->GetHalfEdge();
        std::uint32_t vertex = 0;
        euler.SEMV(m_pSolid->GetID(), face->GetID(), half->GetVertex()->GetID(),
                   half->GetNext()->GetVertex()->GetID(), vertex, smVec3d(0.5, 0.5, 0.5));
    }

    /// Runs ChangeEverything and then `action`, which throws.
    bool FailAfterChanges(const std::function<void()>& action)
    {
        return m_Bench.Perform("operation", Effect::ChangesModel,
                               [this, &action]
                               {
                                   ChangeEverything();
                                   EXPECT_NE(PictureOf(m_Bench), m_strBefore);
                                   action();
                               });
    }

    template <class TException>
    std::string GetReasonFor(const TException& exception)
    {
        EXPECT_FALSE(FailAfterChanges([&exception] { throw exception; }));
        EXPECT_EQ(PictureOf(m_Bench), m_strBefore);
        return m_Platform.GetOnlyReason();
    }

    DSSolid* m_pSolid = nullptr;
    std::string m_strBefore;
};

TEST_F(BoundaryTest, LetsASuccessStand)
{
    EXPECT_TRUE(m_Bench.Perform("operation", Effect::ChangesModel, [this] { m_pSolid->SetVisible(false); }));
    EXPECT_FALSE(m_pSolid->IsVisible());
    EXPECT_THAT(m_Platform.GetFailures(), IsEmpty());
}

TEST_F(BoundaryTest, ShowsAFailureInItsOwnWords)
{
    EXPECT_EQ(GetReasonFor(Failure("choose a model first")), "choose a model first");
    EXPECT_EQ(m_Platform.GetFailures().front().operation, "operation");
}

TEST_F(BoundaryTest, ShowsAFailureOfAFileInItsOwnWords)
{
    EXPECT_EQ(GetReasonFor(FileError("cannot open x.obj: no such file")), "cannot open x.obj: no such file");
}

TEST_F(BoundaryTest, ShowsWhereAnAssertionStands)
{
    EXPECT_EQ(GetReasonFor(AssertionFailure({"v != nullptr", "source/X.cpp", 12})),
              "an internal check failed: v != nullptr (source/X.cpp, line 12); the model is as it was");
}

TEST_F(BoundaryTest, ShowsThatMemoryRanOut)
{
    EXPECT_EQ(GetReasonFor(std::bad_alloc()), "not enough memory; the model is as it was");
}

TEST_F(BoundaryTest, ShowsTheTextOfAnyOtherException)
{
    EXPECT_EQ(GetReasonFor(std::runtime_error("something else")), "something else");
}

TEST_F(BoundaryTest, NamesAnExceptionWithoutAMessageByItsClass)
{
    EXPECT_EQ(GetReasonFor(CExcpDivideZero()),
              "a division by zero, or a vector of length zero; the model is as it was");
}

TEST_F(BoundaryTest, NamesASingularMatrix)
{
    EXPECT_EQ(GetReasonFor(CExcpSingularMatrix()), "a matrix that has no inverse; the model is as it was");
}

TEST_F(BoundaryTest, SaysOfOtherExceptionsThatTheyHaveNoDescription)
{
    EXPECT_EQ(GetReasonFor(CExcpUnknown()), "an error that has no description; the model is as it was");
}

TEST_F(BoundaryTest, PutsTheContextBeforeTheClassOfAnException)
{
    CExcpDivideZero exception;
    exception.AddContext("in face 3");
    EXPECT_EQ(GetReasonFor(exception),
              "( in face 3 ) a division by zero, or a vector of length zero; the model is as it was");
}

TEST_F(BoundaryTest, StopsWhatIsNoException)
{
    EXPECT_EQ(GetReasonFor(7), "an unknown error; the model is as it was");
}

TEST_F(BoundaryTest, RestoresAnAssertionOfTheKernel)
{
    EXPECT_FALSE(FailAfterChanges([this] { GetElements().GetVertex(0x00FFFFFF); }));
    EXPECT_THAT(m_Platform.GetOnlyReason(), StartsWith("an internal check failed: "));
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("(source/Manager/MANBrepElementManager.cpp, line "));
    EXPECT_EQ(PictureOf(m_Bench), m_strBefore);
}

TEST_F(BoundaryTest, LeavesAModelThatWorksOn)
{
    EXPECT_FALSE(FailAfterChanges([] { throw Failure("no"); }));
    EXPECT_TRUE(LinksHold(*m_pSolid));
    EXPECT_TRUE(
        m_Bench.Perform("operation", Effect::ChangesModel, [this] { ChangeTopology(GetElements()); }));
    EXPECT_TRUE(LinksHold(*m_pSolid));
    EXPECT_EQ(m_pSolid->GetVertexList().size(), 5U);
}

TEST_F(BoundaryTest, TakesStoredCommandsOutOfTheHistory)
{
    class Plain : public IACommand
    {
    };
    m_Bench.GetCommandManager().StoreCommand(std::make_unique<Plain>());
    m_strBefore = PictureOf(m_Bench);
    EXPECT_FALSE(FailAfterChanges(
        [this]
        {
            m_Bench.GetCommandManager().StoreCommand(std::make_unique<Plain>());
            throw Failure("no");
        }));
    EXPECT_EQ(m_Bench.GetCommandManager().GetHistorySize(), 1U);
    EXPECT_EQ(PictureOf(m_Bench), m_strBefore);
}

TEST_F(BoundaryTest, ShowsTheCountersOfTheRestoredModel)
{
    m_Bench.GetView().GetHoverList().clear();
    EXPECT_FALSE(m_Bench.Perform("operation", Effect::ChangesModel,
                                 [this]
                                 {
                                     GetController().ClearModels();
                                     GetController().Redraw();
                                     EXPECT_EQ(m_Platform.GetPaneText(1), "顶点数: 0");
                                     throw Failure("no");
                                 }));
    EXPECT_EQ(m_Platform.GetPaneText(1), "顶点数: 4");
    EXPECT_EQ(m_Platform.GetPaneText(2), "面片数: 4");
}

TEST_F(BoundaryTest, FlushesTheConsoleAtTheEnd)
{
    std::string printed;
    const auto before = DebugConsole().SetSink([&printed](std::string_view text) { printed += text; });
    m_Bench.Perform("operation", Effect::None, [] { DebugConsole() << "without a line end"; });
    EXPECT_EQ(printed, "without a line end");
    DebugConsole().SetSink(before);
}

TEST_F(BoundaryTest, TakesAddedSolidsOutAgain)
{
    EXPECT_FALSE(m_Bench.Perform("operation", Effect::Adds,
                                 [this]
                                 {
                                     GetController().Simplify(0.5F);
                                     EXPECT_FALSE(m_pSolid->IsVisible());
                                     Show(Sphere(3)); // records in blocks of their own
                                     throw Failure("no");
                                 }));
    EXPECT_EQ(PictureOf(m_Bench), m_strBefore);
    EXPECT_TRUE(LinksHold(*m_pSolid));
}

TEST_F(BoundaryTest, SetsReplacedElementsAsideAndBringsThemBack)
{
    EXPECT_FALSE(m_Bench.Perform("operation", Effect::ReplacesModel,
                                 [this]
                                 {
                                     GetController().ResetModels();
                                     EXPECT_EQ(GetElements().GetVertexArray().size(), 0U);
                                     EXPECT_EQ(m_Bench.GetView().GetNewMesh(), nullptr);
                                     GetElements().GetMaterialManager().NewMaterial();
                                     Show(TriangleCube());
                                     throw Failure("no");
                                 }));
    EXPECT_EQ(PictureOf(m_Bench), m_strBefore);
    EXPECT_TRUE(LinksHold(*m_pSolid));
}

TEST_F(BoundaryTest, BringsTheFirstModelBackAfterTwoResets)
{
    EXPECT_FALSE(m_Bench.Perform("operation", Effect::ReplacesModel,
                                 [this]
                                 {
                                     GetController().ResetModels();
                                     Show(TriangleCube());
                                     GetController().ResetModels();
                                     throw Failure("no");
                                 }));
    EXPECT_EQ(PictureOf(m_Bench), m_strBefore);
}

TEST_F(BoundaryTest, KeepsTheModelOfAReplacementThatNeverCame)
{
    EXPECT_TRUE(m_Bench.Perform("operation", Effect::ReplacesModel, [] {}));
    EXPECT_EQ(PictureOf(m_Bench), m_strBefore);
    EXPECT_FALSE(m_Bench.Perform("operation", Effect::ReplacesModel, [] { throw Failure("no"); }));
    EXPECT_EQ(PictureOf(m_Bench), m_strBefore);
}

TEST_F(BoundaryTest, KeepsStaleIdsSelectedOverAReplacement)
{
    const auto selected = GetElements().GetSelectList();
    EXPECT_TRUE(
        m_Bench.Perform("operation", Effect::ReplacesModel, [this] { GetController().ResetModels(); }));
    EXPECT_EQ(GetElements().GetSelectList(), selected);
    EXPECT_EQ(selected.size(), 2U);
}

TEST_F(BoundaryTest, KeepsTheOldDocumentWhenANewOneFails)
{
    EXPECT_FALSE(m_Bench.Perform("new", Effect::ReplacesDocument,
                                 [this]
                                 {
                                     const InjectedFault fault(GetMemoryPlan(), 0, FaultMode::Once);
                                     m_Bench.NewDocument();
                                 }));
    EXPECT_EQ(PictureOf(m_Bench), m_strBefore);
    EXPECT_EQ(m_Platform.GetOnlyReason(), "not enough memory; the model is as it was");
}

TEST_F(BoundaryTest, BringsBackTheModelOfAnAdaptiveSubdivisionThatFails)
{
    m_pSolid->GetVertexList()[1]->SetPosition(1e308, 0.0, 0.0); // 3 p is beyond all numbers
    m_strBefore = PictureOf(m_Bench);
    m_Platform.AnswerAreaThreshold(0.0F);
    EXPECT_FALSE(
        m_Bench.Perform("operation", Effect::ReplacesModel, [this] { GetController().SubdivideAdaptive(); }));
    EXPECT_EQ(PictureOf(m_Bench), m_strBefore);
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("not a finite number"));
}

TEST_F(BoundaryTest, BringsBackTheModelOfAnAdaptiveSubdivisionWhoseFrameFails)
{
    m_Platform.AnswerAreaThreshold(0.0F);
    EXPECT_FALSE(m_Bench.Perform("operation", Effect::ReplacesModel,
                                 [this]
                                 {
                                     GetController().SubdivideAdaptive();
                                     EXPECT_EQ(m_Bench.GetView().GetNewMesh(), nullptr);
                                     throw Failure("no frame");
                                 }));
    EXPECT_EQ(PictureOf(m_Bench), m_strBefore);
}

TEST_F(BoundaryTest, TakesBackTheMaterialOfAFailure)
{
    EXPECT_FALSE(m_Bench.Perform("operation", Effect::ChangesModel,
                                 [this]
                                 {
                                     GetController().SetMaterialOfSelection();
                                     throw Failure("no frame");
                                 }));
    EXPECT_EQ(PictureOf(m_Bench), m_strBefore);
    EXPECT_TRUE(m_Platform.GetMaterialDialogs().at(0).expired()) << "the dialog sees that it is gone";
}

TEST_F(BoundaryTest, KeepsTheOverlaysWhenTheFrameOfANewDocumentFails)
{
    DSSolid* pMesh = Show(Tetrahedron());
    Open3DView& view = m_Bench.GetView();
    view.SetNewMesh(pMesh);
    FailingPanes platform;
    platform.Fail();
    EXPECT_FALSE(m_Bench.Perform("new", Effect::ReplacesDocument, [this] { m_Bench.NewDocument(); }));
    EXPECT_EQ(view.GetNewMesh(), pMesh);
    EXPECT_EQ(platform.GetOnlyReason(), "not enough memory; the model is as it was");
}

/// Runs an operation over and over, each time with the next of its allocations failing, until none is left to
/// fail.
class OutOfMemory : public BoundaryTest, public testing::WithParamInterface<FaultMode>
{
protected:
    /// Under the select tool an operation also looks ahead of the next motion, which may fail without a word.
    OutOfMemory()
    {
        m_Bench.GetToolsManager().ChangeTool(ToolID::Orbit);
        m_strBefore = PictureOf(m_Bench);
    }

    void ExpectNothingChangesUntilItSucceeds(Effect effect, const std::function<void()>& action)
    {
        const auto kept = DebugConsole().SetSink([](std::string_view) {}); // one that needs no memory
        RunUntilItSucceeds(effect, action);
        DebugConsole().SetSink(kept);
    }

private:
    void RunUntilItSucceeds(Effect effect, const std::function<void()>& action)
    {
        for (long spared = 0;; ++spared)
        {
            bool done = false;
            {
                const InjectedFault fault(GetMemoryPlan(), spared, GetParam());
                done = m_Bench.Perform("operation", effect, action);
            }
            if (done)
            {
                EXPECT_FALSE(GetMemoryPlan().HasFailed()) << "allocation " << spared;
                EXPECT_GT(spared, 0);
                return;
            }
            ASSERT_TRUE(GetMemoryPlan().HasFailed());
            ASSERT_EQ(PictureOf(m_Bench), m_strBefore) << "allocation " << spared;
        }
    }
};

TEST_P(OutOfMemory, EndsNoOperationBehindWhichItLooksAhead)
{
    m_Bench.GetToolsManager().ChangeTool(ToolID::Select);
    m_Bench.GetView().Resize(0, 0, 100, 100);
    int failedAhead = 0;
    for (long spared = 0; spared < 20; ++spared)
    {
        bool done = false;
        {
            const InjectedFault fault(GetMemoryPlan(), spared, GetParam());
            done = m_Bench.Perform("operation", Effect::ReplacesModel, [] {});
        }
        failedAhead += done && GetMemoryPlan().HasFailed() ? 1 : 0;
        EXPECT_TRUE(m_Bench.SendEvent({.kind = ToolEvent::Kind::MouseMove, .x = 50, .y = 50}));
        EXPECT_EQ(m_Bench.GetView().GetHoverList().size(), 1U);
    }
    EXPECT_GT(failedAhead, 0);
}

TEST_P(OutOfMemory, LeavesTheModelOfASubdivision)
{
    ExpectNothingChangesUntilItSucceeds(Effect::ChangesModel, [this] { GetController().SubdivideLoop(); });
    EXPECT_EQ(m_pSolid->GetFaceList().size(), 16U);
}

TEST_P(OutOfMemory, LeavesTheModelOfASimplification)
{
    // The report of a vertex between folded faces would make do without memory.
    const AssertionHandler handler = SetAssertionHandler([](const AssertionSite&) {});
    ExpectNothingChangesUntilItSucceeds(Effect::Adds, [this] { GetController().Simplify(0.5F); });
    SetAssertionHandler(handler);
    EXPECT_FALSE(m_pSolid->IsVisible());
}

TEST_P(OutOfMemory, LeavesTheModelOfAnOptimisation)
{
    ExpectNothingChangesUntilItSucceeds(Effect::ChangesModel, [this] { GetController().OptimizeMesh(1); });
    EXPECT_EQ(m_pSolid->GetFaceList().size(), 4U);
}

TEST_P(OutOfMemory, LeavesTheModelOfAnImport)
{
    m_Folder.Write("model.obj", "mtllib model.mtl\nv 0 0 0\nv 1 0 0\nv 0 1 0\nusemtl red\nf 1 2 3\n");
    m_Folder.Write("model.mtl", "newmtl red\nKd 1 0 0\n");
    for (int i = 0; i < 4000; ++i) // more than there are allocations
    {
        m_Platform.AnswerFile("model.obj");
    }
    ExpectNothingChangesUntilItSucceeds(Effect::ReplacesModel, [this] { m_Bench.ImportObj(); });
    EXPECT_EQ(GetElements().GetFaceArray().size(), 1U);
}

TEST_P(OutOfMemory, LeavesTheModelOfAnAdaptiveSubdivision)
{
    for (int i = 0; i < 1000; ++i) // more than there are allocations
    {
        m_Platform.AnswerAreaThreshold(0.0F);
    }
    ExpectNothingChangesUntilItSucceeds(Effect::ReplacesModel,
                                        [this] { GetController().SubdivideAdaptive(); });
    EXPECT_EQ(GetElements().GetFaceArray().size(), 16U);
}

TEST_P(OutOfMemory, LeavesTheMaterialsWhereOneIsSet)
{
    ExpectNothingChangesUntilItSucceeds(Effect::ChangesModel,
                                        [this] { GetController().SetMaterialOfSelection(); });
    EXPECT_EQ(GetElements().GetMaterialManager().GetMaterialList().size(), 2U);
}

TEST_P(OutOfMemory, LeavesTheOldDocument)
{
    ExpectNothingChangesUntilItSucceeds(Effect::None, [this] { m_Bench.NewDocument(); });
    EXPECT_EQ(GetElements().GetFaceArray().size(), 0U);
}

INSTANTIATE_TEST_SUITE_P(Modes, OutOfMemory, testing::Values(FaultMode::Once, FaultMode::FromThenOn));
}
}
