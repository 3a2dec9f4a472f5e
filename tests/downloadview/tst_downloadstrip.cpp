#include "DownloadStrip.h"
#include "FakeDownloads.h"

#include <QAccessible>
#include <QSignalSpy>
#include <QtTest>

using namespace Qt::StringLiterals;
using State = Download::State;
using Problem = Download::Problem;

/// The strip below everything else, as it comes, says what runs, and goes.
class tst_DownloadStrip : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void comesAndGoes();
    void namesItsFile();
    void severalAreCountedAndSummed();
    void heldOnesAreTold();
    void failedOnesStayUntilTheListIsSeen();
    void failedOneBesidesARunningOne();
    void oldFailuresAreNoNews();
    void failureBeforeTheUsersEyesIsNoNews();
    void retriedOneIsNoFailureAnyMore();
    void numbersAreNotReadOutAllTheTime();
    void enterSpaceAndClickAskForTheList();
    void paintsAtAnyWidth();

private:
    QString name() const { return m_strip->accessibleName(); }

    std::unique_ptr<DownloadList> m_list;
    std::unique_ptr<QWidget> m_window;
    DownloadStrip *m_strip = nullptr;
};

void tst_DownloadStrip::init()
{
    QLocale::setDefault(QLocale::c());
    m_list = std::make_unique<DownloadList>();
    m_window = std::make_unique<QWidget>();
    m_window->resize(800, 60);
    m_strip = new DownloadStrip(*m_list, m_window.get());
    m_strip->setGeometry(0, 0, 800, m_strip->sizeHint().height());
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void tst_DownloadStrip::cleanup()
{
    m_window.reset();
    m_list.reset();
}

void tst_DownloadStrip::comesAndGoes()
{
    QVERIFY(!m_strip->isVisible());
    const Download download = FakeDownloads::make(u"a.zip"_s);
    FakeDownloads::add(download, *m_list);
    QVERIFY(m_strip->isVisible());
    FakeDownloads::set(download, State::Paused, Problem::None, *m_list);
    QTRY_VERIFY(name().contains("Paused"_L1));
    QVERIFY(m_strip->isVisible());
    FakeDownloads::set(download, State::Done, Problem::None, *m_list);
    QTRY_VERIFY(!m_strip->isVisible());
}

void tst_DownloadStrip::namesItsFile()
{
    FakeDownloads::add(FakeDownloads::make(u"a\u202E b.zip"_s), *m_list);
    QCOMPARE(name(), u"a b.zip, 25%, Running"_s);
    QCOMPARE(QAccessible::queryAccessibleInterface(m_strip)->role(), QAccessible::Button);
}

void tst_DownloadStrip::severalAreCountedAndSummed()
{
    FakeDownloads::add(FakeDownloads::make(u"a.zip"_s), *m_list);
    Download other = FakeDownloads::make(u"b.zip"_s);
    other.size = 3000000;
    other.received = 3000000;
    FakeDownloads::add(other, *m_list);
    QCOMPARE(name(), u"Downloads: 2, b.zip, a.zip, 81%"_s);
    Download unknown = FakeDownloads::make(u"c.zip"_s);
    unknown.size = -1;
    FakeDownloads::add(unknown, *m_list);
    QCOMPARE(name(), u"Downloads: 3, c.zip, b.zip, a.zip"_s);
}

void tst_DownloadStrip::heldOnesAreTold()
{
    FakeDownloads::add(FakeDownloads::make(u"a.zip"_s, State::Held), *m_list);
    QVERIFY2(name().contains("Waits for your answer"_L1), qPrintable(name()));
    FakeDownloads::add(FakeDownloads::make(u"b.zip"_s), *m_list);
    QVERIFY2(name().contains("Waiting for your answer: 1"_L1), qPrintable(name()));
}

void tst_DownloadStrip::failedOnesStayUntilTheListIsSeen()
{
    const Download one = FakeDownloads::make(u"a.zip"_s);
    const Download two = FakeDownloads::make(u"b.zip"_s);
    FakeDownloads::add(one, *m_list);
    FakeDownloads::add(two, *m_list);
    FakeDownloads::set(one, State::Failed, Problem::ConnectionLost, *m_list);
    FakeDownloads::set(two, State::Done, Problem::None, *m_list);
    QTRY_COMPARE(name(), u"a.zip, The connection was lost"_s);
    QVERIFY(m_strip->isVisible());
    m_strip->setListSeen(true);
    QVERIFY(!m_strip->isVisible());
    m_strip->setListSeen(false);
    QVERIFY(!m_strip->isVisible());
}

void tst_DownloadStrip::failedOneBesidesARunningOne()
{
    const Download one = FakeDownloads::make(u"a.zip"_s);
    FakeDownloads::add(one, *m_list);
    FakeDownloads::add(FakeDownloads::make(u"b.zip"_s), *m_list);
    FakeDownloads::set(one, State::Failed, Problem::ConnectionLost, *m_list);
    QTRY_COMPARE(name(), u"b.zip, a.zip, 25%, Running, Failed: 1"_s);
}

void tst_DownloadStrip::oldFailuresAreNoNews()
{
    Download old = FakeDownloads::make(u"a.zip"_s, State::Failed);
    old.began = old.began.addDays(-1);
    old.ended = old.began;
    m_list->add(old, nullptr);
    m_list->add(FakeDownloads::make(u"b.zip"_s, State::Unfinished), nullptr);
    QVERIFY(!m_strip->isVisible());
}

void tst_DownloadStrip::failureBeforeTheUsersEyesIsNoNews()
{
    m_strip->setListSeen(true);
    const Download one = FakeDownloads::make(u"a.zip"_s);
    FakeDownloads::add(one, *m_list);
    QVERIFY(m_strip->isVisible());
    FakeDownloads::set(one, State::Failed, Problem::NoRoom, *m_list);
    QTRY_VERIFY(!m_strip->isVisible());
    m_strip->setListSeen(false);
    QVERIFY(!m_strip->isVisible());
}

void tst_DownloadStrip::retriedOneIsNoFailureAnyMore()
{
    const Download one = FakeDownloads::make(u"a.zip"_s);
    FakeDownloads::add(one, *m_list);
    FakeDownloads::set(one, State::Failed, Problem::NoRoom, *m_list);
    QTRY_VERIFY(name().contains("no room"_L1));
    m_list->remove({one.id});
    QTRY_VERIFY(!m_strip->isVisible());
}

void tst_DownloadStrip::numbersAreNotReadOutAllTheTime()
{
    const Download one = FakeDownloads::make(u"a.zip"_s);
    FakeDownloads::add(one, *m_list);
    const QString before = name();
    const QSignalSpy told(m_list.get(), &DownloadList::changed);
    while (told.size() < 5) {
        m_list->change(one.id, [](Download &each) { each.received += 100000; });
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    QCOMPARE(name(), before);
    // What it does is told at once.
    FakeDownloads::set(one, State::Paused, Problem::None, *m_list);
    QTRY_VERIFY(name().contains("Paused"_L1));
}

void tst_DownloadStrip::enterSpaceAndClickAskForTheList()
{
    FakeDownloads::add(FakeDownloads::make(u"a.zip"_s), *m_list);
    const QSignalSpy wanted(m_strip, &DownloadStrip::clicked);
    QTest::mouseClick(m_strip, Qt::LeftButton, {}, QPoint(700, 5));
    QCOMPARE(wanted.size(), 1);
    QTest::keyClick(m_strip, Qt::Key_Return);
    QCOMPARE(wanted.size(), 2);
    QTest::keyClick(m_strip, Qt::Key_Space);
    QCOMPARE(wanted.size(), 3);
}

void tst_DownloadStrip::paintsAtAnyWidth()
{
    FakeDownloads::add(FakeDownloads::make(QString(250, u'W') + u".zip"_s), *m_list);
    for (const int width : {1, 30, 120, 300, 2000}) {
        m_strip->resize(width, m_strip->height());
        QVERIFY(!m_strip->grab().isNull());
    }
    QVERIFY2(m_strip->minimumSizeHint().width() < 50, "a long name does not widen the frame");
}

QTEST_MAIN(tst_DownloadStrip)
#include "tst_downloadstrip.moc"
