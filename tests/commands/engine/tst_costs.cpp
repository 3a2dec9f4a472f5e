#include "../Session.h"
#include "CostMeter.h"
#include "CostModel.h"
#include "CostsWindow.h"
#include "EngineTest.h"
#include "PageQuestions.h"

#include <QLabel>
#include <QSortFilterProxyModel>
#include <QToolButton>
#include <QTreeView>
#include <QWebEnginePage>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

/// The list of windows and what the processes of their pages take, in the real engine.
class tst_Costs : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void keyOpensTheOneList();
    void windowsComeAndGo();
    void busyPageStandsOut();
    void sharedProcessIsSaid();
    void sleepingTakesNothing();
    void typedTextIsAskedAbout();
    void enterGoesThere();
    void deleteCloses();
    void programHasNoButtons();
    void measuresOnlyInSight();
    void hostileTitles();

private:
    BrowserWindow *openPage(const QString &path);
    CostsWindow *list() const
    {
        return qobject_cast<CostsWindow *>(Forms::named("frmCosts").value(0));
    }
    QTreeView *view() const { return list()->findChild<QTreeView *>(u"lstCosts"_s); }
    QToolButton *button(const char *name) const
    {
        return list()->findChild<QToolButton *>(QLatin1String(name));
    }
    QStringList column(int column) const
    {
        QStringList texts;
        for (int row = 0; row < view()->model()->rowCount(); ++row)
            texts.append(view()->model()->index(row, column).data().toString());
        return texts;
    }
    /// -1: there is none.
    int rowOf(const QString &title) const { return int(column(CostModel::Title).indexOf(title)); }
    QString cell(const QString &title, int of) const { return column(of).value(rowOf(title)); }
    int percent(const QString &title) const
    {
        return cell(title, CostModel::Processor).chopped(2).toInt();
    }
    void choose(const QString &title) const
    {
        view()->setCurrentIndex(view()->model()->index(rowOf(title), 0));
    }
    void run(const BrowserWindow *window, const QString &script) const
    {
        window->findChild<QWebEngineView *>()->page()->runJavaScript(script);
    }

    std::unique_ptr<Session> m_session;
};

void tst_Costs::init()
{
    m_session = std::make_unique<Session>();
    m_session->server.page("/busy", "<title>busy</title>");
    m_session->server.page("/form", "<title>form</title><input autofocus id=i>");
    m_session->start(m_session->server.url(u"/home"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/home"_s)));
    m_session->choose("mnuToolsCosts");
    QTRY_VERIFY(list() && list()->isVisible());
}

void tst_Costs::cleanup()
{
    m_session.reset();
}

BrowserWindow *tst_Costs::openPage(const QString &path)
{
    const QString url = m_session->server.url(path);
    m_session->frame->openBrowserWindow(url, WindowState::AsOthers);
    return QTest::qWaitFor([&] { return m_session->shows(url); }) ? m_session->active() : nullptr;
}

void tst_Costs::keyOpensTheOneList()
{
    list()->close();
    QTRY_VERIFY(!list());
    QTest::keyClick(m_session->frame.get(), Qt::Key_Escape, Qt::ShiftModifier);
    QTRY_VERIFY(list());
    QCOMPARE(m_session->frame->activeChild(), list());
    QTRY_VERIFY(view()->hasFocus());
    QVERIFY(openPage(u"/one"_s));
    QTest::keyClick(m_session->frame.get(), Qt::Key_Escape, Qt::ShiftModifier);
    QCOMPARE(Forms::named("frmCosts").size(), 1);
    QCOMPARE(m_session->frame->activeChild(), list());
}

void tst_Costs::windowsComeAndGo()
{
    QTRY_COMPARE(column(CostModel::Title).size(), 2);
    QTRY_VERIFY(rowOf(u"home page"_s) >= 0);
    BrowserWindow *one = openPage(u"/one"_s);
    QVERIFY(one);
    QTRY_VERIFY(rowOf(u"the quick brown fox"_s) >= 0);
    QTRY_COMPARE(cell(u"the quick brown fox"_s, CostModel::Site), m_session->server.url(QString()));
    // A renderer takes some megabytes at least.
    QTRY_VERIFY(cell(u"the quick brown fox"_s, CostModel::Memory).contains("MB"_L1));
    one->close();
    QTRY_COMPARE(rowOf(u"the quick brown fox"_s), -1);
    QCOMPARE(column(CostModel::Title).size(), 2);
    const auto *sum = list()->findChild<QLabel *>(u"lblSum"_s);
    QVERIFY(sum->text().contains("MB"_L1));
}

void tst_Costs::busyPageStandsOut()
{
    // Of another site, and so in a process of its own.
    QString url = m_session->server.url(u"/busy"_s);
    url.replace("127.0.0.1"_L1, "localhost"_L1);
    m_session->frame->openBrowserWindow(url, WindowState::AsOthers);
    QTRY_VERIFY(m_session->shows(url));
    run(m_session->active(),
        u"setInterval(() => { const end = Date.now() + 90; while (Date.now() < end); }, 100); 1"_s);
    list()->showNormal();
    QTRY_VERIFY(percent(u"busy"_s) >= 20);
    QVERIFY(percent(u"home page"_s) < percent(u"busy"_s));
}

void tst_Costs::sharedProcessIsSaid()
{
    // A page that another one opened can be reached by that, and so shares its process.
    m_session->server.page("/opened", "<title>opened</title>");
    m_session->server.page(
        "/opener",
        "<title>opener</title><style>html{height:100%}</style><script>"
        "onclick = () => window.opened = window.opened || open('/opened')</script>");
    const BrowserWindow *opener = openPage(u"/opener"_s);
    QVERIFY(opener);
    QWidget *page = opener->findChild<QWebEngineView *>()->focusProxy();
    // The engine drops clicks before it has painted.
    const auto isOpen = [&] {
        QTest::mouseClick(page, Qt::LeftButton, {}, QPoint(100, 100));
        return m_session->windows() == 3;
    };
    QTRY_VERIFY(m_session->windows() == 3 || isOpen());
    QTRY_VERIFY(rowOf(u"opened"_s) >= 0);
    QTRY_VERIFY(cell(u"opened"_s, CostModel::Memory).contains(", 2 windows together"_L1));
    QCOMPARE(cell(u"opener"_s, CostModel::Memory), cell(u"opened"_s, CostModel::Memory));
}

void tst_Costs::sleepingTakesNothing()
{
    const BrowserWindow *one = openPage(u"/one"_s);
    QVERIFY(one);
    QTRY_VERIFY(rowOf(u"the quick brown fox"_s) >= 0);
    list()->setFocus();
    choose(u"the quick brown fox"_s);
    QTRY_VERIFY(button("cmdSleep")->isEnabled());
    button("cmdSleep")->click();
    QTRY_VERIFY(one->isAsleep());
    QTRY_COMPARE(cell(u"the quick brown fox"_s, CostModel::Memory), u"asleep"_s);
    QCOMPARE(cell(u"the quick brown fox"_s, CostModel::Processor), QString());
    choose(u"the quick brown fox"_s);
    QVERIFY(!button("cmdSleep")->isEnabled());
}

void tst_Costs::typedTextIsAskedAbout()
{
    BrowserWindow *form = openPage(u"/form"_s);
    QVERIFY(form);
    QWidget *field = form->findChild<QWebEngineView *>()->focusProxy();
    QTRY_VERIFY(field->hasFocus());
    // The engine drops keys before it has painted.
    QTRY_VERIFY(
        (QTest::keyClick(field, Qt::Key_A), form->browser()->maySleep() == SleepLimit::Much));
    m_session->choose("mnuToolsCosts");
    QTRY_VERIFY(rowOf(u"form"_s) >= 0);
    choose(u"form"_s);
    button("cmdSleep")->click();
    QTRY_COMPARE(m_session->frame->activeChild(), form);
    QTRY_VERIFY(form->questions()->shownQuestion());
    QVERIFY(!form->isAsleep());
}

void tst_Costs::enterGoesThere()
{
    const BrowserWindow *one = openPage(u"/one"_s);
    QVERIFY(one);
    m_session->choose("mnuToolsCosts");
    QTRY_VERIFY(rowOf(u"the quick brown fox"_s) >= 0);
    choose(u"the quick brown fox"_s);
    QTest::keyClick(view(), Qt::Key_Return);
    QTRY_COMPARE(m_session->active(), one);
}

void tst_Costs::deleteCloses()
{
    const QPointer<BrowserWindow> one = openPage(u"/one"_s);
    QVERIFY(one);
    m_session->choose("mnuToolsCosts");
    QTRY_VERIFY(rowOf(u"the quick brown fox"_s) >= 0);
    choose(u"the quick brown fox"_s);
    QTest::keyClick(view(), Qt::Key_Delete);
    QTRY_VERIFY(!one);
    QTRY_COMPARE(rowOf(u"the quick brown fox"_s), -1);
    QVERIFY(m_session->active() == nullptr || list());
}

void tst_Costs::programHasNoButtons()
{
    QTRY_VERIFY(rowOf(u"home page"_s) >= 0);
    QCOMPARE(view()->model()->rowCount(), 2);
    choose(column(CostModel::Title).value(1 - rowOf(u"home page"_s)));
    for (const char *name : {"cmdGoTo", "cmdSleep", "cmdClose"})
        QVERIFY(!button(name)->isEnabled());
    QTest::keyClick(view(), Qt::Key_Delete);
    QCOMPARE(m_session->windows(), 1);
    choose(u"home page"_s);
    QVERIFY(button("cmdGoTo")->isEnabled() && button("cmdClose")->isEnabled());
}

void tst_Costs::measuresOnlyInSight()
{
    auto *meter = list()->findChild<CostMeter *>();
    QSignalSpy measured(meter, &CostMeter::measured);
    QTRY_VERIFY(measured.size() >= 2);
    list()->showMinimized();
    const auto *looks = list()->findChild<QTimer *>(u"looks"_s);
    QVERIFY(looks);
    QTRY_VERIFY(!looks->isActive());
    list()->showNormal();
    QTRY_VERIFY(looks->isActive());
    measured.clear();
    QTRY_VERIFY(measured.size() >= 1);
}

void tst_Costs::hostileTitles()
{
    m_session->server.page("/bad", "<title>a&#10;b\u202Ec" + QByteArray(100'000, 'x') + "</title>");
    m_session->frame->openBrowserWindow(m_session->server.url(u"/bad"_s), WindowState::AsOthers);
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/bad"_s)));
    QTRY_COMPARE(view()->model()->rowCount(), 3);
    QTRY_VERIFY(column(CostModel::Title).join(u'|').contains("xxx"_L1));
    const QString all = column(CostModel::Title).join(u'|');
    QVERIFY(!all.contains(u'\n') && !all.contains(QChar(0x202E)));
    QVERIFY(all.size() < 10'000);
}

ORVANE_ENGINE_TEST_MAIN(tst_Costs)
#include "tst_costs.moc"
