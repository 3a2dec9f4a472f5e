// Downloads as the list has them while the engine brings them, from servers that are slow, cut, lie
// or are gone.
#include "ControlScene.h"
#include "DownloadList.h"
#include "DownloadStage.h"
#include "Downloads.h"
#include "EngineProfile.h"
#include "EngineTest.h"
#include "SaveJob.h"
#include "SlowServer.h"
#include "SmallDisk.h"
#include "StageFolder.h"
#include "Transfer.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTcpServer>
#include <QTcpSocket>
#include <QWebEngineProfile>

#include <sys/xattr.h>

using namespace Qt::StringLiterals;
using State = Download::State;
using Problem = Download::Problem;

class tst_enginedownloads : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void isToldFromBeginningToEnd();
    void hasNoNameBeforeItIsWhole();
    void pauseAndResume();
    void cancelLeavesNothing();
    void removedFromTheListIsCancelled();
    void windowClosedWhileItRuns();
    void windowClosedBeforeTheAnswer();
    void windowClosedWhileItsAddressIsSaved();
    void lengthThatIsTooShort();
    void lengthThatIsTooLong();
    void piecesThatEndEarly();
    void packedByTheServer();
    void cutConnectionIsGoneOnWith();
    void cutConnectionOfAFileThatCannotBeContinued();
    void leftWithTheProgram();
    void leftAfterItFailed();
    void madeByThePageIsNotLeft();
    void answerToAFormIsNotLeft();
    void fullDisk();
    void folderGoneMeanwhile();
    void stageOfAnotherProgram();
    void folderThatCannotBeWrittenTo();
    void neverToBeExecuted_data();
    void neverToBeExecuted();
    void marks();
    void pageKeptOutOfTheHistory();
    void begunAnew();
    void begunAnewFromAServerThatRefuses();
    void begunAnewOfWhatNoServerHas();
    void begunAnewAndCancelled();
    void twoOfOneAddressBegunAnew();
    void nameByTheType_data();
    void nameByTheType();

private:
    QString url(const QString &path) const { return m_scene->server.url(path); }
    static QString folder()
    {
        return QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    }
    static QString kept(const QString &name) { return folder() + u'/' + name; }
    static QStringList allKept()
    {
        return QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static Download latest() { return downloadList().all().value(0); }
    static Download entry(const QString &id)
    {
        const Download *found = downloadList().find(id);
        return found ? *found : Download();
    }
    static QByteArray mark(const QString &path, const char *name)
    {
        QByteArray value(4096, 0);
        const ssize_t size = ::getxattr(QFile::encodeName(path).constData(), name, value.data(),
                                        size_t(value.size()));
        return size < 0 ? QByteArray() : value.first(size);
    }
    /// The entry of the file that the window now asks for, which is under way.
    QString begin(const QString &address)
    {
        const int before = int(downloadList().all().size());
        m_scene->browser->navigate(address);
        [&] { QTRY_COMPARE(downloadList().all().size(), before + 1); }();
        return latest().id;
    }
    /// The entry of a file that is to come to that folder.
    QString begunAnewIn(const QString &folder)
    {
        const QString id = begin(m_slow->url());
        downloadList().cancel(id);
        downloadList().change(id, [&folder](Download &download) { download.folder = folder; });
        [&] { QTRY_COMPARE(m_slow->open(), 0); }();
        Downloads::beginAnew(id);
        return id;
    }
    void openPage()
    {
        m_scene->server.page("/a", "<title>Page A</title><body>a");
        m_scene->open(url(u"/a"_s));
    }

    std::unique_ptr<ControlScene> m_scene;
    std::unique_ptr<SlowServer> m_slow;
};

void tst_enginedownloads::init()
{
    m_scene = std::make_unique<ControlScene>();
    m_slow = std::make_unique<SlowServer>();
    QVERIFY(m_scene->server.isListening() && m_slow->isListening());
    m_scene->server.reply("/bytes.bin", {200, "bytes", "application/octet-stream", {}});
    openPage();
}

void tst_enginedownloads::cleanup()
{
    QStringList ids;
    for (const Download &each : downloadList().all())
        ids.append(each.id);
    downloadList().remove(ids);
    m_scene.reset();
    m_slow.reset();
    QDir(folder()).removeRecursively();
    QTRY_VERIFY(!QFileInfo::exists(StageFolder::notes()));
}

void tst_enginedownloads::isToldFromBeginningToEnd()
{
    const QString id = begin(m_slow->url());
    const Download begun = entry(id);
    QCOMPARE(begun.name, u"file.bin"_s);
    QCOMPARE(begun.folder, folder());
    QCOMPARE(begun.address, QUrl(m_slow->url()));
    QCOMPARE(begun.page, QUrl(url(u"/a"_s)));
    QVERIFY(begun.began.isValid() && begun.isRepeatable && begun.leavesTrace);
    QCOMPARE(begun.state, State::Running);
    m_slow->send(200'000);
    QTRY_COMPARE(entry(id).received, 200'000);
    QCOMPARE(entry(id).size, SlowServer::size);
    QCOMPARE(entry(id).state, State::Running);
    QCOMPARE(downloadList().sum().count, 1);
    m_slow->sendAll();
    QTRY_COMPARE(entry(id).state, State::Done);
    QCOMPARE(entry(id).received, SlowServer::size);
    QCOMPARE(read(entry(id).path()), SlowServer::body());
    QVERIFY(entry(id).ended.isValid() && entry(id).stage.isEmpty());
    QCOMPARE(allKept(), QStringList(u"file.bin"_s));
}

void tst_enginedownloads::hasNoNameBeforeItIsWhole()
{
    const QString id = begin(m_slow->url());
    m_slow->send(200'000);
    QTRY_COMPARE(entry(id).received, 200'000);
    QVERIFY(!QFileInfo::exists(kept(u"file.bin"_s)));
    const QStringList all = allKept();
    QCOMPARE(all.size(), 1);
    QCOMPARE(entry(id).stage, kept(all.first()));
    QVERIFY(QFileInfo(entry(id).stage).isHidden());
    QFile taken(kept(u"file.bin"_s));
    QVERIFY(taken.open(QIODevice::WriteOnly) && taken.write("mine") == 4);
    taken.close();
    m_slow->sendAll();
    QTRY_COMPARE(entry(id).state, State::Done);
    QCOMPARE(entry(id).name, u"file (1).bin"_s);
    QCOMPARE(read(kept(u"file.bin"_s)), "mine");
    QCOMPARE(read(kept(u"file (1).bin"_s)), SlowServer::body());
}

void tst_enginedownloads::pauseAndResume()
{
    const QString id = begin(m_slow->url());
    m_slow->send(100'000);
    QTRY_COMPARE(entry(id).received, 100'000);
    downloadList().pause(id);
    QTRY_COMPARE(entry(id).state, State::Paused);
    m_slow->sendAll();
    downloadList().resume(id);
    QTRY_COMPARE(entry(id).state, State::Done);
    QCOMPARE(read(kept(u"file.bin"_s)), SlowServer::body());
    QCOMPARE(m_slow->requests().size(), 1);
}

void tst_enginedownloads::cancelLeavesNothing()
{
    const QString id = begin(m_slow->url());
    m_slow->send(100'000);
    QTRY_COMPARE(entry(id).received, 100'000);
    downloadList().cancel(id);
    QCOMPARE(entry(id).state, State::Cancelled);
    QVERIFY(entry(id).stage.isEmpty());
    QTRY_COMPARE(allKept(), QStringList());
    QTRY_COMPARE(m_slow->open(), 0);
    QCOMPARE(entry(id).state, State::Cancelled);
}

void tst_enginedownloads::removedFromTheListIsCancelled()
{
    const QString id = begin(m_slow->url());
    m_slow->send(100'000);
    QTRY_COMPARE(entry(id).received, 100'000);
    downloadList().remove({id});
    QTRY_COMPARE(allKept(), QStringList());
    QTRY_COMPARE(m_slow->open(), 0);
}

void tst_enginedownloads::windowClosedWhileItRuns()
{
    const QString id = begin(m_slow->url());
    m_slow->send(100'000);
    QTRY_COMPARE(entry(id).received, 100'000);
    m_scene.reset();
    m_slow->sendAll();
    QTRY_COMPARE(entry(id).state, State::Done);
    QCOMPARE(read(kept(u"file.bin"_s)), SlowServer::body());
}

void tst_enginedownloads::windowClosedBeforeTheAnswer()
{
    m_scene->server.hold("/bytes.bin");
    auto closing = std::make_unique<ControlScene>();
    closing->open(url(u"/a"_s));
    closing->script(u"const a = document.createElement('a'); a.download = 'mine.bin';"
                    "a.href = '/bytes.bin'; a.click(); 1"_s);
    QTRY_COMPARE(m_scene->server.count("/bytes.bin"), 1);
    closing.reset();
    m_scene->server.release();
    QTRY_COMPARE(latest().state, State::Done);
    QCOMPARE(latest().page, QUrl(url(u"/a"_s)));
    QCOMPARE(read(kept(u"mine.bin"_s)), "bytes");
}

/// What is saved is known without asking whose the file is that came.
void tst_enginedownloads::windowClosedWhileItsAddressIsSaved()
{
    const TestServer::Reply picture{200,
                                    "<svg xmlns='http://www.w3.org/2000/svg'/>",
                                    "image/svg+xml",
                                    {{"Cache-Control", "no-store"}}};
    m_scene->server.reply("/picture.svg", picture);
    m_scene->open(url(u"/picture.svg"_s));
    auto closing = std::make_unique<ControlScene>();
    closing->open(url(u"/a"_s));
    m_scene->server.hold("/picture.svg");
    closing->script(u"const a = document.createElement('a'); a.download = 'mine.svg';"
                    "a.href = '/picture.svg'; a.click(); 1"_s);
    QTRY_COMPARE(m_scene->server.count("/picture.svg"), 2);
    const QTemporaryDir place;
    auto *job = new SaveJob(m_scene->browser->page(), place.filePath(u"saved.svg"_s),
                            QWebEngineDownloadRequest::CompleteHtmlSaveFormat, &m_scene->window);
    const QSignalSpy saved(job, &SaveJob::saved);
    job->start();
    QTRY_COMPARE(m_scene->server.count("/picture.svg"), 3);
    closing.reset();
    m_scene->server.release();
    QTRY_COMPARE(saved.size(), 1);
    QCOMPARE(read(place.filePath(u"saved.svg"_s)), picture.body);
    QTRY_COMPARE(latest().state, State::Done);
    QCOMPARE(downloadList().all().size(), 1);
    QCOMPARE(read(latest().path()), picture.body);
}

/// The engine asks a few times more before it gives up.
void tst_enginedownloads::lengthThatIsTooShort()
{
    TestServer::Reply lie{200, QByteArray(50'000, 'x'), "application/octet-stream", {}};
    lie.announced = 100'000;
    m_scene->server.reply("/short.bin", lie);
    const QString id = begin(url(u"/short.bin"_s));
    QTRY_COMPARE(entry(id).state, State::Failed);
    QCOMPARE(entry(id).problem, Problem::WrongLength);
    QVERIFY(entry(id).detail.isEmpty());
    QVERIFY(!QFileInfo::exists(kept(u"short.bin"_s)));
}

/// The message ends where it says that it does; what comes after it belongs to nothing.
void tst_enginedownloads::lengthThatIsTooLong()
{
    TestServer::Reply lie{200, QByteArray(100'000, 'x'), "application/octet-stream", {}};
    lie.announced = 50'000;
    m_scene->server.reply("/long.bin", lie);
    const QString id = begin(url(u"/long.bin"_s));
    QTRY_COMPARE(entry(id).state, State::Done);
    QCOMPARE(QFileInfo(kept(u"long.bin"_s)).size(), 50'000);
    QCOMPARE(entry(id).size, 50'000);
}

/// A message in pieces says where it ends.
void tst_enginedownloads::piecesThatEndEarly()
{
    QTcpServer server;
    QVERIFY(server.listen(QHostAddress::LocalHost));
    connect(&server, &QTcpServer::newConnection, &server, [&server] {
        QTcpSocket *socket = server.nextPendingConnection();
        connect(socket, &QTcpSocket::readyRead, socket, [socket] {
            socket->readAll();
            socket->write("HTTP/1.1 200 OK\r\nContent-Type: application/x-parcel\r\n"
                          "Transfer-Encoding: chunked\r\n\r\n5\r\nbytes\r\n");
            socket->disconnectFromHost();
        });
    });
    const QString id = begin(u"http://127.0.0.1:%1/pieces.bin"_s.arg(server.serverPort()));
    QTRY_COMPARE(entry(id).state, State::Failed);
    QCOMPARE(entry(id).problem, Problem::ConnectionLost);
    QVERIFY(!QFileInfo::exists(kept(u"pieces.bin"_s)));
}

/// What is announced is then the length of something else.
void tst_enginedownloads::packedByTheServer()
{
    const QByteArray packed =
        QByteArray::fromHex("1f8b08000000000002032bc9ccab0400c997b85004000000");
    m_scene->server.reply(
        "/packed.bin", {200, packed, "application/octet-stream", {{"Content-Encoding", "gzip"}}});
    const QString id = begin(url(u"/packed.bin"_s));
    QTRY_COMPARE(entry(id).state, State::Done);
    QCOMPARE(read(kept(u"packed.bin"_s)), "tiny");
}

void tst_enginedownloads::cutConnectionIsGoneOnWith()
{
    m_slow->setHasRanges(true);
    const QString id = begin(m_slow->url());
    m_slow->send(200'000);
    QTRY_COMPARE(entry(id).received, 200'000);
    m_slow->cut();
    QTRY_COMPARE(entry(id).state, State::Failed);
    QCOMPARE(entry(id).problem, Problem::ConnectionLost);
    QVERIFY(!entry(id).stage.isEmpty());
    QVERIFY(!QFileInfo::exists(kept(u"file.bin"_s)));
    QVERIFY(Downloads::goOn(id));
    QCOMPARE(entry(id).state, State::Running);
    QTRY_COMPARE(m_slow->requests().size(), 2);
    QCOMPARE(m_slow->requests().last(), "bytes=200000-");
    m_slow->sendAll();
    QTRY_COMPARE(entry(id).state, State::Done);
    QCOMPARE(read(kept(u"file.bin"_s)), SlowServer::body());
    QCOMPARE(allKept(), QStringList(u"file.bin"_s));
    QVERIFY(!Downloads::goOn(id));
}

void tst_enginedownloads::cutConnectionOfAFileThatCannotBeContinued()
{
    const QString id = begin(m_slow->url());
    m_slow->send(200'000);
    QTRY_COMPARE(entry(id).received, 200'000);
    m_slow->cut();
    QTRY_COMPARE(entry(id).state, State::Failed);
    QCOMPARE(entry(id).problem, Problem::ConnectionLost);
    QVERIFY(!Downloads::goOn(id));
    QTRY_COMPARE(allKept(), QStringList());
    QVERIFY(entry(id).stage.isEmpty());
    QVERIFY(Downloads::beginAnew(id));
    QTRY_COMPARE(m_slow->requests().size(), 2);
    m_slow->sendAll();
    QTRY_COMPARE(entry(id).state, State::Done);
    QCOMPARE(read(kept(u"file.bin"_s)), SlowServer::body());
}

/// The engine removes what it has of a file as it ends.
void tst_enginedownloads::leftWithTheProgram()
{
    const QString id = begin(m_slow->url());
    m_slow->send(200'000);
    QTRY_COMPARE(entry(id).received, 200'000);
    m_scene.reset();
    dropEngineProfile();
    QCOMPARE(entry(id).state, State::Unfinished);
    QCOMPARE(entry(id).received, 200'000);
    const auto stage = DownloadStage::take(entry(id).stage);
    QVERIFY(stage);
    QCOMPARE(read(stage->arrived()), SlowServer::body().first(200'000));
}

void tst_enginedownloads::leftAfterItFailed()
{
    m_slow->setHasRanges(true);
    const QString id = begin(m_slow->url());
    m_slow->send(200'000);
    QTRY_COMPARE(entry(id).received, 200'000);
    m_slow->cut();
    QTRY_COMPARE(entry(id).state, State::Failed);
    const QDateTime ended = entry(id).ended;
    m_scene.reset();
    dropEngineProfile();
    QCOMPARE(entry(id).state, State::Failed);
    QCOMPARE(entry(id).ended, ended);
    const auto stage = DownloadStage::take(entry(id).stage);
    QVERIFY(stage);
    QCOMPARE(read(stage->arrived()), SlowServer::body().first(200'000));
}

void tst_enginedownloads::madeByThePageIsNotLeft()
{
    m_scene->script(u"const a = document.createElement('a'); a.download = 'made.txt';"
                    "a.href = URL.createObjectURL(new Blob(['made'])); a.click(); 1"_s);
    QTRY_COMPARE(latest().name, u"made.txt"_s);
    QTRY_COMPARE(latest().state, State::Done);
    QVERIFY(!latest().isRepeatable);
    QVERIFY(!Downloads::beginAnew(latest().id));
    QCOMPARE(latest().page, QUrl(url(u"/a"_s)));
}

void tst_enginedownloads::answerToAFormIsNotLeft()
{
    m_scene->script(u"const f = document.createElement('form'); f.method = 'post';"
                    "f.action = '%1'; document.body.append(f); f.submit(); 1"_s.arg(m_slow->url()));
    QTRY_COMPARE(latest().name, u"file.bin"_s);
    QVERIFY(!latest().isRepeatable);
    m_slow->send(200'000);
    QTRY_COMPARE(latest().received, 200'000);
    QVERIFY(latest().stage.isEmpty());
    downloadList().leaveAll();
    QCOMPARE(latest().state, State::Cancelled);
    QTRY_COMPARE(allKept(), QStringList());
}

void tst_enginedownloads::fullDisk()
{
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("Only the superuser can mount a disk.");
    const QString id = begunAnewIn(disk.path());
    QTRY_COMPARE(m_slow->requests().size(), 2);
    m_slow->sendAll();
    QTRY_COMPARE(entry(id).state, State::Failed);
    QCOMPARE(entry(id).problem, Problem::NoRoom);
    QVERIFY(!QFileInfo::exists(disk.path() + u"/file.bin"_s));
    downloadList().remove({id});
    QTRY_COMPARE(
        QDir(disk.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
        QStringList());
}

void tst_enginedownloads::folderGoneMeanwhile()
{
    const QString id = begin(m_slow->url());
    m_slow->send(200'000);
    QTRY_COMPARE(entry(id).received, 200'000);
    QVERIFY(QDir().rename(folder(), folder() + u"-gone"_s));
    m_slow->sendAll();
    QTRY_COMPARE(entry(id).state, State::Failed);
    QCOMPARE(entry(id).problem, Problem::FolderGone);
    QVERIFY(!QFileInfo::exists(kept(u"file.bin"_s)));
    QVERIFY(entry(id).stage.isEmpty());
    QVERIFY(QDir(folder() + u"-gone"_s).removeRecursively());
    // What the engine makes there once more is empty.
    QTRY_COMPARE(allKept(), QStringList());
}

void tst_enginedownloads::stageOfAnotherProgram()
{
    QVERIFY(QDir().mkpath(folder()));
    DownloadStage others(folder());
    QVERIFY(others.isValid());
    Download left;
    left.id = DownloadList::newId();
    left.name = u"file.bin"_s;
    left.folder = folder();
    left.address = QUrl(m_slow->url());
    left.stage = others.path();
    left.state = State::Unfinished;
    downloadList().add(left, nullptr);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^another program has"_s));
    downloadList().retry(left.id);
    QCOMPARE(entry(left.id).state, State::Failed);
    QCOMPARE(entry(left.id).problem, Problem::InUse);
    QCOMPARE(entry(left.id).stage, others.path());
    QVERIFY(QFileInfo(others.path()).isDir());
}

void tst_enginedownloads::folderThatCannotBeWrittenTo()
{
    const SmallDisk disk;
    if (!disk.isMounted() || !disk.makeReadOnly())
        QSKIP("Only the superuser can mount a disk.");
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^cannot make"_s));
    const QString id = begunAnewIn(disk.path());
    QTRY_COMPARE(entry(id).state, State::Failed);
    QCOMPARE(entry(id).problem, Problem::NotAllowed);
    QVERIFY(!entry(id).detail.isEmpty());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^cannot make"_s));
    const QString nowhere = begunAnewIn(disk.path() + u"/none"_s);
    QTRY_COMPARE(entry(nowhere).state, State::Failed);
    QCOMPARE(entry(nowhere).problem, Problem::FolderGone);
}

void tst_enginedownloads::neverToBeExecuted_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("type");
    QTest::newRow("desktop file") << u"game.desktop"_s << QByteArray("application/x-desktop");
    QTest::newRow("script") << u"install.sh"_s << QByteArray("application/x-shellscript");
    QTest::newRow("AppImage") << u"Tool.AppImage"_s << QByteArray("application/vnd.appimage");
}

void tst_enginedownloads::neverToBeExecuted()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, type);
    m_scene->server.reply("/run",
                          {200,
                           "#!/bin/sh\n",
                           type,
                           {{"Content-Disposition", "attachment; filename=" + name.toUtf8()}}});
    const QString id = begin(url(u"/run"_s));
    QTRY_COMPARE(entry(id).state, State::Done);
    QCOMPARE(entry(id).name, name);
    QVERIFY(!QFileInfo(kept(name)).isExecutable());
    QCOMPARE(QFile::permissions(kept(name))
                 & (QFile::ExeOwner | QFile::ExeGroup | QFile::ExeOther | QFile::ExeUser),
             QFile::Permissions());
}

void tst_enginedownloads::marks()
{
    const QString id = begin(url(u"/bytes.bin?a=b#c"_s));
    QTRY_COMPARE(entry(id).state, State::Done);
    const QString path = kept(u"bytes.bin"_s);
    if (::setxattr(QFile::encodeName(path).constData(), "user.test", "x", 1, 0) != 0)
        QSKIP("The disk keeps no attributes.");
    QCOMPARE(mark(path, "user.xdg.origin.url"), url(u"/bytes.bin?a=b"_s).toUtf8());
    QCOMPARE(mark(path, "user.xdg.referrer.url"), url(u"/a"_s).toUtf8());
}

void tst_enginedownloads::pageKeptOutOfTheHistory()
{
    m_scene->events.flagsToSet = NavFlags::NoHistory;
    const QString id = begin(url(u"/bytes.bin"_s));
    QTRY_COMPARE(entry(id).state, State::Done);
    QVERIFY(entry(id).page.isEmpty() && !entry(id).leavesTrace);
    const QString path = kept(u"bytes.bin"_s);
    QCOMPARE(mark(path, "user.xdg.origin.url"), QByteArray());
    QCOMPARE(mark(path, "user.xdg.referrer.url"), QByteArray());
}

void tst_enginedownloads::begunAnew()
{
    const QString id = begin(m_slow->url());
    downloadList().cancel(id);
    QTRY_COMPARE(m_slow->open(), 0);
    QVERIFY(!Downloads::beginAnew(u"unknown"_s));
    QVERIFY(Downloads::beginAnew(id));
    QVERIFY(!Downloads::beginAnew(id));
    QTRY_COMPARE(m_slow->requests().size(), 2);
    m_slow->sendAll();
    QTRY_COMPARE(entry(id).state, State::Done);
    QCOMPARE(downloadList().all().size(), 1);
    QCOMPARE(read(kept(u"file.bin"_s)), SlowServer::body());
}

void tst_enginedownloads::begunAnewFromAServerThatRefuses()
{
    const QString id = begin(url(u"/bytes.bin"_s));
    QTRY_COMPARE(entry(id).state, State::Done);
    m_scene->server.reply("/bytes.bin", {404, "gone", "text/html", {}});
    QVERIFY(Downloads::beginAnew(id));
    QTRY_COMPARE(entry(id).state, State::Failed);
    QCOMPARE(entry(id).problem, Problem::ServerRefused);
    QCOMPARE(read(kept(u"bytes.bin"_s)), "bytes");
    QTRY_COMPARE(allKept(), QStringList(u"bytes.bin"_s));
}

/// The engine would bring it, and not say for whom.
void tst_enginedownloads::begunAnewOfWhatNoServerHas()
{
    const QTemporaryDir place;
    QFile mine(place.filePath(u"mine.bin"_s));
    QVERIFY(mine.open(QIODevice::WriteOnly));
    mine.close();
    for (const QUrl &address : {QUrl::fromLocalFile(mine.fileName()), QUrl(u"about:blank"_s)}) {
        // As a list edited by hand may have it.
        Download edited;
        edited.id = DownloadList::newId();
        edited.name = u"copy.bin"_s;
        edited.folder = place.path();
        edited.address = address;
        edited.state = State::Unfinished;
        downloadList().add(edited, nullptr);
        Downloads::beginAnew(edited.id);
        QCOMPARE(entry(edited.id).state, State::Failed);
        QVERIFY(entry(edited.id).ended.isValid());
        QVERIFY(!QFileInfo::exists(place.filePath(u"copy.bin"_s)));
    }
    QCOMPARE(downloadList().all().size(), 2);
}

/// Of one that nobody wants any more nothing comes, though its server answers at last.
void tst_enginedownloads::begunAnewAndCancelled()
{
    const QString id = begin(url(u"/bytes.bin"_s));
    QTRY_COMPARE(entry(id).state, State::Done);
    QVERIFY(QFile::remove(kept(u"bytes.bin"_s)));
    m_scene->server.hold("/bytes.bin");
    QSignalSpy requests(engineProfile(), &QWebEngineProfile::downloadRequested);
    QVERIFY(Downloads::beginAnew(id));
    QTRY_COMPARE(m_scene->server.count("/bytes.bin"), 2);
    downloadList().cancel(id);
    QCOMPARE(entry(id).state, State::Cancelled);
    m_scene->server.release();
    QTRY_COMPARE(requests.size(), 1);
    QCOMPARE(downloadList().all().size(), 1);
    QCOMPARE(entry(id).state, State::Cancelled);
    QTRY_COMPARE(allKept(), QStringList());
}

/// Each has its own place.
void tst_enginedownloads::twoOfOneAddressBegunAnew()
{
    int answered = 0;
    m_scene->server.handle("/same.bin", [&answered](const TestServer::Request &) {
        TestServer::Reply reply;
        reply.type = "application/octet-stream";
        reply.body = QByteArray::number(++answered);
        reply.headers = {{"Cache-Control", "no-store"}};
        return reply;
    });
    QStringList ids;
    for (int i = 0; i < 2; ++i) {
        ids.append(begin(url(u"/same.bin"_s)));
        QTRY_COMPARE(entry(ids.last()).state, State::Done);
        QVERIFY(QFile::remove(entry(ids.last()).path()));
        downloadList().change(ids.last(),
                              [i](Download &download) { download.name = u"%1.bin"_s.arg(i); });
    }
    m_scene->server.hold("/same.bin");
    for (int i = 0; i < 2; ++i) {
        QVERIFY(Downloads::beginAnew(ids.at(i)));
        QTRY_COMPARE(m_scene->server.count("/same.bin"), 3 + i);
    }
    m_scene->server.release();
    for (int i = 0; i < 2; ++i) {
        QTRY_COMPARE(entry(ids.at(i)).state, State::Done);
        QCOMPARE(entry(ids.at(i)).name, u"%1.bin"_s.arg(i));
        QCOMPARE(read(kept(u"%1.bin"_s.arg(i))), QByteArray::number(3 + i));
    }
}

void tst_enginedownloads::nameByTheType_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QString>("name");
    QTest::newRow("no name at all")
        << QByteArray("/dir/") << QByteArray("application/zip") << u"download.zip"_s;
    QTest::newRow("no ending") << QByteArray("/get") << QByteArray("application/zip")
                               << u"get.zip"_s;
    QTest::newRow("an ending") << QByteArray("/get.php") << QByteArray("application/zip")
                               << u"get.php"_s;
    QTest::newRow("any bytes") << QByteArray("/get") << QByteArray("application/octet-stream")
                               << u"get"_s;
    QTest::newRow("unknown type") << QByteArray("/get") << QByteArray("application/x-parcel")
                                  << u"get"_s;
    QTest::newRow("a known name") << QByteArray("/Makefile") << QByteArray("application/zip")
                                  << u"Makefile"_s;
}

void tst_enginedownloads::nameByTheType()
{
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, type);
    QFETCH(QString, name);
    m_scene->server.reply(path, {200, "bytes", type, {}});
    const QString id = begin(url(QString::fromLatin1(path)));
    QTRY_COMPARE(entry(id).state, State::Done);
    QCOMPARE(entry(id).name, name);
}

ORVANE_ENGINE_TEST_MAIN(tst_enginedownloads)
#include "tst_enginedownloads.moc"
