#include "FileUpdate.h"
#include "FolderLock.h"
#include "TempAppFolder.h"

#include <QDir>
#include <QTest>
#include <QThread>
#include <memory>

using namespace Qt::StringLiterals;

class tst_fileupdate : public QObject {
    Q_OBJECT

private slots:
    void readsWhatIsThere();
    void changesWhatIsThere();
    void nothingLeavesTheFileAlone();
    void onlyOneHoldsTheLock();
    void missingFolderHasNoLock();
    void folderThatCannotBeWrittenIn();
};

void tst_fileupdate::readsWhatIsThere()
{
    const TempAppFolder folder;
    QVERIFY(folder.write(u"a"_s, QByteArray("x\0y", 3)));
    QVERIFY(folder.write(u"empty"_s, ""));
    QCOMPARE(FileUpdate::readAll(folder.file(u"a"_s)), std::optional(QByteArray("x\0y", 3)));
    QCOMPARE(FileUpdate::readAll(folder.file(u"empty"_s)), std::optional(QByteArray()));
    QVERIFY(!FileUpdate::readAll(folder.file(u"none"_s)));
    QVERIFY(!FileUpdate::readAll(folder.path()));
    QVERIFY(!FileUpdate::readAll(QString()));
}

void tst_fileupdate::changesWhatIsThere()
{
    const TempAppFolder folder;
    const auto twice = [](const QByteArray &old) { return std::optional(old + old + 'x'); };
    QVERIFY(FileUpdate::change(folder.file(u"a"_s), twice));
    QVERIFY(FileUpdate::change(folder.file(u"a"_s), twice));
    QCOMPARE(folder.read(u"a"_s), "xxx"_ba);
    QVERIFY(FileUpdate::replace(folder.file(u"a"_s), "new"));
    QCOMPARE(folder.read(u"a"_s), "new"_ba);
    QVERIFY(FileUpdate::replace(folder.file(u"empty"_s), {}));
    QVERIFY(folder.exists(u"empty"_s));
}

void tst_fileupdate::nothingLeavesTheFileAlone()
{
    const TempAppFolder folder;
    const auto none = [](const QByteArray &) { return std::optional<QByteArray>(); };
    QVERIFY(!FileUpdate::change(folder.file(u"a"_s), none));
    QVERIFY(!folder.exists(u"a"_s));
    QVERIFY(folder.write(u"a"_s, "x"));
    QVERIFY(!FileUpdate::change(folder.file(u"a"_s), none));
    QCOMPARE(folder.read(u"a"_s), "x"_ba);
}

void tst_fileupdate::onlyOneHoldsTheLock()
{
    const TempAppFolder folder;
    auto lock = std::make_unique<FolderLock>(folder.path());
    QVERIFY(lock->isHeld());
    QAtomicInt released = 0;
    QAtomicInt written = 0;
    const QString file = folder.file(u"a"_s);
    const std::unique_ptr<QThread> writer(QThread::create([&written, &released, file] {
        const bool done(FileUpdate::change(file, [&released](const QByteArray &) {
            return std::optional(QByteArray::number(released.loadAcquire()));
        }));
        written.storeRelease(done ? 1 : -1);
    }));
    writer->start();
    // Another folder's lock is another one.
    QVERIFY(FolderLock(folder.file(u"AppData"_s)).isHeld());
    released.storeRelease(1);
    lock.reset();
    QVERIFY(writer->wait(30000));
    QCOMPARE(folder.read(u"a"_s), "1"_ba);
    QCOMPARE(written.loadRelaxed(), 1);
}

void tst_fileupdate::missingFolderHasNoLock()
{
    const TempAppFolder folder;
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot open"_s));
    QVERIFY(!FolderLock(folder.file(u"none"_s)).isHeld());
}

void tst_fileupdate::folderThatCannotBeWrittenIn()
{
    const TempAppFolder folder;
    QVERIFY(folder.write(u"Fixed/a"_s, "x"));
    const QString fixed = folder.file(u"Fixed"_s);
    QVERIFY(QFile::setPermissions(fixed, QFile::ReadOwner | QFile::ExeOwner));
    const QString file = fixed + u"/a"_s;
    QVERIFY(FileUpdate::replace(file, "x"));
    if (!QFileInfo(fixed).isWritable()) {
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot write"_s));
        QVERIFY(!FileUpdate::replace(file, "y"));
        QCOMPARE(folder.read(u"Fixed/a"_s), "x"_ba);
    }
    QCOMPARE(QDir(fixed).entryList(QDir::Files | QDir::Hidden), QStringList{u"a"_s});
    QVERIFY(QFile::setPermissions(fixed, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
}

QTEST_GUILESS_MAIN(tst_fileupdate)
#include "tst_fileupdate.moc"
