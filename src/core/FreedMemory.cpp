#include "FreedMemory.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>
#include <QTimer>
#include <chrono>
#ifdef __GLIBC__
#include <malloc.h>
#endif

namespace {
using namespace std::chrono_literals;

/// Many pages may go one after the other, and each return looks at all of the memory.
constexpr auto untilGivenBack = 2s;

void giveBack()
{
#ifdef __GLIBC__
    QThreadPool::globalInstance()->start([] { ::malloc_trim(0); });
#endif
}
}

namespace FreedMemory {

void giveBackSoon()
{
    static QPointer<QTimer> timer;
    QCoreApplication *program = QCoreApplication::instance();
    if (timer || !program)
        return;
    timer = new QTimer(program);
    timer->setSingleShot(true);
    QObject::connect(timer, &QTimer::timeout, timer, [] {
        timer->deleteLater();
        timer.clear();
        giveBack();
    });
    timer->start(untilGivenBack);
}

}
