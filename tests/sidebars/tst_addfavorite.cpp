#include "AddFavoriteDialog.h"
#include "BookmarkWriter.h"
#include "FakeFrame.h"
#include "FakeWebBrowser.h"
#include "FavoriteFile.h"
#include "FavoritesBar.h"
#include "FavoritesHome.h"
#include "FolderTree.h"
#include "TempAppFolder.h"

#include <QAccessible>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>

class tst_AddFavorite : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void names_data();
    void names();
    void longNamesAreCut();
    void takenNamesGetANumber();
    void danglingLinkIsTaken();
    void shortcutThatCannotBeWritten();

    void noWindow();
    void pageWithoutAddress();
    void titleAndAddressOfThePage();
    void buttonOpensTheDialog();
    void controlsHaveTheirLabelsNames();
    void okWritesTheShortcut();
    void okMakesTheMissingFolder();
    void anotherFavoriteIsKept();
    void charactersNoFileSystemTakes();
    void titleIsExported_data();
    void titleIsExported();
    void endlessTitleIsExported();
    void emptyName();
    void chosenFolder();
    void newFolder();
    void newFolderRenamed();
    void newFolderKeepsOthers();
    void cancelWritesNothing();
    void failureKeepsTheDialog();
    void shownTreeIsRefreshed();
    void unshownTreeIsNot();
    void translation();

private:
    AddFavoriteDialog *open(const QString &url, const QString &title);
    AddFavoriteDialog *dialog() const
    {
        return m_frame->window()->findChild<AddFavoriteDialog *>();
    }
    template <typename Control> Control *control(const QString &name) const
    {
        return dialog()->findChild<Control *>(name);
    }
    QByteArray exported() const;
    void press(const QString &name) const { control<QPushButton>(name)->click(); }
    void rename(const QString &name) const;

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<FavoritesHome> m_home;
    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<FakeFrame> m_frame;
    FavoritesBar *m_bar = nullptr;
};

void tst_AddFavorite::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    m_home = std::make_unique<FavoritesHome>();
    m_engine = std::make_unique<FakeEngine>();
    m_frame = std::make_unique<FakeFrame>();
    m_bar = new FavoritesBar(*m_frame, m_frame->window());
}

void tst_AddFavorite::cleanup()
{
    m_frame.reset();
    m_engine.reset();
    m_home.reset();
    m_folder.reset();
}

// The dialog for a page of that address and title.
AddFavoriteDialog *tst_AddFavorite::open(const QString &url, const QString &title)
{
    BrowserWindow *page = m_frame->open(u"http://start/"_s);
    static_cast<FakeWebBrowser *>(page->browser())->location = url;
    page->setWindowTitle(title);
    m_frame->area->setActiveSubWindow(page);
    m_bar->addCurrentPage();
    return dialog();
}

// Types a name into the editor of the new folder.
void tst_AddFavorite::rename(const QString &name) const
{
    auto *tree = control<FolderTree>(u"tvFolders"_s);
    QPointer<QLineEdit> editor = tree->findChild<QLineEdit *>();
    QVERIFY(editor);
    editor->setText(name);
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_VERIFY(!editor);
}

void tst_AddFavorite::names_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("name");
    QTest::newRow("plain") << u"News"_s << u"News"_s;
    QTest::newRow("taken by no file system")
        << u"a/b\\c:d*e?f\"g<h>i|j"_s << u"a_b_c_d_e_f_g_h_i_j"_s;
    QTest::newRow("control characters") << u"a\tb\nc\x7f"_s << u"a_b_c_"_s;
    QTest::newRow("blanks and dots at the end") << u" a . . "_s << u"a"_s;
    QTest::newRow("one dot") << u"."_s << u"other"_s;
    QTest::newRow("two dots") << u".."_s << u"other"_s;
    QTest::newRow("out of the folder") << u"../../x"_s << u".._.._x"_s;
    QTest::newRow("empty") << u""_s << u"other"_s;
    QTest::newRow("blanks") << u"   "_s << u"other"_s;
    QTest::newRow("device") << u"con"_s << u"_con"_s;
    QTest::newRow("device with extension") << u"LPT1.txt"_s << u"_LPT1.txt"_s;
    QTest::newRow("no device") << u"console"_s << u"console"_s;
    QTest::newRow("scripts") << u"новости أخبار ニュース 😀"_s << u"новости أخبار ニュース 😀"_s;
}

void tst_AddFavorite::names()
{
    QFETCH(QString, text);
    QTEST(FavoriteFile::name(text, u"other"_s), "name");
}

void tst_AddFavorite::longNamesAreCut()
{
    for (const QString &letter : {u"x"_s, u"ж"_s, u"ニ"_s, u"😀"_s}) {
        const QString name = FavoriteFile::name(letter.repeated(1'000'000), u"other"_s);
        QVERIFY(name.toUtf8().size() > 230);
        QCOMPARE(name, letter.repeated(name.size() / letter.size()));
        const auto path = FavoriteFile::create(m_home->favorites(), name, u"http://a/"_s);
        QVERIFY(path.has_value());
        QVERIFY(FavoriteFile::create(m_home->favorites(), name, u"http://a/"_s).has_value());
    }
}

void tst_AddFavorite::takenNamesGetANumber()
{
    QVERIFY(m_home->writeLink(u"News.url"_s, "http://old/"));
    QVERIFY(m_home->makeFolder(u"News (2).url"_s));
    const auto path = FavoriteFile::create(m_home->favorites(), u"News"_s, u"http://new/"_s);
    QCOMPARE(path, std::optional(m_home->path(u"News (3).url"_s)));
    QVERIFY(m_home->read(u"News.url"_s).contains("http://old/"));
}

void tst_AddFavorite::danglingLinkIsTaken()
{
    QVERIFY(m_home->makeFolder());
    const QString target = m_home->home() + "/elsewhere"_L1;
    QVERIFY(QFile::link(target, m_home->path(u"News.url"_s)));
    QVERIFY(FavoriteFile::create(m_home->favorites(), u"News"_s, u"http://new/"_s).has_value());
    QVERIFY(!QFileInfo::exists(target));
    QVERIFY(!m_home->read(u"News (2).url"_s).isNull());
}

void tst_AddFavorite::shortcutThatCannotBeWritten()
{
    QFile file(m_home->favorites());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot make"_s));
    QVERIFY(!FavoriteFile::create(m_home->favorites(), u"News"_s, u"http://a/"_s).has_value());
}

void tst_AddFavorite::noWindow()
{
    m_bar->addCurrentPage();
    QVERIFY(!dialog());
}

void tst_AddFavorite::pageWithoutAddress()
{
    QVERIFY(!open({}, u"Title"_s));
}

void tst_AddFavorite::titleAndAddressOfThePage()
{
    QVERIFY(open(u"http://a/"_s, u"A  page\nof news"_s));
    QCOMPARE(dialog()->windowTitle(), u"Add Favorite"_s);
    QCOMPARE(control<QLineEdit>(u"txtName"_s)->text(), u"A page of news"_s);
    QCOMPARE(control<FolderTree>(u"tvFolders"_s)->folder(), m_home->favorites());
    QVERIFY(control<QPushButton>(u"cmdOK"_s)->isDefault());
}

void tst_AddFavorite::buttonOpensTheDialog()
{
    BrowserWindow *page = m_frame->open(u"http://start/"_s);
    static_cast<FakeWebBrowser *>(page->browser())->location = u"http://a/"_s;
    m_bar->findChild<QPushButton *>(u"cmdAdd"_s)->click();
    QVERIFY(dialog());
}

void tst_AddFavorite::controlsHaveTheirLabelsNames()
{
    QVERIFY(open(u"http://a/"_s, u"News"_s));
    const auto nameOf = [](QWidget *control) {
        return QAccessible::queryAccessibleInterface(control)->text(QAccessible::Name);
    };
    QCOMPARE(nameOf(control<FolderTree>(u"tvFolders"_s)), u"Create in"_s);
    QCOMPARE(nameOf(control<QLineEdit>(u"txtName"_s)), u"Name"_s);
}

void tst_AddFavorite::okWritesTheShortcut()
{
    QVERIFY(open(u"http://a/?b=c&d=%20"_s, u"News"_s));
    QPointer<QDialog> gone = dialog();
    press(u"cmdOK"_s);
    QCOMPARE(m_home->read(u"News.url"_s), "[InternetShortcut]\r\nURL=http://a/?b=c&d=%20\r\n"_ba);
    QTRY_VERIFY(!gone);
}

void tst_AddFavorite::okMakesTheMissingFolder()
{
    QVERIFY(!QFileInfo::exists(m_home->favorites()));
    QVERIFY(open(u"http://a/"_s, u"News"_s));
    QVERIFY(!QFileInfo::exists(m_home->favorites()));
    press(u"cmdOK"_s);
    QVERIFY(!m_home->read(u"News.url"_s).isNull());
}

void tst_AddFavorite::anotherFavoriteIsKept()
{
    QVERIFY(m_home->writeLink(u"News.url"_s, "http://old/"));
    QVERIFY(open(u"http://new/"_s, u"News"_s));
    press(u"cmdOK"_s);
    QVERIFY(m_home->read(u"News.url"_s).contains("http://old/"));
    QVERIFY(m_home->read(u"News (2).url"_s).contains("http://new/"));
}

void tst_AddFavorite::charactersNoFileSystemTakes()
{
    QVERIFY(open(u"http://a/"_s, u"a/b: c?"_s));
    press(u"cmdOK"_s);
    QVERIFY(!m_home->read(u"a_b_ c_.url"_s).isNull());
}

QByteArray tst_AddFavorite::exported() const
{
    BookmarkWriter writer(m_home->favorites());
    while (writer.advance()) { }
    return writer.bytes();
}

void tst_AddFavorite::titleIsExported_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("caption");
    QTest::addColumn<QByteArray>("exported");
    QTest::newRow("plain") << u"News"_s << u"News"_s << "News"_ba;
    QTest::newRow("markup") << u"<B> & \"C\": d/e"_s << u"_B_ & _C__ d_e"_s
                            << "&lt;B&gt; &amp; &quot;C&quot;: d/e"_ba;
    QTest::newRow("dots") << u"And so on..."_s << u"And so on"_s << "And so on..."_ba;
    QTest::newRow("device") << u"Con"_s << u"_Con"_s << "Con"_ba;
    QTest::newRow("taken") << u"Taken"_s << u"Taken (2)"_s << "Taken"_ba;
}

void tst_AddFavorite::titleIsExported()
{
    QFETCH(QString, title);
    QFETCH(QString, caption);
    QFETCH(QByteArray, exported);
    QVERIFY(m_home->writeLink(u"Taken.url"_s, "http://old/"));
    QVERIFY(open(u"http://a/"_s, title));
    press(u"cmdOK"_s);
    QVERIFY(m_home->read(caption + u".url"_s).contains("URL=http://a/\r\n"));
    const QByteArray all = this->exported();
    QVERIFY2(all.contains("HREF=\"http://a/\"") && all.contains('>' + exported + "</A>"),
             all.constData());
}

void tst_AddFavorite::endlessTitleIsExported()
{
    const QString title = u"ニュース "_s.repeated(100).trimmed();
    QVERIFY(open(u"http://a/"_s, title));
    press(u"cmdOK"_s);
    QVERIFY(exported().contains('>' + title.toUtf8() + "</A>"));
}

void tst_AddFavorite::emptyName()
{
    QVERIFY(open(u"http://host.example/page"_s, {}));
    press(u"cmdOK"_s);
    QVERIFY(!m_home->read(u"host.example.url"_s).isNull());
}

void tst_AddFavorite::chosenFolder()
{
    QVERIFY(m_home->makeFolder(u"a/b"_s));
    QVERIFY(open(u"http://a/"_s, u"News"_s));
    auto *tree = control<FolderTree>(u"tvFolders"_s);
    QTreeWidgetItem *top = tree->topLevelItem(0);
    QCOMPARE(top->text(0), u"Favorites"_s);
    QVERIFY(top->isExpanded());
    QCOMPARE(top->childCount(), 1);
    top->child(0)->setExpanded(true);
    QCOMPARE(top->child(0)->childCount(), 1);
    tree->setCurrentItem(top->child(0)->child(0));
    QCOMPARE(tree->folder(), m_home->path(u"a/b"_s));
    press(u"cmdOK"_s);
    QVERIFY(!m_home->read(u"a/b/News.url"_s).isNull());
}

void tst_AddFavorite::newFolder()
{
    QVERIFY(open(u"http://a/"_s, u"News"_s));
    press(u"cmdNewFolder"_s);
    QVERIFY(QFileInfo(m_home->path(u"New Folder"_s)).isDir());
    QCOMPARE(control<FolderTree>(u"tvFolders"_s)->folder(), m_home->path(u"New Folder"_s));
    press(u"cmdOK"_s);
    QVERIFY(!m_home->read(u"New Folder/News.url"_s).isNull());
}

void tst_AddFavorite::newFolderRenamed()
{
    QVERIFY(m_home->makeFolder(u"a"_s));
    QVERIFY(open(u"http://a/"_s, u"News"_s));
    auto *tree = control<FolderTree>(u"tvFolders"_s);
    tree->setCurrentItem(tree->topLevelItem(0)->child(0));
    press(u"cmdNewFolder"_s);
    rename(u"x/y"_s);
    QCOMPARE(tree->folder(), m_home->path(u"a/x_y"_s));
    QCOMPARE(tree->currentItem()->text(0), u"x_y"_s);
    QCOMPARE(tree->topLevelItem(0)->child(0)->childCount(), 1);
    QVERIFY(QFileInfo(m_home->path(u"a/x_y"_s)).isDir());
    QVERIFY(!QFileInfo::exists(m_home->path(u"a/New Folder"_s)));
}

void tst_AddFavorite::newFolderKeepsOthers()
{
    QVERIFY(m_home->makeFolder(u"taken"_s));
    QVERIFY(m_home->makeFolder(u"New Folder"_s));
    QVERIFY(open(u"http://a/"_s, u"News"_s));
    press(u"cmdNewFolder"_s);
    auto *tree = control<FolderTree>(u"tvFolders"_s);
    QCOMPARE(tree->folder(), m_home->path(u"New Folder (2)"_s));
    rename(u"taken"_s);
    QCOMPARE(tree->folder(), m_home->path(u"New Folder (2)"_s));
    QCOMPARE(tree->currentItem()->text(0), u"New Folder (2)"_s);
}

void tst_AddFavorite::cancelWritesNothing()
{
    m_bar->show();
    QTRY_VERIFY(!m_bar->isRefreshing());
    QVERIFY(open(u"http://a/"_s, u"News"_s));
    press(u"cmdCancel"_s);
    QVERIFY(!QFileInfo::exists(m_home->favorites()));
    QVERIFY(!m_bar->isRefreshing());
}

void tst_AddFavorite::failureKeepsTheDialog()
{
    QFile file(m_home->favorites());
    QVERIFY(file.open(QIODevice::WriteOnly));
    QVERIFY(open(u"http://a/"_s, u"News"_s));
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot make"_s));
    press(u"cmdOK"_s);
    QVERIFY(dialog()->isVisible());
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"cannot make"_s));
    press(u"cmdNewFolder"_s);
    QCOMPARE(control<FolderTree>(u"tvFolders"_s)->folder(), m_home->favorites());
}

void tst_AddFavorite::shownTreeIsRefreshed()
{
    m_bar->show();
    QTRY_VERIFY(!m_bar->isRefreshing());
    const QSignalSpy refreshed(m_bar, &FavoritesBar::refreshed);
    QVERIFY(open(u"http://a/"_s, u"News"_s));
    press(u"cmdOK"_s);
    QTRY_COMPARE(refreshed.size(), 1);
    QCOMPARE(m_bar->findChild<QTreeWidget *>(u"tvFavorites"_s)->topLevelItemCount(), 1);
}

void tst_AddFavorite::unshownTreeIsNot()
{
    QVERIFY(open(u"http://a/"_s, u"News"_s));
    press(u"cmdOK"_s);
    QVERIFY(!m_bar->isRefreshing());
}

void tst_AddFavorite::translation()
{
    QVERIFY(m_folder->writeLanguage(u"English"_s,
                                    "[frmAddFavorite]\nCaption=Hinzufügen\ncmdOK=Ja\n"
                                    "strFavorites=Favoriten\n"_ba));
    QVERIFY(open(u"http://a/"_s, u"News"_s));
    QCOMPARE(dialog()->windowTitle(), u"Hinzufügen"_s);
    QCOMPARE(control<QPushButton>(u"cmdOK"_s)->text(), u"Ja"_s);
    QCOMPARE(control<QPushButton>(u"cmdCancel"_s)->text(), u"Cancel"_s);
    QCOMPARE(control<FolderTree>(u"tvFolders"_s)->topLevelItem(0)->text(0), u"Favoriten"_s);
}

QTEST_MAIN(tst_AddFavorite)
#include "tst_addfavorite.moc"
