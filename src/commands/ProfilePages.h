#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <vector>

class Frame;
class BrowserWindow;

/// Brings the pages into the windows that profiles opened, by `PageTurns`, so that the interface
/// stays live however many there are. No more than `mostPages` of these windows keep a page: those
/// that came first and that nobody has been to fall asleep, and come again when their windows are
/// gone to, as the pages do that never had their turn. While pages still come there may be
/// `mostWhileLoading`: falling asleep takes as long as coming, and the user waits for those that
/// come. A window the user has been to keeps its page.
class ProfilePages : public QObject {
    Q_OBJECT

public:
    static constexpr int mostPages = 50;
    static constexpr int mostWhileLoading = 100;

    ProfilePages(Frame &frame, QObject *parent);

    /// A profile of `windows` addresses is being opened from now to `endOpening`: its windows come
    /// up and become active by themselves.
    void beginOpening(int windows);
    void endOpening();
    /// A window that waits for its page (`WebBrowser::navigateLater`).
    void add(BrowserWindow *window);

    /// Ends the loading; windows without a page get it when they are gone to.
    void stop();
    /// How often `stop` ended something.
    int stops() const { return m_stops; }

    /// Of the windows whose turn is not over for all yet.
    int loaded() const { return m_loaded; }
    int total() const { return m_total; }

signals:
    void progress(int loaded, int total);

private:
    enum class Turn { Ahead, Now, Over };
    struct Entry {
        QPointer<BrowserWindow> window;
        Turn turn = Turn::Ahead;
        /// The user has been there.
        bool visited = false;
    };

    void step();
    void schedule(int milliseconds = 0);
    Entry *find(const QObject *window);
    void onActivated(BrowserWindow *window);
    void onEnded(BrowserWindow *window);
    void forgetClosed();
    void joinThoseThatCame();
    Entry *next();
    /// Windows that have a page, or get it next.
    qsizetype pages() const;
    bool makeRoom();
    void start(Entry &entry);
    void report();

    Frame &m_frame;
    std::vector<Entry> m_entries;
    QTimer m_timer;
    int m_openings = 0;
    /// Windows that were announced and are still to be added.
    int m_expected = 0;
    int m_loaded = 0;
    int m_total = 0;
    int m_stops = 0;
};
