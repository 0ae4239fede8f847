#include "FailingMemory.h"
#include "Vectors.h"
#include "WorkbenchTest.h"
#include <cmath>
#include <limits>

namespace tessarine
{
namespace
{
using testing::HasSubstr;
using testing::IsEmpty;
using Kind = ToolEvent::Kind;

constexpr char kUntouched[] = "untouched";

/// The events of a view, sent to the camera tools of a workbench.
class CameraToolsTest : public WorkbenchTest
{
protected:
    bool Send(Kind kind, int x, int y) { return m_Bench.SendEvent({.kind = kind, .x = x, .y = y}); }
    bool Press(int x, int y) { return Send(Kind::LeftButtonDown, x, y); }
    bool Release(int x, int y) { return Send(Kind::LeftButtonUp, x, y); }
    bool Move(int x, int y) { return Send(Kind::MouseMove, x, y); }

    /// Down at (100, 100), there by one motion, and up again.
    void DragBy(int x, int y)
    {
        Press(100, 100);
        EXPECT_TRUE(Move(100 + x, 100 + y));
        Release(100 + x, 100 + y);
    }

    void Take(unsigned tool) { m_Bench.GetToolsManager().ChangeTool(tool); }

    Open3DCamera& GetCamera() { return *m_Bench.GetView().GetCamera(); }
    double GetDistance() { return GetCamera().GetViewVector().Length(); }

    void LookFrom(const smVec3d& eye, const smVec3d& target = {})
    {
        GetCamera().SetLookAt(eye, target, smVec3d(0.0, 1.0, 0.0));
    }

    /// Marks the panes, to see whether a frame (pane 1) or a position (pane 3) is written.
    void MarkPanes()
    {
        m_Platform.SetPaneText(1, kUntouched);
        m_Platform.SetPaneText(3, kUntouched);
    }
    bool WasDrawn() const { return m_Platform.GetPaneText(1) != kUntouched; }
    bool WasPositionShown() const { return m_Platform.GetPaneText(3) != kUntouched; }
};

constexpr unsigned kCameraTools[] = {ToolID::MoveCamera, ToolID::Zoom, ToolID::Orbit, ToolID::Around};

void ExpectNear(const smVec3d& actual, const smVec3d& expected, double tolerance)
{
    EXPECT_NEAR((actual - expected).Length(), 0.0, tolerance);
}

/// Degrees over the ground plane, and in it from z towards x.
double ElevationOf(const smVec3d& view)
{
    return std::atan2(view.y, std::hypot(view.x, view.z)) * 180.0 / M_PI;
}
double AzimuthOf(const smVec3d& view)
{
    return std::atan2(view.x, view.z) * 180.0 / M_PI;
}

TEST_F(CameraToolsTest, StartWithTheSelectToolOnTop)
{
    EXPECT_EQ(m_Bench.GetToolsManager().GetCurrentTool()->GetToolID(), 0x5000001U);
    EXPECT_EQ(m_Bench.GetToolsManager().GetToolStack().size(), 1U);
    EXPECT_TRUE(Press(1, 2));
    EXPECT_TRUE(Move(3, 4));
    EXPECT_TRUE(Release(3, 4));
    EXPECT_EQ(m_Console.GetText(), "");
}

TEST_F(CameraToolsTest, LookAroundByTwoFifthsOfADegreeAPixel)
{
    LookFrom(smVec3d(0.0, 0.0, 0.0), smVec3d(0.0, 0.0, 7.0)); // level, along z
    Take(ToolID::Around);
    DragBy(50, -25); // to the right and upwards
    EXPECT_NEAR(AzimuthOf(GetCamera().GetViewVector()), 20.0, 1e-7);
    EXPECT_NEAR(ElevationOf(GetCamera().GetViewVector()), 10.0, 1e-7);
    EXPECT_EQ(GetCamera().GetPosition(), smVec3d(0.0, 0.0, 0.0));
    EXPECT_NEAR(GetDistance(), 7.0, 1e-13);
}

TEST_F(CameraToolsTest, LookUpTo89DegreesAndNoFurther)
{
    Take(ToolID::Around);
    Press(0, 1000);
    for (int y = 990; y >= 0; y -= 10) // 4 degrees each
    {
        EXPECT_TRUE(Move(0, y));
    }
    EXPECT_NEAR(ElevationOf(GetCamera().GetViewVector()), 89.0, 1e-6);
    Move(0, 1); // each step starts from where the last one ended, not from the press
    EXPECT_NEAR(ElevationOf(GetCamera().GetViewVector()), 88.6, 1e-6);
}

TEST_F(CameraToolsTest, OrbitByATwentiethOfARadiusAPixel)
{
    LookFrom(smVec3d(0.0, 0.0, 5.0));
    Take(ToolID::Orbit);
    DragBy(8, 0); // 8 * 0.5 * 0.1 = 0.4 to the left of the unit sphere
    ExpectNear(GetCamera().GetPosition(), smVec3d(-0.4, 0.0, 1.0) * (5.0 / std::sqrt(1.16)), 1e-14);

    LookFrom(smVec3d(0.0, 0.0, 5.0));
    DragBy(0, 8); // downwards on the screen is a delta of -4, which moves the eye up
    ExpectNear(GetCamera().GetPosition(), smVec3d(0.0, 0.4, 1.0) * (5.0 / std::sqrt(1.16)), 1e-14);
    EXPECT_EQ(GetCamera().GetTarget(), smVec3d(0.0, 0.0, 0.0));
}

TEST_F(CameraToolsTest, PanByAnEightiethOfAUnitAPixel)
{
    LookFrom(smVec3d(1.0, 2.0, 5.0), smVec3d(1.0, 2.0, 0.0));
    Take(ToolID::MoveCamera);
    DragBy(80, -40); // the model goes right and up, and so the camera left and down
    ExpectNear(GetCamera().GetPosition(), smVec3d(0.0, 1.5, 5.0), 1e-15);
    ExpectNear(GetCamera().GetTarget(), smVec3d(0.0, 1.5, 0.0), 1e-15);
    EXPECT_NEAR(GetDistance(), 5.0, 1e-15);
}

TEST_F(CameraToolsTest, ZoomByAThirtiethOfAUnitAPixel)
{
    LookFrom(smVec3d(0.0, 0.0, 5.0));
    Take(ToolID::Zoom);
    DragBy(0, -45);
    ExpectNear(GetCamera().GetPosition(), smVec3d(0.0, 0.0, 6.5), 1e-14);
    DragBy(0, 90);
    ExpectNear(GetCamera().GetPosition(), smVec3d(0.0, 0.0, 3.5), 1e-14);
}

TEST_F(CameraToolsTest, ZoomBetweenTheNearAndTheFarPlane)
{
    LookFrom(smVec3d(0.0, 0.0, 5.0));
    Take(ToolID::Zoom);
    DragBy(0, 1000);
    EXPECT_NEAR(GetDistance(), 0.1F, 1e-15);
    DragBy(0, 1);
    EXPECT_NEAR(GetDistance(), 0.1F, 1e-15);
    DragBy(0, -100000);
    EXPECT_NEAR(GetDistance(), 200.0, 1e-12);
    DragBy(0, -1);
    EXPECT_NEAR(GetDistance(), 200.0, 1e-12);
}

TEST_F(CameraToolsTest, ZoomSidewaysSetsTargetAndUpBackToWhatTheyWereOnEnter)
{
    LookFrom(smVec3d(0.0, 0.0, 5.0));
    Take(ToolID::Zoom);
    GetCamera().SetLookAt(smVec3d(9.0, 0.0, 4.0), smVec3d(9.0, 0.0, 0.0), smVec3d(1.0, 1.0, 0.0));
    DragBy(70, 0);
    ExpectNear(GetCamera().GetPosition(), smVec3d(0.0, 0.0, 4.0), 1e-15); // distance and direction stay
    EXPECT_EQ(GetCamera().GetTarget(), smVec3d(0.0, 0.0, 0.0));
    ExpectNear(GetCamera().GetUp(), smVec3d(0.0, 1.0, 0.0), 1e-15);
}

TEST_F(CameraToolsTest, ZoomFromTheTargetOfAPanInAnotherTool)
{
    LookFrom(smVec3d(0.0, 0.0, 5.0));
    Take(ToolID::Zoom);
    Take(ToolID::MoveCamera);
    DragBy(-80, 0);
    Take(ToolID::Zoom); // takes its snapshot now
    DragBy(0, -30);
    ExpectNear(GetCamera().GetTarget(), smVec3d(1.0, 0.0, 0.0), 1e-15);
    ExpectNear(GetCamera().GetPosition(), smVec3d(1.0, 0.0, 6.0), 1e-14);
}

TEST_F(CameraToolsTest, DoNothingWithoutAPress)
{
    for (const unsigned tool : kCameraTools)
    {
        Take(tool);
        MarkPanes();
        EXPECT_TRUE(Move(300, 300));
        EXPECT_TRUE(Release(300, 300));
        EXPECT_TRUE(Move(10, 10));
        EXPECT_EQ(GetCamera().GetPosition(), smVec3d(10.0, 4.0, 10.0)) << tool;
        EXPECT_EQ(GetCamera().GetTarget(), smVec3d(0.0, 0.0, 0.0)) << tool;
        EXPECT_FALSE(WasDrawn());
        EXPECT_FALSE(WasPositionShown());
    }
}

TEST_F(CameraToolsTest, DoNothingAfterTheRelease)
{
    for (const unsigned tool : kCameraTools)
    {
        Take(tool);
        DragBy(5, 5);
        MarkPanes();
        EXPECT_TRUE(Move(200, 200));
        EXPECT_FALSE(WasDrawn()) << tool;
    }
}

TEST_F(CameraToolsTest, DragOnWhenTheReleaseWasOutside)
{
    LookFrom(smVec3d(0.0, 0.0, 5.0));
    Take(ToolID::MoveCamera);
    Press(0, 0);
    Move(80, 0);
    Move(160, 0); // the button went up outside the view in the meantime
    EXPECT_NEAR(GetCamera().GetPosition().x, -2.0, 1e-15);
    Press(500, 0); // no new start: the tool is dragging
    Move(240, 0);
    EXPECT_NEAR(GetCamera().GetPosition().x, -3.0, 1e-14);
    Release(240, 0);
    Move(0, 0);
    EXPECT_NEAR(GetCamera().GetPosition().x, -3.0, 1e-14);
}

TEST_F(CameraToolsTest, PayNoAttentionToTheRightButton)
{
    for (const unsigned tool : kCameraTools)
    {
        Take(tool);
        MarkPanes();
        EXPECT_TRUE(Send(Kind::RightButtonDown, 100, 100));
        EXPECT_TRUE(Move(150, 150));
        EXPECT_TRUE(Send(Kind::RightButtonUp, 150, 150));
        EXPECT_FALSE(WasDrawn()) << tool;
    }
}

TEST_F(CameraToolsTest, RunDrawAndTellAlsoForAStepOfLengthZero)
{
    for (const unsigned tool : kCameraTools)
    {
        Take(tool);
        MarkPanes();
        DragBy(0, 0);
        EXPECT_TRUE(WasDrawn()) << tool;
        EXPECT_TRUE(WasPositionShown()) << tool;
    }
    // The last was the look-around tool, whose step of zero turns an inclined view: to acos(-10/sqrt(216))
    // from z on the side of -x, 227.1 degrees, where it was 225.
    EXPECT_NEAR(AzimuthOf(GetCamera().GetViewVector()), -std::acos(-10.0 / std::sqrt(216.0)) * 180.0 / M_PI,
                1e-6);
}

TEST_F(CameraToolsTest, TellThePositionOfTheEyeInPaneThree)
{
    LookFrom(smVec3d(-1.006, 0.0, 5.0), smVec3d(-1.006, 0.0, 0.0));
    Take(ToolID::MoveCamera);
    EXPECT_EQ(m_Platform.GetPaneText(3),
              "相机坐标                                  "); // nothing before a drag
    DragBy(0, 100000);
    EXPECT_EQ(m_Platform.GetPaneText(3), "相机位置: (-1.01,1250.00,5.00)");
    Take(ToolID::Select);
    EXPECT_EQ(m_Platform.GetPaneText(3), "相机位置: (-1.01,1250.00,5.00)"); // it stays
}

TEST_F(CameraToolsTest, StartAnewAfterATurnThroughAnotherTool)
{
    LookFrom(smVec3d(0.0, 0.0, 5.0));
    Take(ToolID::MoveCamera);
    Press(0, 0);
    Take(ToolID::Orbit); // in the middle of a drag
    Take(ToolID::MoveCamera);
    MarkPanes();
    Move(100, 100);
    EXPECT_FALSE(WasDrawn());
    DragBy(-80, 0);
    EXPECT_NEAR(GetCamera().GetPosition().x, 1.0, 1e-15);
}

TEST_F(CameraToolsTest, StayIdleWhereNeitherTheNextToolNorTheyThemselvesCanEnterInADrag)
{
    LookFrom(smVec3d(0.0, 0.0, 5.0));
    Take(ToolID::Zoom);
    Press(0, 0);
    {
        const InjectedFault fault(GetMemoryPlan(), 0, FaultMode::FromThenOn);
        EXPECT_THROW(Take(ToolID::Orbit), std::bad_alloc);
    }
    EXPECT_TRUE(Move(0, 30));
    EXPECT_TRUE(Press(0, 30));
    EXPECT_TRUE(Move(0, 60));
    EXPECT_THAT(m_Platform.GetFailures(), IsEmpty());
    EXPECT_EQ(GetCamera().GetPosition(), smVec3d(0.0, 0.0, 5.0));
    Take(ToolID::MoveCamera);
    DragBy(-80, 0);
    EXPECT_NEAR(GetCamera().GetPosition().x, 1.0, 1e-15);
}

TEST_F(CameraToolsTest, TakeTheWidestWayOfTheMouse)
{
    constexpr int kLeast = std::numeric_limits<int>::min();
    constexpr int kMost = std::numeric_limits<int>::max();
    LookFrom(smVec3d(0.0, 0.0, 5.0));
    Take(ToolID::MoveCamera);
    Press(kMost, kLeast);
    EXPECT_TRUE(Move(kLeast, kMost));
    const double way = 4294967295.0 * 0.0125; // 2^32 - 1 pixels
    ExpectNear(GetCamera().GetPosition(), smVec3d(way, way, 5.0), 1e-7);
}

TEST_F(CameraToolsTest, LeaveTheCameraWhereAStepFails)
{
    LookFrom(smVec3d(0.0, 0.0, 5.0));
    Take(ToolID::Zoom);
    GetCamera().SetLookAt(smVec3d(0.0, 5.0, 0.0), smVec3d(), smVec3d(0.0, 0.0, 1.0));
    Press(0, 0);
    MarkPanes();
    EXPECT_FALSE(Move(0, 30)); // the view lies along the up vector of the snapshot
    EXPECT_EQ(GetCamera().GetPosition(), smVec3d(0.0, 5.0, 0.0));
    EXPECT_FALSE(WasPositionShown());
    ASSERT_EQ(m_Platform.GetFailures().size(), 1U);
    EXPECT_EQ(m_Platform.GetFailures()[0].operation, "mouse-move");
    EXPECT_THAT(m_Platform.GetFailures()[0].reason, HasSubstr("internal check failed"));
}

TEST_F(CameraToolsTest, NameTheirCursorsEachTimeTheyAreAsked)
{
    const std::pair<unsigned, std::string> cursors[] = {{ToolID::Around, "res\\Around.CUR"},
                                                        {ToolID::Orbit, "res\\Orbit.CUR"},
                                                        {ToolID::MoveCamera, "res\\Move.CUR"},
                                                        {ToolID::Zoom, "res\\Zoom.CUR"}};
    for (const auto& [tool, name] : cursors)
    {
        Take(tool);
        m_Platform.SetArrowCursor();
        EXPECT_TRUE(Send(Kind::SetCursor, 0, 0));
        EXPECT_EQ(m_Platform.GetCursor(), name);
        m_Platform.SetArrowCursor();
        EXPECT_TRUE(Send(Kind::SetCursor, 0, 0));
        EXPECT_EQ(m_Platform.GetCursor(), name);
    }
}

TEST_F(CameraToolsTest, LeaveTheCursorToOthersInTheOtherTools)
{
    m_Platform.SetCursorFromFile("before");
    EXPECT_TRUE(Send(Kind::SetCursor, 0, 0));
    EXPECT_EQ(m_Platform.GetCursor(), "before");
}

TEST_F(CameraToolsTest, PassKeysOverInSilence)
{
    Take(ToolID::Orbit);
    EXPECT_TRUE(m_Bench.SendEvent({.kind = Kind::KeyDown, .key = 27}));
    EXPECT_TRUE(m_Bench.SendEvent({.kind = Kind::KeyUp, .key = 27}));
    EXPECT_THAT(m_Platform.GetFailures(), IsEmpty());
}

TEST_F(CameraToolsTest, KeepNoCommandInTheHistory)
{
    for (const unsigned tool : kCameraTools)
    {
        Take(tool);
        DragBy(3, 3);
    }
    Take(ToolID::Select);
    EXPECT_EQ(m_Bench.GetCommandManager().GetHistorySize(), 0U);
}

TEST_F(CameraToolsTest, StayOnTopOverANewDocument)
{
    Take(ToolID::Orbit);
    m_Bench.NewDocument();
    EXPECT_EQ(m_Bench.GetToolsManager().GetCurrentTool()->GetToolID(), ToolID::Orbit);
    DragBy(4, 4);
    EXPECT_NE(GetCamera().GetPosition(), smVec3d(10.0, 4.0, 10.0));
}
}
}
