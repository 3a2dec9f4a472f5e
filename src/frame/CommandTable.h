#pragma once

#include <QHash>
#include <QObject>
#include <QString>
#include <functional>

class MainMenu;
class QAction;

/// What each menu item does. A tool bar button or another command runs the same handler through
/// here, whether the item is enabled or not.
class CommandTable : public QObject {
    Q_OBJECT

public:
    using Handler = std::function<void()>;

    CommandTable(const MainMenu &menu, QObject *parent);

    /// The handler of `name`. A check item's mark is still the old one when its handler runs,
    /// however it was run: the handler inverts it, once.
    void handle(const QString &name, const Handler &handler);
    /// `rule` runs before the menu `name` opens and at `refreshRules`; it enables and disables.
    void beforeOpening(const QString &name, const Handler &rule);

    void run(const QString &name);
    /// Runs every rule: for when the active window or the clipboard changes, so that accelerators
    /// are not dead because a menu was last opened under other conditions.
    void refreshRules();

    /// To be called once all handlers are in. In a debug build it stops when an item has none.
    void close();
    /// Names of items without a handler.
    QStringList unhandled() const;

private:
    void runFromMenu(const QString &name, QAction &action);

    const MainMenu &m_menu;
    QHash<QString, Handler> m_handlers;
    QList<Handler> m_rules;
};
