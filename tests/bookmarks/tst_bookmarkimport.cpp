#include "BookmarkImport.h"
#include "BookmarkWriter.h"
#include "FavoriteFile.h"
#include "FavoritesHome.h"
#include "FileFaults.h"
#include "InternetShortcut.h"
#include "Unlogged.h"

#include <QDateTime>
#include <QDirIterator>
#include <QRandomGenerator>
#include <QTest>

/// Bookmark files into the Favorites folder and out of it.
class tst_BookmarkImport : public QObject {
    Q_OBJECT

private slots:
    void init() { m_home = std::make_unique<FavoritesHome>(); }
    void cleanup() { m_home.reset(); }

    void foldersLinksAndDates();
    void oddTitles_data();
    void oddTitles();
    void nothingComesTwice();
    void sameNameOtherAddress();
    void whatIsThereStays();
    void folderNameTakenByAFile();
    void manyOfOneName();
    void tooDeep();
    void folderThatCannotBeMade();
    void unreadableFile();
    void stoppedHalfWay();
    void exportedFile();
    void exportOfNothing();
    void linksInCirclesAreNotFollowed();
    void roundTrip();
    void roundTripOfHandMadeNames();
    void everyScript_data();
    void everyScript();
    void hundredMegabytes();
    void randomBytes();
    void manyInOneFolder();
    void diskFillsUp();
    void fullDiskEndsIt();
    void oneWriteFails();
    void readOnlyFolder();
    void progressGoesOnlyForward();

private:
    QString bookmarkFile(const QByteArray &bytes) const;
    ImportOutcome import(const QByteArray &bytes, const QString &root = {}) const;
    QByteArray exported(const QString &root = {}) const;
    QStringList files() const;
    QString url(const QString &name) const
    {
        return InternetShortcut::contents(m_home->path(name)).url;
    }

    std::unique_ptr<FavoritesHome> m_home;
};

QString tst_BookmarkImport::bookmarkFile(const QByteArray &bytes) const
{
    QFile file(m_home->home() + "/bookmarks.html"_L1);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() ? file.fileName()
                                                                                : QString();
}

ImportOutcome tst_BookmarkImport::import(const QByteArray &bytes, const QString &root) const
{
    BookmarkImport import(bookmarkFile(bytes), root.isEmpty() ? m_home->favorites() : root);
    while (import.advance()) { }
    import.finish();
    return import.outcome();
}

QByteArray tst_BookmarkImport::exported(const QString &root) const
{
    BookmarkWriter writer(root.isEmpty() ? m_home->favorites() : root);
    while (writer.advance()) { }
    return writer.bytes();
}

// All files of the home folder but the bookmark file, below it.
QStringList tst_BookmarkImport::files() const
{
    QStringList result;
    QDirIterator it(m_home->home(), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        const QString name = it.next().mid(m_home->home().size() + 1);
        if (name != u"bookmarks.html"_s)
            result.append(name);
    }
    result.sort();
    return result;
}

void tst_BookmarkImport::foldersLinksAndDates()
{
    const ImportOutcome outcome =
        import("<DL><DT><H3 ADD_DATE=\"1500000000\">F</H3><DL>"
               "<DT><A HREF=\"http://a/?b&amp;c\" ADD_DATE=\"1600000000\">A</A></DL>"
               "<DT><A HREF=\"http://b/\">B</A><DT><A>X</A></DL>");
    QCOMPARE(outcome.links, 2);
    QCOMPARE(outcome.folders, 1);
    QCOMPARE(outcome.skipped, 1);
    QCOMPARE(outcome.problems.size(), 1);
    QVERIFY(!outcome.failed);
    QCOMPARE(files(), QStringList({u"Favorites/B.url"_s, u"Favorites/F/A.url"_s}));
    QCOMPARE(m_home->read(u"F/A.url"_s), "[InternetShortcut]\r\nURL=http://a/?b&c\r\n"_ba);
    QCOMPARE(QFileInfo(m_home->path(u"F/A.url"_s)).lastModified().toSecsSinceEpoch(), 1600000000);
    QCOMPARE(QFileInfo(m_home->path(u"F"_s)).lastModified().toSecsSinceEpoch(), 1500000000);
}

void tst_BookmarkImport::oddTitles_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("name");
    QTest::newRow("parent") << u".."_s << u"Favorite"_s;
    QTest::newRow("slash") << u"a/b"_s << u"a_b"_s;
    QTest::newRow("way out") << u"../../../etc/x"_s << u".._.._.._etc_x"_s;
    QTest::newRow("long") << u"x"_s.repeated(300) << u"x"_s.repeated(240);
    QTest::newRow("control characters") << u"a&#1;&#10;b"_s << u"a b"_s;
    QTest::newRow("device") << u"NUL"_s << u"_NUL"_s;
    QTest::newRow("empty") << u""_s << u"host"_s;
}

// As link and as folder; nothing outside the Favorites folder, and the title comes out again.
void tst_BookmarkImport::oddTitles()
{
    QFETCH(QString, title);
    QFETCH(QString, name);
    const ImportOutcome outcome =
        import(("<DT><A HREF=\"http://host/\">"_L1 + title + "</A><DT><H3>"_L1 + title
                + "</H3><DL><A HREF=\"http://host/2\">in</A></DL>"_L1)
                   .toUtf8());
    QCOMPARE(outcome.links, 2);
    QCOMPARE(files().size(), 2);
    QCOMPARE(url(name + u".url"_s), u"http://host/"_s);
    for (const QString &file : files())
        QVERIFY(file.startsWith(u"Favorites/"_s));
    if (!title.isEmpty() && !title.contains(u'&'))
        QVERIFY(exported().contains('>' + title.toUtf8() + "</A>"));
}

void tst_BookmarkImport::nothingComesTwice()
{
    const QByteArray bytes =
        "<DT><A HREF=\"a:\">A</A><DT><A HREF=\"b:\">A</A><A HREF=\"a:\">A</A>"
        "<DT><A HREF=\"c:\">x/y</A>"
        "<H3>F</H3><DL><A HREF=\"a:\">A</A></DL><H3>F</H3><DL><A HREF=b:>B</A>";
    const ImportOutcome first = import(bytes);
    QCOMPARE(first.links, 5);
    QCOMPARE(first.known, 1);
    QCOMPARE(first.folders, 1);
    const QStringList after = files();
    const ImportOutcome second = import(bytes);
    QCOMPARE(second.links, 0);
    QCOMPARE(second.folders, 0);
    QCOMPARE(second.known, 6);
    QCOMPARE(files(), after);
}

void tst_BookmarkImport::sameNameOtherAddress()
{
    import("<A HREF=\"a:\">A</A><A HREF=\"b:\">A</A>");
    QCOMPARE(url(u"A.url"_s), u"a:"_s);
    QCOMPARE(url(u"A (2).url"_s), u"b:"_s);
    QCOMPARE(exported().count(">A</A>"), 2);
}

void tst_BookmarkImport::whatIsThereStays()
{
    QVERIFY(m_home->writeLink(u"A.url"_s, "old:"));
    QVERIFY(m_home->write(u"F/note.txt"_s, "mine"));
    const QString target = m_home->home() + "/elsewhere"_L1;
    QVERIFY(QFile::link(target, m_home->path(u"B.url"_s)));
    import("<A HREF=\"a:\">A</A><A HREF=\"b:\">B</A><H3>F</H3><DL><A HREF=\"c:\">C</A></DL>");
    QCOMPARE(url(u"A.url"_s), u"old:"_s);
    QCOMPARE(url(u"A (2).url"_s), u"a:"_s);
    QCOMPARE(url(u"B (2).url"_s), u"b:"_s);
    QVERIFY(!QFileInfo::exists(target));
    QCOMPARE(url(u"F/C.url"_s), u"c:"_s);
    QCOMPARE(m_home->read(u"F/note.txt"_s), "mine"_ba);
}

void tst_BookmarkImport::folderNameTakenByAFile()
{
    QVERIFY(m_home->write(u"F"_s, "mine"));
    const QByteArray bytes = "<H3>F</H3><DL><A HREF=\"c:\">C</A></DL>";
    import(bytes);
    QCOMPARE(url(u"F (2)/C.url"_s), u"c:"_s);
    QCOMPARE(import(bytes).known, 1);
}

void tst_BookmarkImport::manyOfOneName()
{
    QByteArray bytes;
    for (int i = 0; i < 20'000; ++i)
        bytes += "<DT><A HREF=\"http://a/" + QByteArray::number(i) + "\">A</A>\n";
    QCOMPARE(import(bytes).links, 20'000);
    QCOMPARE(import(bytes).known, 20'000);
}

void tst_BookmarkImport::tooDeep()
{
    const ImportOutcome outcome =
        import(QByteArray("<DT><H3>folder</H3><DL>").repeated(10'000) + "<A HREF=\"a:\">A</A>");
    QCOMPARE(outcome.links, 1);
    QVERIFY(outcome.folders > 400);
    QCOMPARE(outcome.folders + outcome.skipped, 10'000);
    QCOMPARE(outcome.problems.first().reason, BookmarkProblem::Reason::TooDeep);
    QVERIFY(!outcome.failed);
    QVERIFY(exported().contains(">A</A>"));
}

void tst_BookmarkImport::folderThatCannotBeMade()
{
    QFile file(m_home->favorites());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot make the folder"_s));
    const ImportOutcome outcome = import("<A HREF=\"a:\">A</A>");
    QVERIFY(outcome.failed);
    QCOMPARE(outcome.links, 0);
}

void tst_BookmarkImport::unreadableFile()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot read"_s));
    BookmarkImport import(m_home->home() + "/none.html"_L1, m_home->favorites());
    while (import.advance()) { }
    QVERIFY(import.outcome().failed);
    QVERIFY(!QFileInfo::exists(m_home->favorites()));
}

// Every shortcut that is there is whole.
void tst_BookmarkImport::stoppedHalfWay()
{
    QByteArray bytes = "<H3 ADD_DATE=1500000000>F</H3><DL>";
    for (int i = 0; i < 100; ++i)
        bytes += "<DT><A HREF=\"http://a/\">A" + QByteArray::number(i) + "</A>\n";
    BookmarkImport import(bookmarkFile(bytes), m_home->favorites());
    while (import.outcome().links < 50)
        QVERIFY(import.advance());
    import.finish();
    QCOMPARE(files().size(), 50);
    for (const QString &file : files())
        QCOMPARE(url(file.mid(10)), u"http://a/"_s);
    QCOMPARE(QFileInfo(m_home->path(u"F"_s)).lastModified().toSecsSinceEpoch(), 1500000000);
}

void tst_BookmarkImport::exportedFile()
{
    import(
        "<H3 ADD_DATE=5>G</H3><DL><A HREF=\"http://a/?b&amp;c=&quot;\" ADD_DATE=7>A &lt;b></A></DL>"
        "<A HREF=\"z:\" ADD_DATE=8>Z</A><A HREF=\"y:\" ADD_DATE=9>y</A>");
    QCOMPARE(exported(),
             "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n"
             "<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=UTF-8\">\n"
             "<TITLE>Bookmarks</TITLE>\n<H1>Bookmarks</H1>\n<DL><p>\n"
             "    <DT><A HREF=\"y:\" ADD_DATE=\"9\">y</A>\n"
             "    <DT><A HREF=\"z:\" ADD_DATE=\"8\">Z</A>\n"
             "    <DT><H3 ADD_DATE=\"5\" LAST_MODIFIED=\"5\">G</H3>\n    <DL><p>\n"
             "        <DT><A HREF=\"http://a/?b&amp;c=&quot;\" ADD_DATE=\"7\">A &lt;b&gt;</A>\n"
             "    </DL><p>\n</DL><p>\n"_ba);
}

void tst_BookmarkImport::exportOfNothing()
{
    QVERIFY(exported().endsWith("<DL><p>\n</DL><p>\n"));
    QVERIFY(m_home->write(u"no address.url"_s, "x"));
    BookmarkWriter writer(m_home->favorites());
    while (writer.advance()) { }
    QCOMPARE(writer.skipped(), 1);
    QCOMPARE(writer.links(), 0);
}

void tst_BookmarkImport::linksInCirclesAreNotFollowed()
{
    QVERIFY(m_home->writeLink(u"F/A.url"_s, "a:"));
    QVERIFY(QFile::link(m_home->favorites(), m_home->path(u"F/up"_s)));
    QCOMPARE(exported().count("<A "), 1);
}

void tst_BookmarkImport::roundTrip()
{
    import("<H3 ADD_DATE=1500000000>новости 書</H3><DL><A HREF=\"http://a/?b&amp;c\" "
           "ADD_DATE=1600000000>"
           "AC/DC: &quot;live&quot;</A><H3 ADD_DATE=1400000000>inner</H3><DL><A HREF=\"javascript:"
           + QByteArray("x").repeated(3000)
           + "\" ADD_DATE=1>script</A></DL></DL>"
             "<A HREF=\"u1:\" ADD_DATE=3>News</A><A HREF=\"u2:\" ADD_DATE=2>News</A>"
             "<A HREF=\"u3:\" ADD_DATE=4>News today</A><A HREF=\"u4:\" ADD_DATE=4></A><A "
             "HREF=u5:>..</A>"
             "<H3 ADD_DATE=77>empty</H3><A HREF=u6:>&copy; &lt;a&gt;   b</A><A HREF=u7:>"
           + QByteArray("long ").repeated(100) + "</A>");
    const QByteArray first = exported();
    QCOMPARE(first.count("<A "), 9);
    const QString other = m_home->home() + "/Другие favorites"_L1;
    const ImportOutcome outcome = import(first, other);
    QCOMPARE(outcome.skipped, 0);
    QCOMPARE(exported(other), first);
}

// Names that no import would give.
void tst_BookmarkImport::roundTripOfHandMadeNames()
{
    for (const QString &name : {u" blank.url"_s, u"a:b.url"_s, u"a  b.url"_s, u"two\nlines.url"_s,
                                u".url"_s, u"con.url"_s, u"UPPER.URL"_s, u"x:y/in.url"_s,
                                u"News.url"_s, u"News (2).url"_s, u"<b>&amp;.url"_s})
        QVERIFY(m_home->writeLink(name, "http://a/"));
    const QByteArray first = exported();
    QCOMPARE(first.count("<A "), 11);
    const QString other = m_home->home() + "/other"_L1;
    import(first, other);
    // The folders were made without dates of their own in the file's eyes.
    QCOMPARE(exported(other), first);
}

void tst_BookmarkImport::everyScript_data()
{
    QTest::addColumn<QString>("text");
    QTest::newRow("Arabic") << u"المفضلة"_s;
    QTest::newRow("Hebrew with points") << u"מוּעֲדָפִים"_s;
    QTest::newRow("Chinese") << u"收藏夹"_s;
    QTest::newRow("Japanese") << u"お気に入り"_s;
    QTest::newRow("Korean, composed") << u"즐겨찾기"_s;
    QTest::newRow("Korean, in letters") << u"즐겨찾기"_s.normalized(QString::NormalizationForm_D);
    QTest::newRow("Devanagari") << u"पसंदीदा"_s;
    QTest::newRow("Thai") << u"รายการโปรด"_s;
    QTest::newRow("Cyrillic") << u"Избранное"_s;
    QTest::newRow("emoji") << u"⭐👩\u200d👩\u200d👧 🇯🇵"_s;
    QTest::newRow("combining accents") << u"e\u0301a\u0308\u0323"_s;
    QTest::newRow("both directions") << u"a \u202bالمفضلة\u202c b"_s;
}

// The bookmark file, the Favorites folder, the titles and the addresses.
void tst_BookmarkImport::everyScript()
{
    QFETCH(QString, text);
    const QString folder = m_home->home() + u'/' + text;
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(
        QFile::rename(bookmarkFile(("<DT><H3>"_L1 + text + "</H3><DL><A HREF=\"http://a/"_L1 + text
                                    + "\" ADD_DATE=1600000000>"_L1 + text + "</A></DL>"_L1)
                                       .toUtf8()),
                      folder + u"/in.html"_s));
    const QString root = folder + u"/Favorites "_s + text;
    BookmarkImport import(folder + u"/in.html"_s, root);
    while (import.advance()) { }
    import.finish();
    QCOMPARE(import.outcome().links, 1);
    // Marks of direction are in the titles, not in the names.
    const QString name = FavoriteFile::name(text, {});
    const QString path = root + u'/' + name + u'/' + name + u".url"_s;
    QCOMPARE(InternetShortcut::contents(path).url, u"http://a/"_s + text);
    const QByteArray first = exported(root);
    QVERIFY(first.contains('>' + text.toUtf8() + "</A>"));
    const QString other = folder + u"/other"_s;
    QCOMPARE(this->import(first, other).links, 1);
    // Only the date of the folder, which had none, is a new one.
    QVERIFY(QDir(root).rename(name, u"x"_s));
    QVERIFY(QDir(other).rename(name, u"x"_s));
    QCOMPARE(exported(other + u"/x"_s), exported(root + u"/x"_s));
}

void tst_BookmarkImport::hundredMegabytes()
{
    constexpr int links = 1000;
    const QByteArray icon(100'000, 'A');
    QFile file(m_home->home() + "/bookmarks.html"_L1);
    QVERIFY(file.open(QIODevice::WriteOnly));
    for (int i = 0; i < links; ++i)
        file.write("<DT><A HREF=\"http://a/" + QByteArray::number(i)
                   + "\" ICON=\"data:image/png;base64," + icon + "\">A</A>\n");
    file.close();
    QVERIFY(file.size() > 100'000'000);
    BookmarkImport import(file.fileName(), m_home->favorites());
    while (import.advance()) { }
    import.finish();
    QCOMPARE(import.outcome().links, links);
    QCOMPARE(import.outcome().skipped, 0);
    QCOMPARE(files().size(), links);
}

// Nothing but whole shortcuts comes of them, and all inside the Favorites folder.
void tst_BookmarkImport::randomBytes()
{
    QRandomGenerator random(7);
    QByteArray bytes(4'000'000, Qt::Uninitialized);
    for (char &byte : bytes)
        byte = char(random.bounded(256));
    const ImportOutcome outcome = import(bytes);
    QVERIFY(!outcome.failed);
    QCOMPARE(files().size(), outcome.links);
    for (const QString &file : files()) {
        QVERIFY(file.startsWith(u"Favorites/"_s));
        QVERIFY(m_home->read(file.mid(10)).startsWith("[InternetShortcut]\r\nURL="));
    }
}

void tst_BookmarkImport::manyInOneFolder()
{
    constexpr int links = 200'000;
    QByteArray bytes = "<DT><H3>F</H3><DL><p>\n";
    for (int i = 0; i < links; ++i)
        bytes += "<DT><A HREF=\"http://a/" + QByteArray::number(i) + "\">A" + QByteArray::number(i)
            + "</A>\n";
    BookmarkImport import(bookmarkFile(bytes), m_home->favorites());
    // It comes in bit by bit and can be left at any time.
    int steps = 0;
    while (import.outcome().links < 2000 && import.advance())
        ++steps;
    QVERIFY(steps >= 2000);
    QVERIFY(import.percent() <= 2);
    import.finish();
    QCOMPARE(files().size(), 2000);
    int read = 0;
    BookmarkReader reader(
        bytes, [&read](const BookmarkItem &) { ++read; }, [](const BookmarkProblem &) {});
    while (reader.readSome()) { }
    QCOMPARE(read, links + 2);
}

namespace {
// Links in two folders and above them.
QByteArray someBookmarks()
{
    QByteArray bytes;
    for (const char *folder : {"F", "G", ""}) {
        bytes += *folder ? "<H3>"_ba + folder + "</H3><DL>" : "";
        for (const char *name : {"A", "B", "C", "D"})
            bytes += "<A HREF=http://a/>"_ba + folder + name + "</A>\n";
        bytes += *folder ? "</DL>" : "";
    }
    return bytes;
}
constexpr int someLinks = 12;
}

// Wherever the room ends, what came in is whole and counted; with room again the rest comes in.
void tst_BookmarkImport::diskFillsUp()
{
    const Unlogged unlogged;
    const QString file = bookmarkFile(someBookmarks());
    for (int at = 1;; ++at) {
        QDir(m_home->favorites()).removeRecursively();
        BookmarkImport import(file, m_home->favorites());
        FileFaults::arm(FileFaults::Kind::FullDisk, at);
        while (import.advance()) { }
        import.finish();
        const bool reached = FileFaults::disarm();
        const ImportOutcome &outcome = import.outcome();
        QCOMPARE(files().size(), outcome.links);
        for (const QString &name : files())
            QCOMPARE(url(name.mid(10)), u"http://a/"_s);
        if (!reached) {
            QCOMPARE(outcome.links, someLinks);
            break;
        }
        // Without the Favorites folder itself nothing can be done; else each link has its word.
        if (QFileInfo::exists(m_home->favorites()))
            QVERIFY(outcome.links + outcome.skipped >= someLinks);
        else
            QVERIFY(outcome.failed);
        QVERIFY(this->import(someBookmarks()).links <= someLinks);
        QCOMPARE(this->import(someBookmarks()).known, someLinks);
    }
}

void tst_BookmarkImport::fullDiskEndsIt()
{
    const Unlogged unlogged;
    QByteArray bytes;
    for (int i = 0; i < 1000; ++i) {
        // There is still room for folders.
        if (i % 10 == 0)
            bytes += "</DL><H3>F" + QByteArray::number(i) + "</H3><DL>\n";
        bytes += "<A HREF=http://a/>A" + QByteArray::number(i) + "</A>\n";
    }
    BookmarkImport import(bookmarkFile(bytes), m_home->favorites());
    FileFaults::arm(FileFaults::Kind::FullDisk, 500);
    while (import.advance()) { }
    import.finish();
    FileFaults::disarm();
    QVERIFY(import.outcome().failed);
    QVERIFY(import.outcome().links > 100);
    QCOMPARE(import.outcome().links, files().size());
    // It does not try a thousand times.
    QCOMPARE(import.outcome().skipped, 100);
    QCOMPARE(import.outcome().problems.first().reason, BookmarkProblem::Reason::NotWritten);
}

// One mishap costs one entry.
void tst_BookmarkImport::oneWriteFails()
{
    const Unlogged unlogged;
    const QString file = bookmarkFile(someBookmarks());
    QVERIFY(m_home->makeFolder());
    for (int at = 1;; ++at) {
        QDir(m_home->favorites()).removeRecursively();
        QVERIFY(m_home->makeFolder());
        BookmarkImport import(file, m_home->favorites());
        FileFaults::arm(FileFaults::Kind::Fail, at);
        while (import.advance()) { }
        import.finish();
        const bool reached = FileFaults::disarm();
        QCOMPARE(import.outcome().skipped, reached ? 1 : 0);
        QVERIFY(import.outcome().links >= someLinks - 1);
        QCOMPARE(files().size(), import.outcome().links);
        if (!reached)
            break;
    }
}

void tst_BookmarkImport::readOnlyFolder()
{
    const Unlogged unlogged;
    QVERIFY(m_home->writeLink(u"A.url"_s, "http://a/"));
    BookmarkImport import(bookmarkFile(someBookmarks()), m_home->favorites());
    FileFaults::arm(FileFaults::Kind::ReadOnly, 1);
    while (import.advance()) { }
    import.finish();
    FileFaults::disarm();
    QCOMPARE(import.outcome().links, 0);
    QCOMPARE(import.outcome().folders, 0);
    QVERIFY(import.outcome().known >= 1);
    QVERIFY(import.outcome().skipped >= 11);
    QCOMPARE(files(), QStringList({u"Favorites/A.url"_s}));
}

void tst_BookmarkImport::progressGoesOnlyForward()
{
    for (const QString &name : {u"a.url"_s, u"F/b.url"_s, u"F/G/c.url"_s, u"F/H/d.url"_s,
                                u"I/e.url"_s, u"I/x.url/f.url"_s})
        QVERIFY(m_home->writeLink(name, "http://x/"));
    BookmarkWriter writer(m_home->favorites());
    QSet<int> seen;
    int last = 0;
    while (writer.advance()) {
        QVERIFY2(writer.percent() >= last, qPrintable(QString::number(last)));
        last = writer.percent();
        seen.insert(last);
    }
    QCOMPARE(last, 100);
    QVERIFY(seen.size() > 5);
}

QTEST_MAIN(tst_BookmarkImport)
#include "tst_bookmarkimport.moc"
