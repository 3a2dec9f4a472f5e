#include "EndRequests.h"

#include "EndSignals.h"
#include "MainWindow.h"

#include <QGuiApplication>

namespace {

void end(MainWindow &frame, bool isByUser)
{
    frame.leave(isByUser);
    // It may be in the middle of opening windows, which ends with that.
    frame.hide();
    // Not by quitting, which asks every window first: a dialog may refuse to close.
    QMetaObject::invokeMethod(
        qApp, [] { QCoreApplication::exit(); }, Qt::QueuedConnection);
}

}

void followEndRequests(MainWindow &frame)
{
    auto *requests = new EndSignals(&frame);
    QObject::connect(requests, &EndSignals::received, &frame, [&frame] { end(frame, false); });
    // The session goes on ending once this returns: all is kept by then.
    QObject::connect(
        qApp, &QGuiApplication::commitDataRequest, &frame, [&frame] { end(frame, true); },
        Qt::DirectConnection);
}
