#include "ProfilePages.h"

#include <algorithm>
#include <utility>

#include "BrowserWindow.h"
#include "Frame.h"
#include "PageTurns.h"
#include "SleepRules.h"
#include "WebBrowser.h"

namespace {

/// Those that hold the room may sleep by then.
constexpr int lookAgainMs = 1000;

bool waits(const BrowserWindow &window)
{
    return window.browser()->isWaiting();
}

}

ProfilePages::ProfilePages(Frame &frame, QObject *parent)
    : QObject(parent)
    , m_frame(frame)
{
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &ProfilePages::step);
    connect(&PageTurns::instance(), &PageTurns::ended, this, &ProfilePages::onEnded);
}

void ProfilePages::beginOpening(int windows)
{
    ++m_openings;
    m_total += windows;
    m_expected += windows;
}

void ProfilePages::endOpening()
{
    if (--m_openings > 0)
        return;
    m_total -= std::exchange(m_expected, 0);
    if (auto *active = activeBrowser(m_frame); active && find(active))
        onActivated(active);
    schedule();
}

void ProfilePages::add(BrowserWindow *window)
{
    m_entries.push_back({window});
    --m_expected;
    connect(window, &QMdiSubWindow::windowStateChanged, this,
            [this, window](Qt::WindowStates before, Qt::WindowStates now) {
                if (!(before & Qt::WindowActive) && (now & Qt::WindowActive))
                    onActivated(window);
            });
    connect(window, &QObject::destroyed, this, [this] { schedule(); });
    report();
    schedule();
}

void ProfilePages::stop()
{
    ++m_stops;
    for (Entry &entry : m_entries) {
        if (entry.window && entry.turn == Turn::Now && !entry.visited) {
            PageTurns::instance().remove(entry.window);
            if (!waits(*entry.window))
                entry.window->browser()->stop();
        }
        entry.turn = Turn::Over;
    }
    m_loaded = m_total;
    report();
}

void ProfilePages::schedule(int milliseconds)
{
    if (!m_timer.isActive() || m_timer.remainingTime() > milliseconds)
        m_timer.start(milliseconds);
}

ProfilePages::Entry *ProfilePages::find(const QObject *window)
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [window](const Entry &e) { return e.window == window; });
    return found == m_entries.end() ? nullptr : &*found;
}

/// May run inside the engine: the page is brought in the next step.
void ProfilePages::onActivated(BrowserWindow *window)
{
    if (Entry *entry = find(window)) {
        entry->visited = true;
        schedule();
    }
}

void ProfilePages::onEnded(BrowserWindow *window)
{
    Entry *entry = find(window);
    if (!entry || entry->turn != Turn::Now)
        return;
    entry->turn = Turn::Over;
    ++m_loaded;
    report();
    schedule();
}

void ProfilePages::forgetClosed()
{
    std::erase_if(m_entries, [this](const Entry &entry) {
        const bool closed = !entry.window || entry.window->isUnloaded();
        if (closed && entry.turn != Turn::Over)
            --m_total;
        return closed;
    });
}

/// Those that load without having had their turn.
void ProfilePages::joinThoseThatCame()
{
    for (Entry &entry : m_entries) {
        if (entry.turn == Turn::Ahead && !waits(*entry.window))
            start(entry);
    }
}

/// The entry to load next: where the user is before the others.
ProfilePages::Entry *ProfilePages::next()
{
    const auto unmet = std::find_if(m_entries.begin(), m_entries.end(), [](const Entry &entry) {
        return entry.visited && waits(*entry.window);
    });
    if (unmet != m_entries.end())
        return &*unmet;
    const auto loading = std::count_if(m_entries.begin(), m_entries.end(),
                                       [](const Entry &entry) { return entry.turn == Turn::Now; });
    if (loading >= PageTurns::mostLoading)
        return nullptr;
    QList<BrowserWindow *> ahead;
    for (const Entry &entry : m_entries) {
        if (entry.turn == Turn::Ahead)
            ahead.append(entry.window);
    }
    return find(PageTurns::first(ahead));
}

qsizetype ProfilePages::pages() const
{
    return std::count_if(m_entries.begin(), m_entries.end(), [](const Entry &entry) {
        return entry.turn == Turn::Now || !waits(*entry.window);
    });
}

/// Puts the oldest page to sleep that nobody has been to; false when there is none that may.
bool ProfilePages::makeRoom()
{
    const auto idle = std::find_if(m_entries.begin(), m_entries.end(), [](const Entry &entry) {
        return entry.turn == Turn::Over && !entry.visited
            && SleepRules::maySleep(*entry.window, SleepRules::Why::Short);
    });
    if (idle == m_entries.end())
        return false;
    idle->window->fallAsleep();
    return true;
}

void ProfilePages::start(Entry &entry)
{
    if (entry.turn == Turn::Ahead)
        entry.turn = Turn::Now;
    PageTurns::instance().add(entry.window,
                              entry.visited ? PageTurns::Why::User : PageTurns::Why::Profile);
}

/// Does one thing that takes time, then lets the interface live.
void ProfilePages::step()
{
    forgetClosed();
    joinThoseThatCame();
    Entry *entry = next();
    const qsizetype most = m_loaded < m_total ? mostWhileLoading : mostPages;
    const bool room = pages() < most;
    // A window that is gone to wakes by itself.
    const bool isFull = pages() > most || (entry && !room);
    if (isFull && makeRoom()) {
        schedule();
    } else if (entry && (room || entry->visited)) {
        start(*entry);
        schedule();
    } else if (entry) {
        schedule(lookAgainMs);
    }
    report();
}

void ProfilePages::report()
{
    if (m_loaded >= m_total && m_openings == 0)
        m_loaded = m_total = 0;
    emit progress(m_loaded, m_total);
}
