// The list of blocked popup addresses and its file.
#include "AppFolder.h"
#include "BlockedList.h"
#include "TempAppFolder.h"

#include <QDir>
#include <QFile>
#include <QtTest>

using namespace Qt::StringLiterals;

namespace {
const QString listName = u"AppData/PopupURLs.txt"_s;

bool allowed(const QString &url)
{
    bool cancel = false;
    const bool result = isPopupAllowed(url, cancel);
    // The two answers never differ.
    return result == !cancel && result;
}
}

class tst_blockedlist : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_folder.reset(); }
    void fileIsSplitIntoLines_data();
    void fileIsSplitIntoLines();
    void missingFileAllowsEverything();
    void aFolderInTheFilesPlaceIsAnEmptyList();
    void loadingForgetsTheOldList();
    void matching_data();
    void matching();
    void cancelIsLeftAloneWhereAllowed();
    void anyOfSeveralPatternsBlocks();
    void patternWithAnErrorStaysAndMatchesNothing();
    void bytesThatAreNoTextAreReadAsTheOldCodePage();
    void fileReplacedMeanwhileCountsFromTheNextLoad();
    void savingWritesLinesInOrder();
    void savingAnEmptyListWritesAnEmptyFile();
    void savingKeepsTheFilesEncoding_data();
    void savingKeepsTheFilesEncoding();
    void savingWithoutAFolderFails();
    void savingWhereAFolderStandsFails();
    void hundredThousandPatterns();
    void hardPatternsEndSoon();

private:
    void load(const QByteArray &bytes);

    std::unique_ptr<TempAppFolder> m_folder;
};

void tst_blockedlist::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
}

void tst_blockedlist::load(const QByteArray &bytes)
{
    QVERIFY(m_folder->write(listName, bytes));
    loadBlockedList();
}

void tst_blockedlist::fileIsSplitIntoLines_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("as written") << QByteArray("a\r\nb\r\n") << QStringList{u"a"_s, u"b"_s, u""_s};
    QTest::newRow("no last line end") << QByteArray("a\r\nb") << QStringList{u"a"_s, u"b"_s};
    QTest::newRow("LF alone") << QByteArray("a\nb\n") << QStringList{u"a"_s, u"b"_s, u""_s};
    QTest::newRow("both kinds") << QByteArray("a\nb\r\nc") << QStringList{u"a"_s, u"b"_s, u"c"_s};
    QTest::newRow("CR alone is no line end")
        << QByteArray("a\rb\r\n") << QStringList{u"a\rb"_s, u""_s};
    QTest::newRow("CR at the end of the file") << QByteArray("a\r") << QStringList{u"a\r"_s};
    QTest::newRow("one CR of two") << QByteArray("a\r\r\n") << QStringList{u"a\r"_s, u""_s};
    QTest::newRow("empty lines") << QByteArray("\r\n\r\na") << QStringList{u""_s, u""_s, u"a"_s};
    QTest::newRow("blanks count") << QByteArray(" a \r\n") << QStringList{u" a "_s, u""_s};
    QTest::newRow("empty file") << QByteArray("") << QStringList{u""_s};
    QTest::newRow("byte order mark") << QByteArray("\xef\xbb\xbf"
                                                   "a\r\n")
                                     << QStringList{u"a"_s, u""_s};
}

void tst_blockedlist::fileIsSplitIntoLines()
{
    QFETCH(const QByteArray, bytes);
    QFETCH(const QStringList, lines);
    load(bytes);
    QCOMPARE(blockedList(), lines);
}

void tst_blockedlist::missingFileAllowsEverything()
{
    load("*\r\n");
    QVERIFY(!allowed(u"http://a/"_s));
    QVERIFY(QFile::remove(m_folder->file(listName)));
    loadBlockedList();
    QCOMPARE(blockedList(), QStringList{u""_s});
    QVERIFY(allowed(u"http://a/"_s));
    QVERIFY(allowed(u""_s));
}

void tst_blockedlist::aFolderInTheFilesPlaceIsAnEmptyList()
{
    QVERIFY(QDir().mkpath(m_folder->file(listName)));
    loadBlockedList();
    QCOMPARE(blockedList(), QStringList{u""_s});
    QVERIFY(allowed(u"http://a/"_s));
}

void tst_blockedlist::loadingForgetsTheOldList()
{
    load("http://a/*\r\n");
    load("http://b/*\r\n");
    QVERIFY(allowed(u"http://a/x"_s));
    QVERIFY(!allowed(u"http://b/x"_s));
}

void tst_blockedlist::matching_data()
{
    QTest::addColumn<QByteArray>("pattern");
    QTest::addColumn<QString>("url");
    QTest::addColumn<bool>("isAllowed");
    QTest::newRow("whole address")
        << QByteArray("http://a.example/") << u"http://a.example/"_s << false;
    QTest::newRow("not a part") << QByteArray("a.example") << u"http://a.example/"_s << true;
    QTest::newRow("not a beginning") << QByteArray("http://a") << u"http://a.example/"_s << true;
    QTest::newRow("star alone") << QByteArray("*") << u"about:blank"_s << false;
    QTest::newRow("star alone, no address") << QByteArray("*") << u""_s << false;
    QTest::newRow("letter case") << QByteArray("http://ads.*") << u"http://ADS.example/"_s << true;
    QTest::newRow("question mark") << QByteArray("http://a?/") << u"http://ab/"_s << false;
    QTest::newRow("question mark is one") << QByteArray("http://a?/") << u"http://a/"_s << true;
    QTest::newRow("digit") << QByteArray("http://ad#.example/*") << u"http://ad7.example/x"_s
                           << false;
    QTest::newRow("no digit") << QByteArray("http://ad#.example/*") << u"http://adx.example/x"_s
                              << true;
    QTest::newRow("list") << QByteArray("http://[a-c]x/") << u"http://bx/"_s << false;
    QTest::newRow("not in list") << QByteArray("http://[!a-c]x/") << u"http://bx/"_s << true;
    QTest::newRow("blanks count") << QByteArray("*ads* ") << u"http://ads/"_s << true;
    QTest::newRow("empty line is no pattern") << QByteArray("") << u""_s << true;
}

void tst_blockedlist::matching()
{
    QFETCH(const QByteArray, pattern);
    QFETCH(const QString, url);
    load(pattern + "\r\n");
    QTEST(allowed(url), "isAllowed");
}

void tst_blockedlist::cancelIsLeftAloneWhereAllowed()
{
    load("x\r\n");
    bool cancel = true;
    QVERIFY(isPopupAllowed(u"y"_s, cancel));
    QVERIFY(cancel);
    cancel = false;
    QVERIFY(!isPopupAllowed(u"x"_s, cancel));
    QVERIFY(cancel);
}

void tst_blockedlist::anyOfSeveralPatternsBlocks()
{
    load("one*\r\n\r\ntwo*\r\nthree*");
    QVERIFY(!allowed(u"one1"_s));
    QVERIFY(!allowed(u"two2"_s));
    QVERIFY(!allowed(u"three3"_s));
    QVERIFY(allowed(u"four4"_s));
}

void tst_blockedlist::patternWithAnErrorStaysAndMatchesNothing()
{
    load("[a\r\n[z-a]*\r\nb*\r\n");
    QCOMPARE(blockedList().size(), 4);
    QVERIFY(allowed(u"[a"_s));
    QVERIFY(allowed(u"a"_s));
    QVERIFY(!allowed(u"bb"_s));
}

void tst_blockedlist::bytesThatAreNoTextAreReadAsTheOldCodePage()
{
    load("caf\xe9*\r\n\x80\x81\xff\r\n");
    QCOMPARE(blockedList(), (QStringList{u"caf\u00e9*"_s, u"\u20ac\u0081\u00ff"_s, u""_s}));
    QVERIFY(!allowed(u"caf\u00e9s"_s));
    load(QByteArray("a\0b\r\n*.x\r\n", 10));
    QVERIFY(!allowed(u"http://h.x"_s));
}

void tst_blockedlist::fileReplacedMeanwhileCountsFromTheNextLoad()
{
    load("old*\r\n");
    QVERIFY(m_folder->write(listName, "new*\r\n"));
    QVERIFY(!allowed(u"old1"_s));
    QVERIFY(allowed(u"new1"_s));
    loadBlockedList();
    QVERIFY(allowed(u"old1"_s));
    QVERIFY(!allowed(u"new1"_s));
}

void tst_blockedlist::savingWritesLinesInOrder()
{
    QVERIFY(saveBlockedList({u"b"_s, u""_s, u"a"_s, u" c "_s}));
    QCOMPARE(m_folder->read(listName), QByteArray("b\r\na\r\n c \r\n"));
    loadBlockedList();
    QCOMPARE(blockedList(), (QStringList{u"b"_s, u"a"_s, u" c "_s, u""_s}));
}

void tst_blockedlist::savingAnEmptyListWritesAnEmptyFile()
{
    load("a\r\n");
    QVERIFY(saveBlockedList({}));
    QVERIFY(m_folder->exists(listName));
    QCOMPARE(m_folder->read(listName), QByteArray(""));
    loadBlockedList();
    QCOMPARE(blockedList(), QStringList{u""_s});
}

void tst_blockedlist::savingKeepsTheFilesEncoding_data()
{
    QTest::addColumn<QByteArray>("old");
    QTest::addColumn<QString>("entry");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("old code page")
        << QByteArray("caf\xe9\r\n") << u"\u00e9t\u00e9"_s << QByteArray("\xe9t\xe9\r\n");
    QTest::newRow("beyond the old code page")
        << QByteArray("caf\xe9\r\n") << u"\u03b1"_s << QByteArray("\xce\xb1\r\n");
    QTest::newRow("new") << QByteArray("") << u"\u00e9"_s << QByteArray("\xc3\xa9\r\n");
}

void tst_blockedlist::savingKeepsTheFilesEncoding()
{
    QFETCH(const QByteArray, old);
    QFETCH(const QString, entry);
    QVERIFY(m_folder->write(listName, old));
    QVERIFY(saveBlockedList({entry}));
    QTEST(m_folder->read(listName), "bytes");
}

void tst_blockedlist::savingWithoutAFolderFails()
{
    QVERIFY(QDir(m_folder->file(u"AppData"_s)).removeRecursively());
    QVERIFY(!saveBlockedList({u"a"_s}));
    QVERIFY(!m_folder->exists(listName));
}

void tst_blockedlist::savingWhereAFolderStandsFails()
{
    QVERIFY(QDir().mkpath(m_folder->file(listName) + "/inside"_L1));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot"_s));
    QVERIFY(!saveBlockedList({u"a"_s}));
    QVERIFY(QDir(m_folder->file(listName) + "/inside"_L1).exists());
}

void tst_blockedlist::hundredThousandPatterns()
{
    QByteArray bytes;
    for (int i = 0; i < 100000; ++i)
        bytes += "*//ad" + QByteArray::number(i) + ".example/*\r\n";
    load(bytes);
    QCOMPARE(blockedList().size(), 100001);
    QVERIFY(!allowed(u"http://ad0.example/x"_s));
    QVERIFY(!allowed(u"http://ad99999.example/x"_s));
    QVERIFY(allowed(u"http://ad100000.example/x"_s));
}

void tst_blockedlist::hardPatternsEndSoon()
{
    QByteArray bytes;
    for (int i = 0; i < 200; ++i)
        bytes += "*a*a*a*a*a*a*a*a*a*a*a*b\r\n";
    load(bytes);
    QVERIFY(allowed(QString(2000, u'a')));
    QVERIFY(!allowed(QString(2000, u'a') + u'b'));
}

QTEST_MAIN(tst_blockedlist)
#include "tst_blockedlist.moc"
