#include "DownloadFile.h"
#include "DownloadList.h"
#include "DownloadStage.h"
#include "DownloadStore.h"
#include "SmallDisk.h"
#include "TempAppFolder.h"
#include "Unlogged.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Qt::StringLiterals;
using State = Download::State;

/// The list and its file, from one run of the program to the next.
class tst_downloadstore : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void eachStateIsWritten();
    void bytesAreNotWritten();
    void recordedComesBeforeTheStep();
    void stepIsTakenThoughNothingCanBeWritten();
    void lastStateIsWrittenAtTheEnd();
    void allIsWrittenWhenItIsLeft();
    void earlierOnesComeBehind();
    void doneOnesStayAsTheyAre();
    void underWayBecomesUnfinished_data();
    void underWayBecomesUnfinished();
    void bytesAreThoseThatAreThere();
    void anothersIsLeftAlone();
    void lostStage();
    void emptyStage();
    void diskThatIsAway();
    void oneThatGotItsNameIsDone();
    void timesOfFilesAreRough();
    void anothersFileIsNotTakenForIt_data();
    void anothersFileIsNotTakenForIt();
    void removedTakesItsStageAlong();
    void removedOfAnotherStays();
    void hostileStageIsNotRemoved();
    void whatCannotBeWrittenIsTriedAgain();
    void itIsTriedAgainThoughNothingChanges();
    void changeDuringAFailingWriteIsTried();
    void itIsGivenUpAtTheEnd();
    void fullDisk();
    void fileThatCannotBeReadStays();
    void twoProgramsInOneFolder();
    void thousandEntries();

private:
    QString file() const { return DownloadFile::path(); }
    QString folder() const { return m_folder->file(u"Profiles"_s); }
    Download one(const QString &name, State state = State::Done) const
    {
        Download download;
        download.id = DownloadList::newId();
        download.name = name;
        download.folder = folder();
        download.address = QUrl(u"http://host/"_s + name);
        download.began = QDateTime::currentDateTimeUtc();
        download.state = state;
        return download;
    }
    /// With bytes in a stage that nobody has.
    Download left(const QString &name, const QByteArray &bytes, State state = State::Running) const
    {
        Download download = one(name, state);
        DownloadStage stage(folder());
        QFile part(stage.file());
        if (part.open(QIODevice::WriteOnly))
            part.write(bytes);
        stage.keep();
        download.stage = stage.path();
        download.received = 1;
        return download;
    }
    bool write(const QList<Download> &downloads) const
    {
        QStringList trimmed;
        return bool(DownloadFile::write(file(), {downloads, {}}, trimmed));
    }
    QList<Download> stored() const
    {
        return DownloadFile::read(file()).value_or(QList<Download>());
    }
    State storedState(const QString &id) const
    {
        for (const Download &download : stored()) {
            if (download.id == id)
                return download.state;
        }
        return State::Held;
    }
    void open()
    {
        m_list = std::make_unique<DownloadList>();
        m_store = std::make_unique<DownloadStore>(*m_list, file());
        QSignalSpy loaded(m_store.get(), &DownloadStore::loaded);
        QVERIFY(loaded.wait());
    }
    void close()
    {
        m_store.reset();
        m_list.reset();
    }
    void change(const QString &id, State state)
    {
        m_list->change(id, [state](Download &download) { download.state = state; });
    }

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<DownloadList> m_list;
    std::unique_ptr<DownloadStore> m_store;
};

void tst_downloadstore::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
}

void tst_downloadstore::cleanup()
{
    close();
    m_folder.reset();
}

void tst_downloadstore::eachStateIsWritten()
{
    open();
    const Download download = one(u"a"_s, State::Running);
    m_list->add(download, nullptr);
    QTRY_COMPARE(stored(), QList<Download>({download}));
    for (const State state : {State::Paused, State::Running, State::Finishing, State::Done}) {
        change(download.id, state);
        QTRY_COMPARE(storedState(download.id), state);
    }
    m_list->remove({download.id});
    QTRY_VERIFY(stored().isEmpty());
}

void tst_downloadstore::bytesAreNotWritten()
{
    open();
    const Download download = one(u"a"_s, State::Running);
    m_list->add(download, nullptr);
    m_store->flush();
    const QByteArray before = m_folder->read(u"AppData/Downloads.ini"_s);
    QSignalSpy changed(m_list.get(), &DownloadList::changed);
    m_list->change(download.id, [](Download &each) { each.received = 1000; });
    QVERIFY(changed.wait());
    m_store->flush();
    QCOMPARE(m_folder->read(u"AppData/Downloads.ini"_s), before);
    // But with the next state.
    change(download.id, State::Paused);
    m_store->flush();
    QCOMPARE(stored().first().received, 1000);
}

void tst_downloadstore::recordedComesBeforeTheStep()
{
    open();
    for (const QString &name : {u"a"_s, u"b"_s, u"c"_s}) {
        // What the list has not told of yet, and what it wrote just now.
        Download download = one(name, State::Running);
        m_list->add(download, nullptr);
        m_list->change(download.id, [](Download &each) {
            each.state = State::Finishing;
            each.size = 5;
        });
        std::optional<Download> seen;
        m_list->record(download.id, [&] { seen = stored().value(0); });
        QTRY_VERIFY(seen);
        QCOMPARE(seen->id, download.id);
        QCOMPARE(seen->state, State::Finishing);
        QCOMPARE(seen->size, 5);
        bool isAgain = false;
        m_list->record(download.id, [&] { isAgain = true; });
        QTRY_VERIFY(isAgain);
    }
}

void tst_downloadstore::stepIsTakenThoughNothingCanBeWritten()
{
    const Unlogged unlogged;
    open();
    QVERIFY(QDir(m_folder->file(u"AppData"_s)).removeRecursively());
    const Download download = one(u"a"_s, State::Finishing);
    m_list->add(download, nullptr);
    int taken = 0;
    m_list->record(download.id, [&] { ++taken; });
    QTRY_COMPARE(taken, 1);
    m_list->record(download.id, [&] { ++taken; });
    QTRY_COMPARE(taken, 2);
    close();
    QVERIFY(stored().isEmpty());
}

void tst_downloadstore::lastStateIsWrittenAtTheEnd()
{
    open();
    QList<Download> all;
    for (int i = 0; i < 20; ++i) {
        all.prepend(one(u"f%1"_s.arg(i), State::Running));
        m_list->add(all.first(), nullptr);
    }
    for (Download &download : all) {
        download.state = State::Done;
        change(download.id, State::Done);
    }
    close();
    QCOMPARE(stored(), all);
}

void tst_downloadstore::allIsWrittenWhenItIsLeft()
{
    open();
    const Download download = one(u"a"_s, State::Running);
    m_list->add(download, nullptr);
    change(download.id, State::Unfinished);
    m_list->leaveAll();
    QCOMPARE(storedState(download.id), State::Unfinished);
}

void tst_downloadstore::earlierOnesComeBehind()
{
    const QList<Download> earlier{one(u"b"_s), one(u"a"_s, State::Failed)};
    QVERIFY(write({earlier.at(1), earlier.at(0)}));
    m_list = std::make_unique<DownloadList>();
    m_store = std::make_unique<DownloadStore>(*m_list, file());
    // Begun while the file is being read.
    const Download now = one(u"now"_s, State::Running);
    m_list->add(now, nullptr);
    QSignalSpy loaded(m_store.get(), &DownloadStore::loaded);
    QVERIFY(loaded.wait());
    QCOMPARE(m_list->all(), QList<Download>({now}) + earlier);
    close();
    QCOMPARE(stored(), QList<Download>({now}) + earlier);
}

void tst_downloadstore::doneOnesStayAsTheyAre()
{
    QVERIFY(write({one(u"a"_s), one(u"b"_s, State::Cancelled), one(u"c"_s, State::Failed)}));
    const QByteArray before = m_folder->read(u"AppData/Downloads.ini"_s);
    open();
    close();
    QCOMPARE(m_folder->read(u"AppData/Downloads.ini"_s), before);
}

void tst_downloadstore::underWayBecomesUnfinished_data()
{
    QTest::addColumn<State>("state");
    QTest::newRow("running") << State::Running;
    QTest::newRow("paused") << State::Paused;
    QTest::newRow("held") << State::Held;
    QTest::newRow("finishing") << State::Finishing;
    QTest::newRow("unfinished before") << State::Unfinished;
}

void tst_downloadstore::underWayBecomesUnfinished()
{
    QFETCH(State, state);
    const Download download = left(u"a"_s, "12345", state);
    QVERIFY(write({download}));
    open();
    const Download *now = m_list->find(download.id);
    QVERIFY(now);
    QCOMPARE(now->state, State::Unfinished);
    QCOMPARE(now->received, 5);
    QCOMPARE(now->stage, download.stage);
    // Free for going on with it, by this program or another.
    QVERIFY(DownloadStage::take(download.stage));
    QTRY_COMPARE(storedState(download.id), State::Unfinished);
}

void tst_downloadstore::bytesAreThoseThatAreThere()
{
    // Not whole: the engine was killed while it wrote.
    const Download failed = left(u"a"_s, "123", State::Failed);
    QVERIFY(QFile::rename(failed.stage + "/part"_L1, failed.stage + "/part.download"_L1));
    QVERIFY(write({failed}));
    open();
    QCOMPARE(m_list->find(failed.id)->state, State::Failed);
    QCOMPARE(m_list->find(failed.id)->received, 3);
}

void tst_downloadstore::anothersIsLeftAlone()
{
    const Download running = left(u"a"_s, "12345");
    const Download failed = left(u"b"_s, "12345", State::Failed);
    QVERIFY(write({running, failed}));
    const QByteArray before = m_folder->read(u"AppData/Downloads.ini"_s);
    const auto first = DownloadStage::take(running.stage);
    const auto second = DownloadStage::take(failed.stage);
    QVERIFY(first && second);
    open();
    QVERIFY(!m_list->find(running.id));
    QVERIFY(m_list->find(failed.id));
    close();
    QCOMPARE(m_folder->read(u"AppData/Downloads.ini"_s), before);
}

void tst_downloadstore::lostStage()
{
    const Download download = left(u"a"_s, "12345");
    QVERIFY(QDir(download.stage).removeRecursively());
    QVERIFY(write({download}));
    open();
    QCOMPARE(m_list->find(download.id)->state, State::Unfinished);
    QCOMPARE(m_list->find(download.id)->received, 0);
    QVERIFY(m_list->find(download.id)->stage.isEmpty());
}

void tst_downloadstore::emptyStage()
{
    const Download download = left(u"a"_s, {});
    QVERIFY(QFile::remove(download.stage + "/part"_L1));
    QVERIFY(write({download}));
    open();
    QVERIFY(m_list->find(download.id)->stage.isEmpty());
    QVERIFY(!QFileInfo::exists(download.stage));
}

void tst_downloadstore::diskThatIsAway()
{
    Download download = one(u"a"_s, State::Running);
    download.folder = u"/nowhere/disk"_s;
    download.stage = u"/nowhere/disk/.orvane-download-abcdefgh"_s;
    download.received = 77;
    QVERIFY(write({download}));
    open();
    QCOMPARE(m_list->find(download.id)->state, State::Unfinished);
    QCOMPARE(m_list->find(download.id)->stage, download.stage);
    QCOMPARE(m_list->find(download.id)->received, 77);
}

/// The program was killed before it could say so.
void tst_downloadstore::oneThatGotItsNameIsDone()
{
    Download download = left(u"a"_s, "12345", State::Finishing);
    download.size = 5;
    QVERIFY(QFile::rename(download.stage + "/part"_L1, download.path()));
    QVERIFY(write({download}));
    open();
    QCOMPARE(m_list->find(download.id)->state, State::Done);
    QCOMPARE(m_list->find(download.id)->received, 5);
    QVERIFY(m_list->find(download.id)->ended.isValid());
    QVERIFY(!QFileInfo::exists(download.stage));
}

/// Of a small one they may be those of before it began.
void tst_downloadstore::timesOfFilesAreRough()
{
    Download download = left(u"a"_s, "12345", State::Finishing);
    download.size = 5;
    QVERIFY(QFile::rename(download.stage + "/part"_L1, download.path()));
    QFile placed(download.path());
    QVERIFY(placed.open(QIODevice::ReadWrite));
    QVERIFY(placed.setFileTime(download.began.addMSecs(-1500), QFileDevice::FileModificationTime));
    placed.close();
    QVERIFY(write({download}));
    open();
    QCOMPARE(m_list->find(download.id)->state, State::Done);
}

void tst_downloadstore::anothersFileIsNotTakenForIt_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("secondsBefore");
    QTest::newRow("other length") << "123456"_ba << 0;
    QTest::newRow("older") << "12345"_ba << 3600;
}

void tst_downloadstore::anothersFileIsNotTakenForIt()
{
    QFETCH(QByteArray, bytes);
    QFETCH(int, secondsBefore);
    Download download = left(u"a"_s, {}, State::Finishing);
    download.size = 5;
    QVERIFY(QDir(download.stage).removeRecursively());
    QFile other(download.path());
    QVERIFY(other.open(QIODevice::WriteOnly));
    QCOMPARE(other.write(bytes), bytes.size());
    QVERIFY(other.flush());
    QVERIFY(other.setFileTime(download.began.addSecs(1 - secondsBefore),
                              QFileDevice::FileModificationTime));
    other.close();
    QVERIFY(write({download}));
    open();
    QCOMPARE(m_list->find(download.id)->state, State::Unfinished);
}

void tst_downloadstore::removedTakesItsStageAlong()
{
    const Download download = left(u"a"_s, "12345");
    QVERIFY(write({download}));
    open();
    m_list->remove({download.id});
    QTRY_VERIFY(!QFileInfo::exists(download.stage));
    QTRY_VERIFY(stored().isEmpty());
}

void tst_downloadstore::removedOfAnotherStays()
{
    const Download download = left(u"a"_s, "12345", State::Failed);
    QVERIFY(write({download}));
    open();
    const auto others = DownloadStage::take(download.stage);
    m_list->remove({download.id});
    close();
    QVERIFY(QFileInfo::exists(download.stage + "/part"_L1));
}

void tst_downloadstore::hostileStageIsNotRemoved()
{
    Download download = one(u"a"_s, State::Failed);
    QVERIFY(write({download}));
    QVERIFY(m_folder->write(u"Profiles/mine/file"_s, "x"));
    QByteArray bytes = m_folder->read(u"AppData/Downloads.ini"_s);
    bytes.replace("Address=", "Stage=" + folder().toUtf8() + "/mine\r\nAddress=");
    QVERIFY(m_folder->write(u"AppData/Downloads.ini"_s, bytes));
    open();
    m_list->remove({download.id});
    close();
    QVERIFY(stored().isEmpty());
    QVERIFY(m_folder->exists(u"Profiles/mine/file"_s));
}

void tst_downloadstore::whatCannotBeWrittenIsTriedAgain()
{
    const Unlogged unlogged;
    open();
    QVERIFY(QDir(m_folder->file(u"AppData"_s)).removeRecursively());
    const Download first = one(u"a"_s);
    m_list->add(first, nullptr);
    m_store->flush();
    QCoreApplication::processEvents();
    QVERIFY(QDir().mkdir(m_folder->file(u"AppData"_s)));
    const Download second = one(u"b"_s);
    m_list->add(second, nullptr);
    QTRY_COMPARE(stored().size(), 2);
}

void tst_downloadstore::itIsTriedAgainThoughNothingChanges()
{
    const Unlogged unlogged;
    const Download before = one(u"before"_s, State::Failed);
    QVERIFY(write({before}));
    open();
    QVERIFY(QDir(m_folder->file(u"AppData"_s)).removeRecursively());
    m_list->add(one(u"a"_s), nullptr);
    m_list->remove({before.id});
    // As often as is tried at once.
    m_store->flush();
    QCoreApplication::processEvents();
    m_store->flush();
    QVERIFY(QDir().mkdir(m_folder->file(u"AppData"_s)));
    QVERIFY(write({before}));
    QTRY_COMPARE_WITH_TIMEOUT(stored().value(0).name, u"a"_s, 60000);
    QCOMPARE(stored().size(), 1);
}

void tst_downloadstore::changeDuringAFailingWriteIsTried()
{
    const Unlogged unlogged;
    open();
    QVERIFY(QDir(m_folder->file(u"AppData"_s)).removeRecursively());
    m_list->add(one(u"a"_s), nullptr);
    int ended = 0;
    m_list->record(m_list->all().first().id, [&] { ++ended; });
    m_store->flush();
    // The write has failed, which the store has not been told yet.
    const Download second = one(u"b"_s);
    m_list->add(second, nullptr);
    QVERIFY(QDir().mkdir(m_folder->file(u"AppData"_s)));
    QTRY_COMPARE(stored().size(), 2);
    QCOMPARE(ended, 1);
}

void tst_downloadstore::itIsGivenUpAtTheEnd()
{
    open();
    QVERIFY(QDir(m_folder->file(u"AppData"_s)).removeRecursively());
    m_list->add(one(u"a"_s), nullptr);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"gives up writing the last"_s));
    close();
}

void tst_downloadstore::fullDisk()
{
    const Unlogged unlogged;
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("needs the rights of the superuser");
    const QString place = disk.path() + "/Downloads.ini"_L1;
    QStringList trimmed;
    const Download before = one(u"before"_s);
    QVERIFY(DownloadFile::write(place, {{before}, {}}, trimmed));
    QFile filler(disk.path() + "/filler"_L1);
    QVERIFY(filler.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
    while (filler.write(QByteArray(4096, 'x')) > 0)
        ;
    DownloadList list;
    DownloadStore store(list, place);
    QSignalSpy loaded(&store, &DownloadStore::loaded);
    QVERIFY(loaded.wait());
    for (int i = 0; i < 20; ++i)
        list.add(one(QString(200, u'x')), nullptr);
    store.flush();
    QCOMPARE(DownloadFile::read(place), QList<Download>({before}));
    QCOMPARE(list.all().size(), 21);
    QCoreApplication::processEvents();
    QVERIFY(filler.resize(0));
    list.add(one(u"last"_s), nullptr);
    store.flush();
    QCOMPARE(DownloadFile::read(place)->size(), 22);
}

void tst_downloadstore::fileThatCannotBeReadStays()
{
    const Unlogged unlogged;
    QVERIFY(QDir().mkpath(file() + "/mine"_L1));
    open();
    m_list->add(one(u"a"_s), nullptr);
    close();
    QVERIFY(QFileInfo::exists(file() + "/mine"_L1));
}

void tst_downloadstore::twoProgramsInOneFolder()
{
    const Download old = one(u"old"_s, State::Failed);
    QVERIFY(write({old}));
    open();
    DownloadList otherList;
    DownloadStore other(otherList, file());
    QSignalSpy loaded(&other, &DownloadStore::loaded);
    QVERIFY(loaded.wait());
    const Download mine = one(u"mine"_s, State::Running);
    const Download his = one(u"his"_s, State::Running);
    m_list->add(mine, nullptr);
    otherList.add(his, nullptr);
    change(mine.id, State::Done);
    otherList.change(old.id, [](Download &download) { download.state = State::Done; });
    close();
    other.flush();
    QCOMPARE(stored().size(), 3);
    QCOMPARE(storedState(mine.id), State::Done);
    QCOMPARE(storedState(his.id), State::Running);
    QCOMPARE(storedState(old.id), State::Done);
}

void tst_downloadstore::thousandEntries()
{
    QList<Download> all;
    for (int i = 0; i < DownloadList::most; ++i)
        all.append(one(u"Some file of mine, number %1 (\u00fc).tar.gz"_s.arg(i)));
    QVERIFY(write(all));
    open();
    QCOMPARE(m_list->all().size(), DownloadList::most);
    QCOMPARE(m_list->all().first(), all.last());
    const Download now = one(u"now"_s);
    m_list->add(now, nullptr);
    close();
    QCOMPARE(stored().size(), DownloadList::most);
    QCOMPARE(stored().first(), now);
    QBENCHMARK
    {
        QCOMPARE(DownloadFile::read(file())->size(), DownloadList::most);
    }
}

QTEST_GUILESS_MAIN(tst_downloadstore)
#include "tst_downloadstore.moc"
