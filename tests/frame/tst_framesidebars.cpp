#include "AddressBox.h"
#include "FakeWebBrowser.h"
#include "FavoritesBar.h"
#include "FavoritesHome.h"
#include "FrameBody.h"
#include "MainWindow.h"
#include "MdiArea.h"
#include "SearchBar.h"
#include "TempAppFolder.h"
#include "ToolBar.h"

#include <QAction>
#include <QCheckBox>
#include <QLineEdit>
#include <QPushButton>
#include <QSplitter>
#include <QToolButton>
#include <QtTest>

/// The two side bars where the user meets them: in the frame, by key, menu and button.
class tst_FrameSideBars : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void hiddenAtFirst();
    void keysShowAndHide();
    void onlyOneIsShown();
    void searchBarWritesItsSetting();
    void favoritesBarWritesOnlyTheOther();
    void closeButtons();
    void storedSearchBarIsShownAtTheStart();
    void queryHasTheFocus();
    void searchOpensInTheActiveWindow();
    void searchOpensInANewWindow();
    void barsHaveASensibleWidth();
    void edgeCanBeDragged();
    void historyIsWrittenAtTheEndIfShown();
    void historyIsLeftAloneIfNeverShown();
    void languageReachesTheSearchBar();

private:
    void press(Qt::Key key) const { QTest::keyClick(m_frame.get(), key); }
    SearchBar &search() const { return *m_frame->findChild<SearchBar *>(); }
    FavoritesBar &favorites() const { return *m_frame->findChild<FavoritesBar *>(); }
    bool isChecked(const QString &item) const { return m_frame->menuItem(item)->isChecked(); }
    bool searchIsPressed() const;
    bool favoritesIsPressed() const;
    QString setting() const { return m_folder->setting(u"View"_s, u"SearchBar"_s, u"none"_s); }
    void writeEngines() const;
    void type(const QString &query) const;
    void showFrame() const;

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<FavoritesHome> m_home;
    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<MainWindow> m_frame;
};

void tst_FrameSideBars::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    QVERIFY(m_folder->isValid());
    m_folder->setSetting(u"Options"_s, u"Show-Splash"_s, u"0"_s);
    m_home = std::make_unique<FavoritesHome>();
    m_engine = std::make_unique<FakeEngine>();
    m_frame = std::make_unique<MainWindow>();
}

void tst_FrameSideBars::cleanup()
{
    m_frame.reset();
    m_engine.reset();
    m_home.reset();
    m_folder.reset();
}

void tst_FrameSideBars::showFrame() const
{
    m_frame->show();
    QVERIFY(QTest::qWaitForWindowActive(m_frame.get()));
}

bool tst_FrameSideBars::searchIsPressed() const
{
    return m_frame->findChild<ToolBar *>(u"tbBrowser"_s)->isPressed(u"Search"_s);
}

bool tst_FrameSideBars::favoritesIsPressed() const
{
    return m_frame->findChild<ToolBar *>(u"tbFunctions"_s)->isPressed(u"Favorites"_s);
}

void tst_FrameSideBars::writeEngines() const
{
    QVERIFY(m_folder->write(u"AppData/SearchEngines.ini"_s,
                            "[Engines]\r\nCount=1\r\nURL1=A\r\n[Engine URLs]\r\n"
                            "A=http://a/?q=<SearchString>\r\n"
                            "[RecentSearches]\r\nItem0=old\r\n"));
}

void tst_FrameSideBars::type(const QString &query) const
{
    search().findChild<AddressBox *>(u"brwSearch"_s)->setText(query);
    search().findChild<QPushButton *>(u"cmdSearch"_s)->click();
}

void tst_FrameSideBars::hiddenAtFirst()
{
    showFrame();
    QVERIFY(!search().isVisible());
    QVERIFY(!favorites().isVisible());
}

void tst_FrameSideBars::keysShowAndHide()
{
    showFrame();
    press(Qt::Key_F3);
    QVERIFY(search().isVisible() && isChecked(u"mnuViewSearchBar"_s) && searchIsPressed());
    press(Qt::Key_F3);
    QVERIFY(!search().isVisible() && !isChecked(u"mnuViewSearchBar"_s) && !searchIsPressed());
    press(Qt::Key_F4);
    QVERIFY(favorites().isVisible() && isChecked(u"mnuFavoritesShow"_s) && favoritesIsPressed());
    press(Qt::Key_F4);
    QVERIFY(!favorites().isVisible() && !isChecked(u"mnuFavoritesShow"_s) && !favoritesIsPressed());
}

void tst_FrameSideBars::onlyOneIsShown()
{
    showFrame();
    press(Qt::Key_F3);
    press(Qt::Key_F4);
    QVERIFY(favorites().isVisible() && !search().isVisible());
    QVERIFY(!isChecked(u"mnuViewSearchBar"_s) && !searchIsPressed());
    press(Qt::Key_F3);
    QVERIFY(!favorites().isVisible() && search().isVisible());
    QVERIFY(!isChecked(u"mnuFavoritesShow"_s) && !favoritesIsPressed());
}

void tst_FrameSideBars::searchBarWritesItsSetting()
{
    showFrame();
    m_frame->menuItem(u"mnuViewSearchBar"_s)->trigger();
    QCOMPARE(setting(), u"True"_s);
    m_frame->menuItem(u"mnuViewSearchBar"_s)->trigger();
    QCOMPARE(setting(), u"False"_s);
}

void tst_FrameSideBars::favoritesBarWritesOnlyTheOther()
{
    showFrame();
    m_folder->setSetting(u"View"_s, u"SearchBar"_s, u"True"_s);
    m_frame->menuItem(u"mnuFavoritesShow"_s)->trigger();
    QCOMPARE(setting(), u"False"_s);
    m_folder->setSetting(u"View"_s, u"SearchBar"_s, u"kept"_s);
    const QByteArray before = m_folder->readSettings();
    m_frame->menuItem(u"mnuFavoritesShow"_s)->trigger();
    QVERIFY(!favorites().isVisible());
    QCOMPARE(m_folder->readSettings(), before);
}

void tst_FrameSideBars::closeButtons()
{
    showFrame();
    press(Qt::Key_F3);
    QTest::mouseClick(search().findChild<QToolButton *>(u"cmdExit"_s), Qt::LeftButton);
    QVERIFY(!search().isVisible() && !isChecked(u"mnuViewSearchBar"_s) && !searchIsPressed());
    QCOMPARE(setting(), u"True"_s);
    press(Qt::Key_F4);
    QTest::mouseClick(favorites().findChild<QToolButton *>(u"cmdExit"_s), Qt::LeftButton);
    QVERIFY(!favorites().isVisible() && !isChecked(u"mnuFavoritesShow"_s) && !favoritesIsPressed());
}

void tst_FrameSideBars::storedSearchBarIsShownAtTheStart()
{
    m_folder->setSetting(u"View"_s, u"SearchBar"_s, u"True"_s);
    m_frame->load();
    QTRY_VERIFY(search().isVisible());
    QVERIFY(isChecked(u"mnuViewSearchBar"_s) && searchIsPressed());
    QVERIFY(!favorites().isVisible());
    m_frame->run(u"mnuViewSearchBar"_s);
    QVERIFY(!search().isVisible());
    QCOMPARE(setting(), u"False"_s);
}

void tst_FrameSideBars::queryHasTheFocus()
{
    showFrame();
    press(Qt::Key_F3);
    const auto *query = search().findChild<AddressBox *>(u"brwSearch"_s);
    QTRY_VERIFY(query->isAncestorOf(QApplication::focusWidget()));
}

void tst_FrameSideBars::searchOpensInTheActiveWindow()
{
    writeEngines();
    showFrame();
    m_frame->openBrowserWindow(u"http://start/"_s, WindowState::Maximized);
    press(Qt::Key_F3);
    type(u"a&b=c d"_s);
    QCOMPARE(FakeWebBrowser::made().size(), 1);
    QCOMPARE(FakeWebBrowser::made().first()->navigated.last(), u"http://a/?q=a%26b%3Dc d"_s);
    QCOMPARE(m_folder->setting(u"View"_s, u"SearchBar"_s), u"True"_s);
}

void tst_FrameSideBars::searchOpensInANewWindow()
{
    writeEngines();
    showFrame();
    m_frame->openBrowserWindow(u"http://start/"_s, WindowState::Maximized);
    press(Qt::Key_F3);
    search().findChild<QCheckBox *>(u"chkNewWindow"_s)->setChecked(true);
    type(u"cats"_s);
    QCOMPARE(FakeWebBrowser::made().size(), 2);
    QTRY_VERIFY(FakeWebBrowser::made().last()->navigated.contains(u"http://a/?q=cats"_s));
}

void tst_FrameSideBars::barsHaveASensibleWidth()
{
    showFrame();
    auto *windows = m_frame->findChild<MdiArea *>();
    for (const Qt::Key key : {Qt::Key_F3, Qt::Key_F4}) {
        press(key);
        const QWidget &bar = key == Qt::Key_F3 ? static_cast<QWidget &>(search()) : favorites();
        QTRY_VERIFY(bar.width() >= 200 && bar.width() <= 320);
        QVERIFY(bar.mapToGlobal(QPoint()).x() < windows->mapToGlobal(QPoint()).x());
        QVERIFY(windows->width() > m_frame->width() / 2);
    }
    press(Qt::Key_F4);
    QTRY_COMPARE(windows->width(), m_frame->centralWidget()->width());
}

void tst_FrameSideBars::edgeCanBeDragged()
{
    showFrame();
    press(Qt::Key_F3);
    QTRY_VERIFY(search().width() >= 200);
    auto *splitter = m_frame->findChild<FrameBody *>()->findChild<QSplitter *>();
    QSplitterHandle *edge = splitter->handle(2);
    QVERIFY(edge->isVisible());
    const int before = search().width();
    const QPoint middle = edge->rect().center();
    QTest::mousePress(edge, Qt::LeftButton, {}, middle);
    QTest::mouseMove(edge, middle + QPoint(100, 0));
    QTest::mouseRelease(edge, Qt::LeftButton, {}, middle + QPoint(100, 0));
    QTRY_VERIFY(search().width() > before + 50);
}

void tst_FrameSideBars::historyIsWrittenAtTheEndIfShown()
{
    writeEngines();
    showFrame();
    press(Qt::Key_F3);
    type(u"new"_s);
    m_frame.reset();
    const QByteArray file = m_folder->read(u"AppData/SearchEngines.ini"_s);
    QVERIFY2(file.contains("Item0=new") && file.contains("Item1=old"), file.constData());
    QVERIFY(file.contains("DefaultSelection=0"));
}

void tst_FrameSideBars::historyIsLeftAloneIfNeverShown()
{
    writeEngines();
    const QByteArray before = m_folder->read(u"AppData/SearchEngines.ini"_s);
    showFrame();
    press(Qt::Key_F4);
    m_frame.reset();
    QCOMPARE(m_folder->read(u"AppData/SearchEngines.ini"_s), before);
}

void tst_FrameSideBars::languageReachesTheSearchBar()
{
    QVERIFY(m_folder->writeLanguage(u"English"_s, "[SearchBox]\r\ncmdSearch=&Suchen\r\n"));
    m_frame->translate();
    QCOMPARE(search().findChild<QPushButton *>(u"cmdSearch"_s)->text(), u"&Suchen"_s);
}

QTEST_MAIN(tst_FrameSideBars)
#include "tst_framesidebars.moc"
