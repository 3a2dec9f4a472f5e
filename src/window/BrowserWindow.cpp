#include "BrowserWindow.h"

#include "BrowserTabs.h"
#include "ClosedWindows.h"
#include "CoveredWindows.h"
#include "Forms.h"
#include "Frame.h"
#include "MaximizeCatcher.h"
#include "PageQuestions.h"
#include "PopupBudget.h"
#include "PopupEntrance.h"
#include "ShownAddress.h"
#include "ShownText.h"
#include "StatusStrip.h"
#include "TextRules.h"
#include "VisitRecorder.h"
#include "WebBrowserMaker.h"
#include "WindowTabs.h"

#include <QAction>
#include <QKeyEvent>
#include <QMdiArea>
#include <QMenu>
#include <QTimer>

using namespace Qt::StringLiterals;

BrowserWindow::BrowserWindow(Frame &frame, Privacy privacy)
    : InnerWindow(frame)
    , m_privacy(privacy)
    , m_client(new QWidget)
    , m_visits(new VisitRecorder(this))
    , m_budget(std::make_shared<PopupBudget>())
{
    setObjectName(u"frmBrowser"_s);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowIcon(BrowserTabs::pageIcon());
    setWidget(m_client);
    m_browser = makeWebBrowser(m_client);
    if (isPrivate())
        m_browser->setPrivate();
    m_browser->setObjectName(u"brwWebBrowser"_s);
    m_browser->widget()->setObjectName(u"brwWebBrowser"_s);
    m_browser->setEvents(this);
    connect(m_browser, &WebBrowser::loadEnded, this, &BrowserWindow::nameIfNameless);
    m_status = new StatusStrip(m_client);
    connect(m_status, &StatusStrip::connectionPressed, m_browser, &WebBrowser::showCertificates);
    connect(m_status, &StatusStrip::endOfUseWanted, this, &BrowserWindow::endUse);
    connect(m_status, &StatusStrip::usualZoomWanted, m_browser,
            [this] { m_browser->setZoom(100); });
    m_questions = new PageQuestions(m_client);
    m_browser->setQuestions(m_questions);
    connect(m_questions, &PageQuestions::stripChanged, this, &BrowserWindow::layOut);
    connect(m_questions, &PageQuestions::roomNeeded, this, &BrowserWindow::makeRoom);
    m_client->setFocusProxy(m_browser->widget());
    m_client->installEventFilter(this);
    new MaximizeCatcher(*this, frame);

    // The system menu's own keys (Ctrl+W) would make those of the frame's menu ambiguous.
    const QList<QAction *> systemActions = systemMenu()->actions();
    for (QAction *action : systemActions)
        action->setShortcuts(QList<QKeySequence>());

    // Connected ahead of the area's own, which makes a maximized window smaller before this one
    // takes its place: its page is to go out of sight as the user left it.
    connect(this, &QMdiSubWindow::aboutToActivate, this, [this] {
        BrowserWindow *left = activeBrowser(m_frame);
        if (!left || left == this || !left->isMaximized())
            return;
        left->m_browser->setShown(false);
        CoveredWindows::refresh(left->mdiArea());
    });
    connect(this, &QMdiSubWindow::windowStateChanged, this,
            [this](Qt::WindowStates before, Qt::WindowStates now) {
                const bool activated = !(before & Qt::WindowActive) && (now & Qt::WindowActive);
                if (activated && m_loaded && !m_unloaded) {
                    pressTab();
                    m_frame.setAddressText(shownAddress());
                    // May run inside the engine, and windows that come up one after the other are
                    // each the active one for a moment.
                    wakeIfActiveSoon();
                }
                // What was left undone in the meantime; the client area may have kept its size.
                if ((before & Qt::WindowMinimized) && !(now & Qt::WindowMinimized))
                    layOut();
            });
}

BrowserWindow::~BrowserWindow()
{
    disconnect(this, &QMdiSubWindow::windowStateChanged, this, nullptr);
    m_client->removeEventFilter(this);
    unloadWindow();
}

QString BrowserWindow::shownAddress() const
{
    const QString address = m_browser->locationUrl();
    return address.isEmpty() ? m_browser->addressBeforePage(m_opening) : address;
}

void BrowserWindow::focusContents()
{
    m_browser->setFocus();
}

void BrowserWindow::turnSound()
{
    m_browser->setMuted(!m_browser->isMuted());
}

void BrowserWindow::endUse()
{
    m_browser->endUse();
}

/// In the shared address bar, while this window is the one it is for.
void BrowserWindow::showAddress()
{
    if (isActiveChild())
        m_frame.setAddressText(shownAddress());
}

int BrowserWindow::innerWidth() const
{
    return m_client->width();
}

int BrowserWindow::innerHeight() const
{
    return m_client->height();
}

void BrowserWindow::setVisible(bool visible)
{
    if (visible && !m_loaded && !m_unloaded) {
        m_loaded = true;
        load();
    }
    InnerWindow::setVisible(visible);
}

void BrowserWindow::load()
{
    Forms::add(this);
    if (!startingAddress.isEmpty()) {
        m_named = !startingTitle.isEmpty();
        setWindowTitle(shownText(m_named ? startingTitle : ::shownAddress(startingAddress)));
        if (startingLoad == Loading::Now)
            m_browser->navigate(startingAddress);
        else
            m_browser->navigateLater(startingAddress, startingState);
        m_isAsleep = startingLoad == Loading::Asleep;
        m_frame.setAddressText(startingAddress);
        m_opening = std::exchange(startingAddress, {});
    } else if (isPopup) {
        m_opening = u"about:blank"_s;
    }
    m_frame.windowTabs().addTab(tabKey(), u"Loading..."_s);
    m_frame.windowTabs().setAsleep(tabKey(), isAsleep());
    if (isPrivate())
        m_frame.windowTabs().setPrivate(tabKey());
    // Known at once where there was nothing to load.
    if (m_named)
        showTitle();
}

/// Where loading has ended, whatever came of it, the tab does not go on saying that it loads.
void BrowserWindow::nameIfNameless()
{
    if (m_named || isPopup || m_unloaded)
        return;
    const QString name = windowTitle().isEmpty() ? m_browser->locationUrl() : windowTitle();
    titleChange(trimBlanks(name).isEmpty() ? u"about:blank"_s : name);
}

void BrowserWindow::unloadWindow()
{
    if (std::exchange(m_unloaded, true))
        return;
    m_browser->setEvents(nullptr);
    m_questions->endAll();
    m_frame.windowTabs().removeTab(tabKey());
    Forms::remove(this);
}

void BrowserWindow::unload()
{
    if (m_unloaded)
        return;
    unloadWindow();
    close();
}

void BrowserWindow::closeEvent(QCloseEvent *event)
{
    if (!m_unloaded)
        ClosedWindows::note(*this);
    unloadWindow();
    QMdiArea *area = mdiArea();
    InnerWindow::closeEvent(event);
    CoveredWindows::refresh(area);
}

bool BrowserWindow::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_client && event->type() == QEvent::Resize)
        layOut();
    return InnerWindow::eventFilter(watched, event);
}

void BrowserWindow::layOut()
{
    placeControl();
    placeStatusBar();
}

void BrowserWindow::placeControl()
{
    const int top = m_questions->stripHeight();
    const int height = innerHeight() - top - m_status->stripHeight();
    // A minimized window has no room for the control, which then keeps its place.
    if (isMinimized() || innerHeight() < m_status->stripHeight())
        return;
    m_browser->move(0, top, innerWidth(), qMax(0, height));
}

/// A question in a window too small for it could not be answered.
void BrowserWindow::makeRoom(const QSize &room)
{
    if (isMaximized() || isMinimized())
        return;
    const QSize least = room + QSize(0, m_status->stripHeight());
    resize(size() + least.expandedTo(m_client->size()) - m_client->size());
}

void BrowserWindow::placeStatusBar()
{
    const int height = m_status->stripHeight();
    m_status->setGeometry(0, m_client->height() - height, m_client->width(), height);
}

void BrowserWindow::keyPressEvent(QKeyEvent *event)
{
    if (!keyDown(event->key(), event->modifiers()))
        InnerWindow::keyPressEvent(event);
}

bool BrowserWindow::keyDown(int keyCode, Qt::KeyboardModifiers shift)
{
    if (keyCode != Qt::Key_N || shift != Qt::ControlModifier)
        return false;
    m_frame.openWindowLike(m_privacy, m_browser->locationUrl(), WindowState::AsOthers);
    return true;
}

bool BrowserWindow::isActiveChild() const
{
    return m_frame.activeChild() == this;
}

BrowserWindow *activeBrowser(const Frame &frame)
{
    return qobject_cast<BrowserWindow *>(frame.activeChild());
}

void openBesideActive(Frame &frame, const QString &url)
{
    const BrowserWindow *active = activeBrowser(frame);
    frame.openWindowLike(active ? active->privacy() : Privacy::Ordinary, url,
                         frame.newWindowState());
}

QList<BrowserWindow *> browserForms()
{
    QList<BrowserWindow *> windows;
    const QList<QWidget *> forms = Forms::named("frmBrowser");
    for (QWidget *form : forms) {
        if (auto *window = qobject_cast<BrowserWindow *>(form))
            windows.append(window);
    }
    return windows;
}
