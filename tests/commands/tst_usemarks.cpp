#include <QAbstractButton>
#include <QAction>
#include <QMdiArea>
#include <QMenu>
#include <QtTest>

#include "BrowserWindow.h"
#include "FakeWebBrowser.h"
#include "ProgramWithoutEngine.h"
#include "ScreenReader.h"
#include "StatusStrip.h"
#include "TabStrip.h"
#include "UseMark.h"

using namespace Qt::StringLiterals;

/// What windows use of camera, microphone and screen, in the whole program.
class tst_UseMarks : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void clickOnTheTabEndsIt();
    void clickInTheStripEndsIt();
    void wordsThatDoNotFitAreElided();
    void keyboardIsThePages_data();
    void keyboardIsThePages();
    void screenReaderIsTold();
    void soundIsTurnedByClickAndMenu();
    void wantedWindowComesToTheFront();

private:
    TabStrip &tabs() const { return *m_program->frame->findChild<TabStrip *>(); }
    static BrowserWindow *form(int number) { return browserForms().at(number); }
    static FakeWebBrowser *browser(int number) { return FakeWebBrowser::made().at(number); }

    std::unique_ptr<ProgramWithoutEngine> m_program;
};

void tst_UseMarks::init()
{
    m_program = std::make_unique<ProgramWithoutEngine>();
    QVERIFY(m_program->folder.isValid());
    m_program->start();
    m_program->frame->openBrowserWindow(u"http://one.example/"_s, WindowState::Maximized);
    m_program->frame->openBrowserWindow(u"http://two.example/"_s, WindowState::Maximized);
    QVERIFY(browserForms().size() >= 2);
}

void tst_UseMarks::cleanup()
{
    m_program.reset();
}

/// Also of a window behind another.
void tst_UseMarks::clickOnTheTabEndsIt()
{
    const QMdiSubWindow *active = m_program->frame->activeChild();
    QVERIFY(active != form(0));
    browser(0)->events->useChange(u"Camera in use"_s);
    QWidget *tab = tabs().tab(form(0)->tabKey());
    QVERIFY(tab->accessibleName().endsWith("Camera in use"_L1));
    QTest::mouseClick(tab, Qt::LeftButton, {}, QPoint(tab->width() - 10, tab->height() / 2));
    QCOMPARE(browser(0)->usesEnded, 1);
    QCOMPARE(browser(1)->usesEnded, 0);
    QCOMPARE(m_program->frame->activeChild(), active);
}

void tst_UseMarks::clickInTheStripEndsIt()
{
    const int last = int(browserForms().size()) - 1;
    auto *mark = form(last)->statusBar()->findChild<QAbstractButton *>(u"cmdEndUse"_s);
    QVERIFY(mark && !mark->isVisible());
    browser(last)->events->useChange(u"Microphone in use"_s);
    QVERIFY(mark->isVisible());
    QTest::mouseClick(mark, Qt::LeftButton);
    QCOMPARE(browser(last)->usesEnded, 1);
    browser(last)->events->useChange({});
    QVERIFY(!mark->isVisible());
}

/// Nothing is painted up to the end, as of a word that is cut off.
void tst_UseMarks::wordsThatDoNotFitAreElided()
{
    UseMark mark(nullptr);
    mark.setUse(QString(200, u'—'));
    mark.resize(120, mark.sizeHint().height());
    const QImage image = mark.grab().toImage();
    for (int y = 0; y < image.height(); ++y)
        QCOMPARE(image.pixel(image.width() - 2, y), image.pixel(0, 0));
}

void tst_UseMarks::keyboardIsThePages_data()
{
    QTest::addColumn<bool>("isWaiting");
    QTest::newRow("in front at once") << false;
    QTest::newRow("behind another at first") << true;
}

/// A window comes to the front with a mark in it, and nobody has pressed Tab.
void tst_UseMarks::keyboardIsThePages()
{
    QFETCH(bool, isWaiting);
    m_program->frame->openBrowserWindow(u"http://three.example/"_s, WindowState::Maximized);
    BrowserWindow *used = form(int(browserForms().size()) - 1);
    browser(int(browserForms().size()) - 1)->events->useChange(u"Camera in use"_s);
    if (isWaiting)
        m_program->frame->openBrowserWindow(u"http://four.example/"_s, WindowState::Maximized);
    m_program->frame->activateWindow();
    QTRY_VERIFY(m_program->frame->isActiveWindow());
    auto *area = m_program->frame->findChild<QMdiArea *>();
    for (int i = 0; i < 3; ++i) {
        area->setActiveSubWindow(form(0));
        area->setActiveSubWindow(used);
        const QWidget *focus = QApplication::focusWidget();
        QVERIFY2(!focus || focus->objectName() != "cmdEndUse"_L1, qPrintable(QString::number(i)));
    }
}

void tst_UseMarks::soundIsTurnedByClickAndMenu()
{
    const int last = int(browserForms().size()) - 1;
    QCOMPARE(m_program->frame->activeChild(), form(last));
    browser(0)->events->soundChange(PageSound::Playing);
    QWidget *tab = tabs().tab(form(0)->tabKey());
    QTest::mouseClick(tab, Qt::LeftButton, {}, QPoint(tab->width() - 10, tab->height() / 2));
    QVERIFY(browser(0)->isMuted());
    QCOMPARE(m_program->frame->activeChild(), form(last));
    const auto choose = [this](const QString &name) {
        QAction *item = m_program->frame->menuItem(name);
        auto *menu = qobject_cast<QMenu *>(item->parent());
        QVERIFY(menu);
        emit menu->aboutToShow();
        item->trigger();
        emit menu->aboutToShow();
    };
    const auto item = [this](const QString &name) { return m_program->frame->menuItem(name); };
    choose(u"mnuWindowMute"_s);
    QVERIFY(browser(last)->isMuted() && item(u"mnuWindowMute"_s)->isChecked());
    choose(u"mnuWindowMute"_s);
    QVERIFY(!browser(last)->isMuted() && !item(u"mnuWindowMute"_s)->isChecked());
    browser(0)->setMuted(false);
    choose(u"mnuWindowMuteOthers"_s);
    for (int i = 0; i < last; ++i)
        QVERIFY(browser(i)->isMuted());
    QVERIFY(!browser(last)->isMuted());
    QVERIFY(!item(u"mnuWindowMuteOthers"_s)->isEnabled());
}

void tst_UseMarks::screenReaderIsTold()
{
    const int last = int(browserForms().size()) - 1;
    browser(last)->events->useChange(u"Camera in use"_s);
    ScreenReader reader;
    QVERIFY(reader.read(form(last)->statusBar()).contains("Camera in use"_L1));
    QVERIFY(reader.read(&tabs()).contains("Camera in use"_L1));
}

void tst_UseMarks::wantedWindowComesToTheFront()
{
    QVERIFY(m_program->frame->activeChild() != form(0));
    m_program->frame->showMinimized();
    browser(0)->events->wanted();
    QCOMPARE(m_program->frame->activeChild(), form(0));
    QVERIFY(tabs().isPressed(form(0)->tabKey()));
    QTRY_VERIFY(!m_program->frame->isMinimized());
}

QTEST_MAIN(tst_UseMarks)
#include "tst_usemarks.moc"
