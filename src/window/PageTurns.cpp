#include "PageTurns.h"

#include "BrowserWindow.h"

#include <QCoreApplication>
#include <QMdiArea>
#include <algorithm>

namespace {
/// A page that has not come by then no longer holds up the others.
constexpr int longestTurnMs = 30'000;
constexpr int lookAgainMs = 1000;

/// The one that is in front of all others of which enough is in sight.
BrowserWindow *foremost(const QList<BrowserWindow *> &windows)
{
    const QMdiArea *area = windows.constFirst()->mdiArea();
    if (!area)
        return nullptr;
    const QList<QMdiSubWindow *> stack = area->subWindowList(QMdiArea::StackingOrder);
    for (auto each = stack.crbegin(); each != stack.crend(); ++each) {
        auto *window = qobject_cast<BrowserWindow *>(*each);
        if (window && window->isInView() && windows.contains(window))
            return window;
    }
    return nullptr;
}
}

PageTurns &PageTurns::instance()
{
    static QPointer<PageTurns> turns;
    if (!turns) {
        turns = new PageTurns(QCoreApplication::instance());
        turns->m_timer.setSingleShot(true);
        connect(&turns->m_timer, &QTimer::timeout, turns, &PageTurns::step);
    }
    return *turns;
}

void PageTurns::add(BrowserWindow *window, Why why)
{
    if (Entry *entry = find(window)) {
        entry->why = std::max(entry->why, why);
    } else {
        m_entries.push_back({window, why});
        connect(window->browser(), &WebBrowser::loadEnded, this,
                [this, window] { onEnded(window); });
    }
    schedule();
}

void PageTurns::remove(const BrowserWindow *window)
{
    disconnect(window->browser(), nullptr, this, nullptr);
    std::erase_if(m_entries, [window](const Entry &entry) { return entry.window == window; });
    schedule();
}

void PageTurns::setMemoryShort(bool isShort)
{
    m_isMemoryShort = isShort;
    schedule();
}

BrowserWindow *PageTurns::first(const QList<BrowserWindow *> &windows)
{
    if (windows.isEmpty())
        return nullptr;
    const auto active = std::find_if(windows.cbegin(), windows.cend(),
                                     [](BrowserWindow *window) { return window->isActiveChild(); });
    if (active != windows.cend())
        return *active;
    BrowserWindow *inFront = foremost(windows);
    return inFront ? inFront : windows.constFirst();
}

void PageTurns::schedule(int milliseconds)
{
    if (!m_timer.isActive() || m_timer.remainingTime() > milliseconds)
        m_timer.start(milliseconds);
}

PageTurns::Entry *PageTurns::find(const BrowserWindow *window)
{
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [window](const Entry &e) { return e.window == window; });
    return found == m_entries.end() ? nullptr : &*found;
}

void PageTurns::onEnded(BrowserWindow *window)
{
    const Entry *entry = find(window);
    if (!entry || !entry->isLoading)
        return;
    remove(window);
    emit ended(window);
}

void PageTurns::forgetGone()
{
    std::erase_if(m_entries,
                  [](const Entry &entry) { return !entry.window || entry.window->isUnloaded(); });
    const std::vector<Entry> entries = m_entries;
    for (const Entry &entry : entries) {
        const bool isForSight = entry.why == Why::InSight && !entry.isLoading;
        if (isForSight && !(entry.window->isInView() && entry.window->browser()->isWaiting()))
            remove(entry.window);
    }
}

void PageTurns::endLate()
{
    const std::vector<Entry> entries = m_entries;
    for (const Entry &entry : entries) {
        if (entry.isLoading && entry.limit.hasExpired() && entry.window) {
            remove(entry.window);
            emit ended(entry.window);
        }
    }
}

/// Those that came meanwhile, as their user went to them, count.
bool PageTurns::mayComeForSight() const
{
    if (m_isMemoryShort)
        return false;
    const QList<BrowserWindow *> all = browserForms();
    return std::count_if(all.cbegin(), all.cend(),
                         [](const BrowserWindow *window) {
                             return window->isInView() && !window->browser()->isWaiting();
                         })
        < mostInSight;
}

PageTurns::Entry *PageTurns::next()
{
    const auto user = std::find_if(m_entries.begin(), m_entries.end(), [](const Entry &entry) {
        return entry.why == Why::User && !entry.isLoading;
    });
    if (user != m_entries.end())
        return &*user;
    const auto loading = std::count_if(m_entries.cbegin(), m_entries.cend(),
                                       [](const Entry &entry) { return entry.isLoading; });
    if (loading >= mostLoading)
        return nullptr;
    const bool isForSight = mayComeForSight();
    QList<BrowserWindow *> ahead;
    for (const Entry &entry : m_entries) {
        if (!entry.isLoading && (isForSight || entry.why != Why::InSight))
            ahead.append(entry.window);
    }
    return find(first(ahead));
}

void PageTurns::begin(Entry &entry)
{
    const QPointer<BrowserWindow> window = entry.window;
    entry.isLoading = true;
    entry.limit.setRemainingTime(longestTurnMs);
    if (window->isAsleep())
        window->wake();
    else
        window->browser()->navigateNow();
    if (window)
        emit began(window);
}

/// Does one thing that takes time, then lets the interface live.
void PageTurns::step()
{
    forgetGone();
    endLate();
    if (Entry *entry = next()) {
        begin(*entry);
        schedule();
    } else if (!m_entries.empty()) {
        schedule(lookAgainMs);
    }
}
