#include "WindowRequests.h"

#include "Addresses.h"
#include "Listener.h"
#include "Navigator.h"
#include "OutsideRequests.h"
#include "PageActivity.h"
#include "PageLife.h"
#include "QtWebBrowser.h"
#include "RefusedAddress.h"
#include "ScriptedPlace.h"
#include "SpelledAlike.h"
#include "Yield.h"

#include <QEvent>
#include <QTimer>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineSettings>
#include <algorithm>

using namespace Addresses;

namespace {
constexpr int mostDroppedOutside = 20;

/// The user has gone on since he dropped something: the page has taken it itself.
bool beginsAnew(const QEvent &event)
{
    return event.type() == QEvent::MouseButtonPress || event.type() == QEvent::KeyPress
        || event.type() == QEvent::TouchBegin;
}
}

WindowRequests::WindowRequests(PageLife &life, Navigator &navigator, const Listener &listener)
    : m_life(life)
    , m_navigator(navigator)
    , m_listener(listener)
{
    connect(&life, &PageLife::came, this, &WindowRequests::watch);
    connect(&navigator, &Navigator::pageAsked, this, &WindowRequests::forgetDrop);
    connect(&navigator.teller(), &NavigationTeller::windowAsked, this, [this] {
        placeAsOpened();
        m_requested = QRect();
    });
}

void WindowRequests::watch(WebPage *page, WebView *view, QObject *bond)
{
    m_requested = QRect();
    forgetDrop();
    m_droppedOutside = 0;
    connect(page, &QWebEnginePage::newWindowRequested, bond,
            [this, page](QWebEngineNewWindowRequest &request) { answer(*page, request); });
    connect(page, &QWebEnginePage::geometryChangeRequested, bond,
            [this](const QRect &pixels) { placeOnScreen(pixels); });
    connect(page, &WebPage::placeRequested, bond,
            [this](const QString &request) { placeByScript(request); });
    connect(page, &QWebEnginePage::windowCloseRequested, bond, [this] { answerClosing(); });
    connect(view, &WebView::dropped, bond, [this](const QStringList &addresses, bool fromPage) {
        m_dropped = addresses;
        m_isDroppedByPage = fromPage;
    });
    connect(view, &WebView::eventCame, bond, [this](const QEvent &event) {
        if (beginsAnew(event))
            forgetDrop();
    });
}

void WindowRequests::answer(WebPage &page, QWebEngineNewWindowRequest &request)
{
    const EngineCallbackScope scope;
    const QUrl url = request.requestedUrl();
    if (!m_listener.isThere() || opensDropped(url))
        return;
    if (isRefusedToPages(url)) {
        m_navigator.teller().tellNoPage(encoded(url), url);
        return;
    }
    if (isOutsideAddress(url)) {
        askOutside(page, request);
        return;
    }
    WebBrowser *target = nullptr;
    bool cancel = false;
    const bool behind = request.destination() == QWebEngineNewWindowRequest::InNewBackgroundTab;
    // What the user did nothing for is not to hide from him.
    m_current = {encoded(url), request.isUserInitiated(), behind && request.isUserInitiated()};
    m_listener.tell(&WebBrowserEvents::newWindow2, target, cancel);
    auto *control = qobject_cast<QtWebBrowser *>(target);
    if (!control || cancel)
        return;
    control->adopt(request);
    control->page()->setOpener(page);
    if (m_current.userInitiated)
        page.placeWish().moveTo(control->page()->placeWish());
}

/// Each that is asked for costs, also where it is refused: a page that goes on is kept from it.
void WindowRequests::askOutside(WebPage &page, const QWebEngineNewWindowRequest &request)
{
    if (!OutsideRequests::put(page, {request.requestedUrl()}) && !request.isUserInitiated()
        && ++m_droppedOutside > mostDroppedOutside)
        page.settings()->setAttribute(QWebEngineSettings::JavascriptCanOpenWindows, false);
}

/// Where links and files are dropped together, the engine asks for the first file.
bool WindowRequests::isDropped(const QUrl &url) const
{
    const auto file =
        std::find_if(m_dropped.cbegin(), m_dropped.cend(),
                     [](const QString &address) { return QUrl(address).isLocalFile(); });
    return (!m_dropped.isEmpty() && areSpelledAlike(url, QUrl(m_dropped.first())))
        || (file != m_dropped.cend() && areSpelledAlike(url, QUrl(*file)));
}

void WindowRequests::forgetDrop()
{
    m_dropped.clear();
    m_isDroppedByPage = false;
}

/// The engine asks for a window for what was dropped on a page that left it; the first of that
/// opens where it was dropped instead, and the others in windows of their own.
bool WindowRequests::opensDropped(const QUrl &url)
{
    // Of a picture of a page, the engine names the file that it made.
    const bool isMade = m_isDroppedByPage && url.isLocalFile();
    if (!isMade && !isDropped(url))
        return false;
    const QStringList addresses = std::exchange(m_dropped, {});
    if (!addresses.isEmpty())
        QTimer::singleShot(0, this, [this, first = addresses.first()] { emit dropped(first); });
    if (addresses.size() > 1) {
        QTimer::singleShot(0, this, [this, others = addresses.mid(1)] {
            m_listener.tell(&WebBrowserEvents::openLinksInNewWindows, others);
        });
    }
    return true;
}

void WindowRequests::openAt(const QRect &place)
{
    m_requested = place.width() > 0 && place.height() > 0 ? place : QRect();
    placeAsOpened();
}

/// The window may have been laid out anew since; its first navigation is to find the control as
/// the opening page wanted it.
void WindowRequests::placeAsOpened()
{
    if (!m_requested.isNull())
        m_life.host()->setGeometry(m_requested);
}

void WindowRequests::placeOnScreen(const QRect &pixels)
{
    const EngineCallbackScope scope;
    // The first request repeats what the window was opened with.
    if (!m_requested.isNull() || !m_navigator.state().hasDocument())
        return;
    BrowserHost *host = m_life.host();
    QRect wanted = host->geometry();
    const QWidget *top = host->window();
    if (pixels.topLeft() != top->frameGeometry().topLeft())
        wanted.moveTopLeft(pixels.topLeft());
    if (pixels.size() != top->frameGeometry().size())
        wanted.setSize(pixels.size());
    host->setGeometry(wanted);
}

/// A script places the control inside its window; one that does so before the first navigation has
/// the window fitted to it.
void WindowRequests::placeByScript(const QString &request)
{
    if (!m_navigator.state().isAdopted())
        return;
    const QRect wanted = scriptedPlace(m_life.host()->geometry(), request);
    if (!m_requested.isNull())
        m_requested = wanted;
    m_life.host()->setGeometry(wanted);
}

void WindowRequests::answerClosing()
{
    const EngineCallbackScope scope;
    if (m_life.page()->activity().takeAnswer(true))
        return;
    bool cancel = false;
    m_listener.tell(&WebBrowserEvents::windowClosing, m_navigator.state().isAdopted(), cancel);
}
