// The desk in its file while the program runs, and what the next start finds.
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QRandomGenerator>
#include <QtTest>

#include <cstdio>

#include "AppFolder.h"
#include "DeskFile.h"
#include "DeskStore.h"
#include "LastDeskFile.h"
#include "TempAppFolder.h"
#include "WakingPages.h"

using namespace Qt::StringLiterals;

namespace {
constexpr char folderVariable[] = "ORVANE_TEST_FOLDER";

/// Its windows all tell the same number.
Desk deskOf(int windows, int number = 0)
{
    Desk desk;
    for (int i = 0; i < windows; ++i) {
        DeskWindow window;
        window.address = u"http://one.test/%1/%2"_s.arg(i).arg(number);
        window.title = QString::number(number);
        window.place = QRect(15 * i, 30, 300, 150);
        window.order = i;
        desk.windows.append(window);
    }
    desk.active = windows - 1;
    desk.frame = QRect(0, 0, 900, 600);
    return desk;
}

/// Writes one desk after the other until it is killed.
int runWriter()
{
    AppFolder::setPath(qEnvironmentVariable(folderVariable));
    DeskStore store;
    int number = 0;
    QTimer next;
    QObject::connect(&next, &QTimer::timeout, &store, [&] { store.put(deskOf(200, ++number)); });
    next.start(1);
    std::puts("ready");
    std::fflush(stdout);
    return QCoreApplication::exec();
}
}

class tst_LastDesk : public QObject {
    Q_OBJECT

private slots:
    void init() { m_folder = std::make_unique<TempAppFolder>(); }
    void cleanup() { m_folder.reset(); }

    void whatIsPutIsAProfileWithWindows();
    void markIsThereWhileTheProgramRuns();
    void sameDeskIsNotWrittenAgain();
    void lastOfManyIsInTheFile();
    void whatCannotBeWrittenIsWrittenLater();
    void killedAtAnyMomentTheFileIsWhole();
    void keptOnesHaveTheirDateAndAreFive();
    void clockSetBackTakesNothingAway();
    void filesTheUserNamedStay();
    void sameSecondTakesNothingAway();
    void damagedFileIsNoDesk_data();
    void damagedFileIsNoDesk();
    void pagesThatNeverCameBackAreKnown();

private:
    QStringList kept() const
    {
        return QDir(m_folder->file(u"Profiles"_s)).entryList({u"Last desk (*"_s}, QDir::Files);
    }
    bool hasMark() const { return m_folder->exists(u"AppData/Running"_s); }
    QByteArray file() const { return m_folder->read(u"Profiles/Last desk.orp"_s); }

    std::unique_ptr<TempAppFolder> m_folder;
};

void tst_LastDesk::whatIsPutIsAProfileWithWindows()
{
    DeskStore store;
    store.put(deskOf(3));
    QTRY_COMPARE(file(), DeskFile::text(deskOf(3)));
    const LastDeskFile::Left left = LastDeskFile::read();
    QCOMPARE(left.desk, deskOf(3));
    QCOMPARE(left.bytes, file());
}

void tst_LastDesk::markIsThereWhileTheProgramRuns()
{
    QVERIFY(!LastDeskFile::read().isCut);
    {
        DeskStore store;
        store.put(deskOf(1));
        store.flush();
        QVERIFY(hasMark());
    }
    QVERIFY2(LastDeskFile::read().isCut, "nobody said that it is the end");
    QVERIFY(LastDeskFile::beginRun());
    LastDeskFile::endRun();
    QVERIFY(!hasMark());
    QVERIFY(!LastDeskFile::read().isCut);
}

void tst_LastDesk::sameDeskIsNotWrittenAgain()
{
    DeskStore store;
    store.put(deskOf(2));
    store.flush();
    QVERIFY(m_folder->write(u"Profiles/Last desk.orp"_s, "seen"));
    store.put(deskOf(2));
    store.flush();
    QCOMPARE(file(), QByteArray("seen"));
    store.put(deskOf(1));
    store.flush();
    QCOMPARE(file(), DeskFile::text(deskOf(1)));
}

void tst_LastDesk::lastOfManyIsInTheFile()
{
    DeskStore store;
    for (int i = 0; i < 500; ++i)
        store.put(deskOf(50, i));
    QTRY_COMPARE(file(), DeskFile::text(deskOf(50, 499)));
}

void tst_LastDesk::whatCannotBeWrittenIsWrittenLater()
{
    DeskStore store;
    QVERIFY(QDir().rmdir(m_folder->file(u"Profiles"_s)));
    QVERIFY(m_folder->write(u"Profiles"_s, "in the way"));
    store.put(deskOf(2));
    store.flush();
    QVERIFY(QFile::remove(m_folder->file(u"Profiles"_s)));
    store.flush();
    QCOMPARE(file(), DeskFile::text(deskOf(2)));
}

void tst_LastDesk::killedAtAnyMomentTheFileIsWhole()
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(folderVariable), m_folder->path());
    for (int i = 0; i < 40; ++i) {
        QProcess writer;
        writer.setProcessEnvironment(environment);
        writer.start(QCoreApplication::applicationFilePath(), {u"--write"_s});
        QVERIFY(writer.waitForReadyRead());
        QTRY_VERIFY(hasMark() && !file().isEmpty());
        QElapsedTimer moment;
        moment.start();
        const int ms = QRandomGenerator::global()->bounded(60);
        QTRY_VERIFY(moment.elapsed() >= ms);
        writer.kill();
        QVERIFY(writer.waitForFinished());
        const LastDeskFile::Left left = LastDeskFile::read();
        QVERIFY(left.isCut);
        QCOMPARE(left.desk.windows.size(), 200);
        QCOMPARE(left.desk, deskOf(200, left.desk.windows.last().title.toInt()));
        QCOMPARE(left.bytes, DeskFile::text(left.desk));
    }
}

void tst_LastDesk::keptOnesHaveTheirDateAndAreFive()
{
    for (int day = 1; day <= 8; ++day) {
        LastDeskFile::Left left;
        left.bytes = DeskFile::text(deskOf(day));
        left.time = QDateTime(QDate(2026, 3, day), QTime(4, 5, 6));
        QVERIFY(LastDeskFile::keep(left));
    }
    QCOMPARE(kept().size(), 5);
    QCOMPARE(kept().first(), u"Last desk (2026-03-04 04.05.06).orp"_s);
    QCOMPARE(m_folder->read(u"Profiles/Last desk (2026-03-08 04.05.06).orp"_s),
             DeskFile::text(deskOf(8)));
}

void tst_LastDesk::clockSetBackTakesNothingAway()
{
    for (const int year : {2031, 2032, 2033, 2034, 2035, 1970}) {
        LastDeskFile::Left left;
        left.bytes = QByteArray::number(year);
        left.time = QDateTime(QDate(year, 3, 1), QTime(4, 5, 6));
        QVERIFY(LastDeskFile::keep(left));
    }
    QCOMPARE(kept().size(), 5);
    QCOMPARE(m_folder->read(u"Profiles/Last desk (1970-03-01 04.05.06).orp"_s), QByteArray("1970"));
    QVERIFY(!m_folder->exists(u"Profiles/Last desk (2031-03-01 04.05.06).orp"_s));
}

void tst_LastDesk::filesTheUserNamedStay()
{
    for (int i = 0; i < 7; ++i)
        QVERIFY(m_folder->write(u"Profiles/Last desk (of day %1).orp"_s.arg(i), "mine"));
    LastDeskFile::Left left;
    left.bytes = "x";
    left.time = QDateTime::currentDateTime();
    QVERIFY(LastDeskFile::keep(left));
    QCOMPARE(kept().size(), 8);
}

void tst_LastDesk::sameSecondTakesNothingAway()
{
    LastDeskFile::Left left;
    left.time = QDateTime::currentDateTime();
    left.bytes = "one";
    QVERIFY(LastDeskFile::keep(left));
    left.bytes = "two";
    QVERIFY(LastDeskFile::keep(left));
    QCOMPARE(kept().size(), 2);
}

void tst_LastDesk::damagedFileIsNoDesk_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("nothing") << QByteArray("");
    QTest::newRow("noise") << QByteArray(10'000, '\xff');
    QTest::newRow("no address") << QByteArray(
        "[Profile_URLS]\r\n[URL_Count]\r\nCount=99999999\r\n");
    QTest::newRow("no profile") << QByteArray("<html>");
}

void tst_LastDesk::damagedFileIsNoDesk()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(m_folder->write(u"Profiles/Last desk.orp"_s, bytes));
    QVERIFY(LastDeskFile::read().desk.windows.isEmpty());
}

void tst_LastDesk::pagesThatNeverCameBackAreKnown()
{
    QVERIFY(WakingPages::left().isEmpty());
    const QString strange = u"http://one.test/../%2f?ä\n"_s;
    WakingPages::begin(strange);
    WakingPages::begin(u"http://two.test/"_s);
    WakingPages::begin(u"http://two.test/"_s);
    WakingPages::end(u"http://two.test/"_s);
    WakingPages::end(u"http://never.test/"_s);
    QCOMPARE(WakingPages::left(), QStringList{strange});
    QVERIFY(m_folder->write(u"AppData/Waking/cut"_s, {}));
    WakingPages::forgetAll();
    QVERIFY(WakingPages::left().isEmpty());
    QVERIFY(!m_folder->exists(u"AppData/Waking"_s));
}

int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    if (argc > 1 && qstrcmp(argv[1], "--write") == 0)
        return runWriter();
    tst_LastDesk test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_lastdesk.moc"
