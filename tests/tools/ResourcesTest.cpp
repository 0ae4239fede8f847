#include "Resources.h"
#include "resource.h"
#include <gmock/gmock.h>
#include <map>
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
    const std::map<int, std::string> labels{
        {32775, "导入 ( .Obj )"},
        {32783, "导出为 (*.obj)"},
        {32778, "Loop 细分"},
        {32835, "自适应细分"},
        {32805, "投影采样"},
        {32794, "构造初始网格"},
        {32796, "层次细分算法"},
        {32828, "递增连接算法"},
        {32829, "两步对应算法"},
        {32834, "能量函数算法"},
        {32821, "Optimize 1"},
        {32840, "Optimize 2"},
        {32841, "Optimize 3"},
        {32802, "20%"},
        {32803, "50%"},
        {32804, "80%"},
        {32833, "设置材质"},
        {32839, "add splat in the scene"},
        {32836, "add splats in the model"},
        {32830, "纵横比"},
        {32842, "空间剖分算法"},
        {32779, "显示线框"},
        {32792, "显示纹理"},
        {32799, "显示点模型"},
        {32820, "面法向模式"},
        {32819, "点法向模式"},
        {57643, "撤消(&U)\tCtrl+Z"},
    };
    for (const auto& [id, label] : labels)
    {
        ASSERT_NE(FindMenuEntry(id), nullptr) << id;
        EXPECT_EQ(FindMenuEntry(id)->label, label) << id;
    }
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
