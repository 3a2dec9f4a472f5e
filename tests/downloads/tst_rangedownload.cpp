#include "DownloadList.h"
#include "DownloadStage.h"
#include "FileServer.h"
#include "RangeDownload.h"
#include "RangeProbe.h"
#include "SmallDisk.h"
#include "TempAppFolder.h"
#include "TestServer.h"
#include "Unlogged.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using State = Download::State;
using Problem = Download::Problem;

namespace {
QByteArray randomBytes(qsizetype size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    QRandomGenerator generator(7);
    for (char &byte : bytes)
        byte = char(generator.generate());
    return bytes;
}
constexpr qsizetype whole = 3'000'000;
constexpr qsizetype begun = 1'000'000;
/// Milliseconds.
constexpr int shortWhile = 1000;

QNetworkCookie cookieOf(const char *name, const QString &domain, bool secure = false)
{
    QNetworkCookie result(name, "value");
    result.setDomain(domain);
    result.setPath(u"/"_s);
    result.setSecure(secure);
    return result;
}

/// One that takes a while.
Download longOne(const QUrl &address)
{
    Download download;
    download.id = DownloadList::newId();
    download.address = address;
    download.size = whole;
    download.began = QDateTime::currentDateTimeUtc().addSecs(-60);
    return download;
}
}

/// Going on with what an earlier program left, from a real server.
class tst_rangedownload : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void goesOnWhereItEnded();
    void goesOnFromWhatTheEngineLeft();
    void anotherFileComesAnew_data();
    void anotherFileComesAnew();
    void changesBetweenTwoRanges();
    void liesInTheRange_data();
    void liesInTheRange();
    void nothingWasMissing();
    void pagesGetWhatAsksForThem_data();
    void pagesGetWhatAsksForThem();
    void refusedIsKept_data();
    void refusedIsKept();
    void sentOn();
    void sentOnWithoutCookies();
    void sentRoundAndRound();
    void notSentOnToLessSafe();
    void notCertified();
    void nobodyListens();
    void cutIsKept();
    void lengthIsNotSaid();
    void moreThanAnnounced();
    void slowAndPaused();
    void hungUpInAPause();
    void goneWithoutAWord_data();
    void goneWithoutAWord();
    void silentInAPause();
    void cancelled();
    void left();
    void leftTwice();
    void fullDisk();
    void partIsGone();
    void speaksAsThePagesDo();
    void manyAtOnce();
    void probeLearnsTheName();
    void probeIsNotBelieved_data();
    void probeIsNotBelieved();
    void probeAsksOnce();
    void probeTellsNoOtherSite_data();
    void probeTellsNoOtherSite();
    void probeIsNotSentOn();

private:
    QString folder() const { return m_folder->file(u"Profiles"_s); }
    /// An entry with so many of the server's bytes in a stage.
    QString add(qint64 received = begun, const QString &place = {})
    {
        auto stage = std::make_unique<DownloadStage>(place.isEmpty() ? folder() : place);
        QFile part(stage->file());
        if (part.open(QIODevice::WriteOnly))
            part.write(m_server->bytes.first(received));
        Download download;
        download.id = DownloadList::newId();
        download.name = u"file.bin"_s;
        download.folder = place.isEmpty() ? folder() : place;
        download.address = m_server->url();
        download.size = m_server->bytes.size();
        download.received = received;
        download.etag = m_server->etag;
        download.lastModified = m_server->lastModified;
        download.state = State::Unfinished;
        download.stage = stage->path();
        downloadList().add(download, nullptr);
        m_stage = std::move(stage);
        return download.id;
    }
    void retry(const QString &id)
    {
        RangeDownload::begin(
            id, std::move(m_stage), [this] { return m_manners; },
            [this](const QString &each) { m_anew.append(each); });
    }
    void retryLater(const QString &id)
    {
        m_stage = DownloadStage::take(entry(id).stage);
        QVERIFY(m_stage);
        retry(id);
    }
    static Download entry(const QString &id)
    {
        const Download *found = downloadList().find(id);
        return found ? *found : Download();
    }
    QByteArray read(const QString &name) const { return m_folder->read(u"Profiles/"_s + name); }
    QStringList files() const
    {
        return QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    void isDone(const QString &id, Problem problem = Problem::None)
    {
        QTRY_VERIFY_WITH_TIMEOUT(entry(id).isOver(), 20'000);
        QCOMPARE(entry(id).state, State::Done);
        QCOMPARE(entry(id).problem, problem);
        QCOMPARE(entry(id).size, m_server->bytes.size());
        QVERIFY(entry(id).stage.isEmpty());
        QTRY_COMPARE(files(), QStringList(u"file.bin"_s));
        QVERIFY(read(u"file.bin"_s) == m_server->bytes);
    }
    /// For the next time.
    void isKept(const QString &id, Problem problem, qint64 received)
    {
        QTRY_VERIFY_WITH_TIMEOUT(entry(id).isOver(), 20'000);
        QCOMPARE(entry(id).state, State::Failed);
        QCOMPARE(entry(id).problem, problem);
        QVERIFY(!entry(id).detail.isEmpty());
        QCOMPARE(entry(id).received, received);
        QCOMPARE(QFileInfo(entry(id).stage + "/part"_L1).size(), received);
        QVERIFY(!QFileInfo::exists(folder() + "/file.bin"_L1));
    }

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<FileServer> m_server;
    std::unique_ptr<DownloadStage> m_stage;
    WebManners m_manners;
    QStringList m_anew;
    const Unlogged m_unlogged;
};

void tst_rangedownload::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    m_server = std::make_unique<FileServer>();
    m_server->bytes = randomBytes(whole);
    m_manners = {};
    m_anew.clear();
}

void tst_rangedownload::cleanup()
{
    m_stage.reset();
    QStringList ids;
    for (const Download &download : downloadList().all())
        ids.append(download.id);
    downloadList().remove(ids);
    m_server.reset();
    m_folder.reset();
}

void tst_rangedownload::goesOnWhereItEnded()
{
    const QString id = add();
    retry(id);
    QCOMPARE(entry(id).state, State::Running);
    isDone(id);
    QCOMPARE(m_server->requests().size(), 1);
    QCOMPARE(m_server->lastRange(), "bytes=1000000-"_ba);
    QCOMPARE(m_server->requests().first().headers.value("if-range"), "\"one\""_ba);
    QCOMPARE(m_server->requests().first().headers.value("accept-encoding"), "identity"_ba);
}

void tst_rangedownload::goesOnFromWhatTheEngineLeft()
{
    const QString id = add();
    QVERIFY(QFile::rename(m_stage->file(), m_stage->file() + ".download"_L1));
    m_server->etag.clear();
    downloadList().change(id, [](Download &download) { download.etag.clear(); });
    retry(id);
    isDone(id);
    QCOMPARE(m_server->requests().first().headers.value("if-range"), m_server->lastModified);
}

void tst_rangedownload::anotherFileComesAnew_data()
{
    QTest::addColumn<QByteArray>("etag");
    QTest::addColumn<QByteArray>("lastModified");
    QTest::addColumn<qint64>("size");
    QTest::addColumn<bool>("knowsRanges");
    QTest::addColumn<bool>("ignoresCondition");
    QTest::addColumn<Problem>("problem");
    const QByteArray monday = "Mon, 01 Jan 2024 00:00:00 GMT";
    const QByteArray one = "\"one\"";
    const qint64 same = whole;
    QTest::newRow("no ranges") << one << monday << same << false << false << Problem::NoRanges;
    QTest::newRow("another name") << "\"two\""_ba
                                  << "Tue, 02 Jan 2024 00:00:00 GMT"_ba << same << true << false
                                  << Problem::FileChanged;
    QTest::newRow("another name, condition ignored")
        << "\"two\""_ba << monday << same << true << true << Problem::FileChanged;
    QTest::newRow("another date, condition ignored")
        << one << "Tue, 02 Jan 2024 00:00:00 GMT"_ba << same << true << true
        << Problem::FileChanged;
    QTest::newRow("longer") << one << monday << same + 5 << true << false << Problem::FileChanged;
    QTest::newRow("shorter than what is there")
        << one << monday << qint64(begun / 2) << true << false << Problem::FileChanged;
    QTest::newRow("as long as what is there")
        << one << monday << qint64(begun) << true << false << Problem::FileChanged;
    QTest::newRow("no names any more")
        << QByteArray() << QByteArray() << same << true << false << Problem::NoRanges;
}

void tst_rangedownload::anotherFileComesAnew()
{
    QFETCH(QByteArray, etag);
    QFETCH(QByteArray, lastModified);
    QFETCH(qint64, size);
    QFETCH(bool, knowsRanges);
    QFETCH(bool, ignoresCondition);
    QFETCH(Problem, problem);
    const QString id = add();
    m_server->bytes = randomBytes(size + 1).sliced(1);
    m_server->etag = etag;
    m_server->lastModified = lastModified;
    m_server->knowsRanges = knowsRanges;
    m_server->ignoresCondition = ignoresCondition;
    retry(id);
    isDone(id, problem);
    QCOMPARE(entry(id).etag, etag);
    QCOMPARE(entry(id).lastModified, lastModified);
}

void tst_rangedownload::changesBetweenTwoRanges()
{
    m_server->cutAfter = 500'000;
    const QString id = add();
    retry(id);
    isKept(id, Problem::ConnectionLost, begun + 500'000);
    m_server->bytes = randomBytes(whole + 9).sliced(9);
    m_server->etag = "\"two\"";
    retryLater(id);
    // Cut once more: what is there is the new one's, and named so.
    isKept(id, Problem::ConnectionLost, 500'000);
    QCOMPARE(entry(id).etag, "\"two\""_ba);
    m_server->cutAfter = -1;
    m_server->forget();
    retryLater(id);
    isDone(id);
    QCOMPARE(m_server->lastRange(), "bytes=500000-"_ba);
}

void tst_rangedownload::liesInTheRange_data()
{
    QTest::addColumn<QByteArray>("range");
    QTest::newRow("elsewhere") << "bytes 5-2000004/3000000"_ba;
    QTest::newRow("nowhere") << "bytes 1000000-0/3000000"_ba;
    QTest::newRow("garbage") << "who knows"_ba;
    QTest::newRow("another whole") << "bytes 1000000-2999999/9000000"_ba;
}

void tst_rangedownload::liesInTheRange()
{
    QFETCH(QByteArray, range);
    m_server->contentRange = range;
    const QString id = add();
    retry(id);
    QTRY_VERIFY_WITH_TIMEOUT(entry(id).isOver(), 20'000);
    QCOMPARE(entry(id).state, State::Done);
    QVERIFY(entry(id).problem != Problem::None);
    QVERIFY(read(u"file.bin"_s) == m_server->bytes);
    QCOMPARE(m_server->requests().size(), 2);
    QVERIFY(m_server->lastRange().isEmpty());
}

void tst_rangedownload::nothingWasMissing()
{
    const QString id = add(whole);
    downloadList().change(id, [](Download &download) { download.size = -1; });
    retry(id);
    isDone(id);
    QCOMPARE(m_server->lastRange(), "bytes=3000000-"_ba);
}

void tst_rangedownload::pagesGetWhatAsksForThem_data()
{
    QTest::addColumn<int>("status");
    for (const int status : {401, 403, 407, 400, 412})
        QTest::addRow("%d", status) << status;
}

void tst_rangedownload::pagesGetWhatAsksForThem()
{
    QFETCH(int, status);
    m_server->status = status;
    const QString id = add();
    retry(id);
    QTRY_COMPARE(m_anew, QStringList(id));
    QVERIFY(entry(id).isOver());
    QTRY_COMPARE(files(), QStringList());
}

void tst_rangedownload::refusedIsKept_data()
{
    QTest::addColumn<int>("status");
    for (const int status : {404, 410, 429, 500, 503})
        QTest::addRow("%d", status) << status;
}

void tst_rangedownload::refusedIsKept()
{
    QFETCH(int, status);
    m_server->status = status;
    const QString id = add();
    retry(id);
    isKept(id, Problem::ServerRefused, begun);
    QVERIFY(entry(id).detail.startsWith(QString::number(status)));
    m_server->status = 0;
    retryLater(id);
    isDone(id);
}

void tst_rangedownload::sentOn()
{
    FileServer first;
    first.status = 302;
    first.headers.append(
        qMakePair(QByteArray("Location"), QByteArray(m_server->url().toEncoded())));
    const QString id = add();
    downloadList().change(id, [&](Download &download) { download.address = first.url(); });
    retry(id);
    isDone(id);
    QCOMPARE(m_server->lastRange(), "bytes=1000000-"_ba);
}

/// What another host knows of the user is not told there because a server wants it.
void tst_rangedownload::sentOnWithoutCookies()
{
    FileServer first;
    first.status = 302;
    QUrl other = m_server->url();
    other.setHost(u"localhost"_s);
    first.headers.append(qMakePair(QByteArray("Location"), QByteArray(other.toEncoded())));
    m_manners.cookies = {cookieOf("mine", u"127.0.0.1"_s), cookieOf("others", u"localhost"_s)};
    const QString id = add();
    downloadList().change(id, [&](Download &download) { download.address = first.url(); });
    retry(id);
    isDone(id);
    QCOMPARE(first.requests().first().headers.value("cookie"), "mine=value"_ba);
    QVERIFY(!m_server->requests().first().headers.contains("cookie"));
}

void tst_rangedownload::sentRoundAndRound()
{
    m_server->status = 302;
    m_server->headers.append(qMakePair(QByteArray("Location"), QByteArray("/file.bin?again")));
    const QString id = add();
    retry(id);
    QTRY_COMPARE(m_anew, QStringList(id));
}

void tst_rangedownload::notSentOnToLessSafe()
{
    m_server->status = 302;
    m_server->headers.append(qMakePair(QByteArray("Location"), QByteArray("file:///etc/passwd")));
    const QString id = add();
    retry(id);
    QTRY_COMPARE(m_anew, QStringList(id));
}

/// The user may have accepted it, which pages know.
void tst_rangedownload::notCertified()
{
    TestServer server(TestServer::Kind::Https);
    QVERIFY(server.isListening());
    server.file("/file.bin", m_server->bytes, "application/octet-stream");
    const QString id = add();
    downloadList().change(
        id, [&](Download &download) { download.address = QUrl(server.url(u"/file.bin"_s)); });
    retry(id);
    QTRY_COMPARE(m_anew, QStringList(id));
    QCOMPARE(server.count("/file.bin"), 0);
}

void tst_rangedownload::nobodyListens()
{
    const QString id = add();
    m_server = std::make_unique<FileServer>();
    downloadList().change(id, [](Download &download) { download.address.setPort(1); });
    retry(id);
    isKept(id, Problem::ConnectionLost, begun);
}

void tst_rangedownload::cutIsKept()
{
    m_server->cutAfter = 700'001;
    const QString id = add();
    retry(id);
    isKept(id, Problem::ConnectionLost, begun + 700'001);
    // Free for another program.
    QVERIFY(DownloadStage::take(entry(id).stage) != nullptr);
    m_server->cutAfter = -1;
    QVERIFY(QFileInfo::exists(entry(id).stage) == false);
}

void tst_rangedownload::lengthIsNotSaid()
{
    // The end of the connection is the end of the file, or not.
    m_server->saysLength = false;
    m_server->cutAfter = 500;
    const QString id = add();
    retry(id);
    isKept(id, Problem::ConnectionLost, begun + 500);
    m_server->cutAfter = -1;
    retryLater(id);
    isDone(id);
}

void tst_rangedownload::moreThanAnnounced()
{
    m_server->saysLength = false;
    const QString id = add();
    m_server->contentRange = "bytes 1000000-1999999/2000000";
    downloadList().change(id, [](Download &download) { download.size = 2'000'000; });
    retry(id);
    QTRY_COMPARE(entry(id).state, State::Failed);
    QCOMPARE(entry(id).problem, Problem::WrongLength);
    QVERIFY(entry(id).stage.isEmpty());
    QTRY_COMPARE(files(), QStringList());
}

void tst_rangedownload::slowAndPaused()
{
    m_server->stopAfter = 300'000;
    const QString id = add();
    retry(id);
    QTRY_COMPARE(entry(id).received, begun + 300'000);
    QCOMPARE(entry(id).state, State::Running);
    downloadList().pause(id);
    QCOMPARE(entry(id).state, State::Paused);
    m_server->goOn();
    downloadList().resume(id);
    QCOMPARE(entry(id).state, State::Running);
    isDone(id);
    QCOMPARE(m_server->requests().size(), 1);
}

void tst_rangedownload::hungUpInAPause()
{
    m_server->stopAfter = 300'000;
    const QString id = add();
    retry(id);
    QTRY_COMPARE(entry(id).received, begun + 300'000);
    downloadList().pause(id);
    m_server->stopAfter = -1;
    m_server->cut();
    QTRY_COMPARE(entry(id).state, State::Paused);
    downloadList().resume(id);
    isDone(id);
    QCOMPARE(m_server->requests().size(), 2);
    QCOMPARE(m_server->lastRange(), "bytes=1300000-"_ba);
}

void tst_rangedownload::goneWithoutAWord_data()
{
    QTest::addColumn<qint64>("sent");
    QTest::newRow("before the answer") << qint64(-1);
    QTest::newRow("after the headers") << qint64(0);
    QTest::newRow("in the middle") << qint64(300'000);
}

/// Nobody closes the connection.
void tst_rangedownload::goneWithoutAWord()
{
    QFETCH(qint64, sent);
    m_manners.longestSilence = shortWhile;
    m_server->isSilent = sent < 0;
    m_server->stopAfter = sent;
    const QString id = add();
    retry(id);
    isKept(id, Problem::ConnectionLost, begun + std::max(sent, qint64(0)));
    m_manners.longestSilence = WebManners().longestSilence;
    m_server->isSilent = false;
    m_server->goOn();
    retryLater(id);
    isDone(id);
}

/// The user's pause is not the server's silence.
void tst_rangedownload::silentInAPause()
{
    m_manners.longestSilence = shortWhile;
    m_server->stopAfter = 300'000;
    const QString id = add();
    retry(id);
    downloadList().pause(id);
    // One that is not paused is given up meanwhile.
    const QString other = add();
    retry(other);
    QTRY_COMPARE(entry(other).state, State::Failed);
    QCOMPARE(entry(other).problem, Problem::ConnectionLost);
    QCOMPARE(entry(id).state, State::Paused);
    DownloadStage::drop(DownloadStage::take(entry(other).stage));
    m_server->goOn();
    downloadList().resume(id);
    isDone(id);
    QCOMPARE(m_server->requests().size(), 2);
}

void tst_rangedownload::cancelled()
{
    m_server->stopAfter = 300'000;
    const QString id = add();
    retry(id);
    QTRY_VERIFY(entry(id).received > begun);
    downloadList().cancel(id);
    QCOMPARE(entry(id).state, State::Cancelled);
    QVERIFY(entry(id).stage.isEmpty());
    QTRY_COMPARE(files(), QStringList());
    m_server->goOn();
}

void tst_rangedownload::left()
{
    m_server->stopAfter = 300'000;
    const QString id = add();
    retry(id);
    QTRY_COMPARE(entry(id).received, begun + 300'000);
    downloadList().leaveAll();
    // At once: the program may be gone with the next turn.
    QCOMPARE(entry(id).state, State::Unfinished);
    QCOMPARE(entry(id).received, begun + 300'000);
    QCOMPARE(QFileInfo(entry(id).stage + "/part"_L1).size(), begun + 300'000);
    m_server->goOn();
    m_server->forget();
    retryLater(id);
    isDone(id);
    QCOMPARE(m_server->lastRange(), "bytes=1300000-"_ba);
}

void tst_rangedownload::leftTwice()
{
    m_server->stopAfter = 300'000;
    const QString id = add();
    retry(id);
    downloadList().leaveAll();
    downloadList().leaveAll();
    QCOMPARE(entry(id).state, State::Unfinished);
    QVERIFY(!entry(id).stage.isEmpty());
}

void tst_rangedownload::fullDisk()
{
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("needs the rights of the superuser");
    const QString id = add(1000, disk.path());
    retry(id);
    QTRY_VERIFY_WITH_TIMEOUT(entry(id).isOver(), 20'000);
    QCOMPARE(entry(id).state, State::Failed);
    QCOMPARE(entry(id).problem, Problem::NoRoom);
    QVERIFY(!entry(id).detail.isEmpty());
    QVERIFY(entry(id).received > 1000);
    QFile part(entry(id).stage + "/part"_L1);
    QVERIFY(part.open(QIODevice::ReadOnly));
    QVERIFY(m_server->bytes.startsWith(part.readAll()));
    QVERIFY(!QFileInfo::exists(disk.path() + "/file.bin"_L1));
}

void tst_rangedownload::partIsGone()
{
    const QString id = add();
    QVERIFY(QDir(m_stage->path()).removeRecursively());
    retry(id);
    QTRY_COMPARE(entry(id).state, State::Failed);
    QVERIFY(files().isEmpty());
}

void tst_rangedownload::speaksAsThePagesDo()
{
    m_manners.userAgent = "Ours/1";
    m_manners.languages = "de,en;q=0.9";
    m_manners.cookies = {cookieOf("mine", u"127.0.0.1"_s), cookieOf("safe", u"127.0.0.1"_s, true),
                         cookieOf("others", u"other.example"_s)};
    const QString id = add();
    retry(id);
    isDone(id);
    const auto headers = m_server->requests().first().headers;
    QCOMPARE(headers.value("user-agent"), "Ours/1"_ba);
    QCOMPARE(headers.value("accept-language"), "de,en;q=0.9"_ba);
    QCOMPARE(headers.value("cookie"), "mine=value"_ba);
}

void tst_rangedownload::manyAtOnce()
{
    constexpr int count = 50;
    m_server->bytes = randomBytes(50'000);
    QStringList ids;
    for (int i = 0; i < count; ++i) {
        ids.append(add(10'000));
        retry(ids.last());
    }
    for (const QString &id : std::as_const(ids)) {
        QTRY_VERIFY_WITH_TIMEOUT(entry(id).isOver(), 30'000);
        QCOMPARE(entry(id).state, State::Done);
        QVERIFY(read(entry(id).name) == m_server->bytes);
    }
    QTRY_COMPARE(files().size(), count);
}

void tst_rangedownload::probeLearnsTheName()
{
    const RangeProbe probe(downloadList(), [this] { return m_manners; });
    m_manners.userAgent = "Ours/1";
    Download download;
    download.id = DownloadList::newId();
    download.address = m_server->url();
    download.size = whole;
    download.began = QDateTime::currentDateTimeUtc();
    downloadList().add(download, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(entry(download.id).etag, "\"one\""_ba, 10'000);
    QCOMPARE(entry(download.id).lastModified, m_server->lastModified);
    QCOMPARE(m_server->probes(), 1);
}

void tst_rangedownload::probeIsNotBelieved_data()
{
    QTest::addColumn<qint64>("size");
    QTest::addColumn<QByteArray>("lastModified");
    QTest::addColumn<QByteArray>("date");
    QTest::addColumn<bool>("knowsRanges");
    QTest::addColumn<QByteArray>("coding");
    const QByteArray monday = "Mon, 01 Jan 2024 00:00:00 GMT";
    const QByteArray tuesday = "Tue, 02 Jan 2024 00:00:00 GMT";
    QTest::newRow("another length") << qint64(whole + 1) << monday << tuesday << true << ""_ba;
    QTest::newRow("no ranges") << qint64(whole) << monday << tuesday << false << ""_ba;
    QTest::newRow("coded") << qint64(whole) << monday << tuesday << true << "gzip"_ba;
    // By its own clock, since the download began.
    QTest::newRow("changed just now") << qint64(whole) << monday << monday << true << ""_ba;
}

void tst_rangedownload::probeIsNotBelieved()
{
    QFETCH(qint64, size);
    QFETCH(QByteArray, coding);
    QFETCH(bool, knowsRanges);
    QFETCH(QByteArray, lastModified);
    QFETCH(QByteArray, date);
    m_server->lastModified = lastModified;
    m_server->date = date;
    m_server->knowsRanges = knowsRanges;
    m_server->headers.append(qMakePair(QByteArray("Content-Encoding"), QByteArray(coding)));
    const RangeProbe probe(downloadList(), [this] { return m_manners; });
    Download download;
    download.id = DownloadList::newId();
    download.address = m_server->url();
    download.size = size;
    download.began = QDateTime::currentDateTimeUtc().addSecs(-60);
    downloadList().add(download, nullptr);
    // Another that is believed is asked later.
    QTRY_COMPARE_WITH_TIMEOUT(m_server->probes(), 1, 10'000);
    m_server->lastModified = "Mon, 01 Jan 2024 00:00:00 GMT";
    m_server->date = "Tue, 02 Jan 2024 00:00:00 GMT";
    m_server->knowsRanges = true;
    m_server->headers.clear();
    Download second = download;
    second.id = DownloadList::newId();
    second.size = whole;
    downloadList().add(second, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(entry(second.id).etag, "\"one\""_ba, 10'000);
    QVERIFY(entry(download.id).etag.isEmpty());
}

void tst_rangedownload::probeAsksOnce()
{
    m_server->status = 404;
    const RangeProbe probe(downloadList(), [this] { return m_manners; });
    const auto add = [](const QUrl &address, qint64 size, bool isRepeatable = true) {
        Download download;
        download.id = DownloadList::newId();
        download.address = address;
        download.size = size;
        download.isRepeatable = isRepeatable;
        download.began = QDateTime::currentDateTimeUtc().addSecs(-60);
        downloadList().add(download, nullptr);
        return download.id;
    };
    const QString first = add(m_server->url(), whole);
    add(m_server->url(), 100);
    add(m_server->url(), -1);
    add(m_server->url(), whole, false);
    add(QUrl(u"data:text/plain"_s), whole);
    QTRY_COMPARE_WITH_TIMEOUT(m_server->probes(), 1, 10'000);
    downloadList().change(first, [](Download &download) { download.received = 5; });
    add(m_server->url(), whole);
    QTRY_COMPARE_WITH_TIMEOUT(m_server->probes(), 2, 10'000);
    QVERIFY(entry(first).etag.isEmpty());
}

void tst_rangedownload::probeTellsNoOtherSite_data()
{
    QTest::addColumn<QUrl>("page");
    QTest::addColumn<QByteArray>("cookies");
    QTest::newRow("its own page") << QUrl(u"http://127.0.0.1:1/page"_s) << "mine=value"_ba;
    QTest::newRow("another site's") << QUrl(u"http://other.example/page"_s) << ""_ba;
    QTest::newRow("none that is known") << QUrl() << ""_ba;
}

/// A page has a site asked by what it begins, and nobody has clicked.
void tst_rangedownload::probeTellsNoOtherSite()
{
    QFETCH(QUrl, page);
    m_manners.cookies = {cookieOf("mine", u"127.0.0.1"_s)};
    const RangeProbe probe(downloadList(), [this] { return m_manners; });
    Download download = longOne(m_server->url());
    download.page = page;
    downloadList().add(download, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(entry(download.id).etag, "\"one\""_ba, 10'000);
    QTEST(m_server->lastProbe().headers.value("cookie"), "cookies");
}

void tst_rangedownload::probeIsNotSentOn()
{
    FileServer first;
    first.status = 302;
    first.headers.append(
        qMakePair(QByteArray("Location"), QByteArray(m_server->url().toEncoded())));
    const RangeProbe probe(downloadList(), [this] { return m_manners; });
    const Download sentOn = longOne(first.url());
    downloadList().add(sentOn, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(first.probes(), 1, 10'000);
    // Another that is asked for later.
    const Download second = longOne(m_server->url());
    downloadList().add(second, nullptr);
    QTRY_COMPARE_WITH_TIMEOUT(entry(second.id).etag, "\"one\""_ba, 10'000);
    QCOMPARE(m_server->probes(), 1);
    QVERIFY(entry(sentOn.id).etag.isEmpty());
}

QTEST_GUILESS_MAIN(tst_rangedownload)
#include "tst_rangedownload.moc"
