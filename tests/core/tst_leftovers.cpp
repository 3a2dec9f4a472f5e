#include "FileFaults.h"
#include "FileWriter.h"
#include "FolderLock.h"
#include "Leftovers.h"
#include "StageFolder.h"
#include "StageName.h"
#include "TempAppFolder.h"
#include "Unlogged.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTest>

#include <csignal>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace {
bool none(const QString &)
{
    return false;
}
}

/// What a killed program left goes, and nothing else.
class tst_leftovers : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_folder.reset(); }
    void nobodysGo();
    void theUsersStay_data();
    void theUsersStay();
    void ownedOnesStay();
    void linksAreNotFollowed();
    void onlyTheTreeGoesDeep();
    void walkEndsWithTheProgram();
    void missingFolders();
    void stageFolderGoesWithItsObject();
    void stageFolderOfARunningProgramStays();
    void stageFolderOfAKilledProgramGoes();
    void keptStageFolderIsTakenOnce();
    void downloadsThatAreNeededStay();
    void oddNotes();
    void whatKilledWritersLeave();

private:
    QString path(const QString &name) const { return m_folder->file(u"Profiles/"_s + name); }
    bool put(const QString &name, const QByteArray &bytes = "x") const
    {
        return m_folder->write(u"Profiles/"_s + name, bytes);
    }
    QStringList entries() const
    {
        return QDir(path({})).entryList(QDir::AllEntries | QDir::Hidden | QDir::System
                                        | QDir::NoDotAndDotDot);
    }
    void clean(Leftovers::Depth depth = Leftovers::Depth::Folder) const
    {
        Leftovers::removeIn(m_folder->file(u"Profiles"_s), depth);
    }

    std::unique_ptr<TempAppFolder> m_folder;
    const Unlogged m_unlogged;
};

void tst_leftovers::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
}

void tst_leftovers::nobodysGo()
{
    QVERIFY(put(u".orvane-abCdeF"_s));
    QVERIFY(put(u".orvane-ABCDEF/page.html"_s));
    QVERIFY(put(u".orvane-ABCDEF/page_files/deep/x.png"_s));
    for (const QString &name :
         {u"Settings.ini.aBcDeF"_s, u"Engine.ini.QrsTUv"_s, u"PopupURLs.txt.abcdeF"_s,
          u"Work.orp.abcDEf"_s, u"Source-20260101-101010-123-00.html.xYZabc"_s})
        QVERIFY(put(name));
    clean();
    QCOMPARE(entries(), QStringList());
}

void tst_leftovers::theUsersStay_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"Settings.ini",
                             "Settings.ini.backup",
                             "Settings.ini.BACKUP",
                             "Settings.ini.Backup",
                             "Settings.ini.old",
                             "Settings.ini.aBcDe",
                             "Settings.ini.aBcDeFg",
                             "Settings.ini.aBcDe1",
                             "settings.ini.aBcDeF",
                             "Notes.txt.aBcDeF",
                             "Photos.aBcDeF",
                             "orvane-abcdef",
                             ".orvane-abcde",
                             ".orvane-abcdefg",
                             ".orvane-abcde1",
                             ".orvane-saved",
                             ".Orvane-abcdef",
                             ".orvane-abcdef.txt",
                             "Work.orp",
                             "Work.orp.second",
                             "Work.orp.BackUp",
                             "Work.orp.myCopy",
                             "Settings.ini.SaveMe",
                             "Engine.ini.oldOne"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void tst_leftovers::theUsersStay()
{
    QFETCH(QString, name);
    QVERIFY(put(name));
    clean(Leftovers::Depth::Tree);
    QCOMPARE(entries(), QStringList(name));
}

void tst_leftovers::ownedOnesStay()
{
    QVERIFY(put(u".orvane-abcdef"_s));
    QVERIFY(put(u"Settings.ini.aBcDeF"_s));
    const int stage = ::open(QFile::encodeName(path(u".orvane-abcdef"_s)).constData(), O_RDONLY);
    QCOMPARE(::flock(stage, LOCK_EX | LOCK_NB), 0);
    {
        // An older program at work.
        const int folder = ::open(QFile::encodeName(path({})).constData(), O_RDONLY | O_DIRECTORY);
        QCOMPARE(::flock(folder, LOCK_EX | LOCK_NB), 0);
        clean();
        ::close(folder);
    }
    QCOMPARE(entries(), QStringList({u".orvane-abcdef"_s, u"Settings.ini.aBcDeF"_s}));
    clean();
    QCOMPARE(entries(), QStringList(u".orvane-abcdef"_s));
    ::close(stage);
    clean();
    QCOMPARE(entries(), QStringList());
}

void tst_leftovers::linksAreNotFollowed()
{
    QVERIFY(m_folder->write(u"Photos/photo.png"_s, "x"));
    QVERIFY(QFile::link(m_folder->file(u"Photos"_s), path(u".orvane-abcdef"_s)));
    QVERIFY(put(u".orvane-ABCDEF/x"_s));
    QVERIFY(QFile::link(m_folder->file(u"Photos"_s), path(u".orvane-ABCDEF/photos"_s)));
    clean(Leftovers::Depth::Tree);
    QVERIFY(m_folder->exists(u"Photos/photo.png"_s));
    QCOMPARE(entries(), QStringList(u".orvane-abcdef"_s));
}

void tst_leftovers::onlyTheTreeGoesDeep()
{
    QVERIFY(put(u"News/Old/.orvane-abcdef"_s));
    QVERIFY(put(u"News/Old/a.url"_s));
    clean();
    QVERIFY(QFileInfo::exists(path(u"News/Old/.orvane-abcdef"_s)));
    clean(Leftovers::Depth::Tree);
    QVERIFY(!QFileInfo::exists(path(u"News/Old/.orvane-abcdef"_s)));
    QVERIFY(QFileInfo::exists(path(u"News/Old/a.url"_s)));
}

void tst_leftovers::walkEndsWithTheProgram()
{
    QVERIFY(put(u"News/Old/.orvane-abcdef"_s));
    const std::atomic<bool> stop = true;
    Leftovers::removeIn(path({}), Leftovers::Depth::Tree, stop);
    QVERIFY(QFileInfo::exists(path(u"News/Old/.orvane-abcdef"_s)));
}

void tst_leftovers::missingFolders()
{
    Leftovers::removeIn(m_folder->file(u"none"_s), Leftovers::Depth::Tree);
    Leftovers::removeIn({}, Leftovers::Depth::Tree);
    Leftovers::removeNoted(none);
    QVERIFY(!m_folder->exists(u"none"_s));
}

void tst_leftovers::stageFolderGoesWithItsObject()
{
    {
        StageFolder stage(path({}));
        QVERIFY(stage.isValid());
        QCOMPARE(entries().size(), 1);
        QVERIFY(StageName::matches(entries().first()));
        QVERIFY(FileWriter::write(stage.filePath(u"page.html"_s), "x"));
        stage.remove();
        QCOMPARE(entries(), QStringList());
    }
    QVERIFY(!QFileInfo::exists(StageFolder::notes()));
    const StageFolder nowhere(m_folder->file(u"none"_s));
    QVERIFY(!nowhere.isValid());
}

void tst_leftovers::stageFolderOfARunningProgramStays()
{
    const StageFolder stage(path({}));
    QVERIFY(FileWriter::write(stage.filePath(u"page.html"_s), "x"));
    const QStringList before = entries();
    Leftovers::removeNoted(none);
    clean();
    QCOMPARE(entries(), before);
    QVERIFY(QFileInfo::exists(stage.filePath(u"page.html"_s)));
    QCOMPARE(QDir(StageFolder::notes()).entryList(QDir::Files).size(), 1);
}

void tst_leftovers::stageFolderOfAKilledProgramGoes()
{
    int kills = 0;
    for (int at = 1;; ++at) {
        const pid_t child = ::fork();
        QVERIFY(child >= 0);
        if (child == 0) {
            FileFaults::arm(FileFaults::Kind::Kill, at);
            StageFolder stage(path({}));
            FileWriter::write(stage.filePath(u"page.html"_s), "x").leaveToLog();
            ::_exit(0);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        Leftovers::removeNoted(none);
        QCOMPARE(entries(), QStringList());
        QVERIFY(!QFileInfo::exists(StageFolder::notes()));
        if (WEXITSTATUS(status) != FileFaults::killed)
            break;
        ++kills;
    }
    QVERIFY(kills >= 4);
}

void tst_leftovers::keptStageFolderIsTakenOnce()
{
    QString kept;
    {
        StageFolder stage(path({}), StageName::Kind::Download);
        QVERIFY(stage.isValid());
        kept = stage.path();
        QVERIFY(FileWriter::write(stage.filePath(u"part"_s), "x"));
        QVERIFY(!StageFolder::take(kept));
        stage.keep();
    }
    QVERIFY(QFileInfo::exists(StageFolder::notes()));
    {
        const auto taken = StageFolder::take(kept);
        QVERIFY(taken);
        QVERIFY(QFileInfo::exists(taken->filePath(u"part"_s)));
        QVERIFY(!StageFolder::take(kept));
        Leftovers::removeNoted(none);
        QVERIFY(QFileInfo::exists(taken->filePath(u"part"_s)));
    }
    QCOMPARE(entries(), QStringList());
    QVERIFY(!QFileInfo::exists(StageFolder::notes()));
    QVERIFY(!StageFolder::take(kept));
    QVERIFY(QFile::link(m_folder->path(), kept));
    QVERIFY(!StageFolder::take(kept));
}

void tst_leftovers::downloadsThatAreNeededStay()
{
    QStringList kept;
    for (int i = 0; i < 2; ++i) {
        StageFolder stage(path({}), StageName::Kind::Download);
        QVERIFY(FileWriter::write(stage.filePath(u"part"_s), "x"));
        stage.keep();
        kept.append(stage.path());
    }
    clean(Leftovers::Depth::Tree);
    QCOMPARE(entries().size(), 2);
    Leftovers::removeNoted([&kept](const QString &folder) { return folder == kept.first(); });
    QCOMPARE(entries(), QStringList(QFileInfo(kept.first()).fileName()));
    QVERIFY(QFileInfo::exists(kept.first() + u"/part"_s));
    QCOMPARE(QDir(StageFolder::notes()).entryList(QDir::Files).size(), 1);
    Leftovers::removeNoted(none);
    QCOMPARE(entries(), QStringList());
}

void tst_leftovers::oddNotes()
{
    QVERIFY(put(u"photo.png"_s));
    const auto note = [this](const QString &name, const QByteArray &bytes) {
        return m_folder->write(u"AppData/Unfinished/"_s + name, bytes);
    };
    QVERIFY(note(u"a"_s, QFile::encodeName(path(u"photo.png"_s))));
    QVERIFY(note(u"b"_s, QFile::encodeName(path({}))));
    QVERIFY(note(u"c"_s, ""));
    QVERIFY(note(u"d"_s, QByteArray("\0\xff", 2)));
    QVERIFY(note(u"e"_s, ".orvane-abcdef"));
    // Its disk may come back.
    QVERIFY(note(u"f"_s, QFile::encodeName(m_folder->file(u"away/.orvane-abcdef"_s))));
    QVERIFY(note(u"g"_s, QFile::encodeName(path(u".orvane-abcdef"_s))));
    Leftovers::removeNoted(none);
    QCOMPARE(entries(), QStringList(u"photo.png"_s));
    QVERIFY(m_folder->exists(u"AppData/Unfinished/f"_s));
    QVERIFY(!m_folder->exists(u"AppData/Unfinished/g"_s));
    QVERIFY(m_folder->write(u"away/.orvane-abcdef/page.html"_s, "x"));
    Leftovers::removeNoted(none);
    QVERIFY(!m_folder->exists(u"away/.orvane-abcdef"_s));
    QVERIFY(!m_folder->exists(u"AppData/Unfinished/f"_s));
}

void tst_leftovers::whatKilledWritersLeave()
{
    using namespace FileFaults;
    for (const int lack : {int(None), int(UnnamedFiles)}) {
        for (int at = 1;; ++at) {
            QVERIFY(put(u"a"_s, "old"));
            const pid_t child = ::fork();
            QVERIFY(child >= 0);
            if (child == 0) {
                setLack(lack);
                arm(Kind::Kill, at);
                FileWriter::write(path(u"a"_s), "new").leaveToLog();
                ::_exit(0);
            }
            int status = 0;
            QCOMPARE(::waitpid(child, &status, 0), child);
            clean();
            QCOMPARE(entries(), QStringList(u"a"_s));
            if (WEXITSTATUS(status) != killed)
                break;
        }
    }
}

QTEST_GUILESS_MAIN(tst_leftovers)
#include "tst_leftovers.moc"
