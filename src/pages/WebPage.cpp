#include "WebPage.h"

#include "CacheBypass.h"
#include "DownloadPages.h"
#include "InsecureForms.h"
#include "LeavingPage.h"
#include "Log.h"
#include "OutsideRequests.h"
#include "PageActivity.h"
#include "PageCertificates.h"
#include "PageCompany.h"
#include "PageDownloads.h"
#include "PageHold.h"
#include "PageLogin.h"
#include "PagePermissions.h"
#include "PageQuestions.h"
#include "PageScripts.h"
#include "PageUploads.h"
#include "PrivateProfiles.h"
#include "ProcessEnd.h"
#include "ScriptDialogs.h"
#include "Yield.h"

#include <QAuthenticator>
#include <QScopeGuard>
#include <QWebEngineContextMenuRequest>
#include <QWebEngineFullScreenRequest>
#include <QWebEngineHistory>
#include <QWebEngineSettings>
#include <QWebEngineView>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
/// What the page's menu was opened on last.
const QWebEngineContextMenuRequest *menuOf(WebPage &page)
{
    const QWebEngineView *view = QWebEngineView::forPage(&page);
    return view ? view->lastContextMenuRequest() : nullptr;
}

/// What the item of the page's menu saves; empty where it saves nothing.
QUrl savedBy(QWebEnginePage::WebAction action, const QWebEngineContextMenuRequest &menu)
{
    switch (action) {
    case QWebEnginePage::DownloadLinkToDisk:
        return menu.linkUrl();
    case QWebEnginePage::DownloadImageToDisk:
    case QWebEnginePage::DownloadMediaToDisk:
        return menu.mediaUrl();
    default:
        return {};
    }
}
}

WebPage::WebPage(QWebEngineProfile *profile)
    : QWebEnginePage(profile)
    , m_profileHold(PrivateProfiles::hold(profile))
    , m_cacheBypass(new CacheBypass(this))
    , m_leaving(new LeavingPage(*this))
    , m_certificates(new PageCertificates(*this))
    , m_insecureForms(new InsecureForms(*this))
    , m_activity(new PageActivity(*this))
    , m_company(new PageCompany(*this))
    , m_permissions(std::make_unique<PagePermissions>(*this))
    , m_isPrivate(PrivateProfiles::numberOf(profile) != 0)
{
    setUrlRequestInterceptor(m_cacheBypass);
    // All are refused where they are asked for; the engine would refuse others unheard.
    settings()->setUnknownUrlSchemePolicy(QWebEngineSettings::AllowAllUnknownUrlSchemes);
    connect(m_cacheBypass, &CacheBypass::pageRequested, this,
            [this](const QByteArray &method) { m_sendsForm = method != "GET"; });
    connect(m_cacheBypass, &CacheBypass::frameRequested, this,
            [this](const QUrl &url, const QByteArray &method, const QUrl &asker, bool isPage) {
                if (method != "GET")
                    m_formAddress = url;
                else if (url == m_formAddress)
                    m_formAddress.clear();
                if (!isPage)
                    m_company->noteFrame(url);
                DownloadPages::note(*this, url, {asker, asker.isEmpty() && !isPage});
            });
    m_cacheBypass->setMaySend([this](const QUrl &url, const QUrl &sender) {
        return !m_insecureForms->blocks(url, sender);
    });
    connect(m_cacheBypass, &CacheBypass::connectionRequested, m_activity,
            &PageActivity::noteConnection);
    connect(m_cacheBypass, &CacheBypass::sendingRequested, m_activity, &PageActivity::noteSending);
    connect(m_cacheBypass, &CacheBypass::partRequested, m_certificates,
            &PageCertificates::partRequested);
    answerRequests();
}

WebPage::~WebPage()
{
    // While there is a page still that the engine can be answered for.
    m_permissions.reset();
    DownloadPages::noteEnd(*this);
}

void WebPage::answerRequests()
{
    connect(this, &QWebEnginePage::authenticationRequired, this,
            [this](const QUrl &url, QAuthenticator *login) {
                const EngineCallbackScope scope;
                PageLogin::answer(*this, url, login);
            });
    connect(this, &QWebEnginePage::proxyAuthenticationRequired, this,
            [this](const QUrl &url, QAuthenticator *login, const QString &proxy) {
                const EngineCallbackScope scope;
                PageLogin::answerProxy(*this, url, proxy, login);
            });
}

void WebPage::setCacheBypass(bool on)
{
    m_cacheBypass->setActive(on);
}

void WebPage::renewInterceptor()
{
    setUrlRequestInterceptor(m_cacheBypass);
}

void WebPage::triggerAction(WebAction action, bool checked)
{
    if (!m_mayAskAgain && (action == Reload || action == ReloadAndBypassCache)) {
        emit resendRequested(action);
        return;
    }
    if (action == ViewSource) {
        emit sourceWanted();
        return;
    }
    if (const QWebEngineContextMenuRequest *menu = menuOf(*this)) {
        const QUrl saved = savedBy(action, *menu);
        if (saved.scheme() == "http"_L1 || saved.scheme() == "https"_L1) {
            emit saveRequested(saved);
            return;
        }
        if (!saved.isEmpty())
            m_placeWish.noteMenu(saved);
    }
    QWebEnginePage::triggerAction(action, checked);
}

bool WebPage::acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame)
{
    const EngineCallbackScope scope;
    if (isMainFrame)
        m_consoleBrake.release();
    if (isMainFrame && type != NavigationTypeRedirect) {
        m_insecureForms->noteNavigation(type == NavigationTypeReload
                                        || type == NavigationTypeBackForward);
    }
    // The engine would start the program that the desktop has for it.
    const bool accepted =
        (!m_question || m_question(url, type, isMainFrame)) && !isOutsideAddress(url);
    // Until its request is seen, which not every kind of address has.
    if (accepted && isMainFrame) {
        static int lastNavigation = 0;
        m_navigation = ++lastNavigation;
        m_sendsForm = type == NavigationTypeFormSubmitted;
    }
    return accepted;
}

void WebPage::noteArrival()
{
    m_placeWish.noteArrival();
    m_insecureForms->forget();
    m_hasTyped = false;
    const QString scheme = url().scheme();
    m_mayAskAgain = !m_sendsForm || (scheme != "http"_L1 && scheme != "https"_L1);
    emit arrived();
}

QUrl WebPage::committedUrl() const
{
    return history()->currentItem().url();
}

PageOrigin WebPage::origin() const
{
    const QUrl url = committedUrl();
    if (!leavesTrace())
        return {{}, false};
    return url.isEmpty() || url.scheme() == "about"_L1 ? m_opener : PageOrigin{url, true};
}

void WebPage::setOpener(WebPage &opener)
{
    m_openerPage = &opener;
    m_opener = opener.origin();
    m_openerUrl = opener.committedUrl();
    opener.company().noteWindow(*this);
}

bool WebPage::isAnswerToForm(const QUrl &url) const
{
    return !m_formAddress.isEmpty()
        && url.matches(m_formAddress, QUrl::RemoveFragment | QUrl::NormalizePathSegments);
}

PageDownloads &WebPage::downloads()
{
    if (!m_downloads)
        m_downloads = new PageDownloads(*this);
    return *m_downloads;
}

OutsideRequests &WebPage::outside()
{
    if (!m_outside)
        m_outside = new OutsideRequests(*this);
    return *m_outside;
}

QStringList WebPage::chooseFiles(FileSelectionMode mode, const QStringList &,
                                 const QStringList &acceptedMimeTypes)
{
    if (!m_uploads)
        m_uploads = new PageUploads(*this);
    return m_uploads->choose(mode, acceptedMimeTypes);
}

void WebPage::javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString &message,
                                       int line, const QString &source)
{
    const EngineCallbackScope scope;
    if (m_consoleBrake.isTooMany())
        m_consoleBrake.apply(renderProcessPid());
    const std::optional<PageScripts::Line> told = PageScripts::parse(message);
    if (!told) {
        if (message.startsWith("Mixed Content"_L1) && !message.contains("automatically upgraded"_L1)
            && !message.contains("has been blocked"_L1))
            emit mixedContentSeen();
        else if (level == ErrorMessageLevel && message.startsWith("Uncaught "_L1))
            reportError(message, line, source);
        qCDebug(lcEngine) << level << source << line << message.left(300);
    } else if (told->what == "start"_L1) {
        if (!told->isMainFrame)
            return;
        m_editableFocus = m_richFocus = false;
        emit documentStarted(told->value);
    } else if (told->what == "load"_L1) {
        emit frameLoaded(told->value, told->isMainFrame);
    } else if (told->what == "edit"_L1) {
        m_editableFocus = told->value != "none"_L1;
        m_richFocus = told->value == "rich"_L1;
    } else if (told->what == "typed"_L1) {
        noteTyped();
    } else if (told->what == "live"_L1) {
        m_activity->noteConnection();
    } else if (told->what == "unfocused"_L1) {
        emit focusMissed();
    } else if (told->what == "column"_L1) {
        m_errorColumn = told->value.toInt();
    } else if (told->what == "form"_L1) {
        m_insecureForms->noteForm(told->value);
    } else if (told->what == "place"_L1) {
        emit placeRequested(told->value);
    } else if (told->what == "source"_L1) {
        emit sourceRead(told->value.toInt());
    } else if (told->what == "painted"_L1) {
        emit painted();
    } else if (told->what == "back"_L1) {
        emit backKeyPressed();
    } else if (told->what == "retry"_L1) {
        emit retryRequested();
    } else if (told->what == "chosen"_L1) {
        emit partChosen(told->value);
    }
}

void WebPage::reportError(const QString &message, int line, const QString &source)
{
    // The column was told just before; an error in a promise has none.
    const int column = std::exchange(m_errorColumn, 0);
    const bool inPromise = message.startsWith("Uncaught (in promise)"_L1);
    if (!source.startsWith("chrome-error:"_L1))
        emit scriptFailed({message, line, inPromise ? 0 : column, source});
}

void WebPage::setQuestions(PageQuestions *questions)
{
    m_questions = questions;
}

PageQuestions *WebPage::questions() const
{
    return m_questions;
}

/// One call at a time: while it lasts, no script runs, and the engine does not tell that the page's
/// process has ended.
template <typename Ask> auto WebPage::whileAwaited(const Ask &ask)
{
    const PageHold hold(this, PageHold::AtExit::Stays);
    const ProcessEnd end(renderProcessPid(), [this] {
        if (m_questions)
            m_questions->endAll();
    });
    const bool nested = std::exchange(m_awaitsAnswer, true);
    const auto done = qScopeGuard([this, nested] {
        m_awaitsAnswer = nested;
        if (!nested)
            QMetaObject::invokeMethod(this, &WebPage::answerGiven, Qt::QueuedConnection);
    });
    return ask();
}

void WebPage::javaScriptAlert(const QUrl &origin, const QString &message)
{
    whileAwaited([&] { ScriptDialogs::alert(*this, origin, message); });
}

bool WebPage::javaScriptConfirm(const QUrl &origin, const QString &message)
{
    return whileAwaited([&] { return ScriptDialogs::confirm(*this, origin, message); });
}

bool WebPage::javaScriptPrompt(const QUrl &origin, const QString &message,
                               const QString &defaultValue, QString *result)
{
    return whileAwaited(
        [&] { return ScriptDialogs::prompt(*this, origin, message, defaultValue, result); });
}
