#include "FakeWebBrowser.h"
#include "FavoritesBar.h"
#include "RichTextBox.h"
#include "Session.h"
#include "SourceEditor.h"
#include "SourceWindow.h"
#include "TabButton.h"

#include <QAbstractScrollArea>
#include <QDir>
#include <QMenu>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

/// The View menu with a counting engine.
class tst_ViewMenu : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void fontSizeIsSetWithOneArgument_data();
    void fontSizeIsSetWithOneArgument();
    void marksAreReadFromTheEngine_data();
    void marksAreReadFromTheEngine();
    void failedReadingLeavesNoMark();
    void choosingLeavesTheMarksUntilTheMenuOpens();
    void enabling();
    void refreshesThePagePlainly();
    void refreshesTheFavoritesWhileTheyHaveTheFocus();
    void documentHTMLOpensAWindowEachTime();
    void documentHTMLOfABusyPageOnlyBeeps();
    void documentHTMLWithoutALocationOnlyBeeps();
    void sourceWindowIsNoPage();
    void closingTheFrameKeepsEditedSource();

private:
    FakeWebBrowser &page() const
    {
        return *static_cast<FakeWebBrowser *>(m_session->active()->browser());
    }
    QStringList marked() const
    {
        QStringList names;
        for (int i = 0; i < 5; ++i) {
            const QString name = u"mnuViewFontSize2"_s + QString::number(i);
            if (m_session->frame->menuItem(name)->isChecked())
                names.append(name.right(1));
        }
        return names;
    }
    void open(const char *menu) const
    {
        emit m_session->frame->findChild<QMenu *>(QLatin1String(menu))->aboutToShow();
    }
    void focus(QWidget *widget)
    {
        widget->show();
        widget->setFocus();
        QTRY_VERIFY(widget->hasFocus());
    }

    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<Session> m_session;
};

void tst_ViewMenu::init()
{
    m_engine = std::make_unique<FakeEngine>();
    m_session = std::make_unique<Session>();
    m_session->start(u"http://one/"_s);
    m_session->frame->activateWindow();
    QTRY_VERIFY(m_session->frame->isActiveWindow());
    page().setFocus();
    page().executed.clear();
}

void tst_ViewMenu::cleanup()
{
    m_session.reset();
    m_engine.reset();
}

void tst_ViewMenu::fontSizeIsSetWithOneArgument_data()
{
    QTest::addColumn<int>("level");
    for (int level = 0; level < 5; ++level)
        QTest::addRow("%d", level) << level;
}

void tst_ViewMenu::fontSizeIsSetWithOneArgument()
{
    QFETCH(int, level);
    m_session->choose(qPrintable(u"mnuViewFontSize2"_s + QString::number(level)));
    QCOMPARE(page().executed.size(), 1);
    const FakeWebBrowser::Exec call = page().executed.first();
    QCOMPARE(call.command, OleCmd::Zoom);
    QCOMPARE(call.option, OleExecOpt::DoNotPromptUser);
    QVERIFY(call.hasIn);
    QVERIFY(!call.hasOut);
    QCOMPARE(call.in.metaType(), QMetaType::fromType<qint32>());
    QCOMPARE(call.in.toInt(), level);
}

void tst_ViewMenu::marksAreReadFromTheEngine_data()
{
    QTest::addColumn<QVariant>("told");
    QTest::addColumn<QStringList>("marks");
    QTest::newRow("smallest") << QVariant(0) << QStringList(u"0"_s);
    QTest::newRow("largest") << QVariant(4) << QStringList(u"4"_s);
    QTest::newRow("no level") << QVariant(5) << QStringList();
    QTest::newRow("negative") << QVariant(-1) << QStringList();
    QTest::newRow("no number") << QVariant(u"x"_s) << QStringList();
    QTest::newRow("nothing") << QVariant() << QStringList();
}

void tst_ViewMenu::marksAreReadFromTheEngine()
{
    QFETCH(QVariant, told);
    QFETCH(QStringList, marks);
    for (const char *menu : {"mnuView", "mnuViewFontSize"}) {
        page().executed.clear();
        page().result = told;
        open(menu);
        QCOMPARE(marked(), marks);
        QCOMPARE(page().executed.size(), 1);
        const FakeWebBrowser::Exec call = page().executed.first();
        QCOMPARE(call.command, OleCmd::Zoom);
        QCOMPARE(call.option, OleExecOpt::DoNotPromptUser);
        QVERIFY(!call.hasIn);
        QVERIFY(call.hasOut);
    }
}

void tst_ViewMenu::failedReadingLeavesNoMark()
{
    page().result = 3;
    open("mnuViewFontSize");
    QCOMPARE(marked(), QStringList(u"3"_s));
    page().succeeds = false;
    open("mnuViewFontSize");
    QCOMPARE(marked(), QStringList());
}

void tst_ViewMenu::choosingLeavesTheMarksUntilTheMenuOpens()
{
    page().result = 2;
    open("mnuView");
    m_session->choose("mnuViewFontSize24");
    QCOMPARE(marked(), QStringList(u"2"_s));
    page().result = 4;
    open("mnuView");
    QCOMPARE(marked(), QStringList(u"4"_s));
}

void tst_ViewMenu::enabling()
{
    page().result = 2;
    open("mnuView");
    QVERIFY(m_session->item("mnuViewFontSize")->isEnabled());
    QVERIFY(m_session->item("mnuViewDocumentHTML")->isEnabled());
    m_session->choose("mnuFileCloseAll");
    QTRY_COMPARE(m_session->windows(), 0);
    open("mnuView");
    QVERIFY(!m_session->item("mnuViewFontSize")->isEnabled());
    QVERIFY(!m_session->item("mnuViewDocumentHTML")->isEnabled());
    QCOMPARE(marked(), QStringList());
    QVERIFY(m_session->item("mnuViewRefresh")->isEnabled());
    for (const char *item : {"mnuViewRefresh", "mnuViewDocumentHTML", "mnuViewFontSize21"})
        m_session->frame->run(QLatin1String(item));
    QCOMPARE(Forms::named("frmSource").size(), 0);
}

void tst_ViewMenu::refreshesThePagePlainly()
{
    m_session->choose("mnuViewRefresh");
    QCOMPARE(page().refreshes, 1);
    QVERIFY(page().refreshLevels.isEmpty());
}

void tst_ViewMenu::refreshesTheFavoritesWhileTheyHaveTheFocus()
{
    auto *bar = m_session->frame->findChild<FavoritesBar *>(u"FavoritesBar1"_s);
    m_session->choose("mnuFavoritesShow");
    QTRY_VERIFY(bar->isVisible());
    QTRY_VERIFY(bar->isInitialised() && !bar->isRefreshing());
    auto *tree = bar->findChild<QAbstractScrollArea *>();
    QVERIFY(tree);
    focus(tree);
    QSignalSpy refreshed(bar, &FavoritesBar::refreshed);
    QSignalSpy enabled(m_session->item("mnuViewRefresh"), &QAction::enabledChanged);
    m_session->choose("mnuViewRefresh");
    QTRY_COMPARE(refreshed.size(), 1);
    QCOMPARE(enabled.size(), 2);
    QVERIFY(m_session->item("mnuViewRefresh")->isEnabled());
    QCOMPARE(page().refreshes, 0);
    page().setFocus();
    m_session->choose("mnuViewRefresh");
    QCOMPARE(page().refreshes, 1);
    QCOMPARE(refreshed.size(), 1);
}

void tst_ViewMenu::documentHTMLOpensAWindowEachTime()
{
    page().location = u"http://one/"_s;
    page().markup = u"<html><b>bold</b></html>"_s;
    m_session->choose("mnuViewDocumentHTML");
    m_session->choose("mnuViewDocumentHTML");
    QTRY_COMPARE(Forms::named("frmSource").size(), 2);
    for (QWidget *form : Forms::named("frmSource")) {
        const SourceEditor &editor = qobject_cast<SourceWindow *>(form)->editor();
        QCOMPARE(editor.text(), u"<html><b>bold</b></html>"_s);
        QCOMPARE(editor.selStart(), 0);
        QCOMPARE(editor.selLength(), 0);
        QVERIFY(form->isVisible());
        QVERIFY(!form->isModal());
    }
}

void tst_ViewMenu::documentHTMLOfABusyPageOnlyBeeps()
{
    page().location = u"http://one/"_s;
    page().markup = u"<html></html>"_s;
    page().busy = true;
    m_session->choose("mnuViewDocumentHTML");
    QCoreApplication::processEvents();
    QVERIFY(Forms::named("frmSource").isEmpty());
    page().busy = false;
    m_session->choose("mnuViewDocumentHTML");
    QTRY_COMPARE(Forms::named("frmSource").size(), 1);
}

void tst_ViewMenu::documentHTMLWithoutALocationOnlyBeeps()
{
    page().markup = u"<html></html>"_s;
    m_session->choose("mnuViewDocumentHTML");
    QCoreApplication::processEvents();
    QVERIFY(Forms::named("frmSource").isEmpty());
}

void tst_ViewMenu::sourceWindowIsNoPage()
{
    page().location = u"http://one/"_s;
    page().markup = u"<html></html>"_s;
    m_session->choose("mnuViewDocumentHTML");
    QTRY_COMPARE(Forms::named("frmSource").size(), 1);
    QWidget *source = Forms::named("frmSource").first();
    const QString title = source->windowTitle();
    QTRY_VERIFY(source->isActiveWindow());
    QVERIFY2(m_session->item("mnuFileClose")->isEnabled(), "the page is still the active child");
    m_session->choose("mnuWindowMinimizeAll");
    QVERIFY(m_session->active()->isMinimized());
    QVERIFY(!source->isMinimized());
    m_session->frame->run(u"mnuNavigationRefreshAll"_s);
    QCOMPARE(page().refreshes, 1);
    QCOMPARE(source->windowTitle(), title);
    QCOMPARE(m_session->tabs().findChildren<TabButton *>().size(), 1);
    const QPointer<QWidget> closed = source;
    m_session->choose("mnuFileCloseAll");
    QTRY_VERIFY(!closed);
    QCOMPARE(m_session->windows(), 0);
    QVERIFY(m_session->frame->isVisible());
}

void tst_ViewMenu::closingTheFrameKeepsEditedSource()
{
    page().location = u"http://one/"_s;
    page().markup = u"<html></html>"_s;
    m_session->choose("mnuViewDocumentHTML");
    QTRY_COMPARE(Forms::named("frmSource").size(), 1);
    const QPointer<SourceWindow> source =
        qobject_cast<SourceWindow *>(Forms::named("frmSource").first());
    QTest::keyClicks(&source->editor().box(), u"mine"_s);
    m_session->frame->close();
    QTRY_VERIFY(!source);
    const QDir folder(m_session->folder.file(u"AppData/Recovered"_s));
    const QStringList copies = folder.entryList(QDir::Files);
    QCOMPARE(copies.size(), 1);
    QCOMPARE(m_session->folder.read(u"AppData/Recovered/"_s + copies.constFirst()),
             QByteArray("mine<html></html>"));
}

QTEST_MAIN(tst_ViewMenu)
#include "tst_viewmenu.moc"
