#include "MdiArea.h"
#include "ThemedIcon.h"

#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QMainWindow>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QScrollBar>
#include <QSignalSpy>
#include <QStyle>
#include <QTest>
#include <QTextEdit>
#include <QVBoxLayout>
#include <memory>

using namespace Qt::StringLiterals;

namespace {

enum State { Normal, Minimized, Maximized };

State stateOf(const QWidget *form)
{
    if (form->isMinimized())
        return Minimized;
    return form->isMaximized() ? Maximized : Normal;
}

/// A frame with an edit above the area, as an address bar stands there.
class Window : public QMainWindow {
public:
    Window()
    {
        auto *body = new QWidget;
        auto *layout = new QVBoxLayout(body);
        layout->setContentsMargins({});
        address = new QLineEdit;
        area = new MdiArea;
        layout->addWidget(address);
        layout->addWidget(area);
        setCentralWidget(body);
        menuBar()->addMenu(u"&File"_s);
        setWindowTitle(u"Orvane"_s);
        resize(900, 640);
        show();
    }

    QMdiSubWindow *open(bool maximized = false)
    {
        auto *child = new QMdiSubWindow;
        child->setAttribute(Qt::WA_DeleteOnClose);
        child->setWidget(new QTextEdit);
        child->setWindowTitle(u"Page %1"_s.arg(++m_count));
        area->adopt(child);
        if (maximized)
            child->showMaximized();
        else
            child->show();
        return child;
    }

    QList<QWidget *> forms() const
    {
        QList<QWidget *> result;
        for (QMdiSubWindow *child : area->subWindowList())
            result.append(child);
        return result;
    }

    MdiArea *area = nullptr;
    QLineEdit *address = nullptr;

private:
    int m_count = 0;
};

}

class tst_MdiArea : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_window.reset(); }
    void tileCells_data();
    void tileCells();
    void twoTilesFollowTheDirection();
    void cascadeStaysInside();
    void iconsFillRowsFromTheBottom();
    void arrangeOnWidgets_data();
    void arrangeOnWidgets();
    void arrangeRestoresMaximized();
    void arrangeKeepsTheActiveInFront();
    void arrangeAnEmptyArea();
    void newChildOfMaximizedIsMaximized();
    void closingKeepsMaximized();
    void firstChildIsPlacedInside();
    void ownSizeIsKept();
    void allStates_data();
    void allStates();
    void iconRowFollowsResize();
    void systemMenusHaveNoShortcuts();
    void keys_data();
    void keys();
    void closeKey();
    void activeChildOfAMinimizedFrame();
    void activeChildChangedIsSentOnce();
    void childrenAreInCreationOrder();
    void scrollBarsAsNeeded();
    void titleBarButtonsAreSeenInTheDark();
    void ownIconIsSeenOnTheActiveTitleBar();
    void maximizedButtonsAreSeenInTheDark();
    void captionsArePaintedAsTheyStand_data();
    void captionsArePaintedAsTheyStand();

private:
    std::unique_ptr<Window> m_window;
};

void tst_MdiArea::init()
{
    m_window = std::make_unique<Window>();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
}

void tst_MdiArea::tileCells_data()
{
    QTest::addColumn<int>("count");
    for (int count : {1, 2, 3, 4, 5, 7, 12, 30, 200})
        QTest::addRow("%d", count) << count;
}

void tst_MdiArea::tileCells()
{
    QFETCH(int, count);
    const QRect area(0, 0, 1003, 607);
    for (const Arrange how : {Arrange::TileHorizontal, Arrange::TileVertical}) {
        const QList<QRect> cells = MdiArrange::tile(count, area, how);
        QCOMPARE(cells.size(), count);
        qint64 covered = 0;
        for (qsizetype i = 0; i < cells.size(); ++i) {
            QVERIFY(area.contains(cells.at(i)));
            covered += qint64(cells.at(i).width()) * cells.at(i).height();
            for (qsizetype j = 0; j < i; ++j)
                QVERIFY(!cells.at(i).intersects(cells.at(j)));
        }
        QCOMPARE(covered, qint64(area.width()) * area.height());
    }
}

void tst_MdiArea::twoTilesFollowTheDirection()
{
    const QRect area(0, 0, 800, 600);
    QCOMPARE(MdiArrange::tile(2, area, Arrange::TileHorizontal),
             (QList<QRect>{{0, 0, 800, 300}, {0, 300, 800, 300}}));
    QCOMPARE(MdiArrange::tile(2, area, Arrange::TileVertical),
             (QList<QRect>{{0, 0, 400, 600}, {400, 0, 400, 600}}));
    QCOMPARE(MdiArrange::tile(3, area, Arrange::TileHorizontal).last(), QRect(0, 400, 800, 200));
    QCOMPARE(MdiArrange::tile(6, area, Arrange::TileVertical).first().size(), QSize(266, 300));
    QCOMPARE(MdiArrange::tile(6, area, Arrange::TileHorizontal).first().size(), QSize(400, 200));
    QVERIFY(MdiArrange::tile(0, area, Arrange::TileVertical).isEmpty());
}

void tst_MdiArea::cascadeStaysInside()
{
    const QRect area(0, 0, 800, 600);
    const QList<QRect> places = MdiArrange::cascade(50, area, 25);
    QCOMPARE(places.size(), 50);
    QCOMPARE(places.at(1).topLeft() - places.at(0).topLeft(), QPoint(25, 25));
    for (const QRect &place : places) {
        QVERIFY(area.contains(place));
        QCOMPARE(place.size(), places.first().size());
    }
    QCOMPARE(places.at(9), places.first());
    for (const QRect &place : MdiArrange::cascade(3, QRect(0, 0, 10, 5), 25))
        QVERIFY(place.isValid());
}

void tst_MdiArea::iconsFillRowsFromTheBottom()
{
    const QList<QRect> places = MdiArrange::icons(5, QRect(0, 0, 420, 300), QSize(200, 20));
    QCOMPARE(places,
             (QList<QRect>{{0, 280, 200, 20},
                           {200, 280, 200, 20},
                           {0, 260, 200, 20},
                           {200, 260, 200, 20},
                           {0, 240, 200, 20}}));
}

void tst_MdiArea::arrangeOnWidgets_data()
{
    QTest::addColumn<int>("how");
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("minimized");
    for (int how = 0; how <= 2; ++how) {
        QTest::addRow("%d: 1", how) << how << 1 << 0;
        QTest::addRow("%d: 3", how) << how << 3 << 0;
        QTest::addRow("%d: 8, 3 minimized", how) << how << 8 << 3;
        QTest::addRow("%d: 30, 11 minimized", how) << how << 30 << 11;
        QTest::addRow("%d: all minimized", how) << how << 4 << 4;
    }
}

void tst_MdiArea::arrangeOnWidgets()
{
    QFETCH(int, how);
    QFETCH(int, count);
    QFETCH(int, minimized);
    for (int i = 0; i < count; ++i)
        m_window->open();
    for (int i = 0; i < minimized; ++i)
        m_window->forms().at(i)->showMinimized();
    // One stands outside the visible area before.
    m_window->forms().last()->move(2000, 1500);
    m_window->area->arrange(static_cast<Arrange>(how));
    QCoreApplication::processEvents();

    const QRect area = m_window->area->viewport()->rect();
    QVERIFY(!m_window->area->verticalScrollBar()->isVisible());
    const QList<QWidget *> forms = m_window->forms();
    for (int i = 0; i < count; ++i) {
        QCOMPARE(stateOf(forms.at(i)), i < minimized ? Minimized : Normal);
        QVERIFY2(area.contains(forms.at(i)->geometry()), qPrintable(QString::number(i)));
        for (int j = 0; j < i; ++j) {
            const bool overlap = forms.at(i)->geometry().intersects(forms.at(j)->geometry());
            const bool stacked = how == 0 && i >= minimized && j >= minimized;
            QVERIFY2(stacked || !overlap, qPrintable(u"%1 on %2"_s.arg(i).arg(j)));
        }
    }
}

void tst_MdiArea::arrangeRestoresMaximized()
{
    for (const Arrange how : {Arrange::Cascade, Arrange::TileHorizontal, Arrange::TileVertical}) {
        m_window->open(true);
        m_window->open();
        m_window->area->arrange(how);
        for (const QWidget *form : m_window->forms()) {
            QCOMPARE(stateOf(form), Normal);
            QVERIFY(m_window->area->viewport()->rect().contains(form->geometry()));
        }
    }
}

void tst_MdiArea::arrangeKeepsTheActiveInFront()
{
    QMdiSubWindow *first = m_window->open();
    m_window->open();
    m_window->open();
    m_window->area->setActiveSubWindow(first);
    m_window->area->arrange(Arrange::Cascade);
    QCOMPARE(m_window->area->activeChild(), first);
    QCOMPARE(m_window->area->subWindowList(QMdiArea::StackingOrder).last(), first);
    for (const QWidget *form : m_window->forms())
        QVERIFY(form == first || form->y() < first->y());
    m_window->area->arrange(Arrange::TileVertical);
    QCOMPARE(first->pos(), QPoint(0, 0));
    QCOMPARE(m_window->area->activeChild(), first);
}

void tst_MdiArea::arrangeAnEmptyArea()
{
    QSignalSpy changes(m_window->area, &MdiArea::activeChildChanged);
    m_window->area->arrange(Arrange::Cascade);
    m_window->area->minimizeAll({});
    m_window->area->restoreAll({});
    QCOMPARE(m_window->area->activeChild(), nullptr);
    QCOMPARE(changes.size(), 0);
}

void tst_MdiArea::newChildOfMaximizedIsMaximized()
{
    QMdiSubWindow *first = m_window->open(true);
    QCOMPARE(stateOf(first), Maximized);
    QMdiSubWindow *second = m_window->open();
    QCOMPARE(stateOf(second), Maximized);
    QCOMPARE(m_window->area->activeChild(), second);
    m_window->area->setActiveSubWindow(first);
    QCOMPARE(stateOf(first), Maximized);
    // And beside a normal one it comes up normal.
    m_window->area->restoreAll(m_window->forms());
    QCOMPARE(stateOf(m_window->open()), Normal);
}

void tst_MdiArea::closingKeepsMaximized()
{
    m_window->open(true);
    m_window->open();
    QMdiSubWindow *third = m_window->open();
    QVERIFY(third->close());
    QTRY_COMPARE(m_window->forms().size(), 2);
    QVERIFY(m_window->area->activeChild());
    QTRY_COMPARE(stateOf(m_window->area->activeChild()), Maximized);
    m_window->area->activeChild()->close();
    QTRY_COMPARE(m_window->forms().size(), 1);
    QTRY_COMPARE(stateOf(m_window->area->activeChild()), Maximized);
}

void tst_MdiArea::firstChildIsPlacedInside()
{
    const QRect area = m_window->area->viewport()->rect();
    QPoint last(-1, -1);
    for (int i = 0; i < 3; ++i) {
        const QMdiSubWindow *child = m_window->open();
        QVERIFY(area.contains(child->geometry()));
        QVERIFY(child->width() > area.width() / 2);
        QVERIFY(child->height() > area.height() / 2);
        QVERIFY(child->x() > last.x() && child->y() > last.y());
        last = child->pos();
    }
}

void tst_MdiArea::ownSizeIsKept()
{
    auto *child = new QMdiSubWindow;
    child->setWidget(new QWidget);
    child->resize(345, 234);
    m_window->area->adopt(child);
    child->show();
    QCOMPARE(child->size(), QSize(345, 234));
}

void tst_MdiArea::allStates_data()
{
    QTest::addColumn<QList<int>>("states");
    QTest::addColumn<int>("active");
    const QList<QList<int>> mixes = {{Normal},
                                     {Maximized},
                                     {Minimized},
                                     {Normal, Normal, Normal},
                                     {Minimized, Minimized, Minimized},
                                     {Normal, Minimized, Normal},
                                     {Maximized, Minimized, Normal},
                                     {Normal, Maximized, Normal},
                                     {Minimized, Minimized, Maximized}};
    for (qsizetype i = 0; i < mixes.size(); ++i) {
        for (int active = 0; active < mixes.at(i).size(); ++active)
            QTest::addRow("mix %d, active %d", int(i), active) << mixes.at(i) << active;
    }
}

void tst_MdiArea::allStates()
{
    QFETCH(QList<int>, states);
    QFETCH(int, active);
    const auto setUp = [&] {
        for (QWidget *form : m_window->forms())
            delete form;
        for (qsizetype i = 0; i < states.size(); ++i)
            m_window->open();
        m_window->area->setActiveSubWindow(m_window->area->childWindows().at(active));
        for (qsizetype i = 0; i < states.size(); ++i) {
            if (states.at(i) == Minimized)
                m_window->forms().at(i)->showMinimized();
            else if (states.at(i) == Maximized)
                m_window->forms().at(i)->showMaximized();
        }
    };
    setUp();
    m_window->area->minimizeAll(m_window->forms());
    for (const QWidget *form : m_window->forms())
        QCOMPARE(stateOf(form), Minimized);
    QVERIFY(m_window->area->activeChild());
    m_window->area->restoreAll(m_window->forms());
    for (const QWidget *form : m_window->forms())
        QCOMPARE(stateOf(form), Normal);
    setUp();
    m_window->area->restoreAll(m_window->forms());
    for (const QWidget *form : m_window->forms())
        QCOMPARE(stateOf(form), Normal);
    QCoreApplication::processEvents();
    for (const QWidget *form : m_window->forms())
        QCOMPARE(stateOf(form), Normal);
    QVERIFY(!m_window->area->testOption(QMdiArea::DontMaximizeSubWindowOnActivation));
    QCOMPARE(m_window->windowTitle(), u"Orvane"_s);
}

void tst_MdiArea::iconRowFollowsResize()
{
    for (int i = 0; i < 12; ++i)
        m_window->open();
    m_window->area->minimizeAll(m_window->forms());
    for (const QSize &size : {QSize(640, 500), QSize(1000, 700), QSize(300, 400)}) {
        m_window->resize(size);
        QTRY_COMPARE(m_window->size(), size);
        const QRect area = m_window->area->viewport()->rect();
        const QList<QWidget *> forms = m_window->forms();
        for (qsizetype i = 0; i < forms.size(); ++i) {
            QTRY_VERIFY(area.contains(forms.at(i)->geometry()));
            for (qsizetype j = 0; j < i; ++j)
                QVERIFY(!forms.at(i)->geometry().intersects(forms.at(j)->geometry()));
        }
        QCOMPARE(forms.first()->geometry().bottom(), area.bottom());
    }
}

void tst_MdiArea::systemMenusHaveNoShortcuts()
{
    QMdiSubWindow *child = m_window->open();
    QVERIFY(child->systemMenu());
    for (const QAction *item : child->systemMenu()->actions())
        QVERIFY(item->shortcuts().isEmpty());
    QAction close(u"Close"_s);
    close.setShortcut(Qt::CTRL | Qt::Key_W);
    m_window->addAction(&close);
    QSignalSpy triggered(&close, &QAction::triggered);
    QTest::keyClick(child->widget(), Qt::Key_W, Qt::ControlModifier);
    QCOMPARE(triggered.size(), 1);
}

void tst_MdiArea::keys_data()
{
    QTest::addColumn<int>("key");
    QTest::addColumn<int>("step");
    QTest::addColumn<bool>("fromAddress");
    for (const bool fromAddress : {false, true}) {
        const char *from = fromAddress ? "address" : "page";
        QTest::addRow("Ctrl+F6 %s", from) << int(Qt::Key_F6) << 1 << fromAddress;
        QTest::addRow("Ctrl+Shift+F6 %s", from) << int(Qt::Key_F6) << -1 << fromAddress;
        QTest::addRow("Ctrl+Tab %s", from) << int(Qt::Key_Tab) << 1 << fromAddress;
        QTest::addRow("Ctrl+Shift+Tab %s", from) << int(Qt::Key_Backtab) << -1 << fromAddress;
    }
}

void tst_MdiArea::keys()
{
    QFETCH(int, key);
    QFETCH(int, step);
    QFETCH(bool, fromAddress);
    for (int i = 0; i < 4; ++i)
        m_window->open();
    const QList<QMdiSubWindow *> children = m_window->area->childWindows();
    m_window->area->setActiveSubWindow(children.at(0));
    QSignalSpy changes(m_window->area, &MdiArea::activeChildChanged);
    Qt::KeyboardModifiers modifiers = Qt::ControlModifier;
    if (step < 0)
        modifiers |= Qt::ShiftModifier;
    for (int i = 1; i <= 5; ++i) {
        QWidget *focus = m_window->area->activeChild()->widget();
        if (fromAddress)
            focus = m_window->address;
        focus->setFocus();
        QTest::keyPress(focus, Qt::Key_Control, Qt::ControlModifier);
        QTest::keyClick(focus, Qt::Key(key), modifiers);
        QTest::keyRelease(focus, Qt::Key_Control, Qt::NoModifier);
        QCOMPARE(m_window->area->activeChild(), children.at((4 * 5 + i * step) % 4));
        QCOMPARE(changes.size(), i);
    }
}

void tst_MdiArea::closeKey()
{
    m_window->open();
    m_window->open();
    QMdiSubWindow *active = m_window->open();
    const QPointer<QMdiSubWindow> watched(active);
    QTest::keyClick(active->widget(), Qt::Key_F4, Qt::ControlModifier);
    QTRY_VERIFY(!watched);
    QCOMPARE(m_window->area->childWindows().size(), 2);
    m_window->address->setFocus();
    QTest::keyClick(m_window->address, Qt::Key_F4, Qt::ControlModifier);
    QTRY_COMPARE(m_window->area->childWindows().size(), 1);
    QTest::keyClick(m_window->address, Qt::Key_F4, Qt::ControlModifier);
    QTRY_COMPARE(m_window->area->childWindows().size(), 0);
    QTest::keyClick(m_window->address, Qt::Key_F4, Qt::ControlModifier);
    QCOMPARE(m_window->area->activeChild(), nullptr);
}

void tst_MdiArea::activeChildOfAMinimizedFrame()
{
    m_window->open();
    QMdiSubWindow *active = m_window->open();
    QSignalSpy changes(m_window->area, &MdiArea::activeChildChanged);
    m_window->showMinimized();
    QTRY_VERIFY(m_window->isMinimized());
    QCoreApplication::processEvents();
    QCOMPARE(m_window->area->activeChild(), active);
    m_window->showNormal();
    m_window->hide();
    QCoreApplication::processEvents();
    QCOMPARE(m_window->area->activeChild(), active);
    QCOMPARE(changes.size(), 0);
}

void tst_MdiArea::activeChildChangedIsSentOnce()
{
    QSignalSpy changes(m_window->area, &MdiArea::activeChildChanged);
    QMdiSubWindow *first = m_window->open();
    QCOMPARE(changes.size(), 1);
    QMdiSubWindow *second = m_window->open();
    QCOMPARE(changes.size(), 2);
    m_window->area->setActiveSubWindow(first);
    QCOMPARE(changes.size(), 3);
    m_window->address->setFocus();
    QCOMPARE(changes.size(), 3);
    first->close();
    QTRY_COMPARE(m_window->area->activeChild(), second);
    QTRY_COMPARE(changes.size(), 4);
    QCOMPARE(changes.last().first().value<QMdiSubWindow *>(), second);
    second->close();
    QTRY_COMPARE(m_window->forms().size(), 0);
    QCOMPARE(m_window->area->activeChild(), nullptr);
    QTRY_COMPARE(changes.size(), 5);
    QCOMPARE(changes.last().first().value<QMdiSubWindow *>(), nullptr);
}

void tst_MdiArea::childrenAreInCreationOrder()
{
    QList<QMdiSubWindow *> opened;
    for (int i = 0; i < 5; ++i)
        opened.append(m_window->open());
    auto *hidden = new QMdiSubWindow;
    m_window->area->adopt(hidden);
    m_window->area->setActiveSubWindow(opened.at(1));
    QCOMPARE(m_window->area->childWindows(), opened);
    QCOMPARE(m_window->area->activeChild(), opened.at(1));
}

void tst_MdiArea::scrollBarsAsNeeded()
{
    QMdiSubWindow *child = m_window->open();
    QVERIFY(!m_window->area->horizontalScrollBar()->isVisible());
    child->move(m_window->area->width() - 50, 0);
    QTRY_VERIFY(m_window->area->horizontalScrollBar()->isVisible());
    child->move(0, 0);
    QTRY_VERIFY(!m_window->area->horizontalScrollBar()->isVisible());
}

void tst_MdiArea::titleBarButtonsAreSeenInTheDark()
{
    if (QApplication::style()->name() != "fusion"_L1)
        QSKIP("another style than the usual one");
    const QPalette before = QApplication::palette();
    const auto restore = qScopeGuard([&before] { QApplication::setPalette(before); });
    const QColor dark(50, 50, 50);
    QApplication::setPalette(QPalette(dark));
    QMdiSubWindow *inactive = m_window->open();
    QTRY_COMPARE(inactive->palette().color(QPalette::Window), dark);
    m_window->open();
    m_window->area->arrange(Arrange::TileVertical);
    QVERIFY(m_window->area->activeChild() != inactive);
    const auto lightest = [inactive] {
        const int height = inactive->style()->pixelMetric(QStyle::PM_TitleBarHeight);
        const QRect close(inactive->width() - height, 6, height - 8, height - 10);
        const QImage image = inactive->grab(close).toImage();
        int result = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                result = std::max(result, qGray(image.pixel(x, y)));
        }
        return result;
    };
    const int shown = lightest();
    inactive->setStyle(nullptr);
    const int usual = lightest();
    QVERIFY2(shown > usual + 60, qPrintable(u"%1, in the usual style %2"_s.arg(shown).arg(usual)));
}

void tst_MdiArea::ownIconIsSeenOnTheActiveTitleBar()
{
    QMdiSubWindow *child = m_window->open();
    child->setWindowIcon(themedIcon(u"page"_s));
    m_window->area->setActiveSubWindow(child);
    const QImage shown = child->grab().toImage();
    int light = 0;
    for (int y = 6; y < 22; ++y) {
        for (int x = 6; x < 24; ++x) {
            QVERIFY(shown.pixelColor(x, y).lightness() > 60);
            light += shown.pixelColor(x, y).lightness() > 220;
        }
    }
    QVERIFY(light > 20);
}

void tst_MdiArea::maximizedButtonsAreSeenInTheDark()
{
    const QPalette before = QApplication::palette();
    const auto restore = qScopeGuard([&before] { QApplication::setPalette(before); });
    QApplication::setPalette(QPalette(QColor(50, 50, 50)));
    QMdiSubWindow *child = m_window->open(true);
    QTRY_VERIFY(child->maximizedButtonsWidget() && child->maximizedButtonsWidget()->isVisible());
    const QStyle *style = child->maximizedButtonsWidget()->style();
    for (const QStyle::StandardPixmap which :
         {QStyle::SP_TitleBarMinButton, QStyle::SP_TitleBarNormalButton,
          QStyle::SP_TitleBarCloseButton}) {
        const QImage button = style->standardIcon(which).pixmap(16, 16).toImage();
        int seen = 0;
        for (int y = 0; y < button.height(); ++y) {
            for (int x = 0; x < button.width(); ++x) {
                const QColor colour = button.pixelColor(x, y);
                QVERIFY(colour.alpha() == 0 || colour.lightness() > 200);
                seen += colour.alpha() > 200;
            }
        }
        QVERIFY(seen > 5);
    }
}

void tst_MdiArea::captionsArePaintedAsTheyStand_data()
{
    QTest::addColumn<QString>("caption");
    QTest::addColumn<int>("width");
    QTest::newRow("wide") << u"Index of a[*].html"_s << 400;
    QTest::newRow("twice") << u"[*][*]"_s << 400;
    QTest::newRow("does not fit") << u"[*] in front of very much else"_s << 160;
}

void tst_MdiArea::captionsArePaintedAsTheyStand()
{
    QFETCH(QString, caption);
    QFETCH(int, width);
    QMdiSubWindow *child = m_window->open();
    child->resize(width, 100);
    child->setWindowTitle(caption);
    const QImage shown = child->grab().toImage();
    // The toolkit's own way to have one: doubled.
    child->setStyle(QApplication::style());
    child->setWindowTitle(QString(caption).replace(u"[*]"_s, u"[*][*]"_s));
    QCOMPARE(shown, child->grab().toImage());
    child->setWindowTitle(caption);
    QVERIFY(shown != child->grab().toImage());
}

QTEST_MAIN(tst_MdiArea)
#include "tst_mdiarea.moc"
