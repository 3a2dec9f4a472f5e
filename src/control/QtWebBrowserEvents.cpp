// Navigation: the engine's signals put into the order that `WebBrowserEvents` describes.
#include "BrowserHost.h"
#include "EngineProfile.h"
#include "ErrorPage.h"
#include "PageIndicators.h"
#include "PageQuestions.h"
#include "QtWebBrowser.h"
#include "RefusedAddress.h"
#include "ShownAddress.h"
#include "Texts.h"
#include "WebPage.h"
#include "WebView.h"
#include "Yield.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTimer>
#include <QWebEngineHistory>
#include <QWebEngineLoadingInfo>
#include <QWebEngineProfile>
#include <QWebEngineScript>

using namespace Qt::StringLiterals;

namespace {
QString encoded(const QUrl &url)
{
    return QString::fromLatin1(url.toEncoded());
}

bool isWeb(const QUrl &url)
{
    return url.scheme() == "http"_L1 || url.scheme() == "https"_L1;
}

/// A script can give its page no other address than one of the same site.
bool sameSite(const QUrl &one, const QUrl &other)
{
    return one.scheme() == other.scheme() && one.authority() == other.authority();
}

bool samePage(const QUrl &one, const QUrl &other)
{
    return one.adjusted(QUrl::RemoveFragment) == other.adjusted(QUrl::RemoveFragment);
}

/// The engine shows documents of other kinds by a page of its own in a frame.
bool mayBeFrame(const QUrl &url)
{
    return url.scheme() == "chrome-extension"_L1 || !isRefusedAddress(url);
}

constexpr Texts<"frmBrowser"> texts;
}

bool QtWebBrowser::raiseBeforeNavigate(const QUrl &url)
{
    bool cancel = false;
    placeAsRequested();
    m_requested = QRect();
    if (m_events)
        m_events->beforeNavigate2(encoded(url), m_flags, cancel);
    // A handler may have closed the window, and then nothing more is to be loaded.
    return m_events && !cancel;
}

bool QtWebBrowser::ask(const QUrl &url, int type, bool isMainFrame)
{
    if (!isMainFrame)
        return mayBeFrame(url) && raiseBeforeNavigate(url);
    m_handedOver.clear();
    m_dropped.clear();
    const bool redirected = type == QWebEnginePage::NavigationTypeRedirect && isUnderWay();
    if (isRefusedAddress(url)) {
        tellNoPage(encoded(url), url);
        // A redirect ends the load that is under way, any other is a load of its own.
        if (redirected)
            m_refusal = m_status;
        else
            ++m_refusals;
        return false;
    }
    const bool replacing = !m_replacing.isEmpty() && samePage(m_replacing, url);
    if (!redirected && !replacing) {
        m_arrival = arrivalOf(type);
        if (m_arrival == Arrival::ByStep)
            noteUserAction();
        m_stopped = false;
        if (!raiseBeforeNavigate(url)) {
            ++m_refusals;
            return false;
        }
        m_page->setCacheBypass(m_flags & NavFlags::NoWriteToCache);
        if (type == QWebEnginePage::NavigationTypeTyped && !mayLeaveTrace(url)) {
            ++m_refusals;
            replaceWith(url);
            return false;
        }
    }
    if (!redirected) {
        m_replacesEntry = replacing;
        m_isTyped = type == QWebEnginePage::NavigationTypeTyped;
    }
    m_opensEmpty = false;
    m_replacing.clear();
    m_pending = url;
    m_stage = Stage::Asked;
    m_indicators->expect(url);
    rememberLink(url);
    return true;
}

/// The engine asks nothing before such an address, and over a load that is still under way it does
/// not tell of its start either.
bool QtWebBrowser::askForBlank(const QUrl &url)
{
    if (!raiseBeforeNavigate(url))
        return false;
    m_isTyped = false;
    m_arrival = arrivalOf(QWebEnginePage::NavigationTypeTyped);
    m_stopped = false;
    m_pending = url;
    m_stage = Stage::Asked;
    return true;
}

/// The engine gives the type "typed" to what this program has it load, and to nothing else.
Arrival QtWebBrowser::arrivalOf(int type)
{
    const bool acted = m_act.take();
    const bool stepped = std::exchange(m_stepping, false);
    switch (type) {
    case QWebEnginePage::NavigationTypeTyped:
        return std::exchange(m_forPage, false) ? Arrival::ByPage : Arrival::ByAddress;
    case QWebEnginePage::NavigationTypeBackForward:
        return stepped ? Arrival::ByStep : Arrival::ByPage;
    case QWebEnginePage::NavigationTypeLinkClicked:
    case QWebEnginePage::NavigationTypeFormSubmitted:
        return acted ? Arrival::ByStep : Arrival::ByPage;
    default:
        return Arrival::ByPage;
    }
}

/// False when the navigation must replace the current history entry instead of adding one.
bool QtWebBrowser::mayLeaveTrace(const QUrl &url) const
{
    return !(m_flags & NavFlags::NoHistory) || m_page->history()->count() == 0 || !isWeb(url)
        || m_showsError || samePage(url, QUrl(m_location));
}

void QtWebBrowser::replaceWith(const QUrl &url)
{
    m_replacing = url;
    QTimer::singleShot(0, m_page, [this, url] {
        m_page->triggerAction(QWebEnginePage::Stop);
        const QJsonArray address{encoded(url)};
        const QString quoted =
            QString::fromUtf8(QJsonDocument(address).toJson(QJsonDocument::Compact));
        m_page->runJavaScript("location.replace("_L1 + quoted + "[0])"_L1,
                              QWebEngineScript::ApplicationWorld);
    });
}

/// Notes a link that must not stay among the visited ones; one that was there before stays.
void QtWebBrowser::rememberLink(const QUrl &url)
{
    if ((m_flags & NavFlags::NoHistory) && !m_page->profile()->visitedLinksContainsUrl(url))
        m_linksToForget.append(url);
}

void QtWebBrowser::forgetLinks()
{
    if (!m_linksToForget.isEmpty())
        m_page->profile()->clearVisitedLinks(m_linksToForget);
}

void QtWebBrowser::onLoadingChanged(const QWebEngineLoadingInfo &info)
{
    if (info.status() == QWebEngineLoadingInfo::LoadStartedStatus)
        onLoadStarted(info.url());
    else
        onLoadEnded(info);
}

void QtWebBrowser::onLoadStarted(const QUrl &url)
{
    if (m_refusals > 0 && m_stage != Stage::Asked)
        return;
    if (m_stage != Stage::Asked) {
        // The empty document that a window begins with is no navigation.
        if (std::exchange(m_opensEmpty, false))
            return;
        // A page opens about:blank, which the engine neither asks for nor lets us refuse;
        // stopping one in a window opened without an address would end the program.
        m_arrival = Arrival::ByPage;
        raiseBeforeNavigate(url);
        m_pending = url;
        m_isTyped = false;
    }
    m_stage = Stage::Started;
    m_busy = true;
    // Whether the address may be shown ahead of its page is known from here on.
    if (m_adopted && !m_hasDocument && m_events)
        m_events->locationChange(m_location);
    showStatus(texts.at<"strOpening", "Opening page">() + u' ' + shownAddress(m_pending)
               + u"..."_s);
}

bool QtWebBrowser::isUnderWay() const
{
    return m_stage == Stage::Asked || m_stage == Stage::Started;
}

/// The address of what the page shows, as the engine has it; empty while the window holds nothing
/// but what its opener may have put there. No page has a say in it.
QUrl QtWebBrowser::committedAddress() const
{
    const QWebEngineHistory *history = m_page->history();
    if (history->count() == 0)
        return {};
    // The current entry of the history is no answer by itself: a step in it counts at once.
    const QUrl shown = m_page->url();
    const bool isOnItsWay = !shown.isEmpty()
        && (shown == m_handedOver || (m_isTyped && isUnderWay() && shown == m_pending));
    return isOnItsWay ? history->currentItem().url() : shown;
}

/// What the script in the page tells is when to look, and how the page spells its address; which
/// address that is, the engine tells.
void QtWebBrowser::onDocumentStarted(const QString &address)
{
    // The start of a page whose end was told first: no news, whatever has been asked for since.
    if (!m_startedUnheard.isEmpty() && std::exchange(m_startedUnheard, {}) == address)
        return;
    const QUrl committed = committedAddress();
    if (!isUnderWay() || committed.isEmpty())
        return;
    // The load that a blank page was opened over has got this far.
    if (m_pending.scheme() == "about"_L1 && committed.scheme() != "about"_L1)
        return;
    const bool failed = address.startsWith("chrome-error:"_L1);
    commit(QUrl(address) == committed ? address : encoded(committed), !failed);
    if (committed.scheme() == "about"_L1)
        QTimer::singleShot(0, this, &QtWebBrowser::endBlank);
}

/// A blank page opened over another load has no end of its own that the engine would tell; there is
/// nothing in it to wait for.
void QtWebBrowser::endBlank()
{
    if (m_stage != Stage::Committed || !m_location.startsWith("about:"_L1))
        return;
    completeDocument(m_location);
    m_busy = false;
    m_stage = Stage::None;
    showStatus(texts.at<"strDone", "Done">());
    emit loadEnded();
}

void QtWebBrowser::commit(const QString &url, bool arrived)
{
    m_stage = Stage::Committed;
    // The page tells of the address it is the source of.
    const QUrl shown = m_page->url();
    m_location = shown.scheme() == "view-source"_L1 ? encoded(shown) : url;
    m_hasDocument = true;
    m_completed = false;
    m_showsError = false;
    m_busy = true;
    m_page->noteArrival();
    m_indicators->reset(QUrl(url), arrived);
    if (m_questions)
        m_questions->pageChanged(QUrl(url));
    if (m_printDialog)
        m_printDialog->close();
    if ((m_flags & NavFlags::NoHistory) && !m_replacesEntry && m_page->history()->count() > 1)
        m_history.skipCurrent(m_page);
    forgetLinks();
    if (m_events)
        m_events->navigateComplete2(m_location);
}

void QtWebBrowser::onFrameLoaded(const QString &url, bool isMainFrame)
{
    if (isMainFrame)
        completeDocument(m_location);
    else if (m_events)
        m_events->documentComplete(url);
}

void QtWebBrowser::completeDocument(const QString &url)
{
    if (m_stage != Stage::Committed || std::exchange(m_completed, true))
        return;
    if (m_events)
        m_events->documentComplete(url);
}

void QtWebBrowser::onLoadEnded(const QWebEngineLoadingInfo &info)
{
    const bool stopped = info.status() == QWebEngineLoadingInfo::LoadStoppedStatus;
    // Not at the end of an earlier load, which the one on its way has stopped.
    if (samePage(info.url(), m_handedOver))
        m_handedOver.clear();
    if (stopped && m_refusals > 0) {
        --m_refusals;
        // A page that was still on its way when it asked for another has no end but this.
        if (m_stage != Stage::Committed) {
            tellGivenUp();
            emit loadEnded();
            return;
        }
    }
    if (isUnderWay() && !stopped) {
        // The end of an earlier load, told late.
        if (!samePage(info.url(), m_pending))
            return;
        commit(encoded(committedAddress()), !info.isErrorPage());
        m_startedUnheard = info.isErrorPage() ? u"chrome-error://chromewebdata/"_s : m_location;
    }
    if (info.isErrorPage()) {
        m_showsError = true;
        ErrorPage::show(m_page, m_page->url(), info);
    }
    completeDocument(m_location);
    forgetLinks();
    m_linksToForget.clear();
    m_busy = false;
    m_stage = Stage::None;
    // The page may have changed its address while the other one was on its way.
    if (stopped) {
        onUrlChanged();
        tellGivenUp();
        tellIfNothingCame();
    }
    showStatus(stopped ? std::exchange(m_refusal, {}) : texts.at<"strDone", "Done">());
    emit loadEnded();
}

/// What the window holds is asked of the page, as its opener may have written into it; by then
/// another load may be under way.
void QtWebBrowser::tellIfNothingCame()
{
    if (!holdsNoPage() || m_stopped)
        return;
    m_page->runJavaScript(u"!document.body || !document.body.hasChildNodes()"_s,
                          QWebEngineScript::ApplicationWorld,
                          [self = QPointer(this)](const QVariant &isEmpty) {
                              const EngineCallbackScope scope;
                              if (self && self->m_events && isEmpty.toBool() && self->holdsNoPage()
                                  && self->m_stage == Stage::None)
                                  self->m_events->nothingCame();
                          });
}

bool QtWebBrowser::holdsNoPage() const
{
    return !m_hasDocument || m_location.isEmpty() || m_location.startsWith("about:"_L1);
}

/// Nothing came of a navigation, and none is to come: what stands for it anywhere goes.
void QtWebBrowser::tellGivenUp()
{
    if (m_events && m_stage == Stage::None && m_handedOver.isEmpty() && m_replacing.isEmpty())
        m_events->navigationGivenUp();
}

/// Comes when a page has taken the place of another, before any of its scripts runs, and when a
/// page gives itself another address.
void QtWebBrowser::onUrlChanged()
{
    const QUrl address = committedAddress();
    if (address.isEmpty()) {
        if (m_adopted && m_events)
            m_events->locationChange(m_location);
        return;
    }
    const QUrl before(m_location);
    if (!m_hasDocument || address == before)
        return;
    // The engine does not ask before it goes to another place in the page.
    if (address == m_handedOver && samePage(address, before))
        m_handedOver.clear();
    // Told when the navigation is over, one way or the other.
    if (isUnderWay() && (!isWeb(address) || sameSite(address, before)))
        return;
    // Nothing of one site stands over another's page, not even until its document begins.
    if (!sameSite(address, before))
        m_indicators->distrust();
    m_location = encoded(address);
    if (m_events)
        m_events->locationChange(m_location);
}

void QtWebBrowser::showStatus(const QString &text)
{
    m_status = text;
    if (m_events)
        m_events->statusTextChange(text);
}
