#include "Failure.h"
#include "OCTNODE.h"
#include "ViewTest.h"
#include <GL/gl.h>
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
using testing::HasSubstr;

/// Runs what must fail, and gives its message.
template <class TAction>
std::string GetFailure(TAction action)
{
    try
    {
        action();
    }
    catch (const Failure& failure)
    {
        return failure.GetMessage();
    }
    ADD_FAILURE() << "it did not fail";
    return "";
}

TEST_F(ViewTest, TurnsEachSwitchOnAndOffAgain)
{
    const OCTNODE octree;
    m_View.SetOctree(&octree);
    struct Row
    {
        void (Open3DView::*toggle)();
        std::uint32_t flag;
    };
    const Row rows[] = {
        {&Open3DView::ToggleGrid, 0x1},
        {&Open3DView::ToggleAxes, 0x2},
        {&Open3DView::ToggleWire, 0x4},
        {&Open3DView::ToggleFlatShading, 0x8},
        {&Open3DView::TogglePoints, 0x200},
        {&Open3DView::ToggleOctree, 0x400},
        {&Open3DView::TogglePointCloud, 0x800},
        {&Open3DView::TogglePointNormals, 0x1000},
        {&Open3DView::ToggleSmoothShading, 0x2000},
        {&Open3DView::ToggleProjectedPoints, 0x4000},
        {&Open3DView::ToggleProjectionLines, 0x8000},
        {&Open3DView::ToggleNewMesh, 0x10000},
        {&Open3DView::ToggleCutFaces, 0x20000},
    };
    for (const Row& row : rows)
    {
        m_View.SetDisplayFlags(0x10);
        (m_View.*row.toggle)();
        EXPECT_EQ(m_View.GetDisplayFlags(), 0x10 | row.flag);
        (m_View.*row.toggle)();
        EXPECT_EQ(m_View.GetDisplayFlags(), 0x10U);
    }
}

TEST_F(ViewTest, ExcludesTheOtherShadingWhenOneIsTurnedOn)
{
    m_View.ToggleSmoothShading();
    EXPECT_EQ(m_View.GetDisplayFlags(), 0x2004U); // it starts with wire and flat, 0xC
    m_View.ToggleFlatShading();
    EXPECT_EQ(m_View.GetDisplayFlags(), 0xCU);
    m_View.ToggleFlatShading();
    EXPECT_EQ(m_View.GetDisplayFlags(), 0x4U); // turned off, it leaves the other alone
}

TEST_F(ViewTest, ShowsTheTexturedModelAlone)
{
    m_View.SetDisplayFlags(0x2 | 0x4 | 0x8 | 0x200 | 0x2000 | 0x800);
    m_View.ShowTexture();
    EXPECT_EQ(m_View.GetDisplayFlags(), 0x2U | 0x10U | 0x800U);
    m_View.ToggleWire();
    EXPECT_EQ(m_View.GetDisplayFlags(), 0x2U | 0x10U | 0x800U | 0x4U); // and no way back out
}

TEST_F(ViewTest, RefusesAnOctreeThatIsNotThere)
{
    EXPECT_THAT(GetFailure([this] { m_View.ToggleOctree(); }), HasSubstr("no octree"));
    EXPECT_EQ(m_View.GetDisplayFlags(), 0xCU);
    m_View.SetDisplayFlags(DisplayFlag::Octree);
    m_View.ToggleOctree(); // off it goes all the same
    EXPECT_EQ(m_View.GetDisplayFlags(), 0U);
}

TEST_F(ViewTest, RefusesProjectionLinesBetweenListsOfDifferentSize)
{
    m_View.GetPointCloud().resize(3);
    m_View.GetProjectedPoints().resize(2);
    EXPECT_THAT(GetFailure([this] { m_View.ToggleProjectionLines(); }),
                HasSubstr("2 projected points for 3 points"));
    EXPECT_EQ(m_View.GetDisplayFlags(), 0xCU);
    m_View.GetProjectedPoints().resize(3);
    m_View.ToggleProjectionLines();
    EXPECT_EQ(m_View.GetDisplayFlags(), 0x800CU);
    m_View.GetProjectedPoints().clear();
    m_View.ToggleProjectionLines();
    EXPECT_EQ(m_View.GetDisplayFlags(), 0xCU);
}

TEST_F(ViewTest, RefusesNormalsThatSomePointsDoNotHave)
{
    m_View.GetPointCloud().resize(3);
    m_View.GetPointNormals().resize(2);
    EXPECT_THAT(GetFailure([this] { m_View.TogglePointNormals(); }), HasSubstr("2 for 3 points"));
    EXPECT_EQ(m_View.GetDisplayFlags(), 0xCU);
}

TEST_F(ViewTest, HidesAndShowsTheOriginalModel)
{
    const MANSceneLeaf* leaf = Show(Build(Tetrahedron()));
    m_View.ToggleOriginalModel();
    EXPECT_FALSE(leaf->IsVisible());
    m_View.ToggleOriginalModel();
    EXPECT_TRUE(leaf->IsVisible());
}

TEST_F(ViewTest, SaysThatThereIsNoOriginalModel)
{
    EXPECT_THAT(GetFailure([this] { m_View.ToggleOriginalModel(); }), HasSubstr("no model"));
}

TEST_F(DrawnViewTest, DrawsAFrameWithEachSwitch)
{
    ShowSquare();
    m_View.SetDisplayFlags(0);
    EXPECT_EQ(CountLit(m_View.TakePicture()), 0);
    m_View.ToggleFlatShading();
    // What the switch drew is still in the surface's buffer.
    ASSERT_EQ(m_View.BeginContext(), 0);
    Image buffer{kWidth, kHeight, 3, std::vector<std::uint8_t>(std::size_t{3} * kWidth * kHeight)};
    glReadPixels(0, 0, kWidth, kHeight, GL_RGB, GL_UNSIGNED_BYTE, buffer.pixels.data());
    m_View.EndContext();
    EXPECT_GT(CountLit(buffer), 1000);
}
}
}
