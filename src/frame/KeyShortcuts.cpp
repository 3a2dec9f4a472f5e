#include "KeyShortcuts.h"

#include "CommandTable.h"
#include "KeyTable.h"

#include <QAction>
#include <QMainWindow>
#include <QMenuBar>
#include <QShortcut>

KeyShortcuts::KeyShortcuts(QMainWindow &window, CommandTable &commands)
    : QObject(&window)
    , m_window(window)
{
    for (const KeyEntry &entry : keyTable()) {
        auto *shortcut = new QShortcut(QKeySequence(QLatin1StringView(entry.key)), &window);
        shortcut->setAutoRepeat(false);
        connect(
            shortcut, &QShortcut::activated, &commands,
            [&commands, name = QString::fromLatin1(entry.command)] { commands.runByKey(name); });
        m_shortcuts.append(shortcut);
    }
    yieldToMenus();
}

void KeyShortcuts::yieldToMenus()
{
    QList<QKeySequence> taken;
    const QList<QAction *> menus = m_window.menuBar()->actions();
    for (const QAction *menu : menus)
        taken.append(QKeySequence::mnemonic(menu->text()));
    for (QShortcut *shortcut : std::as_const(m_shortcuts))
        shortcut->setEnabled(!taken.contains(shortcut->key()));
}
