#include "CommandTable.h"

#include <QAction>
#include <QMenu>

#include "Log.h"
#include "MainMenu.h"
#include "MenuTable.h"

CommandTable::CommandTable(const MainMenu &menu, QObject *parent)
    : QObject(parent)
    , m_menu(menu)
{
}

void CommandTable::handle(const QString &name, const Handler &handler)
{
    QAction *action = m_menu.action(name);
    Q_ASSERT_X(action, "CommandTable", qPrintable(name));
    m_handlers.insert(name, handler);
    connect(action, &QAction::triggered, this,
            [this, name, action] { runFromMenu(name, *action); });
}

void CommandTable::runFromMenu(const QString &name, QAction &action)
{
    // A checkable action has flipped its own mark by now; the handler is to find the old one.
    if (action.isCheckable())
        action.setChecked(!action.isChecked());
    run(name);
}

void CommandTable::beforeOpening(const QString &name, const Handler &rule)
{
    QMenu *menu = m_menu.menu(name);
    Q_ASSERT_X(menu, "CommandTable", qPrintable(name));
    m_rules.append(rule);
    connect(menu, &QMenu::aboutToShow, this, [rule] { rule(); });
}

void CommandTable::run(const QString &name)
{
    const Handler handler = m_handlers.value(name);
    if (handler)
        handler();
    else
        qCDebug(lcFrame) << "no handler for" << name;
}

void CommandTable::refreshRules()
{
    for (const Handler &rule : std::as_const(m_rules))
        rule();
}

void CommandTable::close()
{
    for (const QString &name : unhandled())
        qCCritical(lcFrame) << "menu item without a handler:" << name;
    Q_ASSERT(unhandled().isEmpty());
    refreshRules();
}

QStringList CommandTable::unhandled() const
{
    using enum MenuEntry::Kind;
    QStringList result;
    for (const MenuEntry &entry : menuTable()) {
        if (entry.kind != Item && entry.kind != Check)
            continue;
        const QString name = QString::fromLatin1(entry.name);
        if (!m_handlers.contains(name))
            result.append(name);
    }
    return result;
}
