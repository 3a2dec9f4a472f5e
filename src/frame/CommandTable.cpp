#include "CommandTable.h"

#include <QAction>
#include <QMenu>
#include <algorithm>

#include "BrowserWindow.h"
#include "Clipboard.h"
#include "ContextTable.h"
#include "Frame.h"
#include "KeyTable.h"
#include "Log.h"
#include "MainMenu.h"
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

bool isPlainCommand(const QString &name)
{
    return std::ranges::any_of(plainCommands(), [&name](const PlainCommand &each) {
        return name == QLatin1StringView(each.name);
    });
}
}

CommandTable::CommandTable(const Frame &frame, const MainMenu &menu, QObject *parent)
    : QObject(parent)
    , m_frame(frame)
    , m_menu(menu)
{
    for (const MenuEntry &entry : menuTable()) {
        const QString name = QString::fromLatin1(entry.name);
        if (entry.kind == MenuEntry::Kind::Toggle)
            addToggle(name);
        else if (const char *same = entry.details.same)
            handle(name, [this, same] { run(QString::fromLatin1(same)); });
        // Its owner is asked when the user looks: asked at each change, one that does not answer
        // would hold the frame up while nobody wants to know.
        if (entry.details.need == MenuEntry::Need::ClipboardText)
            whenOpening(m_menu.action(name)->parent(), [] { clipboardHasText(); });
    }
    for (const MenuEntry &entry : menuTable()) {
        if (entry.kind == MenuEntry::Kind::Menu)
            connect(m_menu.menu(QString::fromLatin1(entry.name)), &QMenu::aboutToShow, this,
                    &CommandTable::followNeeds);
    }
    for (const ContextEntry &entry : contextTable()) {
        if (const char *same = entry.item.details.same) {
            handleAt(QString::fromLatin1(entry.item.name),
                     {.run = [this, same](const ContextCommand::Place &, int) {
                         run(QString::fromLatin1(same));
                     }});
        }
    }
    connect(m_frame.itemOf(Settings::toolBar), &QAction::toggled, this, &CommandTable::followNeeds);
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
    Q_ASSERT_X(action || isPlainCommand(name), "CommandTable", qPrintable(name));
    m_handlers.insert(name, handler);
    if (action)
        connect(action, &QAction::triggered, this,
                [this, name, action] { runFromMenu(name, *action); });
}

void CommandTable::handleAt(const QString &name, const ContextCommand &command)
{
    m_contextCommands.insert(name, command);
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
    m_rules.append(rule);
    whenOpening(m_menu.menu(name), rule);
}

void CommandTable::whenOpening(const QObject *menu, const Handler &act)
{
    for (; const auto *each = qobject_cast<const QMenu *>(menu); menu = each->parent())
        connect(each, &QMenu::aboutToShow, this, [act] { act(); });
}

bool CommandTable::isMet(MenuEntry::Need need) const
{
    using enum MenuEntry::Need;
    switch (need) {
    case Nothing:
        break;
    case Window:
        return m_frame.activeChild();
    case Page:
        return activeBrowser(m_frame);
    case Pages:
        return !browserForms().isEmpty();
    case ClipboardText:
        return clipboardMayHaveText();
    case ToolBar:
        return m_frame.isOn(Settings::toolBar);
    }
    return true;
}

void CommandTable::followNeeds() const
{
    for (const MenuEntry &entry : menuTable()) {
        if (entry.details.need != MenuEntry::Need::Nothing)
            m_menu.action(QString::fromLatin1(entry.name))->setEnabled(isMet(entry.details.need));
    }
}

void CommandTable::run(const QString &name)
{
    const Handler handler = m_handlers.value(name);
    if (handler)
        handler();
    else
        qCDebug(lcFrame) << "no handler for" << name;
}

void CommandTable::runByKey(const QString &name)
{
    if (QAction *item = m_menu.action(name))
        item->trigger();
    else
        run(name);
}

void CommandTable::refresh()
{
    followNeeds();
    for (const Handler &rule : std::as_const(m_rules))
        rule();
}

void CommandTable::close()
{
    for (const QString &name : unhandled())
        qCCritical(lcFrame) << "command without a handler:" << name;
    Q_ASSERT(unhandled().isEmpty());
    refresh();
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
    for (const PlainCommand &command : plainCommands()) {
        const QString name = QString::fromLatin1(command.name);
        if (!m_handlers.contains(name))
            result.append(name);
    }
    for (const ContextEntry &entry : contextTable()) {
        const QString name = QString::fromLatin1(entry.item.name);
        if (entry.item.kind != Separator && !m_contextCommands.contains(name))
            result.append(name);
    }
    return result;
}
