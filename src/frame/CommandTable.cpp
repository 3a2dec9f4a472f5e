#include "CommandTable.h"

#include <QAction>
#include <QMenu>

#include "Log.h"
#include "MainMenu.h"
#include "MenuTable.h"
#include "Settings.h"

namespace {
/// What a toggle writes; null where the options dialog alone does, or nobody.
const Settings::Switch *settingOf(const QString &item)
{
    for (const Settings::Switch *each : Settings::switches) {
        if (each->form == Settings::TrueFalse && each->menuItem
            && item == QLatin1StringView(each->menuItem))
            return each;
    }
    return nullptr;
}
}

CommandTable::CommandTable(const MainMenu &menu, QObject *parent)
    : QObject(parent)
    , m_menu(menu)
{
    for (const MenuEntry &entry : menuTable()) {
        if (entry.kind == MenuEntry::Kind::Toggle)
            addToggle(QString::fromLatin1(entry.name));
        else if (const char *same = entry.details.same)
            handle(QString::fromLatin1(entry.name),
                   [this, same] { run(QString::fromLatin1(same)); });
    }
}

void CommandTable::addToggle(const QString &name)
{
    QAction *item = m_menu.action(name);
    const auto tell = [this, item, setting = settingOf(name)] {
        if (const ToggleHandler &handler = m_toggles.value(item))
            handler(item->isChecked());
        if (setting)
            setting->write(item->isChecked()).leaveToLog();
    };
    m_handlers.insert(name, [item, tell] {
        item->toggle();
        tell();
    });
    // Chosen by the user, the item has inverted its own mark by now.
    connect(item, &QAction::triggered, this, tell);
}

void CommandTable::handleToggle(const QAction *item, const ToggleHandler &handler)
{
    m_toggles.insert(item, handler);
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
        if (entry.kind == Menu || entry.kind == Separator)
            continue;
        const QString name = QString::fromLatin1(entry.name);
        if (!m_handlers.contains(name))
            result.append(name);
    }
    return result;
}
