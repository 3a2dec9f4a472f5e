#include "FileAppend.h"
#include "FileFaults.h"
#include "FileUpdate.h"
#include "SmallDisk.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using FileFaults::Kind;
using Failure = WriteResult::Failure;

/// Lines at the end of a file, whole or not at all.
class tst_fileappend : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void makesAndAdds();
    void endsATornLine();
    void linksStay();
    void onlyPlainFiles();
    void leavesSixteenBitsAlone_data();
    void leavesSixteenBitsAlone();
    void missingFolder();
    void fullDiskLosesNothing();
    void halfALineIsTakenBack();
    void readOnlyDisk();
    void killedWhileAdding();
    void manyProcessesLoseNothing();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    static QByteArray bytes(const QString &file)
    {
        QFile device(file);
        return device.open(QIODevice::ReadOnly) ? device.readAll() : QByteArray();
    }
    static bool put(const QString &file, const QByteArray &bytes)
    {
        QFile device(file);
        return device.open(QIODevice::WriteOnly) && device.write(bytes) == bytes.size();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_fileappend::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void tst_fileappend::cleanup()
{
    FileFaults::disarm();
}

void tst_fileappend::makesAndAdds()
{
    QVERIFY(FileAppend::add(path(u"a"_s), "one\n"));
    QVERIFY(FileAppend::add(path(u"a"_s), "two\nthree\n"));
    QCOMPARE(bytes(path(u"a"_s)), "one\ntwo\nthree\n"_ba);
    // Nobody else reads where the user has been.
    struct stat status = {};
    QCOMPARE(::stat(QFile::encodeName(path(u"a"_s)).constData(), &status), 0);
    QCOMPARE(status.st_mode & 0777, mode_t(0600));
}

void tst_fileappend::endsATornLine()
{
    QVERIFY(put(path(u"a"_s), "one\nhal"));
    QVERIFY(FileAppend::add(path(u"a"_s), "two\n"));
    QCOMPARE(bytes(path(u"a"_s)), "one\nhal\ntwo\n"_ba);
}

void tst_fileappend::linksStay()
{
    QVERIFY(put(path(u"real"_s), "one\n"));
    QVERIFY(QFile::link(path(u"real"_s), path(u"link"_s)));
    QVERIFY(FileAppend::add(path(u"link"_s), "two\n"));
    QVERIFY(QFileInfo(path(u"link"_s)).isSymLink());
    QCOMPARE(bytes(path(u"real"_s)), "one\ntwo\n"_ba);
}

void tst_fileappend::onlyPlainFiles()
{
    QVERIFY(QDir(m_folder->path()).mkdir(u"folder"_s));
    QVERIFY(FileAppend::add(path(u"folder"_s), "x\n").isFailure(Failure::NotAllowed));
    QCOMPARE(::mkfifo(QFile::encodeName(path(u"pipe"_s)).constData(), 0600), 0);
    QVERIFY(FileAppend::add(path(u"pipe"_s), "x\n").isFailure(Failure::NotAllowed));
    QVERIFY(QFile::link(path(u"b"_s), path(u"a"_s)));
    QVERIFY(QFile::link(path(u"a"_s), path(u"b"_s)));
    QVERIFY(FileAppend::add(path(u"a"_s), "x\n").isFailure(Failure::NotAllowed));
}

void tst_fileappend::leavesSixteenBitsAlone_data()
{
    QTest::addColumn<QByteArray>("old");
    QTest::newRow("low byte first") << QByteArray("\xFF\xFEo\0", 4);
    QTest::newRow("high byte first") << QByteArray("\xFE\xFF\0o", 4);
}

void tst_fileappend::leavesSixteenBitsAlone()
{
    QFETCH(QByteArray, old);
    QVERIFY(put(path(u"a"_s), old));
    QVERIFY(FileAppend::add(path(u"a"_s), "x\n").isFailure(Failure::SixteenBits));
    QCOMPARE(bytes(path(u"a"_s)), old);
}

void tst_fileappend::missingFolder()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot open"_s));
    QVERIFY(FileAppend::add(path(u"none/a"_s), "x\n").isFailure(Failure::FolderMissing));
}

void tst_fileappend::fullDiskLosesNothing()
{
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("Only the superuser can mount a small disk.");
    const QString file = disk.path() + u"/a"_s;
    const QByteArray line = QByteArray(999, 'x') + '\n';
    int lines = 0;
    WriteResult result;
    while ((result = FileAppend::add(file, line)))
        ++lines;
    QVERIFY(lines > 0);
    QVERIFY(result.isFailure(Failure::NoRoom));
    QCOMPARE(bytes(file), line.repeated(lines));
}

void tst_fileappend::halfALineIsTakenBack()
{
    QVERIFY(put(path(u"a"_s), "one\n"));
    FileFaults::arm(Kind::FullDisk, 1);
    const WriteResult result = FileAppend::add(path(u"a"_s), "a line of which half goes out\n");
    QVERIFY(FileFaults::disarm());
    QVERIFY(result.isFailure(Failure::NoRoom));
    QCOMPARE(bytes(path(u"a"_s)), "one\n"_ba);
}

void tst_fileappend::readOnlyDisk()
{
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("Only the superuser can mount a small disk.");
    const QString file = disk.path() + u"/a"_s;
    QVERIFY(put(file, "one\n"));
    QVERIFY(disk.makeReadOnly());
    QVERIFY(FileAppend::add(file, "two\n").isFailure(Failure::NotAllowed));
    QCOMPARE(bytes(file), "one\n"_ba);
}

/// Whatever is left of the line that was being written, all before it and after it is there.
void tst_fileappend::killedWhileAdding()
{
    for (int at = 1; at < 20; ++at) {
        const QString file = path(QString::number(at));
        QVERIFY(put(file, "one\n"));
        const pid_t child = ::fork();
        QVERIFY(child >= 0);
        if (child == 0) {
            FileFaults::arm(Kind::Kill, at);
            ::_exit(FileAppend::add(file, "two\n") ? 0 : 1);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(FileAppend::add(file, "three\n"));
        const QByteArrayList lines = bytes(file).split('\n');
        QCOMPARE(lines.first(), "one"_ba);
        QVERIFY(lines.contains("three"));
        QVERIFY(lines.size() <= 4);
    }
}

void tst_fileappend::manyProcessesLoseNothing()
{
    constexpr int processes = 4;
    constexpr int each = 50;
    const QString file = path(u"a"_s);
    QList<pid_t> children;
    for (int process = 0; process < processes; ++process) {
        const pid_t child = ::fork();
        QVERIFY(child >= 0);
        if (child == 0) {
            bool isWell = true;
            for (int i = 0; i < each; ++i)
                isWell &= bool(FileAppend::add(file, "line\n"));
            ::_exit(isWell ? 0 : 1);
        }
        children.append(child);
    }
    // And one that replaces the file meanwhile, as deleting does.
    for (int i = 0; i < each; ++i)
        QVERIFY(FileUpdate::change(file, [](const QByteArray &old) { return old + "mine\n"; }));
    for (const pid_t child : std::as_const(children)) {
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QCOMPARE(status, 0);
    }
    QCOMPARE(bytes(file).count("line\n"), processes * each);
    QCOMPARE(bytes(file).count("mine\n"), each);
    QCOMPARE(bytes(file).size(), (processes + 1) * each * 5);
}

QTEST_GUILESS_MAIN(tst_fileappend)
#include "tst_fileappend.moc"
