#include "SelectionTest.h"
#include "Vectors.h"
#include "resource.h"

namespace tessarine
{
namespace
{
using testing::IsEmpty;
using testing::SizeIs;

class DrawSplatTool : public SelectionTest
{
protected:
    DrawSplatTool() { EXPECT_TRUE(Choose(ResourceID::DrawSplatTool)); }

    const std::vector<CutFace>& GetSplats() { return GetScene().GetCutFaceList(); }
};

TEST_F(DrawSplatTool, LiesOnTheSelectTool)
{
    EXPECT_EQ(GetToolOnTop(), 0x5000006U);
    EXPECT_THAT(m_Bench.GetToolsManager().GetToolStack(), SizeIs(2));
}

TEST_F(DrawSplatTool, AddsASplatFromThePressToTheRelease)
{
    LeftDown(20, 30);
    MoveTo(90, 90);
    EXPECT_TRUE(Send(Kind::LeftButtonUp, 60, 70));
    ASSERT_THAT(GetSplats(), SizeIs(1));
    const Open3DCamera& camera = *m_Bench.GetView().GetCamera();
    const smVec3d depth(0, 0, -double{0.01F});
    EXPECT_EQ(GetSplats()[0][0], camera.ScreenToNearPlane(20, 30) - depth);
    EXPECT_EQ(GetSplats()[0][2], camera.ScreenToNearPlane(60, 70) + depth);
    EXPECT_EQ(GetToolOnTop(), 0x5000006U); // until another tool is chosen
}

TEST_F(DrawSplatTool, DrawsAFrameForEachMotionOfADragAlone)
{
    const auto wasDrawn = [this](int x, int y)
    {
        m_Platform.SetPaneText(1, "");
        MoveTo(x, y);
        return m_Platform.GetPaneText(1) != "";
    };
    EXPECT_FALSE(wasDrawn(10, 10));
    LeftDown(10, 10);
    EXPECT_TRUE(wasDrawn(20, 20));
    Send(Kind::LeftButtonUp, 20, 20);
    EXPECT_FALSE(wasDrawn(30, 30));
}

TEST_F(DrawSplatTool, AddsNothingWithoutAPress)
{
    Send(Kind::LeftButtonUp, 60, 70);
    EXPECT_THAT(GetSplats(), IsEmpty());
}

TEST_F(DrawSplatTool, DropsADragWithItsDocument)
{
    LeftDown(20, 30);
    MoveTo(40, 50);
    EXPECT_TRUE(Choose(ResourceID::FileNew));
    m_Platform.SetPaneText(1, "");
    MoveTo(50, 60);
    EXPECT_EQ(m_Platform.GetPaneText(1), ""); // no frame: nothing is dragged
    EXPECT_TRUE(Send(Kind::LeftButtonUp, 60, 70));
    EXPECT_THAT(GetSplats(), IsEmpty());
    EXPECT_EQ(GetToolOnTop(), 0x5000006U);
}

TEST_F(DrawSplatTool, AddsToTheDocumentOfThePress)
{
    EXPECT_TRUE(Choose(ResourceID::FileNew));
    LeftDown(20, 30);
    EXPECT_TRUE(Send(Kind::LeftButtonUp, 60, 70));
    EXPECT_THAT(GetSplats(), SizeIs(1));
}

TEST_F(DrawSplatTool, KeepsNoCommandInTheHistory)
{
    LeftDown(20, 30);
    Send(Kind::LeftButtonUp, 60, 70);
    Choose(ResourceID::SelectTool);
    EXPECT_EQ(GetToolOnTop(), ToolID::Select);
    EXPECT_EQ(GetHistorySize(), 0U);
}
}
}
