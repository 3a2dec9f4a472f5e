// The program as it is built, started while it runs.
#include <QProcess>
#include <QtTest>

#include <csignal>

#include "BuiltProgram.h"
#include "TestServer.h"

using namespace Qt::StringLiterals;

class tst_LaterStarts : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void addressOpensInTheFrameThatIsThere();
    void withoutAnArgumentTheHomePageOpens();
    void fileIsFoundFromTheFolderOfTheStart();
    void profileIsFoundFromTheFolderOfTheStart();
    void startsAtOnceShareOneFrame();
    void openDialogHoldsNobodyUp();
    void noDisplayIsNeeded();
    void programThatHangsLeavesThePageToAFrameOfItsOwn();
    void startAfterTheEndKeepsItsCookies();
    void optionsOfTheToolkitAreForAStartOfItsOwn();
    void privateStartOpensAPrivateWindow();
    void privateStartIsHandedOver();

private:
    QProcess &running(const QStringList &arguments = {});
    bool endsWell(QProcess &process) const;
    QByteArray history() const { return m_program->read(u"AppData/History.txt"_s); }

    std::unique_ptr<TestServer> m_server;
    std::unique_ptr<BuiltProgram> m_program;
};

void tst_LaterStarts::init()
{
    m_server = std::make_unique<TestServer>();
    for (const char *path : {"/home", "/one", "/two", "/three"})
        m_server->page(path, "<title>page</title>");
    m_program =
        std::make_unique<BuiltProgram>(QStringLiteral(ORVANE_PROGRAM), m_server->url(u"/home"_s));
}

void tst_LaterStarts::cleanup()
{
    m_program.reset();
    m_server.reset();
}

/// With its first page.
QProcess &tst_LaterStarts::running(const QStringList &arguments)
{
    QProcess &program = m_program->start(arguments);
    [this] { QTRY_COMPARE_WITH_TIMEOUT(m_server->count("/home"), 1, 60'000); }();
    return program;
}

bool tst_LaterStarts::endsWell(QProcess &process) const
{
    const bool hasEnded =
        QTest::qWaitFor([&process] { return process.state() == QProcess::NotRunning; }, 60'000);
    return hasEnded && process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

void tst_LaterStarts::addressOpensInTheFrameThatIsThere()
{
    const QProcess &program = running();
    QVERIFY(endsWell(m_program->start({m_server->url(u"/one"_s)})));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->count("/one"), 1, 30'000);
    QCOMPARE(program.state(), QProcess::Running);
    QCOMPARE(m_server->count("/home"), 1);
}

void tst_LaterStarts::withoutAnArgumentTheHomePageOpens()
{
    running();
    QVERIFY(endsWell(m_program->start()));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->count("/home"), 2, 30'000);
}

void tst_LaterStarts::fileIsFoundFromTheFolderOfTheStart()
{
    running();
    QVERIFY(m_program->write(u"work/my page.html"_s, "<title>My own</title>"));
    QVERIFY(endsWell(m_program->start({u"my page.html"_s})));
    const auto isShown = [] {
        return QProcess::execute(u"xdotool"_s,
                                 {u"search"_s, u"--onlyvisible"_s, u"--name"_s, u"My own"_s})
            == 0;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isShown(), 30'000);
}

void tst_LaterStarts::profileIsFoundFromTheFolderOfTheStart()
{
    running();
    QVERIFY(m_program->write(u"work/Day.orp"_s,
                             "[Profile_URLS]\r\nURL1=" + m_server->url(u"/one"_s).toUtf8()
                                 + "\r\nURL2=" + m_server->url(u"/two"_s).toUtf8()
                                 + "\r\n[URL_Count]\r\nCount=2\r\n"));
    QVERIFY(endsWell(m_program->start({u"Day.orp"_s})));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->count("/one"), 1, 30'000);
    QTRY_COMPARE_WITH_TIMEOUT(m_server->count("/two"), 1, 30'000);
}

void tst_LaterStarts::startsAtOnceShareOneFrame()
{
    QStringList paths;
    for (int i = 0; i < 12; ++i)
        paths.append(u"/at-once/"_s + QString::number(i));
    QList<QProcess *> starts;
    for (const QString &path : std::as_const(paths))
        starts.append(&m_program->start({m_server->url(path)}));
    for (const QString &path : std::as_const(paths))
        QTRY_COMPARE_WITH_TIMEOUT(m_server->count(path.toLatin1()), 1, 60'000);
    const auto isLeft = [](const QProcess *start) { return start->state() == QProcess::Running; };
    QTRY_COMPARE(std::count_if(starts.cbegin(), starts.cend(), isLeft), 1);
}

void tst_LaterStarts::openDialogHoldsNobodyUp()
{
    QVERIFY(m_program->write(u"AppData/Settings.ini"_s,
                             "[Options]\r\nShow-Splash=0\r\n[Settings]\r\nAskOnExit=1\r\nHome-URL="
                                 + m_server->url(u"/home"_s).toUtf8() + "\r\n"));
    const QProcess &program = running();
    QProcess close;
    close.start(u"xdotool"_s,
                {u"search"_s, u"--sync"_s, u"--onlyvisible"_s, u"--pid"_s,
                 QString::number(program.processId()), u"--name"_s, u"Orvane"_s,
                 u"windowactivate"_s, u"--sync"_s, u"key"_s, u"alt+F4"_s});
    QVERIFY(close.waitForFinished(30'000));
    const auto questions = [&program] {
        QProcess search;
        search.start(u"xdotool"_s,
                     {u"search"_s, u"--all"_s, u"--onlyvisible"_s, u"--pid"_s,
                      QString::number(program.processId()), u"--name"_s, QString()});
        search.waitForFinished();
        return search.readAll().count('\n');
    };
    QTRY_COMPARE_WITH_TIMEOUT(questions(), 2, 30'000);
    QVERIFY(endsWell(m_program->start({m_server->url(u"/one"_s)})));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->count("/one"), 1, 30'000);
    QCOMPARE(questions(), 2);
}

void tst_LaterStarts::noDisplayIsNeeded()
{
    running();
    m_program->setVariable(u"DISPLAY"_s, {});
    m_program->setVariable(u"QT_QPA_PLATFORM"_s, {});
    QVERIFY(endsWell(m_program->start({m_server->url(u"/one"_s)})));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->count("/one"), 1, 30'000);
}

void tst_LaterStarts::programThatHangsLeavesThePageToAFrameOfItsOwn()
{
    const QProcess &program = running();
    QCOMPARE(::kill(pid_t(program.processId()), SIGSTOP), 0);
    const QProcess &other = m_program->start({m_server->url(u"/one"_s)});
    QTRY_COMPARE_WITH_TIMEOUT(m_server->count("/one"), 1, 60'000);
    QCOMPARE(other.state(), QProcess::Running);
    // What it was not told in time it does not do later.
    QCOMPARE(::kill(pid_t(program.processId()), SIGCONT), 0);
    QVERIFY(endsWell(m_program->start({m_server->url(u"/two"_s)})));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->count("/two"), 1, 30'000);
    QCOMPARE(m_server->count("/one"), 1);
}

void tst_LaterStarts::startAfterTheEndKeepsItsCookies()
{
    m_server->handle("/home", [](const TestServer::Request &) {
        TestServer::Reply reply;
        reply.headers.append(
            qMakePair(QByteArray("Set-Cookie"), QByteArray("kept=yes; Max-Age=3600")));
        return reply;
    });
    QProcess &program = running();
    QVERIFY(endsWell(m_program->start({m_server->url(u"/one"_s)})));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->count("/one"), 1, 30'000);
    QCOMPARE(m_server->requests("/one").value(0).headers.value("cookie"), QByteArray("kept=yes"));
    program.terminate();
    QVERIFY(endsWell(program));
    m_program->start({m_server->url(u"/two"_s)});
    QTRY_COMPARE_WITH_TIMEOUT(m_server->count("/two"), 1, 60'000);
    QCOMPARE(m_server->requests("/two").value(0).headers.value("cookie"), QByteArray("kept=yes"));
}

void tst_LaterStarts::optionsOfTheToolkitAreForAStartOfItsOwn()
{
    running();
    const QProcess &other = m_program->start({u"-style"_s, u"fusion"_s, m_server->url(u"/one"_s)});
    QTRY_COMPARE_WITH_TIMEOUT(m_server->count("/one"), 1, 60'000);
    QCOMPARE(other.state(), QProcess::Running);
}

/// Alone: the home page is not opened beside it, and nothing of it is kept.
void tst_LaterStarts::privateStartOpensAPrivateWindow()
{
    m_program->start({u"--private"_s, m_server->url(u"/one"_s)});
    QTRY_COMPARE_WITH_TIMEOUT(m_server->count("/one"), 1, 60'000);
    QVERIFY(endsWell(m_program->start({m_server->url(u"/two"_s)})));
    QTRY_VERIFY_WITH_TIMEOUT(history().contains("/two"), 30'000);
    QVERIFY2(!history().contains("/one"), history().constData());
    QCOMPARE(m_server->count("/home"), 0);
}

void tst_LaterStarts::privateStartIsHandedOver()
{
    running();
    QVERIFY(endsWell(m_program->start({u"--private"_s, m_server->url(u"/one"_s)})));
    QTRY_COMPARE_WITH_TIMEOUT(m_server->count("/one"), 1, 30'000);
    QVERIFY(endsWell(m_program->start({m_server->url(u"/two"_s)})));
    QTRY_VERIFY_WITH_TIMEOUT(history().contains("/two"), 30'000);
    QVERIFY2(!history().contains("/one"), history().constData());
    // A blank one.
    QVERIFY(endsWell(m_program->start({u"--private"_s})));
    QCOMPARE(m_server->count("/home"), 1);
}

QTEST_GUILESS_MAIN(tst_LaterStarts)
#include "tst_laterstarts.moc"
