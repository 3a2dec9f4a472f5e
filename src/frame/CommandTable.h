#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <functional>

#include "ContextCommand.h"
#include "MenuTable.h"

class Frame;
class MainMenu;
class QAction;

/// What each menu item does, and each command that no menu has. A tool bar button or another
/// command runs the same handler through here, whether the item is enabled or not.
class CommandTable : public QObject {
    Q_OBJECT

public:
    using Handler = std::function<void()>;
    using ToggleHandler = std::function<void(bool on)>;

    CommandTable(const Frame &frame, const MainMenu &menu, QObject *parent);

    /// The handler of `name`. A check item's mark is the old one when its handler runs, however it
    /// was run.
    void handle(const QString &name, const Handler &handler);
    /// What the toggle `item` does with its new mark, between inverting and storing it: here alone
    /// both happen, once, however it was run.
    void handleToggle(const QAction *item, const ToggleHandler &handler);
    /// What the line `name` of the menus that open on pages does.
    void handleAt(const QString &name, const ContextCommand &command);
    ContextCommand commandAt(const QString &name) const { return m_contextCommands.value(name); }
    /// `rule` runs before the menu `name`, or one that it is in, opens, and at `refresh`.
    void beforeOpening(const QString &name, const Handler &rule);

    void run(const QString &name);
    /// As `run`, but as little as the menu does it runs an item that is not enabled.
    void runByKey(const QString &name);
    /// Enables every entry whose need is met, disables the others that have one, and runs every
    /// rule: for when the active window or the clipboard changes, so that accelerators are not dead
    /// because a menu was last opened under other conditions.
    void refresh();

    /// To be called once all handlers are in. In a debug build it stops when an item has none.
    void close();
    /// Names of items, plain commands and lines of pages' menus without a handler.
    QStringList unhandled() const;

private:
    void addToggle(const QString &name);
    void runFromMenu(const QString &name, QAction &action);
    /// Runs `act` before `menu`, or one that it is in, opens.
    void whenOpening(const QObject *menu, const Handler &act);
    bool isMet(MenuEntry::Need need) const;
    void followNeeds() const;

    const Frame &m_frame;
    const MainMenu &m_menu;
    QHash<QString, Handler> m_handlers;
    QHash<const QAction *, ToggleHandler> m_toggles;
    QHash<QString, ContextCommand> m_contextCommands;
    QList<Handler> m_rules;
};
