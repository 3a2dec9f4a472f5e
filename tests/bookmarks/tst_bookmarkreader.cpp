#include "BookmarkFile.h"
#include "BookmarkReader.h"
#include "BookmarkSamples.h"
#include "BookmarkText.h"

#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QStringEncoder>
#include <QTemporaryDir>
#include <QTest>
#include <ctime>

using namespace Qt::StringLiterals;

namespace {
/// What a file holds as one text: "Folder{link=address;}", and what was left out.
struct Reading {
    QString text;
    QList<BookmarkItem> links;
    QList<BookmarkProblem> problems;
    int deepest = 0;
    int depth = 0;

    void take(const BookmarkItem &item)
    {
        using Kind = BookmarkItem::Kind;
        if (item.kind == Kind::Folder) {
            text += item.title + u'{';
            deepest = std::max(deepest, ++depth);
        } else if (item.kind == Kind::EndOfFolder) {
            text += u'}';
            --depth;
        } else {
            text += item.title + u'=' + item.url + u';';
            links.append(item);
        }
    }
};

Reading read(const QByteArray &bytes)
{
    Reading reading;
    BookmarkReader reader(
        bytes, [&reading](const BookmarkItem &item) { reading.take(item); },
        [&reading](const BookmarkProblem &problem) { reading.problems.append(problem); });
    while (reader.readSome()) { }
    return reading;
}

// Random pieces of bookmark files and random bytes.
QByteArray randomFile(QRandomGenerator &random)
{
    static const QList<QByteArray> pieces = bookmarkPieces();
    QByteArray bytes;
    const int count = random.bounded(200);
    for (int i = 0; i < count; ++i) {
        if (random.bounded(4) == 0)
            bytes.append(char(random.bounded(256)));
        else
            bytes.append(pieces.at(random.bounded(int(pieces.size()))));
    }
    return bytes;
}
}

class tst_BookmarkReader : public QObject {
    Q_OBJECT

private slots:
    void structures_data();
    void structures();
    void problems_data();
    void problems();
    void dates_data();
    void dates();
    void lines();
    void encodings_data();
    void encodings();
    void fileThatIsNone();
    void longTextsComeBack();
    void endlessTitle();
    void deepNesting();
    void hugeIcon();
    void manyUnclosedPieces_data();
    void manyUnclosedPieces();
    void randomBytes();
};

void tst_BookmarkReader::structures_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("text");
    for (const BookmarkSample &sample : bookmarkSamples())
        QTest::newRow(sample.name) << sample.bytes << sample.text;
}

void tst_BookmarkReader::structures()
{
    QFETCH(QByteArray, bytes);
    const Reading reading = read(bytes);
    QTEST(reading.text, "text");
    QVERIFY(reading.problems.isEmpty());
    QCOMPARE(reading.depth, 0);
}

void tst_BookmarkReader::problems_data()
{
    using Reason = BookmarkProblem::Reason;
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<Reason>("reason");
    QTest::addColumn<QString>("entry");
    QTest::newRow("no address") << "<A>X</A>"_ba << Reason::NoAddress << u"X"_s;
    QTest::newRow("empty address") << "<A HREF=\"\">X</A>"_ba << Reason::NoAddress << u"X"_s;
    QTest::newRow("query") << "<A HREF=\"place:sort=8\">X</A>"_ba << Reason::Query << u"X"_s;
    QTest::newRow("quote that never closes")
        << "<A HREF=\"x:>X</A>\n"_ba << Reason::BrokenTag << u"X"_s;
    QTest::newRow("quote that the next one closes")
        << "<A HREF=\"x: ADD_DATE=\"1\">X</A>"_ba << Reason::BrokenTag << u"X"_s;
    QTest::newRow("endless address")
        << "<A HREF=\"x:" + QByteArray(2'000'000, 'y') + "\">X</A>" << Reason::TooLong << u"X"_s;
    QTest::newRow("endless references")
        << "<A HREF=\"x:" + QByteArray("&amp;").repeated(2'000'000) + "\">X</A>" << Reason::TooLong
        << u"X"_s;
}

// Each is left out, and what is around it is read.
void tst_BookmarkReader::problems()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, entry);
    const Reading reading =
        read("<DL>\n<DT><A HREF=\"a:\">A</A>\n<DT>" + bytes + "\n<DT><A HREF=\"b:\">B</A>\n</DL>");
    QCOMPARE(reading.text, u"A=a:;B=b:;"_s);
    QCOMPARE(reading.problems.size(), 1);
    QTEST(reading.problems.first().reason, "reason");
    QCOMPARE(reading.problems.first().entry, entry);
    QCOMPARE(reading.problems.first().line, 3);
}

void tst_BookmarkReader::dates_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<qint64>("seconds");
    QTest::newRow("seconds") << "1700000000"_ba << 1700000000LL;
    QTest::newRow("milliseconds") << "1700000000123"_ba << 1700000000LL;
    QTest::newRow("microseconds") << "1700000000123456"_ba << 1700000000LL;
    QTest::newRow("microseconds since 1601") << "13344473600000000"_ba << 1700000000LL;
    QTest::newRow("none") << "0"_ba << 0LL;
    QTest::newRow("negative") << "-5"_ba << 0LL;
    QTest::newRow("text") << "yesterday"_ba << 0LL;
    QTest::newRow("too many digits") << "99999999999999999999999"_ba << 0LL;
}

void tst_BookmarkReader::dates()
{
    QFETCH(QByteArray, text);
    QFETCH(qint64, seconds);
    const Reading reading = read("<A HREF=\"a:\" ADD_DATE=\"" + text + "\">A</A>");
    QCOMPARE(reading.links.first().date, seconds);
    const Reading modified = read("<A HREF=\"a:\" LAST_MODIFIED=" + text + ">A</A>");
    QCOMPARE(modified.links.first().date, seconds);
}

void tst_BookmarkReader::lines()
{
    const Reading reading = read("\n<A HREF=\"a:\">A</A>\r\n\n<DT>\n<A HREF=\"b:\">B\n</A>");
    QCOMPARE(reading.links.at(0).line, 2);
    QCOMPARE(reading.links.at(1).line, 5);
}

void tst_BookmarkReader::encodings_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("title");
    const auto page = [](const char *charset, const QByteArray &title) {
        return QByteArray("<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=")
            + charset + "\">\n<DT><A HREF=\"a:\">" + title + "</A>";
    };
    const QString japanese = u"ニュース"_s;
    QTest::newRow("UTF-8") << page("UTF-8", japanese.toUtf8()) << japanese;
    QTest::newRow("UTF-8, not declared")
        << "<A HREF=\"a:\">" + japanese.toUtf8() + "</A>" << japanese;
    QTest::newRow("mark") << "\xef\xbb\xbf" + page("windows-1252", japanese.toUtf8()) << japanese;
    QTest::newRow("code page") << page("windows-1252", "\x80 \xc3\xa9") << u"€ Ã©"_s;
    QTest::newRow("Latin-1") << page("ISO-8859-1", "caf\xe9") << u"café"_s;
    QTest::newRow("unknown") << page("x-none-such", "caf\xe9") << u"café"_s;
    QTest::newRow("short form") << "<meta charset=\"windows-1252\"><a href='a:'>caf\xe9</a>"_ba
                                << u"café"_s;
    QStringEncoder utf16(QStringEncoder::Utf16, QStringConverter::Flag::WriteBom);
    const QByteArray wide = utf16.encode(u"<A HREF=\"a:\">"_s + japanese + u"</A>"_s);
    QTest::newRow("UTF-16") << wide << japanese;
    QStringDecoder cyrillic("KOI8-R");
    if (cyrillic.isValid())
        QTest::newRow("KOI8-R") << page("KOI8-R", "\xce\xcf\xd7\xcf") << u"ново"_s;
}

void tst_BookmarkReader::encodings()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, title);
    const QTemporaryDir folder;
    QFile out(folder.filePath(u"закладки 書.html"_s));
    QVERIFY(out.open(QIODevice::WriteOnly) && out.write(bytes) == bytes.size());
    out.close();
    if (bytes.contains("none-such"))
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"no such encoding"_s));
    BookmarkFile file(out.fileName());
    QVERIFY(file.isGood());
    while (file.readSome()) { }
    const Reading reading = read(file.bytes());
    QCOMPARE(reading.links.size(), 1);
    QCOMPARE(reading.links.first().title, title);
}

void tst_BookmarkReader::fileThatIsNone()
{
    const QTemporaryDir folder;
    for (const QString &path : {folder.path(), folder.filePath(u"missing"_s)}) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot read"_s));
        BookmarkFile file(path);
        QVERIFY(!file.isGood());
        QVERIFY(!file.readSome());
    }
}

// A title or an address as long as one may be is no longer for being written with references.
void tst_BookmarkReader::longTextsComeBack()
{
    const QByteArray quotes = QByteArray("\"").repeated(20'000);
    const QByteArray faces = "x" + QByteArray("\xf0\x9f\x98\x80").repeated(5'000);
    for (const QByteArray &title : {quotes, faces}) {
        const Reading first = read("<A HREF='a:" + quotes + "'>" + title + "</A>");
        QCOMPARE(first.links.size(), 1);
        const BookmarkItem &link = first.links.first();
        QCOMPARE(link.url.size(), 20'002);
        QVERIFY(link.title.size() > 8'000);
        QVERIFY(!link.title.back().isHighSurrogate());
        const Reading again = read("<A HREF=\"" + BookmarkText::escaped(link.url) + "\">"
                                   + BookmarkText::escaped(link.title) + "</A>");
        QCOMPARE(again.text, first.text);
    }
}

// However long a title is, it is cut between two characters.
void tst_BookmarkReader::endlessTitle()
{
    for (const char *start : {"", "x", "xx", "xxx"}) {
        const Reading reading =
            read("<A HREF=a:>" + QByteArray(start) + QByteArray("書😀").repeated(50'000) + "</A>");
        const QString title = reading.links.first().title;
        QVERIFY(title.size() > 8'000);
        QVERIFY(title.startsWith(QLatin1StringView(start) + u"書😀"_s));
        QVERIFY(!title.contains(QChar::ReplacementCharacter));
        QVERIFY(!title.back().isHighSurrogate());
    }
}

void tst_BookmarkReader::deepNesting()
{
    constexpr int depth = 10'000;
    const QByteArray bytes = QByteArray("<DT><H3>F</H3>\n<DL><p>\n").repeated(depth)
        + "<A HREF=\"a:\">A</A>" + QByteArray("</DL>").repeated(depth / 2);
    const Reading reading = read(bytes);
    QCOMPARE(reading.deepest, depth);
    QCOMPARE(reading.depth, 0);
    QCOMPARE(reading.links.size(), 1);
}

void tst_BookmarkReader::hugeIcon()
{
    const QByteArray icon = "data:image/png;base64," + QByteArray(20'000'000, 'A');
    const Reading reading = read("<DT><A HREF=\"a:\" ICON=\"" + icon + "\">A</A>\n<DT><A ICON='"
                                 + icon + "' HREF=\"b:\">B</A>");
    QCOMPARE(reading.text, u"A=a:;B=b:;"_s);
}

void tst_BookmarkReader::manyUnclosedPieces_data()
{
    QTest::addColumn<QByteArray>("piece");
    for (const char *piece :
         {"<!--", "<!", "<A HREF=\"", "<A HREF='x\"", "<A =", "<", "&", "<H3>", "<DL>", "</DL>",
          "<A HREF=\"x>", "<A B=\"x=\"y ", "<a b=\"\n<", "\n", "<DT><A HREF=\"x:\">"})
        QTest::newRow(piece) << QByteArray(piece);
}

// A reader that looked at everything behind each piece would need hours.
void tst_BookmarkReader::manyUnclosedPieces()
{
    QFETCH(QByteArray, piece);
    const QByteArray bytes = piece.repeated(3'000'000 / piece.size());
    // Of the processor, which other programs do not lengthen.
    const std::clock_t start = std::clock();
    const Reading reading = read(bytes);
    const double seconds = double(std::clock() - start) / CLOCKS_PER_SEC;
    QCOMPARE(reading.depth, 0);
    QVERIFY2(seconds < 20, qPrintable(QString::number(seconds)));
}

void tst_BookmarkReader::randomBytes()
{
    QElapsedTimer timer;
    timer.start();
    const int forMs = std::max(1000, qEnvironmentVariableIntValue("ORVANE_FUZZ_MS"));
    for (quint32 seed = 1; !timer.hasExpired(forMs); ++seed) {
        QRandomGenerator random(seed);
        const Reading reading = read(randomFile(random));
        QVERIFY2(reading.depth == 0, qPrintable(QString::number(seed)));
        for (const BookmarkItem &link : reading.links) {
            QVERIFY(!link.url.isEmpty());
            QCOMPARE(BookmarkText::title(link.title), link.title);
            QCOMPARE(BookmarkText::address(link.url), link.url);
        }
    }
}

QTEST_MAIN(tst_BookmarkReader)
#include "tst_bookmarkreader.moc"
