#include "CCommandActions.h"
#include "MenuTables.h"
#include "Pictures.h"
#include "Resources.h"
#include <QAction>
#include <QWidget>

namespace tessarine
{
namespace
{
QList<QKeySequence> GetKeys(int id)
{
    QList<QKeySequence> keys;
    for (const Accelerator& accelerator : GetAccelerators())
    {
        if (accelerator.id == id)
        {
            keys.append(QKeySequence(accelerator.keys));
        }
    }
    return keys;
}

void SetTexts(QAction& action, int id)
{
    const CommandText* text = FindCommandText(id);
    action.setStatusTip(text != nullptr ? text->status : "");
    if (text != nullptr && text->tip != nullptr)
    {
        action.setToolTip(text->tip);
    }
}
}

QAction* CCommandActions::Get(int id, const char* title)
{
    QAction*& action = m_Actions[id];
    if (action == nullptr)
    {
        action = Make(id, title);
    }
    return action;
}

QAction* CCommandActions::Make(int id, const char* title)
{
    const MenuEntry* entry = FindMenuEntry(id);
    // The keys behind the tab of a label come from the accelerators.
    const QString label = QString(entry != nullptr ? entry->label : title).section('\t', 0, 0);
    auto* action = new QAction(LoadPicture(id), label, &m_Owner);
    action->setObjectName(QString::number(id));
    action->setCheckable(entry != nullptr && entry->check != MenuCheck::None);
    action->setShortcuts(GetKeys(id));
    action->setIconVisibleInMenu(false);
    action->setMenuRole(QAction::NoRole);
    SetTexts(*action, id);
    m_Owner.addAction(action);
    QObject::connect(action, &QAction::triggered, &m_Owner, [this, id] { m_Run(id); });
    return action;
}

void CCommandActions::Update(const StateSource& getState)
{
    for (const auto& [id, action] : m_Actions)
    {
        const MenuState state = getState(id);
        action->setEnabled(state.enabled);
        action->setChecked(state.checked);
    }
}
}
