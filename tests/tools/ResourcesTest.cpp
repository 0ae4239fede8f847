#include "Resources.h"
#include "resource.h"
#include <gmock/gmock.h>
#include <set>
#include <string>

namespace tessarine
{
namespace
{
std::set<int> IdsOf(MenuHandler handler)
{
    std::set<int> ids;
    for (const MenuEntry& entry : GetMenuEntries())
    {
        if (entry.handler == handler)
        {
            ids.insert(entry.id);
        }
    }
    return ids;
}

TEST(Resources, KnowTheDocumentsEntries)
{
    EXPECT_THAT(IdsOf(MenuHandler::Document),
                testing::ElementsAre(32775, 32778, 32783, 32794, 32796, 32802, 32803, 32804, 32805, 32821,
                                     32826, 32828, 32829, 32831, 32832, 32833, 32834, 32835, 32839, 32840,
                                     32841));
}

TEST(Resources, KnowTheViewsEntries)
{
    EXPECT_THAT(IdsOf(MenuHandler::View),
                testing::ElementsAre(32771, 32772, 32773, 32774, 32779, 32780, 32781, 32782, 32784, 32786,
                                     32787, 32788, 32789, 32790, 32792, 32797, 32798, 32799, 32806, 32807,
                                     32808, 32809, 32810, 32811, 32812, 32813, 32814, 32815, 32816, 32818,
                                     32819, 32820, 32822, 32823, 32824, 32827, 32836, 32838));
}

TEST(Resources, KnowTheFrameworksEntries)
{
    EXPECT_THAT(IdsOf(MenuHandler::Framework), testing::ElementsAre(57600, 57601, 57603, 57604, 57664));
}

TEST(Resources, KnowTheEntriesThatNobodyAnswers)
{
    EXPECT_THAT(IdsOf(MenuHandler::None), testing::ElementsAre(32830, 32842, 57634, 57635, 57637, 57643));
}

TEST(Resources, LabelEveryEntry)
{
    for (const MenuEntry& entry : GetMenuEntries())
    {
        EXPECT_STRNE(entry.label, "") << entry.id;
    }
}

TEST(Resources, SpellTheGivenLabels)
{
    EXPECT_STREQ(FindMenuEntry(32775)->label, "导入 ( .Obj )");
    EXPECT_STREQ(FindMenuEntry(32783)->label, "导出为 (*.obj)");
    EXPECT_STREQ(FindMenuEntry(32778)->label, "Loop 细分");
    EXPECT_STREQ(FindMenuEntry(32802)->label, "20%");
    EXPECT_STREQ(FindMenuEntry(57643)->label, "撤消(&U)\tCtrl+Z");
}

TEST(Resources, FindNoEntryForAnUnknownNumber)
{
    EXPECT_EQ(FindMenuEntry(0), nullptr);
    EXPECT_EQ(FindMenuEntry(32785), nullptr);
    EXPECT_EQ(FindMenuEntry(-1), nullptr);
}

TEST(Resources, HaveTheNumbersOfPanesAndDialogs)
{
    EXPECT_EQ(ResourceID::VertexPane, 59144);
    EXPECT_EQ(ResourceID::FacePane, 59143);
    EXPECT_EQ(ResourceID::CameraPane, 59142);
    EXPECT_EQ(ResourceID::SetLightingDialog, 135);
    EXPECT_EQ(ResourceID::SetMaterialDialog, 141);
    EXPECT_EQ(ResourceID::SubdivisionDialog, 143);
    EXPECT_EQ(ResourceID::SelectionMenu, 139);
}
}
}
