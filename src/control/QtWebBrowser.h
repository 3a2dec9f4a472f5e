#pragma once

#include "Listener.h"
#include "Navigator.h"
#include "PageLife.h"
#include "PageZoom.h"
#include "SilentPage.h"
#include "SoundTeller.h"
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
    void setEvents(WebBrowserEvents *events) override;
    void setPrivate() override { m_life.setPrivate(); }
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
    void askToSleep(const std::function<bool()> &mayStill,
                    const std::function<void(bool may)> &done) override;
    void fallAsleep() override;
    bool goBack() override;
    bool goForward() override;
    QList<HistoryStep> historySteps() const override { return m_navigator.historySteps(); }
    bool goTo(int offset) override;
    void refresh() override;
    void refresh2(int level) override;
    void stop() override;
    bool execCommand(OleCmd command, OleExecOpt option, const QVariant *in = nullptr,
                     QVariant *out = nullptr) override;
    void act(PageAct act) override;
    void replaceWord(const QString &word) override;
    void followLink(const QString &url) override;
    int queryStatus(OleCmd command) override;
    void setFocus() override;
    void setZoom(int percent) override;
    void zoomBy(int steps) override;
    void find() override;
    void findAgain(bool backwards) override;
    void move(int left, int top, int width, int height) override;
    QString locationUrl() const override { return m_navigator.state().location(); }
    QString addressBeforePage(const QString &asked) const override;
    bool isVisit() const override { return m_navigator.state().isVisit(); }
    bool hasDocument() const override { return m_navigator.state().hasDocument(); }
    void clearDocument() override { }
    void outerHtml(const std::function<void(const QString &)> &done) override;
    void readSource(const std::function<void(const PageSource &)> &done) override;
    void showCertificates() override;
    bool isBusy() const override { return m_navigator.state().isBusy(); }
    Arrival arrivedBy() const override { return m_navigator.state().arrival(); }
    WindowRequest currentRequest() const override { return m_windows.current(); }
    void setRefusesUnaskedWindows(bool refuses) override;
    Inspector *makeInspector() override;
    void endUse() override;
    void setMuted(bool muted) override;
    qint64 process() const override;
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
    /// The page goes, and `picture` (`SleepPicture::packed`) stands in its place.
    void wait(const QString &url, const PageState &state, const QByteArray &picture);
    void goOn(const CertificateFailure &failure);
    void leaveFailure();
    /// The user sees a page of ours in its place.
    bool isPageHidden() const { return m_life.host() && m_life.host()->hidesPage(); }
    bool runZoom(const QVariant *in, QVariant *out);
    void followZoom();
    void tellUse();
    void openMenu(ContextTarget target);
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
    SilentPage m_silence;
    SoundTeller m_sound;
    TitleThrottle m_title;
    PageZoom m_zoom;
    /// What the page looked like when it went out of sight (`SleepPicture::packed`).
    QByteArray m_picture;
    bool m_silent = false;
};
