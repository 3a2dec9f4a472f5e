#pragma once

#include <QWebEnginePage>
#include <functional>

class CacheBypass;

/// A page of the engine with the synchronous questions handed on, safe answers for what must not
/// stay unanswered, and signals for the lines of the script in its frames.
class WebPage : public QWebEnginePage {
    Q_OBJECT

public:
    using Question = std::function<bool(const QUrl &url, NavigationType type, bool isMainFrame)>;

    explicit WebPage(QWebEngineProfile *profile);

    /// Asked before every navigation of a frame; false refuses it. Runs inside the engine.
    void setQuestion(const Question &question) { m_question = question; }
    /// Keeps what the page loads from now on out of the disk cache.
    void setCacheBypass(bool on);
    /// A page that took over the contents of a request for a window has lost its interceptor.
    void renewInterceptor();
    /// The focused element of the page takes text.
    bool hasEditableFocus() const { return m_editableFocus; }

    void triggerAction(WebAction action, bool checked = false) override;

signals:
    /// An item of the page's own menu opens a link in a new window.
    void linkWindowRequested(const QUrl &url);
    void frameStarted(const QString &url, bool isMainFrame);
    void frameLoaded(const QString &url, bool isMainFrame);
    /// The button of the error page was pressed.
    void retryRequested();
    /// The connection's certificate was refused on the way to `url`.
    void certificateRefused(const QUrl &url);
    /// The page shows or asked for content that does not come over a secure connection.
    void mixedContentSeen();

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString &message,
                                  int line, const QString &source) override;
    void javaScriptAlert(const QUrl &origin, const QString &message) override;
    bool javaScriptConfirm(const QUrl &origin, const QString &message) override;
    bool javaScriptPrompt(const QUrl &origin, const QString &message, const QString &defaultValue,
                          QString *result) override;

private:
    void answerRequests();

    Question m_question;
    CacheBypass *m_cacheBypass = nullptr;
    bool m_editableFocus = false;
};
