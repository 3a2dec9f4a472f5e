#include "AddFavoriteDialog.h"
#include "FakeFrame.h"
#include "FakeWebBrowser.h"
#include "FavoritesBar.h"
#include "FavoritesHome.h"
#include "SearchBar.h"
#include "SideBarCommands.h"
#include "TempAppFolder.h"

#include <QComboBox>
#include <QTest>
#include <QToolButton>

class tst_SideBarCommands : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void searchBarIsShownAndHidden();
    void searchBarGetsTheFocus();
    void favoritesBarIsShownAndHidden();
    void showingTheSearchBarHidesTheFavorites();
    void showingTheFavoritesHidesTheSearchBar();
    void hidingTheFavoritesLeavesTheSetting();
    void closeButtonOfTheSearchBar();
    void closeButtonOfTheFavorites();
    void searchInTheActiveWindow();
    void searchInANewWindow();
    void addOpensTheDialog();

private:
    bool isChecked(const QString &item) const { return m_frame->menuItem(item)->isChecked(); }
    QString setting() const { return m_folder->setting(u"View"_s, u"SearchBar"_s, u"none"_s); }
    void close(QWidget *bar) const
    {
        QTest::mouseClick(bar->findChild<QToolButton *>(u"cmdExit"_s), Qt::LeftButton);
    }

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<FavoritesHome> m_home;
    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<FakeFrame> m_frame;
    FavoritesBar *m_favorites = nullptr;
    SearchBar *m_search = nullptr;
};

void tst_SideBarCommands::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    m_home = std::make_unique<FavoritesHome>();
    m_engine = std::make_unique<FakeEngine>();
    m_frame = std::make_unique<FakeFrame>();
    m_favorites = new FavoritesBar(*m_frame, m_frame->window());
    m_search = new SearchBar(m_frame->window());
    m_favorites->resize(300, 500);
    m_search->resize(300, 500);
    registerSideBarCommands(*m_frame, *m_favorites, *m_search);
}

void tst_SideBarCommands::cleanup()
{
    m_frame.reset();
    m_engine.reset();
    m_home.reset();
    m_folder.reset();
}

void tst_SideBarCommands::searchBarIsShownAndHidden()
{
    m_frame->run(u"mnuViewSearchBar"_s);
    QVERIFY(m_search->isVisible());
    QVERIFY(isChecked(u"mnuViewSearchBar"_s));
    m_frame->run(u"mnuViewSearchBar"_s);
    QVERIFY(!m_search->isVisible());
    QVERIFY(!isChecked(u"mnuViewSearchBar"_s));
}

void tst_SideBarCommands::searchBarGetsTheFocus()
{
    m_frame->window()->activateWindow();
    m_frame->run(u"mnuViewSearchBar"_s);
    QTRY_COMPARE(m_frame->window()->focusWidget(),
                 m_search->findChild<QComboBox *>(u"cboAddress"_s));
}

void tst_SideBarCommands::favoritesBarIsShownAndHidden()
{
    m_frame->run(u"mnuFavoritesShow"_s);
    QVERIFY(m_favorites->isVisible());
    QVERIFY(isChecked(u"mnuFavoritesShow"_s));
    m_frame->run(u"mnuFavoritesShow"_s);
    QVERIFY(!m_favorites->isVisible());
    QVERIFY(!isChecked(u"mnuFavoritesShow"_s));
}

void tst_SideBarCommands::showingTheSearchBarHidesTheFavorites()
{
    m_frame->run(u"mnuFavoritesShow"_s);
    m_frame->run(u"mnuViewSearchBar"_s);
    QVERIFY(!m_favorites->isVisible());
    QVERIFY(!isChecked(u"mnuFavoritesShow"_s));
    QVERIFY(m_search->isVisible());
}

void tst_SideBarCommands::showingTheFavoritesHidesTheSearchBar()
{
    m_frame->run(u"mnuViewSearchBar"_s);
    m_frame->run(u"mnuFavoritesShow"_s);
    QVERIFY(!m_search->isVisible());
    QVERIFY(!isChecked(u"mnuViewSearchBar"_s));
    QVERIFY(m_favorites->isVisible());
    QCOMPARE(setting(), u"False"_s);
}

void tst_SideBarCommands::hidingTheFavoritesLeavesTheSetting()
{
    m_frame->run(u"mnuFavoritesShow"_s);
    QVERIFY(m_folder->setSetting(u"View"_s, u"SearchBar"_s, u"True"_s));
    m_frame->run(u"mnuFavoritesShow"_s);
    QCOMPARE(setting(), u"True"_s);
}

void tst_SideBarCommands::closeButtonOfTheSearchBar()
{
    m_frame->run(u"mnuViewSearchBar"_s);
    const QString before = setting();
    close(m_search);
    QVERIFY(!m_search->isVisible());
    QVERIFY(!isChecked(u"mnuViewSearchBar"_s));
    QCOMPARE(setting(), before);
}

void tst_SideBarCommands::closeButtonOfTheFavorites()
{
    m_frame->run(u"mnuFavoritesShow"_s);
    const QString before = setting();
    close(m_favorites);
    QVERIFY(!m_favorites->isVisible());
    QVERIFY(!isChecked(u"mnuFavoritesShow"_s));
    QCOMPARE(setting(), before);
}

void tst_SideBarCommands::searchInTheActiveWindow()
{
    emit m_search->searchRequested(0, u"http://a/?q=x"_s);
    QCOMPARE(m_frame->navigated, QStringList{u"http://a/?q=x"_s});
    QVERIFY(m_frame->opened.isEmpty());
}

void tst_SideBarCommands::searchInANewWindow()
{
    emit m_search->searchRequested(1, u"http://a/?q=x"_s);
    QCOMPARE(m_frame->opened.size(), 1);
    QCOMPARE(m_frame->opened.first().url, u"http://a/?q=x"_s);
    QCOMPARE(m_frame->opened.first().state, WindowState::Maximized);
    QVERIFY(m_frame->navigated.isEmpty());
}

void tst_SideBarCommands::addOpensTheDialog()
{
    BrowserWindow *page = m_frame->open(u"http://a/"_s);
    static_cast<FakeWebBrowser *>(page->browser())->location = u"http://a/"_s;
    m_frame->run(u"mnuFavoritesAdd"_s);
    QVERIFY(m_frame->window()->findChild<AddFavoriteDialog *>());
}

QTEST_MAIN(tst_SideBarCommands)
#include "tst_sidebarcommands.moc"
