#include "BookmarkImport.h"
#include "FavoriteFile.h"
#include "FavoritesHome.h"
#include "FileFaults.h"
#include "InternetShortcut.h"
#include "SmallDisk.h"
#include "StageName.h"
#include "Unlogged.h"

#include <QTest>

#include <sys/wait.h>
#include <unistd.h>

using FileFaults::Kind;

/// A new favorite is there whole or not at all, whenever the program or the disk ends.
class tst_favoritefile : public QObject {
    Q_OBJECT

private slots:
    void init() { m_home = std::make_unique<FavoritesHome>(); }
    void cleanup();

    void killedWhileOneIsMade_data() { disks(); }
    void killedWhileOneIsMade();
    void killedWhileImporting_data() { disks(); }
    void killedWhileImporting();
    void eachFault_data();
    void eachFault();
    void fullDisk_data();
    void fullDisk();
    void nameTakenMeanwhile();

private:
    static void disks();
    static void sizes();
    QStringList entries() const
    {
        return QDir(m_home->favorites())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
    }
    /// Runs in another process that ends at the file operation with that number; false when it did
    /// not come that far.
    static bool isKilledIn(const std::function<void()> &work, int lack, int at);
    static QString addressOf(int size) { return u"http://a/"_s + QString(size - 9, u'x'); }

    std::unique_ptr<FavoritesHome> m_home;
    const Unlogged m_unlogged;
};

void tst_favoritefile::cleanup()
{
    FileFaults::disarm();
    FileFaults::setLack(FileFaults::None);
    m_home.reset();
}

void tst_favoritefile::disks()
{
    using namespace FileFaults;
    QTest::addColumn<int>("lack");
    QTest::newRow("whole") << int(None);
    QTest::newRow("no unnamed files") << int(UnnamedFiles);
    QTest::newRow("nor new names") << (UnnamedFiles | NewNames);
}

void tst_favoritefile::sizes()
{
    QTest::addColumn<int>("size");
    for (const int size : {20, 16384, 1024 * 1024})
        QTest::newRow(QByteArray::number(size).constData()) << size;
}

bool tst_favoritefile::isKilledIn(const std::function<void()> &work, int lack, int at)
{
    const pid_t child = ::fork();
    if (child == 0) {
        FileFaults::setLack(lack);
        FileFaults::arm(Kind::Kill, at);
        work();
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == FileFaults::killed;
}

void tst_favoritefile::killedWhileOneIsMade()
{
    QFETCH(int, lack);
    QVERIFY(m_home->makeFolder());
    const QByteArray whole = InternetShortcut::bytes(u"http://a/"_s);
    const auto work = [this] {
        FavoriteFile::create(m_home->favorites(), u"News"_s, u"http://a/"_s);
    };
    int kills = 0;
    for (; isKilledIn(work, lack, kills + 1); ++kills) {
        for (const QString &name : entries()) {
            if (StageName::matches(name))
                continue;
            QCOMPARE(name, u"News.url"_s);
            QCOMPARE(m_home->read(name), whole);
        }
        QVERIFY(QDir(m_home->favorites()).removeRecursively() && m_home->makeFolder());
    }
    QVERIFY(kills >= 3);
    QCOMPARE(m_home->read(u"News.url"_s), whole);
}

void tst_favoritefile::killedWhileImporting()
{
    QFETCH(int, lack);
    const QByteArray bookmarks = "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n<DL><p>\n"
                                 "<DT><A HREF=\"http://a/\" ADD_DATE=\"1000000000\">A</A>\n"
                                 "<DT><A HREF=\"http://b/\">B</A>\n</DL><p>\n";
    const QString file = m_home->home() + "/bookmarks.html"_L1;
    QFile out(file);
    QVERIFY(out.open(QIODevice::WriteOnly) && out.write(bookmarks) == bookmarks.size());
    out.close();
    const auto work = [&] {
        BookmarkImport import(file, m_home->favorites());
        while (import.advance()) { }
        import.finish();
    };
    int kills = 0;
    for (; isKilledIn(work, lack, kills + 1); ++kills) {
        for (const QString &name : entries()) {
            if (!StageName::matches(name))
                QCOMPARE(
                    m_home->read(name),
                    InternetShortcut::bytes(name == "A.url"_L1 ? u"http://a/"_s : u"http://b/"_s));
        }
        QVERIFY(QDir(m_home->favorites()).removeRecursively());
    }
    QVERIFY(kills >= 5);
    QCOMPARE(entries(), QStringList({u"A.url"_s, u"B.url"_s}));
}

void tst_favoritefile::eachFault_data()
{
    sizes();
}

void tst_favoritefile::eachFault()
{
    QFETCH(int, size);
    const QString address = addressOf(size);
    QVERIFY(m_home->makeFolder());
    for (const Kind kind : {Kind::Fail, Kind::FullDisk, Kind::ReadOnly}) {
        int failures = 0;
        for (int at = 1;; ++at) {
            FileFaults::arm(kind, at);
            const auto made = FavoriteFile::create(m_home->favorites(), u"News"_s, address);
            const bool reached = FileFaults::disarm();
            QCOMPARE(entries(), made ? QStringList(u"News.url"_s) : QStringList());
            if (made)
                QCOMPARE(m_home->read(u"News.url"_s), InternetShortcut::bytes(address));
            QFile::remove(m_home->path(u"News.url"_s));
            failures += made ? 0 : 1;
            if (!reached)
                break;
        }
        QVERIFY(failures >= 1);
    }
}

void tst_favoritefile::fullDisk_data()
{
    sizes();
}

void tst_favoritefile::fullDisk()
{
    QFETCH(int, size);
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("a disk of the test's own needs the superuser");
    QFile filler(disk.path() + "/filler"_L1);
    QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (filler.write(QByteArray(4096, 'x')) == 4096) { }
    QVERIFY(!FavoriteFile::create(disk.path(), u"News"_s, addressOf(size)));
    QCOMPARE(QDir(disk.path()).entryList(QDir::Files | QDir::Hidden), QStringList(u"filler"_s));
}

void tst_favoritefile::nameTakenMeanwhile()
{
    QVERIFY(m_home->makeFolder());
    // Before the file is put in its place.
    for (int at = 1; at < 5; ++at) {
        const QString name = u"News %1"_s.arg(at);
        FileFaults::call([&] { QVERIFY(m_home->writeLink(name + ".url"_L1, "http://other/")); },
                         at);
        const auto made = FavoriteFile::create(m_home->favorites(), name, u"http://a/"_s);
        const bool reached = FileFaults::disarm();
        QVERIFY(made);
        QCOMPARE(InternetShortcut::contents(*made).url, u"http://a/"_s);
        if (!reached)
            break;
        QCOMPARE(InternetShortcut::contents(m_home->path(name + ".url"_L1)).url,
                 u"http://other/"_s);
        QCOMPARE(*made, m_home->path(name + " (2).url"_L1));
    }
}

QTEST_GUILESS_MAIN(tst_favoritefile)
#include "tst_favoritefile.moc"
