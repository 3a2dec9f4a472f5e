#include "SleepWatch.h"

#include "BrowserWindow.h"
#include "PageTurns.h"
#include "ProcessMemory.h"
#include "SleepRules.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QPointer>
#include <QThreadPool>
#include <algorithm>
#include <chrono>

namespace {
using namespace std::chrono_literals;

constexpr auto lookEvery = 30s;
/// Of windows that go to sleep for want of memory before it is measured again.
constexpr int atOnce = 5;

qint64 sinceStart()
{
    static const QElapsedTimer clock = [] {
        QElapsedTimer timer;
        timer.start();
        return timer;
    }();
    return clock.elapsed();
}
}

SleepWatch::SleepWatch(QObject *parent)
    : QObject(parent)
    , m_free(ProcessMemory::available())
{
    sinceStart();
    m_timer.setInterval(lookEvery);
    connect(&m_timer, &QTimer::timeout, this, &SleepWatch::measure);
    m_timer.start();
    PageTurns::instance().setMemoryShort(false);
    connect(&PageTurns::instance(), &PageTurns::began, this, &SleepWatch::measureOften);
}

qint64 SleepWatch::memoryLimit() const
{
    return m_free / 100 * SleepRules::memoryShare();
}

/// In a thread: there may be hundreds of processes to ask about.
void SleepWatch::measure()
{
    if (m_isMeasuring)
        return;
    m_isMeasuring = true;
    m_came = 0;
    QThreadPool::globalInstance()->start([self = QPointer(this), limit = memoryLimit()] {
        const qint64 memory = ProcessMemory::used(limit);
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [self, memory] {
                if (!self)
                    return;
                self->m_isMeasuring = false;
                self->look(sinceStart(), memory);
            },
            Qt::QueuedConnection);
    });
}

/// Many pages that come at once may take much before it is time to look.
void SleepWatch::measureOften()
{
    if (++m_came >= PageTurns::mostLoading)
        measure();
}

void SleepWatch::look(qint64 now, qint64 memory)
{
    noteUnseen(now);
    const qint64 limit = memoryLimit();
    const bool isMemoryShort = limit > 0 && memory > limit;
    PageTurns::instance().setMemoryShort(isMemoryShort);
    int left = isMemoryShort ? atOnce : 0;
    const qint64 after = std::chrono::milliseconds(SleepRules::after()).count();
    for (BrowserWindow *window : longestUnseen()) {
        const bool isOld = after > 0 && now - m_unseen.value(window->hWnd()) >= after;
        const bool isShort = left > 0;
        const auto why = isShort ? SleepRules::Why::Short : SleepRules::Why::Unseen;
        if ((!isOld && !isShort) || !SleepRules::maySleep(*window, why))
            continue;
        --left;
        SleepRules::ask(*window, why);
    }
}

void SleepWatch::noteUnseen(qint64 now)
{
    QHash<int, qint64> unseen;
    for (const BrowserWindow *window : browserForms()) {
        if (!window->isSeen())
            unseen.insert(window->hWnd(), m_unseen.value(window->hWnd(), now));
    }
    m_unseen = unseen;
}

QList<BrowserWindow *> SleepWatch::longestUnseen() const
{
    QList<BrowserWindow *> windows = browserForms();
    windows.removeIf(
        [this](const BrowserWindow *each) { return !m_unseen.contains(each->hWnd()); });
    std::stable_sort(windows.begin(), windows.end(),
                     [this](const BrowserWindow *one, const BrowserWindow *other) {
                         return m_unseen.value(one->hWnd()) < m_unseen.value(other->hWnd());
                     });
    return windows;
}
