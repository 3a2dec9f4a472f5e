#include "AppFolder.h"
#include "ControlScene.h"
#include "EngineTest.h"
#include "SiteZoom.h"
#include "SmallDisk.h"
#include "TempAppFolder.h"
#include "Unlogged.h"
#include "WebView.h"
#include "ZoomKeeper.h"

#include <QWheelEvent>

using namespace Qt::StringLiterals;

/// The size of pages on a scale, kept for each site.
class tst_PageZoom : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void scaleIsWalked();
    void eachSiteHasItsOwn();
    void keptInTheFile();
    void windowsOfASiteFollow();
    void givenUpPagesFollow();
    void pagesWithoutASiteAreAsUsual();
    void wheelGoesByTheScale();
    void pageMayHaveTheWheel();
    void fullDiskForgetsNothingMeanwhile();

private:
    QtWebBrowser &browser() const { return *m_scene->browser; }
    static int zoomOf(const QtWebBrowser &browser)
    {
        return qRound(100 * browser.page()->zoomFactor());
    }
    int zoom() const { return zoomOf(browser()); }
    QString url(const QString &path, const QString &host = u"127.0.0.1"_s) const
    {
        return m_scene->server.url(path, host);
    }
    void turnWheel(int clicks, Qt::KeyboardModifiers held) const;

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<ControlScene> m_scene;
};

void tst_PageZoom::init()
{
    ZoomKeeper::instance().flush();
    m_folder.reset();
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    m_scene = std::make_unique<ControlScene>();
    m_scene->server.page("/one", "<title>one</title><p>one");
    m_scene->server.page("/two", "<title>two</title><p>two");
    m_scene->open(url(u"/one"_s));
}

void tst_PageZoom::cleanup()
{
    m_scene.reset();
    m_folder.reset();
}

void tst_PageZoom::scaleIsWalked()
{
    const int width = m_scene->script(u"innerWidth"_s).toInt();
    QList<int> seen;
    for (int i = 0; i < 10; ++i) {
        browser().zoomBy(1);
        seen.append(zoom());
    }
    QCOMPARE(seen, (QList<int>{110, 125, 150, 175, 200, 250, 300, 400, 500, 500}));
    QTRY_VERIFY(qAbs(m_scene->script(u"innerWidth"_s).toInt() - width / 5) <= 1);
    seen.clear();
    for (int i = 0; i < 17; ++i) {
        browser().zoomBy(-1);
        seen.append(zoom());
    }
    QCOMPARE(
        seen,
        (QList<int>{400, 300, 250, 200, 175, 150, 125, 110, 100, 90, 80, 75, 67, 50, 33, 25, 25}));
    browser().setZoom(100);
    QCOMPARE(zoom(), 100);
    QTRY_COMPARE(m_scene->script(u"innerWidth"_s).toInt(), width);
}

void tst_PageZoom::eachSiteHasItsOwn()
{
    browser().setZoom(150);
    m_scene->open(url(u"/two"_s));
    QCOMPARE(zoom(), 150);
    m_scene->open(url(u"/one"_s, u"localhost"_s));
    QCOMPARE(zoom(), 100);
    browser().setZoom(75);
    QVERIFY(browser().goBack());
    m_scene->waitFor(url(u"/two"_s));
    QCOMPARE(zoom(), 150);
    QVERIFY(browser().goForward());
    m_scene->waitFor(url(u"/one"_s, u"localhost"_s));
    QCOMPARE(zoom(), 75);
    m_scene->server.page("/three",
                         "<script>location.href = '" + url(u"/two"_s).toUtf8() + "'</script>");
    browser().navigate(url(u"/three"_s, u"localhost"_s));
    m_scene->waitFor(url(u"/two"_s));
    QCOMPARE(zoom(), 150);
}

void tst_PageZoom::keptInTheFile()
{
    browser().setZoom(150);
    QTRY_COMPARE(SiteZoom::percent(u"127.0.0.1"_s), 150);
    browser().setZoom(100);
    QTRY_COMPARE(SiteZoom::percent(u"127.0.0.1"_s), 100);
    browser().setZoom(125);
    // Whatever comes next, as the end of the program.
    m_scene->browser->dropPage();
    m_scene.reset();
    QCOMPARE(SiteZoom::percent(u"127.0.0.1"_s), 125);
    init();
    QCOMPARE(zoom(), 100);
    QVERIFY(SiteZoom::keep(u"127.0.0.1"_s, 90));
    QVERIFY(SiteZoom::keep(u"localhost"_s, 80));
    m_scene->open(url(u"/one"_s, u"localhost"_s));
    QCOMPARE(zoom(), 80);
}

void tst_PageZoom::windowsOfASiteFollow()
{
    QtWebBrowser same(&m_scene->window);
    QtWebBrowser other(&m_scene->window);
    RecordedEvents events;
    same.setEvents(&events);
    other.setEvents(&events);
    same.navigate(url(u"/two"_s));
    other.navigate(url(u"/two"_s, u"localhost"_s));
    QTRY_VERIFY(same.hasDocument() && other.hasDocument());
    browser().setZoom(200);
    QCOMPARE(zoomOf(same), 200);
    QCOMPARE(zoomOf(other), 100);
    same.zoomBy(-1);
    QCOMPARE(zoom(), 175);
    QCOMPARE(zoomOf(other), 100);
}

void tst_PageZoom::givenUpPagesFollow()
{
    browser().setZoom(200);
    browser().fallAsleep();
    QVERIFY(browser().isWaiting());
    QCOMPARE(browser().pageState(StateDepth::View).zoom, 2.0);
    QtWebBrowser same(&m_scene->window);
    RecordedEvents events;
    same.setEvents(&events);
    same.navigate(url(u"/two"_s));
    QTRY_VERIFY(same.hasDocument());
    QCOMPARE(zoomOf(same), 200);
    same.setZoom(100);
    QCOMPARE(browser().pageState(StateDepth::View).zoom, 1.0);
    same.setZoom(50);
    QCOMPARE(browser().pageState(StateDepth::View).zoom, 0.5);
    browser().navigateNow();
    m_scene->waitFor(url(u"/one"_s));
    QCOMPARE(zoom(), 50);
}

void tst_PageZoom::pagesWithoutASiteAreAsUsual()
{
    browser().setZoom(200);
    m_scene->open(u"about:blank"_s);
    QCOMPARE(zoom(), 100);
    browser().setZoom(150);
    QCOMPARE(zoom(), 150);
    ZoomKeeper::instance().flush();
    QCOMPARE(m_folder->read(u"AppData/Zoom.ini"_s), QByteArray("[Sites]\r\n127.0.0.1=200\r\n"));
}

void tst_PageZoom::turnWheel(int clicks, Qt::KeyboardModifiers held) const
{
    QWidget *engine = m_scene->window.findChild<WebView *>()->focusProxy();
    const QPoint at(50, 50);
    QWheelEvent event(at, engine->mapToGlobal(at), {}, QPoint(0, 120 * clicks), Qt::NoButton, held,
                      Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(engine, &event);
}

void tst_PageZoom::wheelGoesByTheScale()
{
    QTRY_VERIFY(m_scene->script(u"performance.getEntriesByType('paint').length"_s).toInt() > 0);
    for (const int percent : {110, 125, 150, 175}) {
        turnWheel(1, Qt::ControlModifier);
        QTRY_COMPARE(zoom(), percent);
    }
    for (const int percent : {150, 125}) {
        turnWheel(-1, Qt::ControlModifier);
        QTRY_COMPARE(zoom(), percent);
    }
    QTRY_COMPARE(SiteZoom::percent(u"127.0.0.1"_s), 125);
}

void tst_PageZoom::pageMayHaveTheWheel()
{
    m_scene->server.page("/map",
                         "<title>map</title><body style='height:9000px'>words<script>let n = 0;"
                         "addEventListener('wheel', e => { e.preventDefault(); document.title = "
                         "'turned ' + ++n }, {passive: false})</script>");
    m_scene->open(url(u"/map"_s));
    QTRY_VERIFY(m_scene->script(u"performance.getEntriesByType('paint').length"_s).toInt() > 0);
    QTRY_VERIFY([&] {
        turnWheel(1, Qt::ControlModifier);
        return m_scene->events.titles.last().startsWith("turned"_L1);
    }());
    browser().setZoom(100);
    const QString before = m_scene->events.titles.last();
    turnWheel(1, Qt::ControlModifier);
    QTRY_VERIFY(m_scene->events.titles.last() != before);
    QCOMPARE(zoom(), 100);
}

void tst_PageZoom::fullDiskForgetsNothingMeanwhile()
{
    const SmallDisk disk;
    if (!disk.isMounted())
        QSKIP("Only the superuser can have a small disk.");
    AppFolder::setPath(disk.path());
    QVERIFY(disk.makeReadOnly());
    const Unlogged quiet;
    browser().setZoom(150);
    ZoomKeeper::instance().flush();
    m_scene->open(url(u"/one"_s, u"localhost"_s));
    QCOMPARE(zoom(), 100);
    m_scene->open(url(u"/two"_s));
    QCOMPARE(zoom(), 150);
    AppFolder::setPath(m_folder->path());
    browser().setZoom(100);
    ZoomKeeper::instance().flush();
}

ORVANE_ENGINE_TEST_MAIN(tst_PageZoom)
#include "tst_pagezoom.moc"
