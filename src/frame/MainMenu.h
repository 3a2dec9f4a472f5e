#pragma once

#include <QHash>
#include <QString>

class QAction;
class QMenu;
class QMenuBar;
class QWidget;

/// The frame's menu bar, made from the menu table: an action for every entry, named as the entry
/// is, and a menu for every entry with a submenu.
class MainMenu {
public:
    /// Fills `bar`; the accelerators act wherever the focus is inside `frame`, once for each press
    /// of a key.
    MainMenu(QMenuBar &bar, QWidget &frame);

    /// Null for a name that the table does not hold.
    QAction *action(const QString &name) const { return m_actions.value(name); }
    /// Null for an entry without a submenu.
    QMenu *menu(const QString &name) const { return m_menus.value(name); }

    /// Gives every caption but the separators' its text in the current language; what the language
    /// does not have stays as it is shown.
    void translate();

private:
    QHash<QString, QAction *> m_actions;
    QHash<QString, QMenu *> m_menus;
};
