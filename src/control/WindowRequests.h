#pragma once

#include "WebBrowser.h"

#include <QRect>
#include <QStringList>

class Listener;
class Navigator;
class PageLife;
class QWebEngineNewWindowRequest;
class WebPage;
class WebView;

/// What a page asks of windows: new ones, the place of its own, and the end of it.
class WindowRequests : public QObject {
    Q_OBJECT

public:
    WindowRequests(PageLife &life, Navigator &navigator, const Listener &listener);

    /// The request that `newWindow2` is being raised for.
    WindowRequest current() const { return m_current; }
    /// The place that the opening page asked for, pixels; without a size it asked for none.
    void openAt(const QRect &place);

signals:
    /// What was dropped on the page, which did not take it.
    void dropped(const QString &address);

private:
    void watch(WebPage *page, WebView *view, QObject *bond);
    void answer(WebPage &page, QWebEngineNewWindowRequest &request);
    void askOutside(WebPage &page, const QWebEngineNewWindowRequest &request);
    bool isDropped(const QUrl &url) const;
    bool opensDropped(const QUrl &url);
    void forgetDrop();
    void placeAsOpened();
    void placeOnScreen(const QRect &pixels);
    void placeByScript(const QString &request);
    void answerClosing();

    PageLife &m_life;
    Navigator &m_navigator;
    const Listener &m_listener;
    WindowRequest m_current;
    /// What the opening page asked for, pixels; null when nothing or when it is done.
    QRect m_requested;
    /// Windows for other programs that were not heard.
    int m_droppedOutside = 0;
    /// What was dropped on the page last, while it may still turn out that the page left it.
    QStringList m_dropped;
    bool m_isDroppedByPage = false;
};
