#include "CommandBars.h"

#include <QAction>
#include <QMenu>

#include "BrowserWindow.h"
#include "Frame.h"
#include "HistoryMenu.h"
#include "Language.h"
#include "MenuTable.h"
#include "Settings.h"
#include "ThemedIcon.h"
#include "ToolBar.h"
#include "WebBrowser.h"
#include "Yield.h"

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
            bar.setToolTip(index, languageText(u"frmMain-Toolbar"_s, key, bar.toolTip(index)));
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
    followMarks();
    connect(&m_functions, &ToolBar::buttonClicked, this, &CommandBars::clickFunction);
    connect(&m_functions, &ToolBar::dropDown, this, &CommandBars::dropDown);
    connect(&m_browser, &ToolBar::buttonClicked, this, &CommandBars::clickBrowser);
    connect(&m_browser, &ToolBar::rightClicked, this, &CommandBars::showHistory);
    connect(&m_browser, &ToolBar::longPressed, this, &CommandBars::showHistory);
}

/// A toggle's button is pressed while it is marked, whoever sets the mark.
void CommandBars::followMarks()
{
    for (const MenuEntry &entry : menuTable()) {
        if (entry.kind != MenuEntry::Kind::Toggle || !entry.details.button)
            continue;
        const QAction *item = m_frame.menuItem(QString::fromLatin1(entry.name));
        const QString key = QString::fromLatin1(entry.details.button);
        for (ToolBar *bar : {&m_functions, &m_browser})
            connect(item, &QAction::toggled, bar,
                    [bar, key](bool on) { bar->setPressed(key, on); });
    }
}

void CommandBars::translate()
{
    translateToolTips(m_functions);
    translateToolTips(m_browser);
}

void CommandBars::clickFunction(const QString &key, int index)
{
    if (key == "New"_L1)
        m_frame.run(u"mnuFileNewCurrent"_s);
    else if (key == "Profile"_L1)
        m_frame.run(u"mnuFileProfiles"_s);
    else if (key == "Save"_L1)
        m_frame.run(u"mnuFileProfilesSave"_s);
    else if (key == "PopupKiller"_L1)
        m_frame.run(u"mnuToolsKillPopUps"_s);
    else if (key == "Favorites"_L1)
        m_frame.run(u"mnuFavoritesShow"_s);
    else if (key == "FontSize"_L1)
        dropDown(key, below(m_functions, index));
    letPendingEventsRun();
}

void CommandBars::clickBrowser(const QString &key)
{
    if (key == "Search"_L1)
        m_frame.run(u"mnuViewSearchBar"_s);
    else if (key == "Home"_L1)
        m_frame.navigateActive(Settings::homeUrl.read());
    else
        actOnPage(key);
    letPendingEventsRun();
}

void CommandBars::actOnPage(const QString &key)
{
    const BrowserWindow *active = activeBrowser(m_frame);
    if (!active)
        return;
    WebBrowser &page = *active->browser();
    if (key == "Back"_L1)
        page.goBack();
    else if (key == "Forward"_L1)
        page.goForward();
    else if (key == "Stop"_L1)
        page.stop();
    else if (key == "Refresh"_L1)
        page.refresh2(refreshCompletely);
}

void CommandBars::dropDown(const QString &key, const QPoint &place)
{
    if (key == "New"_L1)
        popUp(u"mnuFileNew"_s, place);
    else if (key == "FontSize"_L1 && m_frame.activeChild())
        popUp(u"mnuViewFontSize"_s, place);
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

void CommandBars::popUp(const QString &menuName, const QPoint &place)
{
    m_frame.menuItem(menuName)->menu()->popup(place);
}
