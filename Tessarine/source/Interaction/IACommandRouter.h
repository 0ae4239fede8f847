#pragma once
#include <string>

namespace tessarine
{
class IAWorkbench;

/// How an entry of a menu or toolbar is shown.
struct MenuState
{
    bool enabled = false;
    bool checked = false;
};

/// Takes the number of a menu, toolbar or pop-up entry to what it does, and to how it is shown: one way for
/// the window and for the batch tool.
class IACommandRouter
{
public:
    explicit IACommandRouter(IAWorkbench& workbench) : m_Workbench(workbench) {}

    /// Runs the entry through the workbench's boundary.
    ///
    /// Fails   A number that no entry has, and a disabled entry: the user is told.
    /// @param operation names it to the user
    /// @return whether it ran to its end
    bool Run(const std::string& operation, int id);

    /// A number that no entry has is disabled.
    MenuState GetState(int id) const;

private:
    IAWorkbench& m_Workbench;
};
}
