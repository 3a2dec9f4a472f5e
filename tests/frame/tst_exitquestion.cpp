#include <QtTest>

#include "Answer.h"
#include "DownloadList.h"
#include "FakeWebBrowser.h"
#include "MainWindow.h"
#include "TempAppFolder.h"
#include "Transfer.h"

using namespace Qt::StringLiterals;
using State = Download::State;

namespace {
/// Keeps what came so far, as all that brings a download does at the end.
class LeftTransfer : public Transfer {
public:
    explicit LeftTransfer(const QString &id)
        : m_id(id)
    {
    }
    void pause() override { }
    void resume() override { }
    void cancel() override { }
    void leave() override
    {
        ++m_times;
        downloadList().change(m_id, [](Download &each) { each.state = State::Unfinished; });
    }
    int times() const { return m_times; }

private:
    QString m_id;
    int m_times = 0;
};
}

/// Whether the program is left, with downloads under way.
class tst_ExitQuestion : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void asksOnceNamingWhatIsUnderWay_data();
    void asksOnceNamingWhatIsUnderWay();
    void noKeepsThemRunning();
    void yesLeavesThem_data();
    void yesLeavesThem();
    void asksNothingWithoutThem();
    void asksAsEverWithoutThem();
    void anyLanguage();
    void endOfTheSessionAsksNothing();

private:
    void start(int askOnExit)
    {
        m_folder->writeSettings("[Options]\r\nShow-Splash=0\r\n[Settings]\r\nAskOnExit="
                                + QByteArray::number(askOnExit) + "\r\n");
        m_frame = std::make_unique<MainWindow>();
        m_frame->load();
        m_frame->translate();
    }
    static QString add(State state, qint64 received, qint64 size, Transfer *transfer = nullptr)
    {
        Download download;
        download.id = DownloadList::newId();
        download.state = state;
        download.received = received;
        download.size = size;
        downloadList().add(download, transfer);
        return download.id;
    }

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<MainWindow> m_frame;
};

void tst_ExitQuestion::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    m_engine = std::make_unique<FakeEngine>();
    QLocale::setDefault(QLocale::c());
}

void tst_ExitQuestion::cleanup()
{
    QStringList ids;
    for (const Download &download : downloadList().all())
        ids.append(download.id);
    downloadList().remove(ids);
    m_frame.reset();
    m_engine.reset();
    m_folder.reset();
}

void tst_ExitQuestion::asksOnceNamingWhatIsUnderWay_data()
{
    QTest::addColumn<int>("askOnExit");
    QTest::addColumn<qint64>("secondSize");
    QTest::addColumn<bool>("firstIsKnown");
    QTest::addColumn<QString>("text");
    for (const int ask : {0, 1}) {
        QTest::addRow("known, setting %d", ask)
            << ask << qint64(3072) << true
            << u"Unfinished downloads: 2, with 2.5 kB still to come."_s;
        QTest::addRow("one unknown, setting %d", ask)
            << ask << qint64(-1) << true
            << u"Unfinished downloads: 2, with at least 512 bytes still to come."_s;
        QTest::addRow("unknown, setting %d", ask)
            << ask << qint64(-1) << false
            << u"Unfinished downloads: 2. How much is still to come is not known."_s;
    }
}

void tst_ExitQuestion::asksOnceNamingWhatIsUnderWay()
{
    QFETCH(int, askOnExit);
    QFETCH(qint64, secondSize);
    QFETCH(bool, firstIsKnown);
    QFETCH(QString, text);
    start(askOnExit);
    add(State::Paused, 512, firstIsKnown ? 1024 : -1);
    add(State::Running, 1024, secondSize);
    add(State::Done, 5000, 5000);
    Answer no(QMessageBox::No);
    QVERIFY(!m_frame->close());
    QCOMPARE(no.count(), 1);
    QCOMPARE(no.text(),
             text
                 + u"\nWhat can be continued later is kept.\n\n"
                   u"Are you sure you wish to exit Orvane?"_s);
}

void tst_ExitQuestion::noKeepsThemRunning()
{
    start(0);
    const QString id = add(State::Running, 0, 10);
    LeftTransfer transfer(id);
    downloadList().setTransfer(id, &transfer);
    Answer no(QMessageBox::No);
    QVERIFY(!m_frame->close());
    QCOMPARE(transfer.times(), 0);
    QVERIFY(m_frame->isVisible());
}

void tst_ExitQuestion::yesLeavesThem_data()
{
    QTest::addColumn<State>("state");
    QTest::newRow("running") << State::Running;
    QTest::newRow("held") << State::Held;
    QTest::newRow("finishing") << State::Finishing;
}

void tst_ExitQuestion::yesLeavesThem()
{
    QFETCH(State, state);
    start(1);
    const QString id = add(state, 0, 10);
    LeftTransfer transfer(id);
    downloadList().setTransfer(id, &transfer);
    Answer yes(QMessageBox::Yes);
    QVERIFY(m_frame->close());
    QCOMPARE(yes.count(), 1);
    QCOMPARE(transfer.times(), 1);
    QCOMPARE(downloadList().find(id)->state, State::Unfinished);
    // The system may tell it to end as it does.
    m_frame->leave();
    QCOMPARE(transfer.times(), 1);
}

void tst_ExitQuestion::asksNothingWithoutThem()
{
    start(0);
    add(State::Done, 10, 10);
    add(State::Failed, 5, 10);
    Answer no(QMessageBox::No);
    QVERIFY(m_frame->close());
    QCOMPARE(no.count(), 0);
}

void tst_ExitQuestion::asksAsEverWithoutThem()
{
    start(1);
    add(State::Unfinished, 5, 10);
    Answer no(QMessageBox::No);
    QVERIFY(!m_frame->close());
    QCOMPARE(no.text(), u"Are you sure you wish to exit Orvane?"_s);
}

void tst_ExitQuestion::anyLanguage()
{
    m_folder->writeLanguage(u"English"_s,
                            "[frmMain]\r\nalertExit=Raus aus\r\nstrExitDownloads=Noch %1, %2\r\n"
                            "strExitKept=Bleibt.\r\n");
    start(1);
    add(State::Running, 0, 1024);
    Answer no(QMessageBox::No);
    QVERIFY(!m_frame->close());
    QCOMPARE(no.text(), u"Noch 1, 1.0 kB\nBleibt.\n\nRaus aus Orvane?"_s);
}

void tst_ExitQuestion::endOfTheSessionAsksNothing()
{
    start(1);
    const QString id = add(State::Running, 0, 10);
    LeftTransfer transfer(id);
    downloadList().setTransfer(id, &transfer);
    Answer no(QMessageBox::No);
    m_frame->leave();
    QCOMPARE(no.count(), 0);
    QCOMPARE(transfer.times(), 1);
}

QTEST_MAIN(tst_ExitQuestion)
#include "tst_exitquestion.moc"
