// Several starts of one program; those that are not this process are the test program itself.
#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QLocalSocket>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

#include <atomic>
#include <csignal>
#include <cstdio>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "AppFolder.h"
#include "HandOver.h"
#include "StartListener.h"
#include "StartPlace.h"
#include "StartRequest.h"

using namespace Qt::StringLiterals;

namespace {
constexpr char folderVariable[] = "ORVANE_TEST_FOLDER";
constexpr char sessionVariable[] = "XDG_RUNTIME_DIR";

void say(const char *word)
{
    std::puts(word);
    std::fflush(stdout);
}

/// A start: "done", "alone" or "first"; the last one stays, hears of others and says what they ask.
int runStart()
{
    AppFolder::setPath(qEnvironmentVariable(folderVariable));
    HandOver start =
        HandOver::attempt(StartRequest::ofThisStart(QCoreApplication::arguments().mid(2, 1)));
    if (start.isDone || !start.place) {
        say(start.isDone ? "done" : "alone");
        return 0;
    }
    StartListener listener(std::move(start.place));
    say("first");
    listener.begin([](const StartRequest &request) {
        say(qPrintable(request.text));
        return true;
    });
    return QCoreApplication::exec();
}
}

class tst_Starts : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void firstStartHasThePlaceForItself();
    void laterStartIsHandedOver();
    void whatComesBeforeTheBeginningIsDoneThen();
    void refusedStartGoesOnByItself();
    void programThatHangsIsNotWaitedForLong();
    void startThatWentOnByItselfIsNotDoneAsWell();
    void programThatEndsGivesItsPlaceToTheNext();
    void killedProgramGivesItsPlaceToTheNext();
    void ofManyAtOnceOneRuns();
    void anotherFolderIsAnotherBrowser();
    void whoIsOnAnotherDisplayGoesOnByItself_data();
    void whoIsOnAnotherDisplayGoesOnByItself();
    void noiseIsDropped_data();
    void noiseIsDropped();
    void messageWithoutEndIsNotHeld();
    void silentVisitorsHoldNobodyUp();
    void slowMessageArrives();
    void startThatIsTooLongGoesOnByItself();
    void foldersAreTheUsersAlone();
    void folderOfTheSessionThatOthersReadIsNotUsed();
    void placeOfAnotherIsNotUsed();
    void longPathsHaveAPlace();
    void otherUsersAreRefused();
    void nothingStaysBehind();
    void folderThatGoesIsNobodysPlace();

private:
    void listen();
    std::unique_ptr<QProcess> start(const QString &text, const QStringList &environment = {}) const;
    QByteArray wordOf(QProcess &start) const;
    std::unique_ptr<QLocalSocket> connected() const;

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<QTemporaryDir> m_session;
    QByteArray m_sessionBefore;
    std::unique_ptr<StartListener> m_listener;
    QList<StartRequest> m_heard;
    bool m_takes = true;
};

void tst_Starts::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_session = std::make_unique<QTemporaryDir>();
    m_sessionBefore = qgetenv(sessionVariable);
    qputenv(sessionVariable, m_session->path().toLocal8Bit());
    AppFolder::setPath(m_folder->path());
    m_heard.clear();
    m_takes = true;
}

void tst_Starts::cleanup()
{
    m_listener.reset();
    qputenv(sessionVariable, m_sessionBefore);
}

void tst_Starts::listen()
{
    m_listener = std::make_unique<StartListener>(StartPlace::take());
    QTRY_VERIFY(QFileInfo::exists(StartPlace::socketIn(StartPlace::folder())));
    m_listener->begin([this](const StartRequest &request) {
        m_heard.append(request);
        return m_takes;
    });
}

std::unique_ptr<QProcess> tst_Starts::start(const QString &text,
                                            const QStringList &environment) const
{
    QProcessEnvironment all = QProcessEnvironment::systemEnvironment();
    all.insert(QLatin1String(folderVariable), AppFolder::path());
    for (const QString &each : environment)
        all.insert(each.section(u'=', 0, 0), each.section(u'=', 1));
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(all);
    process->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process->setWorkingDirectory(QDir::rootPath());
    process->start(QCoreApplication::applicationFilePath(), {u"--start"_s, text});
    return process;
}

QByteArray tst_Starts::wordOf(QProcess &start) const
{
    [&start] { QTRY_VERIFY_WITH_TIMEOUT(start.canReadLine(), 30'000); }();
    return start.readLine().trimmed();
}

std::unique_ptr<QLocalSocket> tst_Starts::connected() const
{
    auto socket = std::make_unique<QLocalSocket>();
    socket->connectToServer(StartPlace::socketIn(StartPlace::folder()));
    [&socket] { QVERIFY(socket->waitForConnected(30'000)); }();
    return socket;
}

void tst_Starts::firstStartHasThePlaceForItself()
{
    const HandOver first = HandOver::attempt(StartRequest::ofThisStart({}));
    QVERIFY(!first.isDone && first.place);
    QVERIFY(!StartPlace::take());
}

void tst_Starts::laterStartIsHandedOver()
{
    listen();
    const auto later = start(u"http://one/ \"two\"\n"_s, {u"XDG_ACTIVATION_TOKEN=right"_s});
    QCOMPARE(wordOf(*later), QByteArray("done"));
    QCOMPARE(m_heard.size(), 1);
    QCOMPARE(m_heard.first().text, u"http://one/ \"two\"\n"_s);
    QCOMPARE(m_heard.first().folder, QDir::rootPath());
    QCOMPARE(m_heard.first().activation, u"right"_s);
}

void tst_Starts::whatComesBeforeTheBeginningIsDoneThen()
{
    StartListener listener(StartPlace::take());
    QTRY_VERIFY(QFileInfo::exists(StartPlace::socketIn(StartPlace::folder())));
    // This thread, as that of a program that starts, looks after nothing meanwhile.
    const auto later = start(u"early"_s);
    QVERIFY(later->waitForFinished());
    QCOMPARE(later->readAll(), QByteArray("done\n"));
    QStringList heard;
    listener.begin([&heard](const StartRequest &request) {
        heard.append(request.text);
        return true;
    });
    QTRY_COMPARE(heard, QStringList{u"early"_s});
}

void tst_Starts::refusedStartGoesOnByItself()
{
    m_takes = false;
    listen();
    QCOMPARE(wordOf(*start(u"x"_s)), QByteArray("alone"));
}

void tst_Starts::programThatHangsIsNotWaitedForLong()
{
    const auto program = start({});
    QCOMPARE(wordOf(*program), QByteArray("first"));
    QCOMPARE(::kill(pid_t(program->processId()), SIGSTOP), 0);
    QCOMPARE(wordOf(*start(u"x"_s)), QByteArray("alone"));
}

void tst_Starts::startThatWentOnByItselfIsNotDoneAsWell()
{
    listen();
    // Once its first call has come through, none is promised any more.
    QCOMPARE(wordOf(*start(u"before"_s)), QByteArray("done"));
    const auto unheard = start(u"unheard"_s);
    QVERIFY(unheard->waitForFinished());
    QCOMPARE(unheard->readAll(), QByteArray("alone\n"));
    QCOMPARE(wordOf(*start(u"after"_s)), QByteArray("done"));
    QCOMPARE(m_heard.size(), 2);
    QCOMPARE(m_heard.last().text, u"after"_s);
}

void tst_Starts::programThatEndsGivesItsPlaceToTheNext()
{
    listen();
    m_listener->end();
    QVERIFY(!QFileInfo::exists(StartPlace::socketIn(StartPlace::folder())));
    const auto next = start({});
    QTRY_VERIFY(next->state() == QProcess::Running);
    m_listener.reset();
    QCOMPARE(wordOf(*next), QByteArray("first"));
}

void tst_Starts::killedProgramGivesItsPlaceToTheNext()
{
    const auto killed = start({});
    QCOMPARE(wordOf(*killed), QByteArray("first"));
    const QString socket = StartPlace::socketIn(StartPlace::folder());
    QTRY_VERIFY(QFileInfo::exists(socket)); // a thread of its own makes it
    killed->kill();
    QVERIFY(killed->waitForFinished());
    QVERIFY2(QFileInfo::exists(socket), "what it left is in the way");
    const auto next = start({});
    QCOMPARE(wordOf(*next), QByteArray("first"));
    QCOMPARE(wordOf(*start(u"third"_s)), QByteArray("done"));
    QCOMPARE(wordOf(*next), QByteArray("third"));
}

void tst_Starts::ofManyAtOnceOneRuns()
{
    std::vector<std::unique_ptr<QProcess>> starts;
    for (int i = 0; i < 8; ++i)
        starts.push_back(start(QString::number(i)));
    QProcess *first = nullptr;
    int done = 0;
    for (const auto &each : starts) {
        const QByteArray word = wordOf(*each);
        if (word == "first") {
            QVERIFY(!first);
            first = each.get();
        }
        done += word == "done" ? 1 : 0;
    }
    QVERIFY(first);
    QCOMPARE(done, 7);
    for (int i = 0; i < 7; ++i)
        QVERIFY(!wordOf(*first).isEmpty());
}

void tst_Starts::anotherFolderIsAnotherBrowser()
{
    listen();
    const QTemporaryDir other;
    const auto there = start(u"x"_s, {QLatin1String(folderVariable) + u'=' + other.path()});
    QCOMPARE(wordOf(*there), QByteArray("first"));
    const QString link = m_session->filePath(u"link"_s);
    QVERIFY(QFile::link(m_folder->path(), link));
    QCOMPARE(wordOf(*start(u"x"_s, {QLatin1String(folderVariable) + u'=' + link})),
             QByteArray("done"));
}

void tst_Starts::whoIsOnAnotherDisplayGoesOnByItself_data()
{
    QTest::addColumn<QString>("display");
    QTest::addColumn<QByteArray>("word");
    QTest::newRow("the same") << u":77"_s << QByteArray("done");
    QTest::newRow("another screen of it") << u":77.1"_s << QByteArray("done");
    QTest::newRow("another") << u":78"_s << QByteArray("alone");
    QTest::newRow("none") << QString() << QByteArray("done");
}

void tst_Starts::whoIsOnAnotherDisplayGoesOnByItself()
{
    QFETCH(QString, display);
    QFETCH(QByteArray, word);
    const QByteArray before = qgetenv("DISPLAY");
    qputenv("DISPLAY", ":77.0");
    listen();
    qputenv("DISPLAY", before);
    QCOMPARE(wordOf(*start(u"x"_s, {u"DISPLAY="_s + display, u"WAYLAND_DISPLAY="_s})), word);
}

void tst_Starts::noiseIsDropped_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("an empty line") << QByteArray("\n");
    QTest::newRow("no object") << QByteArray("[1]\n");
    QTest::newRow("zeros") << QByteArray(5000, '\0') + '\n';
    QTest::newRow("half a request") << StartRequest::ofThisStart({u"x"_s}).bytes().left(9) + '\n';
    QTest::newRow("another version") << QByteArray(R"({"version":2,"text":"","folder":"/"})"
                                                   "\n");
    QTest::newRow("a relative folder") << QByteArray(R"({"version":1,"text":"","folder":"x"})"
                                                     "\n");
    QTest::newRow("things of other types") << QByteArray(R"({"version":1,"text":[],"folder":{}})"
                                                         "\n");
    QTest::newRow("nested deeply") << QByteArray(100'000, '[') + '\n';
}

void tst_Starts::noiseIsDropped()
{
    QFETCH(QByteArray, bytes);
    listen();
    const auto noisy = connected();
    noisy->write(bytes);
    QTRY_COMPARE(noisy->state(), QLocalSocket::UnconnectedState);
    QVERIFY(noisy->readAll().isEmpty());
    QCOMPARE(wordOf(*start(u"x"_s)), QByteArray("done"));
    QCOMPARE(m_heard.size(), 1);
}

void tst_Starts::messageWithoutEndIsNotHeld()
{
    listen();
    const auto endless = connected();
    const QByteArray megabyte(1024 * 1024, '{');
    int sent = 0;
    connect(endless.get(), &QLocalSocket::bytesWritten, this, [&] {
        if (endless->bytesToWrite() == 0 && ++sent < 100)
            endless->write(megabyte);
    });
    endless->write(megabyte);
    QTRY_COMPARE_WITH_TIMEOUT(endless->state(), QLocalSocket::UnconnectedState, 30'000);
    QVERIFY2(sent < 3, "it was read on");
    QCOMPARE(wordOf(*start(u"x"_s)), QByteArray("done"));
}

void tst_Starts::silentVisitorsHoldNobodyUp()
{
    listen();
    std::vector<std::unique_ptr<QLocalSocket>> silent;
    for (int i = 0; i < 1000; ++i) {
        silent.push_back(connected());
        if (i % 3 == 0)
            silent.back()->write("{\"vers");
    }
    QCOMPARE(wordOf(*start(u"x"_s)), QByteArray("done"));
    QTRY_VERIFY_WITH_TIMEOUT(std::all_of(silent.cbegin(), silent.cend(),
                                         [](const auto &each) {
                                             return each->state() == QLocalSocket::UnconnectedState;
                                         }),
                             30'000);
}

void tst_Starts::slowMessageArrives()
{
    listen();
    const auto slow = connected();
    const QByteArray bytes = StartRequest::ofThisStart({u"slow"_s}).bytes();
    for (const char byte : bytes) {
        slow->write(&byte, 1);
        slow->flush();
        QCoreApplication::processEvents();
    }
    QTRY_COMPARE(slow->bytesAvailable(), 6);
    QCOMPARE(slow->readAll(), QByteArray("taken\n"));
    QCOMPARE(m_heard.value(0).text, u"slow"_s);
}

void tst_Starts::startThatIsTooLongGoesOnByItself()
{
    listen();
    const StartRequest request = StartRequest::ofThisStart({QString(StartRequest::largest, u'x')});
    const HandOver start = HandOver::attempt(request);
    QVERIFY(!start.isDone && !start.place);
}

void tst_Starts::foldersAreTheUsersAlone()
{
    listen();
    const QString folder = StartPlace::folder();
    QVERIFY(folder.startsWith(m_session->path()));
    for (const QString &path : {folder, QFileInfo(folder).path()})
        QCOMPARE(int(QFileInfo(path).permissions() & 0x77), 0);
    QCOMPARE(int(QFileInfo(StartPlace::socketIn(folder)).permissions() & 0x77), 0);
}

void tst_Starts::folderOfTheSessionThatOthersReadIsNotUsed()
{
    QVERIFY(QFile::setPermissions(m_session->path(), QFile::Permissions(0x7755)));
    const QString folder = StartPlace::folder();
    QVERIFY(!folder.startsWith(m_session->path()));
    QVERIFY(folder.startsWith(QDir::tempPath()));
    QCOMPARE(int(QFileInfo(folder).permissions() & 0x77), 0);
    QVERIFY(QDir().rmdir(folder));
}

void tst_Starts::placeOfAnotherIsNotUsed()
{
    const QTemporaryDir elsewhere;
    const QString root = m_session->filePath(u"orvane"_s);
    QVERIFY(QFile::link(elsewhere.path(), root));
    QVERIFY(!StartPlace::folder().startsWith(m_session->path()));
    QVERIFY(QDir(elsewhere.path()).isEmpty());
}

void tst_Starts::longPathsHaveAPlace()
{
    const QString deep = m_session->path() + u'/' + QString(90, u'd');
    QVERIFY(QDir().mkdir(deep, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    qputenv(sessionVariable, deep.toLocal8Bit());
    listen();
    QVERIFY(!StartPlace::folder().startsWith(deep));
    QCOMPARE(wordOf(*start(u"x"_s)), QByteArray("done"));
}

void tst_Starts::otherUsersAreRefused()
{
    if (::geteuid() != 0)
        QSKIP("only root can be another user");
    listen();
    const QByteArray socket = QFile::encodeName(StartPlace::socketIn(StartPlace::folder()));
    // Even where the folders let them in.
    for (QString path = QString::fromLocal8Bit(socket); path.startsWith(m_session->path());
         path = QFileInfo(path).path())
        QVERIFY(QFile::setPermissions(path, QFile::Permissions(0x7777)));
    const QByteArray bytes = StartRequest::ofThisStart({u"theirs"_s}).bytes();
    const pid_t child = ::fork();
    if (child == 0) {
        sockaddr_un address = {};
        address.sun_family = AF_UNIX;
        qstrncpy(address.sun_path, socket.constData(), sizeof address.sun_path);
        const int end = ::socket(AF_UNIX, SOCK_STREAM, 0);
        char byte = 0;
        const bool isIn = ::setuid(65534) == 0
            && ::connect(end, reinterpret_cast<sockaddr *>(&address), sizeof address) == 0;
        const bool isAnswered = isIn
            && ::send(end, bytes.constData(), size_t(bytes.size()), MSG_NOSIGNAL) > 0
            && ::recv(end, &byte, 1, 0) > 0;
        ::_exit(isIn ? int(isAnswered) : 2);
    }
    int status = 0;
    bool isOver = false;
    const auto hasEnded = [&] {
        return isOver = isOver || ::waitpid(child, &status, WNOHANG) == child;
    };
    QTRY_VERIFY_WITH_TIMEOUT(hasEnded(), 30'000);
    QCOMPARE(WEXITSTATUS(status), 0);
    QVERIFY(m_heard.isEmpty());
}

void tst_Starts::nothingStaysBehind()
{
    listen();
    const QString root = QFileInfo(StartPlace::folder()).path();
    m_listener.reset();
    QVERIFY(!QFileInfo::exists(root));
    // What a killed program left goes with the next one.
    const auto killed = start({});
    QCOMPARE(wordOf(*killed), QByteArray("first"));
    const QString socket = StartPlace::socketIn(StartPlace::folder());
    QTRY_VERIFY(QFileInfo::exists(socket));
    killed->kill();
    QVERIFY(killed->waitForFinished());
    QVERIFY(QFileInfo::exists(socket));
    listen();
    m_listener.reset();
    QVERIFY(QDir(m_session->path()).isEmpty());
    // That of another application folder is in use.
    const QTemporaryDir other;
    const auto there = start(u"x"_s, {QLatin1String(folderVariable) + u'=' + other.path()});
    QCOMPARE(wordOf(*there), QByteArray("first"));
    listen();
    m_listener.reset();
    QCOMPARE(QDir(root).count(), 3U);
}

/// While the folder goes away with one program and is made by another, never two have it.
void tst_Starts::folderThatGoesIsNobodysPlace()
{
    constexpr int rounds = 2000;
    std::atomic<int> holders = 0;
    std::atomic<int> taken = 0;
    std::atomic<int> together = 0;
    std::atomic<int> nowhere = 0;
    std::vector<std::thread> programs;
    for (int i = 0; i < 4; ++i) {
        programs.emplace_back([&] {
            for (int round = 0; round < rounds; ++round) {
                nowhere += StartPlace::folder().isEmpty() ? 1 : 0;
                const std::unique_ptr<StartPlace> place = StartPlace::take();
                if (!place)
                    continue;
                ++taken;
                together += ++holders > 1 ? 1 : 0;
                std::this_thread::yield();
                --holders;
            }
        });
    }
    for (std::thread &program : programs)
        program.join();
    QVERIFY(taken > 0);
    QCOMPARE(together, 0);
    QCOMPARE(nowhere, 0);
}

int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    if (argc > 1 && qstrcmp(argv[1], "--start") == 0)
        return runStart();
    tst_Starts test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_starts.moc"
