#pragma once

#include <QObject>
#include <QPointer>

class BrowserWindow;
class CommandTable;
class Frame;
class QMenu;
struct ContextEntry;
struct ContextTarget;

/// The menus that open on pages: the lines of the table that apply to what was clicked. A menu goes
/// with the page that it was opened on, and only one is there at a time.
class ContextMenus : public QObject {
    Q_OBJECT

public:
    ContextMenus(Frame &frame, CommandTable &commands, QObject *parent);

    /// Menus open where the user wants one in `window` from now on.
    void follow(BrowserWindow &window);

private:
    void open(BrowserWindow &window, const ContextTarget &target);
    void addLine(QMenu &menu, const ContextEntry &entry, BrowserWindow &window,
                 const ContextTarget &target);
    void close();

    Frame &m_frame;
    CommandTable &m_commands;
    QPointer<QMenu> m_menu;
    /// Whose page it was opened on; compared only.
    const BrowserWindow *m_window = nullptr;
};
