#pragma once
#include <span>
#include <string>
#include <string_view>

/// The menu bar, the toolbars, the accelerators and the texts of the status line, as plain data. What an entry
/// is called and who answers it stands in Resources.h; here stands where it is found.
namespace tessarine
{
/// One line of a menu: an entry, a separator (no id and no items), or a sub-menu.
struct MenuLine
{
    int id = 0;
    const char* title = nullptr;     ///< of a sub-menu, and of an entry that Resources.h does not have
    std::span<const MenuLine> items; ///< of a sub-menu
};

/// The menus from the left.
std::span<const MenuLine> GetMenuBar();

/// The sub-menus of the pop-up menu of the selection, in their order.
std::span<const MenuLine> GetSelectionMenus();

/// The buttons from the left; 0 stands for a separator.
std::span<const int> GetMainToolbar();
std::span<const int> GetSelectToolbar();

/// Keys that run an entry. An entry may have several lines; its first is the one that its menu shows.
struct Accelerator
{
    int id;
    const char* keys; ///< as "Ctrl+N"
};
std::span<const Accelerator> GetAccelerators();

/// What is said about an entry while the mouse is over it.
struct CommandText
{
    int id;
    const char* status; ///< in the status line
    const char* tip;    ///< beside the toolbar button; null where the entry has none
};

/// The texts of an entry, or null.
const CommandText* FindCommandText(int id);

/// The document's string, field by field: title of the window, name of a document, name of a new one, filter
/// and ending of its files, and the two names of its type.
inline constexpr std::string_view kDocumentString =
    "Tessarine\n\nTessar\n\n\nTessarine.Document\nTessar Document";

/// A field of the document's string, counted from 0; empty where it has no such field.
std::string_view GetDocumentField(int index);

/// The title of the window with the document of a name; an empty one has none yet.
std::string GetWindowTitle(std::string_view documentName);
}
