#pragma once

#include "Listener.h"
#include "Navigator.h"
#include "PageLife.h"
#include "TitleThrottle.h"
#include "UserConsent.h"
#include "WebBrowser.h"
#include "WindowRequests.h"

/// The engine control on Qt WebEngine: its members here, what stands behind them in its parts. Its
/// page is made when it is first needed: by `navigate`, or by a page that asks for a window.
class QtWebBrowser : public WebBrowser {
    Q_OBJECT

public:
    explicit QtWebBrowser(QWidget *host);
    ~QtWebBrowser() override;

    QWidget *widget() override { return m_life.host(); }
    void setEvents(WebBrowserEvents *events) override { m_listener.set(events); }
    void setQuestions(PageQuestions *questions) override { m_life.setQuestions(questions); }
    void navigate(const QString &url) override;
    void navigateForPage(const QString &url) override;
    void navigateLater(const QString &url, const PageState &state = {}) override;
    void navigateNow() override;
    PageState pageState(StateDepth depth = StateDepth::All) const override
    {
        return m_navigator.pageState(depth);
    }
    bool isWaiting() const override { return m_navigator.state().isWaiting(); }
    SleepLimit maySleep() const override;
    void askToSleep(const std::function<void(bool may)> &done) override;
    void fallAsleep() override;
    bool goBack() override;
    bool goForward() override;
    QList<HistoryStep> historySteps() const override { return m_navigator.historySteps(); }
    bool goTo(int offset) override;
    void refresh() override;
    void refresh2(int level) override;
    void stop() override { m_navigator.stop(); }
    bool execCommand(OleCmd command, OleExecOpt option, const QVariant *in = nullptr,
                     QVariant *out = nullptr) override;
    int queryStatus(OleCmd command) override;
    void setFocus() override;
    void find() override;
    void move(int left, int top, int width, int height) override;
    QString locationUrl() const override { return m_navigator.state().location(); }
    QString addressBeforePage(const QString &asked) const override;
    bool hasDocument() const override { return m_navigator.state().hasDocument(); }
    void clearDocument() override { }
    void outerHtml(const std::function<void(const QString &)> &done) override;
    void showCertificates() override;
    bool isBusy() const override { return m_navigator.state().isBusy(); }
    Arrival arrivedBy() const override { return m_navigator.state().arrival(); }
    WindowRequest currentRequest() const override { return m_windows.current(); }
    void setRefusesUnaskedWindows(bool refuses) override;
    void endUse() override;
    bool isSilent() const override { return m_silent; }
    void setSilent(bool silent) override { m_silent = silent; }
    void setRegisterAsBrowser(bool) override { }
    void setShown(bool shown) override { m_life.setShown(shown); }

    /// The page; null until it is needed.
    WebPage *page() const { return m_life.page(); }
    /// The page is the one of another page's request. Inside its engine callback only.
    void adopt(QWebEngineNewWindowRequest &request);
    /// Ends the page; the control is as before its first navigation.
    void dropPage() { m_life.drop(); }

private:
    void watch(WebPage *page, WebView *view, QObject *bond);
    void goOn(const CertificateFailure &failure);
    void leaveFailure();
    void tellUse();
    void dropPictureSoon();
    void takePicture();
    void takePassingPicture();
    /// A command of the user's may run now; else it is `command` that does, later.
    bool mayRun(const std::function<void()> &command);

    Listener m_listener;
    PageLife m_life;
    Navigator m_navigator;
    WindowRequests m_windows;
    UserConsent m_consent;
    TitleThrottle m_title;
    /// What the page looked like when it went out of sight (`SleepPicture::packed`).
    QByteArray m_picture;
    bool m_silent = false;
};
