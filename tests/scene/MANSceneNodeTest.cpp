#include "MANSceneNode.h"
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
using testing::ElementsAre;

TEST(SceneNode, IsVisibleAndWithoutParentWhenNew)
{
    const MANSceneLeaf leaf;
    EXPECT_TRUE(leaf.IsVisible());
    EXPECT_EQ(leaf.GetParent(), nullptr);
    EXPECT_EQ(leaf.GetSolid(), nullptr);
}

TEST(SceneNode, IsNotMovedByTransforms)
{
    MANSceneLeaf leaf;
    leaf.Translate(smVec3d(1.0, 2.0, 3.0));
    leaf.Rotate(smVec3d(0.0, 0.0, 1.0), 1.5);
    leaf.Scale(smVec3d(2.0, 2.0, 2.0));
    EXPECT_TRUE(leaf.IsVisible());
    EXPECT_EQ(leaf.GetSolid(), nullptr);
}

TEST(SceneGroup, KeepsItsChildrenInInsertionOrder)
{
    MANSceneGroup group;
    MANSceneLeaf first;
    MANSceneGroup second;
    group.AddChild(&first);
    group.AddChild(&second);
    EXPECT_THAT(group.GetChildren(), ElementsAre(&first, &second));
}

TEST(SceneGroup, RemovesOnlyTheFirstMatch)
{
    MANSceneGroup group;
    MANSceneLeaf first;
    MANSceneLeaf second;
    group.AddChild(&first);
    group.AddChild(&second);
    group.AddChild(&first);
    group.RemoveChild(&first);
    EXPECT_THAT(group.GetChildren(), ElementsAre(&second, &first));
}

TEST(SceneGroup, RemovesNothingThatIsAbsent)
{
    MANSceneGroup group;
    MANSceneLeaf child;
    const MANSceneLeaf stranger;
    group.AddChild(&child);
    group.RemoveChild(&stranger);
    EXPECT_THAT(group.GetChildren(), ElementsAre(&child));
}
}
}
