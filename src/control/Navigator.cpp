#include "Navigator.h"

#include "AddressCompletion.h"
#include "Addresses.h"
#include "EngineVersion.h"
#include "InsecureForms.h"
#include "OutsideRequests.h"
#include "OwnPages.h"
#include "PageLife.h"
#include "RefusedAddress.h"
#include "StartPage.h"
#include "Yield.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTimer>
#include <QWebEngineHistory>
#include <QWebEngineLoadingInfo>
#include <QWebEngineProfile>
#include <QWebEngineScript>

using namespace Addresses;
using namespace Qt::StringLiterals;

namespace {
/// The engine shows documents of other kinds by a page of its own in a frame.
bool mayBeFrame(const QUrl &url)
{
    return url.scheme() == "chrome-extension"_L1 || !isRefusedToPages(url);
}

/// A window that its opener's script fills, or sends somewhere later.
bool opensEmpty(const QUrl &url)
{
    return url.isEmpty() || url == QUrl(u"about:blank#blocked"_s) || url.scheme() == "javascript"_L1
        || (emptyWindowsAreBlank && isBlank(url));
}

Navigation::Type typeOf(QWebEnginePage::NavigationType type)
{
    switch (type) {
    case QWebEnginePage::NavigationTypeTyped:
        return Navigation::Type::Typed;
    case QWebEnginePage::NavigationTypeLinkClicked:
        return Navigation::Type::Link;
    case QWebEnginePage::NavigationTypeFormSubmitted:
        return Navigation::Type::Form;
    case QWebEnginePage::NavigationTypeBackForward:
        return Navigation::Type::Step;
    case QWebEnginePage::NavigationTypeRedirect:
        return Navigation::Type::Redirect;
    default:
        return Navigation::Type::Other;
    }
}
}

Navigator::Navigator(PageLife &life, const Listener &listener)
    : m_life(life)
    , m_teller(life, listener, m_state, m_history)
{
    connect(&life, &PageLife::came, this, &Navigator::watch);
    connect(&life, &PageLife::crashed, this, [this] {
        m_state.crash();
        m_teller.tellCrash();
    });
    connect(&m_teller, &NavigationTeller::pageCame, this,
            [this] { m_return.pageCame(*m_life.page(), m_state.location(), m_history); });
    connect(&m_teller, &NavigationTeller::loadEnded, this, [this] {
        if (m_state.hasDocument() && !m_state.showsError())
            m_return.forget();
    });
}

void Navigator::watch(WebPage *page, WebView *view, QObject *bond)
{
    page->setQuestion([this](const QUrl &url, QWebEnginePage::NavigationType type,
                             bool isMainFrame) { return ask(url, type, isMainFrame); });
    page->setIsOnItsWay([this](const QUrl &url) { return m_state.isOnItsWay(url); });
    connect(page, &QWebEnginePage::loadingChanged, bond,
            [this](const QWebEngineLoadingInfo &info) { noteLoading(info); });
    connect(page, &QWebEnginePage::urlChanged, bond,
            [this] { m_teller.tell(m_state.urlChanged(place())); });
    connect(page, &QWebEnginePage::scrollPositionChanged, bond, [this] { m_return.noteScroll(); });
    connect(page, &WebPage::documentStarted, bond, [this](const QString &address) {
        m_teller.tell(m_state.documentStarted(address, place()));
    });
    connect(page, &WebPage::frameLoaded, bond, [this](const QString &url, bool isMainFrame) {
        m_teller.tell(isMainFrame ? m_state.documentLoaded()
                                  : Navigation::Events{{Navigation::What::Complete, {}, url}});
    });
    connect(page, &WebPage::retryRequested, bond, [this] {
        if (m_state.showsError())
            QTimer::singleShot(0, this, &Navigator::refreshRequested);
    });
    connect(page, &WebPage::partChosen, bond, [this](const QString &choice) {
        if (m_state.showsError() || isStartPage(QUrl(m_state.location())))
            StartPage::choose(choice);
        else if (isOwnPage(QUrl(m_state.location())))
            QTimer::singleShot(0, this, [this, choice] { leadOn(choice); });
    });
    connect(page, &WebPage::told, bond, [this](const QString &text) { m_teller.tellText(text); });
    connect(page, &QWebEnginePage::linkHovered, bond, [this](const QString &url) {
        const EngineCallbackScope scope;
        m_teller.tellLink(url);
    });
    connect(view, &WebView::eventCame, bond,
            [this](const QEvent &event) { m_state.noteEvent(event); });
}

void Navigator::load(const QString &url, bool forPage)
{
    m_state.name(forPage);
    m_return.forget();
    const QUrl address = completeAddress(url);
    if (address.isEmpty() || isRefusedAddress(address) || !isOpenedHere(address)) {
        m_teller.tellRefused(url, address);
        return;
    }
    m_life.begin();
    m_state.handOver(address);
    if (isBlank(address)) {
        if (!m_teller.askWindow(address)) {
            emit m_teller.loadEnded();
            return;
        }
        m_state.beginBlank(address);
    }
    m_life.leaveCrashed();
    m_life.page()->load(address);
}

/// From a page of the guide to another, which the engine keeps from leading anywhere by itself.
void Navigator::leadOn(const QString &link)
{
    if (isOwnPage(QUrl(m_state.location())) && isOwnPage(QUrl(link)))
        load(link, false);
}

void Navigator::waitAt(const QString &url, const PageState &state)
{
    if (m_life.page()) {
        m_life.end();
        m_state = {};
        m_history = {};
        m_teller.forgetPage();
    }
    m_state.waitAt(url);
    m_return.await(url, state);
}

void Navigator::comeBack()
{
    const QString url = m_state.location();
    const PageReturn coming = m_return;
    const QUrl address = completeAddress(url);
    if (!address.isEmpty() && !isRefusedAddress(address) && isOpenedHere(address)) {
        m_state.name(false);
        if (m_return.state().history.isEmpty())
            m_life.begin();
        else
            m_life.beginAnew();
        m_state.handOver(address);
        if (m_return.bring(*m_life.page()))
            return;
    }
    load(url, false);
    m_return = coming;
}

PageState Navigator::pageState(StateDepth depth) const
{
    if (!m_life.page() || m_return.isAwaited())
        return m_return.state();
    PageState state = PageReturn::stateOf(*m_life.page(), m_history, depth);
    state.scroll = m_return.untoldScroll().value_or(state.scroll);
    return state;
}

void Navigator::adopt(const QUrl &url)
{
    m_state.adopt(opensEmpty(url));
}

bool Navigator::goBack()
{
    return noteStep(m_life.page() && m_history.goBack(m_life.page()));
}

bool Navigator::goForward()
{
    return noteStep(m_life.page() && m_history.goForward(m_life.page()));
}

QList<HistoryStep> Navigator::historySteps() const
{
    return m_life.page() ? m_history.steps(m_life.page()) : QList<HistoryStep>();
}

bool Navigator::goTo(int offset)
{
    return noteStep(m_life.page() && m_history.go(m_life.page(), offset));
}

/// Passes on whether the history leads on, away from a crashed page, too.
bool Navigator::noteStep(bool goes)
{
    m_state.step(goes);
    if (goes)
        m_life.leaveCrashed();
    return goes;
}

void Navigator::reload(QWebEnginePage::WebAction action)
{
    WebPage *page = m_life.page();
    if (!page)
        return;
    if (page->mayAskAgain())
        m_life.leaveCrashed();
    page->triggerAction(action);
}

/// Not where another page stands there by now. A form that the page was asked for with never left.
void Navigator::askAgain(const QUrl &url)
{
    WebPage *page = m_life.page();
    if (page && m_state.showsError() && isSamePage(QUrl(m_state.location()), url))
        page->resend(QWebEnginePage::Reload);
}

void Navigator::stop()
{
    m_state.stop();
    if (m_life.page() && !m_life.stopsAnswering())
        m_life.page()->triggerAction(QWebEnginePage::Stop);
}

EnginePlace Navigator::place() const
{
    const QWebEngineHistory *history = m_life.page()->history();
    return {m_life.page()->url(), history->currentItem().url(), int(history->count())};
}

bool Navigator::ask(const QUrl &url, QWebEnginePage::NavigationType type, bool isMainFrame)
{
    if (isOutsideAddress(url)) {
        passOn(url, typeOf(type), isMainFrame);
        return false;
    }
    if (!isMainFrame)
        return mayBeFrame(url) && !isHeldForm(url, typeOf(type)) && m_teller.askWindow(url);
    emit pageAsked();
    if (isRefusedAddress(url) || isSentToOwnPage(url, type)) {
        m_teller.tell(m_state.refuseForGood(url, typeOf(type)));
        return false;
    }
    return askForPage(url, typeOf(type));
}

/// What an address of the user's, or a step of his, leads to is asked for by whom it leads over. No
/// more is known of what a page goes to: it may itself have left for somewhere a moment ago.
void Navigator::passOn(const QUrl &url, Navigation::Type type, bool isMainFrame)
{
    const bool mayBeLed = isMainFrame && m_state.isUnderWay() && isWeb(m_state.pending());
    const bool isLed =
        mayBeLed && (type == Navigation::Type::Typed || type == Navigation::Type::Step);
    const QUrl way = mayBeLed ? m_state.pending() : QUrl();
    OutsideRequests::put(*m_life.page(),
                         {url, !isMainFrame, isLed ? way : QUrl(), isLed ? QUrl() : way});
}

bool Navigator::isHeldForm(const QUrl &url, Navigation::Type type)
{
    InsecureForms &forms = m_life.page()->insecureForms();
    if (type == Navigation::Type::Form)
        return forms.holds(url);
    if (formsOpenAsForms || type != Navigation::Type::Link)
        return false;
    return m_state.isAdopted() && !m_state.hasDocument() && forms.holdsOpening(url);
}

/// By a page: the user names it, asks for it anew or goes back to it.
bool Navigator::isSentToOwnPage(const QUrl &url, QWebEnginePage::NavigationType type) const
{
    if (!isOwnPage(url) || type == QWebEnginePage::NavigationTypeReload
        || type == QWebEnginePage::NavigationTypeBackForward)
        return false;
    return type != QWebEnginePage::NavigationTypeTyped || !m_state.isHandedOver(url);
}

bool Navigator::askForPage(const QUrl &url, Navigation::Type type)
{
    const Navigation::Request request = m_state.asked(url, type);
    if (request == Navigation::Request::New) {
        if (m_state.arrival() == Arrival::ByStep)
            m_life.noteUserAction();
        const bool isHeld = isHeldForm(url, type);
        if (isHeld || !m_teller.askWindow(url)) {
            m_state.refuse();
            if (isHeld)
                leaveEmpty();
            return false;
        }
        if (m_return.isAwaited() && !m_return.state().leavesTrace)
            m_state.setFlags(m_state.flags() | NavFlags::NoHistory);
        m_life.page()->setCacheBypass(m_state.flags() & NavFlags::NoWriteToCache);
        m_life.page()->setIsListed(m_state.leavesTrace());
        if (m_state.replaces(url, type, place())) {
            replaceEntry(url);
            return false;
        }
    }
    m_state.accept(url, type, request);
    m_teller.expect(url);
    // One that was visited before stays.
    if (!m_state.leavesTrace() && !m_life.page()->profile()->visitedLinksContainsUrl(url))
        m_state.forgetLink(url);
    return true;
}

/// A window that was opened for a form has nothing to show while the form waits in another.
void Navigator::leaveEmpty()
{
    QTimer::singleShot(0, m_life.page(), [this] {
        if (m_state.holdsNothing())
            m_teller.tell({{Navigation::What::PerhapsNothing, {}, {}}});
    });
}

void Navigator::replaceEntry(const QUrl &url)
{
    QTimer::singleShot(0, m_life.page(), [page = m_life.page(), url] {
        page->triggerAction(QWebEnginePage::Stop);
        const QJsonArray address{encoded(url)};
        const QString quoted =
            QString::fromUtf8(QJsonDocument(address).toJson(QJsonDocument::Compact));
        page->runJavaScript("location.replace("_L1 + quoted + "[0])"_L1,
                            QWebEngineScript::ApplicationWorld);
    });
}

void Navigator::noteLoading(const QWebEngineLoadingInfo &info)
{
    if (info.status() == QWebEngineLoadingInfo::LoadStartedStatus) {
        m_teller.tell(m_state.loadStarted(info.url()));
        return;
    }
    const bool isStopped = info.status() == QWebEngineLoadingInfo::LoadStoppedStatus;
    LoadEnd end{info.url(), isStopped, {}, m_life.page()->isLoading()};
    if (info.isErrorPage())
        end.error = info.errorCode();
    m_teller.tell(m_state.loadEnded(end, place()));
}
