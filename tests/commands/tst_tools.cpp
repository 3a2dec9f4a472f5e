#include <QMdiSubWindow>
#include <QtTest>

#include "BrowserWindow.h"
#include "ProgramWithoutEngine.h"

using namespace Qt::StringLiterals;

/// What pages leave behind, and whether their script errors are shown.
class tst_Tools : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void everyMenuItemHasAHandler();
    void flagsAfterTogglingPagesToHistory_data();
    void flagsAfterTogglingPagesToHistory();
    void flagsAfterTogglingFilesToCache_data();
    void flagsAfterTogglingFilesToCache();
    void cacheOffThenHistoryOffAndOn();
    void togglesAreStoredAsBooleanText();
    void scriptErrorsAreSuppressedInEveryBrowserWindowOnly();
    void scriptErrorShortcutWorksFromTheFrame();
    void newWindowsTakeTheScriptErrorMark();

private:
    void mark(const char *name, bool on) const { m_program->item(name)->setChecked(on); }
    int flags() const { return m_program->frame->navigationFlags(); }

    std::unique_ptr<ProgramWithoutEngine> m_program;
};

void tst_Tools::init()
{
    m_program = std::make_unique<ProgramWithoutEngine>();
    QVERIFY(m_program->folder.isValid());
    m_program->start();
}

void tst_Tools::cleanup()
{
    m_program.reset();
}

namespace {
QStringList complaints;
}

void tst_Tools::everyMenuItemHasAHandler()
{
    complaints.clear();
    const QtMessageHandler before = qInstallMessageHandler(
        [](QtMsgType type, const QMessageLogContext &, const QString &message) {
            if (type == QtCriticalMsg)
                complaints.append(message);
        });
    MainWindow frame;
    registerAllCommands(frame);
    qInstallMessageHandler(before);
    QCOMPARE(complaints, QStringList());
}

void tst_Tools::flagsAfterTogglingPagesToHistory_data()
{
    QTest::addColumn<bool>("history");
    QTest::addColumn<bool>("cache");
    QTest::addColumn<int>("flags");
    QTest::newRow("both") << true << true << 0;
    QTest::newRow("neither") << false << false << 10;
    QTest::newRow("cache alone") << false << true << 2;
    QTest::newRow("history alone") << true << false << 8;
}

void tst_Tools::flagsAfterTogglingPagesToHistory()
{
    QFETCH(bool, history);
    QFETCH(bool, cache);
    mark("mnuToolsAddPagesToHistory", !history);
    mark("mnuToolsAddFilesToCache", cache);
    m_program->choose("mnuToolsAddPagesToHistory");
    QCOMPARE(m_program->isChecked("mnuToolsAddPagesToHistory"), history);
    QTEST(flags(), "flags");
}

void tst_Tools::flagsAfterTogglingFilesToCache_data()
{
    QTest::addColumn<bool>("history");
    QTest::addColumn<bool>("cache");
    QTest::addColumn<int>("flags");
    QTest::newRow("both") << true << true << 0;
    QTest::newRow("neither") << false << false << 10;
    QTest::newRow("cache alone") << false << true << 2;
    QTest::newRow("history alone") << true << false << 2;
}

void tst_Tools::flagsAfterTogglingFilesToCache()
{
    QFETCH(bool, history);
    QFETCH(bool, cache);
    mark("mnuToolsAddPagesToHistory", history);
    mark("mnuToolsAddFilesToCache", !cache);
    m_program->choose("mnuToolsAddFilesToCache");
    QCOMPARE(m_program->isChecked("mnuToolsAddFilesToCache"), cache);
    QTEST(flags(), "flags");
}

void tst_Tools::cacheOffThenHistoryOffAndOn()
{
    QCOMPARE(flags(), 0);
    m_program->choose("mnuToolsAddFilesToCache");
    QCOMPARE(flags(), 2);
    m_program->choose("mnuToolsAddPagesToHistory");
    QCOMPARE(flags(), 10);
    m_program->choose("mnuToolsAddPagesToHistory");
    QCOMPARE(flags(), 8);
}

void tst_Tools::togglesAreStoredAsBooleanText()
{
    m_program->choose("mnuToolsAddPagesToHistory");
    m_program->choose("mnuToolsAddFilesToCache");
    QCOMPARE(m_program->folder.setting(u"Settings"_s, u"AddToHistory"_s), u"False"_s);
    QCOMPARE(m_program->folder.setting(u"Settings"_s, u"AddToCache"_s), u"False"_s);
    m_program->frame->run(u"mnuToolsAddFilesToCache"_s);
    QCOMPARE(m_program->folder.setting(u"Settings"_s, u"AddToCache"_s), u"True"_s);
    QCOMPARE(flags(), 2);
}

void tst_Tools::scriptErrorsAreSuppressedInEveryBrowserWindowOnly()
{
    m_program->frame->openBrowserWindow(u"http://two/"_s, WindowState::AsOthers);
    m_program->frame->openBrowserWindow(u"http://three/"_s, WindowState::AsOthers);
    auto *source = new QMdiSubWindow;
    source->setObjectName("frmSource"_L1);
    Forms::add(source);
    m_program->frame->adopt(source);
    const QByteArray before = m_program->folder.readSettings();
    QCOMPARE(FakeWebBrowser::made().size(), 3);
    for (const bool silent : {true, false}) {
        m_program->choose("mnuToolsScriptErrorSuppress");
        QCOMPARE(m_program->isChecked("mnuToolsScriptErrorSuppress"), silent);
        for (const FakeWebBrowser *engine : FakeWebBrowser::made())
            QCOMPARE(engine->isSilent(), silent);
    }
    QCOMPARE(m_program->folder.readSettings(), before);
}

void tst_Tools::scriptErrorShortcutWorksFromTheFrame()
{
    m_program->frame->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_program->frame.get()));
    QTest::keyClick(m_program->frame.get(), Qt::Key_S, Qt::ControlModifier);
    QTRY_VERIFY(m_program->isChecked("mnuToolsScriptErrorSuppress"));
    QVERIFY(FakeWebBrowser::made().first()->isSilent());
}

void tst_Tools::newWindowsTakeTheScriptErrorMark()
{
    m_program->choose("mnuToolsScriptErrorSuppress");
    m_program->frame->openBrowserWindow(u"http://two/"_s, WindowState::AsOthers);
    QVERIFY(FakeWebBrowser::made().last()->isSilent());
}

QTEST_MAIN(tst_Tools)
#include "tst_tools.moc"
