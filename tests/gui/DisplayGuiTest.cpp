#include "DisplayFlag.h"
#include "GuiTest.h"
#include "OCTNODE.h"
#include "resource.h"
#include <QAction>

namespace tessarine
{
namespace
{
using DisplayGuiTest = GuiTest;

struct MenuSwitch
{
    int id;
    std::uint32_t flag;
};

TEST_F(DisplayGuiTest, FlipsEachFlagWithItsCheckMark)
{
    // The new document has empty lists, which the overlays may show.
    constexpr MenuSwitch switches[] = {{32779, 0x4},     {32799, 0x200},  {32819, 0x2000}, {32820, 0x8},
                                       {32798, 0x800},   {32818, 0x1000}, {32822, 0x4000}, {32823, 0x8000},
                                       {32824, 0x10000}, {32838, 0x20000}};
    for (const auto& [id, flag] : switches)
    {
        const bool before = (Flags() & flag) != 0;
        EXPECT_EQ(Action(id).isChecked(), before) << id;
        ChooseFromMenu(id);
        EXPECT_EQ((Flags() & flag) != 0, !before) << id;
        EXPECT_EQ(Action(id).isChecked(), !before) << id;
        ChooseFromMenu(id);
        EXPECT_EQ((Flags() & flag) != 0, before) << id;
        EXPECT_EQ(Action(id).isChecked(), before) << id;
    }
}

TEST_F(DisplayGuiTest, FlipsAxesAndGridByTheirButtons)
{
    for (const auto& [id, flag] : {MenuSwitch{32781, 0x2}, MenuSwitch{32782, 0x1}})
    {
        const std::uint32_t before = Flags();
        ClickButton(id);
        EXPECT_EQ(Flags(), before ^ flag) << id;
        ClickButton(id);
        EXPECT_EQ(Flags(), before) << id;
    }
}

TEST_F(DisplayGuiTest, ExcludesFlatAndSmoothShading)
{
    ChooseFromMenu(ResourceID::VertexNormals);
    EXPECT_EQ(Flags() & 0x2008U, 0x2000U);
    EXPECT_FALSE(Action(ResourceID::FaceNormals).isChecked());
    ChooseFromMenu(ResourceID::FaceNormals);
    EXPECT_EQ(Flags() & 0x2008U, 0x8U);
    EXPECT_FALSE(Action(ResourceID::VertexNormals).isChecked());
}

TEST_F(DisplayGuiTest, ShowsTheTexturedModelAlone)
{
    ChooseFromMenu(ResourceID::ShowPoints);
    ChooseFromMenu(ResourceID::ShowTexture);
    EXPECT_EQ(Flags(), 0x10U);
    ChooseFromMenu(ResourceID::ShowTexture); // no switch: it stays
    EXPECT_EQ(Flags(), 0x10U);
    ChooseFromMenu(ResourceID::FaceNormals); // leaves the textures, as shading wins over them
    EXPECT_EQ(Flags(), 0x18U);
}

TEST_F(DisplayGuiTest, ReportsAnOctreeThatIsNotThereAndLeavesTheFlag)
{
    const std::uint32_t before = Flags();
    AcceptMessage();
    ChooseFromMenu(ResourceID::ShowOctree);
    EXPECT_EQ(GetMessages().size(), 1U);
    EXPECT_EQ(Flags(), before);
    EXPECT_FALSE(Action(ResourceID::ShowOctree).isChecked());
}

TEST_F(DisplayGuiTest, ShowsAnOctreeAndItsCheckMark)
{
    const OCTNODE octree;
    GLView().SetOctree(&octree);
    const std::uint32_t before = Flags();
    ChooseFromMenu(ResourceID::ShowOctree);
    EXPECT_EQ(Flags(), before | DisplayFlag::Octree);
    EXPECT_TRUE(Action(ResourceID::ShowOctree).isChecked());
    ChooseFromMenu(ResourceID::ShowOctree);
    EXPECT_EQ(Flags(), before);
    GLView().SetOctree(nullptr);
}

TEST_F(DisplayGuiTest, ReportsProjectionLinesOfListsOfDifferentSize)
{
    GLView().GetPointCloud().emplace_back(0, 0, 0);
    AcceptMessage();
    ChooseFromMenu(ResourceID::ShowProjectionLines);
    EXPECT_EQ(GetMessages().size(), 1U);
    EXPECT_FALSE(Action(ResourceID::ShowProjectionLines).isChecked());
}

TEST_F(DisplayGuiTest, SaysThatThereIsNoOriginalModel)
{
    AcceptMessage();
    ChooseFromMenu(ResourceID::ShowOriginalModel);
    EXPECT_EQ(GetMessages().size(), 1U);
}

TEST_F(DisplayGuiTest, HidesAndShowsTheOriginalModel)
{
    ImportTetrahedron();
    Frame().UpdateCommands();
    EXPECT_TRUE(Action(ResourceID::ShowOriginalModel).isChecked());
    const QImage shown = GrabView();
    ChooseFromMenu(ResourceID::ShowOriginalModel);
    EXPECT_FALSE(Action(ResourceID::ShowOriginalModel).isChecked());
    EXPECT_NE(GrabView(), shown);
    ChooseFromMenu(ResourceID::ShowOriginalModel);
    EXPECT_EQ(GrabView(), shown);
}

TEST_F(DisplayGuiTest, ChoosesTheSelectionTypeByButtonAndByMenu)
{
    const std::pair<int, std::uint32_t> types[] = {
        {32786, 0x5000002}, {32787, 0x5000003}, {32788, 0x5000004}, {32789, 0x5000005}};
    for (const auto& [id, type] : types)
    {
        ClickButton(id);
        EXPECT_EQ(GLView().GetSelectType(), type);
        for (const auto& [other, otherType] : types)
        {
            EXPECT_EQ(Action(other).isChecked(), other == id) << other;
        }
    }
    ChooseFromMenu(32786);
    EXPECT_EQ(GLView().GetSelectType(), 0x5000002U);
}
}
}
