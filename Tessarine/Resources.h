#pragma once
#include <cstdint>
#include <span>

namespace tessarine
{
/// Who answers a menu, toolbar or pop-up entry.
enum class MenuHandler
{
    Framework, ///< the application's own entries: new, open, save, about
    Document,  ///< one operation of the controller
    View,      ///< tools, switches, dialogs
    None       ///< nobody: the entry is shown disabled
};

/// What an entry's check mark shows.
enum class MenuCheck
{
    None,
    DisplayFlag,  ///< a bit of the view's display flags is set
    SelectType,   ///< the selection takes this type
    Tool,         ///< this tool is on top
    OriginalModel ///< the root's first child is visible
};

/// One entry of the menus, toolbars and pop-ups.
struct MenuEntry
{
    int id;
    const char* label;
    MenuHandler handler;
    MenuCheck check = MenuCheck::None;
    std::uint32_t checkValue = 0;
};

/// The one table of entries, in the order of their numbers.
std::span<const MenuEntry> GetMenuEntries();

/// The entry of a number, or null.
const MenuEntry* FindMenuEntry(int id);
}
