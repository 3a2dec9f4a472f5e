#include "CoolBand.h"
#include "CoolBar.h"
#include "FakeWebBrowser.h"
#include "FavoritesHome.h"
#include "MainWindow.h"
#include "MdiArea.h"
#include "TempAppFolder.h"

#include <QAction>
#include <QtTest>

/// What the strip keeps from one run of the program to the next, and what it makes of bad files.
class tst_BandRestart : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void bottomStaysBelowThePages();
    void draggedRowsComeBackByPosition();
    void badWidths_data();
    void badWidths();
    void sixRowsInASmallFrame();

private:
    void start();
    CoolBar &bar() const { return *m_frame->findChild<CoolBar *>(); }
    bool isBelowThePages() const
    {
        const auto *pages = m_frame->findChild<MdiArea *>();
        return bar().mapToGlobal(QPoint(0, 0)).y()
            >= pages->mapToGlobal(QPoint(0, pages->height())).y();
    }

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<FavoritesHome> m_home;
    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<MainWindow> m_frame;
};

void tst_BandRestart::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    QVERIFY(m_folder->writeSettings("[Options]\r\nShow-Splash=0\r\n[Settings]\r\nAskOnExit=0\r\n"));
    m_home = std::make_unique<FavoritesHome>();
    m_engine = std::make_unique<FakeEngine>();
}

void tst_BandRestart::cleanup()
{
    m_frame.reset();
    m_engine.reset();
    m_home.reset();
    m_folder.reset();
}

void tst_BandRestart::start()
{
    if (m_frame)
        QVERIFY(m_frame->close());
    m_frame.reset();
    m_frame = std::make_unique<MainWindow>();
    m_frame->setCommandLine(u"http://one.example/"_s);
    m_frame->load();
    QVERIFY(QTest::qWaitForWindowExposed(m_frame.get()));
}

void tst_BandRestart::bottomStaysBelowThePages()
{
    start();
    QVERIFY(!isBelowThePages());
    m_frame->menuItem(u"mnuViewToolBarBottom"_s)->trigger();
    QTRY_VERIFY(isBelowThePages());
    QCOMPARE(m_folder->setting(u"ToolBar"_s, u"Align"_s), u"2"_s);
    start();
    QTRY_VERIFY(isBelowThePages());
    QVERIFY(m_frame->menuItem(u"mnuViewToolBarBottom"_s)->isChecked());
    m_frame->menuItem(u"mnuViewToolBarTop"_s)->trigger();
    start();
    QTRY_VERIFY(!isBelowThePages());
}

// The order is not kept: what was dragged behind the other takes its place again.
void tst_BandRestart::draggedRowsComeBackByPosition()
{
    start();
    QTRY_COMPARE(bar().height(), bar().sizeHint().height());
    const QPoint from = bar().band(u"Functions"_s)->handle().center();
    const QPoint to = bar().band(u"Browser"_s)->handle().center() + QPoint(60, 0);
    QTest::mousePress(&bar(), Qt::LeftButton, {}, from);
    QTest::mouseMove(&bar(), (from + to) / 2);
    QTest::mouseMove(&bar(), to);
    QTest::mouseRelease(&bar(), Qt::LeftButton, {}, to);
    QCOMPARE(bar().band(1)->key(), u"Browser"_s);
    const double first = bar().band(1)->width();
    start();
    QCOMPARE(bar().band(1)->key(), u"Functions"_s);
    QCOMPARE(bar().band(1)->width(), first);
}

void tst_BandRestart::badWidths_data()
{
    QTest::addColumn<QByteArray>("width");
    QTest::addColumn<QString>("written");
    QTest::newRow("zero") << "0"_ba << u"0"_s;
    QTest::newRow("negative") << "-500"_ba << u"-500"_s;
    QTest::newRow("ten million") << "10000000"_ba << u"10000000"_s;
    QTest::newRow("text") << "wide"_ba << u"3600"_s;
    QTest::newRow("nothing") << ""_ba << u"3600"_s;
}

void tst_BandRestart::badWidths()
{
    QFETCH(QByteArray, width);
    QFETCH(QString, written);
    QByteArray settings =
        "[Options]\r\nShow-Splash=0\r\n[Settings]\r\nAskOnExit=0\r\n[ToolBar]\r\n";
    for (int position = 1; position <= 6; ++position)
        settings += "Width" + QByteArray::number(position) + '=' + width + "\r\n";
    QVERIFY(m_folder->writeSettings(settings));
    start();
    QTRY_COMPARE(bar().height(), bar().sizeHint().height());
    for (int position = 1; position <= 6; ++position) {
        const QRect place = bar().band(position)->geometry();
        QVERIFY(place.width() > 20);
        QVERIFY(bar().rect().contains(place));
    }
    QVERIFY(m_frame->close());
    QCOMPARE(m_folder->setting(u"ToolBar"_s, u"Width1"_s), written);
}

void tst_BandRestart::sixRowsInASmallFrame()
{
    QByteArray settings =
        "[Options]\r\nShow-Splash=0\r\n[Settings]\r\nAskOnExit=0\r\n[ToolBar]\r\n";
    for (int position = 1; position <= 6; ++position)
        settings += "NewRow" + QByteArray::number(position) + "=True\r\n";
    QVERIFY(m_folder->writeSettings(settings));
    start();
    m_frame->showNormal();
    m_frame->resize(300, 300);
    QTRY_COMPARE(bar().height(), bar().sizeHint().height());
    int bottom = -1;
    for (int position = 1; position <= 6; ++position) {
        const QRect place = bar().band(position)->geometry();
        QVERIFY(place.top() > bottom);
        QVERIFY(bar().rect().contains(place));
        bottom = place.bottom();
    }
    QVERIFY2(m_frame->findChild<MdiArea *>()->height() > 0, "the pages have room left");
}

QTEST_MAIN(tst_BandRestart)
#include "tst_bandrestart.moc"
