#include <QDir>
#include <QDirIterator>
#include <QTest>

#include <sys/wait.h>
#include <unistd.h>

#include "FileFaults.h"
#include "SaveStage.h"

using namespace Qt::StringLiterals;

/// A page with its parts put in the place of an older one, and everything that may go wrong.
class tst_SaveStage : public QObject {
    Q_OBJECT

private slots:
    void init();
    void newPage();
    void oldPartsGo();
    void theirFolderStays_data();
    void theirFolderStays();
    void theirFileInOurFolderStays();
    void ourFileTheyChangedStays();
    void partsOfARenamedPageStay();
    void partsOfAnotherPageStay();
    void listThatNamesFilesElsewhere();
    void pageWithoutPartsReplacesOneWithThem();
    void twoSavesAtOnce();
    void folderMadeMeanwhile();
    void longestName();
    void linkStaysOne();
    void discardedSaveLeavesNothing();
    void failedOperationLeavesTheOldOrTheNewPage_data();
    void failedOperationLeavesTheOldOrTheNewPage();
    void interruptedSaveLeavesTheOldOrTheNewPage();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QByteArray read(const QString &name) const
    {
        QFile file(path(name));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    bool write(const QString &name, const QByteArray &bytes) const;
    QStringList all() const;
    static bool fill(const SaveStage &stage, const QByteArray &version, int parts = 2);
    bool save(const QString &name, const QByteArray &version, int parts = 2) const;
    bool isWhole(const QString &name, const QByteArray &version) const;
    void makeOldState(const QString &name) const;
    QByteArray stateOf(const QString &name) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void tst_SaveStage::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

bool tst_SaveStage::write(const QString &name, const QByteArray &bytes) const
{
    QFile file(path(name));
    return QDir().mkpath(QFileInfo(file).path()) && file.open(QIODevice::WriteOnly)
        && file.write(bytes) == bytes.size() && file.flush();
}

/// Every file and folder but the lists of what a save wrote.
QStringList tst_SaveStage::all() const
{
    QStringList result;
    QDirIterator found(m_folder->path(),
                       QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (found.hasNext()) {
        const QString name = QDir(m_folder->path()).relativeFilePath(found.next());
        if (!name.endsWith(u"/.orvane-saved"_s))
            result.append(name);
    }
    result.sort();
    return result;
}

/// As the engine does: the page names its parts by the folder beside it.
bool tst_SaveStage::fill(const SaveStage &stage, const QByteArray &version, int parts)
{
    const QFileInfo page(stage.file());
    const QString folder = page.completeBaseName() + u"_files"_s;
    QByteArray html = version + '\n';
    if (parts > 0 && !page.dir().mkpath(folder))
        return false;
    const auto put = [](const QString &file, const QByteArray &bytes) {
        QFile target(file);
        return target.open(QIODevice::WriteOnly) && target.write(bytes) == bytes.size()
            && target.flush();
    };
    for (int i = 1; i <= parts; ++i) {
        const QString part = folder + u"/part%1.png"_s.arg(i);
        html += part.toUtf8() + '\n';
        if (!put(page.dir().filePath(part), version + QByteArray::number(i)))
            return false;
    }
    return put(stage.file(), html);
}

bool tst_SaveStage::save(const QString &name, const QByteArray &version, int parts) const
{
    SaveStage stage(path(name));
    return stage.isValid() && fill(stage, version, parts) && stage.commit();
}

/// Whether everything that the page names is there, as it was saved with it.
bool tst_SaveStage::isWhole(const QString &name, const QByteArray &version) const
{
    const QList<QByteArray> lines = read(name).trimmed().split('\n');
    if (lines.first() != version)
        return false;
    for (qsizetype i = 1; i < lines.size(); ++i) {
        if (read(QString::fromUtf8(lines.at(i))) != version + QByteArray::number(i))
            return false;
    }
    return true;
}

void tst_SaveStage::newPage()
{
    QVERIFY(save(u"page.html"_s, "one"));
    QVERIFY(isWhole(u"page.html"_s, "one"));
    QCOMPARE(all(),
             QStringList({u"page.html"_s, u"page_files"_s, u"page_files/part1.png"_s,
                          u"page_files/part2.png"_s}));
}

void tst_SaveStage::oldPartsGo()
{
    for (const QByteArray version : {"one", "two", "three", "four"}) {
        QVERIFY(save(u"page.html"_s, version));
        QVERIFY(isWhole(u"page.html"_s, version));
        QCOMPARE(all().size(), 4);
    }
}

void tst_SaveStage::theirFolderStays_data()
{
    QTest::addColumn<bool>("hasPage");
    QTest::addColumn<QByteArray>("list");
    QTest::newRow("no page yet") << false << QByteArray();
    QTest::newRow("page of another program") << true << QByteArray();
    QTest::newRow("list that is none") << true << QByteArray("[1,2");
    QTest::newRow("empty list") << true << QByteArray("{}");
}

void tst_SaveStage::theirFolderStays()
{
    QFETCH(bool, hasPage);
    QFETCH(QByteArray, list);
    QVERIFY(write(u"Trip 2026_files/photo.jpg"_s, "photo"));
    QVERIFY(write(u"Trip 2026_files/deeper/photo.jpg"_s, "deeper"));
    QVERIFY(QDir().mkpath(path(u"Trip 2026 (2)_files"_s)));
    if (!list.isEmpty())
        QVERIFY(write(u"Trip 2026_files/.orvane-saved"_s, list));
    if (hasPage)
        QVERIFY(write(u"Trip 2026.html"_s, "old"));
    QVERIFY(save(u"Trip 2026.html"_s, "new"));
    QVERIFY(isWhole(u"Trip 2026.html"_s, "new"));
    QCOMPARE(read(u"Trip 2026_files/photo.jpg"_s), "photo");
    QCOMPARE(read(u"Trip 2026_files/deeper/photo.jpg"_s), "deeper");
    QVERIFY(QFileInfo(path(u"Trip 2026 (2)_files"_s)).isDir());
    QVERIFY(QFileInfo(path(u"Trip 2026 (3)_files"_s)).isDir());
}

void tst_SaveStage::theirFileInOurFolderStays()
{
    QVERIFY(save(u"page.html"_s, "one"));
    QVERIFY(write(u"page_files/mine.txt"_s, "mine"));
    QVERIFY(write(u"page_files/notes/mine.txt"_s, "mine too"));
    for (const QByteArray version : {"two", "three"}) {
        QVERIFY(save(u"page.html"_s, version));
        QVERIFY(isWhole(u"page.html"_s, version));
        QCOMPARE(read(u"page_files/mine.txt"_s), "mine");
        QCOMPARE(read(u"page_files/notes/mine.txt"_s), "mine too");
        QVERIFY(!QFileInfo::exists(path(u"page_files/part1.png"_s)));
    }
}

void tst_SaveStage::ourFileTheyChangedStays()
{
    QVERIFY(save(u"page.html"_s, "one"));
    QVERIFY(write(u"page_files/part1.png"_s, "painted over"));
    QVERIFY(save(u"page.html"_s, "two"));
    QVERIFY(isWhole(u"page.html"_s, "two"));
    QCOMPARE(read(u"page_files/part1.png"_s), "painted over");
    QVERIFY(!QFileInfo::exists(path(u"page_files/part2.png"_s)));
}

void tst_SaveStage::partsOfARenamedPageStay()
{
    QVERIFY(save(u"page.html"_s, "one"));
    QVERIFY(QFile::rename(path(u"page.html"_s), path(u"kept.html"_s)));
    QVERIFY(save(u"page.html"_s, "two"));
    QVERIFY(save(u"page.html"_s, "three"));
    QVERIFY(isWhole(u"page.html"_s, "three"));
    QVERIFY(isWhole(u"kept.html"_s, "one"));
}

void tst_SaveStage::partsOfAnotherPageStay()
{
    // With one ending or the other it is the same folder of parts.
    QVERIFY(save(u"page.html"_s, "one"));
    QVERIFY(save(u"page.htm"_s, "two"));
    QVERIFY(save(u"page.v2.html"_s, "three"));
    QVERIFY(save(u"page.htm"_s, "four"));
    QVERIFY(isWhole(u"page.html"_s, "one"));
    QVERIFY(isWhole(u"page.htm"_s, "four"));
    QVERIFY(isWhole(u"page.v2.html"_s, "three"));
}

void tst_SaveStage::listThatNamesFilesElsewhere()
{
    QVERIFY(save(u"page.html"_s, "one"));
    QVERIFY(write(u"victim.txt"_s, "stays"));
    const QFileInfo victim(path(u"victim.txt"_s));
    const QByteArray stamp = QByteArray::number(victim.size()) + ' '
        + QByteArray::number(victim.lastModified().toMSecsSinceEpoch());
    QVERIFY(QFile::link(victim.filePath(), path(u"page_files/link.txt"_s)));
    QByteArray list = read(u"page_files/.orvane-saved"_s);
    list.replace("\"files\":{",
                 "\"files\":{\"../victim.txt\":\"" + stamp + "\",\"link.txt\":\"" + stamp + "\",\""
                     + victim.filePath().toUtf8() + "\":\"" + stamp + "\",");
    QVERIFY(write(u"page_files/.orvane-saved"_s, list));
    QVERIFY(save(u"page.html"_s, "two"));
    QCOMPARE(read(u"victim.txt"_s), "stays");
    QVERIFY(!QFileInfo::exists(path(u"page_files/part1.png"_s)));
}

void tst_SaveStage::pageWithoutPartsReplacesOneWithThem()
{
    QVERIFY(save(u"page.html"_s, "one"));
    QVERIFY(save(u"page.html"_s, "two", 0));
    QCOMPARE(all(), QStringList(u"page.html"_s));
}

void tst_SaveStage::twoSavesAtOnce()
{
    SaveStage first(path(u"page.html"_s));
    SaveStage second(path(u"page.html"_s));
    QVERIFY(fill(first, "one") && fill(second, "two"));
    QVERIFY(second.commit());
    QVERIFY(isWhole(u"page.html"_s, "two"));
    QVERIFY(first.commit());
    QVERIFY(isWhole(u"page.html"_s, "one"));
}

void tst_SaveStage::folderMadeMeanwhile()
{
    QVERIFY(save(u"page.html"_s, "one"));
    SaveStage stage(path(u"page.html"_s));
    QVERIFY(fill(stage, "two"));
    QVERIFY(QDir().mkpath(path(u"page (2)_files"_s)));
    QVERIFY(!stage.commit());
    QVERIFY(isWhole(u"page.html"_s, "one"));
    QVERIFY(QFileInfo(path(u"page (2)_files"_s)).isDir());
}

void tst_SaveStage::longestName()
{
    for (const QString &letter : {u"x"_s, u"ニ"_s, u"😀"_s}) {
        const QString name = letter.repeated(250 / letter.toUtf8().size() * 1) + u".html"_s;
        QVERIFY(save(name, "one"));
        QVERIFY(save(name, "two"));
        QVERIFY(isWhole(name, "two"));
    }
}

void tst_SaveStage::linkStaysOne()
{
    QVERIFY(write(u"real/page.html"_s, "old"));
    QVERIFY(QFile::link(path(u"real/page.html"_s), path(u"link.html"_s)));
    QVERIFY(save(u"link.html"_s, "one"));
    QVERIFY(QFileInfo(path(u"link.html"_s)).isSymLink());
    QVERIFY(read(u"real/page.html"_s).startsWith("one"));
    QCOMPARE(read(u"real/page_files/part1.png"_s), "one1");
}

void tst_SaveStage::discardedSaveLeavesNothing()
{
    {
        SaveStage stage(path(u"page.html"_s));
        QVERIFY(fill(stage, "one"));
    }
    QCOMPARE(all(), QStringList());
    QVERIFY(save(u"page.html"_s, "two"));
    QVERIFY2(QFileInfo(path(u"page_files"_s)).isDir(), "the name is free again");
}

/// A page of an earlier save with a file of the user's among its parts, and a folder of his own.
void tst_SaveStage::makeOldState(const QString &name) const
{
    QVERIFY(save(name + u".html"_s, "old"));
    QVERIFY(write(name + u"_files/mine.txt"_s, "mine"));
    QVERIFY(write(name + u" (2)_files/photo.jpg"_s, "photo"));
}

/// "old" or "new" where that page is whole and nothing of the user's is gone.
QByteArray tst_SaveStage::stateOf(const QString &name) const
{
    if (read(name + u"_files/mine.txt"_s) != "mine"
        || read(name + u" (2)_files/photo.jpg"_s) != "photo")
        return "the user's files are gone";
    for (const QByteArray version : {"old", "new"}) {
        if (isWhole(name + u".html"_s, version))
            return version;
    }
    return "neither is whole: " + read(name + u".html"_s);
}

void tst_SaveStage::failedOperationLeavesTheOldOrTheNewPage_data()
{
    QTest::addColumn<FileFaults::Kind>("kind");
    QTest::newRow("one operation") << FileFaults::Kind::Fail;
    QTest::newRow("full disk") << FileFaults::Kind::FullDisk;
    QTest::newRow("all from one on") << FileFaults::Kind::ReadOnly;
}

void tst_SaveStage::failedOperationLeavesTheOldOrTheNewPage()
{
    QFETCH(FileFaults::Kind, kind);
    int failures = 0;
    for (int at = 1;; ++at) {
        const QString name = u"page%1"_s.arg(at);
        makeOldState(name);
        SaveStage stage(path(name + u".html"_s));
        QVERIFY(fill(stage, "new"));
        FileFaults::arm(kind, at);
        const bool saved = stage.commit();
        const bool reached = FileFaults::disarm();
        QCOMPARE(stateOf(name), QByteArray(saved ? "new" : "old"));
        failures += saved ? 0 : 1;
        if (!reached)
            break;
        QVERIFY(save(name + u".html"_s, "new"));
        QCOMPARE(stateOf(name), QByteArray("new"));
    }
    QVERIFY2(failures >= 2, qPrintable(QString::number(failures)));
}

void tst_SaveStage::interruptedSaveLeavesTheOldOrTheNewPage()
{
    QSet<QByteArray> seen;
    for (int at = 1;; ++at) {
        const QString name = u"page%1"_s.arg(at);
        makeOldState(name);
        const pid_t child = ::fork();
        QVERIFY(child >= 0);
        if (child == 0) {
            // From its very beginning.
            FileFaults::arm(FileFaults::Kind::Kill, at);
            SaveStage stage(path(name + u".html"_s));
            const bool saved = fill(stage, "new") && stage.commit();
            ::_exit(saved ? 0 : 1);
        }
        int status = 0;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QVERIFY(WIFEXITED(status));
        seen.insert(stateOf(name));
        QVERIFY2(seen.contains("old") || seen.contains("new"), stateOf(name).constData());
        QVERIFY2(seen.size() == qsizetype(seen.contains("old")) + qsizetype(seen.contains("new")),
                 stateOf(name).constData());
        QVERIFY2(save(name + u".html"_s, "new"), "what is left is in nobody's way");
        QCOMPARE(stateOf(name), QByteArray("new"));
        if (WEXITSTATUS(status) != FileFaults::killed) {
            QCOMPARE(WEXITSTATUS(status), 0);
            QVERIFY(at > 10);
            break;
        }
    }
    QCOMPARE(seen.size(), 2);
}

QTEST_GUILESS_MAIN(tst_SaveStage)
#include "tst_savestage.moc"
