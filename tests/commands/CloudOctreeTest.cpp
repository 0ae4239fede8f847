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
    tree.Build(Repeat(19, {0.1, 0.1, 0.1}));
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
    tree.Build(Repeat(20, {0.1, 0.1, 0.1}));
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
    tree.Build(points);
    for (const OCTNODE* child : tree.GetRoot()->GetChildren())
    {
        EXPECT_GE(child->GetPoints().size(), 1U);
    }
}

TEST(CloudOctree, LeavesPointsBesideTheBoxInTheRoot)
{
    CloudOctree tree;
    tree.Build(Repeat(20, {0.0, 0.0, 1.5}));
    EXPECT_EQ(tree.GetNodes().size(), 9U);
    EXPECT_EQ(tree.GetRoot()->GetPoints().size(), 20U);
    EXPECT_TRUE(tree.GetNodes()[8]->GetPoints().empty());
}

TEST(CloudOctree, StartsAnewWithEachBuild)
{
    CloudOctree tree;
    tree.Build(Repeat(20, {0.1, 0.1, 0.1}));
    tree.Build({});
    EXPECT_EQ(tree.GetNodes().size(), 1U);
}

TEST(CloudOctree, HasTheBoxesOfTheLiteralFormInTheirOrder)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<double> coordinate(-1.0, 1.0);
    std::vector<smVec3d> points;
    for (int i = 0; i < 3000; ++i)
    {
        smVec3d point(coordinate(random), coordinate(random), coordinate(random));
        point.Normalize();
        point.x = i % 7 == 0 ? 0.0 : point.x; // between boxes
        points.push_back(point);
    }
    CloudOctree tree;
    tree.Build(points);
    const std::vector<LiteralBox> boxes = BuildOctreeLiterally(points);
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
}
}
