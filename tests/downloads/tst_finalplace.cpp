#include "DownloadStage.h"
#include "FileWriter.h"
#include "FinalFile.h"
#include "SmallDisk.h"
#include "TempAppFolder.h"
#include "Unlogged.h"

#include <QDir>
#include <QFileInfo>
#include <QTest>
#include <unistd.h>

using namespace Qt::StringLiterals;
using Place = Download::Place;
using Problem = Download::Problem;

/// Downloads whose place the user has chosen.
class tst_finalplace : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_folder.reset(); }
    void chosenNameIsKept();
    void whatCameMeanwhileStays();
    void agreedFileIsReplaced();
    void linkStaysOne();
    void folderIsNotReplaced();
    void readOnlyFileStays();
    void nothingIsReplacedByHalfAFile();
    void anotherDisk_data();
    void anotherDisk();
    void otherDiskIsFull();
    void chosenFolderIsGone();

private:
    Download download(const QString &folder, const QString &name, Place place) const
    {
        Download download;
        download.folder = folder;
        download.name = name;
        download.place = place;
        download.size = m_bytes.size();
        return download;
    }
    QString here(const QString &name = {}) const
    {
        return m_folder->file(u"Profiles"_s) + (name.isEmpty() ? QString() : u'/' + name);
    }
    static QStringList entries(const QString &folder)
    {
        return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System
                                      | QDir::NoDotAndDotDot);
    }
    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static bool write(const QString &path, const QByteArray &bytes)
    {
        return bool(FileWriter::write(path, bytes));
    }

    QByteArray m_bytes;
    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<DownloadStage> m_stage;
    const Unlogged m_unlogged;
};

void tst_finalplace::init()
{
    m_stage.reset();
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    QVERIFY(QDir().mkpath(here(u"downloads"_s)));
    m_bytes = "all of it";
    m_stage = std::make_unique<DownloadStage>(here(u"downloads"_s));
    QVERIFY(m_stage->isValid() && write(m_stage->file(), m_bytes));
}

/// What nobody would get from a page.
void tst_finalplace::chosenNameIsKept()
{
    const auto result = FinalFile::place(download(here(), u".notes "_s, Place::Chosen), *m_stage);
    QCOMPARE(result.name, u".notes "_s);
    QCOMPARE(read(here(u".notes "_s)), m_bytes);
    QCOMPARE(result.size, qint64(m_bytes.size()));
}

void tst_finalplace::whatCameMeanwhileStays()
{
    QVERIFY(write(here(u"x.bin"_s), "mine"));
    const auto result = FinalFile::place(download(here(), u"x.bin"_s, Place::Chosen), *m_stage);
    QCOMPARE(result.name, u"x (1).bin"_s);
    QCOMPARE(read(here(u"x.bin"_s)), QByteArray("mine"));
    QCOMPARE(read(here(u"x (1).bin"_s)), m_bytes);
}

void tst_finalplace::agreedFileIsReplaced()
{
    QVERIFY(write(here(u"x.sh"_s), "mine"));
    QVERIFY(QFile::setPermissions(here(u"x.sh"_s),
                                  QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
    const auto result = FinalFile::place(download(here(), u"x.sh"_s, Place::Replaced), *m_stage);
    QCOMPARE(result.problem, Problem::None);
    QCOMPARE(result.name, u"x.sh"_s);
    QCOMPARE(read(here(u"x.sh"_s)), m_bytes);
    // What came from outside is not run for what stood there before.
    QVERIFY(!QFileInfo(here(u"x.sh"_s)).isExecutable());
}

void tst_finalplace::linkStaysOne()
{
    QVERIFY(QDir().mkpath(here(u"far"_s)) && write(here(u"far/real"_s), "mine"));
    QVERIFY(QFile::link(here(u"far/real"_s), here(u"x.bin"_s)));
    const auto result = FinalFile::place(download(here(), u"x.bin"_s, Place::Replaced), *m_stage);
    QCOMPARE(result.problem, Problem::None);
    QVERIFY(QFileInfo(here(u"x.bin"_s)).isSymLink());
    QCOMPARE(read(here(u"far/real"_s)), m_bytes);
}

void tst_finalplace::folderIsNotReplaced()
{
    QVERIFY(QDir().mkpath(here(u"x.bin"_s)));
    const auto result = FinalFile::place(download(here(), u"x.bin"_s, Place::Replaced), *m_stage);
    QCOMPARE(result.problem, Problem::NotAllowed);
    QVERIFY(QFileInfo(here(u"x.bin"_s)).isDir());
    QCOMPARE(read(m_stage->file()), m_bytes);
}

void tst_finalplace::readOnlyFileStays()
{
    if (geteuid() == 0)
        QSKIP("The superuser may write to anything.");
    QVERIFY(write(here(u"x.bin"_s), "mine"));
    QVERIFY(QFile::setPermissions(here(u"x.bin"_s), QFile::ReadOwner));
    const auto result = FinalFile::place(download(here(), u"x.bin"_s, Place::Replaced), *m_stage);
    QCOMPARE(result.problem, Problem::NotAllowed);
    QCOMPARE(read(here(u"x.bin"_s)), QByteArray("mine"));
}

void tst_finalplace::nothingIsReplacedByHalfAFile()
{
    QVERIFY(write(here(u"x.bin"_s), "mine"));
    Download half = download(here(), u"x.bin"_s, Place::Replaced);
    half.size = m_bytes.size() + 1;
    QCOMPARE(FinalFile::place(half, *m_stage).problem, Problem::WrongLength);
    QCOMPARE(read(here(u"x.bin"_s)), QByteArray("mine"));
}

void tst_finalplace::anotherDisk_data()
{
    QTest::addColumn<Place>("place");
    QTest::addColumn<QString>("name");
    QTest::newRow("new") << Place::Chosen << u"x (1).bin"_s;
    QTest::newRow("over the file there") << Place::Replaced << u"x.bin"_s;
}

void tst_finalplace::anotherDisk()
{
    QFETCH(Place, place);
    QFETCH(QString, name);
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("Only the superuser has another disk.");
    QVERIFY(write(disk.path() + "/x.bin"_L1, "mine"));
    const auto result = FinalFile::place(download(disk.path(), u"x.bin"_s, place), *m_stage);
    QCOMPARE(result.problem, Problem::None);
    QCOMPARE(result.name, name);
    QCOMPARE(read(disk.path() + u'/' + name), m_bytes);
    const bool keeps = place == Place::Chosen;
    QCOMPARE(entries(disk.path()), keeps ? QStringList({name, u"x.bin"_s}) : QStringList(name));
}

void tst_finalplace::otherDiskIsFull()
{
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("Only the superuser has another disk.");
    QVERIFY(write(disk.path() + "/x.bin"_L1, "mine"));
    m_bytes = QByteArray(1024 * 1024, 'x');
    QVERIFY(write(m_stage->file(), m_bytes));
    const auto result =
        FinalFile::place(download(disk.path(), u"x.bin"_s, Place::Replaced), *m_stage);
    QCOMPARE(result.problem, Problem::NoRoom);
    QCOMPARE(read(disk.path() + "/x.bin"_L1), QByteArray("mine"));
    QCOMPARE(entries(disk.path()), QStringList(u"x.bin"_s));
    QCOMPARE(read(m_stage->file()).size(), m_bytes.size());
}

void tst_finalplace::chosenFolderIsGone()
{
    const auto result =
        FinalFile::place(download(here(u"gone"_s), u"x.bin"_s, Place::Chosen), *m_stage);
    QCOMPARE(result.problem, Problem::FolderGone);
    QVERIFY(!QFileInfo::exists(here(u"gone"_s)));
    QCOMPARE(read(m_stage->file()), m_bytes);
}

QTEST_GUILESS_MAIN(tst_finalplace)
#include "tst_finalplace.moc"
