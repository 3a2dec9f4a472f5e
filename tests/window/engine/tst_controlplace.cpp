// Scripts that move and resize the engine control inside its window, and the maximize catcher.
#include "EngineTest.h"
#include "PopupScene.h"
#include "StatusStrip.h"

#include <QResizeEvent>
#include <QSignalSpy>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {
/// The sizes that a widget had, in order.
class Sizes : public QObject {
public:
    explicit Sizes(QWidget *widget)
        : QObject(widget)
    {
        widget->installEventFilter(this);
    }
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Resize)
            seen.append(static_cast<QResizeEvent *>(event)->size());
        return false;
    }

    QList<QSize> seen;
};
}

class tst_controlplace : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_scene.reset(); }
    void scriptPlacesTheControl_data();
    void scriptPlacesTheControl();
    void moveKeepsTheSizeOfNow();
    void openerPlacesItsPopup();
    void pageWrittenAnewIsStillHeard();
    void frameOfThePageIsHeardThroughIt();
    void ordinaryWindowIsNotMoved();
    void windowWithoutOpenerIsNotMoved();
    void pageMayReplaceTheFunctions();
    void laterNavigationDoesNotFitTheWindow();
    void withTheCatcherOffItStaysShrunk();
    void catcherPutsItBack();
    void catcherComesOnceOnly();
    void minimizedWindowIsLeftAlone();

private:
    void openPopup(const QString &path = u"/p"_s,
                   const QString &features = u"width=400,height=300"_s);
    QRect place() const { return PopupScene::control(m_popup)->widget()->geometry(); }
    QRect full() const;
    void script(const QString &code) const { PopupScene::script(m_popup, code + u"; 1"_s); }
    QTimer *timer() const { return m_popup->findChild<QTimer *>(u"tmrMaxCatch"_s); }
    void catching(bool on) const { m_scene->check(u"mnuToolsMaximizeCatcher"_s, on); }

    std::unique_ptr<PopupScene> m_scene;
    BrowserWindow *m_opener = nullptr;
    BrowserWindow *m_popup = nullptr;
};

void tst_controlplace::init()
{
    m_scene = std::make_unique<PopupScene>();
    QVERIFY(m_scene->isReady());
    m_scene->server.page("/p", "<title>popup</title>popup");
    m_scene->server.page("/q", "<title>second</title>second");
    m_opener = m_scene->openPage({});
}

void tst_controlplace::openPopup(const QString &path, const QString &features)
{
    PopupScene::script(m_opener,
                       u"window.w = window.open('%1', 'n', '%2'); 1"_s.arg(path, features));
    m_popup = PopupScene::waitForPopup();
    QVERIFY(m_popup);
    if (!path.isEmpty())
        PopupScene::waitUntilLoaded(m_popup);
}

/// The place that the window gives the control.
QRect tst_controlplace::full() const
{
    const QRect client = m_popup->widget()->rect();
    return client.adjusted(0, 0, 0, -m_popup->statusBar()->stripHeight());
}

void tst_controlplace::scriptPlacesTheControl_data()
{
    QTest::addColumn<QString>("code");
    QTest::addColumn<QRect>("by");
    QTest::newRow("moveTo") << u"moveTo(30, 40)"_s << QRect(30, 40, 0, 0);
    QTest::newRow("moveTo the corner") << u"moveBy(7, 8), moveTo(0, 0)"_s << QRect(0, 0, 0, 0);
    QTest::newRow("moveBy") << u"moveBy(10, 20), moveBy(5, -30)"_s << QRect(15, -10, 0, 0);
    QTest::newRow("resizeBy") << u"resizeBy(-50, -30)"_s << QRect(0, 0, -50, -30);
    QTest::newRow("resizeBy twice")
        << u"resizeBy(-50, -30), resizeBy(10, 50)"_s << QRect(0, 0, -40, 20);
    QTest::newRow("fractions") << u"resizeBy(-50.9, '10')"_s << QRect(0, 0, -50, 10);
    QTest::newRow("zoomed page") << u"document.body.style.zoom = 2, resizeBy(-50, -30)"_s
                                 << QRect(0, 0, -50, -30);
}

void tst_controlplace::scriptPlacesTheControl()
{
    QFETCH(const QString, code);
    QFETCH(const QRect, by);
    openPopup();
    QCOMPARE(place(), full());
    const QRect window = m_popup->geometry();
    script(code);
    QTRY_COMPARE(place(), QRect(by.topLeft(), full().size() + by.size()));
    script(u"resizeTo(222, 111)"_s);
    QTRY_COMPARE(place(), QRect(by.topLeft(), QSize(222, 111)));
    QCOMPARE(m_popup->geometry(), window);
}

void tst_controlplace::moveKeepsTheSizeOfNow()
{
    openPopup();
    script(u"resizeTo(222, 111)"_s);
    QTRY_COMPARE(place().size(), QSize(222, 111));
    m_popup->layOut();
    QCOMPARE(place(), full());
    script(u"moveTo(12, 34)"_s);
    QTRY_COMPARE(place(), full().translated(12, 34));
}

void tst_controlplace::openerPlacesItsPopup()
{
    openPopup();
    PopupScene::script(m_opener, u"w.resizeTo(200, 150); w.moveTo(5, 6); 1"_s);
    QTRY_COMPARE(place(), QRect(5, 6, 200, 150));
}

void tst_controlplace::pageWrittenAnewIsStillHeard()
{
    openPopup({});
    PopupScene::script(m_opener,
                       u"w.document.open(); w.document.write('<title>written</title>text');"
                       "w.document.close(); w.resizeTo(200, 150); 1"_s);
    QTRY_COMPARE(place().size(), QSize(200, 150));
}

void tst_controlplace::frameOfThePageIsHeardThroughIt()
{
    m_scene->server.page("/f", "<iframe src=/g></iframe>");
    m_scene->server.page("/g", "<script>resizeTo(300,300);parent.resizeTo(200,150)</script>");
    openPopup(u"/f"_s);
    QTRY_COMPARE(place().size(), QSize(200, 150));
}

void tst_controlplace::ordinaryWindowIsNotMoved()
{
    m_popup = m_opener;
    const QRect before = place();
    script(u"resizeTo(200, 150), moveTo(5, 6), resizeBy(-9, -9), moveBy(7, 7)"_s);
    script(u"document.title = 'done'"_s);
    QTRY_COMPARE(m_popup->windowTitle(), u"done"_s);
    QCOMPARE(place(), before);
}

void tst_controlplace::windowWithoutOpenerIsNotMoved()
{
    openPopup(u"/p"_s, u"noopener"_s);
    script(u"resizeTo(200, 150), moveTo(5, 6)"_s);
    script(u"document.title = 'done'"_s);
    QTRY_COMPARE(m_popup->windowTitle(), u"done"_s);
    QCOMPARE(place(), full());
}

void tst_controlplace::pageMayReplaceTheFunctions()
{
    openPopup();
    script(u"resizeTo = (x, y) => { document.title = x + '+' + y }; resizeTo(1, 2)"_s);
    QTRY_COMPARE(m_popup->windowTitle(), u"1+2"_s);
    QCOMPARE(place(), full());
    QCOMPARE(PopupScene::script(m_popup, u"try { moveTo(1) } catch (e) { e.name }"_s).toString(),
             u"TypeError"_s);
}

void tst_controlplace::laterNavigationDoesNotFitTheWindow()
{
    openPopup();
    const QRect window = m_popup->geometry();
    script(u"resizeTo(200, 150)"_s);
    QTRY_COMPARE(place().size(), QSize(200, 150));
    script(u"location = '/q'"_s);
    QTRY_COMPARE(m_popup->windowTitle(), u"second"_s);
    QCOMPARE(m_popup->geometry(), window);
    QCOMPARE(place().size(), QSize(200, 150));
}

void tst_controlplace::withTheCatcherOffItStaysShrunk()
{
    m_scene->server.page("/p", "<script>onload=()=>resizeTo(200,150)</script>");
    catching(false);
    openPopup();
    QTRY_COMPARE(place().size(), QSize(200, 150));
    QVERIFY(!timer()->isActive());
    m_popup->resize(m_popup->size() + QSize(40, 30));
    QTRY_COMPARE(place(), full());
}

void tst_controlplace::catcherPutsItBack()
{
    m_scene->server.page("/p", "<script>onload=()=>{moveTo(9,9);resizeTo(200,150)}</script>");
    m_scene->server.hold("/p");
    catching(true);
    PopupScene::script(m_opener, u"window.w = window.open('/p', 'n'); 1"_s);
    m_popup = PopupScene::waitForPopup();
    QVERIFY(m_popup);
    const auto *sizes = new Sizes(PopupScene::control(m_popup)->widget());
    m_scene->server.release();
    QTRY_VERIFY(sizes->seen.contains(QSize(200, 150)));
    QTRY_COMPARE(place(), full());
    QVERIFY(!timer()->isActive());
}

void tst_controlplace::catcherComesOnceOnly()
{
    catching(true);
    openPopup();
    const QSignalSpy caught(timer(), &QTimer::timeout);
    QTRY_VERIFY(caught.size() == 1 || !timer()->isActive());
    script(u"resizeTo(200, 150)"_s);
    QTRY_COMPARE(place().size(), QSize(200, 150));
    QVERIFY2(!timer()->isActive(), "nothing is on its way that would put it back");
    script(u"history.pushState(0, '', '#x')"_s);
    QVERIFY(!timer()->isActive());
    QCOMPARE(place().size(), QSize(200, 150));
}

void tst_controlplace::minimizedWindowIsLeftAlone()
{
    catching(true);
    openPopup();
    m_popup->showMinimized();
    script(u"resizeTo(200, 150)"_s);
    QTRY_COMPARE(place().size(), QSize(200, 150));
    timer()->start();
    QTRY_VERIFY(!timer()->isActive());
    QCOMPARE(place().size(), QSize(200, 150));
    QVERIFY(m_popup->isMinimized());
    m_popup->showNormal();
    QTRY_COMPARE(place(), full());
}

ORVANE_ENGINE_TEST_MAIN(tst_controlplace)
#include "tst_controlplace.moc"
