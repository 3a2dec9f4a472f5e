// What windows that fall asleep give back, and that they keep nothing.
#include <QCoreApplication>

#include "../EngineSession.h"
#include "EngineTest.h"
#include "Factory.h"
#include "ProcessMemory.h"

using namespace Qt::StringLiterals;

namespace {
constexpr qint64 megabyte = 1024 * 1024;

/// Of the program itself, without the processes of its pages.
qint64 memory()
{
    return ProcessMemory::of(QCoreApplication::applicationPid());
}

bool isShown(const BrowserWindow *window)
{
    return window->browser()->hasDocument() && !window->browser()->isBusy();
}
}

class tst_SleepMemory : public QObject, private EngineSession {
    Q_OBJECT

private slots:
    void init()
    {
        begin();
        start();
    }
    void cleanup() { finish(); }

    void goesBackToTheSystem();
    void sleepsLeaveNothingBehind();
};

void tst_SleepMemory::goesBackToTheSystem()
{
    constexpr int count = 30;
    // A page's picture of itself alone is more, in a window of that size.
    constexpr qint64 least = count * megabyte;
    m_session->frame->resize(1200, 900);
    QList<BrowserWindow *> windows;
    for (int i = 0; i < count; ++i) {
        windows.append(
            openBrowserWindow(*m_session->frame, url(u"/one"_s), WindowState::Maximized));
        QTRY_VERIFY(isShown(windows.last()));
    }
    const qint64 before = memory();
    QVERIFY(before > 0);
    for (BrowserWindow *window : std::as_const(windows))
        window->fallAsleep();
    // What is taken beside goes up and down all the time.
    qint64 lowest = before;
    const auto isBack = [&] {
        lowest = qMin(lowest, memory());
        return lowest < before - least;
    };
    QTRY_VERIFY2(isBack(), qPrintable(QString::number(before / megabyte)));
}

void tst_SleepMemory::sleepsLeaveNothingBehind()
{
    constexpr int untilItIsUsed = 10;
    constexpr int rounds = 50;
    constexpr qint64 most = 10 * megabyte;
    BrowserWindow *window = m_session->active();
    qint64 before = 0;
    for (int i = 0; i < rounds; ++i) {
        if (i == untilItIsUsed)
            before = memory();
        window->fallAsleep();
        QVERIFY(window->isAsleep());
        window->wake();
        QTRY_VERIFY(isShown(window));
    }
    qint64 lowest = memory();
    const auto isBack = [&] {
        lowest = qMin(lowest, memory());
        return lowest < before + most;
    };
    QTRY_VERIFY2(isBack(), qPrintable(QString::number(before / megabyte)));
}

ORVANE_ENGINE_TEST_MAIN(tst_SleepMemory)
#include "tst_sleepmemory.moc"
