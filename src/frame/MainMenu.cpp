#include "MainMenu.h"

#include <QAction>
#include <QKeySequence>
#include <QMenu>
#include <QMenuBar>
#include <array>

#include "MenuTable.h"
#include "Texts.h"

MainMenu::MainMenu(QMenuBar &bar, QWidget &frame)
{
    using enum MenuEntry::Kind;
    constexpr int deepest = 3;
    std::array<QMenu *, deepest> open{};

    for (const MenuEntry &entry : menuTable()) {
        const QString name = QString::fromLatin1(entry.name);
        const QString caption = QString::fromUtf8(entry.caption);
        QAction *action = nullptr;
        if (entry.kind == Menu) {
            QMenu *menu =
                entry.depth == 0 ? bar.addMenu(caption) : open[entry.depth - 1]->addMenu(caption);
            menu->setObjectName(name);
            open[entry.depth] = menu;
            m_menus.insert(name, menu);
            action = menu->menuAction();
        } else if (entry.kind == Separator) {
            action = open[entry.depth - 1]->addSeparator();
        } else {
            action = open[entry.depth - 1]->addAction(caption);
            action->setCheckable(entry.kind == Check || entry.kind == Toggle);
            action->setChecked(entry.details.checked);
            action->setMenuRole(QAction::NoRole);
        }
        if (entry.details.key) {
            action->setShortcut(QKeySequence(QLatin1StringView(entry.details.key)));
            action->setShortcutContext(Qt::WindowShortcut);
            action->setAutoRepeat(false);
            frame.addAction(action);
        }
        action->setObjectName(name);
        m_actions.insert(name, action);
    }
}

void MainMenu::translate()
{
    for (const MenuEntry &entry : menuTable()) {
        if (entry.kind == MenuEntry::Kind::Separator)
            continue;
        const QString name = QString::fromLatin1(entry.name);
        QAction *action = m_actions.value(name);
        action->setText(Texts<"frmMain">::named(name, action->text()));
    }
}
