#include "FileFaults.h"
#include "FileWriter.h"
#include "SmallDisk.h"
#include "StageName.h"
#include "Unlogged.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using FileFaults::Kind;
using Failure = WriteResult::Failure;

/// Whole files or none, whatever goes wrong.
class tst_filewriter : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void makesAndReplaces();
    void createReplacesNothing_data() { disks(); }
    void createReplacesNothing();
    void oneOfManyCreates();
    void linksStay();
    void rightsStay();
    void onlyPlainFiles();
    void lostFolder();
    void noName();
    void longestName();
    void writerThatRefuses();
    void eachFaultKeepsTheOldFile_data();
    void eachFaultKeepsTheOldFile();
    void eachFaultMakesNoNewFile_data();
    void eachFaultMakesNoNewFile();
    void smallDiskKeepsTheOldFile_data();
    void smallDiskKeepsTheOldFile();
    void readOnlyDisk();
    void killedAtAnyTime_data();
    void killedAtAnyTime();
    void stageNames();

private:
    static void disks();
    static void faults();
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QStringList files() const
    {
        return QDir(m_folder->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    /// Where a disk takes nothing any more, what lies on it cannot be removed either.
    void removeStages(Kind kind) const
    {
        for (const QString &name : files()) {
            if (kind == Kind::ReadOnly && StageName::matches(name))
                QFile::remove(path(name));
        }
    }
    static QByteArray contents(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static bool put(const QString &path, const QByteArray &bytes)
    {
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

namespace {
constexpr int sizes[] = {20, 16384, 1024 * 1024};
}

void tst_filewriter::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void tst_filewriter::cleanup()
{
    FileFaults::disarm();
    FileFaults::setLack(FileFaults::None);
}

void tst_filewriter::disks()
{
    using namespace FileFaults;
    QTest::addColumn<int>("lack");
    QTest::newRow("whole") << int(None);
    QTest::newRow("no unnamed files") << int(UnnamedFiles);
    QTest::newRow("nor new names") << (UnnamedFiles | NewNames);
    QTest::newRow("nor links") << (UnnamedFiles | NewNames | Links);
}

void tst_filewriter::faults()
{
    QTest::addColumn<int>("lack");
    QTest::addColumn<Kind>("kind");
    QTest::addColumn<int>("size");
    for (const int size : sizes) {
        for (const int lack : {FileFaults::None, FileFaults::UnnamedFiles}) {
            const auto row = [&](const char *kind) {
                return QByteArray(kind) + (lack ? ", poor disk, " : ", ")
                    + QByteArray::number(size);
            };
            QTest::newRow(row("one operation").constData()) << lack << Kind::Fail << size;
            QTest::newRow(row("full disk").constData()) << lack << Kind::FullDisk << size;
            QTest::newRow(row("read only").constData()) << lack << Kind::ReadOnly << size;
        }
    }
}

void tst_filewriter::makesAndReplaces()
{
    QVERIFY(FileWriter::write(path(u"a"_s), "one"));
    QCOMPARE(contents(path(u"a"_s)), "one");
    QVERIFY(FileWriter::write(path(u"a"_s), [](QFileDevice &file) {
        return file.write("t") == 1 && file.write("wo") == 2;
    }));
    QCOMPARE(contents(path(u"a"_s)), "two");
    QVERIFY(FileWriter::write(path(u"empty"_s), QByteArray()));
    QVERIFY(FileWriter::create(path(u"b"_s), "three"));
    QCOMPARE(contents(path(u"b"_s)), "three");
    QCOMPARE(files(), QStringList({u"a"_s, u"b"_s, u"empty"_s}));
    QCOMPARE(QFileInfo(path(u"b"_s)).permissions(), QFileInfo(path(u"a"_s)).permissions());
}

void tst_filewriter::createReplacesNothing()
{
    QFETCH(int, lack);
    FileFaults::setLack(lack);
    QVERIFY(put(path(u"a"_s), "old"));
    QVERIFY(QDir().mkpath(path(u"folder"_s)));
    QVERIFY(QFile::link(path(u"nowhere"_s), path(u"link"_s)));
    for (const QString &name : {u"a"_s, u"folder"_s, u"link"_s})
        QVERIFY(FileWriter::create(path(name), "new").isFailure(Failure::Taken));
    QCOMPARE(contents(path(u"a"_s)), "old");
    // The name is taken as the file is made.
    QVERIFY(FileWriter::create(path(u"late"_s), [this](QFileDevice &file) {
                return put(path(u"late"_s), "old") && file.write("new") == 3;
            }).isFailure(Failure::Taken));
    QCOMPARE(contents(path(u"late"_s)), "old");
    QVERIFY(FileWriter::create(path(u"new"_s), "new"));
    QCOMPARE(contents(path(u"new"_s)), "new");
    QCOMPARE(files(), QStringList({u"a"_s, u"folder"_s, u"late"_s, u"link"_s, u"new"_s}));
}

void tst_filewriter::oneOfManyCreates()
{
    constexpr int rounds = 50;
    std::atomic<int> made = 0;
    std::vector<std::unique_ptr<QThread>> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back(QThread::create([this, &made] {
            for (int round = 0; round < rounds; ++round)
                made +=
                    FileWriter::create(path(QString::number(round)), QByteArray(100, 'x')) ? 1 : 0;
        }));
        threads.back()->start();
    }
    for (const auto &thread : threads)
        QVERIFY(thread->wait(60000));
    QCOMPARE(made.load(), rounds);
    QCOMPARE(files().size(), rounds);
}

void tst_filewriter::linksStay()
{
    QVERIFY(QDir().mkpath(path(u"folder"_s)));
    QVERIFY(put(path(u"folder/real"_s), "old"));
    QVERIFY(QFile::link(path(u"folder/real"_s), path(u"link"_s)));
    QVERIFY(QFile::link(path(u"folder/later"_s), path(u"further"_s)));
    QVERIFY(QFile::link(path(u"further"_s), path(u"ahead"_s)));
    QVERIFY(FileWriter::write(path(u"link"_s), "new"));
    QVERIFY(FileWriter::write(path(u"ahead"_s), "new"));
    for (const QString &name : {u"link"_s, u"ahead"_s})
        QVERIFY(QFileInfo(path(name)).isSymLink());
    QCOMPARE(contents(path(u"folder/real"_s)), "new");
    QCOMPARE(contents(path(u"folder/later"_s)), "new");
}

void tst_filewriter::rightsStay()
{
    QVERIFY(put(path(u"a"_s), "old"));
    const auto mine = QFile::ReadOwner | QFile::WriteOwner | QFile::ReadUser | QFile::WriteUser;
    QVERIFY(QFile::setPermissions(path(u"a"_s), mine));
    QVERIFY(FileWriter::write(path(u"a"_s), "new"));
    QCOMPARE(QFile::permissions(path(u"a"_s)), mine);
    QVERIFY(QFile::setPermissions(path(u"a"_s), QFile::ReadOwner));
    if (QFileInfo(path(u"a"_s)).isWritable())
        return;
    const Unlogged unlogged;
    QVERIFY(FileWriter::write(path(u"a"_s), "newer").isFailure(Failure::NotAllowed));
    QCOMPARE(contents(path(u"a"_s)), "new");
}

void tst_filewriter::onlyPlainFiles()
{
    const Unlogged unlogged;
    QVERIFY(QDir().mkpath(path(u"folder"_s)));
    QVERIFY(FileWriter::write(path(u"folder"_s), "x").isFailure(Failure::NotAllowed));
    QVERIFY(QFileInfo(path(u"folder"_s)).isDir());
    QVERIFY(!FileWriter::write(u"/dev/null"_s, "x"));
    QVERIFY(QFile::link(path(u"self"_s), path(u"self"_s)));
    QVERIFY(!FileWriter::write(path(u"self"_s), "x"));
    QVERIFY(QFileInfo(path(u"self"_s)).isSymLink());
}

void tst_filewriter::lostFolder()
{
    for (const int size : sizes) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot write"_s));
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot write"_s));
        const QByteArray bytes(size, 'x');
        const WriteResult written = FileWriter::write(path(u"none/a"_s), bytes);
        QVERIFY(written.isFailure(Failure::FolderMissing));
        QVERIFY(FileWriter::create(path(u"none/a"_s), bytes).isFailure(Failure::FolderMissing));
    }
    QCOMPARE(files(), QStringList());
}

void tst_filewriter::noName()
{
    const Unlogged unlogged;
    QVERIFY(!FileWriter::write(QString(), "x"));
    QVERIFY(!FileWriter::create(QString(), "x"));
}

void tst_filewriter::longestName()
{
    const QString name(255, u'x');
    QVERIFY(FileWriter::create(path(name), "one"));
    QVERIFY(FileWriter::write(path(name), "two"));
    QCOMPARE(contents(path(name)), "two");
    const Unlogged unlogged;
    QVERIFY(!FileWriter::write(path(name + u'x'), "x"));
    QCOMPARE(files(), QStringList(name));
}

void tst_filewriter::writerThatRefuses()
{
    const Unlogged unlogged;
    QVERIFY(put(path(u"a"_s), "old"));
    const auto half = [](QFileDevice &file) {
        file.write("new");
        return false;
    };
    QVERIFY(FileWriter::write(path(u"a"_s), half).isFailure(Failure::Refused));
    QVERIFY(FileWriter::create(path(u"b"_s), half).isFailure(Failure::Refused));
    QCOMPARE(contents(path(u"a"_s)), "old");
    QCOMPARE(files(), QStringList(u"a"_s));
}

void tst_filewriter::eachFaultKeepsTheOldFile_data()
{
    faults();
}

void tst_filewriter::eachFaultKeepsTheOldFile()
{
    QFETCH(int, lack);
    QFETCH(Kind, kind);
    QFETCH(int, size);
    const Unlogged unlogged;
    const QByteArray bytes(size, 'x');
    int failures = 0;
    for (int at = 1;; ++at) {
        QVERIFY(put(path(u"a"_s), "old"));
        FileFaults::setLack(lack);
        FileFaults::arm(kind, at);
        const WriteResult result = FileWriter::write(path(u"a"_s), bytes);
        const bool reached = FileFaults::disarm();
        removeStages(kind);
        QCOMPARE(contents(path(u"a"_s)), result ? bytes : QByteArray("old"));
        QCOMPARE(files(), QStringList(u"a"_s));
        if (!result) {
            ++failures;
            if (kind == Kind::FullDisk)
                QVERIFY(result.isFailure(Failure::NoRoom));
        }
        if (!reached)
            break;
    }
    QVERIFY(failures >= (kind == Kind::FullDisk ? 1 : 4));
}

void tst_filewriter::eachFaultMakesNoNewFile_data()
{
    faults();
}

void tst_filewriter::eachFaultMakesNoNewFile()
{
    QFETCH(int, lack);
    QFETCH(Kind, kind);
    QFETCH(int, size);
    const Unlogged unlogged;
    const QByteArray bytes(size, 'x');
    int failures = 0;
    for (int at = 1;; ++at) {
        FileFaults::setLack(lack);
        FileFaults::arm(kind, at);
        const WriteResult result = FileWriter::create(path(u"a"_s), bytes);
        const bool reached = FileFaults::disarm();
        removeStages(kind);
        QCOMPARE(files(), result ? QStringList(u"a"_s) : QStringList());
        QCOMPARE(contents(path(u"a"_s)), result ? bytes : QByteArray());
        QFile::remove(path(u"a"_s));
        failures += result ? 0 : 1;
        if (!reached)
            break;
    }
    QVERIFY(failures >= (kind == Kind::FullDisk ? 1 : 3));
}

void tst_filewriter::smallDiskKeepsTheOldFile_data()
{
    QTest::addColumn<int>("size");
    for (const int size : sizes)
        QTest::newRow(QByteArray::number(size).constData()) << size;
}

void tst_filewriter::smallDiskKeepsTheOldFile()
{
    QFETCH(int, size);
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("a disk of the test's own needs the superuser");
    const Unlogged unlogged;
    const QString file = disk.path() + "/a"_L1;
    QVERIFY(put(file, "old"));
    QFile filler(disk.path() + "/filler"_L1);
    QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (filler.write(QByteArray(4096, 'x')) == 4096) { }
    const WriteResult result = FileWriter::write(file, QByteArray(size, 'x'));
    QVERIFY(result.isFailure(Failure::NoRoom));
    QVERIFY(FileWriter::create(disk.path() + "/b"_L1, QByteArray(size, 'x'))
                .isFailure(Failure::NoRoom));
    QCOMPARE(contents(file), "old");
    QCOMPARE(QDir(disk.path()).entryList(QDir::Files | QDir::Hidden),
             QStringList({u"a"_s, u"filler"_s}));
}

void tst_filewriter::readOnlyDisk()
{
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("a disk of the test's own needs the superuser");
    const Unlogged unlogged;
    const QString file = disk.path() + "/a"_L1;
    QVERIFY(put(file, "old"));
    QVERIFY(disk.makeReadOnly());
    for (const int size : sizes) {
        const QByteArray bytes(size, 'x');
        QVERIFY(FileWriter::write(file, bytes).isFailure(Failure::NotAllowed));
        QVERIFY(FileWriter::create(disk.path() + "/b"_L1, bytes).isFailure(Failure::NotAllowed));
    }
    QCOMPARE(contents(file), "old");
}

void tst_filewriter::killedAtAnyTime_data()
{
    disks();
}

void tst_filewriter::killedAtAnyTime()
{
    QFETCH(int, lack);
    const Unlogged unlogged;
    int kills = 0;
    for (int at = 1;; ++at) {
        QVERIFY(put(path(u"a"_s), "old"));
        const pid_t child = ::fork();
        QVERIFY(child >= 0);
        if (child == 0) {
            FileFaults::setLack(lack);
            FileFaults::arm(Kind::Kill, at);
            FileWriter::write(path(u"a"_s), "new").leaveToLog();
            FileWriter::create(path(u"b"_s), "new").leaveToLog();
            ::_exit(0);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFEXITED(status));
        const QByteArray left = contents(path(u"a"_s));
        QVERIFY(left == "old" || left == "new");
        // Only on a disk that cannot do better is a name there before its file.
        if (QFileInfo::exists(path(u"b"_s)) && (lack & FileFaults::Links) == 0)
            QCOMPARE(contents(path(u"b"_s)), "new");
        for (const QString &name : files())
            QVERIFY(name == "a"_L1 || name == "b"_L1 || StageName::matches(name));
        QFile::remove(path(u"b"_s));
        if (WEXITSTATUS(status) != FileFaults::killed)
            break;
        ++kills;
    }
    QVERIFY(kills >= 6);
}

void tst_filewriter::stageNames()
{
    for (int i = 0; i < 100; ++i)
        QVERIFY(StageName::matches(QFileInfo(StageName::make(m_folder->path())).fileName()));
    for (const QString &name : {u".orvane-"_s, u".orvane-abcde"_s, u".orvane-abcdefg"_s,
                                u".orvane-abcd1f"_s, u"orvane-abcdef"_s, u".Orvane-abcdef"_s,
                                u".orvane-ab\u00e4def"_s, u".orvane-abc.ef"_s, u".orvane-saved"_s})
        QVERIFY2(!StageName::matches(name), qPrintable(name));
}

QTEST_GUILESS_MAIN(tst_filewriter)
#include "tst_filewriter.moc"
