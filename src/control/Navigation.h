#pragma once

#include "Beginning.h"

#include <QList>
#include <QUrl>
#include <optional>
#include <utility>

/// What the engine shows, as it says itself; no page has a say in it.
struct EnginePlace {
    /// The page's address or, from some moment of a load on, the one on its way.
    QUrl shown;
    /// The current entry of the history. A step in it counts at once.
    QUrl entry;
    int entries = 0;
};

/// The end of a load.
struct LoadEnd {
    QUrl url;
    bool isStopped = false;
    /// The engine shows a page of its own for this error of the network.
    std::optional<int> error;
    /// The engine is loading again by now.
    bool isFollowed = false;
};

/// What the navigation of a whole page is at. What the engine tells goes in, at odd moments, in odd
/// order or not at all as it comes; what is to be told in turn, or to be done, comes out in the
/// order of `WebBrowserEvents`. Which address stands for the window is decided here, and by the
/// engine's word alone. A new value is that of a control that has not held a page.
class Navigation {
public:
    using Type = Beginning::Type;

    /// Whether the window is to be asked for a page that the engine asks for.
    enum class Request {
        New,
        /// Part of the load under way, which the window was asked for.
        Redirected,
        /// The window was asked for it before it came to replace a history entry.
        Replacing,
    };

    enum class What {
        /// A page began this without asking; the window's answer is of no use but for its flags.
        Begun,
        /// The status text: `url` is on its way; the load is done; it was given up, and `url`, if
        /// there is one, is never opened.
        Opening,
        Done,
        Refused,
        /// The page at `url`, spelled `text` for the window, has taken the place of another.
        PageCame,
        /// The page that has come has no end of its own. To be followed by `blankShown`, later.
        BlankCame,
        /// The engine's page for `error` is to be replaced by one of our own.
        ErrorCame,
        /// The address is `text`, with no page having come.
        Location,
        /// Nothing is known of the page any more that the location now belongs to.
        Distrust,
        /// The page at `text` is complete.
        Complete,
        /// Nothing came of a navigation, and none is to come: what stands for it anywhere goes.
        GivenUp,
        /// The window may hold nothing: the page is to be asked, and `holdsNothing` once more.
        PerhapsNothing,
        /// The last moment for `takeLinksToForget`.
        ForgetLinks,
        Ended,
    };

    struct Event {
        What what;
        QUrl url;
        QString text;
        int error = 0;
        /// The page came over its connection, as the page of an error did not.
        bool hasArrived = false;
        /// Its history entry is to be passed over.
        bool isSkipped = false;
    };
    using Events = QList<Event>;

    /// The location is where a page is to be, and there is none.
    void waitAt(const QString &url);
    /// The program has been given an address, by a page if `forPage`.
    void name(bool forPage);
    /// The engine is given the address that was named.
    void handOver(const QUrl &url);
    /// It was given `url`, and has not asked for it yet.
    bool isHandedOver(const QUrl &url) const { return m_handedOver == url; }
    /// The engine asks nothing before a blank page, and over a load that is still under way it does
    /// not tell of its start either: it begins here.
    void beginBlank(const QUrl &url);
    /// The window was made for another page, which may write into it. `isEmpty`: it was opened
    /// without an address.
    void adopt(bool isEmpty);
    void noteEvent(const QEvent &event) { m_beginning.noteEvent(event); }
    /// A step of the user's through the history is on its way, or there was none to go.
    void step(bool goes) { m_beginning.step(goes); }
    /// A command stops what is under way.
    void stop() { m_stopped = true; }

    /// The engine asks for a page that may be opened. The answer is `refuse`, `replaces` or
    /// `accept`.
    Request asked(const QUrl &url, Type type);
    void refuse() { ++m_refusals; }
    /// Whether the navigation must replace the current history entry instead of adding one. The
    /// engine is refused it then, and is to be given it anew as a script's.
    bool replaces(const QUrl &url, Type type, const EnginePlace &place);
    void accept(const QUrl &url, Type type, Request request);
    /// The engine asks for a page that is never opened, and is refused it.
    Events refuseForGood(const QUrl &url, Type type);

    Events loadStarted(const QUrl &url);
    /// A document begins in the page; `address` is how the page spells its own.
    Events documentStarted(const QString &address, const EnginePlace &place);
    Events urlChanged(const EnginePlace &place);
    Events documentLoaded();
    Events blankShown();
    Events loadEnded(const LoadEnd &end, const EnginePlace &place);
    /// The page's process has ended.
    void crash();

    /// The shown page's address: the engine's word, as the page spells it.
    QString location() const { return m_location; }
    /// What stands for the window's address before it has a page; `asked` is what it was opened
    /// with, and `shown` as in `EnginePlace`.
    QString addressBeforePage(const QString &asked, const QUrl &shown) const;
    QUrl pending() const { return m_pending; }
    bool isWaiting() const { return m_waiting; }
    bool isAdopted() const { return m_adopted; }
    bool isBusy() const { return m_busy; }
    bool hasDocument() const { return m_hasDocument; }
    bool showsError() const { return m_showsError; }
    /// The page came over its connection, may be told of and is there.
    bool isVisit() const { return m_hasArrived && !m_showsError && leavesTrace(); }
    bool isUnderWay() const { return m_stage == Stage::Asked || m_stage == Stage::Started; }
    /// `url` is that of the page on its way, which alone may ask its user to sign in.
    bool isOnItsWay(const QUrl &url) const;
    /// Nothing is under way, was stopped or came, so far as is known without asking the page.
    bool holdsNothing() const;
    Arrival arrival() const { return m_arrival; }

    /// `NavFlags` of the navigation that the window was asked for last.
    int flags() const { return m_flags; }
    void setFlags(int flags) { m_flags = flags; }
    bool leavesTrace() const { return !(m_flags & NavFlags::NoHistory); }
    /// A link of the navigation under way that must not stay among the visited ones.
    void forgetLink(const QUrl &url) { m_linksToForget.append(url); }
    QList<QUrl> linksToForget() const { return m_linksToForget; }
    QList<QUrl> takeLinksToForget() { return std::exchange(m_linksToForget, {}); }

private:
    enum class Stage { None, Asked, Started, Committed };

    QUrl committedAddress(const EnginePlace &place) const;
    bool isAhead(const QString &address, const QUrl &committed) const;
    Event commit(const QString &url, bool hasArrived, const EnginePlace &place);
    void finish(const LoadEnd &end, const EnginePlace &place, Events &events);
    Events returnToPage(const EnginePlace &place);
    bool holdsNoPage() const;
    bool isGivenUp() const;
    bool isAnotherToCome() const;

    Stage m_stage = Stage::None;
    Arrival m_arrival = Arrival::ByPage;
    QString m_location;
    /// The address on its way, and the one that it was redirected from at first.
    QUrl m_pending;
    QUrl m_asked;
    /// An address that the engine was given and has not asked for yet.
    QUrl m_handedOver;
    /// Asked for already: a history entry is being replaced by it.
    QUrl m_replacing;
    /// Why the load under way is about to be stopped: it was redirected there.
    QUrl m_redirectedTo;
    /// The address of a page whose end was told before its start.
    QString m_startedUnheard;
    /// How a document spells its address that has begun before the engine told of its coming.
    QString m_startedAhead;
    QList<QUrl> m_linksToForget;
    Beginning m_beginning;
    int m_flags = 0;
    /// Loads whose start and end the engine tells although they were refused.
    int m_refusals = 0;
    /// The location is where a page is to be, and there is none.
    bool m_waiting = false;
    bool m_adopted = false;
    /// The navigation under way was begun by the program, not by a page.
    bool m_isTyped = false;
    /// The navigation under way takes the place of the current history entry.
    bool m_replacesEntry = false;
    /// The load under way was stopped by a command.
    bool m_stopped = false;
    /// The page was opened without an address, and the engine has not told of its empty document.
    bool m_opensEmpty = false;
    bool m_busy = false;
    bool m_hasDocument = false;
    bool m_completed = false;
    bool m_showsError = false;
    bool m_hasArrived = false;
};
