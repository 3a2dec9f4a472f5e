#include <QMimeData>
#include <QUrl>
#include <QtTest>

#include "CommandLine.h"
#include "ProfileDrag.h"

using namespace Qt::StringLiterals;

class tst_CommandLine : public QObject {
    Q_OBJECT

private slots:
    void quotes_data();
    void quotes();
    void profileNames_data();
    void profileNames();
    void onlyTheFirstDraggedFileCounts();
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

QTEST_GUILESS_MAIN(tst_CommandLine)
#include "tst_commandline.moc"
