#pragma once

#include "PageSource.h"
#include "WebBrowser.h"
#include "WebBrowserMaker.h"

#include <QPointer>

/// An engine control without an engine: it counts what it is asked and does what the test says.
class FakeWebBrowser : public WebBrowser {
public:
    /// One call of `execCommand`; how many arguments were given is part of what callers promise.
    struct Exec {
        OleCmd command;
        OleExecOpt option;
        bool hasIn = false;
        bool hasOut = false;
        QVariant in;
    };

    explicit FakeWebBrowser(QWidget *host)
        : WebBrowser(host)
        , m_widget(new QWidget(host))
    {
        made().append(this);
        m_widget->setFocusPolicy(Qt::StrongFocus);
    }
    ~FakeWebBrowser() override { made().removeAll(this); }

    /// Those alive, in the order in which they were made.
    static QList<FakeWebBrowser *> &made()
    {
        static QList<FakeWebBrowser *> all;
        return all;
    }

    QWidget *widget() override { return m_widget; }
    void setEvents(WebBrowserEvents *value) override { events = value; }
    void setPrivate() override { isPrivate = true; }
    void navigate(const QString &url) override
    {
        waiting = false;
        navigated.append(url);
    }
    void navigateForPage(const QString &url) override { navigatedForPage.append(url); }
    void navigateLater(const QString &url, const PageState &value) override
    {
        ++waits;
        waiting = true;
        state = value;
        location = url;
    }
    void navigateNow() override
    {
        if (waiting)
            navigate(location);
    }
    bool isWaiting() const override { return waiting; }
    PageState pageState(StateDepth) const override { return state; }
    SleepLimit maySleep() const override { return sleepLimit; }
    bool goBack() override { return ++backs, canGoBack; }
    bool goForward() override { return ++forwards, canGoForward; }
    QList<HistoryStep> historySteps() const override { return history; }
    bool goTo(int offset) override { return wentTo.append(offset), true; }
    void refresh() override { ++refreshes; }
    void refresh2(int level) override { refreshLevels.append(level); }
    void stop() override { ++stops; }
    bool execCommand(OleCmd command, OleExecOpt option, const QVariant *in, QVariant *out) override
    {
        executed.append({command, option, in != nullptr, out != nullptr, in ? *in : QVariant()});
        if (out)
            *out = result;
        return succeeds;
    }
    int queryStatus(OleCmd) override { return status; }
    void setFocus() override
    {
        ++focused;
        m_widget->setFocus();
    }
    void find() override { ++finds; }
    void findAgain(bool backwards) override { findsAgain.append(backwards); }
    void move(int left, int top, int width, int height) override
    {
        moves.append(QRect(left, top, width, height));
        if (m_widget)
            m_widget->setGeometry(left, top, width, height);
    }
    QString locationUrl() const override { return location; }
    bool isVisit() const override { return visit; }
    bool hasDocument() const override { return holdsDocument; }
    void clearDocument() override { ++cleared; }
    void outerHtml(const std::function<void(const QString &)> &done) override
    {
        ++markupAsked;
        done(markup);
    }
    void readSource(const std::function<void(const PageSource &)> &done) override { done(source); }
    bool isBusy() const override { return busy; }
    Arrival arrivedBy() const override { return arrival; }
    WindowRequest currentRequest() const override { return request; }
    void endUse() override { ++usesEnded; }
    void setMuted(bool muted) override
    {
        state.isMuted = muted;
        if (events)
            events->soundChange(muted ? PageSound::Muted : PageSound::None);
    }
    bool isSilent() const override { return silent; }
    void setSilent(bool value) override { silent = value; }
    void setRegisterAsBrowser(bool on) override { registered = on; }
    void setShown(bool value) override { shown = value; }

    WebBrowserEvents *events = nullptr;
    bool isPrivate = false;
    QStringList navigated;
    QStringList navigatedForPage;
    QList<Exec> executed;
    QList<int> refreshLevels;
    /// Pixels.
    QList<QRect> moves;
    QString location;
    QString markup;
    PageSource source;
    QVariant result;
    PageState state;
    SleepLimit sleepLimit = SleepLimit::Nothing;
    WindowRequest request;
    Arrival arrival = Arrival::ByStep;
    int backs = 0;
    int forwards = 0;
    int refreshes = 0;
    int stops = 0;
    int focused = 0;
    int finds = 0;
    QList<bool> findsAgain;
    int cleared = 0;
    int waits = 0;
    int markupAsked = 0;
    int usesEnded = 0;
    int status = OleCmdStatus::Supported | OleCmdStatus::Enabled;
    bool succeeds = true;
    QList<HistoryStep> history;
    QList<int> wentTo;
    bool canGoBack = true;
    bool canGoForward = true;
    bool holdsDocument = false;
    bool visit = true;
    bool busy = false;
    bool waiting = false;
    bool silent = false;
    bool registered = false;
    bool shown = true;

private:
    QPointer<QWidget> m_widget;
};

/// While it lives, new browser windows get a `FakeWebBrowser`.
class FakeEngine {
public:
    FakeEngine()
        : m_old(setWebBrowserMaker(
            [](QWidget *host) -> WebBrowser * { return new FakeWebBrowser(host); }))
    {
    }
    ~FakeEngine() { setWebBrowserMaker(m_old); }
    FakeEngine(const FakeEngine &) = delete;
    FakeEngine &operator=(const FakeEngine &) = delete;

private:
    WebBrowserMaker m_old;
};
