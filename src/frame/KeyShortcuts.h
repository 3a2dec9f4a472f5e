#pragma once

#include <QList>
#include <QObject>

class CommandTable;
class QMainWindow;
class QShortcut;

/// The keys of the key table in the frame: they act wherever the keyboard is in it, once for each
/// press, however long it is held.
class KeyShortcuts : public QObject {
    Q_OBJECT

public:
    KeyShortcuts(QMainWindow &window, CommandTable &commands);

    /// A menu's access key, which is another one in each language, goes before a key of the table.
    void yieldToMenus();

private:
    QMainWindow &m_window;
    QList<QShortcut *> m_shortcuts;
};
