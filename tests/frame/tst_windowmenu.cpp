#include "WindowMenu.h"

#include <QAction>
#include <QMainWindow>
#include <QMdiSubWindow>
#include <QMenu>
#include <QMenuBar>
#include <QSignalSpy>
#include <QTest>
#include <QTextEdit>
#include <QVBoxLayout>
#include <memory>

#include "BrowserWindow.h"
#include "FakeWebBrowser.h"
#include "Forms.h"
#include "Frame.h"
#include "MdiArea.h"
#include "TabStrip.h"

using namespace Qt::StringLiterals;

namespace {

/// A frame with a Window menu, a tab strip and an area; it opens plain windows.
class TestFrame : public Frame {
public:
    TestFrame()
    {
        auto *body = new QWidget;
        auto *layout = new QVBoxLayout(body);
        layout->setContentsMargins({});
        strip = new TabStrip(QIcon());
        area = new MdiArea;
        layout->addWidget(strip);
        layout->addWidget(area);
        m_window.setCentralWidget(body);
        menu = m_window.menuBar()->addMenu(u"&Window"_s);
        for (const char *name :
             {"mnuWindowNewWindow", "mnuWindowMinimizeAll", "mnuWindowRestoreAll",
              "mnuWindowCascade", "mnuWindowTileHorizontal", "mnuWindowTileVertical",
              "mnuWindowOpenBrowsers", "mnuWindowCloseAll"}) {
            QAction *item = menu->addAction(QString::fromLatin1(name));
            item->setObjectName(item->text());
            QObject::connect(item, &QAction::triggered, menu, [this, item] {
                if (m_handlers.contains(item->objectName()))
                    run(item->objectName());
            });
        }
        openBrowsers = new QMenu(menu);
        menuItem(u"mnuWindowOpenBrowsers"_s)->setMenu(openBrowsers);
        m_window.resize(900, 600);
        m_window.show();
    }

    ~TestFrame() override
    {
        // The windows speak to the strip as they go.
        qDeleteAll(area->subWindowList());
    }

    QWidget *window() override { return &m_window; }
    void adopt(QMdiSubWindow *child) override { area->adopt(child); }
    QMdiSubWindow *activeChild() const override { return area->activeChild(); }
    void openBrowserWindow(const QString &, WindowState) override { }
    void openPrivateWindow(const QString &, WindowState) override { }
    void navigateActive(const QString &) override { }
    WindowState newWindowState() const override
    {
        return activeChild() ? WindowState::AsOthers : WindowState::Maximized;
    }
    bool openProfile(const QString &, bool) override { return false; }
    WindowTabs &windowTabs() override { return *strip; }
    void setAddressText(const QString &url) override { addressText = url; }
    void addAddress(const QString &, bool) override { }
    QAction *menuItem(const QString &name) const override
    {
        return menu->findChild<QAction *>(name);
    }
    void handle(const QString &name, const Handler &handler) override
    {
        m_handlers[name] = handler;
    }
    void handleToggle(const QAction *, const ToggleHandler &) override { }
    void beforeOpening(const QString &, const Handler &) override { }
    void run(const QString &name) override
    {
        if (m_handlers.contains(name))
            m_handlers[name]();
    }
    int navigationFlags() const override { return 0; }
    void setNavigationFlags(int) override { }

    BrowserWindow *open(const QString &title, bool maximized = false)
    {
        auto *child = new BrowserWindow(*this);
        adopt(child);
        if (maximized)
            child->showMaximized();
        else
            child->show();
        child->setWindowTitle(title);
        page(child)->location = u"http://host/"_s + title.left(10);
        return child;
    }

    static FakeWebBrowser *page(const BrowserWindow *window)
    {
        return static_cast<FakeWebBrowser *>(window->browser());
    }

    QWidget *tab(const BrowserWindow *window) const { return strip->tab(window->tabKey()); }

    TabStrip *strip = nullptr;
    MdiArea *area = nullptr;
    QMenu *menu = nullptr;
    QMenu *openBrowsers = nullptr;
    QString addressText;

private:
    QMainWindow m_window;
    QHash<QString, Handler> m_handlers;
};

}

class tst_WindowMenu : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { m_frame.reset(); }
    void minimizeAllLeavesOtherForms();
    void arrangements();
    void openBrowsersListsWindows();
    void openBrowsersNamesUntitledWindows();
    void openBrowsersActivates();
    void openBrowsersWithoutWindows();
    void openBrowsersLongTitles();
    void openBrowsersTwoHundred();
    void windowGoneWhileListed();
    void tabClickActivates();
    void tabClickRestoresMinimized();
    void tabClickUnderMaximized();
    void tabOfAGoneWindow_data();
    void tabOfAGoneWindow();
    void middleClickCloses();
    void rightReleaseShowsTheList();

private:
    QAction *item(const char *name) const { return m_frame->menuItem(QString::fromLatin1(name)); }
    QStringList listed();

    FakeEngine m_engine;
    std::unique_ptr<TestFrame> m_frame;
};

void tst_WindowMenu::init()
{
    m_frame = std::make_unique<TestFrame>();
    registerWindowCommands(*m_frame, *m_frame->area, *m_frame->openBrowsers);
    connectTabStrip(*m_frame->strip, *m_frame, *m_frame->openBrowsers);
    QVERIFY(QTest::qWaitForWindowExposed(m_frame->window()));
}

QStringList tst_WindowMenu::listed()
{
    m_frame->openBrowsers->popup(m_frame->window()->mapToGlobal(QPoint(0, 0)));
    m_frame->openBrowsers->hide();
    QStringList result;
    for (const QAction *action : m_frame->openBrowsers->actions())
        result.append((action->isChecked() ? u"*"_s : QString()) + action->text());
    return result;
}

void tst_WindowMenu::minimizeAllLeavesOtherForms()
{
    QWidget viewer;
    viewer.setObjectName(u"frmSource"_s);
    Forms::add(&viewer);
    viewer.show();
    QVERIFY(QTest::qWaitForWindowExposed(&viewer));
    BrowserWindow *one = m_frame->open(u"One"_s);
    BrowserWindow *two = m_frame->open(u"Two"_s, true);
    item("mnuWindowMinimizeAll")->trigger();
    QVERIFY(one->isMinimized() && two->isMinimized());
    QVERIFY(!viewer.isMinimized());
    QVERIFY(!m_frame->window()->isMinimized());
    item("mnuWindowRestoreAll")->trigger();
    for (const QMdiSubWindow *child : {one, two})
        QVERIFY(!child->isMinimized() && !child->isMaximized());
}

void tst_WindowMenu::arrangements()
{
    BrowserWindow *one = m_frame->open(u"One"_s);
    BrowserWindow *two = m_frame->open(u"Two"_s);
    const QRect area = m_frame->area->viewport()->rect();
    item("mnuWindowTileHorizontal")->trigger();
    QCOMPARE(one->width(), area.width());
    QCOMPARE(two->width(), area.width());
    QVERIFY(!one->geometry().intersects(two->geometry()));
    item("mnuWindowTileVertical")->trigger();
    QCOMPARE(one->height(), area.height());
    QVERIFY(!one->geometry().intersects(two->geometry()));
    item("mnuWindowCascade")->trigger();
    QCOMPARE(one->size(), two->size());
    QVERIFY(one->geometry().intersects(two->geometry()));
}

void tst_WindowMenu::openBrowsersListsWindows()
{
    m_frame->open(u"Q&A of the day"_s);
    BrowserWindow *two = m_frame->open(u"Two"_s);
    m_frame->open(u"Three"_s);
    m_frame->area->setActiveSubWindow(two);
    QCOMPARE(listed(), (QStringList{u"Q&&A of the day"_s, u"*Two"_s, u"Three"_s}));
    two->setWindowTitle(u"Another"_s);
    QCOMPARE(listed().at(1), u"*Another"_s);
    two->close();
    QTRY_COMPARE(m_frame->area->childWindows().size(), 2);
    QCOMPARE(listed().size(), 2);
}

void tst_WindowMenu::openBrowsersNamesUntitledWindows()
{
    BrowserWindow *window = m_frame->open(u"  "_s);
    TestFrame::page(window)->location = u"http://host/a&b"_s;
    QCOMPARE(listed(), QStringList{u"*http://host/a&&b"_s});
    TestFrame::page(window)->location.clear();
    QCOMPARE(listed(), QStringList{u"*Loading..."_s});
}

void tst_WindowMenu::openBrowsersActivates()
{
    BrowserWindow *one = m_frame->open(u"One"_s);
    BrowserWindow *two = m_frame->open(u"Two"_s);
    listed();
    m_frame->openBrowsers->actions().at(0)->trigger();
    QCOMPARE(m_frame->activeChild(), one);
    QCOMPARE(m_frame->addressText, u"http://host/One"_s);
    two->showMinimized();
    m_frame->area->setActiveSubWindow(one);
    listed();
    m_frame->openBrowsers->actions().at(1)->trigger();
    QCOMPARE(m_frame->activeChild(), two);
    QVERIFY(!two->isMinimized());
    QCOMPARE(listed(), (QStringList{u"One"_s, u"*Two"_s}));
}

void tst_WindowMenu::openBrowsersWithoutWindows()
{
    listed();
    for (const QAction *action : m_frame->openBrowsers->actions())
        QVERIFY(!action->isEnabled() && !action->isCheckable());
}

void tst_WindowMenu::openBrowsersLongTitles()
{
    m_frame->open(QString(5000, u'x'));
    m_frame->open(u"two\nlines\tand a tab"_s);
    m_frame->open(QString());
    const QStringList items = listed();
    QVERIFY(items.at(0).size() < 200);
    QVERIFY(items.at(0).contains(u'…'));
    QVERIFY(m_frame->openBrowsers->sizeHint().width() < 900);
    QCOMPARE(items.at(1), u"two lines and a tab"_s);
    QVERIFY(!m_frame->openBrowsers->actions().at(2)->isSeparator());
}

void tst_WindowMenu::openBrowsersTwoHundred()
{
    for (int i = 1; i <= 200; ++i)
        m_frame->open(u"Page %1"_s.arg(i));
    QCOMPARE(listed().size(), 200);
    // One column that scrolls, however many there are.
    const QRect first =
        m_frame->openBrowsers->actionGeometry(m_frame->openBrowsers->actions().first());
    m_frame->openBrowsers->popup(QPoint(0, 0));
    for (const QAction *action : m_frame->openBrowsers->actions())
        QCOMPARE(m_frame->openBrowsers->actionGeometry(const_cast<QAction *>(action)).x(),
                 first.x());
    m_frame->openBrowsers->hide();
    m_frame->openBrowsers->actions().at(149)->trigger();
    QCOMPARE(m_frame->activeChild()->windowTitle(), u"Page 150"_s);
}

void tst_WindowMenu::windowGoneWhileListed()
{
    BrowserWindow *one = m_frame->open(u"One"_s);
    BrowserWindow *two = m_frame->open(u"Two"_s);
    listed();
    delete one;
    m_frame->openBrowsers->actions().at(0)->trigger();
    QCOMPARE(m_frame->activeChild(), two);
}

void tst_WindowMenu::tabClickActivates()
{
    BrowserWindow *one = m_frame->open(u"One"_s);
    m_frame->open(u"Two"_s);
    m_frame->addressText.clear();
    QTest::mouseClick(m_frame->tab(one), Qt::LeftButton);
    QCOMPARE(m_frame->activeChild(), one);
    QCOMPARE(m_frame->addressText, u"http://host/One"_s);
    QVERIFY(m_frame->strip->isPressed(one->tabKey()));
}

void tst_WindowMenu::tabClickRestoresMinimized()
{
    BrowserWindow *one = m_frame->open(u"One"_s);
    one->showMaximized();
    one->showMinimized();
    BrowserWindow *two = m_frame->open(u"Two"_s);
    two->showNormal();
    QTest::mouseClick(m_frame->tab(one), Qt::LeftButton);
    QVERIFY(!one->isMinimized() && !one->isMaximized());
    QCOMPARE(m_frame->activeChild(), one);
    QCOMPARE(m_frame->addressText, u"http://host/One"_s);
    // The last window of its frame, minimized: active already, yet to be restored.
    m_frame->area->minimizeAll(Forms::named("frmBrowser"));
    QTest::mouseClick(m_frame->tab(two), Qt::LeftButton);
    QCOMPARE(m_frame->activeChild()->windowTitle(), u"Two"_s);
    QVERIFY(!m_frame->activeChild()->isMinimized());
    QVERIFY(one->isMinimized());
}

void tst_WindowMenu::tabClickUnderMaximized()
{
    BrowserWindow *one = m_frame->open(u"One"_s);
    one->showMinimized();
    BrowserWindow *two = m_frame->open(u"Two"_s);
    two->showMaximized();
    QTest::mouseClick(m_frame->tab(one), Qt::LeftButton);
    QCOMPARE(m_frame->activeChild(), one);
    QVERIFY(!one->isMinimized());
    QVERIFY2(!one->isMaximized() && !one->isMinimized(), "restored to the normal state");
    QVERIFY2(!two->isMaximized(), "children are maximized all or none");
}

void tst_WindowMenu::tabOfAGoneWindow_data()
{
    QTest::addColumn<QString>("key");
    for (const QString &key :
         {u"X99999"_s, u"X"_s, u""_s, u"Xabc"_s, u"X99999999999999"_s, u"X0"_s})
        QTest::addRow("'%s'", qPrintable(key)) << key;
}

void tst_WindowMenu::tabOfAGoneWindow()
{
    QFETCH(QString, key);
    QWidget withoutNumber;
    Forms::add(&withoutNumber);
    BrowserWindow *one = m_frame->open(u"One"_s);
    m_frame->addressText = u"kept"_s;
    activateTab(*m_frame, key);
    QCOMPARE(m_frame->activeChild(), one);
    QCOMPARE(m_frame->addressText, u"kept"_s);
}

void tst_WindowMenu::middleClickCloses()
{
    const BrowserWindow *one = m_frame->open(u"One"_s);
    const BrowserWindow *two = m_frame->open(u"Two"_s);
    const QString kept = two->tabKey();
    QTest::mouseClick(m_frame->tab(one), Qt::MiddleButton);
    QTRY_COMPARE(m_frame->area->childWindows().size(), 1);
    QCOMPARE(m_frame->strip->keys(), QStringList{kept});
    QCOMPARE(m_frame->activeChild()->windowTitle(), u"Two"_s);
}

void tst_WindowMenu::rightReleaseShowsTheList()
{
    QTest::mouseClick(m_frame->strip, Qt::RightButton);
    QVERIFY(!m_frame->openBrowsers->isVisible());
    BrowserWindow *one = m_frame->open(u"One"_s);
    QWidget *tab = m_frame->tab(one);
    QTest::mousePress(tab, Qt::RightButton);
    QVERIFY(!m_frame->openBrowsers->isVisible());
    QTest::mouseRelease(tab, Qt::RightButton);
    QVERIFY(m_frame->openBrowsers->isVisible());
    QCOMPARE(m_frame->openBrowsers->actions().size(), 1);
    QCOMPARE(m_frame->activeChild(), one);
    m_frame->openBrowsers->hide();
}

QTEST_MAIN(tst_WindowMenu)
#include "tst_windowmenu.moc"
