#include "Answer.h"
#include "FakeFrame.h"
#include "FakeWebBrowser.h"
#include "FavoritesBar.h"
#include "FavoritesHome.h"
#include "OrganizeFavoritesDialog.h"
#include "OrganizeTree.h"
#include "SearchBar.h"
#include "SideBarCommands.h"
#include "TempAppFolder.h"

#include <QAccessible>
#include <QDateTime>
#include <QDropEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QMimeData>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

namespace {
/// On a desktop that has no trash.
class TreeWithoutTrash : public OrganizeTree {
public:
    using OrganizeTree::OrganizeTree;

protected:
    bool moveToTrash(const QString &) override { return false; }
};
}

/// The Organize Favorites dialog on real files.
class tst_Organize : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void opensFromMenuAndButton();
    void treeHasAName();
    void showsFavoritesBeforeFolders();
    void newFolder();
    void rename_data();
    void rename();
    void takenNameIsRefused();
    void moveSeveral();
    void cutAndPaste();
    void moveKeepsWhatIsThere();
    void folderIntoItself();
    void foreignDropIsRefused();
    void deleteGoesToTheTrash();
    void homeWithoutPlaceForATrash();
    void deleteForGoodAsks_data();
    void deleteForGoodAsks();
    void sortByDate();
    void barIsNotRefreshed();
    void missingFolder();
    void picture_data();
    void picture();

private:
    void open();
    QTreeWidgetItem *item(const QString &name) const;
    void select(const QStringList &names) const;
    void press(const QString &name) const { dialog()->findChild<QPushButton *>(name)->click(); }
    void type(const QString &name) const;
    bool exists(const QString &name) const { return QFileInfo::exists(m_home->path(name)); }
    OrganizeFavoritesDialog *dialog() const
    {
        return m_frame->window()->findChild<OrganizeFavoritesDialog *>();
    }
    OrganizeTree *tree() const { return dialog()->findChild<OrganizeTree *>(u"tvOrganize"_s); }

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<FavoritesHome> m_home;
    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<FakeFrame> m_frame;
    FavoritesBar *m_bar = nullptr;
};

void tst_Organize::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    m_home = std::make_unique<FavoritesHome>();
    // A trash of the test's own, for which there is no folder yet, as on a new account.
    qputenv("XDG_DATA_HOME", m_home->home().toUtf8() + "/data");
    m_engine = std::make_unique<FakeEngine>();
    m_frame = std::make_unique<FakeFrame>();
    m_bar = new FavoritesBar(*m_frame, m_frame->window());
    registerSideBarCommands(*m_frame, *m_bar, *new SearchBar(m_frame->window()));
    for (const QString &name : {u"a.url"_s, u"b.url"_s, u"F/c.url"_s, u"G/a.url"_s})
        QVERIFY(m_home->writeLink(name, "http://x/"));
}

void tst_Organize::cleanup()
{
    m_frame.reset();
    m_engine.reset();
    m_home.reset();
    m_folder.reset();
}

void tst_Organize::open()
{
    m_frame->run(u"mnuFavoritesOrganize"_s);
    QVERIFY(dialog());
}

QTreeWidgetItem *tst_Organize::item(const QString &name) const
{
    for (QTreeWidgetItemIterator it(tree()); *it; ++it) {
        if ((*it)->text(0) == name)
            return *it;
    }
    return nullptr;
}

void tst_Organize::select(const QStringList &names) const
{
    tree()->clearSelection();
    for (const QString &name : names) {
        QVERIFY2(item(name), qPrintable(name));
        tree()->setCurrentItem(item(name), 0, QItemSelectionModel::NoUpdate);
        item(name)->setSelected(true);
    }
}

// Types a name into the editor that is open.
void tst_Organize::type(const QString &name) const
{
    QPointer<QLineEdit> editor = tree()->findChild<QLineEdit *>();
    QVERIFY(editor);
    editor->setText(name);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY(!editor);
    QCoreApplication::processEvents();
}

void tst_Organize::opensFromMenuAndButton()
{
    open();
    QVERIFY(dialog()->isVisible());
    QCOMPARE(dialog()->windowTitle(), u"Organize Favorites"_s);
    delete dialog();
    auto *button = m_bar->findChild<QPushButton *>(u"cmdOrganize"_s);
    QVERIFY(button->isEnabled());
    button->click();
    QVERIFY(dialog());
}

void tst_Organize::treeHasAName()
{
    open();
    QCOMPARE(QAccessible::queryAccessibleInterface(tree())->text(QAccessible::Name),
             u"Favorites"_s);
}

void tst_Organize::showsFavoritesBeforeFolders()
{
    QVERIFY(m_home->write(u"note.txt"_s, "no favorite"));
    open();
    QStringList names;
    for (int i = 0; i < tree()->topLevelItemCount(); ++i)
        names.append(tree()->topLevelItem(i)->text(0));
    QCOMPARE(names, QStringList({u"a"_s, u"b"_s, u"F"_s, u"G"_s}));
    item(u"F"_s)->setExpanded(true);
    QVERIFY(item(u"c"_s));
}

void tst_Organize::newFolder()
{
    open();
    select({u"F"_s});
    press(u"cmdNewFolder"_s);
    QVERIFY(exists(u"F/New Folder"_s));
    type(u"x/y"_s);
    QVERIFY(exists(u"F/x_y"_s));
    QVERIFY(!exists(u"F/New Folder"_s));
    QTRY_VERIFY(item(u"x_y"_s));
}

void tst_Organize::rename_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("file");
    QTest::newRow("plain") << u"News"_s << u"News.url"_s;
    QTest::newRow("out of the folder") << u"../News"_s << u".._News.url"_s;
    QTest::newRow("nothing") << u""_s << u"a.url"_s;
    QTest::newRow("parent") << u".."_s << u"a.url"_s;
}

void tst_Organize::rename()
{
    QFETCH(QString, typed);
    QFETCH(QString, file);
    open();
    select({u"a"_s});
    press(u"cmdRename"_s);
    type(typed);
    QVERIFY(exists(file));
    QCOMPARE(exists(u"a.url"_s), file == u"a.url"_s);
    QTRY_VERIFY(item(QFileInfo(file).completeBaseName()));
}

void tst_Organize::takenNameIsRefused()
{
    QVERIFY(m_home->makeFolder(u"empty"_s));
    open();
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot rename"_s));
    select({u"F"_s});
    press(u"cmdRename"_s);
    type(u"empty"_s);
    QVERIFY(exists(u"F/c.url"_s));
    QVERIFY(exists(u"empty"_s));
    QTRY_VERIFY(item(u"F"_s));
}

void tst_Organize::moveSeveral()
{
    open();
    QVERIFY(tree()->move({m_home->path(u"b.url"_s), m_home->path(u"G"_s)}, m_home->path(u"F"_s)));
    QVERIFY(exists(u"F/b.url"_s));
    QVERIFY(exists(u"F/G/a.url"_s));
    QVERIFY(!exists(u"b.url"_s));
    QVERIFY(item(u"G"_s)->isSelected());
    QCOMPARE(item(u"G"_s)->parent(), item(u"F"_s));
}

void tst_Organize::cutAndPaste()
{
    open();
    select({u"a"_s, u"b"_s});
    QTest::keySequence(tree(), QKeySequence::Cut);
    select({u"F"_s});
    QTest::keySequence(tree(), QKeySequence::Paste);
    QVERIFY(exists(u"F/a.url"_s));
    QVERIFY(exists(u"F/b.url"_s));
    QVERIFY(!exists(u"a.url"_s));
}

void tst_Organize::moveKeepsWhatIsThere()
{
    open();
    const QByteArray there = m_home->read(u"G/a.url"_s);
    QVERIFY(tree()->move({m_home->path(u"a.url"_s)}, m_home->path(u"G"_s)));
    QCOMPARE(m_home->read(u"G/a.url"_s), there);
    QVERIFY(exists(u"G/a (2).url"_s));
}

void tst_Organize::folderIntoItself()
{
    QVERIFY(m_home->makeFolder(u"F/inner"_s));
    open();
    QVERIFY(!tree()->move({m_home->path(u"F"_s)}, m_home->path(u"F/inner"_s)));
    QVERIFY(!tree()->move({m_home->path(u"F"_s)}, m_home->path(u"F"_s)));
    QVERIFY(exists(u"F/inner"_s));
}

void tst_Organize::foreignDropIsRefused()
{
    open();
    QMimeData data;
    data.setText(u"x"_s);
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(tree()->viewport(), &drop);
    QVERIFY(!drop.isAccepted());
}

void tst_Organize::deleteGoesToTheTrash()
{
    open();
    item(u"F"_s)->setExpanded(true);
    select({u"a"_s, u"F"_s, u"c"_s});
    press(u"cmdDelete"_s);
    QVERIFY(!exists(u"a.url"_s));
    QVERIFY(!exists(u"F"_s));
    const QString trash = m_home->home() + "/data/Trash/files/"_L1;
    QVERIFY(QFileInfo::exists(trash + u"a.url"_s));
    QVERIFY(QFileInfo::exists(trash + u"F/c.url"_s));
    QVERIFY(!item(u"a"_s));
}

void tst_Organize::homeWithoutPlaceForATrash()
{
    qputenv("XDG_DATA_HOME", "/proc/none");
    open();
    select({u"a"_s});
    const Answer answer(QMessageBox::No);
    press(u"cmdDelete"_s);
    QTRY_COMPARE(answer.count(), 1);
    QVERIFY(exists(u"a.url"_s));
    QVERIFY(!QFileInfo::exists(u"files"_s));
}

void tst_Organize::deleteForGoodAsks_data()
{
    QTest::addColumn<bool>("yes");
    QTest::newRow("yes") << true;
    QTest::newRow("no") << false;
}

void tst_Organize::deleteForGoodAsks()
{
    QFETCH(bool, yes);
    TreeWithoutTrash tree(m_home->favorites());
    tree.show();
    const Answer answer(yes ? QMessageBox::Yes : QMessageBox::No);
    tree.topLevelItem(2)->setSelected(true);
    tree.deleteSelected();
    QVERIFY(exists(u"F/c.url"_s));
    QTRY_COMPARE(answer.count(), 1);
    QCOMPARE(answer.text(), u"F cannot be moved to the trash. Delete it for good?"_s);
    QTRY_COMPARE(exists(u"F"_s), !yes);
    QCOMPARE(tree.topLevelItemCount(), yes ? 3 : 4);
}

void tst_Organize::sortByDate()
{
    QFile file(m_home->path(u"b.url"_s));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.setFileTime(QDateTime::fromSecsSinceEpoch(1'000'000'000),
                             QFileDevice::FileModificationTime));
    file.close();
    open();
    QCOMPARE(tree()->topLevelItem(0)->text(0), u"a"_s);
    tree()->sortByColumn(1, Qt::AscendingOrder);
    QCOMPARE(tree()->topLevelItem(0)->text(0), u"b"_s);
}

void tst_Organize::barIsNotRefreshed()
{
    m_bar->show();
    QTRY_VERIFY(!m_bar->isRefreshing());
    const QSignalSpy refreshed(m_bar, &FavoritesBar::refreshed);
    open();
    select({u"a"_s});
    press(u"cmdDelete"_s);
    press(u"cmdClose"_s);
    QTRY_VERIFY(!dialog());
    QCOMPARE(refreshed.size(), 0);
}

void tst_Organize::missingFolder()
{
    QVERIFY(QDir(m_home->favorites()).removeRecursively());
    open();
    QCOMPARE(tree()->topLevelItemCount(), 0);
    press(u"cmdNewFolder"_s);
    QVERIFY(exists(u"New Folder"_s));
}

void tst_Organize::picture_data()
{
    QTest::addColumn<QPalette>("palette");
    QTest::newRow("light") << QPalette(QColor(0xee, 0xee, 0xee));
    QTest::newRow("dark") << QPalette(QColor(0x30, 0x30, 0x30));
}

// Nothing is cut off, in a picture that may be kept to be looked at.
void tst_Organize::picture()
{
    QFETCH(QPalette, palette);
    const QPalette before = QApplication::palette();
    const auto restore = qScopeGuard([before] { QApplication::setPalette(before); });
    QApplication::setPalette(palette);
    open();
    item(u"F"_s)->setExpanded(true);
    select({u"b"_s});
    for (const QPushButton *button : dialog()->findChildren<QPushButton *>())
        QVERIFY(button->width() >= button->minimumSizeHint().width());
    const QString folder = qEnvironmentVariable("ORVANE_PICTURES");
    if (!folder.isEmpty())
        QVERIFY(dialog()->grab().save(folder + "/organize-"_L1
                                      + QLatin1StringView(QTest::currentDataTag()) + ".png"_L1));
}

QTEST_MAIN(tst_Organize)
#include "tst_organize.moc"
