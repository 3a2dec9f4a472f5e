#include "AddFavoriteDialog.h"
#include "DragAndDrop.h"
#include "FakeFrame.h"
#include "FakeWebBrowser.h"
#include "FavoriteNode.h"
#include "FavoritesBar.h"
#include "FavoritesHome.h"
#include "FavoritesTree.h"
#include "Forms.h"

#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

class tst_FavoritesBar : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void captionsAndNames();
    void nothingIsReadBeforeTheFirstShow();
    void nodes();
    void orderIsThatOfTheWalk();
    void pictures();
    void addressAsToolTip();
    void markupIsNoMarkup();
    void missingFolder();
    void fileInPlaceOfTheFolder();
    void refreshShowsWhatIsThere();
    void refreshInARefresh();
    void refreshKeepsFoldersOpen();
    void fillingDoesNotBlock();
    void barMayGoWhileFilling();

    void clickOpensAndClosesAFolder();
    void doubleClickIsOneClick();
    void folderWithoutChildren();
    void linkWithoutAddress();
    void clickOnALinkShowsTheMenu();
    void secondClickShowsTheMenuAgain();
    void openLink();
    void openInANewWindow();
    void cancelDoesNothing();
    void menuOutlivesARefresh();
    void enterActs();
    void rightClickShowsTheMenu();

    void layout();
    void narrowerThanTheButtons();
    void closeButton();
    void droppedLinkIsAskedAbout();

private:
    void fill();
    FavoritesTree *tree() const { return m_bar->findChild<FavoritesTree *>(); }
    QMenu *menu() const { return m_bar->findChild<QMenu *>(u"mnuContext"_s); }
    QWidget *control(const QString &name) const { return m_bar->findChild<QWidget *>(name); }
    FavoriteNode *node(const QString &text) const;
    /// All nodes, depth first, as texts.
    QStringList texts() const;
    QPoint centre(FavoriteNode *node) const;
    void click(FavoriteNode *node) const
    {
        QTest::mouseClick(tree()->viewport(), Qt::LeftButton, {}, centre(node));
    }
    void choose(const char *item) const;

    std::unique_ptr<FavoritesHome> m_home;
    std::unique_ptr<FakeFrame> m_frame;
    FavoritesBar *m_bar = nullptr;
};

void tst_FavoritesBar::init()
{
    m_home = std::make_unique<FavoritesHome>();
    m_frame = std::make_unique<FakeFrame>();
    m_bar = new FavoritesBar(*m_frame, m_frame->window());
    m_bar->resize(300, 500);
}

void tst_FavoritesBar::cleanup()
{
    m_frame.reset();
    m_home.reset();
}

// Shows the bar and waits for its tree.
void tst_FavoritesBar::fill()
{
    m_bar->show();
    m_bar->raise();
    QTRY_VERIFY(!m_bar->isRefreshing());
    QVERIFY(QTest::qWaitForWindowExposed(m_frame->window()));
}

FavoriteNode *tst_FavoritesBar::node(const QString &text) const
{
    const auto found = tree()->findItems(text, Qt::MatchExactly | Qt::MatchRecursive);
    return found.isEmpty() ? nullptr : static_cast<FavoriteNode *>(found.first());
}

QStringList tst_FavoritesBar::texts() const
{
    QStringList result;
    for (QTreeWidgetItemIterator it(tree()); *it; ++it)
        result.append((*it)->text(0));
    return result;
}

QPoint tst_FavoritesBar::centre(FavoriteNode *node) const
{
    return tree()->visualItemRect(node).center();
}

// With the menu's own key, as a user does: the menu closes, then its item acts.
void tst_FavoritesBar::choose(const char *item) const
{
    QTRY_VERIFY(menu()->isVisible());
    menu()->setActiveAction(m_bar->findChild<QAction *>(QLatin1StringView(item)));
    QTest::keyClick(menu(), Qt::Key_Return);
    QTRY_VERIFY(!menu()->isVisible());
}

void tst_FavoritesBar::captionsAndNames()
{
    QCOMPARE(m_bar->findChild<QPushButton *>(u"cmdAdd"_s)->text(), u"&Add Favorite"_s);
    QCOMPARE(m_bar->findChild<QPushButton *>(u"cmdOrganize"_s)->text(), u"&Organize"_s);
    QCOMPARE(control(u"cmdExit"_s)->accessibleName(), u"Close"_s);
    QCOMPARE(tree()->objectName(), u"tvFavorites"_s);
    QCOMPARE(menu()->title(), u"&Context Menu"_s);
    QStringList items;
    for (const QAction *item : menu()->actions())
        items.append(item->objectName() + u' ' + item->text());
    const QStringList expected{u"mnuOpenLink Open Link"_s, u"mnuOpenNew Open Link in New Window"_s,
                               u"mnuContextBar0 "_s, u"mnuCancel &Cancel"_s};
    QCOMPARE(items, expected);
    QVERIFY(menu()->actions().at(2)->isSeparator());
}

void tst_FavoritesBar::nothingIsReadBeforeTheFirstShow()
{
    QVERIFY(m_home->writeLink(u"a.url"_s, "http://a/"));
    m_frame->window()->hide();
    m_frame->window()->show();
    QVERIFY(m_bar->isHidden());
    QVERIFY(!m_bar->isInitialised());
    QVERIFY(!m_bar->isRefreshing());
    fill();
    QVERIFY(m_bar->isInitialised());
    QCOMPARE(texts(), QStringList{u"a"_s});
    // The tree is filled on the first show only.
    m_bar->hide();
    m_bar->show();
    QVERIFY(!m_bar->isRefreshing());
}

void tst_FavoritesBar::nodes()
{
    QVERIFY(m_home->writeLink(u"Daily/News.url"_s, "http://news/"));
    QVERIFY(m_home->writeLink(u"a.url"_s, "http://a/"));
    fill();
    const FavoriteNode *folder = node(u"Daily"_s);
    QVERIFY(folder);
    QCOMPARE(folder->key(), m_home->path(u"Daily/"_s));
    QCOMPARE(folder->tag(), QString());
    QCOMPARE(folder->kind(), FavoriteNode::Kind::Folder);
    QVERIFY(!folder->parent());
    QVERIFY(!folder->isExpanded());
    const FavoriteNode *link = node(u"News"_s);
    QVERIFY(link);
    QCOMPARE(link->key(), m_home->path(u"Daily/News.url"_s));
    QCOMPARE(link->tag(), u"http://news/"_s);
    QCOMPARE(link->parent(), folder);
    QCOMPARE(node(u"a"_s)->tag(), u"http://a/"_s);
    QVERIFY(!node(u"a"_s)->parent());
}

void tst_FavoritesBar::orderIsThatOfTheWalk()
{
    for (const QString &name : {u"z.url"_s, u"B.url"_s, u"a.url"_s, u"f/x.url"_s, u"D/y.url"_s})
        QVERIFY(m_home->writeLink(name, "http://x/"));
    fill();
    const QStringList expected{u"a"_s, u"B"_s, u"z"_s, u"D"_s, u"y"_s, u"f"_s, u"x"_s};
    QCOMPARE(texts(), expected);
}

void tst_FavoritesBar::pictures()
{
    QVERIFY(m_home->writeLink(u"f/a.url"_s, "http://a/"));
    fill();
    FavoriteNode *folder = node(u"f"_s);
    const auto picture = [](const FavoriteNode *of) { return of->icon(0).cacheKey(); };
    const qint64 closed = picture(folder);
    QVERIFY(!folder->icon(0).isNull());
    QVERIFY(!node(u"a"_s)->icon(0).isNull());
    QVERIFY(picture(node(u"a"_s)) != closed);
    tree()->setCurrentItem(folder);
    QVERIFY(picture(folder) != closed);
    tree()->setCurrentItem(nullptr);
    QCOMPARE(picture(folder), closed);
}

void tst_FavoritesBar::addressAsToolTip()
{
    QVERIFY(m_home->writeLink(u"f/a.url"_s, "http://a.example/"));
    fill();
    QVERIFY(node(u"a"_s)->toolTip(0).contains(u"http://a.example/"_s));
    QCOMPARE(node(u"f"_s)->toolTip(0), QString());
}

void tst_FavoritesBar::markupIsNoMarkup()
{
    QVERIFY(m_home->writeLink(u"a.url"_s, "data:text/html,<b>x</b>"));
    fill();
    QVERIFY(node(u"a"_s)->toolTip(0).contains(u"&lt;b&gt;"_s));
}

void tst_FavoritesBar::missingFolder()
{
    fill();
    QVERIFY(texts().isEmpty());
}

void tst_FavoritesBar::fileInPlaceOfTheFolder()
{
    QFile file(m_home->favorites());
    QVERIFY(file.open(QIODevice::WriteOnly));
    fill();
    QVERIFY(texts().isEmpty());
}

void tst_FavoritesBar::refreshShowsWhatIsThere()
{
    QVERIFY(m_home->writeLink(u"a.url"_s, "http://a/"));
    fill();
    QVERIFY(QFile::remove(m_home->path(u"a.url"_s)));
    QVERIFY(m_home->writeLink(u"b.url"_s, "http://b/"));
    const QSignalSpy done(m_bar, &FavoritesBar::refreshed);
    m_bar->refresh();
    QTRY_COMPARE(done.size(), 1);
    QCOMPARE(texts(), QStringList{u"b"_s});
}

void tst_FavoritesBar::refreshInARefresh()
{
    for (int i = 0; i < 300; ++i)
        QVERIFY(m_home->writeLink(u"%1.url"_s.arg(i), "http://a/"));
    const QSignalSpy done(m_bar, &FavoritesBar::refreshed);
    m_bar->show();
    m_bar->refresh();
    QCoreApplication::processEvents();
    m_bar->refresh();
    QTRY_VERIFY(!m_bar->isRefreshing());
    QVERIFY(!done.isEmpty());
    QCOMPARE(texts().size(), 300);
}

void tst_FavoritesBar::refreshKeepsFoldersOpen()
{
    QVERIFY(m_home->writeLink(u"f/g/a.url"_s, "http://a/"));
    QVERIFY(m_home->writeLink(u"h/b.url"_s, "http://b/"));
    fill();
    node(u"f"_s)->setExpanded(true);
    node(u"g"_s)->setExpanded(true);
    m_bar->refresh();
    m_bar->refresh();
    QTRY_VERIFY(!m_bar->isRefreshing());
    QVERIFY(node(u"f"_s)->isExpanded());
    QVERIFY(node(u"g"_s)->isExpanded());
    QVERIFY(!node(u"h"_s)->isExpanded());
}

// The first show returns before the tree is filled, and events come through while it is.
void tst_FavoritesBar::fillingDoesNotBlock()
{
    const int links = 20'000;
    for (int i = 0; i < links; ++i)
        QVERIFY(m_home->writeLink(u"%1/%2.url"_s.arg(i / 1000).arg(i), "http://a/"));
    m_bar->show();
    QVERIFY(m_bar->isRefreshing());
    int events = 0;
    QTimer timer;
    timer.setInterval(0);
    connect(&timer, &QTimer::timeout, this, [&] { events += m_bar->isRefreshing() ? 1 : 0; });
    timer.start();
    QTRY_VERIFY_WITH_TIMEOUT(!m_bar->isRefreshing(), 60'000);
    QVERIFY(events > 1);
    QCOMPARE(texts().size(), links + 20);
}

void tst_FavoritesBar::barMayGoWhileFilling()
{
    for (int i = 0; i < 100; ++i)
        QVERIFY(m_home->writeLink(u"%1.url"_s.arg(i), "http://a/"));
    m_bar->show();
    QVERIFY(m_bar->isRefreshing());
    delete std::exchange(m_bar, nullptr);
    QCoreApplication::processEvents();
}

void tst_FavoritesBar::clickOpensAndClosesAFolder()
{
    QVERIFY(m_home->writeLink(u"f/a.url"_s, "http://a/"));
    fill();
    click(node(u"f"_s));
    QVERIFY(node(u"f"_s)->isExpanded());
    click(node(u"f"_s));
    QVERIFY(!node(u"f"_s)->isExpanded());
    QVERIFY(!menu()->isVisible());
}

void tst_FavoritesBar::doubleClickIsOneClick()
{
    QVERIFY(m_home->writeLink(u"f/a.url"_s, "http://a/"));
    fill();
    FavoriteNode *folder = node(u"f"_s);
    click(folder);
    QMouseEvent second(QEvent::MouseButtonDblClick, centre(folder),
                       tree()->viewport()->mapToGlobal(centre(folder)), Qt::LeftButton,
                       Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(tree()->viewport(), &second);
    QTest::mouseRelease(tree()->viewport(), Qt::LeftButton, {}, centre(folder));
    QVERIFY(folder->isExpanded());
    click(folder);
    QVERIFY(!folder->isExpanded());
}

void tst_FavoritesBar::folderWithoutChildren()
{
    QVERIFY(m_home->makeFolder(u"f"_s));
    fill();
    click(node(u"f"_s));
    QVERIFY(!node(u"f"_s)->isExpanded());
    QVERIFY(!menu()->isVisible());
}

void tst_FavoritesBar::linkWithoutAddress()
{
    QVERIFY(m_home->write(u"a.url"_s, "[InternetShortcut]\n"));
    fill();
    QCOMPARE(node(u"a"_s)->tag(), QString());
    click(node(u"a"_s));
    QVERIFY(!menu()->isVisible());
}

void tst_FavoritesBar::clickOnALinkShowsTheMenu()
{
    QVERIFY(m_home->writeLink(u"a.url"_s, "http://a/"));
    fill();
    click(node(u"a"_s));
    QTRY_VERIFY(menu()->isVisible());
    menu()->close();
    QVERIFY(m_frame->navigated.isEmpty());
    QVERIFY(m_frame->opened.isEmpty());
}

void tst_FavoritesBar::secondClickShowsTheMenuAgain()
{
    QVERIFY(m_home->writeLink(u"a.url"_s, "http://a/"));
    QVERIFY(m_home->writeLink(u"b.url"_s, "http://b/"));
    fill();
    click(node(u"a"_s));
    QTRY_VERIFY(menu()->isVisible());
    menu()->close();
    click(node(u"b"_s));
    choose("mnuOpenLink");
    QTRY_COMPARE(m_frame->navigated, QStringList{u"http://b/"_s});
}

void tst_FavoritesBar::openLink()
{
    QVERIFY(m_home->writeLink(u"a.url"_s, "http://a/?x=1&y=2"));
    fill();
    click(node(u"a"_s));
    choose("mnuOpenLink");
    QTRY_COMPARE(m_frame->navigated, QStringList{u"http://a/?x=1&y=2"_s});
    QVERIFY(m_frame->opened.isEmpty());
}

void tst_FavoritesBar::openInANewWindow()
{
    QVERIFY(m_home->writeLink(u"a.url"_s, "http://a/"));
    fill();
    click(node(u"a"_s));
    choose("mnuOpenNew");
    QTRY_COMPARE(m_frame->opened.size(), 1);
    QCOMPARE(m_frame->opened.first().url, u"http://a/"_s);
    QCOMPARE(m_frame->opened.first().state, WindowState::Maximized);
    QVERIFY(m_frame->navigated.isEmpty());
}

void tst_FavoritesBar::cancelDoesNothing()
{
    QVERIFY(m_home->writeLink(u"a.url"_s, "http://a/"));
    fill();
    click(node(u"a"_s));
    choose("mnuCancel");
    QCoreApplication::processEvents();
    QVERIFY(m_frame->opened.isEmpty());
    QVERIFY(m_frame->navigated.isEmpty());
    // With the menu gone its items have nothing to act on.
    m_bar->findChild<QAction *>(u"mnuOpenLink"_s)->trigger();
    QVERIFY(m_frame->navigated.isEmpty());
}

void tst_FavoritesBar::menuOutlivesARefresh()
{
    QVERIFY(m_home->writeLink(u"a.url"_s, "http://a/"));
    fill();
    click(node(u"a"_s));
    QTRY_VERIFY(menu()->isVisible());
    QVERIFY(QFile::remove(m_home->path(u"a.url"_s)));
    m_bar->refresh();
    QTRY_VERIFY(!m_bar->isRefreshing());
    choose("mnuOpenLink");
    QTRY_COMPARE(m_frame->navigated, QStringList{u"http://a/"_s});
}

void tst_FavoritesBar::enterActs()
{
    QVERIFY(m_home->writeLink(u"f/a.url"_s, "http://a/"));
    fill();
    tree()->setFocus();
    tree()->setCurrentItem(node(u"f"_s));
    QTest::keyClick(tree(), Qt::Key_Return);
    QVERIFY(node(u"f"_s)->isExpanded());
    QTest::keyClick(tree(), Qt::Key_Down);
    QCOMPARE(tree()->currentItem(), node(u"a"_s));
    QTest::keyClick(tree(), Qt::Key_Enter);
    choose("mnuOpenLink");
    QTRY_COMPARE(m_frame->navigated, QStringList{u"http://a/"_s});
    QTest::keyClick(tree(), Qt::Key_Up);
    QTest::keyClick(tree(), Qt::Key_Left);
    QVERIFY(!node(u"f"_s)->isExpanded());
}

void tst_FavoritesBar::rightClickShowsTheMenu()
{
    QVERIFY(m_home->writeLink(u"a.url"_s, "http://a/"));
    fill();
    QContextMenuEvent event(QContextMenuEvent::Mouse, centre(node(u"a"_s)), QPoint(50, 50));
    QApplication::sendEvent(tree()->viewport(), &event);
    choose("mnuOpenNew");
    QTRY_COMPARE(m_frame->opened.size(), 1);
}

void tst_FavoritesBar::layout()
{
    m_bar->resize(301, 500);
    m_bar->show();
    QCOMPARE(control(u"cmdAdd"_s)->geometry(), QRect(0, 0, 139, 24));
    QCOMPARE(control(u"cmdOrganize"_s)->geometry(), QRect(139, 0, 138, 24));
    QCOMPARE(control(u"cmdExit"_s)->geometry(), QRect(277, 0, 24, 24));
    QCOMPARE(tree()->geometry(), QRect(0, 24, 301, 476));
}

void tst_FavoritesBar::narrowerThanTheButtons()
{
    m_bar->resize(300, 500);
    m_bar->show();
    const QRect before = control(u"cmdAdd"_s)->geometry();
    m_bar->resize(10, 500);
    QCOMPARE(control(u"cmdAdd"_s)->geometry(), before);
    QCOMPARE(tree()->geometry(), QRect(0, 24, 10, 476));
    m_bar->resize(300, 10);
    QCOMPARE(control(u"cmdAdd"_s)->geometry(), before);
}

void tst_FavoritesBar::closeButton()
{
    m_bar->show();
    const QSignalSpy exited(m_bar, &FavoritesBar::exitRequested);
    QTest::mouseClick(control(u"cmdExit"_s), Qt::LeftButton);
    QCOMPARE(exited.size(), 1);
    QVERIFY(m_bar->isVisible());
}

void tst_FavoritesBar::droppedLinkIsAskedAbout()
{
    QVERIFY(m_home->makeFolder());
    fill();
    DragAndDrop drag({QUrl(u"http://h/a"_s), QUrl(u"http://h/b"_s)});
    drag.setMarkup(u"<a href='http://h/a'>The link</a>"_s);
    QVERIFY(drag.drop(tree()->viewport()));
    AddFavoriteDialog *dialog = nullptr;
    QTRY_VERIFY((dialog = m_frame->window()->findChild<AddFavoriteDialog *>()));
    QCOMPARE(dialog->findChild<QLineEdit *>()->text(), u"The link"_s);
    dialog->reject();
    QVERIFY(!DragAndDrop({QUrl(u"javascript:alert(1)"_s)}).drop(tree()->viewport()));
}

QTEST_MAIN(tst_FavoritesBar)
#include "tst_favoritesbar.moc"
