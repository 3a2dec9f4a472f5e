// On a machine without a graphics device pages are drawn by the software backend, and OpenGL, which
// that backend never asks, is not loaded.
#include "EngineProfile.h"
#include "EngineTest.h"
#include "SparePage.h"
#include "WebPage.h"
#include "WebView.h"

#include <QFile>
#include <memory>

using namespace Qt::StringLiterals;

class tst_softwarebackend : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void pageIsPaintedWithoutOpenGl();
    void programsStartedFromHereMayUseOpenGl();
};

void tst_softwarebackend::initTestCase()
{
    if (qgetenv("QT_QUICK_BACKEND") != "software" || QGuiApplication::platformName() != "xcb"_L1)
        QSKIP("this machine draws with its graphics device");
}

void tst_softwarebackend::pageIsPaintedWithoutOpenGl()
{
    const std::unique_ptr<WebPage> page(SparePage::take(engineProfile()));
    QWidget window;
    window.resize(200, 100);
    WebView view(page.get(), &window);
    view.resize(window.size());
    window.show();
    page->setVisible(true); // what shows a page is its control's, and here is none
    page->setHtml(u"<body style='background:#123456'>"_s);
    QTRY_COMPARE_WITH_TIMEOUT(window.grab().toImage().pixelColor(100, 50), QColor(0x12, 0x34, 0x56),
                              30000);
#ifdef Q_OS_LINUX
    QFile maps(u"/proc/self/maps"_s);
    QVERIFY(maps.open(QIODevice::ReadOnly));
    const QByteArray loaded = maps.readAll();
    QVERIFY(loaded.contains("libQt6WebEngineCore"));
    QVERIFY(!loaded.contains("libGLX_mesa"));
    QVERIFY(!loaded.contains("_dri.so"));
#endif
}

void tst_softwarebackend::programsStartedFromHereMayUseOpenGl()
{
    QVERIFY(!qEnvironmentVariableIsSet("QT_XCB_GL_INTEGRATION"));
}

ORVANE_ENGINE_TEST_MAIN(tst_softwarebackend)
#include "tst_softwarebackend.moc"
