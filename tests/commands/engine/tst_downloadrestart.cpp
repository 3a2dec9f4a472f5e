// The whole program is killed in the middle of a download, and started again.
#include <QApplication>
#include <QCryptographicHash>
#include <QDir>
#include <QDirIterator>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include "AllCommands.h"
#include "AppFolder.h"
#include "DownloadFile.h"
#include "DownloadList.h"
#include "DownloadStore.h"
#include "EndRequests.h"
#include "EngineStart.h"
#include "FileServer.h"
#include "MainWindow.h"
#include "StartCleaning.h"
#include "StartUp.h"

using namespace Qt::StringLiterals;
using State = Download::State;

namespace {
constexpr char folderVariable[] = "ORVANE_TEST_FOLDER";
constexpr char retryVariable[] = "ORVANE_TEST_RETRY";

void retryAll(DownloadStore &store)
{
    QObject::connect(&store, &DownloadStore::loaded, &store, [] {
        const QList<Download> all = downloadList().all();
        for (const Download &download : all)
            downloadList().retry(download.id);
    });
}

/// As the main routine does it.
int runProgram(int argc, char **argv)
{
    chooseRenderingBackend();
    QApplication app(argc, argv);
    AppFolder::setPath(qEnvironmentVariable(folderVariable));
    startEngine();
    warmUpEngine();
    int status = 0;
    {
        MainWindow frame;
        followEndRequests(frame);
        DownloadStore downloads(downloadList(), DownloadFile::path());
        if (qEnvironmentVariableIsSet(retryVariable))
            retryAll(downloads);
        registerAllCommands(frame);
        frame.setCommandLine(QCoreApplication::arguments().value(1));
        startUp(frame);
        startCleaning();
        status = QCoreApplication::exec();
    }
    stopEngine();
    return status;
}
}

class tst_downloadrestart : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void killedWhileBytesComeIn();
    void killedAsItFinishes();
    void killedWhileTheListIsWritten();
    void endedByTheSystem();
    void cookiesGoToTheirOwnHost();
    void goesThroughTheProxy();

private:
    void start(const QString &address, bool retries = false);
    void kill()
    {
        m_program->kill();
        QVERIFY(m_program->waitForFinished());
    }
    void end()
    {
        m_program->terminate();
        QTRY_COMPARE_WITH_TIMEOUT(m_program->state(), QProcess::NotRunning, 30'000);
        QCOMPARE(m_program->exitStatus(), QProcess::NormalExit);
    }
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QList<Download> stored() const
    {
        return DownloadFile::read(path(u"AppData/Downloads.ini"_s)).value_or(QList<Download>());
    }
    Download first() const { return stored().value(0); }
    QString kept() const { return path(u"Downloads/file.bin"_s); }
    bool isWhole() const
    {
        QFile file(kept());
        return file.open(QIODevice::ReadOnly) && sum(file.readAll()) == sum(m_server->bytes);
    }
    static QByteArray sum(const QByteArray &bytes)
    {
        return QCryptographicHash::hash(bytes, QCryptographicHash::Sha256);
    }
    /// Of the partial file.
    qint64 arrived() const
    {
        const QString stage = first().stage;
        return std::max(QFileInfo(stage + "/part"_L1).size(),
                        QFileInfo(stage + "/part.download"_L1).size());
    }
    void retryBringsTheSame();

    std::unique_ptr<QTemporaryDir> m_folder;
    /// Lines of the engine's options.
    QByteArray m_options;
    std::unique_ptr<FileServer> m_server;
    std::unique_ptr<QProcess> m_program;
};

void tst_downloadrestart::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    for (const char *name : {"AppData/Languages", "Profiles", "Downloads", "home"})
        QVERIFY(QDir(m_folder->path()).mkpath(QLatin1String(name)));
    QFile settings(path(u"AppData/Settings.ini"_s));
    QVERIFY(settings.open(QIODevice::WriteOnly));
    settings.write("[Options]\r\nShow-Splash=0\r\n[Settings]\r\nAskOnExit=1\r\n");
    m_options.clear();
    m_server = std::make_unique<FileServer>();
    for (int i = 0; i < 3'000'000; ++i)
        m_server->bytes.append(char(quint32(i) * 2654435761U >> 13));
}

void tst_downloadrestart::cleanup()
{
    m_program.reset();
    m_server.reset();
    m_folder.reset();
}

void tst_downloadrestart::start(const QString &address, bool retries)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(folderVariable), m_folder->path());
    if (retries)
        environment.insert(QLatin1String(retryVariable), u"1"_s);
    environment.insert(u"HOME"_s, path(u"home"_s));
    for (const char *variable : {"XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_CONFIG_HOME"})
        environment.insert(QLatin1String(variable), path(QLatin1String(variable)));
    environment.insert(u"XDG_DOWNLOAD_DIR"_s, path(u"Downloads"_s));
    QFile options(path(u"AppData/Engine.ini"_s));
    QVERIFY(options.open(QIODevice::WriteOnly));
    options.write("[Engine]\r\nDownloadFolder=" + path(u"Downloads"_s).toUtf8() + "\r\n");
    options.write(m_options);
    options.close();
    m_program = std::make_unique<QProcess>();
    m_program->setProcessEnvironment(environment);
    m_program->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_program->start(QCoreApplication::applicationFilePath(), {address});
    QVERIFY(m_program->waitForStarted());
}

void tst_downloadrestart::retryBringsTheSame()
{
    m_server->goOn();
    m_server->forget();
    start(u"about:blank"_s, true);
    QTRY_COMPARE_WITH_TIMEOUT(first().state, State::Done, 60'000);
    QCOMPARE(stored().size(), 1);
    QVERIFY(isWhole());
    end();
}

void tst_downloadrestart::killedWhileBytesComeIn()
{
    m_server->stopAfter = 1'500'000;
    start(m_server->url().toString());
    // By then its server has said by what it can be continued.
    QTRY_VERIFY_WITH_TIMEOUT(!first().etag.isEmpty() && arrived() > 100'000, 60'000);
    kill();
    QVERIFY(!QFileInfo::exists(kept()));
    const qint64 there = arrived();
    retryBringsTheSame();
    QCOMPARE(m_server->requests().size(), 1);
    QCOMPARE(m_server->lastRange(), "bytes=" + QByteArray::number(there) + '-');
}

void tst_downloadrestart::killedAsItFinishes()
{
    start(m_server->url().toString());
    // Each look goes at once to the next: the end takes a few milliseconds.
    const auto ends = [this] {
        const QString stage = first().stage;
        return QFileInfo::exists(kept()) || QFileInfo::exists(stage + "/part"_L1);
    };
    QTRY_VERIFY_WITH_TIMEOUT(ends(), 60'000);
    kill();
    QVERIFY(!QFileInfo::exists(kept()) || isWhole());
    // Told to end at once, the next program may not listen yet.
    if (first().state == State::Done)
        QVERIFY(isWhole());
    else
        retryBringsTheSame();
}

void tst_downloadrestart::killedWhileTheListIsWritten()
{
    m_server->stopAfter = 1'500'000;
    start(m_server->url().toString());
    const QString file = path(u"AppData/Downloads.ini"_s);
    QTRY_VERIFY_WITH_TIMEOUT(QFileInfo::exists(file), 60'000);
    kill();
    QCOMPARE(stored().size(), 1);
    QVERIFY(!QFileInfo::exists(kept()));
    retryBringsTheSame();
}

void tst_downloadrestart::endedByTheSystem()
{
    m_server->stopAfter = 1'500'000;
    start(m_server->url().toString());
    QTRY_VERIFY_WITH_TIMEOUT(!first().etag.isEmpty() && arrived() > 100'000, 60'000);
    end();
    QCOMPARE(first().state, State::Unfinished);
    QCOMPARE(first().received, arrived());
    retryBringsTheSame();
    QVERIFY(m_server->lastRange().startsWith("bytes="));
}

void tst_downloadrestart::cookiesGoToTheirOwnHost()
{
    m_server->headers = {{"Set-Cookie", "pass=word; Max-Age=100000; Path=/"}};
    m_server->stopAfter = 1'500'000;
    start(m_server->url().toString());
    QTRY_VERIFY_WITH_TIMEOUT(!first().etag.isEmpty() && arrived() > 100'000, 60'000);
    end();
    FileServer other;
    other.bytes = m_server->bytes;
    QUrl elsewhere = other.url();
    elsewhere.setHost(u"localhost"_s);
    m_server->status = 302;
    m_server->headers = {{"Location", elsewhere.toEncoded()}};
    retryBringsTheSame();
    QCOMPARE(m_server->requests().size(), 1);
    QCOMPARE(m_server->requests().first().headers.value("cookie"), "pass=word");
    QVERIFY(m_server->lastRange().startsWith("bytes="));
    QCOMPARE(other.requests().size(), 1);
    QCOMPARE(other.lastRange(), m_server->lastRange());
    QVERIFY(!other.requests().first().headers.contains("cookie"));
}

/// Nobody else knows that host.
void tst_downloadrestart::goesThroughTheProxy()
{
    m_options = "Proxy=HTTP\r\nProxyHost=127.0.0.1\r\nProxyPort="
        + QByteArray::number(m_server->url().port()) + "\r\n";
    const QString address = u"http://files.example/file.bin"_s;
    m_server->stopAfter = 1'500'000;
    start(address);
    QTRY_VERIFY_WITH_TIMEOUT(!first().etag.isEmpty() && arrived() > 100'000, 60'000);
    end();
    retryBringsTheSame();
    QCOMPARE(m_server->requests().size(), 1);
    QCOMPARE(m_server->requests().first().path, address.toUtf8());
    QVERIFY(m_server->lastRange().startsWith("bytes="));
}

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsSet(folderVariable))
        return runProgram(argc, argv);
    QCoreApplication app(argc, argv);
    tst_downloadrestart test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_downloadrestart.moc"
