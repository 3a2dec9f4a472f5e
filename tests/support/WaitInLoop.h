#pragma once

#include <QEventLoop>
#include <QTimer>
#include <chrono>
#include <functional>

/// Runs an event loop until `came` says so, but no longer than `limit`; returns whether it did. For
/// tests with many windows: the library's own waiting does one round of events in ten milliseconds,
/// in which the animations of windows that load leave the engine no turn.
inline bool waitInLoop(const std::function<bool()> &came, std::chrono::milliseconds limit)
{
    bool isHere = came();
    QEventLoop loop;
    QTimer looks;
    looks.setSingleShot(true);
    QObject::connect(&looks, &QTimer::timeout, &loop, [&] {
        isHere = came();
        if (isHere)
            loop.quit();
        else
            looks.start();
    });
    looks.setInterval(50);
    QTimer::singleShot(limit, &loop, &QEventLoop::quit);
    if (!isHere) {
        looks.start();
        loop.exec();
    }
    return isHere;
}
