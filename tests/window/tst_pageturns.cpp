// Waiting windows get their pages in turn, with a counting engine in place of the real one.
#include "FakeFrame.h"
#include "FakeWebBrowser.h"
#include "PageTurns.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_PageTurns : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void eightLoadAtOnce();
    void activeThenFrontToBack();
    void outOfSightLosesItsTurn();
    void profileKeepsItsTurnOutOfSight();
    void fiftyInSight();
    void noneForSightWhileMemoryIsShort();
    void slimPartStaysAsleep();
    void closedWindowsGiveTheirTurnUp();
    void userWaitsForNobody();
    void putToSleepInSightStaysSo();

private:
    /// Windows side by side, in the order of their numbers from back to front.
    QList<BrowserWindow *> openSleeping(int count);
    void sleepAll(const QList<BrowserWindow *> &windows) const
    {
        for (BrowserWindow *window : windows)
            window->waitAsleep(Waking::InSight);
    }
    static FakeWebBrowser *engineOf(const BrowserWindow *window)
    {
        return static_cast<FakeWebBrowser *>(window->browser());
    }
    static int awake(const QList<BrowserWindow *> &windows)
    {
        return int(std::count_if(windows.cbegin(), windows.cend(),
                                 [](BrowserWindow *each) { return !each->isAsleep(); }));
    }
    /// Ends all loads there are.
    static void endLoads(const QList<BrowserWindow *> &windows)
    {
        for (const BrowserWindow *window : windows) {
            if (!window->browser()->isWaiting())
                emit window->browser()->loadEnded();
        }
    }
    /// All that could be begun has been.
    static void settle()
    {
        constexpr int rounds = 100;
        for (int i = 0; i < rounds; ++i)
            QCoreApplication::processEvents();
    }

    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<FakeFrame> m_frame;
    /// The active one.
    BrowserWindow *m_own = nullptr;
};

void tst_PageTurns::init()
{
    m_engine = std::make_unique<FakeEngine>();
    m_frame = std::make_unique<FakeFrame>();
    // A size alone may be taken back as the frame comes up.
    m_frame->area->setMinimumSize(2500, 1700);
    QTRY_VERIFY(m_frame->area->width() >= 2500);
    PageTurns::instance().setMemoryShort(false);
    m_own = nullptr;
}

void tst_PageTurns::cleanup()
{
    m_frame.reset();
    m_engine.reset();
}

/// The active one is another, small one in a corner.
QList<BrowserWindow *> tst_PageTurns::openSleeping(int count)
{
    constexpr int columns = 10;
    const QSize size(230, 200);
    QList<BrowserWindow *> windows;
    for (int i = 0; i < count; ++i) {
        auto *window = new BrowserWindow(*m_frame);
        window->startingAddress = u"http://h/%1"_s.arg(i);
        window->startingLoad = Loading::Later;
        m_frame->adopt(window);
        window->setGeometry(QRect(QPoint(i % columns * 240, i / columns * 210), size));
        window->show();
        windows.append(window);
    }
    m_own = m_frame->open(u"http://own/"_s);
    m_own->setGeometry(2400, 1600, 100, 100);
    [&] {
        for (const BrowserWindow *window : std::as_const(windows))
            QTRY_VERIFY(window->isInView() && window->browser()->isWaiting());
        QTRY_VERIFY(m_own->isActiveChild());
    }();
    settle();
    return windows;
}

void tst_PageTurns::eightLoadAtOnce()
{
    const QList<BrowserWindow *> windows = openSleeping(30);
    sleepAll(windows);
    QTRY_COMPARE(awake(windows), PageTurns::mostLoading);
    settle();
    QCOMPARE(awake(windows), PageTurns::mostLoading);
    emit windows.last()->browser()->loadEnded();
    QTRY_COMPARE(awake(windows), PageTurns::mostLoading + 1);
    settle();
    QCOMPARE(awake(windows), PageTurns::mostLoading + 1);
    const auto allCame = [&] { return endLoads(windows), awake(windows) == 30; };
    QTRY_VERIFY(allCame());
    for (const BrowserWindow *window : windows)
        QCOMPARE(engineOf(window)->navigated.size(), 1);
}

void tst_PageTurns::activeThenFrontToBack()
{
    const QList<BrowserWindow *> windows = openSleeping(6);
    QList<BrowserWindow *> came;
    connect(&PageTurns::instance(), &PageTurns::began, m_frame->window(),
            [&](BrowserWindow *window) { came.append(window); });
    // In front of all but the active one, which is not in sight at all.
    windows.at(3)->raise();
    windows.at(1)->setGeometry(5000, 5000, 230, 200);
    m_frame->area->setActiveSubWindow(windows.at(1));
    QTRY_VERIFY(!windows.at(1)->isSeen());
    for (BrowserWindow *window : windows)
        PageTurns::instance().add(window, PageTurns::Why::Profile);
    QTRY_COMPARE(came.size(), 6);
    QCOMPARE(came,
             (QList{windows.at(1), windows.at(3), windows.at(5), windows.at(4), windows.at(2),
                    windows.at(0)}));
}

void tst_PageTurns::outOfSightLosesItsTurn()
{
    const QList<BrowserWindow *> windows = openSleeping(20);
    sleepAll(windows);
    QTRY_COMPARE(awake(windows), PageTurns::mostLoading);
    BrowserWindow *later = windows.first();
    QVERIFY(later->isAsleep());
    const QRect place = later->geometry();
    later->move(5000, 5000);
    QTRY_VERIFY(!later->isInView());
    settle();
    const auto othersCame = [&] { return endLoads(windows), awake(windows) == 19; };
    QTRY_VERIFY(othersCame());
    endLoads(windows);
    settle();
    QVERIFY(later->isAsleep());
    later->setGeometry(place);
    QTRY_VERIFY(!later->isAsleep());
}

void tst_PageTurns::profileKeepsItsTurnOutOfSight()
{
    const QList<BrowserWindow *> windows = openSleeping(1);
    windows.first()->showMinimized();
    QTRY_VERIFY(!windows.first()->isSeen());
    PageTurns::instance().add(windows.first(), PageTurns::Why::Profile);
    QTRY_VERIFY(!windows.first()->browser()->isWaiting());
}

void tst_PageTurns::fiftyInSight()
{
    const QList<BrowserWindow *> windows = openSleeping(60);
    sleepAll(windows);
    // The active one has a page as well.
    const int most = PageTurns::mostInSight - 1;
    const auto allCame = [&] { return endLoads(windows), awake(windows) == most; };
    QTRY_VERIFY(allCame());
    endLoads(windows);
    settle();
    QCOMPARE(awake(windows), most);
    // Those in front have come.
    for (int i = 0; i < 60; ++i)
        QCOMPARE(windows.at(i)->isAsleep(), i < 60 - most);
    m_frame->area->setActiveSubWindow(windows.first());
    QTRY_VERIFY(!windows.first()->isAsleep());
}

void tst_PageTurns::noneForSightWhileMemoryIsShort()
{
    const QList<BrowserWindow *> windows = openSleeping(5);
    PageTurns::instance().setMemoryShort(true);
    sleepAll(windows);
    settle();
    QCOMPARE(awake(windows), 0);
    m_frame->area->setActiveSubWindow(windows.at(2));
    QTRY_COMPARE(awake(windows), 1);
    PageTurns::instance().setMemoryShort(false);
    for (int i = 0; i < 5; ++i)
        QTRY_VERIFY2(!windows.at(i)->isAsleep(), qPrintable(QString::number(i)));
}

/// Its picture is all that can be made out of it.
void tst_PageTurns::slimPartStaysAsleep()
{
    const QList<BrowserWindow *> windows = openSleeping(1);
    BrowserWindow *window = windows.first();
    m_own->setGeometry(0, 0, 200, 300);
    m_own->raise();
    QTRY_VERIFY(window->isSeen() && !window->isInView());
    window->waitAsleep(Waking::InSight);
    settle();
    QVERIFY(window->isAsleep());
    m_own->setGeometry(100, 0, 200, 300);
    QTRY_VERIFY(window->isInView());
    QTRY_VERIFY(!window->isAsleep());
}

void tst_PageTurns::closedWindowsGiveTheirTurnUp()
{
    const QList<BrowserWindow *> windows = openSleeping(20);
    sleepAll(windows);
    QTRY_COMPARE(awake(windows), PageTurns::mostLoading);
    const QList<BrowserWindow *> loading = windows.mid(20 - PageTurns::mostLoading);
    for (BrowserWindow *window : loading)
        window->unload();
    const QList<BrowserWindow *> others = windows.mid(0, 20 - PageTurns::mostLoading);
    QTRY_COMPARE(awake(others), PageTurns::mostLoading);
    delete others.last();
    QTRY_COMPARE(awake(others.mid(0, others.size() - 1)), PageTurns::mostLoading);
}

void tst_PageTurns::userWaitsForNobody()
{
    const QList<BrowserWindow *> windows = openSleeping(20);
    sleepAll(windows);
    QTRY_COMPARE(awake(windows), PageTurns::mostLoading);
    PageTurns::instance().add(windows.first(), PageTurns::Why::User);
    QTRY_VERIFY(!windows.first()->isAsleep());
    QCOMPARE(awake(windows), PageTurns::mostLoading + 1);
}

void tst_PageTurns::putToSleepInSightStaysSo()
{
    BrowserWindow *window = openSleeping(1).first();
    window->browser()->navigateNow();
    engineOf(window)->location = u"http://h/0"_s;
    window->fallAsleep();
    QVERIFY(window->isAsleep());
    window->move(window->pos() + QPoint(40, 40));
    settle();
    QVERIFY(window->isInView() && window->isAsleep());
}

QTEST_MAIN(tst_PageTurns)
#include "tst_pageturns.moc"
