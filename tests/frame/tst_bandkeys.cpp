#include "AddressBox.h"
#include "BandGrip.h"
#include "BrowserWindow.h"
#include "ChevronButton.h"
#include "CoolBand.h"
#include "CoolBar.h"
#include "FakeWebBrowser.h"
#include "FavoritesHome.h"
#include "LinksBar.h"
#include "MainWindow.h"
#include "PageAsks.h"
#include "PageQuestions.h"
#include "TempAppFolder.h"
#include "ToolBar.h"

#include <QAccessible>
#include <QAction>
#include <QtTest>

/// The strip of a real frame without a mouse: by keys alone, and as a screen reader meets it.
class tst_BandKeys : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void f6GoesThroughAllPlaces();
    void f6PassesOverWhatIsHidden();
    void f6ReachesWhatThePageAsks();
    void tabAndArrowsReachEveryButton();
    void stepsOfABand_data();
    void stepsOfABand();
    void everyBandReachesEveryRow_data();
    void everyBandReachesEveryRow();
    void shiftMovesTheEdge();
    void spaceMakesWideAndNarrow();
    void otherKeysDoNothing();
    void arrowsInButtonsReachNoGripper_data();
    void arrowsInButtonsReachNoGripper();
    void movesAreKept();
    void gripsForScreenReaders_data();
    void gripsForScreenReaders();
    void movedByAScreenReader();
    void bandsHaveNames();
    void namesAreTranslated();

private:
    CoolBar &bar() const { return *m_frame->findChild<CoolBar *>(); }
    BandGrip *grip(const QString &band) const
    {
        return m_frame->findChild<BandGrip *>("grip"_L1 + band);
    }
    QAccessibleInterface *face(const QString &band) const
    {
        return QAccessible::queryAccessibleInterface(grip(band));
    }
    QString rows() const;
    QString focusPlace() const;
    void press(Qt::Key key, Qt::KeyboardModifiers held = {}) const
    {
        QTest::keyClick(QApplication::focusWidget(), key, held);
    }

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<FavoritesHome> m_home;
    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<MainWindow> m_frame;
};

namespace {
const QString designRows = u"Functions Browser / Address / Links / Tabs Icon"_s;
}

void tst_BandKeys::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    QVERIFY(m_folder->writeSettings("[Options]\r\nShow-Splash=0\r\n[Settings]\r\nAskOnExit=0\r\n"));
    m_home = std::make_unique<FavoritesHome>();
    m_home->writeLink(u"Links/News.url"_s, "http://news/");
    m_engine = std::make_unique<FakeEngine>();
    m_frame = std::make_unique<MainWindow>();
    m_frame->setCommandLine(u"http://one.example/"_s);
    m_frame->load();
    m_frame->translate();
    m_frame->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_frame.get()));
    const auto *links = m_frame->findChild<ToolBar *>(u"tbLinks"_s);
    QTRY_COMPARE(links->buttonCount(), 2);
    QTRY_VERIFY(links->findChild<QWidget *>() && links->findChild<QWidget *>()->isVisible());
    QTRY_COMPARE(rows(), designRows);
    grip(u"Functions"_s)->setFocus();
}

void tst_BandKeys::cleanup()
{
    m_frame.reset();
    m_engine.reset();
    m_home.reset();
    m_folder.reset();
}

QString tst_BandKeys::rows() const
{
    QMap<int, QMap<int, QString>> places;
    for (int i = 1; i <= bar().bandCount(); ++i) {
        const QRect place = bar().band(i)->geometry();
        if (!place.isNull())
            places[place.top()][place.left()] = bar().band(i)->key();
    }
    QStringList lines;
    for (const auto &row : std::as_const(places))
        lines += QStringList(row.values()).join(u' ');
    return lines.join(u" / "_s);
}

// The band whose child has the keyboard; "page" outside of the strip.
QString tst_BandKeys::focusPlace() const
{
    const QWidget *focus = QApplication::focusWidget();
    for (int i = 1; i <= bar().bandCount(); ++i) {
        if (bar().band(i)->child()->isAncestorOf(focus))
            return bar().band(i)->key();
    }
    return u"page"_s;
}

void tst_BandKeys::f6GoesThroughAllPlaces()
{
    QStringList walk;
    for (int i = 0; i < 6; ++i) {
        press(Qt::Key_F6);
        walk += focusPlace();
    }
    QCOMPARE(walk,
             QStringList(
                 {u"Browser"_s, u"Address"_s, u"Links"_s, u"Tabs"_s, u"page"_s, u"Functions"_s}));
    walk.clear();
    for (int i = 0; i < 6; ++i) {
        press(Qt::Key_F6, Qt::ShiftModifier);
        walk += focusPlace();
    }
    QCOMPARE(walk,
             QStringList(
                 {u"page"_s, u"Tabs"_s, u"Links"_s, u"Address"_s, u"Browser"_s, u"Functions"_s}));
}

/// It stands before the page, from both sides, whether it takes an answer yet or not.
void tst_BandKeys::f6ReachesWhatThePageAsks()
{
    BrowserWindow *form = browserForms().first();
    form->focusContents();
    PageQuestion question;
    question.kind = u"kind"_s;
    question.text = u"May I?"_s;
    question.yes = u"Yes"_s;
    question.no = u"No"_s;
    PageQuestion::Reply reply;
    question.done = [&reply](PageQuestion::Reply given) { reply = given; };
    QVERIFY(form->questions()->ask(question));
    PageQuestionBox *strip = PageAsks::shownIn(form);
    QWidget *page = QApplication::focusWidget();
    QVERIFY(!strip->isAncestorOf(page));
    press(Qt::Key_F6, Qt::ShiftModifier);
    QVERIFY(strip->hasFocus());
    QTRY_VERIFY(PageAsks::yes(strip)->hasFocus());
    press(Qt::Key_F6);
    QCOMPARE(QApplication::focusWidget(), page);
    press(Qt::Key_F6, Qt::ShiftModifier);
    QCOMPARE(QApplication::focusWidget(), PageAsks::yes(strip));
    press(Qt::Key_F6, Qt::ShiftModifier);
    QCOMPARE(focusPlace(), u"Tabs"_s);
    press(Qt::Key_F6);
    press(Qt::Key_Escape);
    QVERIFY(reply.answer == PageQuestion::Answer::No);
    QCOMPARE(focusPlace(), u"Tabs"_s);
}

void tst_BandKeys::f6PassesOverWhatIsHidden()
{
    m_frame->run(u"mnuViewToolBarAddressBar"_s);
    m_frame->run(u"mnuViewToolBarTabStrip"_s);
    m_frame->run(u"mnuFavoritesShow"_s);
    grip(u"Browser"_s)->setFocus();
    press(Qt::Key_F6);
    QCOMPARE(focusPlace(), u"Links"_s);
    press(Qt::Key_F6);
    QVERIFY(m_frame->findChild<QWidget *>(u"FavoritesBar1"_s)
                ->isAncestorOf(QApplication::focusWidget()));
    press(Qt::Key_F6);
    QCOMPARE(focusPlace(), u"page"_s);
    m_frame->run(u"mnuFavoritesShow"_s);
    m_frame->run(u"mnuViewToolBarVisible"_s);
    press(Qt::Key_F6);
    QCOMPARE(focusPlace(), u"page"_s);
}

// Tab goes from band to band, the arrows inside; Return on each button is its click.
void tst_BandKeys::tabAndArrowsReachEveryButton()
{
    QStringList reached;
    const QWidget *first = QApplication::focusWidget();
    do {
        QWidget *stop = QApplication::focusWidget();
        auto *holder = qobject_cast<ToolBar *>(stop->parentWidget());
        reached += QAccessible::queryAccessibleInterface(stop)->text(QAccessible::Name);
        if (holder) {
            for (press(Qt::Key_Right); QApplication::focusWidget() != stop; press(Qt::Key_Right))
                reached += QAccessible::queryAccessibleInterface(QApplication::focusWidget())
                               ->text(QAccessible::Name);
        }
        press(Qt::Key_Tab);
    } while (QApplication::focusWidget() != first && bar().isAncestorOf(QApplication::focusWidget())
             && reached.size() < 40);
    QCOMPARE(reached,
             QStringList({u"Move Functions"_s,
                          u"New Window"_s,
                          u"Open Profile"_s,
                          u"Save Profile"_s,
                          u"Popup Killer"_s,
                          u"Favorites"_s,
                          u"Font Size"_s,
                          u"Move Navigation"_s,
                          u"Backwards"_s,
                          u"Forwards"_s,
                          u"Stop"_s,
                          u"Refresh"_s,
                          u"Home"_s,
                          u"Search"_s,
                          u"Move Address Bar"_s,
                          u"http://one.example/"_s,
                          u"Move Favorite Links"_s,
                          u"News"_s,
                          u"Move Tab Strip"_s,
                          u"Loading..."_s,
                          u"Move Icon"_s}));
}

void tst_BandKeys::stepsOfABand_data()
{
    QTest::addColumn<QString>("band");
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("result");
    QTest::newRow("right") << u"Functions"_s << u"R"_s
                           << u"Browser Functions / Address / Links / Tabs Icon"_s;
    QTest::newRow("right and back") << u"Functions"_s << u"RL"_s << designRows;
    QTest::newRow("left at the left") << u"Functions"_s << u"L"_s << designRows;
    QTest::newRow("right at the right") << u"Icon"_s << u"R"_s << designRows;
    QTest::newRow("left") << u"Icon"_s << u"L"_s
                          << u"Functions Browser / Address / Links / Icon Tabs"_s;
    QTest::newRow("own row below")
        << u"Functions"_s << u"D"_s << u"Browser / Functions / Address / Links / Tabs Icon"_s;
    QTest::newRow("own row above")
        << u"Browser"_s << u"U"_s << u"Browser / Functions / Address / Links / Tabs Icon"_s;
    QTest::newRow("to the row above")
        << u"Address"_s << u"U"_s << u"Functions Browser Address / Links / Tabs Icon"_s;
    QTest::newRow("to the row below")
        << u"Address"_s << u"D"_s << u"Functions Browser / Links Address / Tabs Icon"_s;
    QTest::newRow("up and down") << u"Address"_s << u"UD"_s << designRows;
    QTest::newRow("to the front of another row")
        << u"Links"_s << u"UL"_s << u"Functions Browser / Links Address / Tabs Icon"_s;
    QTest::newRow("a new last row")
        << u"Icon"_s << u"D"_s << u"Functions Browser / Address / Links / Tabs / Icon"_s;
    QTest::newRow("below the last row")
        << u"Icon"_s << u"DDD"_s << u"Functions Browser / Address / Links / Tabs / Icon"_s;
    QTest::newRow("above the first row")
        << u"Browser"_s << u"UUU"_s << u"Browser / Functions / Address / Links / Tabs Icon"_s;
}

void tst_BandKeys::stepsOfABand()
{
    QFETCH(QString, band);
    QFETCH(QString, keys);
    QFETCH(QString, result);
    grip(band)->setFocus();
    const QMap<QChar, Qt::Key> codes{
        {u'L', Qt::Key_Left}, {u'R', Qt::Key_Right}, {u'U', Qt::Key_Up}, {u'D', Qt::Key_Down}};
    for (const QChar key : std::as_const(keys)) {
        press(codes.value(key));
        QCOMPARE(QApplication::focusWidget(), grip(band));
    }
    QCOMPARE(rows(), result);
    QTRY_COMPARE(bar().height(), bar().sizeHint().height());
}

void tst_BandKeys::everyBandReachesEveryRow_data()
{
    QTest::addColumn<QString>("band");
    for (const char *key : {"Functions", "Browser", "Address", "Links", "Tabs", "Icon"})
        QTest::newRow(key) << QString::fromLatin1(key);
}

void tst_BandKeys::everyBandReachesEveryRow()
{
    QFETCH(QString, band);
    grip(band)->setFocus();
    for (int i = 0; i < 12; ++i)
        press(Qt::Key_Up);
    QCOMPARE(bar().band(1)->key(), band);
    QCOMPARE(rows().section(u" / "_s, 0, 0), band);
    for (int i = 0; i < 12; ++i) {
        press(Qt::Key_Down);
        for (int position = 1; position <= 6; ++position)
            QVERIFY(bar().band(position)->geometry().width() > 20);
    }
    QCOMPARE(bar().band(6)->key(), band);
    QCOMPARE(rows().section(u" / "_s, -1), band);
}

void tst_BandKeys::shiftMovesTheEdge()
{
    const int before = bar().band(u"Browser"_s)->geometry().left();
    grip(u"Browser"_s)->setFocus();
    press(Qt::Key_Right, Qt::ShiftModifier);
    QCOMPARE(bar().band(u"Browser"_s)->geometry().left(), before + 15);
    QCOMPARE(bar().band(u"Functions"_s)->width(), (before + 15) * 15.0);
    for (int i = 0; i < 100; ++i)
        press(Qt::Key_Left, Qt::ShiftModifier);
    QCOMPARE(rows(), designRows);
    QVERIFY(bar().band(u"Functions"_s)->geometry().width() < 80);
}

void tst_BandKeys::spaceMakesWideAndNarrow()
{
    CoolBand &functions = *bar().band(u"Functions"_s);
    press(Qt::Key_Space);
    QVERIFY(functions.geometry().width() > bar().width() - 80);
    press(Qt::Key_Return);
    QVERIFY(functions.geometry().width() < 80);
    QVERIFY(functions.hasChevron());
}

void tst_BandKeys::otherKeysDoNothing()
{
    for (const Qt::KeyboardModifier held : {Qt::ControlModifier, Qt::AltModifier}) {
        press(Qt::Key_Right, held);
        press(Qt::Key_Down, held);
    }
    press(Qt::Key_Down, Qt::ShiftModifier);
    press(Qt::Key_A);
    QCOMPARE(rows(), designRows);
}

void tst_BandKeys::arrowsInButtonsReachNoGripper_data()
{
    QTest::addColumn<int>("key");
    for (const Qt::Key key : {Qt::Key_Left, Qt::Key_Right, Qt::Key_Up, Qt::Key_Down})
        QTest::newRow(qPrintable(QKeySequence(key).toString())) << int(key);
}

/// A second one would move the band.
void tst_BandKeys::arrowsInButtonsReachNoGripper()
{
    QFETCH(int, key);
    m_frame->resize(420, 600);
    const QString before = rows();
    for (const char *item : {"mnuViewSearchBar", "mnuFavoritesShow"}) {
        m_frame->run(QString::fromLatin1(item));
        QTRY_VERIFY(!bar().findChildren<ChevronButton *>().isEmpty());
        const QList<QAbstractButton *> buttons = m_frame->findChildren<QAbstractButton *>();
        for (QAbstractButton *button : buttons) {
            if (!button->isVisible() || !button->isEnabled()
                || !(button->focusPolicy() & Qt::TabFocus))
                continue;
            button->setFocus();
            QVERIFY(button->hasFocus());
            for (int i = 0; i < 3; ++i) {
                press(Qt::Key(key));
                QVERIFY2(!qobject_cast<BandGrip *>(QApplication::focusWidget()),
                         qPrintable(button->objectName() + button->accessibleName()));
            }
        }
        m_frame->run(QString::fromLatin1(item));
    }
    QCOMPARE(rows(), before);
}

void tst_BandKeys::movesAreKept()
{
    grip(u"Address"_s)->setFocus();
    press(Qt::Key_Up);
    QVERIFY(m_frame->close());
    QCOMPARE(m_folder->setting(u"ToolBar"_s, u"NewRow2"_s), u"False"_s);
    QCOMPARE(m_folder->setting(u"ToolBar"_s, u"NewRow3"_s), u"False"_s);
    QCOMPARE(m_folder->setting(u"ToolBar"_s, u"NewRow4"_s), u"True"_s);
    QCOMPARE(m_folder->setting(u"ToolBar"_s, u"NewRow1"_s), QString());
}

void tst_BandKeys::gripsForScreenReaders_data()
{
    QTest::addColumn<QString>("band");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("place");
    QTest::newRow("1") << u"Functions"_s << u"Move Functions"_s << u"Row 1, place 1 of 2"_s;
    QTest::newRow("2") << u"Browser"_s << u"Move Navigation"_s << u"Row 1, place 2 of 2"_s;
    QTest::newRow("3") << u"Address"_s << u"Move Address Bar"_s << u"Row 2, place 1 of 1"_s;
    QTest::newRow("4") << u"Links"_s << u"Move Favorite Links"_s << u"Row 3, place 1 of 1"_s;
    QTest::newRow("5") << u"Tabs"_s << u"Move Tab Strip"_s << u"Row 4, place 1 of 2"_s;
    QTest::newRow("6") << u"Icon"_s << u"Move Icon"_s << u"Row 4, place 2 of 2"_s;
}

void tst_BandKeys::gripsForScreenReaders()
{
    QFETCH(QString, band);
    QFETCH(QString, name);
    QFETCH(QString, place);
    QCOMPARE(face(band)->role(), QAccessible::Button);
    QCOMPARE(face(band)->text(QAccessible::Name), name);
    QCOMPARE(face(band)->text(QAccessible::Description), place);
    QVERIFY(face(band)->state().focusable && !face(band)->state().invisible);
    const QRect handle = bar().band(band)->handle();
    QVERIFY(handle.contains(grip(band)->geometry()));
    QCOMPARE(face(band)->rect().topLeft(), bar().mapToGlobal(handle.topLeft()));
    bar().band(band)->setVisible(false);
    QVERIFY(face(band)->state().invisible);
}

void tst_BandKeys::movedByAScreenReader()
{
    QAccessibleActionInterface *actions = face(u"Links"_s)->actionInterface();
    const QString press = QAccessibleActionInterface::pressAction();
    const QString setFocus = QAccessibleActionInterface::setFocusAction();
    QCOMPARE(
        actions->actionNames(),
        QStringList({press, u"moveLeft"_s, u"moveRight"_s, u"moveUp"_s, u"moveDown"_s, setFocus}));
    const auto told = [this] { return face(u"Links"_s)->text(QAccessible::Description); };
    actions->doAction(u"moveUp"_s);
    QCOMPARE(rows(), u"Functions Browser / Address Links / Tabs Icon"_s);
    QCOMPARE(told(), u"Row 2, place 2 of 2"_s);
    actions->doAction(u"moveLeft"_s);
    QCOMPARE(rows(), u"Functions Browser / Links Address / Tabs Icon"_s);
    QCOMPARE(told(), u"Row 2, place 1 of 2"_s);
    actions->doAction(press);
    QVERIFY(bar().band(u"Links"_s)->geometry().width() > bar().width() / 2);
    actions->doAction(u"moveDown"_s);
    actions->doAction(u"moveRight"_s);
    QCOMPARE(rows(), u"Functions Browser / Address / Links / Tabs Icon"_s);
    actions->doAction(setFocus);
    QCOMPARE(QApplication::focusWidget(), grip(u"Links"_s));
}

void tst_BandKeys::bandsHaveNames()
{
    const auto name = [this](const char *child) {
        auto *widget = m_frame->findChild<QWidget *>(QLatin1StringView(child));
        return QAccessible::queryAccessibleInterface(widget)->text(QAccessible::Name);
    };
    QCOMPARE(name("tbFunctions"), u"Functions"_s);
    QCOMPARE(name("tbBrowser"), u"Navigation"_s);
    QCOMPARE(name("tbLinks"), u"Favorite Links"_s);
    QCOMPARE(name("tbWindows"), u"Tab Strip"_s);
    QCOMPARE(name("pctIcon"), u"Icon"_s);
}

void tst_BandKeys::namesAreTranslated()
{
    QVERIFY(m_folder->writeLanguage(u"English"_s,
                                    "[CoolBar]\r\nstrMove=%1 verschieben\r\nstrLinks=Linkleiste\r\n"
                                    "strPlace=%3 in %1\r\n"));
    m_frame->translate();
    QCOMPARE(face(u"Links"_s)->text(QAccessible::Name), u"Linkleiste verschieben"_s);
    QCOMPARE(face(u"Links"_s)->text(QAccessible::Description), u"1 in 3"_s);
    QVERIFY(m_folder->writeLanguage(u"English"_s, "[CoolBar]\r\nstrMove=Bewegen\r\n"));
    m_frame->translate();
    QCOMPARE(face(u"Links"_s)->text(QAccessible::Name), u"Linkleiste"_s);
}

QTEST_MAIN(tst_BandKeys)
#include "tst_bandkeys.moc"
