// The members that the rest of the program calls. What the engine tells in turn is handled in
// QtWebBrowserEvents.cpp (navigation) and QtWebBrowserPage.cpp (everything else).
#include "QtWebBrowser.h"

#include "AddressCompletion.h"
#include "BrowserHost.h"
#include "EngineProfile.h"
#include "LivePages.h"
#include "PageCommands.h"
#include "PageHold.h"
#include "PageIndicators.h"
#include "PageQuestions.h"
#include "RefusedAddress.h"
#include "ShownAddress.h"
#include "Texts.h"
#include "TitleThrottle.h"
#include "WebPage.h"
#include "WebView.h"

#include <QWebEngineScript>

using namespace Qt::StringLiterals;

namespace {
/// What stands for no address where one is looked for.
bool isNothing(const QString &text)
{
    return text.isEmpty() || text == "http:///"_L1;
}

QString whyNoPage(const QUrl &address)
{
    if (address.isEmpty())
        return Texts<"frmBrowser">::at<"strNoAddress", "This is not an address:">();
    if (isRefusedAddress(address)) {
        return Texts<"frmBrowser">::at<"strRefusedAddress",
                                       "This address is not opened, it could end the program:">();
    }
    return Texts<"frmBrowser">::at<"strOtherProgram",
                                   "Addresses of this kind are not opened here:">();
}
}

QtWebBrowser::QtWebBrowser(QWidget *host)
    : WebBrowser(host)
    , m_host(new BrowserHost(host))
    , m_indicators(new PageIndicators(this))
    , m_title(new TitleThrottle(this))
{
    connect(m_host, &BrowserHost::reloadRequested, this, [this] { refresh(); });
    connect(m_title, &TitleThrottle::changed, this, [this](const QString &title) {
        if (m_events)
            m_events->titleChange(title);
    });
    connect(m_indicators, &PageIndicators::secureChanged, this, [this](bool secure) {
        if (m_events)
            m_events->setSecureLockIcon(secure ? 1 : 0);
    });
    connect(m_indicators, &PageIndicators::privacyImpacted, this, [this](bool impacted) {
        if (m_events)
            m_events->privacyImpactedStateChange(impacted);
    });
    connect(m_host, &QObject::destroyed, this, [this] { m_host = nullptr; });
}

QtWebBrowser::~QtWebBrowser()
{
    dropPage();
}

void QtWebBrowser::dropPage()
{
    m_events = nullptr;
    deletePage();
}

void QtWebBrowser::deletePage()
{
    LivePages::remove(this);
    if (m_page)
        m_page->disconnect(this);
    if (m_questions)
        m_questions->endAll();
    if (m_page && PageHold::takeOver(m_view, m_page)) {
        if (m_host)
            m_host->giveUpView();
        m_view.clear();
        m_page.clear();
    }
    delete m_view;
    delete m_page;
}

WebPage *QtWebBrowser::page() const
{
    return m_page;
}

QWidget *QtWebBrowser::widget()
{
    return m_host;
}

void QtWebBrowser::setEvents(WebBrowserEvents *events)
{
    m_events = events;
}

void QtWebBrowser::navigate(const QString &url)
{
    if (waitsForAnswer([this, url] { navigate(url); }))
        return;
    noteUserAction();
    load(url, false);
}

void QtWebBrowser::navigateForPage(const QString &url)
{
    if (waitsForAnswer([this, url] { navigateForPage(url); }))
        return;
    load(url, true);
}

void QtWebBrowser::load(const QString &url, bool forPage)
{
    m_waiting = false;
    m_forPage = forPage;
    const QUrl address = completeAddress(url);
    if (address.isEmpty() || isRefusedAddress(address) || !isOpenedHere(address)) {
        // The engine would open an empty page instead, end, or do nothing and say nothing.
        if (raiseBeforeNavigate(address.isEmpty() ? QUrl(url) : address)) {
            tellNoPage(url.trimmed(), address);
            if (!m_hasDocument && m_events && !isNothing(url.trimmed()))
                m_events->titleChange(url.trimmed());
        }
        emit loadEnded();
        return;
    }
    if (!m_page)
        usePage(takePage());
    const bool blank = address.scheme() == "about"_L1;
    m_handedOver = blank ? QUrl() : address;
    if (blank && !askForBlank(address)) {
        emit loadEnded();
        return;
    }
    leaveCrashed();
    m_page->load(address);
}

/// What is on the window stays; the status text says why.
void QtWebBrowser::tellNoPage(const QString &text, const QUrl &address)
{
    if (!isNothing(text))
        showStatus(whyNoPage(address) + u' ' + editableAddress(text.left(200)));
}

void QtWebBrowser::navigateLater(const QString &url)
{
    if (m_page) {
        deletePage();
        forgetPage();
    }
    m_location = url;
    m_waiting = true;
}

void QtWebBrowser::navigateNow()
{
    if (m_waiting)
        navigate(m_location);
}

bool QtWebBrowser::goBack()
{
    if (waitsForAnswer([this] { goBack(); }))
        return true;
    noteUserAction();
    return goneTo(m_page && m_history.goBack(m_page));
}

bool QtWebBrowser::goForward()
{
    if (waitsForAnswer([this] { goForward(); }))
        return true;
    noteUserAction();
    return goneTo(m_page && m_history.goForward(m_page));
}

QList<HistoryStep> QtWebBrowser::historySteps() const
{
    return m_page ? m_history.steps(m_page) : QList<HistoryStep>();
}

bool QtWebBrowser::goTo(int offset)
{
    if (waitsForAnswer([this, offset] { goTo(offset); }))
        return true;
    noteUserAction();
    return goneTo(m_page && m_history.go(m_page, offset));
}

bool QtWebBrowser::goneTo(bool goes)
{
    m_stepping = goes;
    if (goes)
        leaveCrashed();
    return goes;
}

void QtWebBrowser::refresh()
{
    if (waitsForAnswer([this] { refresh(); }))
        return;
    noteUserAction();
    reload(QWebEnginePage::Reload);
}

void QtWebBrowser::refresh2(int level)
{
    constexpr int completely = 3;
    if (waitsForAnswer([this, level] { refresh2(level); }))
        return;
    noteUserAction();
    reload(level == completely ? QWebEnginePage::ReloadAndBypassCache : QWebEnginePage::Reload);
}

void QtWebBrowser::reload(QWebEnginePage::WebAction action)
{
    if (!m_page)
        return;
    if (m_page->mayAskAgain())
        leaveCrashed();
    m_page->triggerAction(action);
}

void QtWebBrowser::stop()
{
    m_stopped = true;
    if (m_page && !waitsForAnswer([] {}))
        m_page->triggerAction(QWebEnginePage::Stop);
}

bool QtWebBrowser::execCommand(OleCmd command, OleExecOpt, const QVariant *in, QVariant *out)
{
    return m_page && PageCommands::run(m_page, command, in, out);
}

int QtWebBrowser::queryStatus(OleCmd command)
{
    return m_page ? PageCommands::status(m_page, command) : 0;
}

void QtWebBrowser::setFocus()
{
    if (m_host)
        m_host->setFocus();
}

void QtWebBrowser::find()
{
    if (m_host)
        m_host->openFindBar();
}

void QtWebBrowser::move(int left, int top, int width, int height)
{
    if (m_host)
        m_host->setGeometry(left, top, width, height);
}

QString QtWebBrowser::locationUrl() const
{
    return m_location;
}

/// The engine keeps the address on its way to itself from the moment on in which the opener may
/// have written into the window.
QString QtWebBrowser::addressBeforePage(const QString &asked) const
{
    if (!m_adopted)
        return asked;
    const QUrl safe = m_page && isUnderWay() ? m_page->url() : QUrl();
    return safe.isEmpty() ? u"about:blank"_s : QString::fromLatin1(safe.toEncoded());
}

void QtWebBrowser::outerHtml(const std::function<void(const QString &)> &done)
{
    if (!m_page) {
        done({});
        return;
    }
    m_page->runJavaScript(u"document.documentElement ? document.documentElement.outerHTML : ''"_s,
                          QWebEngineScript::ApplicationWorld,
                          [done](const QVariant &markup) { done(markup.toString()); });
}

void QtWebBrowser::setShown(bool shown)
{
    m_shown = shown;
    applyShown();
}

/// A page that can be heard goes on as if it were seen.
void QtWebBrowser::applyShown()
{
    if (!m_page || !m_view || m_crashed)
        return;
    const bool inSight = m_shown && m_view->isVisible() && !m_view->window()->isMinimized();
    m_page->setVisible(inSight || m_page->recentlyAudible());
}
