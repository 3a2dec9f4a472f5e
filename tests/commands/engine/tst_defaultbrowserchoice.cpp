// Orvane as the desktop's browser: asked once and never again, and a button in the options.
#include "../EngineSession.h"
#include "Answer.h"
#include "DefaultBrowserChoice.h"
#include "EngineTest.h"
#include "FakeBrowserTool.h"
#include "ProgramInfo.h"
#include "Settings.h"

using namespace Qt::StringLiterals;

class tst_DefaultBrowserChoice : public QObject, private EngineSession {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void isAskedOnce_data();
    void isAskedOnce();
    void isNotAskedWhereItIsSo_data();
    void isNotAskedWhereItIsSo();
    void isNotAskedWhereTheAnswerCannotBeKept();
    void failureIsTold();
    void buttonMakesIt();
    void buttonWithNothingToDo_data();
    void buttonWithNothingToDo();

private:
    /// Answers "no" until it was set.
    bool anotherBrowser() const
    {
        const QByteArray mark = QFile::encodeName(m_tool->log()) + ".set";
        return m_tool->does("case $1 in set) touch '" + mark + "';; check) test -e '" + mark
                            + "' && echo yes || echo no;; esac");
    }
    QByteArray line(const char *verb) const
    {
        return verb + QByteArray(" default-web-browser ") + ProgramInfo::desktopEntry().toUtf8()
            + ".desktop\n";
    }
    QPushButton *button() const
    {
        return Forms::named("frmOptions").first()->findChild<QPushButton *>(u"cmdDefaultBrowser"_s);
    }

    std::unique_ptr<FakeBrowserTool> m_tool;
};

void tst_DefaultBrowserChoice::init()
{
    begin();
    m_tool = std::make_unique<FakeBrowserTool>();
    QVERIFY(m_tool->install(ProgramInfo::desktopEntry()));
    QVERIFY(anotherBrowser());
    start();
}

void tst_DefaultBrowserChoice::cleanup()
{
    finish();
    m_tool.reset();
}

void tst_DefaultBrowserChoice::isAskedOnce_data()
{
    QTest::addColumn<QMessageBox::StandardButton>("pressed");
    QTest::addColumn<bool>("isSet");
    QTest::newRow("yes") << QMessageBox::Yes << true;
    QTest::newRow("no") << QMessageBox::No << false;
}

void tst_DefaultBrowserChoice::isAskedOnce()
{
    QFETCH(const QMessageBox::StandardButton, pressed);
    QFETCH(const bool, isSet);
    DefaultBrowserChoice::askOnce(*m_session->frame);
    // It takes no key and no click for half a second.
    const Answer answer(pressed);
    QTRY_COMPARE(answer.count(), 1);
    QVERIFY(answer.text().contains("web addresses of other programs"_L1));
    QCOMPARE(Settings::defaultBrowserAsked.read(), std::optional(true));
    QTRY_VERIFY(!QApplication::activeModalWidget());
    if (isSet)
        QTRY_COMPARE(m_tool->called(), line("check") + line("set"));
    const QByteArray before = m_tool->called();
    QVERIFY(before.contains("set ") == isSet);
    DefaultBrowserChoice::askOnce(*m_session->frame);
    // What it would do comes before what is done after it.
    bool isOver = false;
    QProcess after;
    connect(&after, &QProcess::finished, this, [&isOver] { isOver = true; });
    after.start(u"sh"_s, {u"-c"_s, u"true"_s});
    QTRY_VERIFY(isOver);
    QCOMPARE(m_tool->called(), before);
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_DefaultBrowserChoice::isNotAskedWhereItIsSo_data()
{
    QTest::addColumn<QByteArray>("commands");
    QTest::newRow("is it already") << QByteArray("echo yes");
    QTest::newRow("nobody knows") << QByteArray("exit 2");
}

/// Then it may be asked another time.
void tst_DefaultBrowserChoice::isNotAskedWhereItIsSo()
{
    QFETCH(const QByteArray, commands);
    QVERIFY(m_tool->does(commands + "; echo done >>'" + QFile::encodeName(m_tool->log()) + "'"));
    DefaultBrowserChoice::askOnce(*m_session->frame);
    QTRY_VERIFY(m_tool->called().startsWith(line("check")));
    m_session->choose("mnuToolsOptions");
    // The button asks the same after it.
    QTRY_COMPARE(m_tool->called().count("check"), 2);
    QVERIFY(!qobject_cast<QMessageBox *>(QApplication::activeModalWidget()));
    QCOMPARE(Settings::defaultBrowserAsked.read(), std::optional(false));
    Forms::named("frmOptions").first()->close();
}

/// He would be asked at each start.
void tst_DefaultBrowserChoice::isNotAskedWhereTheAnswerCannotBeKept()
{
    QVERIFY(QFile::remove(m_session->folder.settingsFile()));
    QVERIFY(QDir().mkpath(m_session->folder.settingsFile()));
    DefaultBrowserChoice::askOnce(*m_session->frame);
    QTRY_VERIFY(!m_tool->called().isEmpty());
    m_session->choose("mnuToolsOptions");
    QTRY_VERIFY(button()->isEnabled());
    QVERIFY(!qobject_cast<QMessageBox *>(QApplication::activeModalWidget()));
    Forms::named("frmOptions").first()->close();
}

void tst_DefaultBrowserChoice::failureIsTold()
{
    QVERIFY(m_tool->does("case $1 in set) exit 4;; check) echo no;; esac"));
    DefaultBrowserChoice::askOnce(*m_session->frame);
    const Answer yes(QMessageBox::Yes);
    QTRY_COMPARE(yes.count(), 1);
    const Answer ok(QMessageBox::Ok);
    QTRY_COMPARE(ok.count(), 1);
    QVERIFY(ok.text().contains("did not take Orvane"_L1));
}

void tst_DefaultBrowserChoice::buttonMakesIt()
{
    m_session->choose("mnuToolsOptions");
    QVERIFY(!button()->isEnabled());
    QTRY_VERIFY(button()->isEnabled());
    QTest::mouseClick(button(), Qt::LeftButton);
    QVERIFY(!button()->isEnabled());
    QTRY_COMPARE(m_tool->called(), line("check") + line("set") + line("check"));
    QTRY_VERIFY(button()->toolTip().contains("is the default browser"_L1));
    QVERIFY(!button()->isEnabled());
    Forms::named("frmOptions").first()->close();
}

void tst_DefaultBrowserChoice::buttonWithNothingToDo_data()
{
    QTest::addColumn<QByteArray>("commands");
    QTest::addColumn<QString>("toolTip");
    QTest::newRow("is it already") << QByteArray("echo yes") << u"Orvane is the default browser."_s;
    QTest::newRow("nobody knows") << QByteArray("exit 2") << QString();
}

void tst_DefaultBrowserChoice::buttonWithNothingToDo()
{
    QFETCH(const QByteArray, commands);
    QFETCH(const QString, toolTip);
    QVERIFY(m_tool->does(commands));
    m_session->choose("mnuToolsOptions");
    QTRY_VERIFY(!m_tool->called().isEmpty());
    QTRY_COMPARE(button()->toolTip(), toolTip);
    QVERIFY(!button()->isEnabled());
    Forms::named("frmOptions").first()->close();
}

ORVANE_ENGINE_TEST_MAIN(tst_DefaultBrowserChoice)
#include "tst_defaultbrowserchoice.moc"
