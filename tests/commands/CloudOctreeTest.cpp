#include "CloudOctree.h"
#include "LiteralSurface.h"
#include <gmock/gmock.h>
#include <random>

namespace tessarine
{
namespace
{
std::vector<smVec3d> Repeat(std::size_t count, const smVec3d& point)
{
    return std::vector<smVec3d>(count, point);
}

TEST(CloudOctree, HasNoRootBeforeItIsBuilt)
{
    EXPECT_EQ(CloudOctree().GetRoot(), nullptr);
}

TEST(CloudOctree, IsOneBoxForNineteenPoints)
{
    CloudOctree tree;
    tree.Build(Repeat(19, {0.1, 0.1, 0.1}), kBodyOctree);
    ASSERT_EQ(tree.GetNodes().size(), 1U);
    EXPECT_TRUE(tree.GetRoot()->IsLeaf());
    EXPECT_EQ(tree.GetRoot()->GetParent(), nullptr);
    EXPECT_EQ(tree.GetRoot()->GetDepth(), 1);
    EXPECT_EQ(tree.GetRoot()->GetMax().z, 1.0);
    EXPECT_EQ(tree.GetRoot()->GetMin().x, -1.2);
}

TEST(CloudOctree, SplitsTwentyPointsAtOnePlaceDownToTheNinthLevel)
{
    CloudOctree tree;
    tree.Build(Repeat(20, {0.1, 0.1, 0.1}), kBodyOctree);
    EXPECT_EQ(tree.GetNodes().size(), 1U + 8 * 8); // eight splits of one box each
    const OCTNODE* node = tree.GetRoot();
    while (!node->IsLeaf())
    {
        EXPECT_EQ(node->GetPoints().size(), 20U); // the parent keeps its own
        const auto& children = node->GetChildren();
        const auto holds = [](const OCTNODE* child) { return !child->GetPoints().empty(); };
        ASSERT_EQ(std::count_if(children.begin(), children.end(), holds), 1);
        const OCTNODE* child = *std::find_if(children.begin(), children.end(), holds);
        EXPECT_EQ(child->GetParent(), node);
        EXPECT_EQ(child->GetDepth(), node->GetDepth() + 1);
        node = child;
    }
    EXPECT_EQ(node->GetDepth(), 9);
}

TEST(CloudOctree, GivesAPointBetweenBoxesToAllOfThem)
{
    CloudOctree tree;
    std::vector<smVec3d> points = Repeat(19, {0.5, 0.5, 0.5});
    points.emplace_back(0.0, 0.0, 0.0);
    tree.Build(points, kBodyOctree);
    for (const OCTNODE* child : tree.GetRoot()->GetChildren())
    {
        EXPECT_GE(child->GetPoints().size(), 1U);
    }
}

TEST(CloudOctree, LeavesPointsBesideTheBoxInTheRoot)
{
    CloudOctree tree;
    tree.Build(Repeat(20, {0.0, 0.0, 1.5}), kBodyOctree);
    EXPECT_EQ(tree.GetNodes().size(), 9U);
    EXPECT_EQ(tree.GetRoot()->GetPoints().size(), 20U);
    EXPECT_TRUE(tree.GetNodes()[8]->GetPoints().empty());
}

TEST(CloudOctree, StartsAnewWithEachBuild)
{
    CloudOctree tree;
    tree.Build(Repeat(20, {0.1, 0.1, 0.1}), kBodyOctree);
    tree.Build({}, kBodyOctree);
    EXPECT_EQ(tree.GetNodes().size(), 1U);
}

/// On the unit sphere, some between boxes.
std::vector<smVec3d> MakeOctreeCloud()
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> coordinate(-1.0, 1.0);
    std::vector<smVec3d> points;
    for (int i = 0; i < 3000; ++i)
    {
        smVec3d point(coordinate(random), coordinate(random), coordinate(random));
        point.Normalize();
        point.x = i % 7 == 0 ? 0.0 : point.x;
        points.push_back(point);
    }
    return points;
}

void ExpectBoxes(const CloudOctree& tree, const std::vector<LiteralBox>& boxes)
{
    ASSERT_EQ(tree.GetNodes().size(), boxes.size());
    for (std::size_t n = 0; n < boxes.size(); ++n)
    {
        const OCTNODE& node = *tree.GetNodes()[n];
        ASSERT_EQ(node.GetPoints().size(), boxes[n].points) << n;
        ASSERT_EQ(node.IsLeaf(), boxes[n].isLeaf);
        ASSERT_EQ(node.GetDepth(), boxes[n].depth);
        for (int axis = 0; axis < 3; ++axis)
        {
            ASSERT_EQ(node.GetMin()[axis], boxes[n].low[axis]);
            ASSERT_EQ(node.GetMax()[axis], boxes[n].high[axis]);
        }
    }
}

TEST(CloudOctree, HasTheBoxesOfTheLiteralFormInTheirOrder)
{
    const std::vector<smVec3d> points = MakeOctreeCloud();
    CloudOctree tree;
    tree.Build(points, kBodyOctree);
    ExpectBoxes(tree, BuildOctreeLiterally(points));
}

TEST(CloudOctree, OfACloudHasTheBoxesOfItsLiteralForm)
{
    const std::vector<smVec3d> points = MakeOctreeCloud();
    CloudOctree tree;
    tree.Build(points, kCloudOctree);
    EXPECT_GT(tree.GetNodes().size(), 500U);
    ExpectBoxes(tree, BuildCloudOctreeLiterally(points, 8, 10));
}

TEST(CloudOctree, OfACloudIsOneBoxForNinePoints)
{
    CloudOctree tree;
    tree.Build(Repeat(9, {0.1, 0.1, 0.1}), kCloudOctree);
    EXPECT_EQ(tree.GetNodes().size(), 1U);
    EXPECT_TRUE(tree.GetRoot()->IsLeaf());
}

TEST(CloudOctree, OfACloudSplitsTenPointsAtOnePlaceDownToTheNinthLevel)
{
    CloudOctree tree;
    tree.Build(Repeat(10, {0.9, 0.9, 0.9}), kCloudOctree);
    EXPECT_EQ(tree.GetNodes().size(), 1U + 8 * 8);
    // Child 0 is the box at the largest corner; each is followed by all below it.
    EXPECT_EQ(tree.GetNodes()[1]->GetMin().x, 0.0);
    EXPECT_EQ(tree.GetNodes()[1]->GetMax().x, 1.0);
    EXPECT_FALSE(tree.GetNodes()[1]->IsLeaf());
    int deepest = 0;
    for (const auto& node : tree.GetNodes())
    {
        deepest = std::max(deepest, node->GetDepth());
    }
    EXPECT_EQ(deepest, 9);
}

TEST(CloudOctree, OfACloudGivesTheCentreToAllEightChildren)
{
    CloudOctree tree;
    std::vector<smVec3d> points = Repeat(9, {0.5, 0.5, 0.5});
    points.emplace_back(0.0, 0.0, 0.0);
    tree.Build(points, kCloudOctree);
    for (const OCTNODE* child : tree.GetRoot()->GetChildren())
    {
        const auto isCentre = [](const smVec3d& p) { return p.x == 0.0 && p.y == 0.0 && p.z == 0.0; };
        EXPECT_TRUE(std::any_of(child->GetPoints().begin(), child->GetPoints().end(), isCentre));
    }
}
}
}
