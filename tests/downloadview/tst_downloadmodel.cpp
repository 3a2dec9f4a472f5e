#include "DownloadModel.h"
#include "FakeDownloads.h"

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <QSortFilterProxyModel>
#include <QtTest>

using namespace Qt::StringLiterals;
using State = Download::State;
using Problem = Download::Problem;

/// What the list of downloads says in its rows, and that it follows what happens.
class tst_DownloadModel : public QObject {
    Q_OBJECT

private slots:
    void init();
    void rowsAreInTheListsOrder();
    void rowIsNamedAsItsFile();
    void states_data();
    void states();
    void everyProblemHasALineOfItsOwn();
    void sizesAreInTheLocalesForm();
    void progressOfAnUnknownSize();
    void hostileTextsStayInTheirPlace();
    void longContentsAreCut();
    void detailIsInTheToolTip();
    void manyChangesAreToldAsOne();
    void columnsThatStayAreNotTold();
    void followsAddingAndRemoving();
    void earlierOnesComeBehind();
    void sorting_data();
    void sorting();

private:
    QString text(int row, int column, int role = Qt::DisplayRole) const
    {
        return m_model->index(row, column).data(role).toString();
    }
    QString stateOf(State state, Problem problem)
    {
        Download download = FakeDownloads::make(u"x"_s, state);
        download.problem = problem;
        m_list->add(download, nullptr);
        return text(0, DownloadModel::State);
    }

    std::unique_ptr<DownloadList> m_list;
    std::unique_ptr<DownloadModel> m_model;
};

void tst_DownloadModel::init()
{
    QLocale::setDefault(QLocale::c());
    m_model.reset();
    m_list = std::make_unique<DownloadList>();
    m_model = std::make_unique<DownloadModel>(*m_list);
    new QAbstractItemModelTester(m_model.get(), m_model.get());
}

void tst_DownloadModel::rowsAreInTheListsOrder()
{
    FakeDownloads::add(FakeDownloads::make(u"one"_s), *m_list);
    FakeDownloads::add(FakeDownloads::make(u"two"_s), *m_list);
    QCOMPARE(m_model->rowCount(), 2);
    QCOMPARE(text(0, DownloadModel::Name), u"two"_s);
    const DownloadModel later(*m_list);
    QCOMPARE(later.index(0, DownloadModel::Name).data().toString(), u"two"_s);
    QCOMPARE(later.index(1, DownloadModel::Name).data().toString(), u"one"_s);
}

void tst_DownloadModel::rowIsNamedAsItsFile()
{
    Download download = FakeDownloads::make(u"report.pdf"_s, State::Paused);
    m_list->add(download, nullptr);
    QCOMPARE(text(0, DownloadModel::Name, Qt::AccessibleTextRole), u"report.pdf"_s);
    QCOMPARE(text(0, DownloadModel::Name, Qt::AccessibleDescriptionRole), u"25%, Paused"_s);
    QCOMPARE(text(0, DownloadModel::Address), u"https://files.example/report.pdf"_s);
    QCOMPARE(text(0, DownloadModel::Page), u"https://page.example/"_s);
    QVERIFY(!text(0, DownloadModel::When).isEmpty());
}

void tst_DownloadModel::states_data()
{
    QTest::addColumn<State>("state");
    QTest::addColumn<Problem>("problem");
    QTest::addColumn<QString>("expected");
    using enum Download::State;
    using enum Download::Problem;
    const auto row = [](State state, Problem problem, const char *expected) {
        QTest::newRow(expected) << state << problem << QString::fromUtf8(expected);
    };
    row(Running, None, "Running");
    row(Paused, None, "Paused");
    row(Held, None, "Waits for your answer");
    row(Finishing, None, "Finishing");
    row(Done, None, "Done");
    row(Cancelled, None, "Cancelled");
    row(Unfinished, None, "Not finished");
    row(Unfinished, ConnectionLost, "Not finished");
    row(Failed, NoRoom, "There is no room left in the folder");
    row(Failed, Other, "It failed");
    row(Failed, FileChanged, "The file on the server has changed");
    row(Running, FileChanged, "Running. Begun anew because the file on the server has changed");
    row(Done, NoRanges, "Done. Begun anew because the server only sends whole files");
}

void tst_DownloadModel::states()
{
    QFETCH(State, state);
    QFETCH(Problem, problem);
    QFETCH(QString, expected);
    QCOMPARE(stateOf(state, problem).left(expected.size()), expected);
    if (state == State::Failed)
        QCOMPARE(text(0, DownloadModel::State), expected);
}

void tst_DownloadModel::everyProblemHasALineOfItsOwn()
{
    QStringList lines;
    for (int problem = int(Problem::NoRoom); problem <= int(Problem::Other); ++problem)
        lines.append(stateOf(State::Failed, Problem(problem)));
    QVERIFY(!lines.contains(QString()));
    lines.removeDuplicates();
    QCOMPARE(lines.size(), int(Problem::Other));
}

void tst_DownloadModel::sizesAreInTheLocalesForm()
{
    Download download = FakeDownloads::make(u"x"_s);
    download.size = 1610612736;
    m_list->add(download, nullptr);
    QCOMPARE(text(0, DownloadModel::Size), QLocale::c().formattedDataSize(1610612736, 1));
    QLocale::setDefault(QLocale(QLocale::German));
    QVERIFY(text(0, DownloadModel::Size).startsWith("1,5"_L1));
}

void tst_DownloadModel::progressOfAnUnknownSize()
{
    Download download = FakeDownloads::make(u"x"_s);
    download.size = -1;
    download.received = 2048;
    m_list->add(download, nullptr);
    QCOMPARE(text(0, DownloadModel::Size), QString());
    QCOMPARE(text(0, DownloadModel::Progress), QLocale::c().formattedDataSize(2048, 1));
    QCOMPARE(m_model->index(0, DownloadModel::Progress).data(DownloadModel::ShareRole).toInt(), -1);
    // More than announced is no more than all.
    download = FakeDownloads::make(u"y"_s);
    download.received = 5 * download.size;
    m_list->add(download, nullptr);
    QCOMPARE(text(0, DownloadModel::Progress), u"100%"_s);
}

void tst_DownloadModel::hostileTextsStayInTheirPlace()
{
    Download download = FakeDownloads::make(u"a\u202Egnp.exe\n\u2066b"_s);
    download.address = QUrl(u"https://me:secret@b\u00fccher.example/\u202E"_s);
    download.page = QUrl(u"https://xn--80ak6aa92e.com/"_s);
    m_list->add(download, nullptr);
    QCOMPARE(text(0, DownloadModel::Name), u"agnp.exe b"_s);
    QVERIFY(!text(0, DownloadModel::Address).contains("secret"_L1));
    QVERIFY(!text(0, DownloadModel::Address).contains(QChar(0x202E)));
    QVERIFY(text(0, DownloadModel::Page).contains("xn--80ak6aa92e"_L1));
    QVERIFY(!text(0, DownloadModel::Name, Qt::ToolTipRole).contains(QChar(0x202E)));
}

void tst_DownloadModel::longContentsAreCut()
{
    Download download = FakeDownloads::make(u"x"_s);
    download.address = QUrl("data:text/plain,"_L1 + QString(1000000, u'x'));
    m_list->add(download, nullptr);
    QVERIFY(text(0, DownloadModel::Address).startsWith("data:text/plain,xxx"_L1));
    QVERIFY(text(0, DownloadModel::Address).size() < 300);
}

void tst_DownloadModel::detailIsInTheToolTip()
{
    Download download = FakeDownloads::make(u"x"_s, State::Failed);
    download.problem = Problem::ServerRefused;
    download.detail = u"403 <b>Forbidden</b>"_s;
    m_list->add(download, nullptr);
    const QString tip = text(0, DownloadModel::State, Qt::ToolTipRole);
    QVERIFY(tip.contains("The server does not give the file"_L1));
    QVERIFY(tip.contains("403 &lt;b&gt;Forbidden"_L1));
}

void tst_DownloadModel::manyChangesAreToldAsOne()
{
    QList<Download> all;
    for (int i = 0; i < 200; ++i) {
        all.append(FakeDownloads::make(QString::number(i)));
        FakeDownloads::add(all.last(), *m_list);
    }
    const QSignalSpy told(m_model.get(), &DownloadModel::dataChanged);
    for (int step = 1; step <= 3; ++step) {
        for (const Download &download : std::as_const(all))
            m_list->change(download.id, [](Download &each) { each.received += 1000; });
    }
    QTRY_COMPARE(told.size(), 1);
}

void tst_DownloadModel::columnsThatStayAreNotTold()
{
    const Download download = FakeDownloads::make(u"x"_s);
    FakeDownloads::add(download, *m_list);
    const QSignalSpy told(m_model.get(), &DownloadModel::dataChanged);
    m_list->change(download.id, [](Download &each) { ++each.received; });
    QTRY_COMPARE(told.size(), 1);
    QCOMPARE(told.first().at(0).toModelIndex().column(), int(DownloadModel::Progress));
    QCOMPARE(told.first().at(1).toModelIndex().column(), int(DownloadModel::State));
    m_list->change(download.id, [](Download &each) { each.name = u"x (1)"_s; });
    QTRY_COMPARE(told.size(), 3);
    QCOMPARE(text(0, DownloadModel::Name), u"x (1)"_s);
}

void tst_DownloadModel::followsAddingAndRemoving()
{
    QList<Download> all;
    for (int i = 0; i < 5; ++i) {
        all.append(FakeDownloads::make(QString::number(i), State::Done));
        m_list->add(all.last(), nullptr);
    }
    m_list->remove({all.at(1).id, all.at(3).id});
    QTRY_COMPARE(m_model->rowCount(), 3);
    QStringList names;
    for (int row = 0; row < m_model->rowCount(); ++row)
        names.append(text(row, DownloadModel::Name));
    QCOMPARE(names, QStringList({u"4"_s, u"2"_s, u"0"_s}));
}

void tst_DownloadModel::earlierOnesComeBehind()
{
    m_list->add(FakeDownloads::make(u"new"_s), nullptr);
    const QSignalSpy inserted(m_model.get(), &DownloadModel::rowsInserted);
    m_list->restore({FakeDownloads::make(u"old"_s, State::Done),
                     FakeDownloads::make(u"older"_s, State::Unfinished)});
    QCOMPARE(inserted.size(), 1);
    QCOMPARE(m_model->rowCount(), 3);
    QCOMPARE(text(0, DownloadModel::Name), u"new"_s);
    QCOMPARE(text(2, DownloadModel::Name), u"older"_s);
}

void tst_DownloadModel::sorting_data()
{
    QTest::addColumn<int>("column");
    QTest::addColumn<QString>("expected");
    QTest::newRow("name") << int(DownloadModel::Name) << u"a b c"_s;
    QTest::newRow("size") << int(DownloadModel::Size) << u"c b a"_s;
    QTest::newRow("progress") << int(DownloadModel::Progress) << u"a c b"_s;
    QTest::newRow("when") << int(DownloadModel::When) << u"b a c"_s;
}

/// By what a text stands for, not by its letters.
void tst_DownloadModel::sorting()
{
    QFETCH(int, column);
    QFETCH(QString, expected);
    const QDateTime noon(QDate(2024, 2, 10), QTime(12, 0));
    const auto add = [&](const QString &name, qint64 size, int share, int days) {
        Download download = FakeDownloads::make(name);
        download.size = size;
        download.received = size * share / 100;
        download.began = noon.addDays(days);
        m_list->add(download, nullptr);
    };
    add(u"b"_s, 20000, 100, -9);
    add(u"a"_s, 1000000000, 9, 0);
    add(u"c"_s, 900, 20, 1);
    QSortFilterProxyModel sorted;
    sorted.setSourceModel(m_model.get());
    sorted.setSortRole(DownloadModel::SortRole);
    sorted.sort(column);
    QStringList names;
    for (int row = 0; row < 3; ++row)
        names.append(sorted.index(row, DownloadModel::Name).data().toString());
    QCOMPARE(names.join(u' '), expected);
}

QTEST_MAIN(tst_DownloadModel)
#include "tst_downloadmodel.moc"
