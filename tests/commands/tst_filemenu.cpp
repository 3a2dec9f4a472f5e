#include "FakeWebBrowser.h"
#include "Session.h"

using namespace Qt::StringLiterals;

/// The File menu's page commands with a counting engine.
class tst_FileMenu : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void pageCommands_data();
    void pageCommands();
    void aPageThatRefusesGivesNoMessage();
    void enabling();
    void withoutAWindowNothingHappens();
    void clipboardTextIsOpenedAsItIs();
    void printHasItsShortcut();

private:
    FakeWebBrowser &page() const
    {
        return *static_cast<FakeWebBrowser *>(m_session->active()->browser());
    }
    /// What the page was asked to do; menus that get ready also ask it for its zoom.
    QList<FakeWebBrowser::Exec> calls() const
    {
        QList<FakeWebBrowser::Exec> result = page().executed;
        result.removeIf(
            [](const FakeWebBrowser::Exec &call) { return call.command == OleCmd::Zoom; });
        return result;
    }
    void closeEveryWindow()
    {
        m_session->choose("mnuFileCloseAll");
        QTRY_COMPARE(m_session->windows(), 0);
    }

    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<Session> m_session;
};

void tst_FileMenu::init()
{
    m_engine = std::make_unique<FakeEngine>();
    m_session = std::make_unique<Session>();
    m_session->start(u"http://one/"_s);
}

void tst_FileMenu::cleanup()
{
    m_session.reset();
    m_engine.reset();
}

void tst_FileMenu::pageCommands_data()
{
    QTest::addColumn<QByteArray>("item");
    QTest::addColumn<int>("command");
    QTest::addColumn<bool>("four");
    QTest::newRow("save as") << QByteArray("mnuFileSaveAs") << 4 << true;
    QTest::newRow("print") << QByteArray("mnuFilePrint") << 6 << false;
    QTest::newRow("print preview") << QByteArray("mnuFilePrintPreview") << 7 << true;
    QTest::newRow("page set-up") << QByteArray("mnuFilePageSetup") << 8 << true;
    QTest::newRow("properties") << QByteArray("mnuFileProperties") << 10 << true;
}

void tst_FileMenu::pageCommands()
{
    QFETCH(QByteArray, item);
    QFETCH(int, command);
    QFETCH(bool, four);
    m_session->choose(item.constData());
    QCOMPARE(calls().size(), 1);
    const FakeWebBrowser::Exec call = calls().first();
    QCOMPARE(int(call.command), command);
    QCOMPARE(call.option, OleExecOpt::Default);
    QCOMPARE(call.hasIn, four);
    QCOMPARE(call.hasOut, four);
    if (four) {
        QCOMPARE(call.in.metaType(), QMetaType::fromType<qint16>());
        QCOMPARE(call.in.toInt(), 0);
    }
}

void tst_FileMenu::aPageThatRefusesGivesNoMessage()
{
    page().succeeds = false;
    m_session->choose("mnuFilePrint");
    QCOMPARE(calls().size(), 1);
    QVERIFY(!QApplication::activeModalWidget());
}

void tst_FileMenu::enabling()
{
    const char *items[] = {"mnuFileSaveAs",   "mnuFileProfilesSave", "mnuFileClose",
                           "mnuFileCloseAll", "mnuFileProperties",   "mnuFilePageSetup",
                           "mnuFilePrint",    "mnuFilePrintPreview"};
    for (const char *item : items)
        QVERIFY2(m_session->item(item)->isEnabled(), item);
    closeEveryWindow();
    for (const char *item : items)
        QTRY_VERIFY2(!m_session->item(item)->isEnabled(), item);
}

void tst_FileMenu::withoutAWindowNothingHappens()
{
    closeEveryWindow();
    for (const char *item : {"mnuFileSaveAs", "mnuFileProperties", "mnuFilePageSetup",
                             "mnuFilePrint", "mnuFilePrintPreview"})
        m_session->frame->run(QLatin1String(item));
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(Forms::all().size(), 1);
}

void tst_FileMenu::clipboardTextIsOpenedAsItIs()
{
    QApplication::clipboard()->setText(u"  one two \t"_s);
    m_session->choose("mnuFileNewFromClipboard");
    QCOMPARE(m_session->windows(), 2);
    QCOMPARE(page().navigated, QStringList(u"  one two \t"_s));
}

void tst_FileMenu::printHasItsShortcut()
{
    m_session->frame->activateWindow();
    QTRY_VERIFY(m_session->frame->isActiveWindow());
    QTest::keyClick(m_session->frame.get(), Qt::Key_P, Qt::ControlModifier);
    QTest::keyClick(m_session->frame.get(), Qt::Key_I, Qt::ControlModifier);
    QCOMPARE(calls().size(), 2);
    QCOMPARE(calls().at(0).command, OleCmd::Print);
    QCOMPARE(calls().at(1).command, OleCmd::Properties);
}

QTEST_MAIN(tst_FileMenu)
#include "tst_filemenu.moc"
