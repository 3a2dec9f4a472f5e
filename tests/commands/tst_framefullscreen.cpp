#include "AddressBox.h"
#include "BrowserWindow.h"
#include "CoolBar.h"
#include "DeskTaker.h"
#include "FrameBody.h"
#include "MdiArea.h"
#include "ProgramWithoutEngine.h"

#include <QCursor>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QtTest>

using namespace Qt::StringLiterals;

/// The frame over the whole screen: the windows have all of it, the bars come when they are called
/// for, and everything is as before when it ends.
class tst_FrameFullScreen : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_program.reset(); }

    void windowsHaveTheScreen();
    void barsComeAtTheEdge();
    void barsComeWithTheKeyboard();
    void barsComeWithAMenu();
    void hiddenToolBarsStayHidden();
    void everythingIsAsBefore_data();
    void everythingIsAsBefore();
    void desktopMayEndIt();
    void deskHasTheNormalPlace();
    void maximizedWindowsKeepTheMenuBar();

private:
    MainWindow &frame() const { return *m_program->frame; }
    QMenuBar &menu() const { return *frame().menuBar(); }
    CoolBar &bars() const { return *frame().findChild<CoolBar *>(); }
    MdiArea &area() const { return *frame().findChild<MdiArea *>(); }
    static QRect placeOf(const QWidget &widget)
    {
        return QRect(widget.mapTo(widget.window(), QPoint()), widget.size());
    }
    void fill() const
    {
        m_program->choose("mnuViewFullScreen");
        QTRY_VERIFY(frame().isFullScreen());
        QTRY_COMPARE(frame().size(), frame().screen()->size());
        QCursor::setPos(frame().mapToGlobal(frame().rect().center()));
        QTRY_VERIFY(areBarsOut());
    }
    bool areBarsOut() const { return placeOf(menu()).bottom() < 0 && placeOf(bars()).bottom() < 0; }
    bool areBarsIn() const
    {
        return placeOf(menu()).top() == 0
            && placeOf(bars()).top()
            == (bars().isHidden() ? placeOf(bars()).top() : placeOf(menu()).bottom() + 1);
    }
    void goAway() const
    {
        QCursor::setPos(frame().mapToGlobal(frame().rect().center()));
        activeBrowser(frame())->focusContents();
        QTRY_VERIFY(areBarsOut());
    }

    std::unique_ptr<ProgramWithoutEngine> m_program;
};

void tst_FrameFullScreen::init()
{
    m_program = std::make_unique<ProgramWithoutEngine>();
    QVERIFY(m_program->folder.isValid());
    m_program->start();
    frame().activateWindow();
    QTRY_VERIFY(frame().isActiveWindow());
    QVERIFY(activeBrowser(frame()));
}

void tst_FrameFullScreen::windowsHaveTheScreen()
{
    fill();
    QVERIFY(m_program->isChecked("mnuViewFullScreen"));
    QTRY_COMPARE(placeOf(area()), frame().rect());
}

void tst_FrameFullScreen::barsComeAtTheEdge()
{
    fill();
    const QRect windows = placeOf(area());
    QCursor::setPos(frame().mapToGlobal(QPoint(frame().width() / 2, 0)));
    QTRY_VERIFY(areBarsIn());
    QVERIFY(menu().isVisible() && bars().isVisible());
    // Over the windows, whose pages are not laid out anew.
    QCOMPARE(placeOf(area()), windows);
    // What is behind them does not show through.
    QVERIFY(menu().autoFillBackground() && bars().autoFillBackground());
    QCOMPARE(frame().childAt(frame().width() / 2, placeOf(bars()).center().y())->window(),
             &frame());
    goAway();
    QCOMPARE(placeOf(area()), windows);
}

void tst_FrameFullScreen::barsComeWithTheKeyboard()
{
    fill();
    const QRect windows = placeOf(area());
    frame().run(u"cmdAddress"_s);
    QTRY_VERIFY(areBarsIn());
    QVERIFY(
        frame().findChild<AddressBox *>(u"brwURL1"_s)->isAncestorOf(QApplication::focusWidget()));
    QCOMPARE(placeOf(area()), windows);
    goAway();
    // By F6, too.
    QTest::keyClick(&frame(), Qt::Key_F6);
    QTRY_VERIFY(areBarsIn());
    goAway();
}

void tst_FrameFullScreen::barsComeWithAMenu()
{
    fill();
    QTest::simulateEvent(frame().windowHandle(), true, Qt::Key_F, Qt::AltModifier, u"f"_s, false);
    QTest::simulateEvent(frame().windowHandle(), false, Qt::Key_F, Qt::AltModifier, u"f"_s, false);
    auto *file = frame().findChild<QMenu *>(u"mnuFile"_s);
    QTRY_VERIFY(file->isVisible());
    QVERIFY(areBarsIn());
    QCOMPARE(file->pos().y(), frame().mapToGlobal(placeOf(menu()).bottomLeft()).y() + 1);
    file->close();
    goAway();
}

void tst_FrameFullScreen::hiddenToolBarsStayHidden()
{
    m_program->choose("mnuViewToolBarVisible");
    QVERIFY(bars().isHidden());
    m_program->choose("mnuViewFullScreen");
    QTRY_COMPARE(frame().size(), frame().screen()->size());
    QCursor::setPos(frame().mapToGlobal(frame().rect().center()));
    QTRY_VERIFY(placeOf(menu()).bottom() < 0);
    QCursor::setPos(frame().mapToGlobal(QPoint(frame().width() / 2, 0)));
    QTRY_COMPARE(placeOf(menu()).top(), 0);
    QVERIFY(bars().isHidden());
    m_program->choose("mnuViewToolBarVisible");
    QTRY_COMPARE(placeOf(bars()).top(), placeOf(menu()).bottom() + 1);
}

void tst_FrameFullScreen::everythingIsAsBefore_data()
{
    QTest::addColumn<bool>("maximized");
    QTest::addColumn<bool>("bottom");
    QTest::newRow("normal") << false << false;
    QTest::newRow("bars below") << false << true;
    QTest::newRow("maximized") << true << false;
}

void tst_FrameFullScreen::everythingIsAsBefore()
{
    QFETCH(bool, maximized);
    QFETCH(bool, bottom);
    if (bottom)
        m_program->choose("mnuViewToolBarBottom");
    if (maximized)
        frame().showMaximized();
    QTRY_COMPARE(frame().isMaximized(), maximized);
    QTRY_VERIFY(!maximized || frame().width() == frame().screen()->availableSize().width());
    const QSize size = frame().size();
    QTRY_COMPARE(placeOf(bars()).bottom(),
                 bottom ? frame().height() - 1 : placeOf(area()).top() - 1);
    const QRect windows = placeOf(area());
    const QRect strip = placeOf(bars());
    fill();
    m_program->choose("mnuViewFullScreen");
    QTRY_VERIFY(!frame().isFullScreen());
    QTRY_COMPARE(frame().isMaximized(), maximized);
    QVERIFY(!m_program->isChecked("mnuViewFullScreen"));
    QTRY_COMPARE(frame().size(), size);
    QTRY_COMPARE(placeOf(area()), windows);
    QCOMPARE(placeOf(bars()), strip);
    QCOMPARE(placeOf(menu()).top(), 0);
}

void tst_FrameFullScreen::desktopMayEndIt()
{
    const QSize size = frame().size();
    fill();
    frame().showNormal();
    QTRY_COMPARE(frame().size(), size);
    QVERIFY(!m_program->isChecked("mnuViewFullScreen"));
    QTRY_COMPARE(placeOf(menu()).top(), 0);
    QTRY_COMPARE(placeOf(bars()).top(), placeOf(menu()).bottom() + 1);
}

void tst_FrameFullScreen::deskHasTheNormalPlace()
{
    const Desk before = takeDesk(frame(), browserForms());
    fill();
    const Desk full = takeDesk(frame(), browserForms());
    QCOMPARE(full.frame.size(), before.frame.size());
    QVERIFY(!full.isFrameMaximized);
}

/// Their buttons are in it.
void tst_FrameFullScreen::maximizedWindowsKeepTheMenuBar()
{
    const QMenuBar *before = &menu();
    activeBrowser(frame())->showMaximized();
    fill();
    frame().openBrowserWindow(u"http://one/"_s, WindowState::AsOthers);
    QVERIFY(activeBrowser(frame())->isMaximized());
    QCOMPARE(&menu(), before);
    QTRY_COMPARE(placeOf(area()), frame().rect());
    QTRY_VERIFY(areBarsOut());
}

QTEST_MAIN(tst_FrameFullScreen)
#include "tst_framefullscreen.moc"
