#include "SteadySight.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QVBoxLayout>
#include <QtTest>
#include <memory>

using namespace Qt::StringLiterals;

/// When a click on a widget is meant for it.
class tst_SteadySight : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void takesHalfASecond();
    void beginsAnew_data();
    void beginsAnew();
    void whatGoesFromOverItBeginsAnew();
    void whatStandsOverItKeepsItWaiting_data();
    void whatStandsOverItKeepsItWaiting();
    void whatHappensElsewhereIsNothing();
    void whatIsCutOffIsNotSeen();
    void hiddenAndShownBeginsAnew();

private:
    QWidget *addBeside(const QRect &place);

    std::unique_ptr<QWidget> m_window;
    QWidget *m_room = nullptr;
    QWidget *m_watched = nullptr;
    SteadySight *m_sight = nullptr;
};

void tst_SteadySight::init()
{
    m_window = std::make_unique<QWidget>();
    m_window->setGeometry(100, 100, 600, 400);
    m_room = new QWidget(m_window.get());
    m_room->setGeometry(0, 0, 400, 300);
    m_watched = new QWidget(m_room);
    m_watched->setGeometry(10, 10, 200, 50);
    m_sight = new SteadySight(m_watched, [this] { return m_watched->rect(); });
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QTRY_VERIFY(m_sight->isOver());
}

void tst_SteadySight::cleanup()
{
    m_window.reset();
}

QWidget *tst_SteadySight::addBeside(const QRect &place)
{
    auto *other = new QWidget(m_room);
    other->setGeometry(place);
    other->show();
    return other;
}

void tst_SteadySight::takesHalfASecond()
{
    m_watched->hide();
    QElapsedTimer since;
    since.start();
    m_watched->show();
    QVERIFY(!m_sight->isOver());
    QTRY_VERIFY(m_sight->isOver());
    QVERIFY(since.elapsed() >= 500);
}

void tst_SteadySight::beginsAnew_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("moved") << 0;
    QTest::newRow("resized") << 1;
    QTest::newRow("what is around it moved") << 2;
    QTest::newRow("window moved") << 3;
    QTest::newRow("moved and back") << 4;
    QTest::newRow("something over it and gone at once") << 5;
    QTest::newRow("a window over it and gone at once") << 6;
    QTest::newRow("raised from below and lowered at once") << 7;
}

void tst_SteadySight::beginsAnew()
{
    QFETCH(int, way);
    QWidget *below = addBeside({500, 500, 100, 100});
    below->lower();
    below->setGeometry(m_watched->geometry());
    QTRY_VERIFY(m_sight->isOver());
    const QSignalSpy changed(m_sight, &SteadySight::changed);
    QWidget popup(m_window.get(), Qt::ToolTip);
    popup.setGeometry(QRect(m_watched->mapToGlobal(QPoint()), QSize(20, 20)));
    switch (way) {
    case 0:
        m_watched->move(12, 10);
        break;
    case 1:
        m_watched->resize(210, 50);
        break;
    case 2:
        m_room->move(5, 5);
        break;
    case 3:
        m_window->move(150, 150);
        break;
    case 4:
        m_watched->move(0, 0);
        m_watched->move(10, 10);
        break;
    case 5:
        delete addBeside({20, 20, 10, 10});
        break;
    case 6:
        popup.show();
        popup.hide();
        break;
    default:
        below->raise();
        below->lower();
    }
    QTRY_VERIFY(!changed.isEmpty());
    QCOMPARE(changed.first().first().toBool(), false);
    QTRY_VERIFY(m_sight->isOver());
}

void tst_SteadySight::whatGoesFromOverItBeginsAnew()
{
    QWidget *above = addBeside({20, 20, 10, 10});
    QVERIFY(!m_sight->isOver());
    above->move(300, 200);
    QElapsedTimer since;
    since.start();
    QTRY_VERIFY(m_sight->isOver());
    QVERIFY(since.elapsed() >= 500);
}

void tst_SteadySight::whatStandsOverItKeepsItWaiting_data()
{
    QTest::addColumn<bool>("isWindow");
    QTest::newRow("in the window") << false;
    QTest::newRow("a window of its own") << true;
}

void tst_SteadySight::whatStandsOverItKeepsItWaiting()
{
    QFETCH(bool, isWindow);
    QWidget popup(m_window.get(), Qt::ToolTip);
    popup.setGeometry(QRect(m_watched->mapToGlobal(QPoint()), QSize(20, 20)));
    if (isWindow)
        popup.show();
    else
        addBeside({20, 20, 10, 10});
    // As long as two of its times: the second one begins when the first is over.
    QTimer twice;
    twice.setSingleShot(true);
    twice.start(1200);
    QTRY_VERIFY(!twice.isActive());
    QVERIFY(!m_sight->isOver());
}

void tst_SteadySight::whatHappensElsewhereIsNothing()
{
    const QSignalSpy changed(m_sight, &SteadySight::changed);
    QWidget *beside = addBeside({250, 10, 50, 50});
    beside->move(250, 100);
    QWidget *below = addBeside({300, 100, 50, 50});
    below->lower();
    below->setGeometry(m_watched->geometry());
    delete beside;
    QVERIFY(changed.isEmpty());
    QVERIFY(m_sight->isOver());
}

void tst_SteadySight::whatIsCutOffIsNotSeen()
{
    m_room->resize(150, 300);
    QVERIFY(!m_sight->isOver());
    m_room->resize(400, 300);
    QVERIFY(!m_sight->isOver());
    QTRY_VERIFY(m_sight->isOver());
}

void tst_SteadySight::hiddenAndShownBeginsAnew()
{
    m_room->hide();
    m_room->show();
    QVERIFY(!m_sight->isOver());
    QTRY_VERIFY(m_sight->isOver());
}

QTEST_MAIN(tst_SteadySight)
#include "tst_steadysight.moc"
