#include <QMenu>
#include <QStatusBar>
#include <QWebEngineScript>
#include <optional>

#include "../Session.h"
#include "DeskFile.h"
#include "DeskTaker.h"
#include "EngineTest.h"
#include "FileDialogRequest.h"
#include "MdiArea.h"
#include "QtWebBrowser.h"
#include "UrlProfile.h"
#include "WebPage.h"

using namespace Qt::StringLiterals;

namespace {
constexpr int windowCount = 50;
constexpr int allLoadedMs = 240'000;
constexpr int withWindows = 2;
/// CSS pixels.
constexpr int scrollTolerance = 2;

QtWebBrowser &browserOf(const BrowserWindow *window)
{
    return *qobject_cast<QtWebBrowser *>(window->browser());
}

/// What `code` gives in the page, or nothing in time.
QVariant script(const BrowserWindow *window, const QString &code)
{
    auto result = std::make_shared<std::optional<QVariant>>();
    browserOf(window).page()->runJavaScript(code, QWebEngineScript::ApplicationWorld,
                                            [result](const QVariant &value) { *result = value; });
    [&] { QTRY_VERIFY(*result); }();
    return result->value_or(QVariant());
}

int scrollOf(const BrowserWindow *window)
{
    return qRound(script(window, u"scrollY"_s).toDouble());
}

bool areNear(const QPoint &a, const QPoint &b)
{
    return (a - b).manhattanLength() <= scrollTolerance;
}
}

/// Profiles with windows on real pages: what was saved comes back where and as it was.
class tst_DeskReturn : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void fiftyWindows();
    void pageThatGrows();
    void savedWhileItLoads();
    void zoomIsEachWindowsOwn();
    void refusedAddresses();

private:
    Desk desk() const { return takeDesk(*m_session->frame, browserForms()); }
    QString file() const { return m_session->folder.file(u"Profiles/a.orp"_s); }
    void save();
    void open(const Desk &desk);
    static bool allLoaded();
    /// As their user does who goes to each, but for their order.
    static void wakeAll()
    {
        for (BrowserWindow *window : browserForms())
            window->wake();
    }
    void scroll(BrowserWindow *window, int top) const;
    MdiArea &area() const { return *m_session->frame->findChild<MdiArea *>(); }

    std::unique_ptr<Session> m_session;
};

void tst_DeskReturn::init()
{
    m_session = std::make_unique<Session>();
    m_session->server.handle("/long", [](const TestServer::Request &request) {
        TestServer::Reply reply;
        reply.body = "<title>" + request.path.mid(6) + "</title><body style='height:9000px'>";
        return reply;
    });
}

void tst_DeskReturn::cleanup()
{
    setFileDialogAnswerer({});
    m_session.reset();
}

void tst_DeskReturn::save()
{
    setFileDialogAnswerer([this](const FileDialogRequest &) -> std::optional<FileDialogAnswer> {
        return FileDialogAnswer{file(), withWindows};
    });
    m_session->choose("mnuFileProfilesSave");
}

void tst_DeskReturn::open(const Desk &desk)
{
    QVERIFY(DeskFile::save(file(), desk));
    QVERIFY(m_session->frame->openProfile(file(), false));
}

bool tst_DeskReturn::allLoaded()
{
    const QList<BrowserWindow *> windows = browserForms();
    return std::all_of(windows.cbegin(), windows.cend(), [](const BrowserWindow *window) {
        return window->browser()->hasDocument() && !window->browser()->isBusy();
    });
}

/// As its user does, who has the window before him.
void tst_DeskReturn::scroll(BrowserWindow *window, int top) const
{
    area().setActiveSubWindow(window);
    script(window, u"scrollTo(0, %1); 1"_s.arg(top));
    QTRY_VERIFY(areNear(window->browser()->pageState(StateDepth::View).scroll, QPoint(0, top)));
}

void tst_DeskReturn::fiftyWindows()
{
    m_session->start(m_session->server.url(u"/long?0"_s));
    m_session->active()->showNormal();
    for (int i = 1; i < windowCount; ++i)
        m_session->frame->openBrowserWindow(m_session->server.url(u"/long?"_s + QString::number(i)),
                                            WindowState::AsOthers);
    QTRY_VERIFY_WITH_TIMEOUT(allLoaded(), allLoadedMs);
    const QList<BrowserWindow *> windows = browserForms();
    for (int i = 0; i < windowCount; ++i) {
        windows.at(i)->setGeometry(13 * i % 400 - 20, 11 * i % 300, 350 + 3 * i, 250 + 2 * i);
        browserOf(windows.at(i)).page()->setZoomFactor((50 + 5 * (i % 30)) / 100.0);
        browserOf(windows.at(i)).page()->setAudioMuted(i % 4 == 1);
        scroll(windows.at(i), 40 * i);
        QTRY_COMPARE(windows.at(i)->windowTitle(), QString::number(i));
    }
    for (const int i : {4, 17, 40})
        windows.at(i)->showMinimized();
    for (const int i : {9, 33, 21})
        area().setActiveSubWindow(windows.at(i));
    const Desk before = desk();
    save();
    QCOMPARE(DeskFile::load(file()).value_or(Desk()).windows, before.windows);
    m_session->choose("mnuFileProfileClose");
    QTRY_COMPARE(m_session->windows(), 0);
    QMenu *recent = m_session->item("mnuFileRecentProfiles")->menu();
    emit recent->aboutToShow();
    recent->actions().first()->trigger();
    QVERIFY2(desk().windows.size() == windowCount, "all are there at once");
    QVERIFY(browserForms().first()->isAsleep());
    QTRY_COMPARE(desk().windows, before.windows);
    wakeAll();
    QTRY_VERIFY_WITH_TIMEOUT(allLoaded(), allLoadedMs);
    const QList<BrowserWindow *> again = browserForms();
    for (int i = 0; i < windowCount; ++i) {
        const int wanted = before.windows.at(i).scroll.y();
        QTRY_VERIFY2(qAbs(scrollOf(again.at(i)) - wanted) <= scrollTolerance,
                     qPrintable(QString::number(i)));
        QVERIFY(qAbs(browserOf(again.at(i)).page()->zoomFactor() - before.windows.at(i).zoom)
                < 1e-9);
    }
    // So it would be saved again, also of pages that nobody has seen.
    const Desk after = desk();
    for (int i = 0; i < windowCount; ++i) {
        QCOMPARE(after.windows.at(i).place, before.windows.at(i).place);
        QCOMPARE(after.windows.at(i).state, before.windows.at(i).state);
        QCOMPARE(after.windows.at(i).order, before.windows.at(i).order);
        QVERIFY2(areNear(after.windows.at(i).scroll, before.windows.at(i).scroll),
                 qPrintable(u"%1: %2 for %3"_s.arg(i)
                                .arg(after.windows.at(i).scroll.y())
                                .arg(before.windows.at(i).scroll.y())));
    }
    QCOMPARE(after.active, before.active);
}

void tst_DeskReturn::pageThatGrows()
{
    m_session->server.page("/grows",
                           "<body style='height:100px'><script>let h = 100; setInterval(() => "
                           "document.body.style.height = (h += 200) + 'px', 50)</script>");
    m_session->start(m_session->server.url(u"/one"_s));
    Desk wanted;
    wanted.windows = {{m_session->server.url(u"/grows"_s), u"t"_s, QRect(0, 0, 500, 400),
                       DeskWindow::State::Normal, 0, QPoint(0, 3000)}};
    open(wanted);
    QTRY_VERIFY(browserForms().size() == 2 && allLoaded());
    QTRY_VERIFY(qAbs(scrollOf(browserForms().last()) - 3000) <= scrollTolerance);
}

/// What has not come yet is saved as it is to come.
void tst_DeskReturn::savedWhileItLoads()
{
    m_session->server.hold("/long");
    m_session->start(m_session->server.url(u"/one"_s));
    QTRY_VERIFY(allLoaded());
    Desk wanted;
    for (int i = 0; i < 12; ++i)
        wanted.windows.append({m_session->server.url(u"/long?"_s + QString::number(i)),
                               u"title %1"_s.arg(i), QRect(10 * i, 10 * i, 400, 300),
                               DeskWindow::State::Normal, i, QPoint(0, 100 + i), 1.25, i == 3});
    open(wanted);
    QTRY_VERIFY(m_session->server.count("/long") > 0);
    const Desk now = desk();
    for (int i = 0; i < 12; ++i) {
        DeskWindow expected = wanted.windows.at(i);
        expected.order = i + 1;
        QCOMPARE(now.windows.at(i + 1).address, expected.address);
        QCOMPARE(now.windows.at(i + 1).scroll, expected.scroll);
        QCOMPARE(now.windows.at(i + 1), expected);
    }
    m_session->server.release();
    wakeAll();
    QTRY_VERIFY(allLoaded());
}

void tst_DeskReturn::zoomIsEachWindowsOwn()
{
    m_session->start(m_session->server.url(u"/one"_s));
    Desk wanted;
    const QList<double> zooms{0.25, 1, 1.5, 5};
    for (int i = 0; i < 4; ++i)
        wanted.windows.append({m_session->server.url(u"/one"_s),
                               u"t"_s,
                               QRect(0, 0, 400, 300),
                               DeskWindow::State::Normal,
                               i,
                               {},
                               zooms.at(i)});
    open(wanted);
    wakeAll();
    QTRY_VERIFY(browserForms().size() == 5 && allLoaded());
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(browserOf(browserForms().at(i + 1)).page()->zoomFactor(), zooms.at(i));
        const double ratio = script(browserForms().at(i + 1), u"devicePixelRatio"_s).toDouble();
        QVERIFY(qAbs(ratio - zooms.at(i)) < 0.02);
    }
    QCOMPARE(browserOf(browserForms().first()).page()->zoomFactor(), 1.0);
}

void tst_DeskReturn::refusedAddresses()
{
    m_session->start(m_session->server.url(u"/one"_s));
    QTRY_VERIFY(allLoaded());
    Desk wanted;
    for (const QString &address : {u"javascript:document.title='ran'"_s, u"chrome://crash"_s,
                                   u"data:text/html,<title>ran</title>"_s, u"mailto:a@b.example"_s,
                                   u"file:///nowhere/x.html"_s})
        wanted.windows.append({address, u"t"_s, QRect(0, 0, 400, 300)});
    open(wanted);
    wakeAll();
    const auto isAnyOnItsWay = [] {
        const QList<BrowserWindow *> windows = browserForms();
        return std::any_of(windows.cbegin(), windows.cend(), [](const BrowserWindow *window) {
            return window->browser()->isWaiting() || window->browser()->isBusy();
        });
    };
    QTRY_VERIFY(!isAnyOnItsWay());
    QVERIFY(m_session->frame->findChild<QStatusBar *>()->isHidden());
    QCOMPARE(m_session->windows(), 6);
    QVERIFY(browserForms().at(1)->windowTitle() != u"ran"_s);
    // Of a crash none of the others knows.
    QCOMPARE(script(browserForms().first(), u"1 + 1"_s).toInt(), 2);
}

ORVANE_ENGINE_TEST_MAIN(tst_DeskReturn)
#include "tst_deskreturn.moc"
