#pragma once

#include "WindowTabs.h"

#include <QByteArray>
#include <QIcon>
#include <QList>
#include <QPoint>
#include <QVariant>
#include <QWidget>
#include <functional>

/// Commands that `WebBrowser::execCommand` runs on the current document.
enum class OleCmd {
    SaveAs = 4,
    Print = 6,
    PrintPreview = 7,
    PageSetup = 8,
    Properties = 10,
    Cut = 11,
    Copy = 12,
    Paste = 13,
    Undo = 15,
    SelectAll = 17,
    ClearSelection = 18,
    Zoom = 19,
};

/// What the user has the engine do with what the menu of its page was opened on last.
enum class PageAct {
    SaveLink,
    SaveImage,
    SaveMedia,
    CopyImage,
    PlayOrPause,
    Mute,
    Repeat,
    Controls,
    Redo,
    PasteText,
    Delete
};

enum class OleExecOpt { Default = 0, DoNotPromptUser = 2 };

/// Bits of `WebBrowser::queryStatus`.
namespace OleCmdStatus {
inline constexpr int Supported = 1;
inline constexpr int Enabled = 2;
}

/// Navigation flags a window sets in `beforeNavigate2`.
namespace NavFlags {
inline constexpr int NoHistory = 2;
inline constexpr int NoWriteToCache = 8;
}

/// A page's request for a window.
struct WindowRequest {
    QString url;
    /// The user clicked or pressed a key for it, once for one window.
    bool userInitiated = false;
    /// He wants it behind the window that he is in, as by a click with the middle button.
    bool behind = false;
};

/// Who brought a page into its window.
enum class Arrival {
    /// The page before did, by a script or a meta element.
    ByPage,
    /// The user did, from where he was: he followed a link or went through the history.
    ByStep,
    /// The user or a command of the program named the address.
    ByAddress,
};

class Inspector;
class PageQuestions;
class WebBrowser;
struct ContextTarget;
struct PageSource;
struct ScriptError;

/// What a page needs, besides its address, to come back as it was.
struct PageState {
    /// The engine's own history with scroll positions and the text in forms, for this very engine:
    /// never from a file. Empty: there is none.
    QByteArray history;
    /// CSS pixels.
    QPoint scroll;
    /// A factor; 1 leaves it to what the user chose for the site.
    double zoom = 1;
    bool isMuted = false;
    /// The user has typed something into it.
    bool hasTyped = false;
    /// False: it is kept out of the pages visited.
    bool leavesTrace = true;
};

/// How much of its state is asked for.
enum class StateDepth {
    /// All but the history: costs next to nothing.
    View,
    All
};

/// What a page would lose if it were given up unasked.
enum class SleepLimit {
    Nothing,
    /// A connection that it keeps for news.
    Connection,
    /// Something of the user's, or what it is doing.
    Much
};

/// A page of a window's history, as seen from the current one.
struct HistoryStep {
    /// Pages back (negative) or forward (positive) in the engine's own history.
    int offset;
    QString title;
    QString url;
};

/// What happens to a page, told to the window that shows it. Arguments by reference are answers
/// the engine waits for, so handlers return at once: no dialog, no nested event loop, no deletion
/// of the engine inside any of them.
class WebBrowserEvents {
public:
    virtual ~WebBrowserEvents() = default;
    virtual void statusTextChange(const QString &text) = 0;
    virtual void titleChange(const QString &text) = 0;
    /// The page's own picture; null while it has none.
    virtual void iconChange(const QIcon &icon) = 0;
    virtual void beforeNavigate2(const QString &url, int &flags, bool &cancel) = 0;
    /// A page asks for a window: `target` is the engine control that is to show it.
    virtual void newWindow2(WebBrowser *&target, bool &cancel) = 0;
    /// The user dropped several links on the page: all but the first, which opens here.
    virtual void openLinksInNewWindows(const QStringList &) { }
    /// A navigation ended and brought no page: the window shows what it showed before.
    virtual void navigationGivenUp() { }
    /// The page at `url` is shown from now on (its first bytes have arrived).
    virtual void navigateComplete2(const QString &url) = 0;
    /// The window's first navigation is over and brought no page: a download, or an answer without
    /// contents. Not raised when it was stopped by a command, or where a script has put something
    /// into the window.
    virtual void nothingCame() { }
    /// The page's address changed without a navigation (a fragment, a history state), or ahead of
    /// `navigateComplete2`. Empty: that of a window without a page of its own, which may be another
    /// `addressBeforePage` now.
    virtual void locationChange(const QString &url) = 0;
    /// Raised for every frame of a page, the page itself last.
    virtual void documentComplete(const QString &url) = 0;
    /// The page's script asks for its window to be closed.
    virtual void windowClosing(bool isChildWindow, bool &cancel) = 0;
    /// Greater than 0 while the page is secure; below 0 while it, or a part of it, comes from a
    /// server whose certificate proves nothing and that the user went on to all the same.
    virtual void setSecureLockIcon(int secureLockIcon) = 0;
    virtual void privacyImpactedStateChange(bool impacted) = 0;
    /// How large the page is shown from now on, percent.
    virtual void zoomChange(int) { }
    /// What the page uses of camera, microphone and screen from now on, in words; empty: nothing.
    virtual void useChange(const QString &) { }
    /// The page can be heard, or has been muted, from now on.
    virtual void soundChange(PageSound) { }
    /// The user wants to see the page.
    virtual void wanted() { }
    /// The engine was told to show what the page was made from.
    virtual void sourceWanted() { }
    /// The user wants a menu on the page; inside the engine.
    virtual void contextMenuWanted(const ContextTarget &) { }
    /// The page that a menu may have been opened on is there no longer.
    virtual void contextMenuOver() { }
    /// The user turned to what stands for a page that was given up.
    virtual void wakeWanted() { }
    /// The keyboard focus has come to the page.
    virtual void gotFocus() = 0;
    /// A script of the page failed; never raised while the control is silent.
    virtual void scriptFailed(const ScriptError &) { }
};

/// The engine control of one browser window. Exactly what the rest of the program uses; another
/// engine, or a test's counting one, can stand behind it. A member that fails returns false or an
/// empty value and has no effect; nothing is shown to the user.
class WebBrowser : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// The widget to place inside the window.
    virtual QWidget *widget() = 0;
    /// Who is told of events; null from when the window begins to go away.
    virtual void setEvents(WebBrowserEvents *events) = 0;

    /// All that the control shows is private, and nothing of it is written down or shared with what
    /// is not. For good, before its first page.
    virtual void setPrivate() { }

    /// Where the pages ask their user; without it nobody is asked.
    virtual void setQuestions(PageQuestions *) { }

    /// Loads `url`, completed as a browser does (no scheme: http or a local path).
    virtual void navigate(const QString &url) = 0;
    /// The same for an address that a page has asked for.
    virtual void navigateForPage(const QString &url) { navigate(url); }
    /// The control is at `url` from now on, for `locationUrl` and all who ask it, but holds no
    /// page; one that was there goes. `navigateNow` or `Navigate` ends the wait, a refresh does
    /// not. Never inside an engine callback.
    /// With `state` the page comes back as that says; a form that it is the answer to is not sent.
    virtual void navigateLater(const QString &url, const PageState &state = {}) = 0;
    /// Loads the address the control waits at; nothing when it does not wait.
    virtual void navigateNow() = 0;
    virtual bool isWaiting() const = 0;
    /// Of the page, and while the control waits what it was given.
    virtual PageState pageState(StateDepth depth = StateDepth::All) const = 0;
    /// Whether the page may be given up while nobody looks at it.
    virtual SleepLimit maySleep() const { return SleepLimit::Nothing; }
    /// Asks the page, unseen, whether it can be left without a question to its user; one that may
    /// takes that for its end. Nothing is asked, and `done` told that it may not, where `mayStill`
    /// says so once the page is there to answer; it only looks, and may be called inside the
    /// engine. `done` is called later, and not where the page goes first.
    virtual void askToSleep(const std::function<bool()> &mayStill,
                            const std::function<void(bool may)> &done)
    {
        done(mayStill());
    }
    /// Gives the page up, to come back as it was with `navigateNow`; what it looked like stands in
    /// its place. Never inside an engine callback.
    virtual void fallAsleep() { navigateLater(locationUrl(), pageState()); }
    virtual bool goBack() = 0;
    virtual bool goForward() = 0;
    /// The pages Back and Forward would come to, in the order of the history.
    virtual QList<HistoryStep> historySteps() const = 0;
    /// Goes to a page of `historySteps`; false when there is none at that place.
    virtual bool goTo(int offset) = 0;
    virtual void refresh() = 0;
    /// Level 3 reloads past the cache; other levels reload plainly.
    virtual void refresh2(int level) = 0;
    virtual void stop() = 0;

    /// Runs a command. A null `in` or `out` is an argument left out.
    virtual bool execCommand(OleCmd command, OleExecOpt option, const QVariant *in = nullptr,
                             QVariant *out = nullptr) = 0;
    /// Nothing where there is no page.
    virtual void act(PageAct) { }
    /// Puts `word` in place of the misspelled one that the menu was opened on last.
    virtual void replaceWord(const QString &) { }
    /// Goes where a link of the page leads that its user chose: here, or to another program.
    virtual void followLink(const QString &url) { navigate(url); }
    /// `OleCmdStatus` bits.
    virtual int queryStatus(OleCmd command) = 0;
    virtual void setFocus() = 0;
    /// Shows the page, and all of its site, in that size from now on; percent.
    virtual void setZoom(int) { }
    /// So many steps larger or, below 0, smaller.
    virtual void zoomBy(int) { }
    /// Opens the engine's own bar for finding text in the page, and gives it the focus.
    virtual void find() = 0;
    /// The next or previous hit of what was looked for last, in whatever window.
    virtual void findAgain(bool) { }
    /// Places the control inside its window; pixels.
    virtual void move(int left, int top, int width, int height) = 0;

    /// The page's address in encoded form, byte-exact; empty when nothing was opened yet.
    virtual QString locationUrl() const = 0;
    /// What stands for the window's address before it has a page: `asked`, unless a page opened
    /// the window and may have written into it.
    virtual QString addressBeforePage(const QString &asked) const { return asked; }
    /// A page is there that came over its connection and may be kept among those visited.
    virtual bool isVisit() const { return true; }
    /// False until the first document is there.
    virtual bool hasDocument() const = 0;
    /// Clears the current document; the page shown is not affected.
    virtual void clearDocument() = 0;
    /// The live markup of the page (`document.documentElement.outerHTML`), handed over later;
    /// empty when the page goes away meanwhile.
    virtual void outerHtml(const std::function<void(const QString &)> &done) = 0;
    /// What the page was made from, as it came, handed over later; not where the page goes away.
    virtual void readSource(const std::function<void(const PageSource &)> &done) = 0;
    virtual bool isBusy() const = 0;
    /// Opens a dialog with the certificates of the page's server; nothing where it has none.
    virtual void showCertificates() { }
    /// How the navigation of the whole page that was last asked for came about.
    virtual Arrival arrivedBy() const { return Arrival::ByAddress; }
    /// True: the page's scripts get null at once for windows that the user did nothing for, and
    /// `newWindow2` is not raised for them.
    virtual void setRefusesUnaskedWindows(bool) { }
    /// The request that `newWindow2` is being raised for.
    virtual WindowRequest currentRequest() const { return {}; }

    /// The process that runs the page, which others may share; 0: there is none.
    virtual qint64 process() const { return 0; }
    /// The engine's developer tools for the page, made anew: whoever takes them owns them. Null
    /// where there is no page.
    virtual Inspector *makeInspector() { return nullptr; }

    /// Ends what the page uses of camera, microphone and screen, and refuses it from then on.
    virtual void endUse() { }

    /// Of the page, and of the one that the control waits for.
    virtual bool isMuted() const { return pageState(StateDepth::View).isMuted; }
    virtual void setMuted(bool muted) = 0;

    /// True: script errors are not shown.
    virtual bool isSilent() const = 0;
    virtual void setSilent(bool silent) = 0;
    virtual void setRegisterAsBrowser(bool on) = 0;
    /// False while the window is wholly covered: the page is told that it is hidden and costs
    /// nothing, unless it plays sound.
    virtual void setShown(bool shown) = 0;

signals:
    /// A navigation is over: the page is there, or it failed, was stopped or was refused. Sent
    /// inside the engine, like the events.
    void loadEnded();
    /// What `locationUrl` or `pageState` give may be another now.
    void stateChanged();
};
