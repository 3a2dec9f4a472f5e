#pragma once

#include <QWebEnginePage>
#include <functional>

#include "ScriptError.h"

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
    /// It takes pictures and formatted text, too.
    bool hasRichFocus() const { return m_richFocus; }
    /// The page's address may be asked for once more: the page is not the answer to a form, whose
    /// fields would be missing, as far as the engine tells.
    bool mayAskAgain() const { return m_mayAskAgain; }

    void triggerAction(WebAction action, bool checked = false) override;

signals:
    /// An item of the page's own menu opens a link in a new window.
    void linkWindowRequested(const QUrl &url);
    void frameStarted(const QString &url, bool isMainFrame);
    void frameLoaded(const QString &url, bool isMainFrame);
    /// A script asks for another place or size of its window, as `scriptedPlace` takes it.
    void placeRequested(const QString &request);
    /// The page's document has come and, as far as it knows, not the keyboard.
    void focusMissed();
    /// The script that reads the page's source is through; `number` is as it was given to it.
    void sourceRead(int number);
    /// The button of the error page was pressed.
    void retryRequested();
    /// The connection's certificate was refused on the way to `url`.
    void certificateRefused(const QUrl &url);
    /// The page shows or asked for content that does not come over a secure connection.
    void mixedContentSeen();
    /// A script of the page, or of a frame of it, failed and did not catch its error.
    void scriptFailed(const ScriptError &error);

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
    void noteOrigin(NavigationType type);
    void reportError(const QString &message, int line, const QString &source);

    Question m_question;
    CacheBypass *m_cacheBypass = nullptr;
    bool m_editableFocus = false;
    bool m_richFocus = false;
    bool m_mayAskAgain = true;
    /// Of the error that is about to be reported; 0: unknown.
    int m_errorColumn = 0;
};
