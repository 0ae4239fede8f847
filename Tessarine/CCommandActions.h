#pragma once
#include "IACommandRouter.h"
#include <functional>
#include <map>

class QAction;
class QWidget;

namespace tessarine
{
/// One action for each entry, shared by its menu and its toolbar: text, keys, picture, tool tip and status text
/// come from the tables.
class CCommandActions
{
public:
    using Runner = std::function<void(int id)>;
    using StateSource = std::function<MenuState(int id)>;

    /// @param owner of the actions, and the window where their keys work
    /// @param run is called with the number of the entry that the user chose
    CCommandActions(QWidget& owner, Runner run) : m_Owner(owner), m_Run(std::move(run)) {}

    /// The action of an entry, made on first use.
    /// @param title for an entry that the table of entries does not have
    QAction* Get(int id, const char* title = nullptr);

    /// Shows every action as its entry stands.
    void Update(const StateSource& getState);

private:
    QAction* Make(int id, const char* title);

    QWidget& m_Owner;
    Runner m_Run;
    std::map<int, QAction*> m_Actions;
};
}
