#include "QtWebBrowser.h"

#include "CertificateExceptions.h"
#include "ContextTarget.h"
#include "Downloads.h"
#include "Inspector.h"
#include "OutsideRequests.h"
#include "PageCertificates.h"
#include "PageCommands.h"
#include "PageConnection.h"
#include "PagePermissions.h"
#include "PageSource.h"
#include "Settings.h"
#include "ZoomScale.h"

#include <QWebEngineNewWindowRequest>
#include <QWebEngineScript>
#include <QWebEngineSettings>
#include <algorithm>

using namespace Qt::StringLiterals;

QtWebBrowser::QtWebBrowser(QWidget *host)
    : WebBrowser(host)
    , m_life(new BrowserHost(host), m_listener)
    , m_navigator(m_life, m_listener)
    , m_windows(m_life, m_navigator, m_listener)
    , m_consent(m_life, m_navigator)
    , m_silence(m_life)
    , m_sound(m_life, m_listener)
    , m_title(nullptr)
{
    connect(m_life.host(), &BrowserHost::reloadRequested, this, &QtWebBrowser::refresh);
    connect(m_life.host(), &BrowserHost::backRequested, this, &QtWebBrowser::leaveFailure);
    connect(m_life.host(), &BrowserHost::goOnRequested, this, &QtWebBrowser::goOn);
    connect(m_life.host(), &BrowserHost::wakeRequested, this,
            [this] { m_listener.tell(&WebBrowserEvents::wakeWanted); });
    connect(this, &WebBrowser::loadEnded, this, &QtWebBrowser::dropPictureSoon);
    connect(&m_life, &PageLife::goingOutOfSight, this, &QtWebBrowser::takePassingPicture);
    connect(&m_navigator.teller(), &NavigationTeller::pageCame, this, [this] {
        m_picture.clear();
        m_zoom.pageCame(page()->url());
    });
    connect(&m_zoom, &PageZoom::changed, this, &QtWebBrowser::followZoom);
    connect(&m_life, &PageLife::came, this, &QtWebBrowser::watch);
    connect(&m_life, &PageLife::crashed, this,
            [this] { m_listener.tell(&WebBrowserEvents::contextMenuOver); });
    connect(&m_navigator, &Navigator::refreshRequested, this, &QtWebBrowser::refresh);
    connect(&m_navigator.teller(), &NavigationTeller::loadEnded, this, &QtWebBrowser::loadEnded);
    connect(&m_windows, &WindowRequests::dropped, this, &QtWebBrowser::navigate);
    connect(&m_consent, &UserConsent::navigateRequested, this, &QtWebBrowser::navigate);
    connect(&m_consent, &UserConsent::refreshRequested, this, &QtWebBrowser::refresh);
    connect(&m_title, &TitleThrottle::changed, this, [this](const QString &title) {
        m_listener.tell(&WebBrowserEvents::titleChange, title);
    });
}

QtWebBrowser::~QtWebBrowser()
{
    dropPage();
}

void QtWebBrowser::setEvents(WebBrowserEvents *events)
{
    m_listener.set(events);
    if (!events)
        m_life.leaveSession();
}

void QtWebBrowser::watch(WebPage *page, WebView *view, QObject *bond)
{
    m_zoom.use(page, view, bond);
    connect(page, &QWebEnginePage::titleChanged, bond,
            [this](const QString &title) { m_title.put(title); });
    connect(page, &QWebEnginePage::urlChanged, bond, [this] { emit stateChanged(); });
    connect(page, &QWebEnginePage::scrollPositionChanged, bond, [this] { emit stateChanged(); });
    // Which the zoom changes with it.
    connect(page, &QWebEnginePage::contentsSizeChanged, bond, [this] { emit stateChanged(); });
    connect(page, &QWebEnginePage::audioMutedChanged, bond, [this] { emit stateChanged(); });
    connect(page, &QWebEnginePage::iconChanged, bond,
            [this](const QIcon &icon) { m_listener.tell(&WebBrowserEvents::iconChange, icon); });
    connect(page, &WebPage::scriptFailed, bond, [this](const ScriptError &error) {
        if (!m_silent)
            m_listener.tell(&WebBrowserEvents::scriptFailed, error);
    });
    connect(page, &WebPage::saveRequested, bond,
            [page](const QUrl &url) { Downloads::saveAs(*page, url); });
    connect(&page->permissions(), &PagePermissions::useChanged, bond, [this] { tellUse(); });
    connect(page, &WebPage::painted, bond, [this] {
        if (m_life.host())
            m_life.host()->dropPicture();
    });
    // Not from inside the engine, which tells of it.
    connect(
        page, &WebPage::backKeyPressed, bond,
        [this, view] {
            if (!view->mayTakeText() && Settings::backspaceGoesBack.isOne())
                goBack();
        },
        Qt::QueuedConnection);
    connect(page, &WebPage::wanted, bond, [this] { m_listener.tell(&WebBrowserEvents::wanted); });
    connect(page, &WebPage::sourceWanted, bond,
            [this] { m_listener.tell(&WebBrowserEvents::sourceWanted); });
    connect(page, &WebPage::arrived, bond,
            [this] { m_listener.tell(&WebBrowserEvents::contextMenuOver); });
    connect(view, &WebView::menuWanted, bond,
            [this](const ContextTarget &target) { openMenu(target); });
    connect(view, &WebView::gotFocus, bond,
            [this] { m_listener.tell(&WebBrowserEvents::gotFocus); });
}

void QtWebBrowser::openMenu(ContextTarget target)
{
    for (const HistoryStep &step : historySteps())
        (step.offset < 0 ? target.canGoBack : target.canGoForward) = true;
    m_listener.tell(&WebBrowserEvents::contextMenuWanted, target);
}

void QtWebBrowser::tellUse()
{
    const QList<Permission> used = page() ? page()->permissions().inUse() : QList<Permission>();
    m_listener.tell(&WebBrowserEvents::useChange, useText(used));
}

qint64 QtWebBrowser::process() const
{
    return page() ? page()->renderProcessPid() : 0;
}

Inspector *QtWebBrowser::makeInspector()
{
    if (!page() || isPageHidden())
        return nullptr;
    auto *inspector = new Inspector(*page(), nullptr);
    connect(&m_life, &PageLife::going, inspector, &Inspector::end);
    connect(&m_life, &PageLife::crashed, inspector, &Inspector::end);
    return inspector;
}

void QtWebBrowser::endUse()
{
    if (page())
        page()->permissions().endUse();
}

void QtWebBrowser::setMuted(bool muted)
{
    if (isWaiting())
        m_navigator.setMutedToCome(muted);
    else if (page())
        page()->setAudioMuted(muted);
    m_sound.tell(isMuted());
    emit stateChanged();
}

bool QtWebBrowser::mayRun(const std::function<void()> &command)
{
    if (m_life.waitsForAnswer(command) || m_silence.leave(command))
        return false;
    m_life.leaveUnheard(command);
    m_life.noteUserAction();
    return true;
}

void QtWebBrowser::navigate(const QString &url)
{
    if (!mayRun([this, url] { navigate(url); }))
        return;
    if (isWaiting())
        m_zoom.forget();
    m_navigator.load(url, false);
}

void QtWebBrowser::navigateForPage(const QString &url)
{
    if (!m_life.waitsForAnswer([this, url] { navigateForPage(url); }))
        m_navigator.load(url, true);
}

void QtWebBrowser::navigateNow()
{
    if (isWaiting())
        m_navigator.comeBack();
}

bool QtWebBrowser::goBack()
{
    return !mayRun([this] { goBack(); }) || m_navigator.goBack();
}

bool QtWebBrowser::goForward()
{
    return !mayRun([this] { goForward(); }) || m_navigator.goForward();
}

bool QtWebBrowser::goTo(int offset)
{
    return !mayRun([this, offset] { goTo(offset); }) || m_navigator.goTo(offset);
}

void QtWebBrowser::refresh()
{
    if (mayRun([this] { refresh(); }))
        m_navigator.reload(QWebEnginePage::Reload);
}

void QtWebBrowser::refresh2(int level)
{
    constexpr int completely = 3;
    if (!mayRun([this, level] { refresh2(level); }))
        return;
    m_navigator.reload(level == completely ? QWebEnginePage::ReloadAndBypassCache
                                           : QWebEnginePage::Reload);
}

void QtWebBrowser::stop()
{
    m_silence.stay();
    m_navigator.stop();
}

/// Until the program ends, where that very page still stands for the window.
void QtWebBrowser::goOn(const CertificateFailure &failure)
{
    if (!mayRun([this, failure] { goOn(failure); }))
        return;
    if (page())
        page()->certificates().exceptions().add(failure);
    m_navigator.askAgain(failure.url);
}

void QtWebBrowser::leaveFailure()
{
    if (!goBack())
        navigate(u"about:blank"_s);
}

void QtWebBrowser::showCertificates()
{
    if (page() && m_life.host())
        PageConnection::open(QUrl(locationUrl()), page()->certificates().exceptions(),
                             m_life.host());
}

bool QtWebBrowser::execCommand(OleCmd command, OleExecOpt, const QVariant *in, QVariant *out)
{
    // These are for whatever the window shows next, too.
    const bool isForWindow = command == OleCmd::PageSetup || command == OleCmd::Zoom;
    if (!page() || (!isForWindow && isPageHidden()))
        return false;
    return command == OleCmd::Zoom ? runZoom(in, out) : PageCommands::run(page(), command);
}

/// The sizes of text are marks on the scale.
bool QtWebBrowser::runZoom(const QVariant *in, QVariant *out)
{
    constexpr const auto &levels = ZoomScale::fontSizes;
    if (in) {
        bool isNumber = false;
        const int level = in->toInt(&isNumber);
        if (!isNumber || level < 0 || level >= int(levels.size()))
            return false;
        m_zoom.choose(levels[size_t(level)]);
        return true;
    }
    const auto *level = std::find(levels.begin(), levels.end(), m_zoom.percent());
    if (!out || level == levels.end())
        return false;
    *out = int(level - levels.begin());
    return true;
}

void QtWebBrowser::setZoom(int percent)
{
    if (page())
        m_zoom.choose(percent);
}

void QtWebBrowser::zoomBy(int steps)
{
    if (page())
        m_zoom.walk(steps);
}

void QtWebBrowser::followZoom()
{
    if (isWaiting())
        m_navigator.setZoomToCome(m_zoom.factor());
    m_listener.tell(&WebBrowserEvents::zoomChange, m_zoom.percent());
    emit stateChanged();
}

void QtWebBrowser::act(PageAct act)
{
    if (page() && !isPageHidden())
        PageCommands::act(*page(), act);
}

void QtWebBrowser::replaceWord(const QString &word)
{
    if (page() && !isPageHidden())
        page()->replaceMisspelledWord(word);
}

void QtWebBrowser::followLink(const QString &url)
{
    const QUrl link = QUrl::fromEncoded(url.toUtf8());
    if (!isOutsideAddress(link))
        navigate(url);
    else if (page())
        OutsideRequests::put(*page(), {link});
}

int QtWebBrowser::queryStatus(OleCmd command)
{
    return page() && !isPageHidden() ? PageCommands::status(page(), command) : 0;
}

void QtWebBrowser::setFocus()
{
    if (m_life.host())
        m_life.host()->setFocus();
}

void QtWebBrowser::find()
{
    if (m_life.host())
        m_life.host()->openFindBar();
}

void QtWebBrowser::findAgain(bool backwards)
{
    if (m_life.host())
        m_life.host()->findAgain(backwards);
}

void QtWebBrowser::move(int left, int top, int width, int height)
{
    if (m_life.host())
        m_life.host()->setGeometry(left, top, width, height);
}

QString QtWebBrowser::addressBeforePage(const QString &asked) const
{
    return m_navigator.state().addressBeforePage(asked, page() ? page()->url() : QUrl());
}

void QtWebBrowser::outerHtml(const std::function<void(const QString &)> &done)
{
    if (!page() || isPageHidden()) {
        done({});
        return;
    }
    page()->runJavaScript(u"document.documentElement ? document.documentElement.outerHTML : ''"_s,
                          QWebEngineScript::ApplicationWorld,
                          [done](const QVariant &markup) { done(markup.toString()); });
}

void QtWebBrowser::readSource(const std::function<void(const PageSource &)> &done)
{
    if (page() && !isPageHidden())
        PageSource::read(*page(), widget()->window(), done);
    else
        done({});
}

void QtWebBrowser::setRefusesUnaskedWindows(bool refuses)
{
    if (!page())
        return;
    constexpr auto attribute = QWebEngineSettings::JavascriptCanOpenWindows;
    if (refuses)
        page()->settings()->setAttribute(attribute, false);
    else
        page()->settings()->resetAttribute(attribute);
}

void QtWebBrowser::adopt(QWebEngineNewWindowRequest &request)
{
    m_navigator.adopt(request.requestedUrl());
    m_life.adopt(request);
    m_windows.openAt(request.requestedGeometry());
}
