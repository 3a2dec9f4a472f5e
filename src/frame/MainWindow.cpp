#include "MainWindow.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QLabel>
#include <QMdiSubWindow>
#include <QMenuBar>
#include <QVBoxLayout>

#include "AddressBox.h"
#include "AddressHost.h"
#include "ApplySettings.h"
#include "BandFocus.h"
#include "BandLayout.h"
#include "BlockedList.h"
#include "BrowserWindow.h"
#include "Clipboard.h"
#include "CommandBars.h"
#include "ContextMenus.h"
#include "CoolBand.h"
#include "CoolBar.h"
#include "DownloadList.h"
#include "DownloadNews.h"
#include "DownloadStrip.h"
#include "Downloads.h"
#include "DownloadsWindow.h"
#include "ExitQuestion.h"
#include "Factory.h"
#include "FavoritesBar.h"
#include "FocusReturn.h"
#include "Forms.h"
#include "FrameAddress.h"
#include "FrameBody.h"
#include "FrameFullScreen.h"
#include "FrameOpener.h"
#include "GripGuard.h"
#include "InnerWindow.h"
#include "KeyShortcuts.h"
#include "LegibleHints.h"
#include "LinksBar.h"
#include "MdiArea.h"
#include "NavigationCommands.h"
#include "NavigationFlags.h"
#include "PageQuestions.h"
#include "PlainCaption.h"
#include "PopupCommands.h"
#include "ProgramIcon.h"
#include "ProgramInfo.h"
#include "ScreenFit.h"
#include "SearchBar.h"
#include "Settings.h"
#include "SideBarCommands.h"
#include "Splash.h"
#include "TabStrip.h"
#include "Texts.h"
#include "ThemedIcon.h"
#include "ToolBar.h"
#include "ToolBarCommands.h"
#include "WindowMenu.h"
#include "Yield.h"

using namespace Qt::StringLiterals;

namespace {

constexpr QSize designSize(1100, 760);

template <typename Bar> Bar *named(Bar *bar, const char *name)
{
    bar->setObjectName(QLatin1StringView(name));
    return bar;
}

}

MainWindow::MainWindow()
    : m_menu(*menuBar(), *this)
    , m_commands(*this, m_menu, this)
    , m_contextMenus(new ContextMenus(*this, m_commands, this))
    , m_windows(new MdiArea)
    , m_coolBar(named(new CoolBar, "CoolBar1"))
    , m_body(new FrameBody(*m_coolBar, *m_windows, this))
    , m_functionsBar(named(new ToolBar, "tbFunctions"))
    , m_browserBar(named(new ToolBar, "tbBrowser"))
    , m_linksToolBar(named(new ToolBar, "tbLinks"))
    , m_tabs(named(new TabStrip(themedIcon(u"page"_s)), "tbWindows"))
    , m_addressBox(named(new AddressBox, "brwURL1"))
    , m_address(new FrameAddress(*m_addressBox, *this, *m_windows))
    , m_commandBars(new CommandBars(*this, *m_functionsBar, *m_browserBar, this))
    , m_links(new LinksBar(*this, *m_linksToolBar, this))
    , m_favoritesBar(named(new FavoritesBar(*this), "FavoritesBar1"))
    , m_searchBar(named(new SearchBar, "SearchBar1"))
    , m_notices(new QWidget)
    , m_downloads(new DownloadStrip(downloadList()))
    , m_opener(new FrameOpener(*this))
{
    setObjectName("frmMain"_L1);
    new PlainCaption(*this);
    new LegibleHints(*this);
    setWindowTitle(ProgramInfo::title());
    setWindowIcon(programIcon());
    setContextMenuPolicy(Qt::NoContextMenu);
    setCentralWidget(m_body);
    resizeToScreen(*this, designSize);
    m_body->addSideBar(*m_favoritesBar);
    m_body->addSideBar(*m_searchBar);
    (new QVBoxLayout(m_notices))->setContentsMargins({});
    m_body->addStrip(*m_notices);
    m_body->addStrip(*m_downloads);
    makeBands();
    connectDownloads();
    joinPlaces();
    const auto giveBack = [this] { m_windows->takeFocus(); };
    new FocusReturn(*this, giveBack);
    new GripGuard(*this, *m_coolBar, giveBack);
    registerCommands();
    connect(m_windows, &MdiArea::activeChildChanged, &m_commands, &CommandTable::refresh);
    watchClipboard();
    connect(QApplication::clipboard(), &QClipboard::dataChanged, &m_commands,
            &CommandTable::refresh);
    m_commands.refresh();
}

/// By F6.
void MainWindow::joinPlaces()
{
    BandFocus::Page page;
    page.question = [this] {
        const BrowserWindow *browser = activeBrowser(*this);
        return browser ? browser->questions()->shownQuestion() : nullptr;
    };
    page.focus = [this] {
        InnerWindow *active = activeInner(*this);
        const bool isSeen = active && active->widget()->isVisible();
        if (isSeen)
            active->focusContents();
        return isSeen;
    };
    new BandFocus(*this, *m_coolBar, {m_favoritesBar, m_searchBar, m_notices, m_downloads}, page);
}

void MainWindow::registerCommands()
{
    QMenu &openBrowsers = *m_menu.menu(u"mnuWindowOpenBrowsers"_s);
    registerWindowCommands(*this, *m_windows, openBrowsers);
    connectTabStrip(*m_tabs, *this, openBrowsers);
    registerToolBarCommands(*this, *m_coolBar, *m_body, *m_links);
    registerNavigationFlags(*this);
    registerNavigationCommands(*this);
    registerPopupCommands(*this);
    registerSideBarCommands(*this, *m_favoritesBar, *m_searchBar);
    new FrameFullScreen(*this, *this, *m_body, *m_coolBar);
    const auto *keys = new KeyShortcuts(*this, m_commands);
    connect(this, &MainWindow::translated, keys, &KeyShortcuts::yieldToMenus);
}

MainWindow::~MainWindow()
{
    // Hiding moves the focus, and open windows take their tabs with them: both while all is there.
    hide();
    delete m_windows;
}

void MainWindow::makeBands()
{
    auto *icon = named(new QLabel, "pctIcon");
    icon->setAlignment(Qt::AlignCenter);
    icon->setFixedWidth(28);
    m_coolBar->addBand(u"Functions"_s, m_functionsBar, {}, 3600, false);
    m_coolBar->addBand(u"Browser"_s, m_browserBar, {}, 3600, false)->setName(u"Navigation"_s);
    m_coolBar->addBand(u"Address"_s, new AddressHost(*m_addressBox), u"Address:"_s, 24000, true)
        ->setName(u"Address Bar"_s);
    m_coolBar->addBand(u"Links"_s, m_linksToolBar, {}, 24000, true)->setName(u"Favorite Links"_s);
    m_coolBar->addBand(u"Tabs"_s, m_tabs, {}, 24000, true)->setName(u"Tab Strip"_s);
    m_coolBar->addBand(u"Icon"_s, icon, {}, 600, false);
}

void MainWindow::connectDownloads()
{
    const auto showList = [this] { run(u"mnuToolsDownloads"_s); };
    connect(m_downloads, &DownloadStrip::clicked, this, showList);
    connect(m_windows, &MdiArea::activeChildChanged, m_downloads, [this](QMdiSubWindow *child) {
        m_downloads->setListSeen(qobject_cast<DownloadsWindow *>(child));
    });
    connect(new DownloadNews(downloadList(), this), &DownloadNews::listWanted, this,
            [this, showList] {
                comeToFront();
                showList();
            });
}

void MainWindow::comeToFront()
{
    setWindowState(windowState() & ~Qt::WindowMinimized);
    raise();
    activateWindow();
}

void MainWindow::load()
{
    if (m_loaded)
        return;
    m_loaded = true;
    Forms::add(this);
    findChild<QLabel *>(u"pctIcon"_s)
        ->setPixmap(windowIcon().pixmap(QSize(16, 16), devicePixelRatio()));
    applySettings(*this, *m_coolBar, *m_links);
    restoreBandLayout(*m_coolBar);
    show();
    letPendingEventsRun();
    if (!m_closed && Settings::showSplash.isOne())
        showSplash(this);
    letPendingEventsRun();
    loadBlockedList();
    if (!m_closed)
        m_opener->openFirst(m_commandLine, m_startPrivacy);
}

void MainWindow::translate()
{
    m_menu.translate();
    m_commandBars->translate();
    CoolBand &address = *m_coolBar->band(u"Address"_s);
    address.setCaption(Texts<"frmMain">::at<"lblAddress", "Address:">(address.caption()));
    m_coolBar->translate();
    m_searchBar->loadLanguage();
    m_downloads->translate();
    for (InnerWindow *window : innerForms())
        window->translate();
    emit translated();
}

void MainWindow::addNotice(QWidget &notice)
{
    m_notices->layout()->addWidget(&notice);
}

void MainWindow::adopt(QMdiSubWindow *child)
{
    m_windows->adopt(child);
    if (const auto *inner = qobject_cast<InnerWindow *>(child))
        connect(inner, &InnerWindow::frontWanted, this, [this, inner] {
            comeToFront();
            activateTab(*this, inner->tabKey());
        });
    if (auto *browser = qobject_cast<BrowserWindow *>(child))
        m_contextMenus->follow(*browser);
}

QMdiSubWindow *MainWindow::activeChild() const
{
    return m_windows->activeChild();
}

void MainWindow::openBrowserWindow(const QString &url, WindowState state)
{
    if (!m_closed)
        ::openBrowserWindow(*this, url, state);
}

void MainWindow::openPrivateWindow(const QString &url, WindowState state)
{
    if (!m_closed)
        ::openPrivateWindow(*this, url, state);
}

void MainWindow::navigateActive(const QString &url)
{
    ::navigateActive(*this, url);
}

WindowState MainWindow::newWindowState() const
{
    return activeChild() ? WindowState::AsOthers : WindowState::Maximized;
}

bool MainWindow::openProfile(const QString &file, bool quiet)
{
    return !m_closed && m_opener->openProfile(file, quiet);
}

WindowTabs &MainWindow::windowTabs()
{
    return *m_tabs;
}

void MainWindow::setAddressText(const QString &url)
{
    m_address->setText(url);
}

void MainWindow::addAddress(const QString &url, bool showText)
{
    m_address->add(url, showText);
}

void MainWindow::keepTyping(const Handler &change)
{
    m_address->keepTyping(change);
}

QAction *MainWindow::menuItem(const QString &name) const
{
    return m_menu.action(name);
}

void MainWindow::handle(const QString &menuName, const Handler &handler)
{
    m_commands.handle(menuName, handler);
}

void MainWindow::handleToggle(const QAction *item, const ToggleHandler &handler)
{
    m_commands.handleToggle(item, handler);
}

void MainWindow::beforeOpening(const QString &menuName, const Handler &rule)
{
    m_commands.beforeOpening(menuName, rule);
}

void MainWindow::run(const QString &menuName)
{
    m_commands.run(menuName);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    // While it is asked, the system may end the program.
    if (!m_closed && !mayExit(this) && !m_closed) {
        event->ignore();
        return;
    }
    leave();
    event->accept();
}

void MainWindow::leave(bool isByUser)
{
    if (m_closed)
        return;
    emit leaving(isByUser);
    findChild<QLabel *>(u"pctIcon"_s)->clear();
    saveBandLayout(*m_coolBar);
    m_closed = true;
    // The pages take along what is still the engine's.
    Downloads::leaveAll();
    downloadList().leaveAll();
    unloadForms();
    QCoreApplication::quit();
}

void MainWindow::unloadForms()
{
    for (QWidget *form : Forms::all()) {
        if (form != this)
            form->close();
    }
    Forms::remove(this);
}
