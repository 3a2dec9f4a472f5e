#pragma once

#include <QDeadlineTimer>
#include <QList>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <vector>

class BrowserWindow;

/// The one queue of waiting windows whose pages come without being gone to: they sleep and came
/// into sight, or a profile opened them. Few load at one time; the active window's comes first,
/// then those in sight from front to back, then the others as they were added.
class PageTurns : public QObject {
    Q_OBJECT

public:
    /// Loading at one time: enough to keep the machine busy while a slow server is waited for.
    static constexpr int mostLoading = 8;
    /// Windows in sight with a page, from which on no further one gets its page for being in sight:
    /// more than that side by side are too small to be read.
    static constexpr int mostInSight = 50;

    enum class Why {
        /// It sleeps and is in sight: it loses its turn as it goes out of sight, and has none
        /// while memory is short.
        InSight,
        Profile,
        /// The user is there: it waits for nobody.
        User
    };

    /// Lives as long as the application.
    static PageTurns &instance();

    void add(BrowserWindow *window, Why why);
    /// It is no longer waited for; a page that is on its way goes on.
    void remove(const BrowserWindow *window);
    void setMemoryShort(bool isShort);

    /// Whose page comes first; null where there are none.
    static BrowserWindow *first(const QList<BrowserWindow *> &windows);

signals:
    /// The page is on its way from now on.
    void began(BrowserWindow *window);
    /// It is there, failed, was stopped, or has not come in half a minute. May be sent inside the
    /// engine.
    void ended(BrowserWindow *window);

private:
    struct Entry {
        QPointer<BrowserWindow> window;
        Why why;
        bool isLoading = false;
        QDeadlineTimer limit = {};
    };

    using QObject::QObject;
    void step();
    void schedule(int milliseconds = 0);
    Entry *find(const BrowserWindow *window);
    void onEnded(BrowserWindow *window);
    void forgetGone();
    void endLate();
    Entry *next();
    bool mayComeForSight() const;
    void begin(Entry &entry);

    std::vector<Entry> m_entries;
    QTimer m_timer;
    bool m_isMemoryShort = false;
};
