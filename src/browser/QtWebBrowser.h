#pragma once

#include "WebBrowser.h"

#include <QPointer>
#include <QRect>
#include <QUrl>

class BrowserHost;
class NavigationHistory;
class PageIndicators;
class QWebEngineLoadingInfo;
class QWebEngineNewWindowRequest;
class TitleThrottle;
class WebPage;
class WebView;

/// The engine control on Qt WebEngine. Its page is made when it is first needed: by `Navigate`, or
/// by a page that asks for a window. What the engine tells at odd moments, in odd order or not at
/// all is put right here, so that the events come as `WebBrowserEvents` describes them.
class QtWebBrowser : public WebBrowser
{
    Q_OBJECT

public:
    explicit QtWebBrowser(QWidget *host);
    ~QtWebBrowser() override;

    QWidget *widget() override;
    void setEvents(WebBrowserEvents *events) override;
    void Navigate(const QString &url) override;
    bool GoBack() override;
    bool GoForward() override;
    void Refresh() override;
    void Refresh2(int level) override;
    void Stop() override;
    bool ExecWB(OleCmd command, OleExecOpt option, const QVariant *in = nullptr,
                QVariant *out = nullptr) override;
    int QueryStatusWB(OleCmd command) override;
    void SetFocus() override;
    void Move(int left, int top, int width, int height) override;
    QString LocationURL() const override;
    bool HasDocument() const override { return m_hasDocument; }
    void ClearDocument() override { }
    void OuterHTML(const std::function<void(const QString &)> &done) override;
    bool Busy() const override { return m_busy; }
    bool Silent() const override { return m_silent; }
    void setSilent(bool silent) override { m_silent = silent; }
    void setRegisterAsBrowser(bool) override { }
    void setShown(bool shown) override;

    /// The page; null until it is needed.
    WebPage *page() const { return m_page; }

private:
    /// Where a main-frame navigation stands.
    enum class Stage { None, Asked, Started, Committed };

    void usePage(WebPage *page);
    void connectPage();
    void dropPage();
    bool askBeforeNavigate(const QUrl &url, int type, bool isMainFrame);
    bool applyFlags(const QUrl &url, int type, int flags);
    void replaceWith(const QUrl &url);
    void onLoadingChanged(const QWebEngineLoadingInfo &info);
    void onLoadStarted(const QUrl &url);
    void onLoadFinished(const QWebEngineLoadingInfo &info);
    void onUrlChanged(const QUrl &url);
    void onFrameStarted(const QString &url, bool isMainFrame);
    void onFrameLoaded(const QString &url, bool isMainFrame);
    void onNewWindowRequested(QWebEngineNewWindowRequest &request);
    void onGeometryRequested(const QRect &pixels);
    void onCloseRequested();
    void onRendererGone();
    void commit(const QString &url);
    void completeDocument(const QString &url);
    void forgetLinks();
    void showStatus(const QString &text);
    void applyShown();

    BrowserHost *m_host = nullptr;
    QPointer<WebView> m_view;
    QPointer<WebPage> m_page;
    WebBrowserEvents *m_events = nullptr;
    NavigationHistory *m_history = nullptr;
    PageIndicators *m_indicators = nullptr;
    TitleThrottle *m_title = nullptr;
    QString m_location;
    QString m_status;
    QUrl m_pending;
    QUrl m_replacing;
    QList<QUrl> m_linksToForget;
    QRect m_requested;
    Stage m_stage = Stage::None;
    int m_flags = 0;
    bool m_adopted = false;
    bool m_busy = false;
    bool m_hasDocument = false;
    bool m_documentCompleted = false;
    bool m_errorShown = false;
    bool m_silent = false;
    bool m_shown = true;
};
