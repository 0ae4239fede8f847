#include "MenuTables.h"
#include "Resources.h"
#include "resource.h"
#include <gmock/gmock.h>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace tessarine
{
namespace
{
using testing::ElementsAre;

void CollectIds(std::span<const MenuLine> lines, std::multiset<int>& ids)
{
    for (const MenuLine& line : lines)
    {
        CollectIds(line.items, ids);
        if (line.id != 0)
        {
            ids.insert(line.id);
        }
    }
}

std::multiset<int> GetMenuIds()
{
    std::multiset<int> ids;
    CollectIds(GetMenuBar(), ids);
    return ids;
}

std::vector<int> ToVector(std::span<const int> ids)
{
    return {ids.begin(), ids.end()};
}

const MenuLine* FindMenu(const std::string& title)
{
    for (const MenuLine& menu : GetMenuBar())
    {
        if (title == menu.title)
        {
            return &menu;
        }
    }
    return nullptr;
}

TEST(MenuTables, OrderTheMainToolbar)
{
    EXPECT_THAT(ToVector(GetMainToolbar()),
                ElementsAre(57600, 57601, 57603, 0, 32771, 32772, 32773, 32774, 0, 32778, 0, 32781, 32782,
                            32784, 0, 32826, 32831, 32832, 0, 32839, 57664));
}

TEST(MenuTables, OrderTheSelectToolbar)
{
    EXPECT_THAT(ToVector(GetSelectToolbar()), ElementsAre(32786, 32787, 32788, 32789, 32790));
}

TEST(MenuTables, HoldEveryEntryThatAMenuNames)
{
    const std::multiset<int> ids = GetMenuIds();
    for (const int id : {32775, 32783, 32778, 32835, 32805, 32794, 32796, 32828, 32829,
                         32834, 32821, 32840, 32841, 32802, 32803, 32804, 32830, 32842, // commands
                         32779, 32792, 32799, 32820, 32819,                             // display
                         32797, 32798, 32818, 32822, 32823, 32824, 32827, 32838,        // overlays
                         57600, 57601, 57603, 57604, 57643, 57635, 57634, 57637, 57664})
    {
        EXPECT_EQ(ids.count(id), 1U) << id;
    }
}

TEST(MenuTables, LeaveOutWhatHasNoMenuEntry)
{
    const std::multiset<int> ids = GetMenuIds();
    EXPECT_EQ(ids.count(32780), 0U);
    EXPECT_EQ(ids.count(32836), 0U);
    for (int id = 32806; id <= 32816; ++id)
    {
        EXPECT_EQ(ids.count(id), 0U) << id; // of the pop-up menu
    }
}

TEST(MenuTables, ReachEveryEntryOnceBesideThePopUp)
{
    std::multiset<int> ids = GetMenuIds();
    for (const int id : GetMainToolbar())
    {
        ids.insert(id);
    }
    for (const int id : GetSelectToolbar())
    {
        ids.insert(id);
    }
    for (const MenuEntry& entry : GetMenuEntries())
    {
        const bool isOfPopUp = (entry.id >= 32806 && entry.id <= 32816) || entry.id == 32833;
        const bool isUnreachable = isOfPopUp || entry.id == 32780 || entry.id == 32836;
        EXPECT_EQ(ids.count(entry.id) == 0, isUnreachable) << entry.id;
    }
}

TEST(MenuTables, HaveAPopUpForEachTypeOfSelectionButEdges)
{
    const std::vector<int> expected[] = {
        {32806, 32807, 32808, 32809}, {}, {32810, 32811, 32812, 32813}, {32814, 32815, 32816, 32833}};
    const char* const titles[] = {"顶点操作", "边操作", "面操作", "实体操作"};
    ASSERT_EQ(GetSelectionMenus().size(), 4U);
    for (std::size_t i = 0; i < 4; ++i)
    {
        EXPECT_STREQ(GetSelectionMenus()[i].title, titles[i]);
        std::multiset<int> ids;
        CollectIds(GetSelectionMenus()[i].items, ids);
        EXPECT_EQ(std::vector<int>(ids.begin(), ids.end()), expected[i]);
        for (const int id : ids)
        {
            EXPECT_NE(FindCommandText(id), nullptr) << id;
        }
    }
}

TEST(MenuTables, GatherTheOverlaysInTheirMenu)
{
    const MenuLine* menu = FindMenu("重构辅助显示(&A)");
    ASSERT_NE(menu, nullptr);
    std::multiset<int> ids;
    CollectIds(menu->items, ids);
    EXPECT_THAT(ids, ElementsAre(32797, 32798, 32818, 32822, 32823, 32824, 32827, 32838));
}

TEST(MenuTables, GiveEachMenuAKeyOfItsOwn)
{
    std::set<char> keys;
    for (const MenuLine& menu : GetMenuBar())
    {
        const std::string title = menu.title;
        const std::size_t key = title.find('&');
        ASSERT_NE(key, std::string::npos) << title;
        EXPECT_TRUE(keys.insert(title[key + 1]).second) << title;
    }
}

TEST(MenuTables, NameEveryEntry)
{
    for (const int id : GetMenuIds())
    {
        EXPECT_NE(FindCommandText(id), nullptr) << id;
    }
    for (const std::span<const int> bar : {GetMainToolbar(), GetSelectToolbar()})
    {
        for (const int id : bar)
        {
            if (id != 0)
            {
                ASSERT_NE(FindCommandText(id), nullptr) << id;
                EXPECT_NE(FindCommandText(id)->tip, nullptr) << id;
            }
        }
    }
}

TEST(MenuTables, SayWhatTheSplatButtonDoes)
{
    EXPECT_STREQ(FindCommandText(ResourceID::GenerateSplats)->status, "add splat in the scene");
}

TEST(MenuTables, KnowNoTextOfAnUnknownEntry)
{
    EXPECT_EQ(FindCommandText(1), nullptr);
}

/// Labels carry their keys behind a tab.
TEST(MenuTables, GiveAnEntryTheKeyOfItsLabel)
{
    std::map<int, std::string> firstKeys;
    for (const Accelerator& accelerator : GetAccelerators())
    {
        firstKeys.emplace(accelerator.id, accelerator.keys);
    }
    for (const MenuEntry& entry : GetMenuEntries())
    {
        const std::string label = entry.label;
        const std::size_t tab = label.find('\t');
        const std::string key = tab == std::string::npos ? "" : label.substr(tab + 1);
        EXPECT_EQ(firstKeys[entry.id], key) << label;
    }
}

TEST(MenuTables, UseNoKeyTwice)
{
    std::set<std::string> keys;
    for (const Accelerator& accelerator : GetAccelerators())
    {
        EXPECT_TRUE(keys.insert(accelerator.keys).second) << accelerator.keys;
    }
}

TEST(DocumentString, HasSevenFields)
{
    EXPECT_EQ(GetDocumentField(0), "Tessarine");
    EXPECT_EQ(GetDocumentField(1), "");
    EXPECT_EQ(GetDocumentField(2), "Tessar");
    EXPECT_EQ(GetDocumentField(3), "");
    EXPECT_EQ(GetDocumentField(4), "");
    EXPECT_EQ(GetDocumentField(5), "Tessarine.Document");
    EXPECT_EQ(GetDocumentField(6), "Tessar Document");
    EXPECT_EQ(GetDocumentField(7), "");
}

TEST(DocumentString, GivesTheTitleOfTheWindow)
{
    EXPECT_EQ(GetWindowTitle(""), "无标题 - Tessarine");
    EXPECT_EQ(GetWindowTitle("duck.obj"), "duck.obj - Tessarine");
}
}
}
