#include <QMimeData>
#include <QUrl>
#include <QtTest>

#include "CommandLine.h"
#include "DraggedUrls.h"
#include "EngineAge.h"
#include "ProgramInfo.h"

using namespace Qt::StringLiterals;

class tst_CommandLine : public QObject {
    Q_OBJECT

private slots:
    void quotes_data();
    void quotes();
    void profileNames_data();
    void profileNames();
    void onlyTheFirstDraggedFileCounts();
    void startAddresses_data();
    void startAddresses();
    void answers();
};

void tst_CommandLine::quotes_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("expected");
    QTest::newRow("none") << u"a b"_s << u"a b"_s;
    QTest::newRow("both") << u"\"a b\""_s << u"a b"_s;
    QTest::newRow("leading only") << u"\"a"_s << u"a"_s;
    QTest::newRow("trailing only") << u"a\""_s << u"a"_s;
    QTest::newRow("one each of two") << u"\"\"a\"\""_s << u"\"a\""_s;
    QTest::newRow("a lone quote") << u"\""_s << u""_s;
    QTest::newRow("empty") << u""_s << u""_s;
}

void tst_CommandLine::quotes()
{
    QFETCH(QString, typed);
    QTEST(unquoted(typed), "expected");
}

void tst_CommandLine::profileNames_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("expected");
    QTest::newRow("lower") << u"/x/day.orp"_s << true;
    QTest::newRow("upper") << u"/x/DAY.ORP"_s << true;
    QTest::newRow("mixed") << u"day.oRp"_s << true;
    QTest::newRow("other") << u"day.orp.txt"_s << false;
    QTest::newRow("no dot") << u"dayorp"_s << false;
    QTest::newRow("empty") << u""_s << false;
}

void tst_CommandLine::profileNames()
{
    QFETCH(QString, name);
    QTEST(isProfileName(name), "expected");
}

void tst_CommandLine::onlyTheFirstDraggedFileCounts()
{
    QMimeData data;
    QVERIFY(firstDraggedFile(data).isEmpty());
    data.setText(u"day.orp"_s);
    QVERIFY2(firstDraggedFile(data).isEmpty(), "text is no file");
    data.setUrls({QUrl::fromLocalFile(u"/x/a.txt"_s), QUrl::fromLocalFile(u"/x/b.orp"_s)});
    QCOMPARE(firstDraggedFile(data), u"/x/a.txt"_s);
    data.setUrls({QUrl(u"http://127.0.0.1/b.orp"_s)});
    QVERIFY2(firstDraggedFile(data).isEmpty(), "a page's address is no file");
}

void tst_CommandLine::startAddresses_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("expected");
    QTest::newRow("file") << u"page.html"_s << u"file://%1/page.html"_s;
    QTest::newRow("file here") << u"./page.html"_s << u"file://%1/page.html"_s;
    QTest::newRow("file below") << u"sub/page.html"_s << u"file://%1/sub/page.html"_s;
    QTest::newRow("file above") << u"sub/../page.html"_s << u"file://%1/page.html"_s;
    QTest::newRow("whole path") << u"%1/page.html"_s << u"file://%1/page.html"_s;
    QTest::newRow("blank") << u"my page.html"_s << u"file://%1/my%20page.html"_s;
    QTest::newRow("signs") << u"50% #1?.html"_s << u"file://%1/50%25%20%231%3F.html"_s;
    QTest::newRow("no such file") << u"other.html"_s << u"other.html"_s;
    QTest::newRow("folder") << u"sub"_s << u"sub"_s;
    QTest::newRow("address") << u"http://127.0.0.1/page.html"_s << u"http://127.0.0.1/page.html"_s;
    QTest::newRow("file's address") << u"file://%1/page.html"_s << u"file://%1/page.html"_s;
    QTest::newRow("profile") << u"day.orp"_s << u"day.orp"_s;
    QTest::newRow("profile's address") << u"file://%1/day.orp"_s << u"%1/day.orp"_s;
    QTest::newRow("encoded profile") << u"file:///my%20day.ORP"_s << u"/my day.ORP"_s;
    QTest::newRow("server's profile") << u"http://127.0.0.1/d.orp"_s << u"http://127.0.0.1/d.orp"_s;
    QTest::newRow("nothing") << QString() << QString();
}

void tst_CommandLine::startAddresses()
{
    QFETCH(QString, text);
    QFETCH(QString, expected);
    const QTemporaryDir folder;
    QVERIFY(QDir(folder.path()).mkdir(u"sub"_s));
    for (const char *name :
         {"page.html", "sub/page.html", "my page.html", "50% #1?.html", "day.orp"}) {
        QFile file(folder.filePath(QLatin1String(name)));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    text.replace("%1"_L1, folder.path());
    expected.replace("%1"_L1, folder.path());
    QCOMPARE(startAddress(text, folder.path()), expected);
}

void tst_CommandLine::answers()
{
    QVERIFY(asksForWords("--help") && asksForWords("--version"));
    for (const char *other : {"", "-h", "--help=1", "--versions", "http://127.0.0.1/"})
        QVERIFY2(!asksForWords(other), other);
    QCOMPARE(commandLineAnswer("--version", u"orvane"_s),
             ProgramInfo::title() + u' ' + ProgramInfo::version() + u'\n'
                 + EngineAge::versions().join(", "_L1) + u'\n');
    const QString help = commandLineAnswer("--help", u"orvane"_s);
    QVERIFY(help.startsWith("Usage: orvane [--private] [ADDRESS"_L1));
    QVERIFY(help.contains("\n  --private   "_L1));
    QVERIFY(help.contains("\n  --version   "_L1) && help.endsWith(u'\n'));
}

QTEST_GUILESS_MAIN(tst_CommandLine)
#include "tst_commandline.moc"
