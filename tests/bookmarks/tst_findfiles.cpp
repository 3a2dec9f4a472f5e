#include "FavoritesHome.h"
#include "FindFiles.h"
#include "SpecialFolders.h"
#include "StripNulls.h"

#include <QTest>
#include <limits>
#include <unistd.h>

class tst_FindFiles : public QObject {
    Q_OBJECT

private slots:
    void init() { m_home = std::make_unique<FavoritesHome>(); }
    void cleanup() { m_home.reset(); }

    void favoritesFolder();
    void otherFoldersHaveNoPath();
    void stripNulls_data();
    void stripNulls();

    void pathGetsItsSlash();
    void pathWithASlashStays();
    void matchesComeBeforeFolders();
    void orderIsByUpperCasedName();
    void upperCaseExtensionMatches();
    void namesNearTheExtensionDoNotMatch();
    void bracketsAreNoWildcards();
    void matchingFolderIsReportedTwice();
    void emptyFolder();
    void missingFolder();
    void fileInPlaceOfTheFolder();
    void unreadableFolder();
    void namesInEveryScript();
    void hiddenEntriesCount();
    void cyclesEnd();
    void linkedFoldersAreEntered();
    void danglingLinkIsAFile();
    void sizes();
    void sizeOfAHugeFile();
    void fileCountOverflows();
    void folderCountOverflows();

private:
    struct Result {
        QStringList reported;
        QString path;
        qint16 files = 0;
        qint16 folders = 0;
        qint64 size = 0;
        bool overflowed = false;
    };
    Result walk(qint16 files = 0, qint16 folders = 0) const;

    std::unique_ptr<FavoritesHome> m_home;
};

// Reports read "name" for a match and "name/" for a folder, below the Favorites folder.
tst_FindFiles::Result tst_FindFiles::walk(qint16 files, qint16 folders) const
{
    Result result;
    result.path = m_home->favorites();
    result.files = files;
    result.folders = folders;
    FolderWalk walk(result.path, u"*.url"_s, result.files, result.folders,
                    [&](const QString &path, const FolderListing::Entry &entry, bool isFile) {
                        const QString full = path + entry.name + (isFile ? u""_s : u"/"_s);
                        result.reported.append(full.mid(result.path.size()));
                    });
    while (walk.advance()) { }
    result.size = walk.size();
    result.overflowed = walk.overflowed();
    return result;
}

void tst_FindFiles::favoritesFolder()
{
    QCOMPARE(specialFolder(6), m_home->home() + "/Favorites"_L1);
}

void tst_FindFiles::otherFoldersHaveNoPath()
{
    for (const int number : {-1, 0, 5, 7, 1000})
        QCOMPARE(specialFolder(number), QString());
}

void tst_FindFiles::stripNulls_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("stripped");
    QTest::newRow("NUL inside") << QString::fromLatin1("abc\0def", 7) << u"abc"_s;
    QTest::newRow("none") << u"abc"_s << u"abc"_s;
    QTest::newRow("NUL first") << QString::fromLatin1("\0abc", 4) << u""_s;
    QTest::newRow("two") << QString::fromLatin1("a\0b\0", 4) << u"a"_s;
    QTest::newRow("empty") << u""_s << u""_s;
}

void tst_FindFiles::stripNulls()
{
    QFETCH(QString, text);
    QFETCH(QString, stripped);
    QCOMPARE(::stripNulls(text), stripped);
    QCOMPARE(::stripNulls(QStringView(text)), QStringView(stripped));
}

void tst_FindFiles::pathGetsItsSlash()
{
    QVERIFY(m_home->makeFolder());
    QString path = m_home->favorites();
    qint16 files = 0;
    qint16 folders = 0;
    const FolderWalk walk(path, u"*.url"_s, files, folders, [](auto &&...) {});
    QCOMPARE(path, m_home->favorites() + u'/');
}

void tst_FindFiles::pathWithASlashStays()
{
    QString path = m_home->favorites() + u'/';
    qint16 files = 0;
    qint16 folders = 0;
    const FolderWalk walk(path, u"*.url"_s, files, folders, [](auto &&...) {});
    QCOMPARE(path, m_home->favorites() + u'/');
}

void tst_FindFiles::matchesComeBeforeFolders()
{
    QVERIFY(m_home->writeLink(u"z.url"_s, "http://z/"));
    QVERIFY(m_home->writeLink(u"a/b.url"_s, "http://b/"));
    QVERIFY(m_home->writeLink(u"a/c/d.url"_s, "http://d/"));
    QVERIFY(m_home->writeLink(u"e/f.url"_s, "http://f/"));
    QVERIFY(m_home->write(u"a/readme.txt"_s, "x"));
    const Result result = walk();
    const QStringList expected{u"z.url"_s,     u"a/"_s, u"a/b.url"_s, u"a/c/"_s,
                               u"a/c/d.url"_s, u"e/"_s, u"e/f.url"_s};
    QCOMPARE(result.reported, expected);
    QCOMPARE(result.files, qint16(4));
    QCOMPARE(result.folders, qint16(3));
}

void tst_FindFiles::orderIsByUpperCasedName()
{
    for (const QString &name : {u"b"_s, u"C"_s, u"a"_s, u"_"_s, u"B2"_s, u"é"_s, u"Z"_s})
        QVERIFY(m_home->writeLink(name + ".url"_L1, "http://x/"));
    const QStringList expected{u"a.url"_s, u"b.url"_s, u"B2.url"_s, u"C.url"_s,
                               u"Z.url"_s, u"_.url"_s, u"é.url"_s};
    QCOMPARE(walk().reported, expected);
}

void tst_FindFiles::upperCaseExtensionMatches()
{
    QVERIFY(m_home->writeLink(u"News.URL"_s, "http://x/"));
    QCOMPARE(walk().reported, QStringList{u"News.URL"_s});
}

void tst_FindFiles::namesNearTheExtensionDoNotMatch()
{
    for (const QString &name : {u"a.url~"_s, u"aurl"_s, u"a.url.txt"_s, u"url"_s})
        QVERIFY(m_home->writeLink(name, "http://x/"));
    QVERIFY(m_home->writeLink(u".url"_s, "http://x/"));
    QCOMPARE(walk().reported, QStringList{u".url"_s});
}

void tst_FindFiles::bracketsAreNoWildcards()
{
    const QRegularExpression pattern = fileNamePattern(u"[a]?.*"_s);
    QVERIFY(pattern.match(u"[A]x.url"_s).hasMatch());
    QVERIFY(!pattern.match(u"ax.url"_s).hasMatch());
}

void tst_FindFiles::matchingFolderIsReportedTwice()
{
    QVERIFY(m_home->makeFolder(u"x.url"_s));
    const Result result = walk();
    const QStringList expected{u"x.url"_s, u"x.url/"_s};
    QCOMPARE(result.reported, expected);
    QCOMPARE(result.files, qint16(1));
    QCOMPARE(result.folders, qint16(1));
}

void tst_FindFiles::emptyFolder()
{
    QVERIFY(m_home->makeFolder());
    const Result result = walk(7, 8);
    QVERIFY(result.reported.isEmpty());
    QCOMPARE(result.files, qint16(7));
    QCOMPARE(result.folders, qint16(8));
    QCOMPARE(result.size, 0);
}

void tst_FindFiles::missingFolder()
{
    const Result result = walk();
    QVERIFY(result.reported.isEmpty());
    QCOMPARE(result.files, qint16(0));
    QCOMPARE(result.size, 0);
    QVERIFY(!result.overflowed);
}

void tst_FindFiles::fileInPlaceOfTheFolder()
{
    QFile file(m_home->favorites());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(walk().reported.isEmpty());
}

void tst_FindFiles::unreadableFolder()
{
    QVERIFY(m_home->writeLink(u"a/b.url"_s, "http://b/"));
    QVERIFY(QFile::setPermissions(m_home->path(u"a"_s), QFile::WriteOwner));
    const QStringList reported = walk().reported;
    QVERIFY(QFile::setPermissions(m_home->path(u"a"_s),
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    if (geteuid() == 0)
        QSKIP("root can read every folder");
    QCOMPARE(reported, QStringList{u"a/"_s});
}

void tst_FindFiles::namesInEveryScript()
{
    const QStringList names{u"Nachrichten öäüß.url"_s, u"новости.url"_s, u"أخبار.url"_s,
                            u"ニュース.url"_s,         u"😀.url"_s,       u"a\nb.url"_s};
    for (const QString &name : names)
        QVERIFY(m_home->writeLink(name, "http://x/"));
    QStringList reported = walk().reported;
    reported.sort();
    QStringList expected = names;
    expected.sort();
    QCOMPARE(reported, expected);
}

void tst_FindFiles::hiddenEntriesCount()
{
    QVERIFY(m_home->writeLink(u".hidden/.x.url"_s, "http://x/"));
    const QStringList expected{u".hidden/"_s, u".hidden/.x.url"_s};
    QCOMPARE(walk().reported, expected);
}

void tst_FindFiles::cyclesEnd()
{
    QVERIFY(m_home->writeLink(u"a/b.url"_s, "http://b/"));
    QVERIFY(QFile::link(m_home->favorites(), m_home->path(u"a/up"_s)));
    QVERIFY(QFile::link(m_home->path(u"a"_s), m_home->path(u"a/self"_s)));
    const QStringList expected{u"a/"_s, u"a/b.url"_s, u"a/self/"_s, u"a/up/"_s};
    QCOMPARE(walk().reported, expected);
}

void tst_FindFiles::linkedFoldersAreEntered()
{
    QVERIFY(m_home->makeFolder());
    QTemporaryDir elsewhere;
    QFile file(elsewhere.filePath(u"x.url"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(QFile::link(elsewhere.path(), m_home->path(u"l"_s)));
    const QStringList expected{u"l/"_s, u"l/x.url"_s};
    QCOMPARE(walk().reported, expected);
}

void tst_FindFiles::danglingLinkIsAFile()
{
    QVERIFY(m_home->makeFolder());
    QVERIFY(QFile::link(m_home->path(u"gone"_s), m_home->path(u"l.url"_s)));
    QCOMPARE(walk().reported, QStringList{u"l.url"_s});
}

void tst_FindFiles::sizes()
{
    QVERIFY(m_home->write(u"a.url"_s, QByteArray(100, 'x')));
    QVERIFY(m_home->write(u"b/c.url"_s, QByteArray(11, 'x')));
    QVERIFY(m_home->write(u"b/d.txt"_s, QByteArray(1000, 'x')));
    QVERIFY(m_home->makeFolder(u"e.url"_s));
    QCOMPARE(walk().size, 111);
}

void tst_FindFiles::sizeOfAHugeFile()
{
    QVERIFY(m_home->makeFolder());
    QFile file(m_home->path(u"a.url"_s));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const qint64 fourGigabytes = qint64(1) << 32;
    if (!file.resize(2 * fourGigabytes + 5))
        QSKIP("the file system has no sparse files of that size");
    QCOMPARE(walk().size, 5 - 2);
}

void tst_FindFiles::fileCountOverflows()
{
    const qint16 most = std::numeric_limits<qint16>::max();
    QVERIFY(m_home->writeLink(u"a.url"_s, "http://a/"));
    QVERIFY(m_home->writeLink(u"b.url"_s, "http://b/"));
    QVERIFY(!walk(most - 2).overflowed);
    const Result result = walk(most - 1);
    QVERIFY(result.overflowed);
    QCOMPARE(result.files, most);
    QCOMPARE(result.reported, QStringList{u"a.url"_s});
}

void tst_FindFiles::folderCountOverflows()
{
    const qint16 most = std::numeric_limits<qint16>::max();
    QVERIFY(m_home->makeFolder(u"a"_s));
    QVERIFY(m_home->makeFolder(u"b"_s));
    QVERIFY(!walk(0, most - 2).overflowed);
    const Result result = walk(0, most - 1);
    QVERIFY(result.overflowed);
    QCOMPARE(result.folders, most);
}

QTEST_GUILESS_MAIN(tst_FindFiles)
#include "tst_findfiles.moc"
