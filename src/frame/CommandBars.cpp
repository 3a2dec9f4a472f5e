#include "CommandBars.h"

#include <QAction>
#include <QMenu>

#include "BrowserWindow.h"
#include "Frame.h"
#include "HistoryMenu.h"
#include "MenuTable.h"
#include "Texts.h"
#include "ThemedIcon.h"
#include "ToolBar.h"
#include "WebBrowser.h"

using namespace Qt::StringLiterals;

namespace {

struct ButtonEntry {
    const char *key;
    const char *toolTip;
    const char *icon;
    ToolBar::Style style = ToolBar::Style::Push;
};

constexpr ButtonEntry functionButtons[] = {
    {"New", "New Window", "new", ToolBar::Style::DropDown},
    {"Profile", "Open Profile", "profile"},
    {"Save", "Save Profile", "save"},
    {"PopupKiller", "Popup Killer", "popupkiller", ToolBar::Style::Check},
    {"Favorites", "Favorites", "favorites", ToolBar::Style::Check},
    {"FontSize", "Font Size", "fontsize", ToolBar::Style::Menu},
};

constexpr ButtonEntry browserButtons[] = {
    {"Back", "Backwards", "back"}, {"Forward", "Forwards", "forward"},
    {"Stop", "Stop", "stop"},      {"Refresh", "Refresh", "refresh"},
    {"Home", "Home", "home"},      {"Search", "Search", "search", ToolBar::Style::Check},
};

/// Level of a refresh that loads everything anew, past the cache.
constexpr int refreshCompletely = 3;

template <typename Table> void fill(ToolBar &bar, const Table &table)
{
    for (const ButtonEntry &entry : table)
        bar.addButton(QString::fromLatin1(entry.key), QString::fromLatin1(entry.toolTip),
                      themedIcon(QString::fromLatin1(entry.icon)), entry.style);
}

void translateToolTips(ToolBar &bar)
{
    for (int index = 1; index <= bar.buttonCount(); ++index) {
        const QString key = bar.buttonKey(index);
        if (!key.isEmpty())
            bar.setToolTip(index, Texts<"frmMain-Toolbar">::named(key, bar.toolTip(index)));
    }
}

/// Where a button's menu belongs: under its left edge; at the bar's end for one that does not fit.
QPoint below(ToolBar &bar, int index)
{
    const QRect button = bar.buttonRect(index);
    if (button.isNull())
        return bar.mapToGlobal(QPoint(bar.width(), bar.height()));
    return bar.mapToGlobal(QPoint(button.left(), button.top() + button.height()));
}

}

CommandBars::CommandBars(Frame &frame, ToolBar &functions, ToolBar &browser, QObject *parent)
    : QObject(parent)
    , m_frame(frame)
    , m_functions(functions)
    , m_browser(browser)
{
    fill(m_functions, functionButtons);
    fill(m_browser, browserButtons);
    for (ToolBar *bar : {&m_functions, &m_browser}) {
        connect(bar, &ToolBar::buttonClicked, this,
                [this, bar](const QString &key, int index) { click(*bar, key, index); });
        connect(bar, &ToolBar::dropDown, this, &CommandBars::popUp);
    }
    connect(&m_browser, &ToolBar::rightClicked, this, &CommandBars::showHistory);
    connect(&m_browser, &ToolBar::longPressed, this, &CommandBars::showHistory);
    for (const MenuEntry &entry : menuTable()) {
        if (entry.details.button)
            tie(entry);
    }
}

void CommandBars::tie(const MenuEntry &entry)
{
    using enum MenuEntry::Kind;
    QAction *item = m_frame.menuItem(QString::fromLatin1(entry.name));
    const QString key = QString::fromLatin1(entry.details.button);
    (entry.kind == Menu ? m_menus : m_commands).insert(key, item);
    if (entry.kind != Toggle)
        return;
    // Whoever sets the mark.
    for (ToolBar *bar : {&m_functions, &m_browser})
        connect(item, &QAction::toggled, bar, [bar, key](bool on) { bar->setPressed(key, on); });
}

void CommandBars::translate()
{
    translateToolTips(m_functions);
    translateToolTips(m_browser);
}

void CommandBars::click(ToolBar &bar, const QString &key, int index)
{
    if (const QAction *item = m_commands.value(key))
        m_frame.run(item->objectName());
    else if (m_menus.contains(key))
        popUp(key, below(bar, index));
    else if (const BrowserWindow *active = activeBrowser(m_frame))
        active->browser()->refresh2(refreshCompletely);
}

void CommandBars::popUp(const QString &key, const QPoint &place)
{
    const QAction *item = m_menus.value(key);
    if (item && item->isEnabled())
        item->menu()->popup(place);
}

void CommandBars::showHistory(const QString &key, const QPoint &place)
{
    const BrowserWindow *active = activeBrowser(m_frame);
    if (!active || (key != "Back"_L1 && key != "Forward"_L1))
        return;
    const auto direction = key == "Back"_L1 ? HistoryDirection::Back : HistoryDirection::Forward;
    QMenu *menu = makeHistoryMenu(*active->browser(), direction, m_frame.window());
    if (menu)
        menu->popup(place);
}
