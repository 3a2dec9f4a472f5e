// What the desktop's own tool says of its browser, and is told, whatever that tool does.
#include "DefaultBrowser.h"
#include "FakeBrowserTool.h"
#include "ProgramInfo.h"

#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QTest>
#include <optional>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(DefaultBrowser::Is)

class tst_DefaultBrowser : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void finds_data();
    void finds();
    void isAskedOfTheEntry();
    void withoutTheEntryNobodyIsAsked();
    void withoutTheTool();
    void toolThatHangs();
    void receiverThatGoes();
    void makes_data();
    void makes();

private:
    std::optional<DefaultBrowser::Is> found()
    {
        auto result = std::make_shared<std::optional<DefaultBrowser::Is>>();
        DefaultBrowser::find(this, [result](DefaultBrowser::Is is) { *result = is; });
        [&] { QTRY_VERIFY(*result); }();
        return *result;
    }

    std::unique_ptr<FakeBrowserTool> m_tool;
};

void tst_DefaultBrowser::init()
{
    m_tool = std::make_unique<FakeBrowserTool>();
}

void tst_DefaultBrowser::cleanup()
{
    m_tool.reset();
}

void tst_DefaultBrowser::finds_data()
{
    using enum DefaultBrowser::Is;
    QTest::addColumn<QByteArray>("commands");
    QTest::addColumn<DefaultBrowser::Is>("is");
    QTest::newRow("this one") << QByteArray("echo yes") << Orvane;
    QTest::newRow("another") << QByteArray("echo no") << Another;
    QTest::newRow("no desktop") << QByteArray("echo 'unknown desktop' >&2; exit 2") << Unknown;
    QTest::newRow("killed") << QByteArray("echo yes; kill -9 $$") << Unknown;
    QTest::newRow("much talk") << QByteArray("yes | head -c 1000000") << Another;
}

void tst_DefaultBrowser::finds()
{
    QFETCH(const QByteArray, commands);
    QFETCH(const DefaultBrowser::Is, is);
    QVERIFY(m_tool->install(ProgramInfo::desktopEntry()));
    QVERIFY(m_tool->does(commands));
    QCOMPARE(found(), std::optional(is));
}

void tst_DefaultBrowser::isAskedOfTheEntry()
{
    QVERIFY(m_tool->install(ProgramInfo::desktopEntry()));
    QVERIFY(m_tool->does("echo no"));
    QVERIFY(found());
    QCOMPARE(m_tool->called(),
             "check default-web-browser " + ProgramInfo::desktopEntry().toUtf8() + ".desktop\n");
}

/// As of a program in a folder of its own, which no desktop could start.
void tst_DefaultBrowser::withoutTheEntryNobodyIsAsked()
{
    QVERIFY(m_tool->does("echo no"));
    QCOMPARE(found(), std::optional(DefaultBrowser::Is::Unknown));
    QCOMPARE(m_tool->called(), QByteArray());
}

void tst_DefaultBrowser::withoutTheTool()
{
    QVERIFY(m_tool->install(ProgramInfo::desktopEntry()));
    qputenv("PATH", "/nowhere");
    QCOMPARE(found(), std::optional(DefaultBrowser::Is::Unknown));
}

/// Nothing waits for it, and in the end it is ended.
void tst_DefaultBrowser::toolThatHangs()
{
    QVERIFY(m_tool->install(ProgramInfo::desktopEntry()));
    QVERIFY(m_tool->does("exec sleep 1000"));
    std::optional<DefaultBrowser::Is> result;
    QElapsedTimer time;
    time.start();
    DefaultBrowser::find(this, [&result](DefaultBrowser::Is is) { result = is; });
    QVERIFY(time.elapsed() < 2000);
    QTRY_VERIFY_WITH_TIMEOUT(result, 60'000);
    QCOMPARE(*result, DefaultBrowser::Is::Unknown);
}

void tst_DefaultBrowser::receiverThatGoes()
{
    QVERIFY(m_tool->install(ProgramInfo::desktopEntry()));
    QVERIFY(
        m_tool->does("sleep 0.2; echo yes; echo end >>'" + QFile::encodeName(m_tool->log()) + "'"));
    bool isTold = false;
    {
        QObject receiver;
        DefaultBrowser::find(&receiver, [&isTold](DefaultBrowser::Is) { isTold = true; });
        QTRY_VERIFY(m_tool->called().contains("check"));
    }
    QVERIFY(found());
    QVERIFY(!isTold);
}

void tst_DefaultBrowser::makes_data()
{
    QTest::addColumn<QByteArray>("commands");
    QTest::addColumn<bool>("isDone");
    QTest::newRow("done") << QByteArray() << true;
    QTest::newRow("refused") << QByteArray("exit 4") << false;
}

void tst_DefaultBrowser::makes()
{
    QFETCH(const QByteArray, commands);
    QFETCH(const bool, isDone);
    QVERIFY(m_tool->install(ProgramInfo::desktopEntry()));
    QVERIFY(m_tool->does(commands));
    std::optional<bool> result;
    DefaultBrowser::make(this, [&result](bool is) { result = is; });
    QTRY_VERIFY(result);
    QCOMPARE(*result, isDone);
    QCOMPARE(m_tool->called(),
             "set default-web-browser " + ProgramInfo::desktopEntry().toUtf8() + ".desktop\n");
}

QTEST_GUILESS_MAIN(tst_DefaultBrowser)
#include "tst_defaultbrowser.moc"
