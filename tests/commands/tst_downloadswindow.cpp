#include "AddressBox.h"
#include "BrowserWindow.h"
#include "DesktopSession.h"
#include "DownloadStrip.h"
#include "DownloadsWindow.h"
#include "FakeDownloads.h"
#include "FakeEngineData.h"
#include "FakeOpener.h"
#include "FileDialogRequest.h"
#include "MdiArea.h"
#include "MenuTable.h"
#include "ProgramWithoutEngine.h"
#include "TabStrip.h"
#include "UrlProfile.h"

#include <QAccessible>
#include <QClipboard>
#include <QHeaderView>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QScrollBar>
#include <QToolButton>
#include <QTreeView>
#include <QtTest>

using namespace Qt::StringLiterals;
using State = Download::State;

/// The Downloads window and the strip in the whole program, on downloads made by hand and on pages
/// that count what they are asked.
class tst_DownloadsWindow : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void keyOpensTheOneWindow();
    void tabIsLikeAnyOther();
    void firstWindowComesUpMaximized();
    void commandsThatNeedAPageAreGreyed();
    void everyCommandLeavesTheOtherWindowAlone_data();
    void everyCommandLeavesTheOtherWindowAlone();
    void typedAddressOpensAWindow();
    void newPageWindowTakesTheTab();
    void profilesHoldPagesOnly();
    void arrangementsAndStatesIncludeIt();
    void closeAndCloseAll();
    void coveredPageIsToldThatItIsHidden();
    void languageIsFollowed();
    void lastColumnGivesWay();
    void rowsAreFoundByTheirFile();
    void buttonsAreEnabledAsTheStatesAllow_data();
    void buttonsAreEnabledAsTheStatesAllow();
    void buttonsActOnTheChosen();
    void retryAsksTheList();
    void keysActOnTheChosen();
    void keysReachTheOnlyOne();
    void editMenuActsOnTheList();
    void chosenStayChosen();
    void removingManyAtOnce();
    void openedByItsProgram();
    void runnableFileIsOnlyShown_data();
    void runnableFileIsOnlyShown();
    void whatIsNotTheFileIsNotOpened_data();
    void whatIsNotTheFileIsNotOpened();
    void missingProgramIsTold();
    void folderOfAFailedOneOpens();
    void stripOpensTheList();
    void stripIsReachedByKey();
    void newsWhenTheUserIsElsewhere();
    void noNewsBeforeTheUsersEyes();

private:
    DownloadsWindow *window() const { return m_program->frame->findChild<DownloadsWindow *>(); }
    QTreeView &list() const { return *window()->findChild<QTreeView *>(u"lstDownloads"_s); }
    QToolButton &button(const char *name) const
    {
        return *window()->findChild<QToolButton *>(QLatin1StringView(name));
    }
    FakeWebBrowser &page() const { return *FakeWebBrowser::made().first(); }
    void open() const { m_program->choose("mnuToolsDownloads"); }
    bool isActive() const { return window() && m_program->frame->activeChild() == window(); }
    TabStrip &tabs() const { return *m_program->frame->findChild<TabStrip *>(); }
    DownloadStrip &strip() const { return *m_program->frame->findChild<DownloadStrip *>(); }
    QString addressText() const
    {
        return m_program->frame->findChild<AddressBox *>(u"brwURL1"_s)->text();
    }
    int rowOf(const QString &name) const;
    void choose(const QStringList &names) const;
    QStringList chosen() const;
    QStringList enabledButtons() const;
    /// What the page was asked so far, as a text.
    QString askedOfPage() const;
    /// A finished download of a file in a folder of the test's own.
    Download addFile(const QString &name, const QByteArray &bytes) const;
    /// The text of the message box that is open; closes it.
    QString message() const;

    std::unique_ptr<DesktopSession> m_session;
    std::unique_ptr<ProgramWithoutEngine> m_program;
    std::unique_ptr<QTemporaryDir> m_files;
};

void tst_DownloadsWindow::initTestCase()
{
    m_session = std::make_unique<DesktopSession>();
    QVERIFY(m_session->isRunning());
    m_session->setFileManaging(true);
    m_session->setNotifying(true);
}

void tst_DownloadsWindow::init()
{
    m_program = std::make_unique<ProgramWithoutEngine>();
    m_files = std::make_unique<QTemporaryDir>();
    m_session->files.shown.clear();
    m_session->notifications.shown.clear();
    setFileDialogAnswerer([](const FileDialogRequest &) { return std::nullopt; });
    m_program->start();
    QVERIFY(QTest::qWaitForWindowActive(m_program->frame.get()));
    page().location = u"http://one/"_s;
}

void tst_DownloadsWindow::cleanup()
{
    setFileDialogAnswerer({});
    m_program.reset();
    FakeDownloads::clear();
}

int tst_DownloadsWindow::rowOf(const QString &name) const
{
    for (int row = 0; row < list().model()->rowCount(); ++row) {
        if (list().model()->index(row, 0).data().toString() == name)
            return row;
    }
    return -1;
}

void tst_DownloadsWindow::choose(const QStringList &names) const
{
    list().clearSelection();
    for (const QString &name : names) {
        const QModelIndex row = list().model()->index(rowOf(name), 0);
        QVERIFY2(row.isValid(), qPrintable(name));
        list().selectionModel()->setCurrentIndex(
            row, QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }
}

QStringList tst_DownloadsWindow::chosen() const
{
    QStringList names;
    const QModelIndexList rows = list().selectionModel()->selectedRows();
    for (const QModelIndex &row : rows)
        names.append(row.data().toString());
    names.sort();
    return names;
}

QStringList tst_DownloadsWindow::enabledButtons() const
{
    QStringList names;
    for (const char *name : {"cmdPause", "cmdResume", "cmdCancel", "cmdRetry", "cmdOpen",
                             "cmdOpenFolder", "cmdCopyAddress", "cmdRemove"}) {
        if (button(name).isEnabled())
            names.append(button(name).text());
    }
    return names;
}

QString tst_DownloadsWindow::askedOfPage() const
{
    const FakeWebBrowser &asked = page();
    QStringList parts{asked.navigated.join(u' ')};
    // Menus that get ready ask it for its zoom.
    const auto commands = std::count_if(asked.executed.cbegin(), asked.executed.cend(),
                                        [](const FakeWebBrowser::Exec &call) {
                                            return call.command != OleCmd::Zoom || call.hasIn;
                                        });
    for (const int count :
         {asked.backs, asked.forwards, asked.refreshes, asked.stops, asked.finds, asked.markupAsked,
          int(commands), int(asked.refreshLevels.size()), int(asked.wentTo.size())})
        parts.append(QString::number(count));
    return parts.join(u' ');
}

Download tst_DownloadsWindow::addFile(const QString &name, const QByteArray &bytes) const
{
    QFile file(m_files->filePath(name));
    if (file.open(QIODevice::WriteOnly))
        file.write(bytes);
    Download download = FakeDownloads::make(name, State::Done);
    download.folder = m_files->path();
    download.size = bytes.size();
    download.received = bytes.size();
    FakeDownloads::add(download);
    return download;
}

QString tst_DownloadsWindow::message() const
{
    QMessageBox *box = nullptr;
    const auto find = [&] {
        box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        return box != nullptr;
    };
    if (!QTest::qWaitFor(find))
        return {};
    const QString text = box->text();
    box->close();
    return text;
}

void tst_DownloadsWindow::keyOpensTheOneWindow()
{
    QVERIFY(!window());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_J, Qt::ControlModifier);
    QTRY_VERIFY(isActive());
    QCOMPARE(window()->windowTitle(), u"Downloads"_s);
    QTRY_VERIFY(list().hasFocus());
    QTest::keyClick(&list(), Qt::Key_J, Qt::ControlModifier);
    QCOMPARE(m_program->frame->findChildren<DownloadsWindow *>().size(), 1);
    // From the page back to it.
    m_program->frame->findChild<MdiArea *>()->setActiveSubWindow(browserForms().first());
    QVERIFY(!isActive());
    open();
    QVERIFY(isActive());
    QCOMPARE(m_program->frame->findChildren<DownloadsWindow *>().size(), 1);
}

void tst_DownloadsWindow::tabIsLikeAnyOther()
{
    page().events->locationChange({});
    QCOMPARE(addressText(), u"http://one/"_s);
    open();
    const QString key = window()->tabKey();
    QCOMPARE(tabs().keys().size(), 2);
    QCOMPARE(tabs().caption(key), u"Downloads"_s);
    QVERIFY(tabs().isPressed(key));
    QCOMPARE(addressText(), QString());
    const QString other = browserForms().first()->tabKey();
    QTest::mouseClick(tabs().tab(other), Qt::LeftButton);
    QTRY_VERIFY(!isActive());
    QCOMPARE(addressText(), u"http://one/"_s);
    QTest::mouseClick(tabs().tab(key), Qt::LeftButton);
    QTRY_VERIFY(isActive());
    QCOMPARE(addressText(), QString());
    QVERIFY(tabs().isPressed(key));
    QTest::mouseClick(tabs().tab(key), Qt::MiddleButton);
    QTRY_VERIFY(!window());
    QCOMPARE(tabs().keys(), QStringList(other));
    QTRY_VERIFY(tabs().isPressed(other));
}

void tst_DownloadsWindow::firstWindowComesUpMaximized()
{
    m_program->choose("mnuFileCloseAll");
    QTRY_VERIFY(!m_program->frame->activeChild());
    open();
    QVERIFY(window()->isMaximized());
    QTRY_COMPARE(m_program->frame->windowTitle(), u"Orvane - [Downloads]"_s);
}

void tst_DownloadsWindow::commandsThatNeedAPageAreGreyed()
{
    open();
    for (const MenuEntry &entry : menuTable()) {
        const QAction &item = *m_program->item(entry.name);
        if (entry.details.need == MenuEntry::Need::Page)
            QTRY_VERIFY2(!item.isEnabled(), entry.name);
        if (entry.details.need == MenuEntry::Need::Window
            || entry.details.need == MenuEntry::Need::Pages)
            QTRY_VERIFY2(item.isEnabled(), entry.name);
    }
    browserForms().first()->close();
    emit m_program->item("mnuFile")->menu()->aboutToShow();
    for (const MenuEntry &entry : menuTable()) {
        if (entry.details.need == MenuEntry::Need::Pages)
            QVERIFY2(!m_program->item(entry.name)->isEnabled(), entry.name);
    }
}

void tst_DownloadsWindow::everyCommandLeavesTheOtherWindowAlone_data()
{
    QTest::addColumn<QString>("item");
    using enum MenuEntry::Kind;
    for (const MenuEntry &entry : menuTable()) {
        if (entry.kind != Menu && entry.kind != Separator
            && QByteArray(entry.name) != "mnuFileExit")
            QTest::newRow(entry.name) << QString::fromLatin1(entry.name);
    }
}

/// Through the menu, and as buttons run it, also while it is grey.
void tst_DownloadsWindow::everyCommandLeavesTheOtherWindowAlone()
{
    QFETCH(QString, item);
    qputenv("PATH", "/nowhere");
    const FakeData data;
    FakeDownloads::add(FakeDownloads::make(u"a.zip"_s));
    open();
    choose({u"a.zip"_s});
    const QPointer<BrowserWindow> other(browserForms().first());
    const QString before = askedOfPage();
    m_program->frame->menuItem(item)->trigger();
    if (!isActive())
        open();
    m_program->frame->run(item);
    QCoreApplication::processEvents();
    while (QWidget *dialog = QApplication::activeModalWidget())
        dialog->close();
    const bool isForAll = item.endsWith("All"_L1);
    QVERIFY(other || item == "mnuFileCloseAll"_L1 || item == "mnuWindowCloseAll"_L1);
    if (other && !isForAll)
        QCOMPARE(askedOfPage(), before);
    QCOMPARE(downloadList().all().size(), 1);
    QCOMPARE(downloadList().all().first().state, State::Running);
}

void tst_DownloadsWindow::typedAddressOpensAWindow()
{
    open();
    const QString before = askedOfPage();
    auto *edit = m_program->frame->findChild<AddressBox *>(u"brwURL1"_s)->findChild<QLineEdit *>();
    edit->setFocus();
    QTest::keyClicks(edit, u"http://two/"_s);
    QTest::keyClick(edit, Qt::Key_Escape);
    QCOMPARE(addressText(), QString());
    QTest::keyClicks(edit, u"http://two/"_s);
    QTest::keyClick(edit, Qt::Key_Return);
    QTRY_COMPARE(browserForms().size(), 2);
    QCOMPARE(FakeWebBrowser::made().last()->navigated, QStringList(u"http://two/"_s));
    QCOMPARE(activeBrowser(*m_program->frame), browserForms().last());
    QCOMPARE(askedOfPage(), before);
    QVERIFY(window());
}

void tst_DownloadsWindow::newPageWindowTakesTheTab()
{
    open();
    m_program->choose("mnuFileNewBlankPage");
    QVERIFY(!isActive());
    QTRY_VERIFY(!tabs().isPressed(window()->tabKey()));
    QVERIFY(tabs().isPressed(browserForms().last()->tabKey()));
}

void tst_DownloadsWindow::profilesHoldPagesOnly()
{
    open();
    const QString file = m_program->folder.file(u"x.orp"_s);
    int asked = 0;
    setFileDialogAnswerer([&](const FileDialogRequest &) {
        ++asked;
        return FileDialogAnswer{file, 1};
    });
    m_program->choose("mnuFileProfilesSave");
    QCOMPARE(m_program->folder.read(u"x.orp"_s),
             "[Profile_URLS]\r\nURL1=http://one/\r\n[URL_Count]\r\nCount=1\r\n");
    browserForms().first()->close();
    m_program->frame->run(u"mnuFileProfilesSave"_s);
    QCOMPARE(asked, 1);
}

void tst_DownloadsWindow::arrangementsAndStatesIncludeIt()
{
    open();
    BrowserWindow *other = browserForms().first();
    m_program->choose("mnuWindowTileHorizontal");
    QVERIFY(!window()->isMaximized());
    QVERIFY(!window()->geometry().intersects(other->geometry()));
    m_program->choose("mnuWindowCascade");
    QVERIFY(window()->geometry().intersects(other->geometry()));
    m_program->choose("mnuWindowMinimizeAll");
    QVERIFY(window()->isMinimized());
    QVERIFY(other->isMinimized());
    m_program->choose("mnuWindowRestoreAll");
    QVERIFY(!window()->isMinimized());
    QVERIFY(!other->isMinimized());
    window()->showMinimized();
    open();
    QVERIFY(!window()->isMinimized());
    QVERIFY(isActive());
    window()->showMaximized();
    QTRY_COMPARE(m_program->frame->windowTitle(), u"Orvane - [Downloads]"_s);
}

void tst_DownloadsWindow::closeAndCloseAll()
{
    open();
    m_program->choose("mnuFileClose");
    QTRY_VERIFY(!window());
    QCOMPARE(browserForms().size(), 1);
    open();
    QTest::keyClick(&list(), Qt::Key_F4, Qt::ControlModifier);
    QTRY_VERIFY(!window());
    open();
    m_program->choose("mnuFileCloseAll");
    QTRY_VERIFY(!window());
    QTRY_VERIFY(browserForms().isEmpty());
    QCOMPARE(tabs().keys(), QStringList());
    // The program ends with it open, too.
    open();
    m_program->frame->close();
    QCOMPARE(Forms::named("frmDownloads").size(), 0);
}

void tst_DownloadsWindow::coveredPageIsToldThatItIsHidden()
{
    QVERIFY(browserForms().first()->isMaximized());
    open();
    QVERIFY(window()->isMaximized());
    QTRY_VERIFY(!page().shown);
    window()->close();
    QTRY_VERIFY(page().shown);
}

void tst_DownloadsWindow::languageIsFollowed()
{
    FakeDownloads::add(FakeDownloads::make(u"a.zip"_s, State::Paused));
    open();
    m_program->folder.writeLanguage(
        u"English"_s,
        "[frmDownloads]\r\nCaption=Ladungen\r\ncmdPause=Halt\r\nstrName=Titel\r\n"
        "strPaused=Steht\r\n");
    m_program->frame->translate();
    QCOMPARE(window()->windowTitle(), u"Ladungen"_s);
    QCOMPARE(tabs().caption(window()->tabKey()), u"Ladungen"_s);
    QCOMPARE(button("cmdPause").text(), u"Halt"_s);
    QCOMPARE(list().model()->headerData(0, Qt::Horizontal).toString(), u"Titel"_s);
    QVERIFY(strip().accessibleName().contains("Steht"_L1));
}

/// As checks from outside and screen readers look for them.
/// It takes what is left, in a language that came while it was wide too.
void tst_DownloadsWindow::lastColumnGivesWay()
{
    open();
    window()->showMaximized();
    m_program->frame->resize(1260, 600);
    const QHeaderView &header = *list().header();
    const int last = header.logicalIndex(header.count() - 1);
    const int less = 40;
    QTRY_VERIFY(header.sectionSize(last) > header.sectionSizeHint(last) + less);
    m_program->frame->translate();
    const int width = list().viewport()->width();
    const int before = header.sectionSize(last);
    m_program->frame->resize(m_program->frame->width() - less, 600);
    QTRY_COMPARE(list().viewport()->width(), width - less);
    QTRY_COMPARE(header.sectionSize(last), before - less);
    QCOMPARE(list().horizontalScrollBar()->maximum(), 0);
}

void tst_DownloadsWindow::rowsAreFoundByTheirFile()
{
    FakeDownloads::add(FakeDownloads::make(u"a.zip"_s, State::Paused));
    FakeDownloads::add(FakeDownloads::make(u"b.zip"_s, State::Done));
    open();
    QAccessibleInterface *face = QAccessible::queryAccessibleInterface(&list());
    QCOMPARE(face->text(QAccessible::Name), u"Downloads"_s);
    QMap<QString, QString> rows;
    for (int i = 0; i < face->childCount(); ++i) {
        QAccessibleInterface *cell = face->child(i);
        rows.insert(cell->text(QAccessible::Name), cell->text(QAccessible::Description));
    }
    QVERIFY(rows.contains(u"b.zip"_s));
    QCOMPARE(rows.value(u"a.zip"_s), u"25%, Paused"_s);
    for (const char *caption : {"Pause", "Resume", "Cancel", "Retry", "Open", "Open Folder",
                                "Copy Address", "Remove From List"}) {
        const auto buttons = window()->findChildren<QToolButton *>();
        const auto isNamed = [&](QToolButton *each) {
            QAccessibleInterface *one = QAccessible::queryAccessibleInterface(each);
            return one->text(QAccessible::Name) == QLatin1StringView(caption)
                && one->role() == QAccessible::Button && each->focusPolicy() == Qt::StrongFocus;
        };
        QVERIFY2(std::any_of(buttons.cbegin(), buttons.cend(), isNamed), caption);
    }
}

void tst_DownloadsWindow::buttonsAreEnabledAsTheStatesAllow_data()
{
    QTest::addColumn<QList<State>>("states");
    QTest::addColumn<QString>("expected");
    using enum Download::State;
    const auto row = [](const char *name, const QList<State> &states, const char *expected) {
        QTest::newRow(name) << states << QString::fromLatin1(expected);
    };
    row("none", {}, "");
    row("running", {Running}, "Pause,Cancel,Open Folder,Copy Address");
    row("paused", {Paused}, "Resume,Cancel,Open Folder,Copy Address");
    row("held", {Held}, "Cancel,Open Folder,Copy Address");
    row("finishing", {Finishing}, "Open Folder,Copy Address");
    row("done", {Done}, "Open,Open Folder,Copy Address,Remove From List");
    row("cancelled", {Cancelled}, "Retry,Open Folder,Copy Address,Remove From List");
    row("failed", {Failed}, "Retry,Open Folder,Copy Address,Remove From List");
    row("unfinished", {Unfinished}, "Retry,Open Folder,Copy Address,Remove From List");
    row("several", {Running, Paused, Done},
        "Pause,Resume,Cancel,Open Folder,Copy Address,Remove From List");
}

void tst_DownloadsWindow::buttonsAreEnabledAsTheStatesAllow()
{
    QFETCH(QList<State>, states);
    QFETCH(QString, expected);
    QStringList names;
    for (const State state : states) {
        names.append(QString::number(names.size()));
        FakeDownloads::add(FakeDownloads::make(names.last(), state));
    }
    open();
    choose(names);
    QTRY_COMPARE(enabledButtons().join(u','), expected);
}

void tst_DownloadsWindow::buttonsActOnTheChosen()
{
    const FakeTransfer &one = *FakeDownloads::add(FakeDownloads::make(u"one"_s));
    const FakeTransfer &two = *FakeDownloads::add(FakeDownloads::make(u"two"_s));
    FakeDownloads::add(FakeDownloads::make(u"old"_s, State::Done));
    open();
    choose({u"one"_s, u"old"_s});
    const auto press = [this](const char *name) {
        QTRY_VERIFY2(button(name).isEnabled(), name);
        QTest::mouseClick(&button(name), Qt::LeftButton);
    };
    press("cmdPause");
    QCOMPARE(one.asked, QStringList(u"pause"_s));
    press("cmdResume");
    press("cmdCancel");
    QCOMPARE(one.asked, QStringList({u"pause"_s, u"resume"_s, u"cancel"_s}));
    QCOMPARE(two.asked, QStringList());
    press("cmdCopyAddress");
    QStringList copied = QApplication::clipboard()->text().split(u'\n');
    copied.sort();
    QCOMPARE(copied, QStringList({u"https://files.example/old"_s, u"https://files.example/one"_s}));
    press("cmdRemove");
    QTRY_COMPARE(list().model()->rowCount(), 1);
    QCOMPARE(rowOf(u"two"_s), 0);
    QCOMPARE(two.asked, QStringList());
}

void tst_DownloadsWindow::retryAsksTheList()
{
    // What a page made by itself is not to be had once more.
    Download made = FakeDownloads::make(u"made"_s, State::Failed);
    made.isRepeatable = false;
    FakeDownloads::add(made);
    QStringList retried;
    downloadList().setRetry([&retried](const QString &id) { retried.append(id); });
    const Download failed = FakeDownloads::make(u"one"_s, State::Failed);
    FakeDownloads::add(failed);
    open();
    choose({u"one"_s});
    QTRY_VERIFY(button("cmdRetry").isEnabled());
    QTest::mouseClick(&button("cmdRetry"), Qt::LeftButton);
    QCOMPARE(retried, QStringList(failed.id));
    choose({u"made"_s});
    QTRY_VERIFY(!button("cmdRetry").isEnabled());
    // But it may be all there, for want of a name.
    downloadList().change(made.id, [](Download &download) {
        download.stage = u"/nowhere/.orvane-download-aBcDeFgH"_s;
        download.received = download.size;
    });
    QTRY_VERIFY(button("cmdRetry").isEnabled());
    downloadList().setRetry({});
}

void tst_DownloadsWindow::keysActOnTheChosen()
{
    const FakeOpener opener;
    const FakeTransfer &running = *FakeDownloads::add(FakeDownloads::make(u"one"_s));
    addFile(u"done.txt"_s, "words");
    open();
    choose({u"one"_s});
    QTest::keyClick(&list(), Qt::Key_Space);
    QTest::keyClick(&list(), Qt::Key_Space);
    QCOMPARE(running.asked, QStringList({u"pause"_s, u"resume"_s}));
    QTest::keyClick(&list(), Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(QApplication::clipboard()->text(), u"https://files.example/one"_s);
    QTest::keyClick(&list(), Qt::Key_Return);
    QTest::keyClick(&list(), Qt::Key_Delete);
    QVERIFY2(rowOf(u"one"_s) >= 0, "what is under way is not taken away by a key");
    choose({u"done.txt"_s});
    QTest::keyClick(&list(), Qt::Key_Return);
    QTRY_COMPARE(opener.opened(), QStringList(m_files->filePath(u"done.txt"_s)));
    QTest::keyClick(&list(), Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(chosen(), QStringList({u"done.txt"_s, u"one"_s}));
    QTest::keyClick(&list(), Qt::Key_Delete);
    QTRY_COMPARE(list().model()->rowCount(), 1);
    QVERIFY(QFile::exists(m_files->filePath(u"done.txt"_s)));
    // Forwards to the buttons and back.
    choose({u"one"_s});
    QTRY_VERIFY(button("cmdPause").isEnabled());
    QTest::keyClick(&list(), Qt::Key_Tab);
    QVERIFY(qobject_cast<QToolButton *>(QApplication::focusWidget()));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Backtab);
    QVERIFY(list().hasFocus());
}

/// There is no other row for the arrows to come from.
void tst_DownloadsWindow::keysReachTheOnlyOne()
{
    const FakeTransfer &running = *FakeDownloads::add(FakeDownloads::make(u"one"_s));
    open();
    QTRY_VERIFY(list().hasFocus());
    QCOMPARE(chosen(), QStringList(u"one"_s));
    QTRY_VERIFY(button("cmdPause").isEnabled());
    QTest::keyClick(&list(), Qt::Key_Space);
    QCOMPARE(running.asked, QStringList(u"pause"_s));
}

void tst_DownloadsWindow::editMenuActsOnTheList()
{
    FakeDownloads::add(FakeDownloads::make(u"one"_s));
    FakeDownloads::add(FakeDownloads::make(u"two"_s));
    open();
    m_program->choose("mnuEditSelectAll");
    QCOMPARE(chosen(), QStringList({u"one"_s, u"two"_s}));
    m_program->choose("mnuEditSelectNone");
    QCOMPARE(chosen(), QStringList());
    choose({u"two"_s});
    m_program->choose("mnuEditCopy");
    QCOMPARE(QApplication::clipboard()->text(), u"https://files.example/two"_s);
    // In the address bar they act there.
    auto *edit = m_program->frame->findChild<AddressBox *>(u"brwURL1"_s)->findChild<QLineEdit *>();
    edit->setFocus();
    edit->setText(u"typed"_s);
    m_program->choose("mnuEditSelectAll");
    QCOMPARE(edit->selectedText(), u"typed"_s);
    QCOMPARE(chosen(), QStringList(u"two"_s));
}

void tst_DownloadsWindow::chosenStayChosen()
{
    const Download one = FakeDownloads::make(u"one"_s);
    FakeDownloads::add(one);
    FakeDownloads::add(FakeDownloads::make(u"two"_s));
    FakeDownloads::add(FakeDownloads::make(u"three"_s));
    open();
    choose({u"one"_s, u"two"_s});
    FakeDownloads::set(one, State::Done);
    FakeDownloads::add(FakeDownloads::make(u"four"_s));
    downloadList().change(one.id, [](Download &each) { each.name = u"one (1)"_s; });
    QTRY_VERIFY(rowOf(u"one (1)"_s) >= 0);
    QCOMPARE(chosen(), QStringList({u"one (1)"_s, u"two"_s}));
    list().sortByColumn(0, Qt::AscendingOrder);
    QCOMPARE(chosen(), QStringList({u"one (1)"_s, u"two"_s}));
}

void tst_DownloadsWindow::removingManyAtOnce()
{
    for (int i = 0; i < DownloadList::most; ++i)
        FakeDownloads::add(FakeDownloads::make(QString::number(i), State::Done));
    open();
    QCOMPARE(list().model()->rowCount(), DownloadList::most);
    QTest::keyClick(&list(), Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(&list(), Qt::Key_Delete);
    QTRY_COMPARE(list().model()->rowCount(), 0);
    QTRY_COMPARE(enabledButtons(), QStringList());
}

void tst_DownloadsWindow::openedByItsProgram()
{
    const FakeOpener opener;
    addFile(u"page.html"_s, "<!DOCTYPE html><script>1</script>");
    open();
    choose({u"page.html"_s});
    QTRY_VERIFY(button("cmdOpen").isEnabled());
    QTest::mouseClick(&button("cmdOpen"), Qt::LeftButton);
    QTRY_COMPARE(opener.opened(), QStringList(m_files->filePath(u"page.html"_s)));
    QCOMPARE(m_session->files.shown.size(), 0);
    QTest::mouseClick(&button("cmdOpenFolder"), Qt::LeftButton);
    QTRY_COMPARE(m_session->files.shown.size(), 1);
}

void tst_DownloadsWindow::runnableFileIsOnlyShown_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("launcher") << u"x.desktop"_s << QByteArray("[Desktop Entry]\nExec=x\n");
    QTest::newRow("script by name") << u"x.sh"_s << QByteArray("echo");
    QTest::newRow("script by contents") << u"x.png"_s << QByteArray("#!/bin/sh\necho");
    QTest::newRow("image of a program") << u"x.AppImage"_s
                                        << QByteArray("\x7f"
                                                      "ELF");
}

void tst_DownloadsWindow::runnableFileIsOnlyShown()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, bytes);
    const FakeOpener opener;
    addFile(name, bytes);
    open();
    choose({name});
    QTRY_VERIFY(button("cmdOpen").isEnabled());
    QTest::mouseClick(&button("cmdOpen"), Qt::LeftButton);
    QTRY_COMPARE(m_session->files.shown.size(), 1);
    const QString address =
        QString::fromLatin1(QUrl::fromLocalFile(m_files->filePath(name)).toEncoded());
    QCOMPARE(m_session->files.shown.first(), QStringList(address));
    QCOMPARE(opener.opened(), QStringList());
}

void tst_DownloadsWindow::whatIsNotTheFileIsNotOpened_data()
{
    QTest::addColumn<QString>("instead");
    QTest::newRow("nothing") << QString();
    QTest::newRow("link") << u"link"_s;
    QTest::newRow("folder") << u"folder"_s;
    QTest::newRow("name with a folder") << u"name"_s;
}

void tst_DownloadsWindow::whatIsNotTheFileIsNotOpened()
{
    QFETCH(QString, instead);
    const FakeOpener opener;
    const Download download = addFile(u"a.txt"_s, "words");
    const QString path = m_files->filePath(u"a.txt"_s);
    if (instead == "name"_L1) {
        downloadList().change(download.id, [](Download &each) { each.name = u"../a.txt"_s; });
    } else {
        QVERIFY(QFile::remove(path));
        if (instead == "link"_L1)
            QVERIFY(QFile::link(u"/etc/passwd"_s, path));
        if (instead == "folder"_L1)
            QVERIFY(QDir().mkdir(path));
    }
    open();
    list().selectAll();
    QTRY_VERIFY(button("cmdOpen").isEnabled());
    QTest::mouseClick(&button("cmdOpen"), Qt::LeftButton);
    QVERIFY(message().contains("a.txt is no longer there"_L1));
    QCOMPARE(opener.opened(), QStringList());
    QCOMPARE(m_session->files.shown.size(), 0);
}

void tst_DownloadsWindow::missingProgramIsTold()
{
    const FakeOpener opener;
    opener.setStatus(3);
    addFile(u"a.odd"_s, "words");
    open();
    choose({u"a.odd"_s});
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"no program took .*a\\.odd"_s));
    QTest::keyClick(&list(), Qt::Key_Return);
    QCOMPARE(message(), u"The desktop has no program that opens a.odd."_s);
}

void tst_DownloadsWindow::folderOfAFailedOneOpens()
{
    const FakeOpener opener;
    Download download = FakeDownloads::make(u"a.zip"_s, State::Failed);
    download.folder = m_files->path();
    FakeDownloads::add(download);
    open();
    choose({u"a.zip"_s});
    QTRY_VERIFY(button("cmdOpenFolder").isEnabled());
    QTest::mouseClick(&button("cmdOpenFolder"), Qt::LeftButton);
    QTRY_COMPARE(opener.opened(), QStringList(m_files->path()));
    m_files->remove();
    QTest::mouseClick(&button("cmdOpenFolder"), Qt::LeftButton);
    QVERIFY(message().contains("is no longer there"_L1));
}

void tst_DownloadsWindow::stripOpensTheList()
{
    QVERIFY(!strip().isVisible());
    const Download download = FakeDownloads::make(u"a.zip"_s);
    FakeDownloads::add(download);
    QVERIFY(strip().isVisible());
    QVERIFY(strip().accessibleName().contains("a.zip"_L1));
    QTest::mouseClick(&strip(), Qt::LeftButton);
    QVERIFY(isActive());
    window()->close();
    QTRY_VERIFY(!window());
    FakeDownloads::set(download, State::Failed, Download::Problem::ConnectionLost);
    QTRY_VERIFY(strip().accessibleName().contains("The connection was lost"_L1));
    QVERIFY(strip().isVisible());
    open();
    QTRY_VERIFY(!strip().isVisible());
}

void tst_DownloadsWindow::stripIsReachedByKey()
{
    FakeDownloads::add(FakeDownloads::make(u"a.zip"_s));
    open();
    QTRY_VERIFY(list().hasFocus());
    QTest::keyClick(&list(), Qt::Key_F6, Qt::ShiftModifier);
    QTRY_VERIFY(strip().hasFocus());
    QTest::keyClick(&strip(), Qt::Key_F6);
    QTRY_VERIFY(list().hasFocus());
}

void tst_DownloadsWindow::newsWhenTheUserIsElsewhere()
{
    const Download one = FakeDownloads::make(u"<a>.zip"_s);
    const Download two = FakeDownloads::make(u"b.zip"_s);
    FakeDownloads::add(one);
    FakeDownloads::add(two);
    m_program->frame->showMinimized();
    QTRY_VERIFY(QGuiApplication::applicationState() != Qt::ApplicationActive);
    FakeDownloads::set(one, State::Done);
    QTRY_VERIFY(strip().accessibleName().contains("b.zip"_L1));
    QCOMPARE(m_session->notifications.shown.size(), 0);
    FakeDownloads::set(two, State::Failed, Download::Problem::NoRoom);
    QTRY_COMPARE(m_session->notifications.shown.size(), 1);
    QCOMPARE(m_session->notifications.shown.first().title, u"Downloads have ended"_s);
    QCOMPARE(m_session->notifications.shown.first().body, u"Done: 1\nFailed: 1"_s);
    const Download three = FakeDownloads::make(u"<a>.zip"_s);
    FakeDownloads::add(three);
    FakeDownloads::set(three, State::Done);
    QTRY_COMPARE(m_session->notifications.shown.size(), 2);
    QCOMPARE(m_session->notifications.shown.last().title, u"Downloads are done"_s);
    QCOMPARE(m_session->notifications.shown.last().body, u"&lt;a&gt;.zip"_s);
    emit m_session->notifications.ActionInvoked(1, u"default"_s);
    QTRY_VERIFY(isActive());
    QTRY_VERIFY(!m_program->frame->isMinimized());
}

void tst_DownloadsWindow::noNewsBeforeTheUsersEyes()
{
    const Download one = FakeDownloads::make(u"a.zip"_s);
    FakeDownloads::add(one);
    QTRY_VERIFY(!m_session->progress.isEmpty());
    QTRY_COMPARE(m_session->progress.last().second.value(u"progress"_s).toDouble(), 0.25);
    FakeDownloads::set(one, State::Done);
    QTRY_COMPARE(m_session->progress.last().second.value(u"progress-visible"_s).toBool(), false);
    QCOMPARE(m_session->notifications.shown.size(), 0);
}

QTEST_MAIN(tst_DownloadsWindow)
#include "tst_downloadswindow.moc"
