#pragma once

#include "NavigationHistory.h"
#include "UserAct.h"
#include "WebBrowser.h"

#include <QPointer>
#include <QRect>
#include <QUrl>
#include <QWebEnginePage>

class BrowserHost;
class PageIndicators;
class QWebEngineLoadingInfo;
class QWebEngineNewWindowRequest;
class TitleThrottle;
class WebPage;
class WebView;

/// The engine control on Qt WebEngine. Its page is made when it is first needed: by `Navigate`, or
/// by a page that asks for a window. What the engine tells at odd moments, in odd order or not at
/// all is put right here, so that the events come as `WebBrowserEvents` describes them.
class QtWebBrowser : public WebBrowser {
    Q_OBJECT

public:
    explicit QtWebBrowser(QWidget *host);
    ~QtWebBrowser() override;

    QWidget *widget() override;
    void setEvents(WebBrowserEvents *events) override;
    void setQuestions(PageQuestions *questions) override;
    void navigate(const QString &url) override;
    void navigateForPage(const QString &url) override;
    void navigateLater(const QString &url) override;
    void navigateNow() override;
    bool isWaiting() const override { return m_waiting; }
    bool goBack() override;
    bool goForward() override;
    QList<HistoryStep> historySteps() const override;
    bool goTo(int offset) override;
    void refresh() override;
    void refresh2(int level) override;
    void stop() override;
    bool execCommand(OleCmd command, OleExecOpt option, const QVariant *in = nullptr,
                     QVariant *out = nullptr) override;
    int queryStatus(OleCmd command) override;
    void setFocus() override;
    void find() override;
    void move(int left, int top, int width, int height) override;
    QString locationUrl() const override;
    QString addressBeforePage(const QString &asked) const override;
    bool hasDocument() const override { return m_hasDocument; }
    void clearDocument() override { }
    void outerHtml(const std::function<void(const QString &)> &done) override;
    bool isBusy() const override { return m_busy; }
    Arrival arrivedBy() const override { return m_arrival; }
    WindowRequest currentRequest() const override { return m_request; }
    void setRefusesUnaskedWindows(bool refuses) override;
    bool isSilent() const override { return m_silent; }
    void setSilent(bool silent) override { m_silent = silent; }
    void setRegisterAsBrowser(bool) override { }
    void setShown(bool shown) override;

    /// The page; null until it is needed.
    WebPage *page() const;
    /// Ends the page; the control is as before its first navigation.
    void dropPage();

protected:
    bool event(QEvent *event) override;

private:
    /// Where the navigation of the main frame stands.
    enum class Stage { None, Asked, Started, Committed };

    void usePage(WebPage *page);
    void deletePage();
    /// Nothing is left of what the last page was about.
    void forgetPage();
    void connectPage();
    void connectLoading();
    void adopt(QWebEngineNewWindowRequest &request);
    bool opensDropped(const QUrl &url);

    void load(const QString &url, bool forPage);
    bool ask(const QUrl &url, int type, bool isMainFrame);
    Arrival arrivalOf(int type);
    void tellIfNothingCame();
    bool holdsNoPage() const;
    void tellNoPage(const QString &text, const QUrl &address);
    bool askForBlank(const QUrl &url);
    bool raiseBeforeNavigate(const QUrl &url);
    bool mayLeaveTrace(const QUrl &url) const;
    void replaceWith(const QUrl &url);
    void rememberLink(const QUrl &url);
    void forgetLinks();

    void onLoadingChanged(const QWebEngineLoadingInfo &info);
    void onLoadStarted(const QUrl &url);
    void onLoadEnded(const QWebEngineLoadingInfo &info);
    void onUrlChanged();
    void onDocumentStarted(const QString &address);
    bool isUnderWay() const;
    QUrl committedAddress() const;
    void tellGivenUp();
    void onFrameLoaded(const QString &url, bool isMainFrame);
    void commit(const QString &url, bool arrived);
    void endBlank();
    void completeDocument(const QString &url);

    void onNewWindowRequested(QWebEngineNewWindowRequest &request);
    void onGeometryRequested(const QRect &pixels);
    void reload(QWebEnginePage::WebAction action);
    void onResendRequested(QWebEnginePage::WebAction action);
    void onPlaceRequested(const QString &request);
    void onCloseRequested();
    void onRendererGone();
    void discardCrashed();
    void leaveCrashed();
    /// Passes on whether the history leads on, away from a crashed page, too.
    bool goneTo(bool goes);
    void connectQuestions();
    bool waitsForAnswer(const std::function<void()> &command);
    void noteUserAction();
    void onPrintRequested();
    void openPrintDialog();
    void onSignedIn();
    void askToSend(QWebEnginePage::WebAction action, const QString &words);
    void placeAsRequested();
    void showStatus(const QString &text);
    void applyShown();

    BrowserHost *m_host = nullptr;
    QPointer<WebView> m_view;
    QPointer<WebPage> m_page;
    QPointer<PageQuestions> m_questions;
    /// What the page asked to be printed with.
    QPointer<QWidget> m_printDialog;
    WebBrowserEvents *m_events = nullptr;
    NavigationHistory m_history;
    PageIndicators *m_indicators = nullptr;
    TitleThrottle *m_title = nullptr;
    /// The shown page's address: the engine's word, as the page spells it.
    QString m_location;
    QString m_status;
    /// Why the load under way is about to be stopped; the status text after its end.
    QString m_refusal;
    /// The address on its way.
    QUrl m_pending;
    /// An address that the engine was given and has not asked for yet.
    QUrl m_handedOver;
    /// Asked for already: a history entry is being replaced by it.
    QUrl m_replacing;
    /// The address of a page whose end was told before its start.
    QString m_startedUnheard;
    QList<QUrl> m_linksToForget;
    /// What the opening page asked for, pixels; null when nothing or when it is done.
    QRect m_requested;
    WindowRequest m_request;
    Stage m_stage = Stage::None;
    Arrival m_arrival = Arrival::ByPage;
    UserAct m_act;
    /// What was dropped on the page last, while it may still turn out that the page left it.
    QStringList m_dropped;
    int m_flags = 0;
    /// Loads whose start and end the engine tells although they were refused.
    int m_refusals = 0;
    /// The navigation under way was begun by the program, not by a page.
    bool m_isTyped = false;
    /// The navigation under way takes the place of the current history entry.
    bool m_replacesEntry = false;
    bool m_adopted = false;
    /// The address that the engine is to load came from a page.
    bool m_forPage = false;
    /// A step of the user's through the history is on its way.
    bool m_stepping = false;
    /// The load under way was stopped by a command.
    bool m_stopped = false;
    /// The page was opened without an address, and the engine has not told of its empty document.
    bool m_opensEmpty = false;
    bool m_busy = false;
    bool m_hasDocument = false;
    bool m_completed = false;
    bool m_showsError = false;
    /// The page's process has ended, and nothing has been loaded since.
    bool m_crashed = false;
    bool m_silent = false;
    bool m_shown = true;
    /// The location is where a page is to be, and there is none.
    bool m_waiting = false;
};
