#pragma once

#include "BrowserHost.h"
#include "LeavingPage.h"
#include "PageQuestions.h"
#include "PrivateProfiles.h"
#include "WebPage.h"
#include "WebView.h"

#include <QPointer>
#include <functional>
#include <memory>

class Listener;
class QWebEngineFullScreenRequest;
class QWebEngineNewWindowRequest;

/// The page of an engine control: how it comes, is made for a window that a page asked for, loses
/// its process, and ends. There is none until it is needed.
class PageLife : public QObject {
    Q_OBJECT

public:
    PageLife(BrowserHost *host, Listener &listener);

    /// The widget that the view is in; null once the window has gone.
    BrowserHost *host() const { return m_host; }
    WebPage *page() const { return m_page; }
    WebView *view() const { return m_view; }
    /// Where the page asks its user; may be null.
    PageQuestions *questions() const { return m_questions; }
    void setQuestions(PageQuestions *questions);

    /// Its pages are private from the first on.
    void setPrivate();
    /// The window is closing: the next private one may begin anew.
    void leaveSession() { m_session.reset(); }
    /// Makes the page where there is none.
    void begin();
    /// The same for one that comes out of its history: the engine makes that anew, with a process
    /// of its own, so that none is started ahead.
    void beginAnew();
    /// The page is the one that another page has asked for. Inside its engine callback only.
    void adopt(QWebEngineNewWindowRequest &request);
    /// What the engine still does for the user with the page it does to its end, unseen.
    void end();
    /// The same, and nobody is told of anything from now on.
    void drop();
    /// Drops every page there is, so that none outlives the profile.
    static void dropAll();

    /// The page that is shown next comes in place of a crashed one.
    void leaveCrashed();
    /// False: the window is wholly covered.
    void setShown(bool shown);
    /// A page whose script waits for an answer gets none any more, and `command`, which leads
    /// elsewhere, runs when the engine has gone on; true then. One that does nothing but ask ends,
    /// as if it had crashed, and `command` runs once more.
    bool waitsForAnswer(const std::function<void()> &command);
    /// A page that the user does not want to hear stays unheard until `command` has led elsewhere.
    void leaveUnheard(const std::function<void()> &command);
    /// The same for a page that the user stops.
    bool stopsAnswering();
    /// Ends a page that would not go by itself, as if it had crashed; `command` runs then.
    void endStuck(const std::function<void()> &command);
    /// The user did something with the page himself.
    void noteUserAction();

signals:
    /// All connections to the page and its view have `bond` as their receiver: it goes with them.
    void came(WebPage *page, WebView *view, QObject *bond);
    /// The page is about to go.
    void going();
    /// The page's process has ended.
    void crashed();
    /// The page is about to be told that nobody sees it; the engine forgets what it looked like.
    void goingOutOfSight();

protected:
    bool event(QEvent *event) override;

private:
    QWebEngineProfile *profile();
    void use(WebPage *page);
    bool isInSight() const;
    void applyShown();
    void noteCrash();
    bool leave(LeavingPage::Way way, const std::function<void()> &command);
    void answerFullScreen(QWebEngineFullScreenRequest request);
    void discardCrashed();

    bool m_isPrivate = false;
    PrivateProfiles::Session m_session;
    QPointer<BrowserHost> m_host;
    Listener &m_listener;
    QPointer<WebPage> m_page;
    QPointer<WebView> m_view;
    QPointer<PageQuestions> m_questions;
    std::unique_ptr<QObject> m_bond;
    /// Where the user went last while a script waited for his answer.
    std::function<void()> m_wayOut;
    /// The page's process has ended, and nothing has been loaded since.
    bool m_crashed = false;
    bool m_shown = true;
};
