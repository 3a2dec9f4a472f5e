// The program as a process of its own that ends in all ways, and what its next start does.
#include <QApplication>
#include <QDialog>
#include <QProcess>
#include <QPushButton>
#include <QSocketNotifier>
#include <QTreeWidget>
#include <QtTest>

#include <csignal>
#include <cstdio>
#include <iostream>
#include <string>

#include "AllCommands.h"
#include "AppFolder.h"
#include "BrowserWindow.h"
#include "DeskFile.h"
#include "DeskOffer.h"
#include "EndRequests.h"
#include "Factory.h"
#include "FakeWebBrowser.h"
#include "LastDesk.h"
#include "MainWindow.h"
#include "StartUp.h"
#include "TempAppFolder.h"

using namespace Qt::StringLiterals;

namespace {
constexpr char folderVariable[] = "ORVANE_TEST_FOLDER";

QStringList addressesOf(const QList<BrowserWindow *> &windows)
{
    QStringList result;
    for (const BrowserWindow *window : windows)
        result.append(window->browser()->locationUrl());
    // The page of the start has none here.
    result.removeAll(QString());
    return result;
}

/// Does what the test says, and answers each line with one.
class Control {
public:
    explicit Control(MainWindow &frame)
        : m_frame(frame)
    {
    }

    QString answer(const QString &command)
    {
        const QString word = command.section(u' ', 0, 0);
        const QString rest = command.section(u' ', 1);
        if (word == "new"_L1)
            openBrowserWindow(m_frame, rest, WindowState::AsOthers, Loading::Later);
        else if (word == "loading"_L1)
            openBrowserWindow(m_frame, rest, WindowState::AsOthers);
        else if (word == "windows"_L1)
            return addressesOf(browserForms()).join(u' ');
        else if (word == "awake"_L1)
            return awake().join(u' ');
        else if (word == "dialogs"_L1)
            return QString::number(m_frame.findChildren<QDialog *>().size());
        else if (word == "loads"_L1)
            return FakeWebBrowser::made().value(rest.toInt())->navigated.join(u' ');
        else if (word == "offer"_L1)
            return offered().join(u' ');
        else if (word == "untick"_L1)
            list()->topLevelItem(rest.toInt())->setCheckState(0, Qt::Unchecked);
        else if (word == "press"_L1)
            m_frame.findChild<QPushButton *>(rest)->click();
        else if (word == "pressboth"_L1)
            pressBoth(rest);
        else if (word == "loaded"_L1)
            tellLoaded();
        else if (word == "close"_L1)
            QMetaObject::invokeMethod(&m_frame, &QWidget::close, Qt::QueuedConnection);
        else
            return u"what?"_s;
        return u"ok"_s;
    }

private:
    QTreeWidget *list() const { return m_frame.findChild<QTreeWidget *>(u"lstDesk"_s); }
    QStringList offered() const
    {
        QStringList rows;
        for (int i = 0; list() && i < list()->topLevelItemCount(); ++i) {
            const QTreeWidgetItem *item = list()->topLevelItem(i);
            rows.append(item->text(1) + (item->checkState(0) == Qt::Checked ? "+"_L1 : "-"_L1));
        }
        return rows;
    }
    /// A screen reader can press what nobody sees any more.
    void pressBoth(const QString &second)
    {
        auto *button = m_frame.findChild<QPushButton *>(second);
        QMetaObject::invokeMethod(button, &QAbstractButton::click, Qt::QueuedConnection);
        m_frame.findChild<QPushButton *>(u"cmdOpen"_s)->click();
    }
    static QStringList awake()
    {
        QStringList result;
        for (const FakeWebBrowser *browser : FakeWebBrowser::made()) {
            if (!browser->location.isEmpty() && !browser->navigated.isEmpty())
                result.append(browser->location);
        }
        return result;
    }
    static void tellLoaded()
    {
        const QList<FakeWebBrowser *> all = FakeWebBrowser::made();
        for (FakeWebBrowser *browser : all)
            emit browser->loadEnded();
    }

    MainWindow &m_frame;
};

int runProgram()
{
    AppFolder::setPath(qEnvironmentVariable(folderVariable));
    FakeEngine engine;
    MainWindow frame;
    followEndRequests(frame);
    registerAllCommands(frame);
    LastDesk desk(frame);
    frame.setCommandLine(QCoreApplication::arguments().value(1));
    startUp(frame);
    desk.offer();
    Control control(frame);
    QSocketNotifier input(0, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &frame, [&control] {
        std::string line;
        if (!std::getline(std::cin, line))
            std::exit(3);
        std::puts(control.answer(QString::fromStdString(line)).toUtf8().constData());
        std::fflush(stdout);
    });
    return QCoreApplication::exec();
}
}

class tst_AfterCrash : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void firstStartOffersNothing();
    void cleanEndOffersNothing();
    void killedProgramOffersItsWindows();
    void windowWhosePageWasOnItsWayIsOffered();
    void windowsComeBackAsleepAndTheActiveOneLoads();
    void answeredAgainWhileTheyOpen_data();
    void answeredAgainWhileTheyOpen();
    void notNowKeepsTheFileAndIsNotAskedAgain();
    void windowsWithoutTickAreKeptInTheFile();
    void whatCannotBeKeptStaysInTheDesk_data();
    void whatCannotBeKeptStaysInTheDesk();
    void listThatNobodyAnsweredIsOfferedAgain();
    void listThatNobodyAnsweredIsKeptAtTheEnd();
    void homePageIsNotAddedToTheList_data();
    void homePageIsNotAddedToTheList();
    void pageThatEndsTheProgramHasNoTickTheSecondTime();
    void requestsOfTheSystemAreOffered_data();
    void requestsOfTheSystemAreOffered();
    void addressOfTheStartOpensBesides();
    void settingOpensTheDeskAtEveryStart();
    void settingOffersAllTheSameAfterACrash();
    void handEditedDeskIsHarmless();
    void deskThatCannotBeReadIsKept_data();
    void deskThatCannotBeReadIsKept();
    void deskWithoutWindowsIsNotKept();
    void twentyCrashesLoseNoWindow();

private:
    void start(const QString &address = {}, const QString &display = {});
    QString ask(const QString &command) const;
    QStringList askList(const QString &command) const
    {
        return ask(command).split(u' ', Qt::SkipEmptyParts);
    }
    QStringList stored() const;
    void open(const QStringList &addresses) const;
    void kill() const
    {
        m_program->kill();
        QVERIFY(m_program->waitForFinished());
    }
    void close() const
    {
        ask(u"close"_s);
        QTRY_COMPARE_WITH_TIMEOUT(m_program->state(), QProcess::NotRunning, 30'000);
        QCOMPARE(m_program->exitStatus(), QProcess::NormalExit);
    }
    QStringList kept() const
    {
        return QDir(m_folder->file(u"Profiles"_s)).entryList({u"Last desk (*"_s}, QDir::Files);
    }
    QStringList addressesIn(const QString &file) const;

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<QProcess> m_program;
    const QString m_one = u"http://one.test/"_s;
    const QString m_two = u"http://two.test/"_s;
    const QString m_three = u"http://three.test/"_s;
};

void tst_AfterCrash::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    m_folder->writeSettings("[Options]\r\nShow-Splash=0\r\n[Settings]\r\nAskOnExit=0\r\n"
                            "Home-URL=about:blank\r\n");
}

void tst_AfterCrash::cleanup()
{
    m_program.reset();
    m_folder.reset();
}

void tst_AfterCrash::start(const QString &address, const QString &display)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(folderVariable), m_folder->path());
    if (!display.isEmpty())
        environment.insert(u"DISPLAY"_s, display);
    m_program = std::make_unique<QProcess>();
    m_program->setProcessEnvironment(environment);
    m_program->setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_program->start(QCoreApplication::applicationFilePath(), {address});
    QVERIFY(m_program->waitForStarted());
}

QString tst_AfterCrash::ask(const QString &command) const
{
    m_program->write(command.toUtf8() + '\n');
    [this] { QTRY_VERIFY_WITH_TIMEOUT(m_program->canReadLine(), 30'000); }();
    return QString::fromUtf8(m_program->readLine()).trimmed();
}

QStringList tst_AfterCrash::addressesIn(const QString &file) const
{
    QStringList result;
    const Desk desk = DeskFile::read(m_folder->read("Profiles/"_L1 + file));
    for (const DeskWindow &window : desk.windows)
        result.append(window.address);
    return result;
}

QStringList tst_AfterCrash::stored() const
{
    return addressesIn(u"Last desk.orp"_s);
}

/// And has them written.
void tst_AfterCrash::open(const QStringList &addresses) const
{
    for (const QString &address : addresses)
        ask("new "_L1 + address);
    QTRY_COMPARE(stored(), askList(u"windows"_s));
}

void tst_AfterCrash::firstStartOffersNothing()
{
    start();
    QCOMPARE(ask(u"offer"_s), QString());
}

void tst_AfterCrash::cleanEndOffersNothing()
{
    start();
    open({m_one});
    close();
    QCOMPARE(stored(), QStringList{m_one});
    start();
    QCOMPARE(ask(u"offer"_s), QString());
    QCOMPARE(ask(u"windows"_s), QString());
    QVERIFY(kept().isEmpty());
}

void tst_AfterCrash::killedProgramOffersItsWindows()
{
    start();
    open({m_one, m_two, m_one});
    kill();
    start();
    QCOMPARE(askList(u"offer"_s), QStringList({m_one + u'+', m_two + u'+', m_one + u'+'}));
    QCOMPARE(ask(u"windows"_s), QString());
    ask(u"press cmdOpen"_s);
    QTRY_COMPARE(askList(u"windows"_s), QStringList({m_one, m_two, m_one}));
    QTRY_COMPARE(ask(u"offer"_s), QString());
    QVERIFY2(kept().isEmpty(), "all of it is open");
}

void tst_AfterCrash::windowWhosePageWasOnItsWayIsOffered()
{
    start();
    open({m_one});
    ask("loading "_L1 + m_two);
    QTRY_COMPARE(stored(), QStringList({m_one, m_two}));
    kill();
    start();
    QCOMPARE(askList(u"offer"_s), QStringList({m_one + u'+', m_two + u'+'}));
}

void tst_AfterCrash::windowsComeBackAsleepAndTheActiveOneLoads()
{
    start();
    open({m_one, m_two, m_three});
    kill();
    start();
    ask(u"press cmdOpen"_s);
    QTRY_COMPARE(askList(u"awake"_s), QStringList{m_three});
    QCOMPARE(askList(u"windows"_s), QStringList({m_one, m_two, m_three}));
}

void tst_AfterCrash::answeredAgainWhileTheyOpen_data()
{
    QTest::addColumn<QString>("second");
    QTest::newRow("Open these") << u"cmdOpen"_s;
    QTest::newRow("Not now") << u"cmdLater"_s;
}

void tst_AfterCrash::answeredAgainWhileTheyOpen()
{
    QFETCH(const QString, second);
    Desk desk;
    QStringList addresses;
    for (int i = 0; i < 300; ++i) {
        DeskWindow window;
        window.address = m_one + QString::number(i);
        addresses.append(window.address);
        desk.windows.append(window);
    }
    QVERIFY(m_folder->write(u"AppData/Running"_s, ""));
    QVERIFY(m_folder->write(u"Profiles/Last desk.orp"_s, DeskFile::text(desk)));
    start();
    ask("pressboth "_L1 + second);
    QCOMPARE(askList(u"windows"_s), addresses);
    QTRY_COMPARE(stored(), addresses);
    QVERIFY(kept().isEmpty());
    close();
}

void tst_AfterCrash::notNowKeepsTheFileAndIsNotAskedAgain()
{
    start();
    open({m_one, m_two});
    kill();
    const QByteArray left = m_folder->read(u"Profiles/Last desk.orp"_s);
    start();
    ask(u"press cmdLater"_s);
    QTRY_COMPARE(ask(u"offer"_s), QString());
    QCOMPARE(kept().size(), 1);
    QCOMPARE(m_folder->read("Profiles/"_L1 + kept().first()), left);
    QTRY_COMPARE(stored(), QStringList());
    kill();
    start();
    QCOMPARE(ask(u"offer"_s), QString());
    QCOMPARE(ask(u"windows"_s), QString());
}

void tst_AfterCrash::windowsWithoutTickAreKeptInTheFile()
{
    start();
    open({m_one, m_two});
    kill();
    start();
    ask(u"untick 0"_s);
    ask(u"press cmdOpen"_s);
    QTRY_COMPARE(askList(u"windows"_s), QStringList{m_two});
    QCOMPARE(addressesIn(kept().value(0)), QStringList({m_one, m_two}));
    QTRY_COMPARE(stored(), QStringList{m_two});
}

void tst_AfterCrash::whatCannotBeKeptStaysInTheDesk_data()
{
    QTest::addColumn<QString>("button");
    QTest::addColumn<QStringList>("desk");
    QTest::newRow("not now") << u"cmdLater"_s << QStringList{m_three, m_one, m_two};
    QTest::newRow("not all") << u"cmdOpen"_s << QStringList{m_two, m_three, m_one};
}

void tst_AfterCrash::whatCannotBeKeptStaysInTheDesk()
{
    QFETCH(QString, button);
    QFETCH(QStringList, desk);
    start();
    open({m_one, m_two});
    kill();
    // Every name that it could have is taken.
    const QDateTime time = QFileInfo(m_folder->file(u"Profiles/Last desk.orp"_s)).lastModified();
    const QString date = time.toString(u"yyyy-MM-dd HH.mm.ss"_s);
    for (int i = 1; i <= 100; ++i) {
        const QString more = i > 1 ? u' ' + QString::number(i) : QString();
        const QString name = u"Profiles/Last desk (%1%2).orp"_s.arg(date, more);
        QVERIFY(QDir().mkdir(m_folder->file(name)));
    }
    start();
    ask(u"untick 0"_s);
    ask("press "_L1 + button);
    QTRY_COMPARE(ask(u"offer"_s), QString());
    QCOMPARE(ask(u"dialogs"_s), u"1"_s);
    ask("new "_L1 + m_three);
    QTRY_COMPARE(stored(), desk);
}

void tst_AfterCrash::listThatNobodyAnsweredIsOfferedAgain()
{
    start();
    open({m_one, m_two});
    kill();
    for (int i = 0; i < 3; ++i) {
        start();
        QCOMPARE(askList(u"offer"_s), QStringList({m_one + u'+', m_two + u'+'}));
        kill();
    }
    start();
    ask("new "_L1 + m_three);
    QTRY_COMPARE(stored(), QStringList({m_three, m_one, m_two}));
    kill();
    start();
    QCOMPARE(askList(u"offer"_s), QStringList({m_three + u'+', m_one + u'+', m_two + u'+'}));
}

void tst_AfterCrash::listThatNobodyAnsweredIsKeptAtTheEnd()
{
    start();
    open({m_one, m_two});
    kill();
    start();
    QVERIFY(!ask(u"offer"_s).isEmpty());
    close();
    QCOMPARE(addressesIn(kept().value(0)), QStringList({m_one, m_two}));
    start();
    QCOMPARE(ask(u"offer"_s), QString());
}

void tst_AfterCrash::homePageIsNotAddedToTheList_data()
{
    QTest::addColumn<QString>("home");
    QTest::newRow("as the engine has it") << u"http://home.test/"_s;
    QTest::newRow("as people write it") << u"Home.Test"_s;
    QTest::newRow("with its port") << u"http://home.test:80/"_s;
    QTest::newRow("without its end") << u"http://home.test"_s;
}

/// The page that each start opens by itself, however the user has written its address.
void tst_AfterCrash::homePageIsNotAddedToTheList()
{
    QFETCH(const QString, home);
    start();
    open({m_one});
    kill();
    QVERIFY(m_folder->setSetting(u"Settings"_s, u"Home-URL"_s, home));
    start();
    ask(u"new http://home.test/"_s);
    ask("new "_L1 + m_two);
    QTRY_COMPARE(stored(), QStringList({m_two, m_one}));
    kill();
    start();
    QCOMPARE(askList(u"offer"_s), QStringList({m_two + u'+', m_one + u'+'}));
}

void tst_AfterCrash::pageThatEndsTheProgramHasNoTickTheSecondTime()
{
    start();
    open({m_one, m_two});
    kill();
    start();
    ask(u"press cmdOpen"_s);
    QTRY_COMPARE(askList(u"awake"_s), QStringList{m_two});
    QTRY_COMPARE(stored(), QStringList({m_one, m_two}));
    kill();
    start();
    QCOMPARE(askList(u"offer"_s), QStringList({m_one + u'+', m_two + u'-'}));
    // And is still known by that where nobody answers.
    kill();
    start();
    QCOMPARE(askList(u"offer"_s), QStringList({m_one + u'+', m_two + u'-'}));
    ask(u"press cmdOpen"_s);
    QTRY_COMPARE(askList(u"awake"_s), QStringList{m_one});
    ask(u"loaded"_s);
    QTRY_COMPARE(stored(), QStringList{m_one});
    kill();
    start();
    QCOMPARE(askList(u"offer"_s), QStringList{m_one + u'+'});
}

void tst_AfterCrash::requestsOfTheSystemAreOffered_data()
{
    QTest::addColumn<int>("number");
    QTest::newRow("SIGTERM") << SIGTERM;
    QTest::newRow("SIGHUP") << SIGHUP;
}

void tst_AfterCrash::requestsOfTheSystemAreOffered()
{
    QFETCH(int, number);
    start();
    ask("new "_L1 + m_one);
    QCOMPARE(::kill(pid_t(m_program->processId()), number), 0);
    QTRY_COMPARE_WITH_TIMEOUT(m_program->state(), QProcess::NotRunning, 30'000);
    QCOMPARE(m_program->exitStatus(), QProcess::NormalExit);
    start();
    QCOMPARE(askList(u"offer"_s), QStringList{m_one + u'+'});
}

void tst_AfterCrash::addressOfTheStartOpensBesides()
{
    start();
    open({m_one});
    kill();
    start(m_two);
    QCOMPARE(ask(u"loads 0"_s), m_two);
    QCOMPARE(askList(u"offer"_s), QStringList{m_one + u'+'});
    ask(u"press cmdOpen"_s);
    QTRY_COMPARE(askList(u"windows"_s), QStringList{m_one});
    QCOMPARE(ask(u"loads 0"_s), m_two);
}

void tst_AfterCrash::settingOpensTheDeskAtEveryStart()
{
    QVERIFY(m_folder->setSetting(u"Settings"_s, u"OpenLastDesk"_s, u"1"_s));
    start();
    open({m_one, m_two});
    close();
    for (int i = 0; i < 2; ++i) {
        start();
        QCOMPARE(ask(u"offer"_s), QString());
        QTRY_COMPARE(askList(u"windows"_s), QStringList({m_one, m_two}));
        QTRY_COMPARE(askList(u"awake"_s), QStringList{m_two});
        close();
    }
    QVERIFY(kept().isEmpty());
}

void tst_AfterCrash::settingOffersAllTheSameAfterACrash()
{
    QVERIFY(m_folder->setSetting(u"Settings"_s, u"OpenLastDesk"_s, u"1"_s));
    start();
    open({m_one});
    kill();
    start();
    QCOMPARE(askList(u"offer"_s), QStringList{m_one + u'+'});
    QCOMPARE(ask(u"windows"_s), QString());
}

void tst_AfterCrash::handEditedDeskIsHarmless()
{
    QVERIFY(m_folder->write(u"AppData/Running"_s, ""));
    QVERIFY(m_folder->write(
        u"Profiles/Last desk.orp"_s,
        "[Profile_URLS]\r\nURL1=http://one.test/\r\nURL2=http://two.test/\r\n"
        "[URL_Count]\r\nCount=2147483647\r\n[Window1]\r\nLeft=-999999999\r\nWidth=1e99\r\n"
        "State=77\r\nOrder=-5\r\nZoom=nan\r\nScrollY=999999999999\r\n[Frame]\r\nActive=9\r\n"));
    start();
    QCOMPARE(askList(u"offer"_s), QStringList({m_one + u'+', m_two + u'+'}));
    ask(u"press cmdOpen"_s);
    QTRY_COMPARE(askList(u"windows"_s), QStringList({m_one, m_two}));
    close();
}

void tst_AfterCrash::deskThatCannotBeReadIsKept_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("noise") << QByteArray(10'000, '\xff');
    QTest::newRow("count out of reach") << QByteArray(
        "[Profile_URLS]\r\nURL1=http://one.test/\r\n[URL_Count]\r\nCount=99999999999\r\n");
}

void tst_AfterCrash::deskThatCannotBeReadIsKept()
{
    QFETCH(QByteArray, bytes);
    QVERIFY(m_folder->write(u"Profiles/Last desk.orp"_s, bytes));
    start();
    open({m_one});
    QCOMPARE(kept().size(), 1);
    QCOMPARE(m_folder->read("Profiles/"_L1 + kept().first()), bytes);
}

void tst_AfterCrash::deskWithoutWindowsIsNotKept()
{
    Desk desk;
    desk.frame = QRect(7, 9, 901, 603);
    QVERIFY(m_folder->write(u"Profiles/Last desk.orp"_s, DeskFile::text(desk)));
    start();
    open({m_one});
    QVERIFY(kept().isEmpty());
}

void tst_AfterCrash::twentyCrashesLoseNoWindow()
{
    QStringList all;
    for (int i = 0; i < 20; ++i) {
        QProcess server;
        QString display;
        if (i % 4 == 3) {
            server.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-nolisten"_s, u"tcp"_s});
            QTRY_VERIFY_WITH_TIMEOUT(server.canReadLine(), 30'000);
            display = u':' + QString::fromLatin1(server.readLine()).trimmed();
        }
        start({}, display);
        if (i > 0) {
            QCOMPARE(askList(u"offer"_s).size(), all.size());
            ask(u"press cmdOpen"_s);
            QTRY_COMPARE(askList(u"windows"_s), all);
            QTRY_COMPARE(askList(u"awake"_s), QStringList{all.last()});
            ask(u"loaded"_s);
        }
        all.append(u"http://%1.test/"_s.arg(i));
        ask("new "_L1 + all.last());
        QTRY_COMPARE(stored(), all);
        const auto process = pid_t(m_program->processId());
        switch (i % 4) {
        case 0:
            ::kill(process, SIGKILL);
            break;
        case 1:
            ::kill(process, SIGTERM);
            break;
        case 2:
            ::kill(process, SIGSEGV);
            break;
        default:
            server.kill();
        }
        QTRY_COMPARE_WITH_TIMEOUT(m_program->state(), QProcess::NotRunning, 30'000);
        QCOMPARE(stored(), all);
    }
}

int main(int argc, char **argv)
{
    QApplication app(argc, argv);
    if (qEnvironmentVariableIsSet(folderVariable))
        return runProgram();
    tst_AfterCrash test;
    return QTest::qExec(&test, argc, argv);
}
#include "tst_aftercrash.moc"
