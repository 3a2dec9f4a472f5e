#include "TabStrip.h"

#include <QAccessible>
#include <QMainWindow>
#include <QSignalSpy>
#include <QTest>
#include <QToolBar>
#include <QToolButton>
#include <QToolTip>
#include <QWheelEvent>
#include <memory>

#include "ToolTipText.h"

using namespace Qt::StringLiterals;

namespace {

QIcon colourIcon(const QColor &colour)
{
    QPixmap picture(16, 16);
    picture.fill(colour);
    return picture;
}

QString keyOf(int number)
{
    return WindowTabs::key(number);
}

}

class tst_TabStrip : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_strip.reset(); }
    void orderIsOrderOfOpening();
    void unknownKeysDoNothing();
    void exactlyOneIsPressed();
    void clickPressesAndReports();
    void middleClickReports();
    void draggedTabTakesAnotherPlace();
    void escapePutsADraggedTabBack();
    void tabsOfDifferentWidthsDoNotGoToAndFro();
    void tabGoesWhileItIsDragged_data();
    void tabGoesWhileItIsDragged();
    void keysMoveATab();
    void useIsMarkedAndClicked();
    void soundIsMarkedAndClicked();
    void rightReleaseAnywhere();
    void noMenuOfTheSurroundings();
    void captionShowsAmpersand();
    void toolTipIsWholeAndPlain();
    void longToolTipIsWrapped();
    void image1UntilIconArrives();
    void twoHundredTabs();
    void pressedTabStaysInViewOnResize();
    void arrowsAndWheelScroll();
    void arrowsOnlyOnOverflow();
    void removedTabsCloseUp();
    void removalInsideClick();
    void keyboard();
    void accessible();
    void captionStormIsPlacedRarely();

private:
    void fill(int count);
    bool inView(int number) const;
    void rightClick(QWidget *widget, const QPoint &at);
    /// The pointer presses the tab in its middle and goes to the middle of another.
    void drag(int number, int to);
    QStringList order(const QList<int> &numbers) const
    {
        QStringList keys;
        for (int number : numbers)
            keys.append(keyOf(number));
        return keys;
    }

    std::unique_ptr<TabStrip> m_strip;
};

void tst_TabStrip::init()
{
    m_strip = std::make_unique<TabStrip>(colourIcon(Qt::red));
    m_strip->resize(700, m_strip->sizeHint().height());
    m_strip->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_strip.get()));
}

void tst_TabStrip::fill(int count)
{
    for (int i = 1; i <= count; ++i)
        m_strip->addTab(keyOf(i), u"Loading..."_s);
}

bool tst_TabStrip::inView(int number) const
{
    const QWidget *tab = m_strip->tab(keyOf(number));
    return tab->visibleRegion().boundingRect() == tab->rect();
}

void tst_TabStrip::rightClick(QWidget *widget, const QPoint &at)
{
    QTest::mouseClick(widget, Qt::RightButton, Qt::NoModifier, at);
}

void tst_TabStrip::orderIsOrderOfOpening()
{
    for (int number : {7, 3, 100, 20})
        m_strip->addTab(keyOf(number), u"Loading..."_s);
    QCOMPARE(m_strip->keys(), (QStringList{u"X7"_s, u"X3"_s, u"X100"_s, u"X20"_s}));
    int last = -1;
    for (const QString &key : m_strip->keys()) {
        QVERIFY(m_strip->tab(key)->x() > last);
        last = m_strip->tab(key)->geometry().right();
    }
    // A key that is there already gets no second tab.
    m_strip->addTab(u"X3"_s, u"Again"_s);
    QCOMPARE(m_strip->keys().size(), 4);
    QCOMPARE(m_strip->caption(u"X3"_s), u"Again"_s);
}

void tst_TabStrip::unknownKeysDoNothing()
{
    fill(2);
    m_strip->setPressed(u"X1"_s, true);
    m_strip->removeTab(u"X9"_s);
    m_strip->setCaption(u"X9"_s, u"a"_s);
    m_strip->setToolTip(u"X9"_s, u"a"_s);
    m_strip->setIcon(u""_s, QIcon());
    m_strip->setPressed(u"X9"_s, true);
    QVERIFY(!m_strip->isPressed(u"X9"_s));
    QVERIFY(m_strip->isPressed(u"X1"_s));
    QCOMPARE(m_strip->keys().size(), 2);
    QCOMPARE(m_strip->tab(u"X9"_s), nullptr);
}

void tst_TabStrip::exactlyOneIsPressed()
{
    fill(3);
    for (int i = 1; i <= 3; ++i)
        QVERIFY(!m_strip->isPressed(keyOf(i)));
    m_strip->setPressed(keyOf(1), true);
    m_strip->setPressed(keyOf(3), true);
    QVERIFY(!m_strip->isPressed(keyOf(1)));
    QVERIFY(m_strip->isPressed(keyOf(3)));
    m_strip->setPressed(keyOf(1), false);
    QVERIFY(m_strip->isPressed(keyOf(3)));
    m_strip->setPressed(keyOf(3), false);
    for (int i = 1; i <= 3; ++i)
        QVERIFY(!m_strip->isPressed(keyOf(i)));
    m_strip->setPressed(keyOf(2), true);
    m_strip->removeTab(keyOf(2));
    m_strip->setPressed(keyOf(1), true);
    QVERIFY(m_strip->isPressed(keyOf(1)));
}

void tst_TabStrip::clickPressesAndReports()
{
    fill(3);
    QSignalSpy clicks(m_strip.get(), &TabStrip::tabClicked);
    m_strip->setPressed(keyOf(2), true);
    QCOMPARE(clicks.size(), 0);
    QTest::mouseClick(m_strip->tab(keyOf(3)), Qt::LeftButton);
    QCOMPARE(clicks.size(), 1);
    QCOMPARE(clicks.last().first().toString(), keyOf(3));
    QVERIFY(m_strip->isPressed(keyOf(3)));
    QVERIFY(!m_strip->isPressed(keyOf(2)));
    // A click on the pressed tab is a click too, and leaves it pressed.
    QTest::mouseClick(m_strip->tab(keyOf(3)), Qt::LeftButton);
    QCOMPARE(clicks.size(), 2);
    QVERIFY(m_strip->isPressed(keyOf(3)));
}

/// The mark is a place of its own on the tab.
void tst_TabStrip::soundIsMarkedAndClicked()
{
    m_strip->addTab(keyOf(1), u"One"_s);
    QWidget *tab = m_strip->tab(keyOf(1));
    const QSignalSpy turned(m_strip.get(), &TabStrip::soundClicked);
    const QSignalSpy used(m_strip.get(), &TabStrip::useClicked);
    const QSignalSpy clicked(m_strip.get(), &TabStrip::tabClicked);
    const QPoint end(tab->width() - 10, tab->height() / 2);
    const QImage plain = tab->grab().toImage();
    m_strip->setSound(keyOf(1), PageSound::Playing);
    const QImage playing = tab->grab().toImage();
    QVERIFY(playing != plain);
    QCOMPARE(tab->accessibleName(), u"One, playing sound"_s);
    QTest::mouseClick(tab, Qt::LeftButton, {}, end);
    QCOMPARE(turned.size(), 1);
    QCOMPARE(turned.first().first().toString(), keyOf(1));
    m_strip->setSound(keyOf(1), PageSound::Muted);
    QVERIFY(tab->grab().toImage() != playing);
    QCOMPARE(tab->accessibleName(), u"One, muted"_s);
    QAccessibleInterface *seen = QAccessible::queryAccessibleInterface(tab);
    const QString turn = QAccessibleActionInterface::toggleAction();
    QVERIFY(seen->actionInterface()->actionNames().contains(turn));
    seen->actionInterface()->doAction(turn);
    QCOMPARE(turned.size(), 2);
    // Beside the mark of what is in use.
    m_strip->setUse(keyOf(1), u"Camera in use"_s);
    QTest::mouseClick(tab, Qt::LeftButton, {}, end);
    QCOMPARE(used.size(), 1);
    QTest::mouseClick(tab, Qt::LeftButton, {}, end - QPoint(20, 0));
    QCOMPARE(turned.size(), 3);
    m_strip->setUse(keyOf(1), {});
    m_strip->setSound(keyOf(1), PageSound::None);
    QVERIFY(!seen->actionInterface()->actionNames().contains(turn));
    QCOMPARE(clicked.size(), 0);
    QTest::mouseClick(tab, Qt::LeftButton, {}, end);
    QCOMPARE(turned.size(), 3);
    QCOMPARE(clicked.size(), 1);
}

void tst_TabStrip::useIsMarkedAndClicked()
{
    m_strip->addTab(keyOf(1), u"One"_s);
    m_strip->addTab(keyOf(2), u"Two"_s);
    QWidget *tab = m_strip->tab(keyOf(1));
    const QSignalSpy used(m_strip.get(), &TabStrip::useClicked);
    const QSignalSpy clicked(m_strip.get(), &TabStrip::tabClicked);
    const QPoint mark(tab->width() - 10, tab->height() / 2);
    const QImage before = tab->grab().toImage();
    m_strip->setUse(keyOf(1), u"Camera in use"_s);
    m_strip->setUse(u"X99"_s, u"Camera in use"_s);
    QVERIFY(tab->grab().toImage() != before);
    QCOMPARE(tab->accessibleName(), u"One, Camera in use"_s);
    m_strip->setCaption(keyOf(1), u"Other"_s);
    QCOMPARE(tab->accessibleName(), u"Other, Camera in use"_s);
    QTest::mouseClick(tab, Qt::LeftButton, {}, mark);
    QCOMPARE(used.size(), 1);
    QCOMPARE(used.first().first().toString(), keyOf(1));
    QCOMPARE(clicked.size(), 0);
    QVERIFY(!m_strip->isPressed(keyOf(1)));
    // Let go elsewhere, it is none.
    QTest::mousePress(tab, Qt::LeftButton, {}, mark);
    QTest::mouseRelease(tab, Qt::LeftButton, {}, QPoint(10, 10));
    QCOMPARE(used.size(), 1);
    QTest::mouseClick(tab, Qt::LeftButton, {}, QPoint(20, tab->height() / 2));
    QCOMPARE(clicked.size(), 1);
    m_strip->setUse(keyOf(1), {});
    QCOMPARE(tab->accessibleName(), u"Other"_s);
    QTest::mouseClick(tab, Qt::LeftButton, {}, mark);
    QCOMPARE(used.size(), 1);
    QCOMPARE(clicked.size(), 2);
}

void tst_TabStrip::drag(int number, int to)
{
    QWidget *tab = m_strip->tab(keyOf(number));
    QTest::mousePress(tab, Qt::LeftButton, {}, tab->rect().center());
    const QWidget *other = m_strip->tab(keyOf(to));
    const int end = other->x() + other->width() / 2 + (other->x() > tab->x() ? 2 : -2);
    const int step = end > tab->x() ? 4 : -4;
    for (int x = tab->x() + tab->width() / 2; (end - x) * step >= 0; x += step) {
        const QPoint at(x - tab->x(), 5);
        QMouseEvent event(QEvent::MouseMove, at, tab->mapToGlobal(at), Qt::NoButton, Qt::LeftButton,
                          {});
        QApplication::sendEvent(tab, &event);
    }
}

void tst_TabStrip::draggedTabTakesAnotherPlace()
{
    fill(4);
    const QSignalSpy clicks(m_strip.get(), &TabStrip::tabClicked);
    const QSignalSpy moves(m_strip.get(), &TabStrip::tabMoved);
    drag(1, 3);
    QCOMPARE(m_strip->keys(), order({2, 3, 1, 4}));
    QCOMPARE(moves.size(), 0);
    QWidget *tab = m_strip->tab(keyOf(1));
    QTest::mouseRelease(tab, Qt::LeftButton);
    QCOMPARE(moves.size(), 1);
    QCOMPARE(clicks.size(), 0);
    QVERIFY(!QWidget::keyboardGrabber());
    QVERIFY(tab->x() > m_strip->tab(keyOf(3))->x() && tab->x() < m_strip->tab(keyOf(4))->x());
    drag(4, 2);
    QTest::mouseRelease(m_strip->tab(keyOf(4)), Qt::LeftButton);
    QCOMPARE(m_strip->keys(), order({4, 2, 3, 1}));
    // What hardly moves is a click.
    QTest::mousePress(tab, Qt::LeftButton, {}, QPoint(20, 5));
    QTest::mouseMove(tab, QPoint(22, 5));
    QTest::mouseRelease(tab, Qt::LeftButton, {}, QPoint(22, 5));
    QCOMPARE(clicks.size(), 1);
    QCOMPARE(moves.size(), 2);
}

void tst_TabStrip::escapePutsADraggedTabBack()
{
    fill(4);
    const QSignalSpy moves(m_strip.get(), &TabStrip::tabMoved);
    drag(2, 4);
    QCOMPARE(m_strip->keys(), order({1, 3, 4, 2}));
    QCOMPARE(QWidget::keyboardGrabber(), m_strip->tab(keyOf(2)));
    QTest::keyClick(m_strip->tab(keyOf(2)), Qt::Key_Escape);
    QCOMPARE(m_strip->keys(), order({1, 2, 3, 4}));
    QVERIFY(!QWidget::keyboardGrabber());
    QTest::mouseRelease(m_strip->tab(keyOf(2)), Qt::LeftButton);
    QCOMPARE(moves.size(), 0);
}

void tst_TabStrip::tabsOfDifferentWidthsDoNotGoToAndFro()
{
    fill(2);
    m_strip->setCaption(keyOf(1), u"A very long caption of a window"_s);
    m_strip->setCaption(keyOf(2), u"x"_s);
    drag(2, 1);
    QCOMPARE(m_strip->keys(), order({2, 1}));
    QWidget *tab = m_strip->tab(keyOf(2));
    const QPoint at(tab->rect().center());
    for (int i = 0; i < 3; ++i) {
        QMouseEvent event(QEvent::MouseMove, at, tab->mapToGlobal(at), Qt::NoButton, Qt::LeftButton,
                          {});
        QApplication::sendEvent(tab, &event);
        QCOMPARE(m_strip->keys(), order({2, 1}));
    }
    QTest::mouseRelease(tab, Qt::LeftButton);
}

void tst_TabStrip::tabGoesWhileItIsDragged_data()
{
    QTest::addColumn<int>("gone");
    QTest::newRow("the tab") << 1;
    QTest::newRow("another") << 2;
}

void tst_TabStrip::tabGoesWhileItIsDragged()
{
    QFETCH(int, gone);
    fill(3);
    drag(1, 3);
    const QPointer<QWidget> tab = m_strip->tab(keyOf(1));
    m_strip->removeTab(keyOf(gone));
    QTest::keyClick(tab.data(), Qt::Key_Escape);
    QCOMPARE(m_strip->keys(), gone == 1 ? order({2, 3}) : order({3, 1}));
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(!tab, gone == 1);
    QVERIFY(!QWidget::keyboardGrabber());
}

void tst_TabStrip::keysMoveATab()
{
    fill(3);
    const QSignalSpy moves(m_strip.get(), &TabStrip::tabMoved);
    QTest::keyClick(m_strip->tab(keyOf(1)), Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(m_strip->keys(), order({2, 1, 3}));
    for (int i = 0; i < 4; ++i)
        QTest::keyClick(m_strip->tab(keyOf(1)), Qt::Key_Left, Qt::ShiftModifier);
    QCOMPARE(m_strip->keys(), order({1, 2, 3}));
    // At the end there is nowhere to go.
    QCOMPARE(moves.size(), 2);
}

void tst_TabStrip::middleClickReports()
{
    fill(2);
    QSignalSpy clicks(m_strip.get(), &TabStrip::tabClicked);
    QSignalSpy middle(m_strip.get(), &TabStrip::tabMiddleClicked);
    QTest::mouseClick(m_strip->tab(keyOf(2)), Qt::MiddleButton);
    QCOMPARE(middle.size(), 1);
    QCOMPARE(middle.last().first().toString(), keyOf(2));
    QCOMPARE(clicks.size(), 0);
    QVERIFY(!m_strip->isPressed(keyOf(2)));
    QTest::mousePress(m_strip->tab(keyOf(1)), Qt::MiddleButton);
    QTest::mouseRelease(m_strip->tab(keyOf(1)), Qt::MiddleButton, {}, QPoint(-50, 5));
    QCOMPARE(middle.size(), 1);
}

void tst_TabStrip::rightReleaseAnywhere()
{
    QSignalSpy releases(m_strip.get(), &TabStrip::rightReleased);
    rightClick(m_strip.get(), QPoint(300, 5));
    QCOMPARE(releases.size(), 1);
    QCOMPARE(releases.last().first().toPoint(), m_strip->mapToGlobal(QPoint(300, 5)));
    fill(30);
    QSignalSpy clicks(m_strip.get(), &TabStrip::tabClicked);
    QWidget *tab = m_strip->tab(keyOf(2));
    QTest::mousePress(tab, Qt::RightButton, {}, QPoint(10, 8));
    QCOMPARE(releases.size(), 1);
    QTest::mouseRelease(tab, Qt::RightButton, {}, QPoint(10, 8));
    QCOMPARE(releases.size(), 2);
    QCOMPARE(releases.last().first().toPoint(), tab->mapToGlobal(QPoint(10, 8)));
    rightClick(m_strip->findChild<QToolButton *>(u"tbWindowsRight"_s), QPoint(5, 5));
    QCOMPARE(releases.size(), 3);
    QTest::mousePress(tab, Qt::RightButton, {}, QPoint(10, 8));
    QTest::mouseRelease(tab, Qt::RightButton, {}, QPoint(10, 500));
    QCOMPARE(releases.size(), 3);
    QCOMPARE(clicks.size(), 0);
}

void tst_TabStrip::noMenuOfTheSurroundings()
{
    QMainWindow window;
    auto *bar = new QToolBar(u"Bar"_s);
    window.addToolBar(bar);
    auto *strip = new TabStrip(QIcon());
    bar->addWidget(strip);
    strip->addTab(keyOf(1), u"Loading..."_s);
    window.setContextMenuPolicy(Qt::CustomContextMenu);
    QSignalSpy asked(&window, &QWidget::customContextMenuRequested);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QWidget *tab = strip->tab(keyOf(1));
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(3, 3), tab->mapToGlobal(QPoint(3, 3)));
    QCoreApplication::sendEvent(tab, &event);
    QCOMPARE(asked.size(), 0);
    QVERIFY(event.isAccepted());
}

void tst_TabStrip::captionShowsAmpersand()
{
    fill(1);
    QWidget *tab = m_strip->tab(keyOf(1));
    const auto picture = [&](const QString &caption) {
        m_strip->setCaption(keyOf(1), caption);
        return tab->grab().toImage();
    };
    const QImage with = picture(u"Q&A"_s);
    QCOMPARE(tab->accessibleName(), u"Q&A"_s);
    QCOMPARE(m_strip->caption(keyOf(1)), u"Q&A"_s);
    QVERIFY(with != picture(u"QA"_s));
    QVERIFY(with != picture(u"Q&&A"_s));
}

void tst_TabStrip::toolTipIsWholeAndPlain()
{
    fill(1);
    const QString title = u"<b>the quick</b> brown fox <img src='file:///x'> & more"_s;
    m_strip->setToolTip(keyOf(1), title);
    QWidget *tab = m_strip->tab(keyOf(1));
    QCOMPARE(tab->toolTip(), title);
    QCOMPARE(tab->accessibleDescription(), title);
    QHelpEvent event(QEvent::ToolTip, QPoint(5, 5), tab->mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(tab, &event);
    QTRY_VERIFY(QToolTip::isVisible());
    QVERIFY(!QToolTip::text().contains(u"<b>"_s));
    QVERIFY(!QToolTip::text().contains(u"<img"_s));
    QVERIFY(QToolTip::text().contains(title.toHtmlEscaped()));
    QToolTip::hideText();
}

void tst_TabStrip::longToolTipIsWrapped()
{
    QVERIFY(wrappedToolTip(QString(1000000, u'x')).size() < 1000);
    QVERIFY(wrappedToolTip(QString(100, u'x')).contains(QChar(0x200b)));
    QVERIFY(!wrappedToolTip(u"a few short words"_s).contains(QChar(0x200b)));
    const QString pairs = wrappedToolTip(QString::fromUcs4(U"\U0001F600").repeated(400));
    for (qsizetype i = 0; i < pairs.size(); ++i) {
        if (pairs.at(i).isHighSurrogate())
            QVERIFY(pairs.at(i + 1).isLowSurrogate());
    }
    fill(1);
    m_strip->setToolTip(keyOf(1), QString(5000, u'W'));
    QWidget *tab = m_strip->tab(keyOf(1));
    QHelpEvent event(QEvent::ToolTip, QPoint(5, 5), tab->mapToGlobal(QPoint(5, 5)));
    QCoreApplication::sendEvent(tab, &event);
    QTRY_VERIFY(QToolTip::isVisible());
    for (const QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->inherits("QTipLabel"))
            QVERIFY2(widget->width() < 800, qPrintable(QString::number(widget->width())));
    }
    QToolTip::hideText();
}

void tst_TabStrip::image1UntilIconArrives()
{
    fill(1);
    QWidget *tab = m_strip->tab(keyOf(1));
    const auto shows = [&](const QColor &colour) {
        const QImage image = tab->grab().toImage();
        const QRgb wanted = colour.rgb();
        int found = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                found += image.pixel(x, y) == wanted ? 1 : 0;
        }
        return found >= 200;
    };
    QVERIFY(shows(Qt::red));
    m_strip->setIcon(keyOf(1), colourIcon(Qt::green));
    QVERIFY(shows(Qt::green));
    m_strip->setIcon(keyOf(1), QIcon());
    QVERIFY(shows(Qt::red));
}

void tst_TabStrip::twoHundredTabs()
{
    fill(200);
    QCOMPARE(m_strip->keys().size(), 200);
    for (int number : {200, 1, 100, 101, 57, 199, 2}) {
        m_strip->setPressed(keyOf(number), true);
        QVERIFY2(inView(number), qPrintable(keyOf(number)));
    }
    const QFontMetrics metrics = m_strip->fontMetrics();
    for (const QString &key : m_strip->keys())
        QVERIFY(m_strip->tab(key)->width() > metrics.horizontalAdvance(u"Loading..."_s) + 16);
    QVERIFY(!inView(200));
    QTest::mouseClick(m_strip->tab(keyOf(3)), Qt::LeftButton);
    QVERIFY(m_strip->isPressed(keyOf(3)));
}

void tst_TabStrip::pressedTabStaysInViewOnResize()
{
    fill(40);
    m_strip->setPressed(keyOf(6), true);
    for (int width : {300, 900, 200, 60, 1500, 400}) {
        m_strip->resize(width, m_strip->height());
        QTRY_COMPARE(m_strip->width(), width);
        if (width >= 200)
            QVERIFY2(inView(6), qPrintable(QString::number(width)));
    }
    for (int number : {1, 2, 3})
        m_strip->removeTab(keyOf(number));
    QVERIFY(inView(6));
    for (int number = 4; number <= 40; ++number)
        m_strip->setCaption(keyOf(number), u"WWWWWWWWWW..."_s);
    QTRY_VERIFY(m_strip->tab(keyOf(6))->width() > m_strip->fontMetrics().averageCharWidth() * 18);
    QVERIFY(inView(6));
}

void tst_TabStrip::arrowsAndWheelScroll()
{
    fill(30);
    m_strip->setPressed(keyOf(1), true);
    auto *left = m_strip->findChild<QToolButton *>(u"tbWindowsLeft"_s);
    auto *right = m_strip->findChild<QToolButton *>(u"tbWindowsRight"_s);
    QVERIFY(!left->accessibleName().isEmpty() && !right->accessibleName().isEmpty());
    QVERIFY(!left->isEnabled());
    QTest::mouseClick(right, Qt::LeftButton);
    QVERIFY(!inView(1));
    QVERIFY(left->isEnabled());
    QTest::mouseClick(left, Qt::LeftButton);
    QVERIFY(inView(1));
    const auto turn = [&](int angle) {
        QWidget *under = m_strip->tab(keyOf(5));
        QWheelEvent event(QPointF(5, 5), under->mapToGlobal(QPointF(5, 5)), {}, QPoint(0, angle),
                          Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        // Only events that seem to come from outside are handed on to the parents.
        QSpontaneKeyEvent::setSpontaneous(&event);
        qApp->notify(under, &event);
    };
    turn(-60);
    QVERIFY(inView(1));
    turn(-60);
    QVERIFY(!inView(1));
    for (int i = 0; i < 60; ++i)
        turn(-120);
    QVERIFY(inView(30));
    QVERIFY(!right->isEnabled());
    // Pressed states and the user's place are not touched by a caption.
    QVERIFY(m_strip->isPressed(keyOf(1)));
    m_strip->setCaption(keyOf(30), u"The Quick ..."_s);
    QCoreApplication::processEvents();
    QVERIFY(!inView(1));
}

void tst_TabStrip::arrowsOnlyOnOverflow()
{
    auto *right = m_strip->findChild<QToolButton *>(u"tbWindowsRight"_s);
    fill(3);
    QVERIFY(!right->isVisible());
    for (int number = 4; number <= 30; ++number)
        m_strip->addTab(keyOf(number), u"Loading..."_s);
    QVERIFY(right->isVisible());
    m_strip->setPressed(keyOf(30), true);
    for (int number = 4; number <= 30; ++number)
        m_strip->removeTab(keyOf(number));
    QVERIFY(!right->isVisible());
    QVERIFY(inView(1) && inView(3));
}

void tst_TabStrip::removedTabsCloseUp()
{
    fill(4);
    const int second = m_strip->tab(keyOf(2))->x();
    m_strip->removeTab(keyOf(2));
    QCOMPARE(m_strip->tab(keyOf(2)), nullptr);
    QCOMPARE(m_strip->tab(keyOf(3))->x(), second);
    QCOMPARE(m_strip->keys(), (QStringList{keyOf(1), keyOf(3), keyOf(4)}));
    for (const QString &key : m_strip->keys())
        m_strip->removeTab(key);
    QVERIFY(m_strip->keys().isEmpty());
    fill(1);
    QCOMPARE(m_strip->tab(keyOf(1))->x(), 0);
}

void tst_TabStrip::removalInsideClick()
{
    fill(3);
    connect(m_strip.get(), &TabStrip::tabClicked, m_strip.get(),
            [this](const QString &key) { m_strip->removeTab(key); });
    connect(m_strip.get(), &TabStrip::tabMiddleClicked, m_strip.get(),
            [this](const QString &key) { m_strip->removeTab(key); });
    QTest::mouseClick(m_strip->tab(keyOf(1)), Qt::LeftButton);
    QTest::mouseClick(m_strip->tab(keyOf(2)), Qt::MiddleButton);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(m_strip->keys(), QStringList{keyOf(3)});
}

void tst_TabStrip::keyboard()
{
    fill(200);
    QSignalSpy clicks(m_strip.get(), &TabStrip::tabClicked);
    m_strip->setPressed(keyOf(3), true);
    // One stop of the Tab key, however many tabs there are.
    int stops = 0;
    for (const QString &key : m_strip->keys())
        stops += m_strip->tab(key)->focusPolicy() & Qt::TabFocus ? 1 : 0;
    QCOMPARE(stops, 1);
    QVERIFY(m_strip->tab(keyOf(3))->focusPolicy() & Qt::TabFocus);
    m_strip->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_strip.get()));
    m_strip->tab(keyOf(3))->setFocus(Qt::TabFocusReason);
    const auto press = [](Qt::Key key) { QTest::keyClick(QApplication::focusWidget(), key); };
    press(Qt::Key_Right);
    QVERIFY(m_strip->tab(keyOf(4))->hasFocus());
    QVERIFY(m_strip->isPressed(keyOf(3)));
    press(Qt::Key_Space);
    QCOMPARE(clicks.takeLast().first().toString(), keyOf(4));
    QVERIFY(m_strip->isPressed(keyOf(4)));
    press(Qt::Key_Left);
    press(Qt::Key_Left);
    press(Qt::Key_Return);
    QCOMPARE(clicks.takeLast().first().toString(), keyOf(2));
    press(Qt::Key_End);
    QVERIFY(m_strip->tab(keyOf(200))->hasFocus());
    QVERIFY(inView(200));
    press(Qt::Key_Right);
    QVERIFY(m_strip->tab(keyOf(200))->hasFocus());
    press(Qt::Key_Home);
    QVERIFY(m_strip->tab(keyOf(1))->hasFocus());
    QVERIFY(inView(1));
    // A closed tab hands the focus to its neighbour.
    m_strip->removeTab(keyOf(1));
    QVERIFY(m_strip->tab(keyOf(2))->hasFocus());
}

void tst_TabStrip::accessible()
{
    fill(2);
    QCOMPARE(m_strip->objectName(), u"tbWindows"_s);
    m_strip->setCaption(keyOf(2), u"The Quick ..."_s);
    m_strip->setToolTip(keyOf(2), u"the quick brown fox"_s);
    QAccessibleInterface *tab = QAccessible::queryAccessibleInterface(m_strip->tab(keyOf(2)));
    QVERIFY(tab);
    QCOMPARE(tab->text(QAccessible::Name), u"The Quick ..."_s);
    QCOMPARE(tab->text(QAccessible::Description), u"the quick brown fox"_s);
    QCOMPARE(tab->role(), QAccessible::Button);
    QVERIFY(tab->state().checkable && !tab->state().checked);
    QSignalSpy clicks(m_strip.get(), &TabStrip::tabClicked);
    QVERIFY(tab->actionInterface());
    tab->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    QCOMPARE(clicks.size(), 1);
    QVERIFY(tab->state().checked);
}

void tst_TabStrip::captionStormIsPlacedRarely()
{
    fill(200);
    class Counter : public QObject {
    public:
        int moves = 0;
        bool eventFilter(QObject *, QEvent *event) override
        {
            moves += event->type() == QEvent::Move ? 1 : 0;
            return false;
        }
    } counter;
    m_strip->tab(keyOf(2))->installEventFilter(&counter);
    QString last;
    for (int i = 0; i < 1000; ++i) {
        last = QString(i % 2 ? 3 : 13, u'W') + QString::number(i);
        m_strip->setCaption(keyOf(1), last);
    }
    QCOMPARE(m_strip->caption(keyOf(1)), last);
    QCOMPARE(counter.moves, 0);
    m_strip->setCaption(keyOf(1), QString(13, u'W'));
    QTRY_COMPARE(counter.moves, 1);
}

QTEST_MAIN(tst_TabStrip)
#include "tst_tabstrip.moc"
