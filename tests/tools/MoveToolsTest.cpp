#include "ACTEuler.h"
#include "Failure.h"
#include "SelectionTest.h"
#include "Vectors.h"
#include "resource.h"

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

/// The way of a pixel: the distance of 5 from the target, over the far plane of 200 times 6.
constexpr double kPixel = 5.0 / 1200.0;

/// A console that cannot be written once, while it lives.
class FailingLine
{
public:
    FailingLine()
        : m_Before(DebugConsole().SetSink(
              [this](std::string_view)
              {
                  if (!std::exchange(m_bHasFailed, true))
                  {
                      throw std::bad_alloc();
                  }
              }))
    {
    }
    ~FailingLine() { DebugConsole().SetSink(m_Before); }
    FailingLine(const FailingLine&) = delete;
    FailingLine& operator=(const FailingLine&) = delete;

    /// So much waits now that the next line is handed on.
    static void Prepare() { DebugConsole() << std::string(70000, '.'); }
    bool HasFailed() const { return m_bHasFailed; }

private:
    bool m_bHasFailed = false;
    Console::Sink m_Before;
};

class MoveTools : public SelectionTest
{
protected:
    void SelectFront()
    {
        Choose(ResourceID::SelectFaces);
        Select(50, 50);
    }
    void SelectCorner()
    {
        Choose(ResourceID::SelectVertices);
        Select(55, 46); // vertex 7
    }

    const smVec3d& GetCorner(std::size_t index) { return m_pCube->GetVertexList()[index]->GetPosition(); }
};

TEST_F(MoveTools, MoveByTheMotionsBehindTheFirst)
{
    Select(50, 50);
    EXPECT_TRUE(Choose(ResourceID::MoveSolidX));
    EXPECT_EQ(GetToolOnTop(), 0x6000004U);
    MoveTo(700, 3);
    EXPECT_EQ(GetCorner(0), smVec3d(-0.5, -0.5, -0.5)); // only the base
    MoveTo(730, 300);                                   // 30 to the right; up and down mean nothing
    MoveTo(712, 9);
    EXPECT_NEAR(GetCorner(0).x, -0.5 + 12 * kPixel, 1e-15);
    EXPECT_EQ(GetCorner(0).y, -0.5);
    EXPECT_EQ(GetCorner(0).z, -0.5);
}

TEST_F(MoveTools, GoFurtherFromFurtherOffAndLessFarWithAFurtherFarPlane)
{
    Choose(ResourceID::SelectSolids);
    GetElements().ToggleSelect(m_pCube->GetID());
    m_Bench.GetView().GetCamera()->SetLookAt({3, 0, 6}, {3, 0, -1}, {0, 1, 0});
    m_Bench.GetView().GetCamera()->SetFar(35.0F);
    Choose(ResourceID::MoveSolidX);
    MoveTo(0, 0);
    MoveTo(9, 0); // 7 from the target, over 35 times 6: a thirtieth a pixel
    EXPECT_NEAR(GetCorner(0).x, -0.5 + 9 / 30.0, 1e-15);
}

TEST_F(MoveTools, MoveTheirOwnElementsAlongTheirOwnWay)
{
    struct Entry
    {
        int type;
        int id;
        unsigned tool;
        smVec3d way; ///< of vertex 7
    };
    const double oblique = 10 * kPixel / std::sqrt(3.0);
    const double straight = 10 * kPixel;
    const Entry entries[] = {
        {ResourceID::SelectVertices, 32806, 0x6000001, {straight, 0, 0}},
        {ResourceID::SelectVertices, 32807, 0x6000001, {0, straight, 0}},
        {ResourceID::SelectVertices, 32808, 0x6000001, {0, 0, straight}},
        {ResourceID::SelectVertices, 32809, 0x6000001, {oblique, oblique, oblique}},
        {ResourceID::SelectFaces, 32810, 0x6000003, {straight, 0, 0}},
        {ResourceID::SelectFaces, 32811, 0x6000003, {0, straight, 0}},
        {ResourceID::SelectFaces, 32812, 0x6000003, {0, 0, straight}},
        {ResourceID::SelectFaces, 32813, 0x6000003, {0, 0, straight}},
        {ResourceID::SelectSolids, 32814, 0x6000004, {straight, 0, 0}},
        {ResourceID::SelectSolids, 32815, 0x6000004, {0, straight, 0}},
        {ResourceID::SelectSolids, 32816, 0x6000004, {0, 0, straight}},
    };
    for (const Entry& entry : entries)
    {
        m_Bench.NewDocument();
        m_pCube = ShowCube();
        m_pCube->CalcNormals();
        Choose(entry.type);
        Select(55, 46);
        EXPECT_TRUE(Choose(entry.id));
        EXPECT_EQ(GetToolOnTop(), entry.tool);
        MoveTo(0, 0);
        MoveTo(10, 0);
        EXPECT_NEAR((GetCorner(7) - smVec3d(0.5, 0.5, 0.5) - entry.way).Length(), 0.0, 1e-15) << entry.id;
        EXPECT_TRUE(LeftDown());
        EXPECT_EQ(GetToolOnTop(), ToolID::Select);
    }
}

TEST_F(MoveTools, AcceptByALeftClick)
{
    SelectFront();
    Choose(ResourceID::MoveFaceZ);
    MoveTo(0, 0);
    MoveTo(12, 0);
    GetNewText();
    EXPECT_TRUE(LeftDown());
    EXPECT_EQ(GetNewText(), "Size of current tool stack: 2\nAfter OnLButtonDown.....\n");
    EXPECT_EQ(GetToolOnTop(), ToolID::Select);
    EXPECT_EQ(GetHistorySize(), 1U);
    EXPECT_NEAR(GetCorner(4).z, 0.5 + 12 * kPixel, 1e-15);
    EXPECT_THAT(GetSelection(), ElementsAre(0xC0000001U));
}

TEST_F(MoveTools, TakeBackByARightClick)
{
    SelectFront();
    const auto before = GetPositions(*m_pCube);
    Choose(ResourceID::MoveFaceX);
    MoveTo(0, 0);
    MoveTo(12, 0);
    MoveTo(37, 0);
    GetNewText();
    EXPECT_TRUE(RightDown());
    EXPECT_EQ(GetNewText(), "Size of current tool stack: 2\nAfter OnRButtonDown....\n");
    EXPECT_EQ(GetPositions(*m_pCube), before);
    EXPECT_EQ(GetToolOnTop(), ToolID::Select);
    EXPECT_EQ(GetHistorySize(), 0U);
    EXPECT_THAT(m_Platform.GetPopups(), IsEmpty()); // the click was the move tool's
}

TEST_F(MoveTools, StayAfterARightClickBeforeAnyMotion)
{
    Select(50, 50);
    Choose(ResourceID::MoveSolidY);
    GetNewText();
    EXPECT_TRUE(RightDown());
    EXPECT_EQ(GetNewText(), "After OnRButtonDown....\n");
    EXPECT_EQ(GetToolOnTop(), 0x6000004U);
    MoveTo(0, 0);
    MoveTo(6, 0);
    EXPECT_NEAR(GetCorner(0).y, -0.5 + 6 * kPixel, 1e-15);
}

TEST_F(MoveTools, KeepNoCommandOfALeftClickBeforeAnyMotion)
{
    Select(50, 50);
    const auto before = GetPositions(*m_pCube);
    Choose(ResourceID::MoveSolidY);
    GetNewText();
    EXPECT_TRUE(LeftDown());
    EXPECT_EQ(GetNewText(), "Size of current tool stack: 2\nAfter OnLButtonDown.....\n");
    EXPECT_EQ(GetToolOnTop(), ToolID::Select);
    EXPECT_EQ(GetHistorySize(), 0U);
    EXPECT_EQ(GetPositions(*m_pCube), before);
}

TEST_F(MoveTools, GiveTheSelectToolBackAsItWasLeft)
{
    MoveTo(50, 50);
    LeftDown();
    Choose(ResourceID::MoveSolidX);
    LeftDown();
    EXPECT_TRUE(LeftDown()); // by the hit of the motion before the move
    EXPECT_THAT(GetSelection(), IsEmpty());
}

TEST_F(MoveTools, MakeACommandForEachMove)
{
    Select(50, 50);
    for (int i = 0; i < 2; ++i)
    {
        Choose(ResourceID::MoveSolidX);
        MoveTo(0, 0);
        MoveTo(120, 0);
        EXPECT_TRUE(LeftDown());
    }
    EXPECT_EQ(GetHistorySize(), 2U);
    EXPECT_NEAR(GetCorner(0).x, -0.5 + 240 * kPixel, 1e-15);
    Choose(ResourceID::MoveSolidX);
    MoveTo(0, 0);
    MoveTo(10, 0);
    EXPECT_TRUE(RightDown()); // takes back its own steps alone
    EXPECT_NEAR(GetCorner(0).x, -0.5 + 240 * kPixel, 1e-15);
}

TEST_F(MoveTools, WorkOnAnEmptySelection)
{
    const auto before = GetPositions(*m_pCube);
    EXPECT_TRUE(Choose(ResourceID::MoveSolidX));
    EXPECT_TRUE(MoveTo(0, 0));
    EXPECT_TRUE(MoveTo(50, 0));
    EXPECT_TRUE(LeftDown());
    EXPECT_EQ(GetPositions(*m_pCube), before);
    EXPECT_EQ(GetHistorySize(), 1U);
}

TEST_F(MoveTools, AreRefusedWithAnotherTypeOfSelection)
{
    EXPECT_FALSE(Choose(ResourceID::MoveVertexX)); // solids are selected
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("GetSelectType() == m_nSelectType"));
    EXPECT_EQ(GetToolOnTop(), ToolID::Select);
}

TEST_F(MoveTools, AssertThatNoMoveIsUnderWayWhenTheyLeaveAndSayHowToEndIt)
{
    Select(50, 50);
    Choose(ResourceID::MoveSolidX);
    EXPECT_FALSE(Choose(ResourceID::OrbitTool));
#if TESSARINE_ASSERTIONS
    EXPECT_THAT(m_Assertions.GetExpressions(), ElementsAre("m_nState == State::Idle"));
#endif
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("a move is under way: end it first"));
    EXPECT_EQ(GetToolOnTop(), 0x6000004U);
    EXPECT_TRUE(LeftDown());
    EXPECT_TRUE(Choose(ResourceID::OrbitTool));
}

TEST_F(MoveTools, EndWhereAStepIsRefusedAndTellItOnce)
{
    SelectFront();
    m_pCube->GetFaceList()[1]->GetNormal() = smVec3d(0, 0, 1);
    Choose(ResourceID::MoveFaceNormal);
    MoveTo(0, 0);
    MoveTo(12, 0);
    const auto before = GetPositions(*m_pCube);
    m_pCube->GetFaceList()[1]->GetNormal().z = std::numeric_limits<double>::quiet_NaN();
    EXPECT_FALSE(MoveTo(24, 0));
    EXPECT_THAT(m_Platform.GetOnlyReason(), HasSubstr("no normal to move along"));
    EXPECT_EQ(GetPositions(*m_pCube), before); // with the steps that went well, as after a left click
    EXPECT_EQ(GetHistorySize(), 1U);
    EXPECT_EQ(GetToolOnTop(), ToolID::Select);
    EXPECT_TRUE(MoveTo(36, 0));
}

TEST_F(MoveTools, GoOnWithTheStepWhoseFrameFailed)
{
    Select(50, 50);
    const auto before = GetPositions(*m_pCube);
    Choose(ResourceID::MoveSolidX);
    MoveTo(0, 0);
    {
        FailingPanes platform;
        platform.Fail();
        EXPECT_FALSE(MoveTo(12, 0));
        EXPECT_EQ(platform.GetOnlyReason(), "not enough memory");
    }
    EXPECT_NEAR(GetCorner(0).x, -0.5 + 12 * kPixel, 1e-15);
    EXPECT_TRUE(MoveTo(20, 0));
    EXPECT_NEAR(GetCorner(0).x, -0.5 + 20 * kPixel, 1e-15);
    EXPECT_TRUE(RightDown());
    EXPECT_EQ(GetPositions(*m_pCube), before);
}

TEST_F(MoveTools, AreTakenBackByARightClickWhoseFrameFails)
{
    Select(50, 50);
    const auto before = GetPositions(*m_pCube);
    Choose(ResourceID::MoveSolidX);
    MoveTo(0, 0);
    MoveTo(12, 0);
    {
        FailingPanes platform;
        platform.Fail();
        EXPECT_FALSE(RightDown());
    }
    EXPECT_EQ(GetPositions(*m_pCube), before);
    EXPECT_EQ(GetToolOnTop(), ToolID::Select);
    EXPECT_EQ(GetHistorySize(), 0U);
}

TEST_F(MoveTools, EndWhereTheTypeOfTheSelectionChanges)
{
    Select(50, 50);
    Choose(ResourceID::MoveSolidX);
    MoveTo(0, 0);
    Choose(ResourceID::SelectFaces);
    EXPECT_FALSE(MoveTo(10, 0));
    EXPECT_EQ(GetToolOnTop(), ToolID::Select);
    EXPECT_TRUE(MoveTo(20, 0));
}

TEST_F(MoveTools, SayWhatStaysWhereAnotherSelectionIsCancelled)
{
    for (const std::vector<int>& types :
         {std::vector<int>{ResourceID::SelectFaces},
          std::vector<int>{ResourceID::SelectFaces, ResourceID::SelectSolids}})
    {
        Choose(ResourceID::SelectSolids);
        GetElements().ToggleSelect(m_pCube->GetID());
        Choose(ResourceID::MoveSolidX);
        MoveTo(0, 0);
        MoveTo(12, 0);
        const smVec3d moved = GetCorner(0);
        for (const int type : types) // which empties the list
        {
            Choose(type);
        }
        EXPECT_FALSE(RightDown());
        EXPECT_THAT(m_Platform.GetFailures().back().reason,
                    HasSubstr("the selection is not the one that was moved any more"));
        EXPECT_EQ(GetCorner(0), moved);
        EXPECT_EQ(GetToolOnTop(), ToolID::Select);
        EXPECT_EQ(GetHistorySize(), 0U);
    }
}

TEST_F(MoveTools, EndBehindAnOperationOnTheModelAndSaySo)
{
    Select(50, 50);
    Choose(ResourceID::MoveSolidX);
    MoveTo(0, 0);
    MoveTo(12, 0);
    const ErrorLineCapture lines;
    EXPECT_TRUE(Choose(ResourceID::SubdivideLoop)); // what was moved is what is subdivided
    EXPECT_EQ(lines.GetText(),
              "the move that was under way has ended: menu may have changed what it moves\n");
    EXPECT_EQ(GetToolOnTop(), ToolID::Select);
    EXPECT_EQ(GetHistorySize(), 1U); // the subdivision alone
    const auto before = GetPositions(*m_pCube);
    EXPECT_GT(before[0].x, -0.5 + 12 * kPixel); // pulled inwards from where the move had left it
    EXPECT_TRUE(RightDown());                   // the select tool's
    EXPECT_EQ(m_Platform.GetPopups().size(), 1U);
    EXPECT_EQ(GetPositions(*m_pCube), before);
}

TEST_F(MoveTools, EndBehindAnOperationAlsoWhereTheConsoleCannotBeWritten)
{
    Select(50, 50);
    Choose(ResourceID::MoveSolidX);
    MoveTo(0, 0);
    MoveTo(12, 0);
    const FailingLine console;
    EXPECT_TRUE(m_Bench.Perform("operation", Effect::ChangesModel, [] { FailingLine::Prepare(); }));
    EXPECT_TRUE(console.HasFailed());
    EXPECT_EQ(GetToolOnTop(), ToolID::Select);
    EXPECT_THAT(m_Platform.GetFailures(), IsEmpty());
}

TEST_F(MoveTools, EndByAClickAlsoWhereTheConsoleCannotBeWritten)
{
    Select(50, 50);
    Choose(ResourceID::MoveSolidX);
    MoveTo(0, 0);
    MoveTo(12, 0);
    const FailingLine console;
    FailingLine::Prepare();
    EXPECT_TRUE(LeftDown());
    EXPECT_TRUE(console.HasFailed());
    EXPECT_EQ(GetToolOnTop(), ToolID::Select);
    EXPECT_EQ(GetHistorySize(), 1U);
}

TEST_F(MoveTools, PutNoCornersBackOnAFaceThatWasCut)
{
    SelectFront();
    Choose(ResourceID::MoveFaceZ);
    MoveTo(0, 0);
    MoveTo(12, 0);
    EXPECT_TRUE(Choose(ResourceID::SubdivideLoop)); // the face keeps its id, with other corners
    const auto before = GetPositions(*m_pCube);
    MoveTo(24, 0);
    RightDown();
    EXPECT_EQ(GetPositions(*m_pCube), before);
}

TEST_F(MoveTools, GoOnBehindAnOperationOnTheModelThatFails)
{
    Select(50, 50);
    const auto before = GetPositions(*m_pCube);
    Choose(ResourceID::MoveSolidX);
    MoveTo(0, 0);
    MoveTo(12, 0);
    const ErrorLineCapture lines;
    EXPECT_FALSE(m_Bench.Perform("operation", Effect::ChangesModel, [] { throw Failure("no"); }));
    EXPECT_EQ(lines.GetText(), "");
    EXPECT_EQ(GetToolOnTop(), 0x6000004U);
    EXPECT_TRUE(RightDown());
    EXPECT_EQ(GetPositions(*m_pCube), before);
}

TEST_F(MoveTools, GoOnBehindWhatLeavesTheModelAlone)
{
    Select(50, 50);
    Choose(ResourceID::MoveSolidX);
    MoveTo(0, 0);
    EXPECT_TRUE(Choose(ResourceID::ShowGrid));
    EXPECT_EQ(GetToolOnTop(), 0x6000004U);
    MoveTo(12, 0);
    EXPECT_NEAR(GetCorner(0).x, -0.5 + 12 * kPixel, 1e-15);
}

TEST_F(MoveTools, AreTakenOffByANewDocument)
{
    for (const bool hasMoved : {false, true})
    {
        m_Bench.NewDocument();
        ShowCube();
        Select(50, 50);
        Choose(ResourceID::MoveSolidX);
        MoveTo(0, 0);
        if (hasMoved)
        {
            MoveTo(10, 0);
        }
        GetNewText();
        EXPECT_TRUE(Choose(ResourceID::FileNew));
        EXPECT_THAT(GetNewText(), EndsWith("Size of current tool stack: 2\n"));
        EXPECT_EQ(GetToolOnTop(), ToolID::Select);
        EXPECT_EQ(GetHistorySize(), 0U);
        EXPECT_TRUE(MoveTo(50, 50));
        EXPECT_THAT(GetHover(), IsEmpty());
    }
}

TEST_F(MoveTools, AreTakenOffByANewDocumentAlsoWhereTheElementIsGone)
{
    SelectFront();
    Choose(ResourceID::MoveFaceZ);
    MoveTo(0, 0);
    MoveTo(12, 0);
    DSHalfEdge* pCorner = m_pCube->GetFaceList()[1]->GetLoopList()[0]->GetHalfEdge();
    ACTEuler(&GetElements()).LKEF(m_pCube, pCorner->GetTwin(), pCorner);
    EXPECT_TRUE(Choose(ResourceID::FileNew));
    EXPECT_EQ(GetToolOnTop(), ToolID::Select);

    m_pCube = ShowCube();
    SelectCorner();
    Choose(ResourceID::MoveVertexX);
    MoveTo(0, 0);
    MoveTo(12, 0);
    DSHalfEdge* pSpoke = m_pCube->GetVertexList()[7]->GetHalfEdge();
    ACTEuler(&GetElements()).LKEV(m_pCube, pSpoke->GetTwin(), pSpoke);
    EXPECT_TRUE(Choose(ResourceID::FileNew));
    EXPECT_EQ(GetToolOnTop(), ToolID::Select);
    EXPECT_THAT(m_Platform.GetTexts(), IsEmpty());
    EXPECT_THAT(m_Assertions.GetExpressions(), IsEmpty());
}

TEST_F(MoveTools, AreTakenOffByANewDocumentUnderAnotherTool)
{
    Select(50, 50);
    Choose(ResourceID::MoveSolidX);
    Choose(ResourceID::DrawSplatTool);
    EXPECT_EQ(m_Bench.GetToolsManager().GetToolStack().size(), 3U);
    EXPECT_TRUE(Choose(ResourceID::FileNew));
    EXPECT_EQ(m_Bench.GetToolsManager().GetToolStack().size(), 1U);
    EXPECT_EQ(GetToolOnTop(), ToolID::Select);
}

TEST_F(MoveTools, AreTakenOffByAnImportButNotByOneThatIsCancelledOrFails)
{
    Select(50, 50);
    Choose(ResourceID::MoveSolidX);
    MoveTo(0, 0);
    MoveTo(12, 0);
    EXPECT_TRUE(Choose(ResourceID::ImportObj)); // nobody answers the dialog
    EXPECT_EQ(GetToolOnTop(), 0x6000004U);
    EXPECT_FALSE(Import("missing.obj"));
    EXPECT_EQ(GetToolOnTop(), 0x6000004U);
    MoveTo(24, 0);
    EXPECT_NEAR(GetCorner(0).x, -0.5 + 24 * kPixel, 1e-15);

    m_Folder.Write("a.obj", kTetrahedronObj);
    EXPECT_TRUE(Import("a.obj"));
    EXPECT_EQ(GetToolOnTop(), ToolID::Select);
    EXPECT_EQ(GetElements().GetVertex(0)->GetPosition(), smVec3d(-1, -1, -1)); // as it was read
}

TEST_F(MoveTools, AreTakenOffByASubdivisionThatBuildsAnotherModelButByNoOther)
{
    m_Folder.Write("a.obj", kTetrahedronObj);
    EXPECT_TRUE(Import("a.obj"));
    Choose(ResourceID::SelectVertices);
    GetElements().ToggleSelect(0);
    Choose(ResourceID::MoveVertexX);
    MoveTo(0, 0);
    MoveTo(10, 0);
    EXPECT_TRUE(Choose(ResourceID::SubdivideAdaptive)); // nobody answers the dialog
    EXPECT_EQ(GetToolOnTop(), 0x6000001U);
    m_Platform.AnswerAreaThreshold(std::numeric_limits<float>::quiet_NaN());
    EXPECT_FALSE(Choose(ResourceID::SubdivideAdaptive));
    EXPECT_EQ(GetToolOnTop(), 0x6000001U);

    m_Platform.AnswerAreaThreshold(0.0F);
    EXPECT_TRUE(Choose(ResourceID::SubdivideAdaptive));
    EXPECT_EQ(GetToolOnTop(), ToolID::Select);
    const auto after = GetPositions(*GetElements().GetSolid(0xE0000000));
    EXPECT_TRUE(RightDown());
    EXPECT_EQ(GetPositions(*GetElements().GetSolid(0xE0000000)), after);
}

TEST_F(MoveTools, AreTakenOffByWhateverEmptiesTheStores)
{
    for (const Effect effect : {Effect::ChangesModel, Effect::ReplacesModel})
    {
        m_Bench.NewDocument();
        ShowCube();
        Select(50, 50);
        Choose(ResourceID::MoveSolidX);
        const auto fail = [this]
        {
            GetController().ClearModels();
            throw Failure("no");
        };
        EXPECT_FALSE(m_Bench.Perform("operation", effect, fail));
        EXPECT_EQ(GetToolOnTop(), 0x6000004U);
        EXPECT_TRUE(m_Bench.Perform("operation", effect, [this] { GetController().ClearModels(); }));
        EXPECT_EQ(GetToolOnTop(), ToolID::Select);
    }
}

TEST_F(MoveTools, AreRefusedOnASelectionThatIsGone)
{
    SelectCorner();
    m_Folder.Write("a.obj", kTetrahedronObj);
    EXPECT_TRUE(Import("a.obj")); // has no vertex 7
    EXPECT_FALSE(Choose(ResourceID::MoveVertexX));
    EXPECT_EQ(GetToolOnTop(), ToolID::Select);
}

TEST_F(MoveTools, TakeTheWidestWayOfTheMouse)
{
    Select(50, 50);
    Choose(ResourceID::MoveSolidX);
    MoveTo(std::numeric_limits<int>::min(), 0);
    EXPECT_TRUE(MoveTo(std::numeric_limits<int>::max(), 0));
    EXPECT_NEAR(GetCorner(0).x, -0.5 + 4294967295.0 * kPixel, 1e-7);
}
}
}
