#pragma once

#include <QPointer>
#include <QWebEnginePage>
#include <functional>
#include <memory>
#include <optional>

#include "ConsoleBrake.h"
#include "PlaceWish.h"
#include "ScriptError.h"

class CacheBypass;
class InsecureForms;
class LeavingPage;
class OutsideRequests;
class PageActivity;
class PageCertificates;
class PageCompany;
class PageDownloads;
class PagePermissions;
class PageQuestions;
class PageUploads;

/// What a file was asked for from.
struct PageOrigin {
    /// Empty where there is none, or none that may be kept.
    QUrl page;
    /// Its window keeps what it shows among the pages visited.
    bool leavesTrace = true;
};

/// A page of the engine with the synchronous questions handed on, safe answers for what must not
/// stay unanswered, and signals for the lines of the script in its frames.
class WebPage : public QWebEnginePage {
    Q_OBJECT

public:
    using Question = std::function<bool(const QUrl &url, NavigationType type, bool isMainFrame)>;
    using IsOnItsWay = std::function<bool(const QUrl &url)>;

    explicit WebPage(QWebEngineProfile *profile);
    ~WebPage() override;

    /// Asked before every navigation of a frame; false refuses it. Runs inside the engine.
    void setQuestion(const Question &question) { m_question = question; }
    /// Tells whether an address is that of the page on its way, the only one that the user is
    /// asked to sign in for.
    void setIsOnItsWay(const IsOnItsWay &isOnItsWay) { m_isOnItsWay = isOnItsWay; }
    /// Numbers the last load that was begun, among those of all pages.
    int navigation() const { return m_navigation; }
    bool isOnItsWay(const QUrl &url) const { return m_isOnItsWay && m_isOnItsWay(url); }
    /// Where what the page asks is shown; null: nobody is asked.
    void setQuestions(PageQuestions *questions);
    PageQuestions *questions() const;
    /// The engine waits for the user's answer to a script. Until `answerGiven` neither page nor
    /// view may be deleted, and nothing may be loaded.
    bool awaitsAnswer() const { return m_awaitsAnswer; }
    /// The user leaves while it waits.
    LeavingPage &leaving() const { return *m_leaving; }
    /// Keeps what the page loads from now on out of the disk cache.
    void setCacheBypass(bool on);
    /// It is a private window's: nothing of it outlasts the last of those.
    bool isPrivate() const { return m_isPrivate; }
    /// Whether the window keeps what it shows among the pages visited.
    void setIsListed(bool isListed) { m_isListed = isListed; }
    bool isListed() const { return m_isListed; }
    /// Whether an answer that is kept for its site counts here: what was allowed for good was not
    /// allowed to somebody who wants to be nobody there.
    bool counts(bool isAllowed) const { return !m_isPrivate || !isAllowed; }
    /// What the page does may be written down.
    bool leavesTrace() const { return m_isListed && !m_isPrivate; }
    /// Of the page that is shown, also while another is on its way.
    QUrl committedUrl() const;
    /// Of what the page asks for now: the page that is shown, and while that is nothing of its own
    /// the one that opened the window.
    PageOrigin origin() const;
    /// The window was opened by that page.
    void setOpener(WebPage &opener);
    /// Of the page that opened the window; not even its site is known where the address is empty.
    const std::optional<QUrl> &openerUrl() const { return m_openerUrl; }
    /// Null where there is none, or it has gone.
    WebPage *openerPage() const { return m_openerPage; }
    /// What is asked for at that address was asked for with a form, and once more would send it.
    bool isAnswerToForm(const QUrl &url) const;
    /// What the page may download unasked.
    PageDownloads &downloads();
    /// What the page asks other programs to open.
    OutsideRequests &outside();
    /// Who else may act in its place.
    PageCompany &company() const { return *m_company; }
    /// What it does that would end with it.
    PageActivity &activity() const { return *m_activity; }
    /// Certificates of the page and its parts that prove nothing.
    PageCertificates &certificates() { return *m_certificates; }
    /// Forms of the page that would be sent unencrypted.
    InsecureForms &insecureForms() { return *m_insecureForms; }
    /// What the page may do that its user must allow.
    PagePermissions &permissions() { return *m_permissions; }
    /// The user has typed something into the page since it came, or into what it came back from.
    bool hasTyped() const { return m_hasTyped; }
    void noteTyped() { m_hasTyped = true; }
    /// A page that took over the contents of a request for a window has lost its interceptor.
    void renewInterceptor();
    /// The focused element of the page takes text.
    bool hasEditableFocus() const { return m_editableFocus; }
    /// It takes pictures and formatted text, too.
    bool hasRichFocus() const { return m_richFocus; }
    /// The page's address may be asked for once more: the page is not the answer to a form that was
    /// sent to the server, and would be sent again.
    bool mayAskAgain() const { return m_mayAskAgain; }
    /// The page that was on its way is the one shown from now on.
    void noteArrival();
    PlaceWish &placeWish() { return m_placeWish; }
    /// Reloads, and sends the form again that the page is the answer to.
    void resend(WebAction action) { QWebEnginePage::triggerAction(action); }

    /// A reload that would send a form again only asks for it, by `resendRequested`.
    void triggerAction(WebAction action, bool checked = false) override;

signals:
    /// The page was to be reloaded with `action`; `resend` does it.
    void resendRequested(QWebEnginePage::WebAction action);
    /// An item of the page's own menu saves what a server has at `url`.
    void saveRequested(const QUrl &url);
    /// A document begins in the main frame: time to ask the engine what it shows. `address` is how
    /// the document spells its own, and "chrome-error:" for the engine's page of an error.
    void documentStarted(const QString &address);
    void frameLoaded(const QString &url, bool isMainFrame);
    /// A script asks for another place or size of its window, as `scriptedPlace` takes it.
    void placeRequested(const QString &request);
    /// The page's document has come and, as far as it knows, not the keyboard.
    void focusMissed();
    /// The script that reads the page's source is through; `number` is as it was given to it.
    void sourceRead(int number);
    /// The engine's own window with the page's source was asked for.
    void sourceWanted();
    /// The button of the error page was pressed.
    void retryRequested();
    /// Something was chosen on the program's own page, as `StartPage::choose` takes it.
    void partChosen(const QString &choice);
    /// The user pressed the key that leads back where, as far as the page's own frame knows, the
    /// keyboard is in no field, and the page did not take it.
    void backKeyPressed();
    /// The page shows or asked for content that does not come over a secure connection.
    void mixedContentSeen();
    /// A script of the page, or of a frame of it, failed and did not catch its error.
    void scriptFailed(const ScriptError &error);
    /// The engine has gone on after `awaitsAnswer`. Not sent from inside it.
    void answerGiven();
    /// A page has come in the place of another.
    void arrived();
    /// The user did something with the page himself.
    void userActed();
    /// The window that showed the page has gone, while something holds the page.
    void left();
    /// Something for the status line.
    void told(const QString &text);
    /// The user wants to see the page.
    void wanted();
    /// A page that has come back is in sight as it was.
    void painted();
    /// The user has signed in, and the page is to be asked for once more.
    void signedIn();

protected:
    bool acceptNavigationRequest(const QUrl &url, NavigationType type, bool isMainFrame) override;
    void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel level, const QString &message,
                                  int line, const QString &source) override;
    QStringList chooseFiles(FileSelectionMode mode, const QStringList &oldFiles,
                            const QStringList &acceptedMimeTypes) override;
    void javaScriptAlert(const QUrl &origin, const QString &message) override;
    bool javaScriptConfirm(const QUrl &origin, const QString &message) override;
    bool javaScriptPrompt(const QUrl &origin, const QString &message, const QString &defaultValue,
                          QString *result) override;

private:
    void answerRequests();
    void reportError(const QString &message, int line, const QString &source);
    template <typename Ask> auto whileAwaited(const Ask &ask);

    /// The profile stays for it.
    std::shared_ptr<void> m_profileHold;
    Question m_question;
    IsOnItsWay m_isOnItsWay;
    QPointer<PageQuestions> m_questions;
    CacheBypass *m_cacheBypass = nullptr;
    LeavingPage *m_leaving = nullptr;
    PageCertificates *m_certificates;
    InsecureForms *m_insecureForms;
    PageActivity *m_activity;
    PageCompany *m_company;
    PageDownloads *m_downloads = nullptr;
    OutsideRequests *m_outside = nullptr;
    PageUploads *m_uploads = nullptr;
    std::unique_ptr<PagePermissions> m_permissions;
    /// The last address that a form was sent to.
    QUrl m_formAddress;
    PageOrigin m_opener;
    std::optional<QUrl> m_openerUrl;
    QPointer<WebPage> m_openerPage;
    ConsoleBrake m_consoleBrake;
    PlaceWish m_placeWish;
    bool m_editableFocus = false;
    bool m_richFocus = false;
    bool m_mayAskAgain = true;
    /// The page on its way is asked for with a form.
    bool m_sendsForm = false;
    bool m_awaitsAnswer = false;
    bool m_isPrivate = false;
    bool m_isListed = true;
    bool m_hasTyped = false;
    int m_navigation = 0;
    /// Of the error that is about to be reported; 0: unknown.
    int m_errorColumn = 0;
};
