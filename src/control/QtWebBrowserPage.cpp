// The control's page: how it comes, and what it asks for besides navigation.
#include "BrowserHost.h"
#include "EngineProfile.h"
#include "EngineVersion.h"
#include "LivePages.h"
#include "PageIndicators.h"
#include "PageQuestions.h"
#include "QtWebBrowser.h"
#include "RefusedAddress.h"
#include "ScriptedPlace.h"
#include "ShownAddress.h"
#include "TitleThrottle.h"
#include "WebPage.h"
#include "WebView.h"
#include "Yield.h"

#include <QCoreApplication>
#include <QEvent>
#include <QTimer>
#include <QWebEngineFullScreenRequest>
#include <QWebEngineLoadingInfo>
#include <QWebEngineNewWindowRequest>
#include <QWebEngineSettings>

using namespace Qt::StringLiterals;

namespace {
QEvent::Type discardEvent()
{
    static const auto type = QEvent::Type(QEvent::registerEventType());
    return type;
}

/// A window that its opener's script fills, or sends somewhere later.
bool opensEmpty(const QUrl &url)
{
    return url.isEmpty() || url == QUrl(u"about:blank#blocked"_s) || url.scheme() == "javascript"_L1
        || (emptyWindowsAreBlank && url.scheme() == "about"_L1);
}

/// The user has gone on since he dropped something: the page has taken it itself.
bool beginsAnew(const QEvent &event)
{
    return event.type() == QEvent::MouseButtonPress || event.type() == QEvent::KeyPress
        || event.type() == QEvent::TouchBegin;
}
}

void QtWebBrowser::usePage(WebPage *page)
{
    m_page = page;
    LivePages::add(this);
    connectPage();
    connectLoading();
    connectQuestions();
    m_indicators->watch(m_page);
    m_view = new WebView(m_page, m_host);
    connect(m_view, &WebView::gotFocus, this, [this] {
        if (m_events)
            m_events->gotFocus();
    });
    connect(m_view, &WebView::eventCame, this, [this](const QEvent &event) {
        m_act.note(event);
        if (beginsAnew(event))
            m_dropped.clear();
    });
    connect(m_view, &WebView::dropped, this,
            [this](const QStringList &addresses) { m_dropped = addresses; });
    connect(m_view, &WebView::visibleChanged, this, &QtWebBrowser::applyShown);
    m_host->setView(m_view);
    applyShown();
}

void QtWebBrowser::forgetPage()
{
    m_history = NavigationHistory();
    m_pending.clear();
    m_handedOver.clear();
    m_replacing.clear();
    m_startedUnheard.clear();
    m_linksToForget.clear();
    m_refusal.clear();
    m_requested = QRect();
    m_stage = Stage::None;
    m_refusals = 0;
    m_isTyped = false;
    m_adopted = false;
    m_stepping = false;
    m_stopped = false;
    m_act = UserAct();
    m_dropped.clear();
    m_busy = false;
    m_hasDocument = false;
    m_completed = false;
    m_showsError = false;
    m_host->hideCrash();
    m_crashed = false;
    m_indicators->reset(QUrl());
    showStatus(QString());
}

void QtWebBrowser::connectLoading()
{
    m_page->setQuestion([this](const QUrl &url, QWebEnginePage::NavigationType type,
                               bool isMainFrame) { return ask(url, type, isMainFrame); });
    connect(m_page, &QWebEnginePage::loadingChanged, this, &QtWebBrowser::onLoadingChanged);
    connect(m_page, &QWebEnginePage::urlChanged, this, &QtWebBrowser::onUrlChanged);
    connect(m_page, &WebPage::documentStarted, this, &QtWebBrowser::onDocumentStarted);
    connect(m_page, &WebPage::frameLoaded, this, &QtWebBrowser::onFrameLoaded);
    connect(m_page, &WebPage::scriptFailed, this, [this](const ScriptError &error) {
        if (m_events && !m_silent)
            m_events->scriptFailed(error);
    });
    connect(m_page, &WebPage::resendRequested, this, &QtWebBrowser::onResendRequested);
    connect(m_page, &WebPage::retryRequested, this, [this] {
        if (m_showsError)
            QTimer::singleShot(0, this, [this] { refresh(); });
    });
}

void QtWebBrowser::connectPage()
{
    connect(m_page, &QWebEnginePage::titleChanged, m_title, &TitleThrottle::put);
    connect(m_page, &QWebEnginePage::iconChanged, this, [this](const QIcon &icon) {
        if (m_events)
            m_events->iconChange(icon);
    });
    connect(m_page, &QWebEnginePage::linkHovered, this, [this](const QString &url) {
        const EngineCallbackScope scope;
        if (m_events)
            m_events->statusTextChange(url.isEmpty() ? m_status : shownAddress(url));
    });
    connect(m_page, &QWebEnginePage::newWindowRequested, this, &QtWebBrowser::onNewWindowRequested);
    connect(m_page, &WebPage::linkWindowRequested, this, [this](const QUrl &url) {
        if (m_events)
            m_events->openLinkInNewWindow(QString::fromLatin1(url.toEncoded()));
    });
    connect(m_page, &QWebEnginePage::geometryChangeRequested, this,
            &QtWebBrowser::onGeometryRequested);
    connect(
        m_page, &WebPage::focusMissed, this,
        [this] {
            if (m_view)
                m_view->renewFocus();
        },
        Qt::QueuedConnection);
    connect(m_page, &WebPage::placeRequested, this, &QtWebBrowser::onPlaceRequested);
    connect(m_page, &QWebEnginePage::windowCloseRequested, this, &QtWebBrowser::onCloseRequested);
    connect(
        m_page, &QWebEnginePage::fullScreenRequested, m_host,
        [this](const QWebEngineFullScreenRequest &request) { m_host->answerFullScreen(request); });
    connect(m_page, &QWebEnginePage::recentlyAudibleChanged, this, [this] { applyShown(); });
    connect(m_page, &QWebEnginePage::renderProcessTerminated, this,
            [this](QWebEnginePage::RenderProcessTerminationStatus status) {
                // Pages that are being shut down end normally.
                if (status != QWebEnginePage::NormalTerminationStatus)
                    onRendererGone();
            });
}

void QtWebBrowser::onNewWindowRequested(QWebEngineNewWindowRequest &request)
{
    const EngineCallbackScope scope;
    if (!m_events || opensDropped(request.requestedUrl()))
        return;
    if (isRefusedAddress(request.requestedUrl())) {
        tellNoPage(QString::fromLatin1(request.requestedUrl().toEncoded()), request.requestedUrl());
        return;
    }
    WebBrowser *target = nullptr;
    bool cancel = false;
    m_request = {QString::fromLatin1(request.requestedUrl().toEncoded()),
                 request.isUserInitiated()};
    m_events->newWindow2(target, cancel);
    auto *control = qobject_cast<QtWebBrowser *>(target);
    if (!control || cancel)
        return;
    control->adopt(request);
}

/// The engine asks for a window for the first file or link that was dropped on a page that left it;
/// it opens where it was dropped instead, and the others in windows of their own.
bool QtWebBrowser::opensDropped(const QUrl &url)
{
    if (m_dropped.isEmpty() || url != QUrl(m_dropped.first()))
        return false;
    QTimer::singleShot(0, m_page,
                       [self = QPointer(this), addresses = std::exchange(m_dropped, {})] {
                           self->navigate(addresses.first());
                           for (const QString &other : addresses.mid(1)) {
                               // Events run while a window opens.
                               if (self && self->m_events)
                                   self->m_events->openLinkInNewWindow(other);
                           }
                       });
    return true;
}

void QtWebBrowser::setRefusesUnaskedWindows(bool refuses)
{
    if (!m_page)
        return;
    constexpr auto attribute = QWebEngineSettings::JavascriptCanOpenWindows;
    if (refuses)
        m_page->settings()->setAttribute(attribute, false);
    else
        m_page->settings()->resetAttribute(attribute);
}

void QtWebBrowser::adopt(QWebEngineNewWindowRequest &request)
{
    m_adopted = true;
    m_opensEmpty = opensEmpty(request.requestedUrl());
    // The spare page has contents of its own already, which those of the request replace. A page
    // without would be left half made, and end the program as soon as a script touches it.
    WebPage *page = takePage();
    request.openIn(page);
    page->renewInterceptor();
    m_requested = request.requestedGeometry();
    if (m_requested.width() <= 0 || m_requested.height() <= 0)
        m_requested = QRect();
    usePage(page);
    placeAsRequested();
}

/// The window may have been laid out anew since; its first navigation is to find the control as
/// the opening page wanted it.
void QtWebBrowser::placeAsRequested()
{
    if (!m_requested.isNull())
        m_host->setGeometry(m_requested);
}

void QtWebBrowser::onGeometryRequested(const QRect &pixels)
{
    const EngineCallbackScope scope;
    // The first request repeats what the window was opened with.
    if (!m_requested.isNull() || !m_hasDocument)
        return;
    QRect wanted = m_host->geometry();
    const QWidget *top = m_host->window();
    if (pixels.topLeft() != top->frameGeometry().topLeft())
        wanted.moveTopLeft(pixels.topLeft());
    if (pixels.size() != top->frameGeometry().size())
        wanted.setSize(pixels.size());
    m_host->setGeometry(wanted);
}

/// A script places the control inside its window; one that does so before the first navigation has
/// the window fitted to it.
void QtWebBrowser::onPlaceRequested(const QString &request)
{
    if (!m_adopted)
        return;
    const QRect wanted = scriptedPlace(m_host->geometry(), request);
    if (!m_requested.isNull())
        m_requested = wanted;
    m_host->setGeometry(wanted);
}

void QtWebBrowser::onCloseRequested()
{
    const EngineCallbackScope scope;
    bool cancel = false;
    if (m_events)
        m_events->windowClosing(m_adopted, cancel);
}

void QtWebBrowser::onRendererGone()
{
    if (m_questions)
        m_questions->endAll();
    m_busy = false;
    m_stage = Stage::None;
    m_indicators->reset(QUrl(m_location));
    m_host->showCrash();
    m_crashed = true;
    // Ahead of whatever a screen reader asks meanwhile.
    QCoreApplication::postEvent(this, new QEvent(discardEvent()), Qt::HighEventPriority);
    emit loadEnded();
}

bool QtWebBrowser::event(QEvent *event)
{
    if (event->type() != discardEvent())
        return WebBrowser::event(event);
    discardCrashed();
    return true;
}

/// What screen readers know of the page leads through what has gone with its process, and would end
/// the program. It goes as well; the history stays.
void QtWebBrowser::discardCrashed()
{
    if (!m_crashed || !m_page)
        return;
    m_page->setVisible(false);
    m_page->setLifecycleState(QWebEnginePage::LifecycleState::Discarded);
}

/// The page that is shown next comes in place of the crashed one.
void QtWebBrowser::leaveCrashed()
{
    m_host->hideCrash();
    if (std::exchange(m_crashed, false))
        applyShown();
}
