#include "WaitUntil.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEvent>

void waitUntil(const char *what, const std::function<bool()> &done)
{
    constexpr int limitMs = 120'000;
    constexpr int lookMs = 10;
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > limitMs)
            qFatal("waited in vain for %s", what);
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, lookMs);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}
