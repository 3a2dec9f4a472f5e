#include "BandGrip.h"
#include "ChevronButton.h"
#include "CoolBand.h"
#include "CoolBar.h"
#include "ToolBar.h"

#include <QAccessible>
#include <QApplication>
#include <QLineEdit>
#include <QMenu>
#include <QSignalSpy>
#include <QTest>
#include <QVBoxLayout>
#include <limits>

using namespace Qt::StringLiterals;

// The six bands of the program in a window of 800 pixels, in four rows.
class tst_coolbar : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void designOrder();
    void positionsAndKeys();
    void lastBandStretchesAndKeepsItsWidth();
    void hiddenBand();
    void firstVisibleBandNeedsNoFlag();
    void storedWidths_data();
    void storedWidths();
    void sixRowsInASmallFrame();
    void rowHeightFollowsTheChild();
    void dock();
    void captionLabelsTheChild();

    void clickChangesNothing();
    void dragSetsWidths();
    void dragStopsAtTheMinimum();
    void dragPastTheNextBandSwaps();
    void dragPastThePreviousBandSwaps();
    void dragToAnotherRow();
    void markShowsTheTarget();
    void dragToTheFrontOfARow();
    void dragToANewRow_data();
    void dragToANewRow();
    void dragOfALoneBandRemovesItsRow();
    void dragAcrossHiddenBands();
    void escapeGivesUp();
    void bandHiddenWhileDragged();
    void doubleClick();
    void doubleClickOnALoneBand();
    void otherButtonsDoNotDrag();

    void chevron();
    void chevronByKeyboard();
    void laidOutIsTold();
    void keyboardWalk();
    void keyboardWalkAfterADrag();
    void screenReaderWalk();

private:
    QPoint grip(const QString &key) const;
    void drag(const QString &key, QPoint to);
    QString rows() const;
    QString placesOf(const QList<QWidget *> &stops) const;
    CoolBand *band(const char *key) const { return m_bar->band(QString::fromLatin1(key)); }
    int width(const char *key) const { return band(key)->geometry().width(); }
    ChevronButton *chevronOf(const char *key) const;

    std::unique_ptr<QWidget> m_window;
    CoolBar *m_bar = nullptr;
    ToolBar *m_functions = nullptr;
    ToolBar *m_links = nullptr;
};

void tst_coolbar::init()
{
    m_window = std::make_unique<QWidget>();
    auto *layout = new QVBoxLayout(m_window.get());
    layout->setContentsMargins({});
    m_bar = new CoolBar;
    layout->addWidget(m_bar);
    layout->addStretch();
    m_functions = new ToolBar;
    for (const QString &key : {u"New"_s, u"Profile"_s, u"Save"_s})
        m_functions->addButton(key, key, {});
    m_links = new ToolBar;
    for (const QString &text : {u"News"_s, u"Weather"_s, u"Maps & Roads"_s})
        m_links->addButton({}, u"http://example.com/"_s + text, {}, ToolBar::Style::Push, text);
    auto *address = new QLineEdit;
    auto *tabs = new ToolBar;
    tabs->addButton(u"X1"_s, u"Page"_s, {}, ToolBar::Style::Check, u"Page"_s);
    m_bar->addBand(u"Functions"_s, m_functions, {}, 3000, false);
    m_bar->addBand(u"Browser"_s, new ToolBar, {}, 3300, false);
    m_bar->addBand(u"Address"_s, address, u"Address:"_s, 9000, true);
    m_bar->addBand(u"Links"_s, m_links, {}, 9000, true);
    m_bar->addBand(u"Tabs"_s, tabs, {}, 9000, true);
    m_bar->addBand(u"Icon"_s, new QWidget, {}, 600, false);
    m_window->resize(800, 500);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    QTRY_COMPARE(m_bar->height(), m_bar->sizeHint().height());
}

void tst_coolbar::cleanup()
{
    m_window.reset();
}

QPoint tst_coolbar::grip(const QString &key) const
{
    const QRect handle = m_bar->band(key)->handle();
    return QPoint(handle.left() + 5, handle.center().y());
}

void tst_coolbar::drag(const QString &key, QPoint to)
{
    const QPoint from = grip(key);
    QTest::mousePress(m_bar, Qt::LeftButton, {}, from);
    QTest::mouseMove(m_bar, from + (to - from) / 2);
    QTest::mouseMove(m_bar, to);
    QTest::mouseRelease(m_bar, Qt::LeftButton, {}, to);
}

// What is seen: "Functions Browser / Address / ...", read off the places of the children.
QString tst_coolbar::rows() const
{
    QMap<int, QMap<int, QString>> places;
    for (int i = 1; i <= m_bar->bandCount(); ++i) {
        const CoolBand *band = m_bar->band(i);
        if (!band->geometry().isNull())
            places[band->geometry().top()][band->geometry().left()] = band->key();
    }
    QStringList lines;
    for (const auto &row : std::as_const(places))
        lines += QStringList(row.values()).join(u' ');
    return lines.join(u" / "_s);
}

ChevronButton *tst_coolbar::chevronOf(const char *key) const
{
    const auto all = m_bar->findChildren<ChevronButton *>();
    for (ChevronButton *chevron : all) {
        if (chevron->isVisible() && band(key)->geometry().contains(chevron->geometry()))
            return chevron;
    }
    return nullptr;
}

void tst_coolbar::designOrder()
{
    QCOMPARE(rows(), u"Functions Browser / Address / Links / Tabs Icon"_s);
    QCOMPARE(width("Functions"), 200);
    QCOMPARE(width("Browser"), 600);
    QCOMPARE(width("Address"), 800);
    QVERIFY(m_bar->height() < 4 * 40);
    for (int i = 1; i <= 6; ++i)
        QVERIFY(m_bar->rect().contains(m_bar->band(i)->geometry()));
}

void tst_coolbar::positionsAndKeys()
{
    QCOMPARE(m_bar->bandCount(), 6);
    QCOMPARE(m_bar->band(1)->key(), u"Functions"_s);
    QCOMPARE(m_bar->band(6)->key(), u"Icon"_s);
    QCOMPARE(m_bar->band(0), nullptr);
    QCOMPARE(m_bar->band(7), nullptr);
    QCOMPARE(m_bar->band(-1), nullptr);
    QCOMPARE(m_bar->band(u"functions"_s), nullptr);
    QCOMPARE(band("Links")->child(), m_links);
    QCOMPARE(m_links->parentWidget(), m_bar);
}

void tst_coolbar::lastBandStretchesAndKeepsItsWidth()
{
    m_window->resize(1000, 500);
    QTRY_COMPARE(width("Browser"), 800);
    QCOMPARE(width("Functions"), 200);
    QCOMPARE(band("Browser")->width(), 3300.0);
}

void tst_coolbar::hiddenBand()
{
    band("Tabs")->setVisible(false);
    QVERIFY(!band("Tabs")->child()->isVisible());
    QVERIFY(band("Tabs")->newRow());
    QCOMPARE(band("Tabs")->width(), 9000.0);
    QCOMPARE(m_bar->bandCount(), 6);
    QCOMPARE(m_bar->band(5)->key(), u"Tabs"_s);
    QCOMPARE(rows(), u"Functions Browser / Address / Links Icon"_s);
    band("Tabs")->setVisible(true);
    QCOMPARE(rows(), u"Functions Browser / Address / Links / Tabs Icon"_s);
    QVERIFY(band("Tabs")->child()->isVisible());
}

void tst_coolbar::firstVisibleBandNeedsNoFlag()
{
    band("Functions")->setVisible(false);
    band("Browser")->setVisible(false);
    QCOMPARE(rows(), u"Address / Links / Tabs Icon"_s);
    QCOMPARE(band("Address")->geometry().top(), 0);
    band("Address")->setNewRow(false);
    QCOMPARE(rows(), u"Address / Links / Tabs Icon"_s);
}

void tst_coolbar::storedWidths_data()
{
    QTest::addColumn<double>("stored");
    QTest::addColumn<double>("kept");
    QTest::newRow("zero") << 0.0 << 0.0;
    QTest::newRow("negative") << -500.0 << -500.0;
    QTest::newRow("ten million") << 1e7 << 1e7;
    QTest::newRow("beyond any integer") << 1e300 << 1e300;
    QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN() << 3000.0;
    QTest::newRow("endless") << std::numeric_limits<double>::infinity() << 3000.0;
}

void tst_coolbar::storedWidths()
{
    QFETCH(double, stored);
    QFETCH(double, kept);
    band("Functions")->setWidth(stored);
    QCOMPARE(band("Functions")->width(), kept);
    QVERIFY(width("Functions") > 20);
    QVERIFY(width("Browser") > 20);
    QCOMPARE(width("Functions") + width("Browser"), 800);
}

void tst_coolbar::sixRowsInASmallFrame()
{
    for (int i = 1; i <= 6; ++i) {
        m_bar->band(i)->setNewRow(true);
        m_bar->band(i)->setWidth(1e7);
    }
    m_window->resize(300, 300);
    QTRY_COMPARE(m_bar->width(), 300);
    QTRY_COMPARE(m_bar->height(), m_bar->sizeHint().height());
    QCOMPARE(rows(), u"Functions / Browser / Address / Links / Tabs / Icon"_s);
    QVERIFY(m_bar->height() < 220);
    for (int i = 1; i <= 6; ++i) {
        const QRect child = m_bar->band(i)->child()->geometry();
        QVERIFY(m_bar->rect().contains(child));
        QVERIFY(child.width() > 150);
    }
}

void tst_coolbar::rowHeightFollowsTheChild()
{
    const int before = m_bar->height();
    const int links = band("Links")->geometry().top();
    band("Address")->child()->setMinimumHeight(60);
    QTRY_VERIFY(m_bar->height() > before + 20);
    QVERIFY(band("Address")->child()->height() >= 60);
    QVERIFY(band("Links")->geometry().top() > links + 20);
}

void tst_coolbar::dock()
{
    QCOMPARE(m_bar->dock(), CoolBar::Dock::Top);
    QCOMPARE(band("Functions")->geometry().top(), 0);
    m_bar->setDock(CoolBar::Dock::Bottom);
    QCOMPARE(m_bar->dock(), CoolBar::Dock::Bottom);
    QCOMPARE(band("Functions")->geometry().top(), 1);
    QCOMPARE(band("Icon")->geometry().bottom(), m_bar->height() - 1);
    const QImage image = m_bar->grab().toImage();
    QVERIFY(image.pixelColor(400, 0) != image.pixelColor(400, image.height() - 1));
}

void tst_coolbar::captionLabelsTheChild()
{
    CoolBand *address = band("Address");
    QCOMPARE(address->caption(), u"Address:"_s);
    const int narrow = address->childArea().left();
    QVERIFY(narrow > band("Links")->childArea().left());
    QAccessibleInterface *edit = QAccessible::queryAccessibleInterface(address->child());
    QCOMPARE(edit->text(QAccessible::Name), u"Address:"_s);
    address->setCaption(u"The address of this page:"_s);
    QVERIFY(address->childArea().left() > narrow);
    address->setCaption({});
    QCOMPARE(address->childArea().left(), band("Links")->childArea().left());
}

void tst_coolbar::clickChangesNothing()
{
    QTest::mouseClick(m_bar, Qt::LeftButton, {}, grip(u"Browser"_s));
    QCOMPARE(rows(), u"Functions Browser / Address / Links / Tabs Icon"_s);
    QCOMPARE(band("Functions")->width(), 3000.0);
}

void tst_coolbar::dragSetsWidths()
{
    drag(u"Browser"_s, grip(u"Browser"_s) + QPoint(60, 0));
    QCOMPARE(width("Functions"), 260);
    QCOMPARE(band("Functions")->width(), 3900.0);
    QCOMPARE(width("Browser"), 540);
    QCOMPARE(band("Browser")->width(), 3300.0); // the last of its row
    drag(u"Browser"_s, grip(u"Browser"_s) - QPoint(100, 0));
    QCOMPARE(band("Functions")->width(), 2400.0);
}

void tst_coolbar::dragStopsAtTheMinimum()
{
    drag(u"Browser"_s, QPoint(25, grip(u"Browser"_s).y()));
    QCOMPARE(rows(), u"Functions Browser / Address / Links / Tabs Icon"_s);
    const int minimum = width("Functions");
    QVERIFY(minimum > 25 && minimum < 80);
    drag(u"Browser"_s, QPoint(799, grip(u"Browser"_s).y()));
    QCOMPARE(rows(), u"Functions Browser / Address / Links / Tabs Icon"_s);
    QVERIFY(width("Browser") > 20);
}

void tst_coolbar::dragPastTheNextBandSwaps()
{
    drag(u"Functions"_s, grip(u"Browser"_s) + QPoint(40, 0));
    QCOMPARE(rows(), u"Browser Functions / Address / Links / Tabs Icon"_s);
    QCOMPARE(m_bar->band(1)->key(), u"Browser"_s);
    QCOMPARE(m_bar->band(2)->key(), u"Functions"_s);
    QVERIFY(!m_bar->band(2)->newRow());
}

void tst_coolbar::dragPastThePreviousBandSwaps()
{
    drag(u"Icon"_s, QPoint(3, grip(u"Icon"_s).y()));
    QCOMPARE(rows(), u"Functions Browser / Address / Links / Icon Tabs"_s);
    QVERIFY(band("Icon")->newRow());
    QVERIFY(!band("Tabs")->newRow());
    QCOMPARE(m_bar->band(5)->key(), u"Icon"_s);
}

void tst_coolbar::dragToAnotherRow()
{
    drag(u"Links"_s, QPoint(500, grip(u"Address"_s).y()));
    QCOMPARE(rows(), u"Functions Browser / Address Links / Tabs Icon"_s);
    QCOMPARE(band("Links")->geometry().left(), 495);
    QCOMPARE(band("Address")->width(), 495 * 15.0);
    QVERIFY(!band("Links")->newRow());
    QTRY_COMPARE(m_bar->height(), m_bar->sizeHint().height());
}

void tst_coolbar::markShowsTheTarget()
{
    const QColor colour = m_bar->palette().color(QPalette::Highlight);
    const int y = grip(u"Address"_s).y();
    const auto seen = [&](int x) { return m_bar->grab().toImage().pixelColor(x, y); };
    QTest::mousePress(m_bar, Qt::LeftButton, {}, grip(u"Links"_s));
    QTest::mouseMove(m_bar, QPoint(300, y));
    QTest::mouseMove(m_bar, QPoint(500, y));
    QCOMPARE(seen(496), colour);
    QTest::keyClick(m_bar, Qt::Key_Escape);
    QVERIFY(seen(496) != colour);
    QTest::mouseRelease(m_bar, Qt::LeftButton, {}, QPoint(500, y));
    QCOMPARE(rows(), u"Functions Browser / Address / Links / Tabs Icon"_s);
}

void tst_coolbar::dragToTheFrontOfARow()
{
    drag(u"Tabs"_s, QPoint(2, grip(u"Functions"_s).y()));
    QCOMPARE(rows(), u"Tabs Functions Browser / Address / Links / Icon"_s);
    QCOMPARE(m_bar->band(1)->key(), u"Tabs"_s);
    QVERIFY(band("Icon")->newRow()); // stays a row of its own
    QVERIFY(!band("Functions")->newRow());
}

void tst_coolbar::dragToANewRow_data()
{
    QTest::addColumn<int>("y");
    QTest::addColumn<QString>("result");
    QTest::newRow("above") << -20 << u"Icon / Functions Browser / Address / Links / Tabs"_s;
    QTest::newRow("below") << 1000 << u"Functions Browser / Address / Links / Tabs / Icon"_s;
    QTest::newRow("between") << 0 << u"Functions Browser / Icon / Address / Links / Tabs"_s;
}

void tst_coolbar::dragToANewRow()
{
    QFETCH(int, y);
    QFETCH(QString, result);
    if (y == 0)
        y = band("Address")->geometry().top();
    drag(u"Icon"_s, QPoint(300, y));
    QCOMPARE(rows(), result);
    QVERIFY(band("Icon")->newRow());
    QCOMPARE(band("Icon")->width(), 600.0);
    QTRY_COMPARE(m_bar->height(), m_bar->sizeHint().height());
}

void tst_coolbar::dragOfALoneBandRemovesItsRow()
{
    const int height = m_bar->height();
    drag(u"Address"_s, QPoint(700, grip(u"Functions"_s).y()));
    QCOMPARE(rows(), u"Functions Browser Address / Links / Tabs Icon"_s);
    QTRY_VERIFY(m_bar->height() < height - 20);
    // Dragged to where it already has a row of its own, nothing changes.
    drag(u"Links"_s, QPoint(300, band("Links")->geometry().top() - 1));
    QCOMPARE(rows(), u"Functions Browser Address / Links / Tabs Icon"_s);
}

void tst_coolbar::dragAcrossHiddenBands()
{
    band("Links")->setVisible(false);
    drag(u"Tabs"_s, QPoint(400, grip(u"Address"_s).y()));
    QCOMPARE(rows(), u"Functions Browser / Address Tabs / Icon"_s);
    band("Links")->setVisible(true);
    QCOMPARE(rows(), u"Functions Browser / Address Tabs / Links / Icon"_s);
    QCOMPARE(band("Links")->width(), 9000.0);
}

void tst_coolbar::escapeGivesUp()
{
    const QPoint from = grip(u"Browser"_s);
    QTest::mousePress(m_bar, Qt::LeftButton, {}, from);
    QTest::mouseMove(m_bar, from + QPoint(90, 0));
    QCOMPARE(width("Functions"), 290);
    QCOMPARE(QWidget::keyboardGrabber(), m_bar);
    QTest::keyClick(m_bar, Qt::Key_Escape);
    QCOMPARE(width("Functions"), 200);
    QCOMPARE(band("Functions")->width(), 3000.0);
    QCOMPARE(QWidget::keyboardGrabber(), nullptr);
    QTest::mouseMove(m_bar, from + QPoint(50, 0));
    QTest::mouseRelease(m_bar, Qt::LeftButton, {}, from + QPoint(50, 200));
    QCOMPARE(rows(), u"Functions Browser / Address / Links / Tabs Icon"_s);
    QCOMPARE(width("Functions"), 200);
}

void tst_coolbar::bandHiddenWhileDragged()
{
    const QPoint from = grip(u"Links"_s);
    QTest::mousePress(m_bar, Qt::LeftButton, {}, from);
    QTest::mouseMove(m_bar, from - QPoint(0, 30));
    band("Links")->setVisible(false);
    QTest::mouseMove(m_bar, QPoint(300, 5));
    QTest::mouseRelease(m_bar, Qt::LeftButton, {}, QPoint(300, 5));
    QCOMPARE(rows(), u"Functions Browser / Address / Tabs Icon"_s);
    QCOMPARE(QWidget::keyboardGrabber(), nullptr);
}

void tst_coolbar::doubleClick()
{
    QTest::mouseDClick(m_bar, Qt::LeftButton, {}, grip(u"Functions"_s));
    const int browser = width("Browser");
    QVERIFY(browser < 80);
    QCOMPARE(width("Functions"), 800 - browser);
    QCOMPARE(band("Browser")->width(), 3300.0);
    QTest::mouseDClick(m_bar, Qt::LeftButton, {}, grip(u"Functions"_s));
    QVERIFY(width("Functions") < 80);
    QTest::mouseDClick(m_bar, Qt::LeftButton, {}, grip(u"Browser"_s));
    QVERIFY(width("Browser") < 80);
    QTest::mouseDClick(m_bar, Qt::LeftButton, {}, grip(u"Browser"_s));
    QVERIFY(width("Browser") > 700);
}

void tst_coolbar::doubleClickOnALoneBand()
{
    QTest::mouseDClick(m_bar, Qt::LeftButton, {}, grip(u"Address"_s));
    QCOMPARE(width("Address"), 800);
    QCOMPARE(band("Address")->width(), 9000.0);
}

void tst_coolbar::otherButtonsDoNotDrag()
{
    const QPoint from = grip(u"Browser"_s);
    QTest::mousePress(m_bar, Qt::RightButton, {}, from);
    QTest::mouseMove(m_bar, from + QPoint(90, 0));
    QTest::mouseRelease(m_bar, Qt::RightButton, {}, from + QPoint(90, 0));
    QCOMPARE(width("Functions"), 200);
}

void tst_coolbar::chevron()
{
    QVERIFY(!band("Links")->hasChevron());
    m_window->resize(160, 500);
    QTRY_VERIFY(band("Links")->hasChevron());
    ChevronButton *chevron = chevronOf("Links");
    QVERIFY(chevron);
    QVERIFY(chevron->geometry().left() >= band("Links")->childArea().right());
    QCOMPARE(QAccessible::queryAccessibleInterface(chevron)->text(QAccessible::Name),
             u"More Buttons"_s);

    // From Qt 6.8 on a menu takes a press for the one that opened it while no mouse was ever seen.
    QTest::mouseMove(m_window->windowHandle(), QPoint());
    QTest::mouseClick(chevron, Qt::LeftButton);
    QTRY_VERIFY(chevron->menu()->isVisible());
    QVERIFY(!chevron->menu()->actions().isEmpty());
    QAction *last = chevron->menu()->actions().constLast();
    QCOMPARE(last->text(), u"Maps && Roads"_s);
    QSignalSpy clicked(m_links, &ToolBar::buttonClicked);
    QTest::mouseClick(chevron->menu(), Qt::LeftButton, {},
                      chevron->menu()->actionGeometry(last).center());
    QCOMPARE(clicked.size(), 1);
    QCOMPARE(clicked.at(0).at(1).toInt(), 3);

    m_window->resize(800, 500);
    QTRY_VERIFY(!band("Links")->hasChevron());
}

void tst_coolbar::chevronByKeyboard()
{
    m_window->resize(160, 500);
    QTRY_VERIFY(band("Links")->hasChevron());
    ChevronButton *chevron = chevronOf("Links");
    QVERIFY(chevron->focusPolicy() & Qt::TabFocus);
    chevron->setFocus(Qt::TabFocusReason);
    QSignalSpy clicked(m_links, &ToolBar::buttonClicked);
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Down}) {
        QTest::keyClick(chevron, key);
        QTRY_VERIFY(chevron->menu()->isVisible());
        QTest::keyClick(chevron->menu(), Qt::Key_Return);
        QTRY_VERIFY(!chevron->menu()->isVisible());
    }
    QCOMPARE(clicked.size(), 3);
}

void tst_coolbar::laidOutIsTold()
{
    QSignalSpy laidOut(m_bar, &CoolBar::laidOut);
    band("Links")->setVisible(false);
    QCOMPARE(laidOut.size(), 1);
    drag(u"Browser"_s, grip(u"Browser"_s) + QPoint(60, 0));
    QVERIFY(laidOut.size() > 1);
}

// From the first button on, with the Tab key alone, every band is reached, in the order shown.
void tst_coolbar::keyboardWalk()
{
    m_window->resize(130, 500);
    QTRY_VERIFY(band("Functions")->hasChevron());
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QWidget *first = m_functions->childAt(m_functions->buttonRect(1).center());
    first->setFocus(Qt::TabFocusReason);
    QList<QWidget *> stops;
    do {
        QWidget *stop = QApplication::focusWidget();
        QVERIFY(stop->isVisible());
        stops.append(stop);
        QTest::keyClick(stop, Qt::Key_Tab);
    } while (QApplication::focusWidget() != first && stops.size() < 20);

    QCOMPARE(placesOf(stops),
             u"Functions Functions+ |Browser |Address Address |Links Links Links+ |Tabs Tabs "
             "|Icon |Functions"_s);
}

// "|" before the name of a band stands for its gripper, "+" behind it for its chevron.
QString tst_coolbar::placesOf(const QList<QWidget *> &stops) const
{
    QStringList places;
    for (QWidget *stop : stops) {
        const QPoint at = stop->mapTo(m_bar, stop->rect().center());
        for (int i = 1; i <= 6; ++i) {
            const CoolBand *holder = m_bar->band(i);
            if (!holder->geometry().contains(at))
                continue;
            if (qobject_cast<BandGrip *>(stop))
                places += u'|' + holder->key();
            else
                places +=
                    qobject_cast<ChevronButton *>(stop) ? holder->key() + u'+' : holder->key();
        }
    }
    return places.join(u' ');
}

// The Tab key follows what a drag has put elsewhere.
void tst_coolbar::keyboardWalkAfterADrag()
{
    drag(u"Tabs"_s, QPoint(2, grip(u"Functions"_s).y()));
    drag(u"Address"_s, QPoint(300, 1000));
    QCOMPARE(rows(), u"Tabs Functions Browser / Links / Icon / Address"_s);
    m_links->addButton(u"late"_s, u"late"_s, {}, ToolBar::Style::Push, u"late"_s);
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    auto *first = m_bar->findChild<BandGrip *>(u"gripTabs"_s);
    for (const Qt::Key key : {Qt::Key_Tab, Qt::Key_Backtab}) {
        first->setFocus(Qt::TabFocusReason);
        QList<QWidget *> stops;
        do {
            stops.append(QApplication::focusWidget());
            QTest::keyClick(stops.last(), key);
        } while (QApplication::focusWidget() != first && stops.size() < 20);
        QCOMPARE(
            placesOf(stops),
            key == Qt::Key_Tab
                ? u"|Tabs Tabs |Functions Functions |Browser |Links Links |Icon |Address Address"_s
                : u"|Tabs Address |Address |Icon Links |Links |Browser Functions |Functions Tabs"_s);
    }
}

static void collectNames(QAccessibleInterface *node, QStringList &names)
{
    if (node->state().invisible)
        return;
    if (node->state().focusable)
        names += node->text(QAccessible::Name);
    for (int i = 0; i < node->childCount(); ++i)
        collectNames(node->child(i), names);
}

void tst_coolbar::screenReaderWalk()
{
    QStringList names;
    collectNames(QAccessible::queryAccessibleInterface(m_bar), names);
    names.sort();
    QCOMPARE(names,
             QStringList({u"Address:"_s, u"Maps & Roads"_s, u"Move Address"_s, u"Move Browser"_s,
                          u"Move Functions"_s, u"Move Icon"_s, u"Move Links"_s, u"Move Tabs"_s,
                          u"New"_s, u"News"_s, u"Page"_s, u"Profile"_s, u"Save"_s, u"Weather"_s}));
    band("Address")->setVisible(false);
    names.clear();
    collectNames(QAccessible::queryAccessibleInterface(m_bar), names);
    QVERIFY(!names.contains(u"Address:"_s));
}

QTEST_MAIN(tst_coolbar)
#include "tst_coolbar.moc"
