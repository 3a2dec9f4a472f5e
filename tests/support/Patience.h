#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QElapsedTimer>
#include <QTest>
#include <QTimer>
#include <functional>

/// Milliseconds in which what a test waits for must have come, where it names no time: a machine
/// that runs more programs than it has cores may take more than the five seconds of the library.
/// Every test is compiled with this header ahead.
inline constexpr int patience = 15'000;

namespace Patience {
/// Milliseconds between two looks at what is waited for, or longer, where a look itself takes
/// longer. Events run all the time: the library's own waiting runs one round of them in ten
/// milliseconds, in which many windows, or a page with an animation, leave the engine no turn.
inline constexpr int pace = 10;

inline void waitUntil(const std::function<bool()> &came, int limit)
{
    const QDeadlineTimer end(limit);
    QTimer wakes;
    wakes.start(pace);
    QElapsedTimer look;
    look.start();
    while (!QTest::currentTestFailed() && !came() && !end.hasExpired()) {
        const QDeadlineTimer next(qMax<qint64>(pace, look.elapsed()));
        do {
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        } while (!next.hasExpired());
        look.restart();
    }
}
}

#undef QTRY_LOOP_IMPL
#define QTRY_LOOP_IMPL(expr, timeoutValue, step)                                                   \
    static_cast<void>(step);                                                                       \
    Patience::waitUntil([&] { return (expr) ? true : false; }, int(timeoutValue));

// A wait that failed goes on for twice its time, to say how much more would have done: after a
// minute and a half the function is then ended from outside, and nothing says what did not come.
#undef QTRY_TIMEOUT_DEBUG_IMPL
#define QTRY_TIMEOUT_DEBUG_IMPL(...)

#undef QTRY_VERIFY
#define QTRY_VERIFY(expr) QTRY_VERIFY_WITH_TIMEOUT(expr, patience)
#undef QTRY_VERIFY2
#define QTRY_VERIFY2(expr, message) QTRY_VERIFY2_WITH_TIMEOUT(expr, message, patience)
#undef QTRY_COMPARE
#define QTRY_COMPARE(expr, expected) QTRY_COMPARE_WITH_TIMEOUT(expr, expected, patience)
