// What pages of the program as it is built are told of the colours of the desktop.
#include <QProcess>
#include <QtTest>

#include "BuiltProgram.h"
#include "DesktopSession.h"
#include "TestServer.h"

using namespace Qt::StringLiterals;

namespace {
constexpr char page[] =
    "<script>fetch(matchMedia('(prefers-color-scheme: dark)').matches ? '/dark' : '/light')"
    "</script>";
}

class tst_DarkPages : public QObject {
    Q_OBJECT

private slots:
    void pagesAreToldAtTheStart_data();
    void pagesAreToldAtTheStart();
};

void tst_DarkPages::pagesAreToldAtTheStart_data()
{
    QTest::addColumn<uint>("scheme");
    QTest::addColumn<bool>("follows");
    QTest::addColumn<bool>("expected");
    QTest::newRow("dark") << 1U << true << true;
    QTest::newRow("light") << 2U << true << false;
    QTest::newRow("dark, but not for pages") << 1U << false << false;
}

void tst_DarkPages::pagesAreToldAtTheStart()
{
    QFETCH(uint, scheme);
    QFETCH(bool, follows);
    QFETCH(bool, expected);
    DesktopSession session;
    QVERIFY(session.isRunning());
    session.colours.scheme = scheme;
    session.setColouring(true);
    TestServer server;
    server.page("/home", page);
    server.page("/dark", "");
    server.page("/light", "");
    BuiltProgram program(QStringLiteral(ORVANE_PROGRAM), server.url(u"/home"_s));
    QVERIFY(program.write(u"AppData/Settings.ini"_s,
                          program.read(u"AppData/Settings.ini"_s)
                              + (follows ? "" : "PagesFollowColours=0\r\n")));
    program.start();
    QTRY_VERIFY_WITH_TIMEOUT(server.count("/dark") + server.count("/light") > 0, 60'000);
    QCOMPARE(server.count("/dark") > 0, expected);
    QVERIFY(session.colours.asked > 0);
}

QTEST_GUILESS_MAIN(tst_DarkPages)
#include "tst_darkpages.moc"
