#include "QtWebBrowser.h"

#include "CertificateExceptions.h"
#include "Downloads.h"
#include "PageActivity.h"
#include "PageCommands.h"
#include "PageConnection.h"
#include "PagePermissions.h"
#include "SleepPicture.h"
#include "SleepReasons.h"

#include <QElapsedTimer>
#include <QTimer>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineScript>
#include <QWebEngineSettings>

using namespace Qt::StringLiterals;

namespace {
using namespace std::chrono_literals;
/// A page that does not tell when it is in sight is by then.
constexpr auto untilInSight = 500ms;
/// Each takes about ten milliseconds.
constexpr int mostPicturesInARow = 5;
constexpr int pictureRowMs = 200;
}

QtWebBrowser::QtWebBrowser(QWidget *host)
    : WebBrowser(host)
    , m_life(new BrowserHost(host), m_listener)
    , m_navigator(m_life, m_listener)
    , m_windows(m_life, m_navigator, m_listener)
    , m_consent(m_life, m_navigator)
    , m_title(nullptr)
{
    connect(m_life.host(), &BrowserHost::reloadRequested, this, &QtWebBrowser::refresh);
    connect(m_life.host(), &BrowserHost::backRequested, this, &QtWebBrowser::leaveFailure);
    connect(m_life.host(), &BrowserHost::goOnRequested, this, &QtWebBrowser::goOn);
    connect(m_life.host(), &BrowserHost::wakeRequested, this,
            [this] { m_listener.tell(&WebBrowserEvents::wakeWanted); });
    connect(this, &WebBrowser::loadEnded, this, &QtWebBrowser::dropPictureSoon);
    connect(&m_life, &PageLife::goingOutOfSight, this, &QtWebBrowser::takePassingPicture);
    connect(&m_navigator.teller(), &NavigationTeller::pageCame, this,
            [this] { m_picture.clear(); });
    connect(&m_life, &PageLife::came, this, &QtWebBrowser::watch);
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

void QtWebBrowser::watch(WebPage *page, WebView *view, QObject *bond)
{
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
    connect(page, &WebPage::wanted, bond, [this] { m_listener.tell(&WebBrowserEvents::wanted); });
    connect(view, &WebView::gotFocus, bond,
            [this] { m_listener.tell(&WebBrowserEvents::gotFocus); });
}

void QtWebBrowser::tellUse()
{
    const QList<Permission> used = page() ? page()->permissions().inUse() : QList<Permission>();
    m_listener.tell(&WebBrowserEvents::useChange, useText(used));
}

void QtWebBrowser::endUse()
{
    if (page())
        page()->permissions().endUse();
}

/// The page goes.
void QtWebBrowser::navigateLater(const QString &url, const PageState &state)
{
    m_navigator.waitAt(url, state);
    tellUse();
}

SleepLimit QtWebBrowser::maySleep() const
{
    return page() ? sleepLimitOf(*page(), m_navigator.state()) : SleepLimit::Nothing;
}

void QtWebBrowser::askToSleep(const std::function<void(bool)> &done)
{
    // Without a process there is nobody to ask.
    if (page() && page()->renderProcessPid() != 0)
        page()->activity().askToGo(done);
    else
        QTimer::singleShot(0, this, [done] { done(true); });
}

void QtWebBrowser::fallAsleep()
{
    if (!page() || !m_life.host())
        return;
    m_life.host()->endFullScreen();
    if (page()->isVisible())
        takePicture();
    const QByteArray picture = std::exchange(m_picture, {});
    navigateLater(locationUrl(), pageState());
    m_life.host()->showPicture(picture);
}

/// Many windows that go at once must not hold the interface for it.
void QtWebBrowser::takePassingPicture()
{
    static QElapsedTimer sinceLast;
    static int inARow = 0;
    inARow = sinceLast.isValid() && sinceLast.elapsed() < pictureRowMs ? inARow + 1 : 0;
    sinceLast.start();
    if (inARow < mostPicturesInARow)
        takePicture();
}

void QtWebBrowser::takePicture()
{
    if (m_life.view() && m_life.view()->isVisible())
        m_picture = SleepPicture::packed(m_life.view()->grab());
}

void QtWebBrowser::dropPictureSoon()
{
    if (!isWaiting()) {
        QTimer::singleShot(untilInSight, this, [this] {
            if (!isWaiting() && !isBusy() && m_life.host())
                m_life.host()->dropPicture();
        });
    }
}

bool QtWebBrowser::mayRun(const std::function<void()> &command)
{
    if (m_life.waitsForAnswer(command))
        return false;
    m_life.leaveUnheard(command);
    m_life.noteUserAction();
    return true;
}

void QtWebBrowser::navigate(const QString &url)
{
    if (mayRun([this, url] { navigate(url); }))
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

/// Until the program ends, where that very page still stands for the window.
void QtWebBrowser::goOn(const CertificateFailure &failure)
{
    if (!mayRun([this, failure] { goOn(failure); }))
        return;
    CertificateExceptions::instance().add(failure);
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
        PageConnection::open(QUrl(locationUrl()), m_life.host());
}

bool QtWebBrowser::execCommand(OleCmd command, OleExecOpt, const QVariant *in, QVariant *out)
{
    return page() && PageCommands::run(page(), command, in, out);
}

int QtWebBrowser::queryStatus(OleCmd command)
{
    return page() ? PageCommands::status(page(), command) : 0;
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
    if (!page()) {
        done({});
        return;
    }
    page()->runJavaScript(u"document.documentElement ? document.documentElement.outerHTML : ''"_s,
                          QWebEngineScript::ApplicationWorld,
                          [done](const QVariant &markup) { done(markup.toString()); });
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
