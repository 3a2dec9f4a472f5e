#include "DownloadList.h"
#include "Transfer.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using State = Download::State;

namespace {
/// Does what it is told to its entry, and notes it.
class FakeTransfer : public Transfer {
public:
    FakeTransfer(DownloadList &list, const QString &id)
        : m_list(list)
        , m_id(id)
    {
    }
    void pause() override { set(State::Paused, u"pause"_s); }
    void resume() override { set(State::Running, u"resume"_s); }
    void cancel() override { set(State::Cancelled, u"cancel"_s); }
    void leave() override { set(State::Unfinished, u"leave"_s); }

    QStringList told;

private:
    void set(State state, const QString &word)
    {
        told.append(word);
        m_list.change(m_id, [state](Download &download) { download.state = state; });
    }

    DownloadList &m_list;
    QString m_id;
};

Download one(const QString &id, State state = State::Running)
{
    Download download;
    download.id = id;
    download.name = id + ".bin"_L1;
    download.folder = u"/nowhere"_s;
    download.state = state;
    return download;
}
}

/// The one place where the state of downloads is.
class tst_downloadlist : public QObject {
    Q_OBJECT

private slots:
    void init() { m_list = std::make_unique<DownloadList>(); }
    void cleanup() { m_list.reset(); }

    void latestIsFirst();
    void earlierOnesFollow();
    void idsAreFree();
    void changesAreToldWithTheNextTurn();
    void bytesAreToldAFewTimesInASecond();
    void nothingChangedIsNotTold();
    void idStays();
    void wishesReachTheTransfer();
    void wishesWithoutUseDoNothing();
    void retryIsForWhatFailed();
    void removedOnesAreCancelled();
    void oldestThatAreOverGo();
    void noneUnderWayGoes();
    void leaving();
    void sumOfThoseUnderWay();
    void rateOfOne();
    void placesAfterManyChanges();
    void theProgramsOneGoesWithTheApplication();

private:
    State stateOf(const QString &id) const { return m_list->find(id)->state; }
    QStringList ids() const
    {
        QStringList result;
        for (const Download &download : m_list->all())
            result.append(download.id);
        return result;
    }

    std::unique_ptr<DownloadList> m_list;
};

void tst_downloadlist::latestIsFirst()
{
    const QSignalSpy added(m_list.get(), &DownloadList::added);
    m_list->add(one(u"a"_s), nullptr);
    m_list->add(one(u"b"_s), nullptr);
    QCOMPARE(ids(), QStringList({u"b"_s, u"a"_s}));
    QCOMPARE(added.size(), 2);
    QCOMPARE(added.at(1).at(0).toString(), u"b"_s);
    QCOMPARE(m_list->find(u"a"_s)->name, u"a.bin"_s);
    QVERIFY(!m_list->find(u"c"_s));
}

void tst_downloadlist::earlierOnesFollow()
{
    m_list->add(one(u"a"_s), nullptr);
    const QSignalSpy restored(m_list.get(), &DownloadList::restored);
    // One that is there already stays as it is.
    m_list->restore(
        {one(u"x"_s, State::Done), one(u"a"_s, State::Failed), one(u"y"_s, State::Done)});
    m_list->add(one(u"b"_s), nullptr);
    QCOMPARE(ids(), QStringList({u"b"_s, u"a"_s, u"x"_s, u"y"_s}));
    QCOMPARE(stateOf(u"a"_s), State::Running);
    QCOMPARE(stateOf(u"y"_s), State::Done);
    QCOMPARE(restored.size(), 1);
    QList<Download> many;
    for (int i = 0; i < 2 * DownloadList::most; ++i)
        many.append(one(u"m%1"_s.arg(i), State::Done));
    m_list->restore(many);
    QCOMPARE(m_list->all().size(), DownloadList::most);
    QCOMPARE(ids().at(4), u"m0"_s);
}

void tst_downloadlist::idsAreFree()
{
    const QString id = DownloadList::newId();
    QCOMPARE(id.size(), 32);
    QVERIFY(id != DownloadList::newId());
}

void tst_downloadlist::changesAreToldWithTheNextTurn()
{
    m_list->add(one(u"a"_s), nullptr);
    m_list->add(one(u"b"_s), nullptr);
    QSignalSpy changed(m_list.get(), &DownloadList::changed);
    for (const QString &id : {u"a"_s, u"b"_s})
        m_list->change(id, [](Download &download) { download.state = State::Failed; });
    QCOMPARE(stateOf(u"a"_s), State::Failed);
    QVERIFY(changed.isEmpty());
    QTRY_COMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).value<QSet<QString>>(), QSet<QString>({u"a"_s, u"b"_s}));
}

void tst_downloadlist::bytesAreToldAFewTimesInASecond()
{
    m_list->add(one(u"a"_s), nullptr);
    QSignalSpy changed(m_list.get(), &DownloadList::changed);
    constexpr int steps = 1000;
    for (int i = 1; i <= steps; ++i) {
        m_list->change(u"a"_s, [i](Download &download) { download.received = i; });
        QCoreApplication::processEvents();
    }
    QTRY_VERIFY(!changed.isEmpty());
    QVERIFY(changed.size() < steps / 10);
    QCOMPARE(m_list->find(u"a"_s)->received, steps);
}

void tst_downloadlist::nothingChangedIsNotTold()
{
    m_list->add(one(u"a"_s), nullptr);
    QSignalSpy changed(m_list.get(), &DownloadList::changed);
    m_list->change(u"a"_s, [](Download &) {});
    m_list->change(u"none"_s, [](Download &download) { download.size = 1; });
    m_list->add(one(u"b"_s), nullptr);
    m_list->change(u"b"_s, [](Download &download) { download.state = State::Done; });
    QTRY_COMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).value<QSet<QString>>(), QSet<QString>({u"b"_s}));
}

void tst_downloadlist::idStays()
{
    m_list->add(one(u"a"_s), nullptr);
    m_list->change(u"a"_s, [](Download &download) { download.id = u"b"_s; });
    QCOMPARE(ids(), QStringList(u"a"_s));
}

void tst_downloadlist::wishesReachTheTransfer()
{
    FakeTransfer transfer(*m_list, u"a"_s);
    m_list->add(one(u"a"_s), &transfer);
    m_list->pause(u"a"_s);
    QCOMPARE(stateOf(u"a"_s), State::Paused);
    m_list->resume(u"a"_s);
    m_list->cancel(u"a"_s);
    QCOMPARE(stateOf(u"a"_s), State::Cancelled);
    // Over: it is its no more.
    m_list->resume(u"a"_s);
    QCOMPARE(transfer.told, QStringList({u"pause"_s, u"resume"_s, u"cancel"_s}));
    // Another takes it up.
    FakeTransfer second(*m_list, u"a"_s);
    m_list->setTransfer(u"a"_s, &second);
    m_list->resume(u"a"_s);
    QCOMPARE(stateOf(u"a"_s), State::Running);
    QCOMPARE(second.told, QStringList(u"resume"_s));
}

void tst_downloadlist::wishesWithoutUseDoNothing()
{
    m_list->add(one(u"a"_s), nullptr);
    {
        FakeTransfer gone(*m_list, u"b"_s);
        m_list->add(one(u"b"_s), &gone);
    }
    for (const QString &id : {u"a"_s, u"b"_s, u"none"_s}) {
        m_list->pause(id);
        m_list->resume(id);
        m_list->cancel(id);
        m_list->retry(id);
    }
    m_list->leaveAll();
    QCOMPARE(stateOf(u"a"_s), State::Running);
    QCOMPARE(stateOf(u"b"_s), State::Running);
}

void tst_downloadlist::retryIsForWhatFailed()
{
    QStringList retried;
    m_list->setRetry([&retried](const QString &id) { retried.append(id); });
    const QList<State> all{State::Running, State::Paused,    State::Held,   State::Finishing,
                           State::Done,    State::Cancelled, State::Failed, State::Unfinished};
    for (const State state : all) {
        const QString id = QString::number(int(state));
        m_list->add(one(id, state), nullptr);
        m_list->retry(id);
    }
    QStringList wanted;
    for (const State state : {State::Cancelled, State::Failed, State::Unfinished})
        wanted.append(QString::number(int(state)));
    QCOMPARE(retried, wanted);
}

void tst_downloadlist::removedOnesAreCancelled()
{
    FakeTransfer transfer(*m_list, u"b"_s);
    m_list->add(one(u"a"_s, State::Done), nullptr);
    m_list->add(one(u"b"_s), &transfer);
    m_list->add(one(u"c"_s, State::Done), nullptr);
    const QSignalSpy removed(m_list.get(), &DownloadList::removed);
    QSignalSpy changed(m_list.get(), &DownloadList::changed);
    m_list->remove({u"b"_s, u"none"_s, u"a"_s});
    QCOMPARE(transfer.told, QStringList(u"cancel"_s));
    QCOMPARE(ids(), QStringList(u"c"_s));
    QCOMPARE(removed.size(), 2);
    // It is not in the list when that is told of it.
    m_list->change(u"c"_s, [](Download &download) { download.state = State::Failed; });
    QTRY_COMPARE(changed.size(), 1);
    QCOMPARE(changed.at(0).at(0).value<QSet<QString>>(), QSet<QString>({u"c"_s}));
}

void tst_downloadlist::oldestThatAreOverGo()
{
    for (int i = 0; i < DownloadList::most; ++i)
        m_list->add(one(QString::number(i), State::Done), nullptr);
    m_list->change(u"0"_s, [](Download &download) { download.state = State::Running; });
    const QSignalSpy removed(m_list.get(), &DownloadList::removed);
    m_list->add(one(u"new"_s), nullptr);
    QCOMPARE(m_list->all().size(), DownloadList::most);
    QCOMPARE(removed.size(), 1);
    QCOMPARE(removed.at(0).at(0).toString(), u"1"_s);
    QVERIFY(m_list->find(u"0"_s));
}

void tst_downloadlist::noneUnderWayGoes()
{
    for (int i = 0; i < DownloadList::most + 5; ++i)
        m_list->add(one(QString::number(i)), nullptr);
    QCOMPARE(m_list->all().size(), DownloadList::most + 5);
}

void tst_downloadlist::leaving()
{
    FakeTransfer first(*m_list, u"a"_s);
    FakeTransfer second(*m_list, u"b"_s);
    m_list->add(one(u"a"_s), &first);
    m_list->add(one(u"b"_s), &second);
    bool wasLeft = false;
    connect(m_list.get(), &DownloadList::left, this, [&] {
        wasLeft = stateOf(u"a"_s) == State::Unfinished && stateOf(u"b"_s) == State::Unfinished;
    });
    m_list->leaveAll();
    QVERIFY(wasLeft);
    // The desktop's session may end while the frame closes.
    m_list->leaveAll();
    QCOMPARE(first.told, QStringList(u"leave"_s));
}

void tst_downloadlist::sumOfThoseUnderWay()
{
    QCOMPARE(m_list->sum().count, 0);
    const auto add = [this](const QString &id, State state, qint64 received, qint64 size) {
        Download download = one(id, state);
        download.received = received;
        download.size = size;
        m_list->add(download, nullptr);
    };
    add(u"a"_s, State::Running, 10, 100);
    add(u"b"_s, State::Paused, 300, 200);
    add(u"c"_s, State::Done, 1000, 1000);
    DownloadList::Sum sum = m_list->sum();
    QCOMPARE(sum.count, 2);
    // More than announced is not more than all.
    QCOMPARE(sum.received, 210);
    QCOMPARE(sum.size, 300);
    QVERIFY(!sum.hasUnknown);
    QCOMPARE(sum.secondsLeft, -1);
    add(u"d"_s, State::Running, 50, -1);
    sum = m_list->sum();
    QCOMPARE(sum.count, 3);
    QCOMPARE(sum.size, 300);
    QVERIFY(sum.hasUnknown);
}

void tst_downloadlist::rateOfOne()
{
    FakeTransfer transfer(*m_list, u"a"_s);
    Download download = one(u"a"_s);
    download.size = 1'000'000'000;
    m_list->add(download, &transfer);
    QCOMPARE(m_list->rate(u"a"_s), 0);
    QCOMPARE(m_list->secondsLeft(u"a"_s), -1);
    QElapsedTimer clock;
    clock.start();
    QTRY_VERIFY([&] {
        m_list->change(u"a"_s, [&](Download &each) { each.received = clock.elapsed() * 1000; });
        return m_list->rate(u"a"_s) > 0;
    }());
    QVERIFY(m_list->secondsLeft(u"a"_s) > 0);
    QCOMPARE(m_list->sum().rate, m_list->rate(u"a"_s));
    QVERIFY(m_list->sum().secondsLeft > 0);
    m_list->pause(u"a"_s);
    QCOMPARE(m_list->rate(u"a"_s), 0);
}

void tst_downloadlist::placesAfterManyChanges()
{
    QStringList expected;
    for (int i = 0; i < 300; ++i) {
        const QString id = QString::number(i);
        m_list->add(one(id, State::Done), nullptr);
        expected.prepend(id);
        if (i % 3 == 0) {
            const QString gone = expected.takeAt(expected.size() / 2);
            m_list->remove({gone});
            QVERIFY(!m_list->find(gone));
        }
        if (i % 50 == 0) {
            const QString earlier = u"e%1"_s.arg(i);
            m_list->restore({one(earlier, State::Done)});
            expected.append(earlier);
        }
    }
    QCOMPARE(ids(), expected);
    for (const QString &id : std::as_const(expected)) {
        m_list->change(id, [](Download &download) { download.size = download.name.size(); });
        QCOMPARE(m_list->find(id)->id, id);
        QCOMPARE(m_list->find(id)->size, m_list->find(id)->name.size());
    }
}

void tst_downloadlist::theProgramsOneGoesWithTheApplication()
{
    DownloadList &list = downloadList();
    QCOMPARE(&downloadList(), &list);
    QCOMPARE(list.parent(), QCoreApplication::instance());
}

QTEST_GUILESS_MAIN(tst_downloadlist)
#include "tst_downloadlist.moc"
