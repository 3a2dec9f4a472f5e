// What the desktop's own tool says of its browser, and is told, whatever that tool does.
#include "DefaultBrowser.h"
#include "ProgramInfo.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QObject>
#include <QTemporaryDir>
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
    /// The tool, as a script that notes its arguments.
    void tool(const QByteArray &commands) const
    {
        const QString path = m_home->filePath(u"bin/xdg-settings"_s);
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\necho \"$@\" >>'" + QFile::encodeName(log()) + "'\n" + commands
                   + '\n');
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    QString log() const { return m_home->filePath(u"log"_s); }
    QByteArray called() const
    {
        QFile file(log());
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    void install() const
    {
        QFile file(m_home->filePath("share/applications/"_L1 + ProgramInfo::desktopEntry()
                                    + ".desktop"_L1));
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write("[Desktop Entry]\nType=Application\nName=Orvane\nExec=orvane\n");
    }
    std::optional<DefaultBrowser::Is> found()
    {
        auto result = std::make_shared<std::optional<DefaultBrowser::Is>>();
        DefaultBrowser::find(this, [result](DefaultBrowser::Is is) { *result = is; });
        [&] { QTRY_VERIFY(*result); }();
        return *result;
    }

    std::unique_ptr<QTemporaryDir> m_home;
    QByteArray m_path;
};

void tst_DefaultBrowser::init()
{
    m_home = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir().mkpath(m_home->filePath(u"bin"_s)));
    QVERIFY(QDir().mkpath(m_home->filePath(u"share/applications"_s)));
    m_path = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(m_home->filePath(u"bin"_s)) + ':' + m_path);
    qputenv("XDG_DATA_HOME", QFile::encodeName(m_home->filePath(u"share"_s)));
    qputenv("XDG_DATA_DIRS", "/nowhere");
}

void tst_DefaultBrowser::cleanup()
{
    qputenv("PATH", m_path);
    qunsetenv("XDG_DATA_HOME");
    qunsetenv("XDG_DATA_DIRS");
    m_home.reset();
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
    install();
    tool(commands);
    QCOMPARE(found(), std::optional(is));
}

void tst_DefaultBrowser::isAskedOfTheEntry()
{
    install();
    tool("echo no");
    QVERIFY(found());
    QCOMPARE(called(),
             "check default-web-browser " + ProgramInfo::desktopEntry().toUtf8() + ".desktop\n");
}

/// As of a program in a folder of its own, which no desktop could start.
void tst_DefaultBrowser::withoutTheEntryNobodyIsAsked()
{
    tool("echo no");
    QCOMPARE(found(), std::optional(DefaultBrowser::Is::Unknown));
    QCOMPARE(called(), QByteArray());
}

void tst_DefaultBrowser::withoutTheTool()
{
    install();
    qputenv("PATH", "/nowhere");
    QCOMPARE(found(), std::optional(DefaultBrowser::Is::Unknown));
}

/// Nothing waits for it, and in the end it is ended.
void tst_DefaultBrowser::toolThatHangs()
{
    install();
    tool("exec sleep 1000");
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
    install();
    tool("sleep 0.2; echo yes; echo end >>'" + QFile::encodeName(log()) + "'");
    bool isTold = false;
    {
        QObject receiver;
        DefaultBrowser::find(&receiver, [&isTold](DefaultBrowser::Is) { isTold = true; });
        QTRY_VERIFY(called().contains("check"));
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
    install();
    tool(commands);
    std::optional<bool> result;
    DefaultBrowser::make(this, [&result](bool is) { result = is; });
    QTRY_VERIFY(result);
    QCOMPARE(*result, isDone);
    QCOMPARE(called(),
             "set default-web-browser " + ProgramInfo::desktopEntry().toUtf8() + ".desktop\n");
}

QTEST_GUILESS_MAIN(tst_DefaultBrowser)
#include "tst_defaultbrowser.moc"
