#include "Capture.h"
#include "MANSceneManager.h"
#include "Vectors.h"
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
using testing::ElementsAre;

MANSceneLeaf* AddLeaf(MANSceneManager& scene)
{
    MANSceneLeaf* leaf = scene.NewLeaf();
    scene.GetRootGroup()->AddChild(leaf);
    leaf->SetParent(scene.GetRootGroup());
    return leaf;
}

TEST(SceneCheckpoint, BringsEveryNodeBackAtItsOldAddress)
{
    MANSceneManager scene;
    MANSceneGroup* root = scene.GetRootGroup();
    MANSceneLeaf* first = AddLeaf(scene);
    MANSceneLeaf* second = AddLeaf(scene);
    auto before = scene.Save();

    scene.Reset();
    AddLeaf(scene);
    scene.Restore(std::move(before));

    EXPECT_EQ(scene.GetRootGroup(), root);
    EXPECT_EQ(scene.GetFirstRoot(), root);
    EXPECT_EQ(root->GetID(), 0xC0000000U);
    EXPECT_THAT(root->GetChildren(), ElementsAre(first, second));
    EXPECT_EQ(first->GetParent(), root);
    EXPECT_EQ(scene.GetLeafList().size(), 2U);
    EXPECT_EQ(scene.GetGroupList().size(), 1U);
}

TEST(SceneCheckpoint, BringsBackWhatTheNodesHeld)
{
    MANSceneManager scene;
    MANSceneLeaf* leaf = AddLeaf(scene);
    leaf->SetVisible(false);
    auto before = scene.Save();

    leaf->SetVisible(true);
    leaf->SetParent(nullptr);
    scene.GetRootGroup()->RemoveChild(leaf);
    scene.Restore(std::move(before));

    EXPECT_FALSE(leaf->IsVisible());
    EXPECT_EQ(leaf->GetParent(), scene.GetRootGroup());
    EXPECT_THAT(scene.GetRootGroup()->GetChildren(), ElementsAre(leaf));
}

TEST(SceneCheckpoint, BringsBackADeletedLeafAndKeepsOlderGaps)
{
    MANSceneManager scene;
    scene.DeleteLeaf(AddLeaf(scene));
    MANSceneLeaf* leaf = AddLeaf(scene);
    auto before = scene.Save();

    scene.DeleteLeaf(leaf);
    scene.Restore(std::move(before));

    EXPECT_EQ(scene.GetLeafList()[0], nullptr);
    EXPECT_EQ(scene.GetLeaf(0xE0000001), leaf);
    EXPECT_EQ(scene.NewLeaf()->GetID(), 0xE0000002U);
}

TEST(SceneCheckpoint, BringsBackLightsAndCutFaces)
{
    MANSceneManager scene;
    Open3DLight* light = scene.GetLight("Aid Light");
    scene.GetCutFaceList().push_back({smVec3d(1.0, 0.0, 0.0), smVec3d(), smVec3d(), smVec3d()});
    auto before = scene.Save();

    light->m_Diffuse = smVec3f(0.0F, 0.0F, 1.0F);
    scene.DeleteLight("Aid Light");
    scene.NewLight();
    scene.GetCutFaceList().clear();
    scene.Restore(std::move(before));

    EXPECT_EQ(scene.GetLightList().size(), 3U);
    EXPECT_EQ(scene.GetLight("Aid Light"), light);
    EXPECT_EQ(light->m_Diffuse, smVec3f(0.7F, 0.7F, 0.7F));
    ASSERT_EQ(scene.GetCutFaceList().size(), 1U);
    EXPECT_EQ(scene.GetCutFaceList()[0][0], smVec3d(1.0, 0.0, 0.0));
}

TEST(SceneCheckpoint, ChangesNothingWhenItIsDropped)
{
    MANSceneManager scene;
    {
        const auto before = scene.Save();
        AddLeaf(scene);
    }
    EXPECT_EQ(scene.GetRootGroup()->GetChildren().size(), 1U);
}
}
}
