// Where the user's files are, and how what ships gets there.
#include "FileFaults.h"
#include "InstalledFolder.h"
#include "ProgramInfo.h"
#include "ShippedFiles.h"
#include "SmallDisk.h"

#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

Q_DECLARE_METATYPE(FileFaults::Kind)

class tst_InstalledFolder : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void folderOfItsOwn();
    void installed();
    void folderThatMayNotBeWrittenTo();
    void nothingShips();
    void withoutAPlaceForSettings();
    void firstStart();
    void secondStartChangesNothing();
    void laterProgramBringsWhatIsNew();
    void whatTheUserChangedStays();
    void whatTheUserRemovedStaysAway();
    void whatTheUserPutThereStays();
    void linksOfTheUser();
    void recordThatIsBroken_data();
    void recordThatIsBroken();
    void endedInTheMiddle();
    void fileWhereAFolderIsToBe_data();
    void fileWhereAFolderIsToBe();
    void goesWrongInTheMiddle_data();
    void goesWrongInTheMiddle();

private:
    QString at(const QString &name) const { return m_root->filePath(name); }
    QString program() const { return at(u"usr/bin"_s); }
    QString shipped(const QString &name = {}) const
    {
        return at("usr/share/orvane/AppData"_L1 + name);
    }
    QString user(const QString &name = {}) const { return at("config/orvane/AppData"_L1 + name); }
    static bool write(const QString &path, const QByteArray &bytes)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
    }
    static QByteArray read(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    static QStringList files(const QString &folder)
    {
        return QDir(folder).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
    }
    bool start() const { return InstalledFolder::prepare(InstalledFolder::choose(program())); }

    std::unique_ptr<QTemporaryDir> m_root;
};

void tst_InstalledFolder::init()
{
    m_root = std::make_unique<QTemporaryDir>();
    QVERIFY(m_root->isValid());
    qputenv("XDG_CONFIG_HOME", QFile::encodeName(at(u"config"_s)));
    QVERIFY(QDir().mkpath(program()));
    QVERIFY(write(shipped(u"/Engines.ini"_s), "engines 1"));
    QVERIFY(write(shipped(u"/Languages/German.ini"_s), "german 1"));
}

void tst_InstalledFolder::cleanup()
{
    qunsetenv("XDG_CONFIG_HOME");
    m_root.reset();
}

/// As it is unpacked: nothing is made anywhere else.
void tst_InstalledFolder::folderOfItsOwn()
{
    QVERIFY(QDir().mkpath(at(u"mine/AppData"_s)));
    const ProgramFolders folders = InstalledFolder::choose(at(u"mine"_s));
    QCOMPARE(folders, (ProgramFolders{at(u"mine"_s), {}}));
    QVERIFY(InstalledFolder::prepare(folders));
    QVERIFY(!QFileInfo::exists(at(u"config"_s)));
    QCOMPARE(files(at(u"mine"_s)), QStringList(u"AppData"_s));
}

void tst_InstalledFolder::installed()
{
    QCOMPARE(QDir::cleanPath(program() + u'/' + ProgramInfo::sharedFolder()),
             at(u"usr/share/orvane"_s));
    QCOMPARE(InstalledFolder::choose(program()),
             (ProgramFolders{at(u"config/orvane"_s), at(u"usr/share/orvane"_s)}));
}

/// The folder as it is unpacked, on a disk that may not be written to: that binds the superuser
/// too.
void tst_InstalledFolder::folderThatMayNotBeWrittenTo()
{
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("only the superuser has disks of his own");
    QVERIFY(write(disk.path() + "/AppData/Engines.ini"_L1, "of the folder"));
    QCOMPARE(InstalledFolder::choose(disk.path()), (ProgramFolders{disk.path(), {}}));
    QVERIFY(disk.makeReadOnly());
    QCOMPARE(InstalledFolder::choose(disk.path()),
             (ProgramFolders{at(u"config/orvane"_s), disk.path()}));
    QVERIFY(InstalledFolder::prepare(InstalledFolder::choose(disk.path())));
    QCOMPARE(read(user(u"/Engines.ini"_s)), "of the folder"_ba);
}

void tst_InstalledFolder::nothingShips()
{
    QVERIFY(QDir(at(u"usr/share"_s)).removeRecursively());
    QCOMPARE(InstalledFolder::choose(program()), (ProgramFolders{program(), {}}));
}

void tst_InstalledFolder::withoutAPlaceForSettings()
{
    // What is no whole path is not taken.
    qputenv("XDG_CONFIG_HOME", "relative");
    const QByteArray home = qgetenv("HOME");
    qputenv("HOME", QFile::encodeName(at(u"home"_s)));
    QCOMPARE(InstalledFolder::choose(program()).application, at(u"home/.config/orvane"_s));
    QVERIFY(start());
    QVERIFY(QFileInfo(at(u"home/.config/orvane/AppData/Engines.ini"_s)).isFile());
    qputenv("HOME", home);
}

void tst_InstalledFolder::firstStart()
{
    QVERIFY(start());
    QCOMPARE(read(user(u"/Engines.ini"_s)), "engines 1"_ba);
    QCOMPARE(read(user(u"/Languages/German.ini"_s)), "german 1"_ba);
    QVERIFY(QFileInfo(at(u"config/orvane/Profiles"_s)).isDir());
    const auto others = QFile::ReadGroup | QFile::WriteGroup | QFile::ExeGroup | QFile::ReadOther
        | QFile::WriteOther | QFile::ExeOther;
    QCOMPARE(QFileInfo(at(u"config/orvane"_s)).permissions() & others, QFile::Permissions());
    QCOMPARE(files(user()), QStringList({u"Engines.ini"_s, u"Languages"_s, u"Shipped.txt"_s}));
}

void tst_InstalledFolder::secondStartChangesNothing()
{
    QVERIFY(start());
    const QDateTime was = QFileInfo(user(u"/Shipped.txt"_s)).lastModified();
    const QByteArray record = read(user(u"/Shipped.txt"_s));
    QVERIFY(!record.isEmpty());
    QVERIFY(start());
    QCOMPARE(read(user(u"/Shipped.txt"_s)), record);
    QCOMPARE(QFileInfo(user(u"/Shipped.txt"_s)).lastModified(), was);
}

void tst_InstalledFolder::laterProgramBringsWhatIsNew()
{
    QVERIFY(start());
    QVERIFY(write(shipped(u"/Engines.ini"_s), "engines 2"));
    QVERIFY(write(shipped(u"/Languages/Dutch.ini"_s), "dutch"));
    QVERIFY(start());
    QCOMPARE(read(user(u"/Engines.ini"_s)), "engines 2"_ba);
    QCOMPARE(read(user(u"/Languages/Dutch.ini"_s)), "dutch"_ba);
    QCOMPARE(read(user(u"/Languages/German.ini"_s)), "german 1"_ba);
}

/// Also over two programs, and where he changed it back in between.
void tst_InstalledFolder::whatTheUserChangedStays()
{
    QVERIFY(start());
    QVERIFY(write(user(u"/Engines.ini"_s), "mine"));
    for (const char *version : {"engines 2", "engines 3"}) {
        QVERIFY(write(shipped(u"/Engines.ini"_s), version));
        QVERIFY(start());
        QCOMPARE(read(user(u"/Engines.ini"_s)), "mine"_ba);
    }
    // As the last program has it: from now on it goes with the program again.
    QVERIFY(write(user(u"/Engines.ini"_s), "engines 3"));
    QVERIFY(start());
    QVERIFY(write(shipped(u"/Engines.ini"_s), "engines 4"));
    QVERIFY(start());
    QCOMPARE(read(user(u"/Engines.ini"_s)), "engines 4"_ba);
}

void tst_InstalledFolder::whatTheUserRemovedStaysAway()
{
    QVERIFY(start());
    QVERIFY(QFile::remove(user(u"/Engines.ini"_s)));
    QVERIFY(start());
    QVERIFY(write(shipped(u"/Engines.ini"_s), "engines 2"));
    QVERIFY(start());
    QVERIFY(!QFileInfo::exists(user(u"/Engines.ini"_s)));
}

/// Before any program shipped a file of that name.
void tst_InstalledFolder::whatTheUserPutThereStays()
{
    QVERIFY(start());
    QVERIFY(write(user(u"/Languages/Dutch.ini"_s), "my own"));
    QVERIFY(write(shipped(u"/Languages/Dutch.ini"_s), "dutch"));
    QVERIFY(start());
    QCOMPARE(read(user(u"/Languages/Dutch.ini"_s)), "my own"_ba);
}

void tst_InstalledFolder::linksOfTheUser()
{
    QVERIFY(start());
    QVERIFY(write(at(u"elsewhere"_s), "far"));
    QVERIFY(QFile::remove(user(u"/Engines.ini"_s)));
    QVERIFY(QFile::link(at(u"elsewhere"_s), user(u"/Engines.ini"_s)));
    QVERIFY(QFile::link(at(u"nowhere"_s), user(u"/Languages/Dutch.ini"_s)));
    QVERIFY(write(shipped(u"/Engines.ini"_s), "engines 2"));
    QVERIFY(write(shipped(u"/Languages/Dutch.ini"_s), "dutch"));
    QVERIFY(start());
    QCOMPARE(read(at(u"elsewhere"_s)), "far"_ba);
    QVERIFY(!QFileInfo::exists(at(u"nowhere"_s)));
    QVERIFY(QFileInfo(user(u"/Languages/Dutch.ini"_s)).isSymLink());
}

void tst_InstalledFolder::recordThatIsBroken_data()
{
    QTest::addColumn<QByteArray>("record");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no hashes") << QByteArray("Engines.ini\r\n");
    QTest::newRow("bytes") << QByteArray(1000, '\xff');
    QTest::newRow("a path out of the folder") << QByteArray("00 ../../outside\r\n");
}

/// Then all that is there counts as the user's where it is not as it ships.
void tst_InstalledFolder::recordThatIsBroken()
{
    QFETCH(const QByteArray, record);
    QVERIFY(start());
    QVERIFY(write(user(u"/Shipped.txt"_s), record));
    QVERIFY(write(user(u"/Languages/German.ini"_s), "mine"));
    QVERIFY(write(shipped(u"/Languages/German.ini"_s), "german 2"));
    QVERIFY(start());
    QCOMPARE(read(user(u"/Languages/German.ini"_s)), "mine"_ba);
    QVERIFY(write(shipped(u"/Engines.ini"_s), "engines 2"));
    QVERIFY(start());
    QCOMPARE(read(user(u"/Engines.ini"_s)), "engines 2"_ba);
    QVERIFY(!QFileInfo::exists(at(u"outside"_s)));
}

/// The files were brought, and what is recorded of them was not.
void tst_InstalledFolder::endedInTheMiddle()
{
    QVERIFY(write(user(u"/Engines.ini"_s), "engines 1"));
    QVERIFY(start());
    QVERIFY(write(shipped(u"/Engines.ini"_s), "engines 2"));
    QVERIFY(start());
    QCOMPARE(read(user(u"/Engines.ini"_s)), "engines 2"_ba);
}

void tst_InstalledFolder::fileWhereAFolderIsToBe_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name : {"config", "config/orvane", "config/orvane/AppData",
                             "config/orvane/Profiles", "config/orvane/AppData/Languages"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void tst_InstalledFolder::fileWhereAFolderIsToBe()
{
    QFETCH(const QString, name);
    QVERIFY(write(at(name), "in the way"));
    QVERIFY(!start());
    QCOMPARE(read(at(name)), "in the way"_ba);
}

void tst_InstalledFolder::goesWrongInTheMiddle_data()
{
    QTest::addColumn<FileFaults::Kind>("kind");
    QTest::newRow("one fails") << FileFaults::Kind::Fail;
    QTest::newRow("full disk") << FileFaults::Kind::FullDisk;
    QTest::newRow("read only") << FileFaults::Kind::ReadOnly;
}

/// Wherever that is, nothing half is there, and what is missing comes with the next start.
void tst_InstalledFolder::goesWrongInTheMiddle()
{
    QFETCH(const FileFaults::Kind, kind);
    const auto isWhole = [](const QByteArray &bytes, const QByteArray &whole) {
        return bytes.isEmpty() || bytes == whole;
    };
    int reached = 0;
    for (bool isReached = true; isReached; ++reached) {
        QDir(at(u"config"_s)).removeRecursively();
        FileFaults::arm(kind, reached + 1);
        const bool isBrought = start();
        isReached = FileFaults::disarm();
        QVERIFY2(isReached || isBrought, "without a fault all comes");
        QVERIFY(isWhole(read(user(u"/Engines.ini"_s)), "engines 1"));
        QVERIFY(isWhole(read(user(u"/Languages/German.ini"_s)), "german 1"));
        QVERIFY(start());
        QCOMPARE(read(user(u"/Engines.ini"_s)), "engines 1"_ba);
        QCOMPARE(read(user(u"/Languages/German.ini"_s)), "german 1"_ba);
    }
    QVERIFY(reached > 5);
}

QTEST_GUILESS_MAIN(tst_InstalledFolder)
#include "tst_installedfolder.moc"
