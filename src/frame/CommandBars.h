#pragma once

#include <QHash>
#include <QObject>
#include <QString>

class Frame;
class QAction;
class ToolBar;
struct MenuEntry;

/// The two tool bars of commands, `tbFunctions` and `tbBrowser`. Buttons are told apart by key. The
/// menu table ties them to the menu entries whose handlers they run and whose menus they open, so
/// that menu and button behave alike; Refresh alone has no entry, it loads past the cache.
class CommandBars : public QObject {
    Q_OBJECT

public:
    CommandBars(Frame &frame, ToolBar &functions, ToolBar &browser, QObject *parent);

    /// Tool tips in the current language, looked up by button key.
    void translate();

private:
    void tie(const MenuEntry &entry);
    void click(ToolBar &bar, const QString &key, int index);
    /// The menu of a button, unless there is none or it cannot be used now.
    void popUp(const QString &key, const QPoint &place);
    /// The history behind the buttons Back and Forward.
    void showHistory(const QString &key, const QPoint &place);

    Frame &m_frame;
    ToolBar &m_functions;
    ToolBar &m_browser;
    /// By the button's key.
    QHash<QString, QAction *> m_commands;
    QHash<QString, QAction *> m_menus;
};
