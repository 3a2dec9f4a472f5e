#include <QDropEvent>
#include <QLabel>
#include <QMimeData>

#include "../Session.h"
#include "Answer.h"
#include "CoolBand.h"
#include "CoolBar.h"
#include "EngineTest.h"
#include "ProgramInfo.h"
#include "Settings.h"

using namespace Qt::StringLiterals;

/// The program from its command line to its end.
class tst_StartUp : public QObject {
    Q_OBJECT

private slots:
    void init() { m_session = std::make_unique<Session>(); }
    void cleanup() { m_session.reset(); }

    void emptyCommandLineOpensTheHomePageMaximized();
    void addressOnTheCommandLineIsOpenedMaximized();
    void quotesAroundTheAddressGo_data();
    void quotesAroundTheAddressGo();
    void profileThatOpensNothingIsAnAddressInANormalWindow();
    void fileByItsNameInTheCurrentFolder();
    void profileByItsAddress();
    void splashIsShownOnlyWhenSwitchedOn_data();
    void splashIsShownOnlyWhenSwitchedOn();
    void translationComesAfterTheFirstWindow();
    void secondRunRenewsTheLanguageOnly();
    void missingHomeUrlGivesTheMakersPage();
    void noAnswerKeepsEverythingAndSavesNothing();
    void yesSavesTheBandsAndUnloadsEveryForm();
    void withoutTheQuestionTheFrameClosesAtOnce();
    void questionIsTranslated();
    void settingThatIsNoNumberAsksNothing();
    void dragShowsCopyForAProfileOnly_data();
    void dragShowsCopyForAProfileOnly();
    void brokenSettingsFileStartsAllTheSame_data();
    void brokenSettingsFileStartsAllTheSame();
    void homeAddressThatCannotBeOpenedLeavesTheFrameUsable_data();
    void homeAddressThatCannotBeOpenedLeavesTheFrameUsable();

private:
    std::unique_ptr<Session> m_session;
};

void tst_StartUp::emptyCommandLineOpensTheHomePageMaximized()
{
    m_session->start();
    QCOMPARE(m_session->windows(), 1);
    QVERIFY(m_session->active()->isMaximized());
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/home"_s)));
    QTRY_COMPARE(m_session->frame->windowTitle(), u"Orvane - [home page]"_s);
}

void tst_StartUp::addressOnTheCommandLineIsOpenedMaximized()
{
    m_session->start(m_session->server.url(u"/one"_s));
    QVERIFY(m_session->active()->isMaximized());
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/one"_s)));
    QCOMPARE(m_session->server.count("/home"), 0);
    QTRY_COMPARE(m_session->address().text(), m_session->server.url(u"/one"_s));
}

void tst_StartUp::quotesAroundTheAddressGo_data()
{
    QTest::addColumn<QString>("before");
    QTest::addColumn<QString>("after");
    QTest::newRow("both") << u"\""_s << u"\""_s;
    QTest::newRow("leading only") << u"\""_s << u""_s;
}

void tst_StartUp::quotesAroundTheAddressGo()
{
    QFETCH(QString, before);
    QFETCH(QString, after);
    m_session->start(before + m_session->server.url(u"/one"_s) + after);
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/one"_s)));
}

void tst_StartUp::profileThatOpensNothingIsAnAddressInANormalWindow()
{
    m_session->server.page("/Day.ORP", "<title>No profile</title>");
    m_session->start(m_session->server.url(u"/Day.ORP"_s));
    QVERIFY(!m_session->active()->isMaximized());
    QTRY_VERIFY2(m_session->shows(m_session->server.url(u"/Day.ORP"_s)), "its case is kept");
}

void tst_StartUp::fileByItsNameInTheCurrentFolder()
{
    m_session->folder.write(u"Profiles/my page.html"_s, "<title>My own</title>");
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(m_session->folder.file(u"Profiles"_s)));
    m_session->start(u"my page.html"_s);
    QDir::setCurrent(before);
    QTRY_COMPARE(m_session->active()->windowTitle(), u"My own"_s);
    QCOMPARE(m_session->windows(), 1);
}

void tst_StartUp::profileByItsAddress()
{
    const QByteArray one = m_session->server.url(u"/one"_s).toUtf8();
    const QByteArray two = m_session->server.url(u"/two"_s).toUtf8();
    m_session->folder.write(u"Profiles/my day.orp"_s,
                            "[Profile_URLS]\r\nURL1=" + one + "\r\nURL2=" + two
                                + "\r\n[URL_Count]\r\nCount=2\r\n");
    const QUrl address = QUrl::fromLocalFile(m_session->folder.file(u"Profiles/my day.orp"_s));
    m_session->start(address.toString(QUrl::FullyEncoded));
    QCOMPARE(m_session->windows(), 2);
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/two"_s)));
}

void tst_StartUp::splashIsShownOnlyWhenSwitchedOn_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("shown");
    QTest::newRow("on") << QByteArray("1") << true;
    QTest::newRow("off") << QByteArray("0") << false;
    QTest::newRow("another number") << QByteArray("2") << false;
    QTest::newRow("True is no number") << QByteArray("True") << false;
}

void tst_StartUp::splashIsShownOnlyWhenSwitchedOn()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, shown);
    m_session->folder.setSetting(u"Options"_s, u"Show-Splash"_s, QString::fromLatin1(value));
    m_session->start();
    QCOMPARE(!Forms::named("frmSplash").isEmpty(), shown);
    QVERIFY2(m_session->windows() == 1, "the splash holds nothing up");
    if (shown)
        QTRY_VERIFY_WITH_TIMEOUT(Forms::named("frmSplash").isEmpty(), 6000);
}

void tst_StartUp::translationComesAfterTheFirstWindow()
{
    m_session->folder.setSetting(u"Options"_s, u"Language"_s, u"Deutsch"_s);
    m_session->folder.writeLanguage(u"Deutsch"_s,
                                    "[frmMain]\r\nmnuFileOpen=&Aufmachen\r\nlblAddress=Adresse:\r\n"
                                    "[frmMain-Toolbar]\r\nBack=Zur\xc3\xbc"
                                    "ck\r\n");
    m_session->start();
    QCOMPARE(m_session->item("mnuFileOpen")->text(), u"&Aufmachen"_s);
    QCOMPARE(m_session->item("mnuFile")->text(), u"&File"_s);
    QCOMPARE(m_session->frame->findChild<CoolBar *>()->band(u"Address"_s)->caption(),
             u"Adresse:"_s);
}

void tst_StartUp::secondRunRenewsTheLanguageOnly()
{
    m_session->start();
    m_session->folder.writeLanguage(u"Deutsch"_s, "[frmMain]\r\nmnuFileOpen=&Aufmachen\r\n");
    m_session->folder.setSetting(u"Options"_s, u"Language"_s, u"Deutsch"_s);
    startUp(*m_session->frame);
    QCOMPARE(m_session->item("mnuFileOpen")->text(), u"&Aufmachen"_s);
    QCOMPARE(m_session->windows(), 1);
    QCOMPARE(Forms::named("frmMain").size(), 1);
}

void tst_StartUp::missingHomeUrlGivesTheMakersPage()
{
    m_session->folder.writeSettings("[Options]\r\nShow-Splash=0\r\n[Settings]\r\nAskOnExit=0\r\n");
    m_session->start();
    QCOMPARE(m_session->active()->windowTitle(), ProgramInfo::homeUrl());
    QCOMPARE(m_session->address().text(), ProgramInfo::homeUrl());
}

void tst_StartUp::noAnswerKeepsEverythingAndSavesNothing()
{
    m_session->folder.setSetting(u"Settings"_s, u"AskOnExit"_s, u"1"_s);
    m_session->start();
    const QByteArray before = m_session->folder.readSettings();
    Answer no(QMessageBox::No);
    m_session->choose("mnuFileExit");
    QCOMPARE(no.count(), 1);
    QCOMPARE(no.text(), u"Are you sure you wish to exit Orvane?"_s);
    QVERIFY(m_session->frame->isVisible());
    QCOMPARE(m_session->windows(), 1);
    QCOMPARE(m_session->folder.readSettings(), before);
}

void tst_StartUp::yesSavesTheBandsAndUnloadsEveryForm()
{
    m_session->folder.setSetting(u"Settings"_s, u"AskOnExit"_s, u"1"_s);
    m_session->start();
    m_session->choose("mnuFileNewBlankPage");
    Answer yes(QMessageBox::Yes);
    QVERIFY(m_session->frame->close());
    QCOMPARE(yes.count(), 1);
    QVERIFY(!m_session->frame->isVisible());
    QVERIFY(Forms::all().isEmpty());
    QVERIFY(!m_session->folder.setting(u"ToolBar"_s, u"Width1"_s).isEmpty());
    QCOMPARE(m_session->folder.setting(u"ToolBar"_s, u"NewRow3"_s), u"True"_s);
}

void tst_StartUp::withoutTheQuestionTheFrameClosesAtOnce()
{
    m_session->start();
    Answer no(QMessageBox::No);
    QVERIFY(m_session->frame->close());
    QCOMPARE(no.count(), 0);
}

void tst_StartUp::questionIsTranslated()
{
    m_session->folder.setSetting(u"Settings"_s, u"AskOnExit"_s, u"1"_s);
    m_session->folder.writeLanguage(u"English"_s, "[frmMain]\r\nalertExit=Wirklich raus aus\r\n");
    m_session->start();
    Answer no(QMessageBox::No);
    QVERIFY(!m_session->frame->close());
    QCOMPARE(no.text(), u"Wirklich raus aus Orvane?"_s);
}

void tst_StartUp::settingThatIsNoNumberAsksNothing()
{
    m_session->folder.setSetting(u"Settings"_s, u"AskOnExit"_s, u"True"_s);
    m_session->start();
    Answer no(QMessageBox::No);
    QVERIFY(m_session->frame->close());
    QCOMPARE(no.count(), 0);
}

void tst_StartUp::dragShowsCopyForAProfileOnly_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("copy");
    QTest::newRow("profile") << u"day.orp"_s << true;
    QTest::newRow("upper case") << u"DAY.ORP"_s << true;
    QTest::newRow("another file") << u"day.txt"_s << false;
    QTest::newRow("folder") << u"days"_s << false;
}

void tst_StartUp::dragShowsCopyForAProfileOnly()
{
    QFETCH(QString, name);
    QFETCH(bool, copy);
    m_session->start();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(m_session->folder.file(name))});
    QDragEnterEvent enter({5, 5}, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(m_session->frame.get(), &enter);
    QCOMPARE(enter.isAccepted(), copy);
    if (copy)
        QCOMPARE(enter.dropAction(), Qt::CopyAction);
}

void tst_StartUp::brokenSettingsFileStartsAllTheSame_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QByteArray random;
    for (int i = 0; i < 200000; ++i)
        random.append(char(quint32(i) * 2654435761U >> 13));
    QTest::newRow("random bytes") << random;
    QTest::newRow("a NUL") << QByteArray("[Options]\r\nShow\0Splash=0\r\n", 26);
    QTest::newRow("a line of a million")
        << QByteArray("[Options]\r\nX=") + QByteArray(1000000, 'y');
    QTest::newRow("10 MB") << QByteArray("[Options]\r\nX=y\r\n").repeated(700000);
}

void tst_StartUp::brokenSettingsFileStartsAllTheSame()
{
    QFETCH(QByteArray, bytes);
    m_session->folder.writeSettings(bytes);
    m_session->start(m_session->server.url(u"/one"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/one"_s)));
}

void tst_StartUp::homeAddressThatCannotBeOpenedLeavesTheFrameUsable_data()
{
    QTest::addColumn<QString>("home");
    QTest::newRow("nothing") << QString();
    QTest::newRow("blanks") << u"\"   \""_s;
    QTest::newRow("javascript") << u"javascript:document.title='x'"_s;
    QTest::newRow("missing file") << u"/no/such/file.html"_s;
    QTest::newRow("silent host") << u"silent"_s;
    QTest::newRow("stalling host") << u"stall"_s;
    QTest::newRow("redirect loop") << u"loop"_s;
}

void tst_StartUp::homeAddressThatCannotBeOpenedLeavesTheFrameUsable()
{
    QFETCH(QString, home);
    TestServer &server = m_session->server;
    TestServer::Reply silent;
    silent.silent = true;
    server.reply("/silent", silent);
    TestServer::Reply stall;
    stall.stallAfterHeaders = true;
    server.reply("/stall", stall);
    server.redirect("/loop", "/loop");
    if (!home.isEmpty() && !home.contains(u'/') && !home.contains(u':') && !home.contains(u' '))
        home = server.url(u'/' + home);
    m_session->folder.setSetting(u"Settings"_s, u"Home-URL"_s, home);
    m_session->start();
    QCOMPARE(m_session->windows(), 1);
    m_session->typeAddress(server.url(u"/one"_s));
    QTRY_VERIFY(m_session->shows(server.url(u"/one"_s)));
}

ORVANE_ENGINE_TEST_MAIN(tst_StartUp)
#include "tst_startup.moc"
