#include <QDialog>
#include <QFileDialog>
#include <QMenu>
#include <QPdfDocument>
#include <QTabWidget>
#include <QWebEngineView>
#include <QWindow>
#include <map>
#include <optional>

#include "../Session.h"
#include "CoolBand.h"
#include "CoolBar.h"
#include "EngineTest.h"
#include "FileDialogRequest.h"
#include "MenuTable.h"
#include "PageFindBar.h"
#include "PrintPreview.h"
#include "ToolBar.h"
#include "VisitFile.h"
#include "VisitHistory.h"

using namespace Qt::StringLiterals;

/// Every item of the File, Edit, View and Tools menus on a real page, chosen with the mouse from
/// its menu and by its shortcut with the keyboard in the page: each has to show its effect.
class tst_MenuItems : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { describeItems(); }
    void init();
    void cleanup();

    void everyItemIsDescribed();
    void itemsDoTheirWork_data();
    void itemsDoTheirWork();

private:
    struct Item {
        /// What has to be so before; may be empty.
        std::function<void()> prepare;
        /// True once the effect is there.
        std::function<bool()> effect;
    };

    void describeItems();
    void describeFile();
    void describeEdit();
    void describeView();
    void describeTools();
    void describeSwitch(const QString &item, const std::function<bool()> &effect);
    void describeBand(const QString &item, const QString &band);
    static QList<MenuEntry> entries();
    void clickInMenu(const QString &item);
    void pressShortcut(const QString &item);
    void selectField();
    void closeDialog();

    QAction *action(const QString &item) const { return m_session->frame->menuItem(item); }
    QWebEnginePage &page() const
    {
        return *m_session->active()->findChild<QWebEngineView *>()->page();
    }
    QWidget *engineWidget() const
    {
        return m_session->active()->findChild<QWebEngineView *>()->focusProxy();
    }
    QVariant ask(const QString &script) const;
    QString field() const { return ask(u"document.getElementById('f').value"_s).toString(); }
    static bool dialogIs(const char *name)
    {
        const QWidget *dialog = QApplication::activeModalWidget();
        return dialog && dialog->objectName() == QLatin1String(name);
    }
    static QString clipboard() { return QApplication::clipboard()->text(); }
    CoolBar &coolBar() const { return *m_session->frame->findChild<CoolBar *>(); }
    QString url(const QString &path) const { return m_session->server.url(path); }
    QString profile() const { return m_session->folder.file(u"Profiles/kept.orp"_s); }
    void writeProfile() const
    {
        QVERIFY(m_session->folder.write(u"Profiles/kept.orp"_s,
                                        "[Profile_URLS]\r\nURL1=" + url(u"/one"_s).toUtf8()
                                            + "\r\n[URL_Count]\r\nCount=1\r\n"));
    }

    std::map<QString, Item> m_items;
    /// The mark of a switch before it is thrown.
    bool m_was = false;
    std::unique_ptr<Session> m_session;
    std::unique_ptr<VisitHistory> m_visits;
};

void tst_MenuItems::init()
{
    // A machine that has the platform's control panel must not start it.
    qputenv("PATH", "/nowhere");
    m_session = std::make_unique<Session>();
    m_visits = std::make_unique<VisitHistory>(VisitFile::path());
    m_session->server.page("/page", "<title>Page</title><p>some words<input id=f value=field>");
    m_session->start(url(u"/page"_s));
    QTRY_VERIFY(m_session->shows(url(u"/page"_s)));
    m_session->frame->activateWindow();
    QTRY_VERIFY(m_session->frame->isActiveWindow());
    m_session->active()->browser()->setFocus();
    QTRY_VERIFY(engineWidget()->hasFocus());
    setFileDialogAnswerer([this](const FileDialogRequest &) {
        return std::optional<FileDialogAnswer>({profile(), 1});
    });
}

void tst_MenuItems::cleanup()
{
    setFileDialogAnswerer({});
    closeDialog();
    m_session->end();
    m_visits.reset();
    m_session.reset();
}

QVariant tst_MenuItems::ask(const QString &script) const
{
    const auto answer = std::make_shared<std::optional<QVariant>>();
    page().runJavaScript(script, [answer](const QVariant &value) { *answer = value; });
    if (!QTest::qWaitFor([&] { return answer->has_value(); }, 10000))
        return u"no answer"_s;
    return **answer;
}

/// The page's field has the keyboard and its text is selected, as the program knows.
void tst_MenuItems::selectField()
{
    m_session->active()->browser()->setFocus();
    // A page hears of its focus only while its window is active, which may come late.
    QTRY_VERIFY_WITH_TIMEOUT(ask(u"document.hasFocus()"_s).toBool(), 20000);
    ask(u"f = document.getElementById('f'), f.focus(), f.select()"_s);
    QTRY_COMPARE_WITH_TIMEOUT(page().selectedText(), u"field"_s, 20000);
    QTRY_COMPARE_WITH_TIMEOUT(m_session->active()->browser()->queryStatus(OleCmd::Cut), 3, 20000);
}

void tst_MenuItems::closeDialog()
{
    if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget()))
        dialog->reject();
}

void tst_MenuItems::describeItems()
{
    describeFile();
    describeEdit();
    describeView();
    describeTools();
}

void tst_MenuItems::describeFile()
{
    const auto shows = [this](const QString &path, int windows) {
        return [this, path, windows] {
            return m_session->windows() == windows && m_session->shows(url(path));
        };
    };
    const auto noWindow = [this] { return m_session->windows() == 0; };
    m_items[u"mnuFileNewCurrent"_s] = {{}, shows(u"/page"_s, 2)};
    m_items[u"mnuFileNewBlankPage"_s] = {{}, [this] {
                                             return m_session->windows() == 2
                                                 && m_session->location() == "about:blank"_L1;
                                         }};
    m_items[u"mnuFileNewHomePage"_s] = {{}, shows(u"/home"_s, 2)};
    m_items[u"mnuFileNewFromClipboard"_s] = {
        [this] { QApplication::clipboard()->setText(url(u"/two"_s)); }, shows(u"/two"_s, 2)};
    m_items[u"mnuFileNewPrivate"_s] = {
        {}, [this] { return m_session->windows() == 2 && m_session->active()->isPrivate(); }};
    m_items[u"mnuFileOpen"_s] = {{}, [] { return Forms::named("frmOpenURL").size() == 1; }};
    m_items[u"mnuFileSaveAs"_s] = {{}, [] { return dialogIs("dlgSavePage"); }};
    m_items[u"mnuFileProfiles"_s] = {
        [this] { writeProfile(); },
        [this] { return m_session->windows() > 0 && m_session->shows(url(u"/one"_s)); }};
    m_items[u"mnuFileProfilesSave"_s] = {{}, [this] {
                                             return m_session->folder.read(u"Profiles/kept.orp"_s)
                                                 .contains(url(u"/page"_s).toUtf8());
                                         }};
    m_items[u"mnuFileClose"_s] = {{}, noWindow};
    m_items[u"mnuFileCloseAll"_s] = {
        [this] { m_session->frame->openBrowserWindow(url(u"/two"_s), WindowState::AsOthers); },
        noWindow};
    m_items[u"mnuFileProperties"_s] = {{}, [] { return dialogIs("dlgProperties"); }};
    m_items[u"mnuFilePageSetup"_s] = {{}, [] { return dialogIs("dlgPageSetup"); }};
    m_items[u"mnuFilePrint"_s] = {{}, [] { return dialogIs("dlgPrint"); }};
    m_items[u"mnuFilePrintPreview"_s] = {{}, [] {
                                             auto *preview = qobject_cast<PrintPreview *>(
                                                 Forms::named("frmPrintPreview").value(0));
                                             return preview && preview->document().pageCount() == 1;
                                         }};
    m_items[u"mnuFileExit"_s] = {{}, [this] { return !m_session->frame->isVisible(); }};
    const auto openProfile = [this] {
        writeProfile();
        QVERIFY(m_session->frame->openProfile(profile(), true));
        QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    };
    m_items[u"mnuFileProfileSave"_s] = {
        [this, openProfile] {
            openProfile();
            m_session->active()->browser()->navigate(url(u"/two"_s));
            QTRY_VERIFY(m_session->shows(url(u"/two"_s)));
        },
        [this] {
            return m_session->folder.read(u"Profiles/kept.orp"_s).contains(url(u"/two"_s).toUtf8());
        }};
    m_items[u"mnuFileProfileClose"_s] = {openProfile, [this] {
                                             return m_session->windows() == 1
                                                 && m_session->shows(url(u"/page"_s));
                                         }};
}

void tst_MenuItems::describeEdit()
{
    const auto select = [this] { selectField(); };
    m_items[u"mnuEditUndo"_s] = {[this] {
                                     selectField();
                                     QTest::keyClick(engineWidget(), Qt::Key_X);
                                     QTRY_COMPARE(field(), u"x"_s);
                                 },
                                 [this] { return field() == "field"_L1; }};
    m_items[u"mnuEditCut"_s] = {select,
                                [this] { return clipboard() == "field"_L1 && field().isEmpty(); }};
    m_items[u"mnuEditCopy"_s] = {
        select, [this] { return clipboard() == "field"_L1 && field() == "field"_L1; }};
    m_items[u"mnuEditPaste"_s] = {select, [this] { return field() == "something"_L1; }};
    m_items[u"mnuEditFind"_s] = {
        {}, [this] {
            const auto *bar = m_session->active()->findChild<PageFindBar *>();
            return bar && bar->isVisible() && bar->isAncestorOf(QApplication::focusWidget());
        }};
    m_items[u"mnuEditSelectAll"_s] = {
        {}, [this] { return page().selectedText().contains("some words"_L1); }};
    m_items[u"mnuEditSelectNone"_s] = {select, [this] { return !page().hasSelection(); }};
}

void tst_MenuItems::describeBand(const QString &item, const QString &band)
{
    m_items[item] = {[this, band] { QVERIFY(coolBar().band(band)->isVisible()); },
                     [this, band] { return !coolBar().band(band)->isVisible(); }};
}

void tst_MenuItems::describeView()
{
    m_items[u"mnuViewSearchBar"_s] = {
        {},
        [this] { return m_session->frame->findChild<QWidget *>(u"SearchBar1"_s)->isVisible(); }};
    const qreal factors[] = {0.75, 0.9, 1.0, 1.25, 1.5};
    for (int level = 0; level < 5; ++level) {
        m_items[u"mnuViewFontSize2"_s + QString::number(level)] = {
            [this] { page().setZoomFactor(2); },
            [this, factor = factors[level]] { return page().zoomFactor() == factor; }};
    }
    m_items[u"mnuViewToolBarVisible"_s] = {{}, [this] { return !coolBar().isVisible(); }};
    describeBand(u"mnuViewToolBarAddressBar"_s, u"Address"_s);
    describeBand(u"mnuViewToolBarFavoriteLinks"_s, u"Links"_s);
    describeBand(u"mnuViewToolBarTabStrip"_s, u"Tabs"_s);
    m_items[u"mnuViewToolBarTop"_s] = {[this] {
                                           m_session->choose("mnuViewToolBarBottom");
                                           QCOMPARE(coolBar().dock(), CoolBar::Dock::Bottom);
                                       },
                                       [this] { return coolBar().dock() == CoolBar::Dock::Top; }};
    m_items[u"mnuViewToolBarBottom"_s] = {
        {}, [this] { return coolBar().dock() == CoolBar::Dock::Bottom; }};
    m_items[u"mnuViewRefresh"_s] = {{}, [this] { return m_session->server.count("/page") == 2; }};
    m_items[u"mnuViewZoomIn"_s] = {{}, [this] { return page().zoomFactor() > 1; }};
    m_items[u"mnuViewZoomOut"_s] = {{}, [this] { return page().zoomFactor() < 1; }};
    m_items[u"mnuViewZoomUsual"_s] = {[this] { m_session->choose("mnuViewFontSize24"); },
                                      [this] { return page().zoomFactor() == 1; }};
    m_items[u"mnuViewFullScreen"_s] = {{}, [this] { return m_session->frame->isFullScreen(); }};
    for (const QString &item : {u"mnuViewDocumentHTML"_s, u"mnuViewSource"_s})
        m_items[item] = {{}, [] { return Forms::named("frmSource").size() == 1; }};
}

/// A check mark that comes with the effect, or goes with it.
void tst_MenuItems::describeSwitch(const QString &item, const std::function<bool()> &effect)
{
    m_items[item] = {
        [this, item] { m_was = action(item)->isChecked(); },
        [this, item, effect] { return action(item)->isChecked() != m_was && effect(); }};
}

void tst_MenuItems::describeTools()
{
    const auto setting = [this](const char *key, const QString &value) {
        return m_session->folder.setting(u"Settings"_s, QLatin1String(key)) == value;
    };
    const auto engine = [this]() -> WebBrowser & { return *m_session->active()->browser(); };
    m_items[u"mnuToolsOptions"_s] = {{}, [] { return dialogIs("frmOptions"); }};
    m_items[u"mnuToolsSmartPopupBlockerList"_s] = {{}, [] { return dialogIs("frmBlockedURLs"); }};
    const auto pageIs = [](int page) {
        return dialogIs("frmInternetOptions")
            && QApplication::activeModalWidget()->findChild<QTabWidget *>()->currentIndex() == page;
    };
    m_items[u"mnuToolsInternetOptions"_s] = {{}, [pageIs] { return pageIs(0); }};
    m_items[u"mnuToolsAdvancedInternetOptions"_s] = {{}, [pageIs] { return pageIs(1); }};
    describeSwitch(u"mnuToolsAddPagesToHistory"_s, [this, setting] {
        return m_session->frame->navigationFlags() == NavFlags::NoHistory
            && setting("AddToHistory", u"False"_s);
    });
    describeSwitch(u"mnuToolsAddFilesToCache"_s, [this, setting] {
        return m_session->frame->navigationFlags() == NavFlags::NoHistory
            && setting("AddToCache", u"False"_s);
    });
    describeSwitch(u"mnuToolsKillPopUps"_s, [this] {
        return m_session->frame->findChild<ToolBar *>(u"tbFunctions"_s)
            ->isPressed(u"PopupKiller"_s);
    });
    describeSwitch(u"mnuToolsSmartPopupKiller"_s, [] { return true; });
    describeSwitch(u"mnuToolsMaximizeCatcher"_s, [] { return true; });
    for (const QString &list : {u"Downloads"_s, u"Visits"_s, u"Costs"_s}) {
        m_items[u"mnuTools"_s + list] = {
            {}, [this, list] {
                const QMdiSubWindow *active = m_session->frame->activeChild();
                return active && active->objectName() == u"frm"_s + list;
            }};
    }
    m_items[u"mnuToolsDeveloper"_s] = {
        {}, [this] {
            const QMdiSubWindow *active = m_session->frame->activeChild();
            return active && active->objectName() == "frmDevTools"_L1;
        }};
    describeSwitch(u"mnuToolsScriptErrorSuppress"_s, [engine] { return engine().isSilent(); });
}

/// The items of the four menus.
QList<MenuEntry> tst_MenuItems::entries()
{
    QList<MenuEntry> result;
    for (const MenuEntry &entry : menuTable()) {
        const QByteArray name = entry.name;
        const bool isHere = name.startsWith("mnuFile") || name.startsWith("mnuEdit")
            || name.startsWith("mnuView") || name.startsWith("mnuTools");
        if (isHere
            && (entry.kind != MenuEntry::Kind::Menu && entry.kind != MenuEntry::Kind::Separator))
            result.append(entry);
    }
    return result;
}

void tst_MenuItems::everyItemIsDescribed()
{
    QStringList missing;
    for (const MenuEntry &entry : entries()) {
        if (!m_items.contains(QLatin1String(entry.name)))
            missing.append(QLatin1String(entry.name));
    }
    QCOMPARE(missing, QStringList());
}

/// Opens the menu that holds the item, and clicks it there.
void tst_MenuItems::clickInMenu(const QString &item)
{
    QMenu *menu = nullptr;
    const QList<QMenu *> menus = m_session->frame->findChildren<QMenu *>();
    for (QMenu *candidate : menus) {
        if (candidate->actions().contains(action(item)))
            menu = candidate;
    }
    QVERIFY(menu);
    // From Qt 6.8 on a menu takes a press for the one that opened it while no mouse was ever seen.
    QTest::mouseMove(m_session->frame->windowHandle(), QPoint());
    menu->popup(m_session->frame->mapToGlobal(QPoint(20, 20)));
    QTRY_VERIFY(menu->isVisible());
    QVERIFY2(action(item)->isEnabled(), qPrintable(item));
    const QPoint there = menu->actionGeometry(action(item)).center();
    QTest::mouseMove(menu, there);
    QTest::mouseClick(menu, Qt::LeftButton, {}, there);
    QTRY_VERIFY(!menu->isVisible());
}

void tst_MenuItems::pressShortcut(const QString &item)
{
    const QKeyCombination keys = action(item)->shortcut()[0];
    QTest::keyClick(QApplication::focusWidget(), keys.key(), keys.keyboardModifiers());
}

void tst_MenuItems::itemsDoTheirWork_data()
{
    QTest::addColumn<QString>("item");
    QTest::addColumn<bool>("byShortcut");
    for (const MenuEntry &entry : entries()) {
        QTest::addRow("%s from the menu", entry.name) << QString::fromLatin1(entry.name) << false;
        if (entry.details.key)
            QTest::addRow("%s by %s", entry.name, entry.details.key)
                << QString::fromLatin1(entry.name) << true;
    }
}

void tst_MenuItems::itemsDoTheirWork()
{
    QFETCH(QString, item);
    QFETCH(bool, byShortcut);
    const Item &described = m_items.at(item);
    if (described.prepare)
        described.prepare();
    if (QTest::currentTestFailed())
        return;
    QVERIFY2(!described.effect(), "nothing is as it will be before the item is chosen");
    if (byShortcut)
        pressShortcut(item);
    else
        clickInMenu(item);
    if (QTest::currentTestFailed())
        return;
    QTRY_VERIFY_WITH_TIMEOUT(described.effect(), 20000);
}

ORVANE_ENGINE_TEST_MAIN(tst_MenuItems)
#include "tst_menuitems.moc"
