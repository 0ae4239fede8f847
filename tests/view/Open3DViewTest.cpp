#include "Open3DView.h"
#include "Capture.h"
#include "Vectors.h"
#include "ViewTest.h"
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

TEST_F(ViewTest, ShowsWireAndFlatShadingByDefault)
{
    EXPECT_EQ(m_View.GetDisplayFlags(), 0xCU);
    EXPECT_THAT(m_View.GetPointCloud(), IsEmpty());
    EXPECT_THAT(m_View.GetPointNormals(), IsEmpty());
    EXPECT_THAT(m_View.GetProjectedPoints(), IsEmpty());
    EXPECT_THAT(m_View.GetHoverList(), IsEmpty());
    EXPECT_EQ(m_View.GetNewMesh(), nullptr);
    EXPECT_EQ(m_View.GetOctree(), nullptr);
    EXPECT_EQ(m_View.GetClearColor(), smVec3f(0.0F, 0.0F, 0.0F));
}

TEST_F(ViewTest, HandsItsControllerBack)
{
    EXPECT_EQ(m_View.GetController(), &m_Controller);
    EXPECT_EQ(Open3DView().GetController(), nullptr);
}

TEST_F(ViewTest, KeepsDisplayFlags)
{
    m_View.SetDisplayFlags(m_View.GetDisplayFlags() | DisplayFlag::CutFaces);
    EXPECT_EQ(m_View.GetDisplayFlags(), 0x2000CU);
}

TEST_F(ViewTest, GivesTheCameraTheAspectOfItsWindow)
{
    m_View.Resize(0, 0, 1024, 512);
    EXPECT_EQ(m_View.GetCamera()->GetAspect(), 2.0F);
    EXPECT_EQ(m_View.GetCamera()->GetWidth(), 1024);
    EXPECT_EQ(m_View.GetCamera()->GetHeight(), 512);
}

TEST_F(ViewTest, ForwardsTheSelectionToTheElementManager)
{
    const std::uint32_t id = Build(Tetrahedron())->GetID();
    m_View.ToggleSelect(id);
    EXPECT_THAT(m_Elements.GetSelectList(), ElementsAre(id));
    EXPECT_EQ(m_View.GetSelectType(), 0x5000005U);
    m_View.SetSelectType(0x5000002);
    EXPECT_EQ(m_Elements.GetSelectType(), 0x5000002U);
    EXPECT_THAT(m_Elements.GetSelectList(), IsEmpty()); // another type drops the selection
}

TEST(View, HasNoSelectionBeforeItIsJoined)
{
    const AssertionCapture assertions;
    Open3DView view;
    EXPECT_THROW(view.GetSelectType(), AssertionFailure);
    EXPECT_THROW(view.SetSelectType(0x5000002), AssertionFailure);
    EXPECT_THROW(view.ToggleSelect(0), AssertionFailure);
}

TEST(View, CountsNothingBeforeItIsJoined)
{
    Open3DView().Redraw();
    EXPECT_EQ(GetTestPlatform().GetPaneText(1), "顶点数: 0");
    EXPECT_EQ(GetTestPlatform().GetPaneText(2), "面片数: 0");
}

TEST_F(ViewTest, CountsNothingInAnEmptyScene)
{
    EXPECT_THAT(DrawCounters(), ElementsAre("顶点数: 0", "面片数: 0"));
}

TEST_F(ViewTest, CountsTheSolidOfTheFirstChild)
{
    Show(Build(QuadCube()));
    Show(Build(Tetrahedron()));
    EXPECT_THAT(DrawCounters(), ElementsAre("顶点数: 8", "面片数: 6"));
}

TEST_F(ViewTest, CountsNothingWhenTheFirstChildHasNoSolid)
{
    Show(nullptr);
    EXPECT_THAT(DrawCounters(), ElementsAre("顶点数: 0", "面片数: 0"));
}

TEST_F(ViewTest, CountsNothingWhenTheFirstChildIsAGroup)
{
    MANSceneGroup* group = m_Scene.NewGroup();
    group->SetParent(m_Scene.GetRootGroup());
    m_Scene.GetRootGroup()->AddChild(group);
    Show(Build(Tetrahedron()));
    EXPECT_THAT(DrawCounters(), ElementsAre("顶点数: 0", "面片数: 0"));
}

TEST_F(ViewTest, CountsTheLastSelectedSolid)
{
    Show(Build(QuadCube()));
    m_View.ToggleSelect(Build(TriangleCube())->GetID());
    m_View.ToggleSelect(Build(Tetrahedron())->GetID());
    EXPECT_THAT(DrawCounters(), ElementsAre("顶点数: 4", "面片数: 4"));
}

TEST_F(ViewTest, CountsAHoveredSolidRatherThanASelectedOne)
{
    Show(Build(QuadCube()));
    m_View.ToggleSelect(Build(Tetrahedron())->GetID());
    m_View.GetHoverList().push_back(Build(TriangleCube())->GetID());
    EXPECT_THAT(DrawCounters(), ElementsAre("顶点数: 8", "面片数: 12"));
}

TEST_F(ViewTest, CountsNoSolidForAMarkedFace)
{
    Show(Build(QuadCube()));
    const DSSolid* other = Build(Tetrahedron());
    m_View.ToggleSelect(other->GetFaceList()[0]->GetID());
    EXPECT_THAT(DrawCounters(), ElementsAre("顶点数: 8", "面片数: 6"));
}

TEST_F(ViewTest, CountsAMarkedSolidOnlyWhereItsMarkIsDrawn)
{
    Show(Build(QuadCube()));
    m_View.ToggleSelect(Build(Tetrahedron())->GetID());
    m_View.SetDisplayFlags(DisplayFlag::Wire | DisplayFlag::Points);
    EXPECT_THAT(DrawCounters(), ElementsAre("顶点数: 8", "面片数: 6"));
    m_View.SetDisplayFlags(DisplayFlag::SmoothShading);
    EXPECT_THAT(DrawCounters(), ElementsAre("顶点数: 4", "面片数: 4"));
}

TEST_F(ViewTest, SkipsIdsWhoseSolidsAreGoneWithoutAWord)
{
    const AssertionCapture assertions;
    const MessageCapture messages;
    m_View.ToggleSelect(Build(Tetrahedron())->GetID());
    m_View.GetHoverList() = {0xE0000000, 0xE0000007, 0x40000000};
    m_Elements.Clear(); // the lists keep the ids
    Show(Build(QuadCube()));
    m_Elements.DeleteSolid(Build(Tetrahedron()));
    m_View.GetHoverList() = {0xE0000001, 0xE0000007, 0x40000000}; // deleted, never made, of no kind
    EXPECT_THAT(DrawCounters(), ElementsAre("顶点数: 8", "面片数: 6"));
    EXPECT_THAT(messages.GetTexts(), IsEmpty());
    EXPECT_THAT(assertions.GetExpressions(), IsEmpty());
}

TEST_F(ViewTest, GoesBackToACheckpoint)
{
    DSSolid* solid = Build(Tetrahedron());
    m_View.GetPointCloud() = {smVec3d(1.0, 0.0, 0.0)};
    m_View.GetPointNormals() = {smVec3d(0.0, 1.0, 0.0)};
    m_View.GetProjectedPoints() = {smVec3d(0.0, 0.0, 1.0)};
    m_View.GetHoverList() = {7};
    m_View.SetNewMesh(solid);
    m_View.SetDisplayFlags(DisplayFlag::NewMesh);
    auto before = m_View.Save();

    m_View.GetPointCloud().clear();
    m_View.GetPointNormals().clear();
    m_View.GetProjectedPoints().clear();
    m_View.GetHoverList() = {1, 2, 3};
    m_View.SetNewMesh(nullptr);
    m_View.SetDisplayFlags(0);
    m_View.Restore(std::move(before));

    EXPECT_THAT(m_View.GetPointCloud(), ElementsAre(smVec3d(1.0, 0.0, 0.0)));
    EXPECT_THAT(m_View.GetPointNormals(), ElementsAre(smVec3d(0.0, 1.0, 0.0)));
    EXPECT_THAT(m_View.GetProjectedPoints(), ElementsAre(smVec3d(0.0, 0.0, 1.0)));
    EXPECT_THAT(m_View.GetHoverList(), ElementsAre(7U));
    EXPECT_EQ(m_View.GetNewMesh(), solid);
    EXPECT_EQ(m_View.GetDisplayFlags(), DisplayFlag::NewMesh);
}
}
}
