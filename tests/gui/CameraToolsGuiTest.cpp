#include "GuiTest.h"
#include "IACameraOrbitCommand.h"
#include "MANToolsManager.h"
#include "resource.h"
#include <QCursor>
#include <QPixmap>
#include <cmath>

namespace tessarine
{
namespace
{
constexpr double kDegree = 3.1415926535 / 180.0;

class CameraToolsGuiTest : public GuiTest
{
protected:
    unsigned ToolOnTop() { return Bench().GetToolsManager().GetCurrentTool()->GetToolID(); }
};

void ExpectNear(const smVec3d& actual, const smVec3d& expected)
{
    EXPECT_NEAR(actual.x, expected.x, 1e-9);
    EXPECT_NEAR(actual.y, expected.y, 1e-9);
    EXPECT_NEAR(actual.z, expected.z, 1e-9);
}

TEST_F(CameraToolsGuiTest, BeginsWithTheSelectTool)
{
    EXPECT_EQ(ToolOnTop(), ToolID::Select);
    EXPECT_TRUE(Action(ResourceID::SelectTool).isChecked());
}

TEST_F(CameraToolsGuiTest, ChangesTheToolByItsButton)
{
    const std::pair<int, unsigned> buttons[] = {{32771, ToolID::Orbit},
                                                {32772, ToolID::MoveCamera},
                                                {32773, ToolID::Around},
                                                {32774, ToolID::Zoom},
                                                {32790, ToolID::Select}};
    for (const auto& [id, tool] : buttons)
    {
        ClickButton(id);
        EXPECT_EQ(ToolOnTop(), tool);
        EXPECT_EQ(Action(ResourceID::SelectTool).isChecked(), tool == ToolID::Select);
        EXPECT_EQ(Bench().GetToolsManager().GetToolStack().size(), 1U);
    }
}

TEST_F(CameraToolsGuiTest, PansByEightyPixelsAWorldUnit)
{
    const smVec3d position = Camera().GetPosition();
    const smVec3d target = Camera().GetTarget();
    smVec3d side = Camera().GetSideVector();
    side.Normalize();
    smVec3d up = Camera().GetUp();
    up.Normalize();

    ClickButton(ResourceID::MoveCameraTool);
    Drag({300, 300}, {340, 280});

    // 40 pixels to the right and 20 up, 0.0125 each, against the mouse: the model follows it.
    const smVec3d step = side * -0.5 + up * -0.25;
    ExpectNear(Camera().GetPosition(), position + step);
    ExpectNear(Camera().GetTarget(), target + step);
}

TEST_F(CameraToolsGuiTest, ZoomsByThirtyPixelsAWorldUnit)
{
    const double distance = Camera().GetViewVector().Length();
    ClickButton(ResourceID::ZoomTool);
    Drag({300, 300}, {410, 240}); // sideways counts for nothing
    EXPECT_NEAR(Camera().GetViewVector().Length(), distance + 60 * 0.03333333333333333, 1e-9);
    ExpectNear(Camera().GetTarget(), {0, 0, 0});
}

TEST_F(CameraToolsGuiTest, LooksAroundByTwoFifthsOfADegreeAPixel)
{
    const smVec3d position = Camera().GetPosition();
    const smVec3d before = Camera().GetViewVector();
    const double distance = before.Length();
    // The azimuth counts from +z; the eye looks to -x, so it is beyond 180 degrees.
    const double azimuth = 360 - std::acos(before.z / distance) / kDegree;
    const double elevation = std::asin(before.y / distance) / kDegree;

    ClickButton(ResourceID::AroundTool);
    Drag({300, 300}, {350, 275});

    const double b = (azimuth + 50 * 0.4) * kDegree;
    const double a = (elevation + 25 * 0.4) * kDegree;
    ExpectNear(Camera().GetPosition(), position);
    ExpectNear(Camera().GetViewVector(), {distance * std::cos(a) * std::sin(b), distance * std::sin(a),
                                          distance * std::cos(a) * std::cos(b)});
}

TEST_F(CameraToolsGuiTest, OrbitsByHalfAUnitAPixel)
{
    Open3DCamera expected = Camera();
    IACameraOrbitCommand command;
    command.SetCamera(&expected);
    command.SetDelta(20 * 0.5, 10 * 0.5);
    command.Execute();

    ClickButton(ResourceID::OrbitTool);
    Drag({300, 300}, {320, 290});

    ExpectNear(Camera().GetPosition(), expected.GetPosition());
    ExpectNear(Camera().GetTarget(), expected.GetTarget());
    ExpectNear(Camera().GetUp(), expected.GetUp());
}

TEST_F(CameraToolsGuiTest, ShowsWhereTheCameraIsWithTheFirstStep)
{
    ClickButton(ResourceID::ZoomTool);
    EXPECT_EQ(PaneText(3), "相机坐标                                  ");
    Drag({300, 300}, {300, 300 + 30 * 5});
    const smVec3d eye = Camera().GetPosition();
    EXPECT_EQ(PaneText(3),
              QString::asprintf("相机位置: (%.2f,%.2f,%.2f)", eye.x, eye.y, eye.z).toStdString());
    ClickButton(ResourceID::SelectTool);
    EXPECT_NE(PaneText(3), "相机坐标                                  "); // it stays
}

TEST_F(CameraToolsGuiTest, DoesNotMoveWithoutAButton)
{
    const smVec3d position = Camera().GetPosition();
    ClickButton(ResourceID::OrbitTool);
    MoveTo({300, 300});
    MoveTo({350, 350});
    ExpectNear(Camera().GetPosition(), position);
}

TEST_F(CameraToolsGuiTest, SeesNothingOfADragThatIsOutside)
{
    ClickButton(ResourceID::ZoomTool);
    MoveTo({300, 300});
    Press({300, 300});
    const double distance = Camera().GetViewVector().Length();
    MoveTo({-50, 400});
    Release({-50, 400});
    EXPECT_NEAR(Camera().GetViewVector().Length(), distance, 1e-9);
    // The release was not seen: without a button the drag goes on inside.
    MoveTo({300, 270});
    EXPECT_NEAR(Camera().GetViewVector().Length(), distance + 1, 1e-9);
    Press({300, 270});
    Release({300, 270});
    MoveTo({300, 100});
    EXPECT_NEAR(Camera().GetViewVector().Length(), distance + 1, 1e-9);
}

TEST_F(CameraToolsGuiTest, TakesBothPressesOfADoubleClick)
{
    ClickButton(ResourceID::ZoomTool);
    const double distance = Camera().GetViewVector().Length();
    QTest::mouseDClick(View().windowHandle(), Qt::LeftButton, {}, {300, 300});
    Drag({300, 300}, {300, 270});
    EXPECT_NEAR(Camera().GetViewVector().Length(), distance + 1, 1e-9);
}

TEST_F(CameraToolsGuiTest, HasTheCursorOfTheTool)
{
    for (const int id : {32771, 32772, 32773, 32774})
    {
        ClickButton(id);
        MoveTo({200, 200});
        EXPECT_EQ(View().cursor().shape(), Qt::BitmapCursor) << id;
        EXPECT_FALSE(View().cursor().pixmap().isNull()) << id;
    }
}

TEST_F(CameraToolsGuiTest, ComesInWithTheArrowWhereTheToolHasNone)
{
    ClickButton(ResourceID::OrbitTool);
    MoveTo({200, 200});
    QTest::mouseMove(Frame().windowHandle(), {5, 5});
    QCoreApplication::processEvents();
    ClickButton(ResourceID::SelectTool);
    QEnterEvent enter({200, 200}, {200, 200}, {200, 200});
    QCoreApplication::sendEvent(&View(), &enter);
    EXPECT_EQ(View().cursor().shape(), Qt::ArrowCursor);
}

TEST_F(CameraToolsGuiTest, HidesTheCursorWhoseFileIsMissingOrBroken)
{
    App().GetPlatform().SetCursorFromFile("res\\Nowhere.CUR");
    EXPECT_EQ(View().cursor().shape(), Qt::BlankCursor);
    App().GetPlatform().SetArrowCursor();
    m_Folder.Write("res/Zoom.CUR", "broken");
    App().GetPlatform().SetCursorFromFile("res\\Zoom.CUR");
    EXPECT_EQ(View().cursor().shape(), Qt::BlankCursor);
}
}
}
