#pragma once

#include "NavigationHistory.h"
#include "NavigationTeller.h"
#include "PageReturn.h"

#include <QObject>
#include <QWebEnginePage>

class QWebEngineLoadingInfo;
class WebPage;
class WebView;

/// Has the engine navigate, and hands what it asks and tells to a `Navigation`.
class Navigator : public QObject {
    Q_OBJECT

public:
    Navigator(PageLife &life, const Listener &listener);

    const Navigation &state() const { return m_state; }
    NavigationTeller &teller() { return m_teller; }
    /// Loads `url`, completed as a browser does; `forPage`: a page has asked for it.
    void load(const QString &url, bool forPage);
    /// As new, but for the location, which is `url` while there is no page.
    void waitAt(const QString &url, const PageState &state);
    /// The page that is waited for is loaded, and comes as it was to.
    void comeBack();
    PageState pageState(StateDepth depth) const;
    /// A page that is waited for comes with that zoom factor.
    void setZoomToCome(double factor) { m_return.setZoom(factor); }
    void setMutedToCome(bool muted) { m_return.setMuted(muted); }
    /// The page that comes next is one that another page has asked for, at `url`.
    void adopt(const QUrl &url);
    bool goBack();
    bool goForward();
    QList<HistoryStep> historySteps() const;
    bool goTo(int offset);
    void reload(QWebEnginePage::WebAction action);
    /// The page at `url` failed before anything was sent to its server, and is loaded once more.
    void askAgain(const QUrl &url);
    void stop();

signals:
    /// The engine asks for another page, inside its callback.
    void pageAsked();
    /// The page is to be loaded once more.
    void refreshRequested();

private:
    void watch(WebPage *page, WebView *view, QObject *bond);
    EnginePlace place() const;
    bool ask(const QUrl &url, QWebEnginePage::NavigationType type, bool isMainFrame);
    bool isSentToOwnPage(const QUrl &url, QWebEnginePage::NavigationType type) const;
    void passOn(const QUrl &url, Navigation::Type type, bool isMainFrame);
    bool isHeldForm(const QUrl &url, Navigation::Type type);
    bool askForPage(const QUrl &url, Navigation::Type type);
    void leadOn(const QString &link);
    bool noteStep(bool goes);
    void leaveEmpty();
    void replaceEntry(const QUrl &url);
    void noteLoading(const QWebEngineLoadingInfo &info);

    PageLife &m_life;
    Navigation m_state;
    NavigationHistory m_history;
    NavigationTeller m_teller;
    PageReturn m_return;
};
