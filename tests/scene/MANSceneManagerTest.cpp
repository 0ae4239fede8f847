#include "MANSceneManager.h"
#include "Capture.h"
#include "Vectors.h"
#include <bit>
#include <gmock/gmock.h>

namespace tessarine
{
namespace
{
using testing::ElementsAre;
using testing::IsEmpty;

/// A new leaf, linked to `parent` as callers do it.
MANSceneLeaf* AddLeaf(MANSceneManager& scene, MANSceneGroup* parent)
{
    MANSceneLeaf* leaf = scene.NewLeaf();
    parent->AddChild(leaf);
    leaf->SetParent(parent);
    return leaf;
}

MANSceneGroup* AddGroup(MANSceneManager& scene, MANSceneGroup* parent)
{
    MANSceneGroup* group = scene.NewGroup();
    parent->AddChild(group);
    group->SetParent(parent);
    return group;
}

std::vector<std::string> LightNames(const MANSceneManager& scene)
{
    std::vector<std::string> names;
    for (const auto& light : scene.GetLightList())
    {
        names.push_back(light->m_Name);
    }
    return names;
}

TEST(SceneManager, StartsWithOneRootNoLeavesAndThreeLights)
{
    const MANSceneManager scene;
    EXPECT_EQ(scene.GetRootGroup()->GetID(), 0xC0000000U);
    EXPECT_EQ(scene.GetFirstRoot(), scene.GetRootGroup());
    EXPECT_EQ(scene.GetGroupList().size(), 1U);
    EXPECT_THAT(scene.GetLeafList(), IsEmpty());
    EXPECT_THAT(LightNames(scene), ElementsAre("Main Light", "Aid Light", "Bot Light"));
    EXPECT_THAT(scene.GetCutFaceList(), IsEmpty());
}

TEST(SceneManager, TellsTheKindOfAnIdByItsTopBits)
{
    EXPECT_EQ(MANSceneManager::GetKind(0xC0000007), NodeKind::Group);
    EXPECT_EQ(MANSceneManager::GetKind(0xE0000007), NodeKind::Leaf);
    for (const std::uint32_t other :
         {0x00000007U, 0x20000007U, 0x80000007U, 0xA0000007U, 0xF0000007U, 0xD0000007U})
    {
        EXPECT_EQ(MANSceneManager::GetKind(other), NodeKind::Invalid) << std::hex << other;
    }
}

TEST(SceneManager, NumbersGroupsAndLeavesEachFromZero)
{
    MANSceneManager scene;
    EXPECT_EQ(scene.NewLeaf()->GetID(), 0xE0000000U);
    EXPECT_EQ(scene.NewLeaf()->GetID(), 0xE0000001U);
    EXPECT_EQ(scene.NewGroup()->GetID(), 0xC0000001U); // the root is group 0
}

TEST(SceneManager, LinksNoNewNodeIntoTheTree)
{
    MANSceneManager scene;
    EXPECT_EQ(scene.NewLeaf()->GetParent(), nullptr);
    EXPECT_EQ(scene.NewGroup()->GetParent(), nullptr);
    EXPECT_THAT(scene.GetRootGroup()->GetChildren(), IsEmpty());
}

TEST(SceneManager, FindsANodeByItsId)
{
    MANSceneManager scene;
    MANSceneLeaf* leaf = scene.NewLeaf();
    MANSceneGroup* group = scene.NewGroup();
    EXPECT_EQ(scene.GetNode(leaf->GetID()), leaf);
    EXPECT_EQ(scene.GetNode(group->GetID()), group);
    EXPECT_EQ(scene.GetLeaf(leaf->GetID()), leaf);
    EXPECT_EQ(scene.GetGroup(group->GetID()), group);
}

TEST(SceneManager, ShowsThatAnIdOfNoKindNamesNoNode)
{
    const MANSceneManager scene;
    const MessageCapture messages;
    EXPECT_EQ(scene.GetNode(0x80000000), nullptr);
    EXPECT_THAT(messages.GetTexts(), ElementsAre("The node does not exist!"));
}

TEST(SceneManager, AssertsTheKindOfAnId)
{
    const AssertionCapture assertions;
    MANSceneManager scene;
    scene.NewLeaf();
    EXPECT_THROW(scene.GetGroup(0xE0000000), AssertionFailure);
    EXPECT_THROW(scene.GetLeaf(0xC0000000), AssertionFailure);
}

TEST(SceneManager, AssertsThatAnIndexIsInItsList)
{
    const AssertionCapture assertions;
    const MANSceneManager scene;
    EXPECT_THROW(scene.GetGroup(0xC0000001), AssertionFailure);
    EXPECT_THROW(scene.GetLeaf(0xE0000000), AssertionFailure);
#if TESSARINE_ASSERTIONS
    EXPECT_THAT(assertions.GetPaths(), testing::Each("source/Manager/MANSceneManager.cpp"));
    EXPECT_EQ(assertions.GetPaths().size(), 2U);
#endif
}

TEST(SceneManager, ShowsThatADeletedLeafIsGone)
{
    MANSceneManager scene;
    const std::uint32_t id = scene.NewLeaf()->GetID();
    scene.DeleteLeaf(id);
    const MessageCapture messages;
    EXPECT_EQ(scene.GetLeaf(id), nullptr);
    EXPECT_THAT(messages.GetTexts(), ElementsAre("The leaf doesnot exsit!"));
}

TEST(SceneManager, ShowsThatADeletedGroupIsGone)
{
    MANSceneManager scene;
    const std::uint32_t id = scene.NewGroup()->GetID();
    scene.DeleteGroup(id);
    const MessageCapture messages;
    EXPECT_EQ(scene.GetGroup(id), nullptr);
    EXPECT_THAT(messages.GetTexts(), ElementsAre("The Group doesnot exsit!"));
}

TEST(SceneManager, AssertsThatWhatIsDeletedIsThere)
{
    const AssertionCapture assertions;
    MANSceneManager scene;
    const std::uint32_t id = scene.NewLeaf()->GetID();
    scene.DeleteLeaf(id);
    EXPECT_THROW(scene.DeleteLeaf(id), AssertionFailure);
    EXPECT_THROW(scene.DeleteGroup(nullptr), AssertionFailure);
}

TEST(SceneManager, TakesADeletedLeafOutOfItsParent)
{
    MANSceneManager scene;
    MANSceneGroup* root = scene.GetRootGroup();
    MANSceneLeaf* first = AddLeaf(scene, root);
    MANSceneLeaf* second = AddLeaf(scene, root);
    scene.DeleteLeaf(first);
    EXPECT_THAT(root->GetChildren(), ElementsAre(second));
}

TEST(SceneManager, NeverUsesTheIndexOfADeletedLeafAgain)
{
    MANSceneManager scene;
    scene.DeleteLeaf(scene.NewLeaf());
    EXPECT_EQ(scene.NewLeaf()->GetID(), 0xE0000001U);
    EXPECT_EQ(scene.GetLeafList().front(), nullptr);
}

TEST(SceneManager, DeletesByKind)
{
    MANSceneManager scene;
    const std::uint32_t leaf = scene.NewLeaf()->GetID();
    const std::uint32_t group = scene.NewGroup()->GetID();
    scene.DeleteNode(leaf);
    scene.DeleteNode(group);
    scene.DeleteNode(0x80000000); // of no kind: nothing happens
    EXPECT_EQ(scene.GetLeafList()[0], nullptr);
    EXPECT_EQ(scene.GetGroupList()[1], nullptr);
    EXPECT_NE(scene.GetGroupList()[0], nullptr);
}

TEST(SceneManager, DeletesEverySecondChildOfAGroup)
{
    MANSceneManager scene;
    MANSceneGroup* group = AddGroup(scene, scene.GetRootGroup());
    for (int i = 0; i < 4; ++i)
    {
        AddLeaf(scene, group);
    }
    scene.DeleteGroup(group);
    // Each deletion moves the rest down by one while the loop goes up by one: 0 goes, 1 is passed over, ...
    EXPECT_EQ(scene.GetLeafList()[0], nullptr);
    EXPECT_NE(scene.GetLeafList()[1], nullptr);
    EXPECT_EQ(scene.GetLeafList()[2], nullptr);
    EXPECT_NE(scene.GetLeafList()[3], nullptr);
    EXPECT_THAT(scene.GetRootGroup()->GetChildren(), IsEmpty());
}

TEST(SceneManager, LeavesNoLinkToADeletedGroup)
{
    MANSceneManager scene;
    MANSceneGroup* group = AddGroup(scene, scene.GetRootGroup());
    AddLeaf(scene, group);
    MANSceneLeaf* passedOver = AddLeaf(scene, group);
    scene.DeleteGroup(group);
    EXPECT_EQ(passedOver->GetParent(), nullptr);
    scene.DeleteLeaf(passedOver);
    EXPECT_EQ(scene.GetLeafList()[1], nullptr);
}

TEST(SceneManager, DeletesAGroupInsideAGroup)
{
    MANSceneManager scene;
    MANSceneGroup* outer = AddGroup(scene, scene.GetRootGroup());
    MANSceneGroup* inner = AddGroup(scene, outer);
    AddLeaf(scene, inner);
    scene.DeleteGroup(outer->GetID());
    EXPECT_EQ(scene.GetGroupList()[1], nullptr);
    EXPECT_EQ(scene.GetGroupList()[2], nullptr);
    EXPECT_EQ(scene.GetLeafList()[0], nullptr);
}

TEST(SceneManager, AssertsThatAChildKnowsItsParent)
{
    const AssertionCapture assertions;
    MANSceneManager scene;
    MANSceneGroup* group = scene.NewGroup();
    group->AddChild(scene.NewLeaf()); // without SetParent
    EXPECT_THROW(scene.DeleteGroup(group), AssertionFailure);
}

TEST(SceneManager, HasAFreshRootOfIndexZeroAfterClear)
{
    MANSceneManager scene;
    AddLeaf(scene, AddGroup(scene, scene.GetRootGroup()));
    scene.Clear();
    EXPECT_EQ(scene.GetRootGroup()->GetID(), 0xC0000000U);
    EXPECT_THAT(scene.GetRootGroup()->GetChildren(), IsEmpty());
    EXPECT_THAT(scene.GetLeafList(), IsEmpty());
    EXPECT_EQ(scene.GetGroupList().size(), 1U);
    EXPECT_EQ(scene.NewLeaf()->GetID(), 0xE0000000U); // the numbers start anew
}

TEST(SceneManager, ForgetsTheFirstRootWithClear)
{
    MANSceneManager scene;
    scene.Clear();
    EXPECT_EQ(scene.GetFirstRoot(), nullptr);
}

TEST(SceneManager, ForgetsTheFirstRootWhenItIsDeleted)
{
    MANSceneManager scene;
    scene.DeleteGroup(scene.GetRootGroup());
    EXPECT_EQ(scene.GetFirstRoot(), nullptr);
}

TEST(SceneManager, LeavesAnOrphanBeforeTheRootAfterReset)
{
    MANSceneManager scene;
    scene.Reset();
    EXPECT_EQ(scene.GetRootGroup()->GetID(), 0xC0000001U);
    EXPECT_EQ(scene.GetGroupList().size(), 2U);
    EXPECT_EQ(scene.GetGroup(0xC0000000)->GetParent(), nullptr);
    EXPECT_THAT(scene.GetGroup(0xC0000000)->GetChildren(), IsEmpty());
}

TEST(SceneManager, KeepsTheSameRootIdOverEveryReset)
{
    MANSceneManager scene;
    scene.Reset();
    scene.Reset();
    EXPECT_EQ(scene.GetRootGroup()->GetID(), 0xC0000001U);
    EXPECT_EQ(scene.GetGroupList().size(), 2U);
}

TEST(SceneManager, KeepsLightsAndCutFacesOverClearAndReset)
{
    MANSceneManager scene;
    scene.GetLight("Aid Light")->m_bAmbient = true;
    scene.NewLight()->m_Name = "Fourth";
    scene.GetCutFaceList().emplace_back();
    scene.Clear();
    scene.Reset();
    EXPECT_THAT(LightNames(scene), ElementsAre("Main Light", "Aid Light", "Bot Light", "Fourth"));
    EXPECT_TRUE(scene.GetLight("Aid Light")->m_bAmbient);
    EXPECT_EQ(scene.GetCutFaceList().size(), 1U);
}

TEST(Lights, StartDirectionalWhereTheTableHasThem)
{
    const MANSceneManager scene;
    const auto& lights = scene.GetLightList();
    EXPECT_EQ(lights[0]->m_Position, smVec4f(0.61237F, 0.5F, 0.61237F, 0.0F));
    EXPECT_EQ(lights[1]->m_Position, smVec4f(-0.61237F, 0.5F, -0.61237F, 0.0F));
    EXPECT_EQ(lights[2]->m_Position, smVec4f(0.0F, -1.0F, 0.0F, 0.0F));
    EXPECT_EQ(std::bit_cast<std::uint32_t>(lights[0]->m_Position[0]), 0x3F1CC448U);
}

TEST(Lights, AreGreyDiffuseOnlyAndEnabledWhenNew)
{
    MANSceneManager scene;
    const Open3DLight* light = scene.NewLight();
    EXPECT_EQ(light->m_Name, "");
    EXPECT_FALSE(light->m_bAmbient);
    EXPECT_TRUE(light->m_bDiffuse);
    EXPECT_FALSE(light->m_bSpecular);
    EXPECT_TRUE(light->m_bEnabled);
    EXPECT_EQ(light->m_Ambient, smVec3f(0.0F, 0.0F, 0.0F));
    EXPECT_EQ(light->m_Diffuse, smVec3f(0.7F, 0.7F, 0.7F));
    EXPECT_EQ(light->m_Specular, smVec3f(0.0F, 0.0F, 0.0F));
    EXPECT_EQ(light->m_Position, smVec4f(0.0F, 0.0F, 0.0F, 0.0F));
}

TEST(Lights, AreFoundByTheirExactName)
{
    const MANSceneManager scene;
    EXPECT_EQ(scene.GetLight("Aid Light"), scene.GetLightList()[1].get());
}

TEST(Lights, AreReportedWhenTheNameIsUnknown)
{
    const MANSceneManager scene;
    const MessageCapture messages;
    EXPECT_EQ(scene.GetLight("x"), nullptr);
    EXPECT_EQ(scene.GetLight("aid light"), nullptr);
    EXPECT_THAT(messages.GetTexts(), ElementsAre("The light doesnot exsit!", "The light doesnot exsit!"));
}

TEST(Lights, MoveDownByOneWhenTheFirstIsDeleted)
{
    MANSceneManager scene;
    scene.DeleteLight("Main Light");
    EXPECT_THAT(LightNames(scene), ElementsAre("Aid Light", "Bot Light"));
}

TEST(Lights, OfOneNameBehindEachOtherLoseOnlyEverySecond)
{
    MANSceneManager scene;
    for (int i = 0; i < 3; ++i)
    {
        scene.NewLight()->m_Name = "Twin";
    }
    scene.DeleteLight("Twin");
    EXPECT_THAT(LightNames(scene), ElementsAre("Main Light", "Aid Light", "Bot Light", "Twin"));
}

TEST(Lights, CanBeDeletedByTheirOwnName)
{
    MANSceneManager scene;
    scene.NewLight()->m_Name = "Apart";
    scene.NewLight()->m_Name = "Between";
    scene.NewLight()->m_Name = "Apart";
    scene.DeleteLight(scene.GetLightList()[3]->m_Name); // the name goes with the first of them
    EXPECT_THAT(LightNames(scene), ElementsAre("Main Light", "Aid Light", "Bot Light", "Between"));
}

TEST(Lights, CanBeDeletedByPointer)
{
    MANSceneManager scene;
    scene.DeleteLight(scene.GetLight("Aid Light"));
    EXPECT_THAT(LightNames(scene), ElementsAre("Main Light", "Bot Light"));
}
}
}
