#pragma once

#include "Twips.h"
#include "WebBrowser.h"

#include <QPointer>

/// An engine control without an engine: it counts what it is asked and does what the test says.
class FakeWebBrowser : public WebBrowser {
public:
    /// One call of `ExecWB`; how many arguments were given is part of what callers promise.
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
    void Navigate(const QString &url) override
    {
        waiting = false;
        navigated.append(url);
    }
    void NavigateForPage(const QString &url) override { navigatedForPage.append(url); }
    void NavigateLater(const QString &url) override
    {
        ++waits;
        waiting = true;
        location = url;
    }
    void NavigateNow() override
    {
        if (waiting)
            Navigate(location);
    }
    bool Waiting() const override { return waiting; }
    bool GoBack() override { return ++backs, canGoBack; }
    bool GoForward() override { return ++forwards, canGoForward; }
    QList<HistoryStep> HistorySteps() const override { return history; }
    bool GoTo(int offset) override { return wentTo.append(offset), true; }
    void Refresh() override { ++refreshes; }
    void Refresh2(int level) override { refreshLevels.append(level); }
    void Stop() override { ++stops; }
    bool ExecWB(OleCmd command, OleExecOpt option, const QVariant *in, QVariant *out) override
    {
        executed.append({command, option, in != nullptr, out != nullptr, in ? *in : QVariant()});
        if (out)
            *out = result;
        return succeeds;
    }
    int QueryStatusWB(OleCmd) override { return status; }
    void SetFocus() override
    {
        ++focused;
        m_widget->setFocus();
    }
    void Find() override { ++finds; }
    void Move(int left, int top, int width, int height) override
    {
        moves.append(QRect(left, top, width, height));
        if (m_widget) {
            m_widget->setGeometry(Twips::toPixels(left), Twips::toPixels(top),
                                  Twips::toPixels(width), Twips::toPixels(height));
        }
    }
    QString LocationURL() const override { return location; }
    bool HasDocument() const override { return hasDocument; }
    void ClearDocument() override { ++cleared; }
    void OuterHTML(const std::function<void(const QString &)> &done) override
    {
        ++markupAsked;
        done(markup);
    }
    bool Busy() const override { return busy; }
    Arrival ArrivedBy() const override { return arrival; }
    WindowRequest CurrentRequest() const override { return request; }
    bool Silent() const override { return silent; }
    void setSilent(bool value) override { silent = value; }
    void setRegisterAsBrowser(bool on) override { registered = on; }
    void setShown(bool value) override { shown = value; }

    WebBrowserEvents *events = nullptr;
    QStringList navigated;
    QStringList navigatedForPage;
    QList<Exec> executed;
    QList<int> refreshLevels;
    /// Twips.
    QList<QRect> moves;
    QString location;
    QString markup;
    QVariant result;
    WindowRequest request;
    Arrival arrival = Arrival::ByStep;
    int backs = 0;
    int forwards = 0;
    int refreshes = 0;
    int stops = 0;
    int focused = 0;
    int finds = 0;
    int cleared = 0;
    int waits = 0;
    int markupAsked = 0;
    int status = OleCmdStatus::Supported | OleCmdStatus::Enabled;
    bool succeeds = true;
    QList<HistoryStep> history;
    QList<int> wentTo;
    bool canGoBack = true;
    bool canGoForward = true;
    bool hasDocument = false;
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
