#include <QDir>
#include <QFile>
#include <QtTest>

#include "AppFolder.h"
#include "BlockedList.h"
#include "EngineOptions.h"
#include "FileFaults.h"
#include "IniStore.h"
#include "Leftovers.h"
#include "RecoveredText.h"
#include "SmallDisk.h"
#include "SourceEditor.h"
#include "SourceFile.h"
#include "TempAppFolder.h"
#include "Unlogged.h"
#include "UrlProfile.h"

using namespace Qt::StringLiterals;
using FileFaults::Kind;

/// Everything that writes what the user has: a write that fails says so and costs nothing.
class tst_writers : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void eachFaultKeepsTheOldFile_data() { writersAndSizes(); }
    void eachFaultKeepsTheOldFile();
    void fullDiskKeepsTheOldFile_data() { writersAndSizes(); }
    void fullDiskKeepsTheOldFile();
    void readOnlyDiskKeepsTheOldFile_data() { writersAndSizes(); }
    void readOnlyDiskKeepsTheOldFile();
    void lostFolder_data() { writersAndSizes(); }
    void lostFolder();
    void copyOfUnsavedSource_data();
    void copyOfUnsavedSource();

private:
    enum Writer { Source, Profile, Setting, BlockedList, Options };

    static void writersAndSizes();
    /// Where that writer writes.
    static QString fileOf(int writer);
    /// Writes about as many bytes.
    static bool write(int writer, int size);
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
    static QStringList filesBeside(const QString &path)
    {
        return QDir(QFileInfo(path).path()).entryList(QDir::Files | QDir::Hidden);
    }
    static void fill(const SmallDisk &disk)
    {
        QFile filler(disk.path() + "/filler"_L1);
        if (!filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered))
            return;
        while (filler.write(QByteArray(4096, 'x')) == 4096) { }
    }

    std::unique_ptr<TempAppFolder> m_folder;
    const Unlogged m_unlogged;
};

namespace {
constexpr int sizes[] = {20, 16384, 1024 * 1024};
const QByteArray old = "; what was there\r\n";
}

void tst_writers::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
}

void tst_writers::cleanup()
{
    FileFaults::disarm();
    m_folder.reset();
}

void tst_writers::writersAndSizes()
{
    QTest::addColumn<int>("writer");
    QTest::addColumn<int>("size");
    const std::pair<const char *, int> writers[] = {{"source", Source},
                                                    {"profile", Profile},
                                                    {"setting", Setting},
                                                    {"blocked list", BlockedList},
                                                    {"engine options", Options}};
    for (const auto &[name, writer] : writers) {
        for (const int size : sizes)
            QTest::addRow("%s, %d", name, size) << writer << size;
    }
}

QString tst_writers::fileOf(int writer)
{
    switch (writer) {
    case Source:
        return AppFolder::appData(u"page.html"_s);
    case Profile:
        return AppFolder::appData(u"work.orp"_s);
    case Setting:
        return AppFolder::settingsPath();
    case BlockedList:
        return popupURLsFile();
    default:
        return EngineOptions::path();
    }
}

bool tst_writers::write(int writer, int size)
{
    const QString text(size, u'x');
    switch (writer) {
    case Source: {
        SourceEditor editor;
        editor.setText(text);
        return bool(editor.saveFile(fileOf(writer)));
    }
    case Profile:
        return bool(UrlProfile::save(fileOf(writer), {text}));
    case Setting:
        return bool(writeIni(u"Section"_s, u"Key"_s, text, fileOf(writer)));
    case BlockedList:
        return bool(saveBlockedList({text}));
    default: {
        EngineOptions options;
        options.userAgent = text;
        return bool(options.write());
    }
    }
}

void tst_writers::eachFaultKeepsTheOldFile()
{
    QFETCH(int, writer);
    QFETCH(int, size);
    const QString file = fileOf(writer);
    for (const Kind kind : {Kind::Fail, Kind::FullDisk, Kind::ReadOnly}) {
        int failures = 0;
        for (int at = 1;; ++at) {
            QVERIFY(put(file, old));
            const QStringList before = filesBeside(file);
            FileFaults::arm(kind, at);
            const bool isWritten = write(writer, size);
            const bool reached = FileFaults::disarm();
            QCOMPARE(contents(file) == old, !isWritten);
            // Where nothing can be changed any more, nothing can be removed before the next start.
            Leftovers::removeIn(QFileInfo(file).path());
            QCOMPARE(filesBeside(file), before);
            failures += isWritten ? 0 : 1;
            if (!reached)
                break;
        }
        QVERIFY(failures >= 1);
        QVERIFY(contents(file).contains(QByteArray(20, 'x')));
    }
}

void tst_writers::fullDiskKeepsTheOldFile()
{
    QFETCH(int, writer);
    QFETCH(int, size);
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("a disk of the test's own needs the superuser");
    AppFolder::setPath(disk.path());
    AppFolder::setSettingsPath(AppFolder::appData(u"Settings.ini"_s));
    QVERIFY(QDir().mkpath(AppFolder::appData({})));
    const QString file = fileOf(writer);
    QVERIFY(put(file, old));
    fill(disk);
    QVERIFY(!write(writer, size));
    QCOMPARE(contents(file), old);
    QCOMPARE(filesBeside(file).size(), 1);
}

void tst_writers::readOnlyDiskKeepsTheOldFile()
{
    QFETCH(int, writer);
    QFETCH(int, size);
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("a disk of the test's own needs the superuser");
    AppFolder::setPath(disk.path());
    AppFolder::setSettingsPath(AppFolder::appData(u"Settings.ini"_s));
    QVERIFY(QDir().mkpath(AppFolder::appData({})));
    const QString file = fileOf(writer);
    QVERIFY(put(file, old));
    QVERIFY(disk.makeReadOnly());
    QVERIFY(!write(writer, size));
    QCOMPARE(contents(file), old);
}

void tst_writers::lostFolder()
{
    QFETCH(int, writer);
    QFETCH(int, size);
    QVERIFY(QDir(AppFolder::appData({})).removeRecursively());
    QVERIFY(!write(writer, size));
    QVERIFY2(!QFileInfo::exists(AppFolder::appData({})), "it is not made either");
}

void tst_writers::copyOfUnsavedSource_data()
{
    QTest::addColumn<int>("size");
    for (const int size : sizes)
        QTest::addRow("%d", size) << size;
}

/// A name that is not there yet: with a copy that failed nothing is.
void tst_writers::copyOfUnsavedSource()
{
    QFETCH(int, size);
    SourceFile source;
    source.setText(QString(size, u'x'));
    QVERIFY(QDir().mkpath(RecoveredText::folder()));
    for (const Kind kind : {Kind::Fail, Kind::FullDisk, Kind::ReadOnly}) {
        int failures = 0;
        for (int at = 1;; ++at) {
            FileFaults::arm(kind, at);
            QString path;
            const QString kept = RecoveredText::keep(source, &path) ? path : QString();
            const bool reached = FileFaults::disarm();
            Leftovers::removeIn(RecoveredText::folder());
            const QStringList all =
                QDir(RecoveredText::folder()).entryList(QDir::Files | QDir::Hidden);
            QCOMPARE(all.size(), kept.isEmpty() ? 0 : 1);
            if (!kept.isEmpty()) {
                QCOMPARE(contents(kept).size(), size);
                QVERIFY(QFile::remove(kept));
            }
            failures += kept.isEmpty() ? 1 : 0;
            if (!reached)
                break;
        }
        QVERIFY(failures >= 1);
    }
}

QTEST_MAIN(tst_writers)
#include "tst_writers.moc"
