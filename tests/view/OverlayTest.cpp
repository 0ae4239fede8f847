#include "Capture.h"
#include "OCTNODE.h"
#include "ViewTest.h"
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

/// A node whose box is the cube around a point.
void SetBox(OCTNODE& node, const smVec3d& centre, double half)
{
    node.GetMin() = centre - smVec3d(half, half, half);
    node.GetMax() = centre + smVec3d(half, half, half);
}

TEST(OCTNODE, IsALeafInTheBeginning)
{
    const OCTNODE node;
    EXPECT_TRUE(node.IsLeaf());
    EXPECT_EQ(node.GetParent(), nullptr);
    EXPECT_THAT(node.GetChildren(), testing::Each(nullptr));
    EXPECT_THAT(node.GetPoints(), IsEmpty());
}

TEST_F(DrawnViewTest, DrawsTheBoxesOfTheOctreesLeaves)
{
    OCTNODE root;
    SetBox(root, smVec3d(0.0, 0.0, 0.0), 1.0);
    m_View.SetOctree(&root);
    const Image one = Draw(DisplayFlag::Octree);
    EXPECT_EQ(Count(one, kCyan), CountLit(one));
    // Two squares, of 2 * 54.3 / 2 and 2 * 36.2 / 2 pixels a side at depths 4 and 6, and four edges between.
    EXPECT_NEAR(CountLit(one), 4 * 54 + 4 * 36 + 4 * 9, 30);

    std::array<OCTNODE, 8> children;
    for (int i = 0; i < 8; ++i)
    {
        const auto side = [i](int bit) { return (i & bit) != 0 ? 0.5 : -0.5; };
        SetBox(children[i], smVec3d(side(1), side(2), side(4)), 0.5);
        root.GetChildren()[i] = &children[i];
    }
    root.SetLeaf(false);
    EXPECT_GT(CountLit(Draw(DisplayFlag::Octree)), CountLit(one) + 200);
}

TEST_F(DrawnViewTest, ReportsAnOctreeWithAChildMissingAndDrawsTheOthers)
{
    OCTNODE root;
    OCTNODE child;
    SetBox(child, smVec3d(0.0, 0.0, 0.0), 0.5);
    root.SetLeaf(false);
    root.GetChildren()[7] = &child;
    m_View.SetOctree(&root);
    const AssertionCapture assertions;
    EXPECT_GT(Count(Draw(DisplayFlag::Octree), kCyan), 50);
    EXPECT_EQ(assertions.GetExpressions().size(), 7U);
}

TEST_F(DrawnViewTest, DrawsNothingWhereOverlaysAreMissing)
{
    EXPECT_EQ(CountLit(Draw(DisplayFlag::Octree | DisplayFlag::PointCloud | DisplayFlag::PointNormals |
                            DisplayFlag::ProjectedPoints | DisplayFlag::ProjectionLines |
                            DisplayFlag::NewMesh | DisplayFlag::CutFaces)),
              0);
}

TEST_F(DrawnViewTest, DrawsThePointCloudRed)
{
    m_View.GetPointCloud() = {smVec3d(0.0, 0.0, 0.0), smVec3d(1.0, 0.5, 0.0), smVec3d(-1.0, 0.5, 0.0)};
    const Image picture = Draw(DisplayFlag::PointCloud);
    EXPECT_EQ(Count(picture, kRed), 3 * 4); // two by two each
    EXPECT_EQ(CountLit(picture), 3 * 4);
}

TEST_F(DrawnViewTest, DrawsAShortLineAlongEachNormal)
{
    m_View.GetCamera()->SetLookAt(smVec3d(0.0, 0.0, 0.2), smVec3d(0.0, 0.0, 0.0), smVec3d(0.0, 1.0, 0.0));
    m_View.GetPointCloud() = {smVec3d(0.0, 0.0, 0.0), smVec3d(0.01, 0.0, 0.0)};
    m_View.GetPointNormals() = {smVec3d(0.0, 1.0, 0.0)}; // the second point has none
    const Image picture = Draw(DisplayFlag::PointNormals);
    // 0.05 at 90 / (2 * 0.2 * tan 22.5) = 543 pixels a unit
    EXPECT_NEAR(Count(picture, kCyan), 27, 1);
    EXPECT_EQ(CountLit(picture), Count(picture, kCyan));
}

TEST_F(DrawnViewTest, DrawsProjectedPoints)
{
    m_View.GetProjectedPoints() = {smVec3d(0.0, 0.0, 0.0)};
    const Image picture = Draw(DisplayFlag::ProjectedPoints);
    EXPECT_EQ(Count(picture, Rgb{77, 204, 128}), 4); // (0.3, 0.8, 0.5)
    EXPECT_EQ(CountLit(picture), 4);
}

TEST_F(DrawnViewTest, DrawsStippledLinesToTheProjections)
{
    m_View.GetPointCloud() = {smVec3d(-1.0, 0.0, 0.0)};
    m_View.GetProjectedPoints() = {smVec3d(1.0, 0.0, 0.0)};
    const Image picture = Draw(DisplayFlag::ProjectionLines);
    EXPECT_NEAR(Count(picture, kRed), 21, 2); // every other pixel of 2 * 21.7
    EXPECT_EQ(CountLit(picture), Count(picture, kRed));
    // The stipple ends with the run.
    ShowSquare();
    EXPECT_EQ(Count(Draw(DisplayFlag::ProjectionLines | DisplayFlag::Wire), kEdge),
              Count(Draw(DisplayFlag::Wire), kEdge));
}

TEST_F(DrawnViewTest, ReportsProjectionLinesBetweenListsOfDifferentSizeAndDrawsNone)
{
    m_View.GetPointCloud().resize(3);
    m_View.GetProjectedPoints().resize(2);
    const AssertionCapture assertions;
    EXPECT_EQ(CountLit(Draw(DisplayFlag::ProjectionLines)), 0);
    EXPECT_THAT(assertions.GetExpressions(), ElementsAre("projections.size() == points.size()"));
}

TEST_F(DrawnViewTest, DrawsTheNewMeshInTheColourOfTheMouse)
{
    for (const auto& pLight : m_Scene.GetLightList())
    {
        pLight->m_Position = smVec4f(0.0F, 0.0F, 1.0F, 0.0F); // three of 0.7 saturate the colour
    }
    DSSolid* solid = ShowSquare();
    m_Scene.GetRootGroup()->SetVisible(false);
    m_View.SetNewMesh(solid);
    const Rgb blue = GetCentre(Draw(DisplayFlag::NewMesh));
    EXPECT_EQ(blue[2], 255);
    EXPECT_LT(blue[0], 128);
    solid->SetSelected(true);
    const Rgb yellow = GetCentre(Draw(DisplayFlag::NewMesh));
    EXPECT_EQ(yellow[0], 255);
    EXPECT_LT(yellow[2], 128);
    EXPECT_GT(Count(Draw(DisplayFlag::NewMesh | DisplayFlag::Wire), kEdge), 100);
    EXPECT_EQ(Count(Draw(DisplayFlag::NewMesh | DisplayFlag::Points), kWhite), 4);
}

TEST_F(DrawnViewTest, DrawsCutFacesOverTheModels)
{
    ShowSquare();
    m_Scene.GetCutFaceList().push_back(
        {smVec3d(-0.5, -0.5, 0.0), smVec3d(0.5, -0.5, 0.0), smVec3d(0.5, 0.5, 0.0), smVec3d(-0.5, 0.5, 0.0)});
    const Image picture = Draw(DisplayFlag::FlatShading | DisplayFlag::CutFaces);
    EXPECT_NEAR(Count(picture, kGreen), 2 * 4 * 22, 12); // a square of 21.7 pixels, two pixels broad
}
}
}
