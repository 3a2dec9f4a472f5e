#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QDialog>
#include <QMenu>
#include <QWebEngineView>
#include <QWindow>
#include <optional>

#include "../Session.h"
#include "EngineTest.h"
#include "PageFindBar.h"

using namespace Qt::StringLiterals;

/// The keys of editing in the fields of the program: they go to the field that has the keyboard,
/// and what they cut and copy is on the clipboard. The page, which is the menu's target, is left
/// alone.
class tst_FieldShortcuts : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void everyFieldTakesTheKeys_data();
    void everyFieldTakesTheKeys();
    void menuGoesToThePageThoughTheQueryBoxIsFocused();
    void menuOpenedByKeyboardGoesToThePage();
    void findBarHasRoomToTypeIn_data();
    void findBarHasRoomToTypeIn();

private:
    void openFieldPage();
    static QString textOf(const QLineEdit &edit);
    void editWithKeys(QLineEdit &edit);
    void press(Qt::Key key) const;
    void clickInEditMenu(const char *item);
    QLineEdit &queryField() const
    {
        return *m_session->frame->findChild<AddressBox *>(u"brwSearch"_s)->findChild<QLineEdit *>();
    }
    QWebEnginePage &page() const
    {
        return *m_session->active()->findChild<QWebEngineView *>()->page();
    }
    QVariant ask(const QString &script) const;
    QString pageField() const { return ask(u"f.value"_s).toString(); }
    static QString clipboard() { return QApplication::clipboard()->text(); }

    std::unique_ptr<Session> m_session;
};

void tst_FieldShortcuts::init()
{
    // A machine that has the platform's control panel must not start it.
    qputenv("PATH", "/nowhere");
    m_session = std::make_unique<Session>();
    openFieldPage();
}

void tst_FieldShortcuts::cleanup()
{
    if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget()))
        dialog->reject();
    m_session.reset();
}

QVariant tst_FieldShortcuts::ask(const QString &script) const
{
    const auto answer = std::make_shared<std::optional<QVariant>>();
    page().runJavaScript(script, [answer](const QVariant &value) { *answer = value; });
    if (!QTest::qWaitFor([&] { return answer->has_value(); }, 20000))
        return u"no answer"_s;
    return **answer;
}

/// The page's own field is focused and its text selected, as the program knows.
void tst_FieldShortcuts::openFieldPage()
{
    const QString url = m_session->server.url(u"/field"_s);
    m_session->server.page("/field", "<title>Field</title><textarea id=f>of the page</textarea>");
    m_session->start(url);
    QTRY_VERIFY(m_session->shows(url));
    m_session->frame->activateWindow();
    QTRY_VERIFY(m_session->frame->isActiveWindow());
    m_session->active()->browser()->setFocus();
    QTRY_VERIFY_WITH_TIMEOUT(ask(u"document.hasFocus()"_s).toBool(), 20000);
    ask(u"f.focus(), f.select()"_s);
    QTRY_COMPARE_WITH_TIMEOUT(page().selectedText(), u"of the page"_s, 20000);
    QTRY_COMPARE_WITH_TIMEOUT(m_session->active()->browser()->queryStatus(OleCmd::Cut), 3, 20000);
}

/// Presses a key with control as the window system tells it: to the window, which has to find out
/// whose it is.
void tst_FieldShortcuts::press(Qt::Key key) const
{
    QTest::keyClick(QApplication::focusWidget()->window()->windowHandle(), key,
                    Qt::ControlModifier);
}

void tst_FieldShortcuts::everyFieldTakesTheKeys_data()
{
    QTest::addColumn<QByteArray>("item");
    QTest::newRow("frame with address bar and query box") << QByteArray("mnuViewSearchBar");
    QTest::newRow("find bar") << QByteArray("mnuEditFind");
    for (const char *item : {"mnuFileOpen", "mnuFilePageSetup", "mnuFilePrint", "mnuFavoritesAdd",
                             "mnuToolsOptions", "mnuToolsSmartPopupBlockerList",
                             "mnuToolsInternetOptions", "mnuToolsAdvancedInternetOptions"})
        QTest::newRow(item) << QByteArray(item);
}

void tst_FieldShortcuts::everyFieldTakesTheKeys()
{
    QFETCH(QByteArray, item);
    m_session->choose(item.constData());
    const bool inFrame = item == "mnuViewSearchBar" || item == "mnuEditFind";
    if (item == "mnuViewSearchBar")
        QTRY_VERIFY(queryField().isVisible());
    else if (item == "mnuEditFind")
        QTRY_VERIFY(m_session->active()->findChild<PageFindBar *>()->isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(QApplication::activeWindow()
                                 && (QApplication::activeWindow() == m_session->frame.get())
                                     == inFrame,
                             20000);
    const QList<QLineEdit *> fields = QApplication::activeWindow()->findChildren<QLineEdit *>();
    int edited = 0;
    for (QLineEdit *edit : fields) {
        if (!edit->isVisible() || !edit->isEnabled() || edit->isReadOnly())
            continue;
        ++edited;
        editWithKeys(*edit);
        if (QTest::currentTestFailed())
            return;
    }
    QVERIFY2(edited > 0, "there is a field");
    QVERIFY2(!inFrame || edited == 2, "the address bar and one more");
    QCOMPARE(pageField(), u"of the page"_s);
}

/// The text of a field without the unit that a field of numbers shows behind it.
QString tst_FieldShortcuts::textOf(const QLineEdit &edit)
{
    const QVariant number = edit.parentWidget()->property("cleanText");
    return number.isValid() ? number.toString() : edit.text();
}

void tst_FieldShortcuts::editWithKeys(QLineEdit &edit)
{
    const bool isNumber = qobject_cast<QAbstractSpinBox *>(edit.parentWidget());
    const QString text = isNumber ? u"7"_s : u"typed"_s;
    edit.setFocus();
    QTRY_VERIFY(edit.hasFocus() || edit.parentWidget()->hasFocus());
    press(Qt::Key_A);
    for (const QChar character : text)
        QTest::keyClick(edit.window()->windowHandle(), character.toLatin1());
    QCOMPARE(textOf(edit), text);
    press(Qt::Key_A);
    QCOMPARE(edit.selectedText(), text);
    QApplication::clipboard()->setText(u"before"_s);
    press(Qt::Key_C);
    QCOMPARE(clipboard(), text);
    QCOMPARE(textOf(edit), text);
    QApplication::clipboard()->setText(u"before"_s);
    press(Qt::Key_X);
    QCOMPARE(clipboard(), text);
    QCOMPARE(textOf(edit), QString());
    press(Qt::Key_V);
    QCOMPARE(textOf(edit), text);
    press(Qt::Key_Z);
    QCOMPARE(textOf(edit), QString());
    press(Qt::Key_V);
}

void tst_FieldShortcuts::clickInEditMenu(const char *item)
{
    auto *menu = m_session->frame->findChild<QMenu *>(u"mnuEdit"_s);
    // From Qt 6.8 on a menu takes a press for the one that opened it while no mouse was ever seen.
    QTest::mouseMove(m_session->frame->windowHandle(), QPoint());
    menu->popup(m_session->frame->mapToGlobal(QPoint(20, 20)));
    QTRY_VERIFY(menu->isVisible());
    const QPoint there = menu->actionGeometry(m_session->item(item)).center();
    QTest::mouseMove(menu, there);
    QTest::mouseClick(menu, Qt::LeftButton, {}, there);
    QTRY_VERIFY(!menu->isVisible());
}

void tst_FieldShortcuts::menuGoesToThePageThoughTheQueryBoxIsFocused()
{
    m_session->choose("mnuViewSearchBar");
    QLineEdit &query = queryField();
    QTRY_VERIFY(query.isVisible());
    QTest::mouseClick(&query, Qt::LeftButton);
    QTRY_VERIFY(query.hasFocus());
    QTest::keyClicks(&query, u"query"_s);
    query.selectAll();
    clickInEditMenu("mnuEditCopy");
    QTRY_COMPARE(clipboard(), u"of the page"_s);
    clickInEditMenu("mnuEditSelectNone");
    QTRY_VERIFY(!page().hasSelection());
    QCOMPARE(query.selectedText(), u"query"_s);
    clickInEditMenu("mnuEditSelectAll");
    QTRY_COMPARE(page().selectedText(), u"of the page"_s);
    QApplication::clipboard()->setText(u"before"_s);
    clickInEditMenu("mnuEditCut");
    QTRY_COMPARE(clipboard(), u"of the page"_s);
    QTRY_COMPARE(pageField(), QString());
    clickInEditMenu("mnuEditPaste");
    QTRY_COMPARE(pageField(), u"of the page"_s);
    clickInEditMenu("mnuEditUndo");
    QTRY_COMPARE(pageField(), QString());

    QCOMPARE(query.text(), u"query"_s);
    QVERIFY(query.hasFocus());
    press(Qt::Key_X);
    QCOMPARE(clipboard(), u"query"_s);
    QCOMPARE(query.text(), QString());
    QCOMPARE(pageField(), QString());
}

void tst_FieldShortcuts::menuOpenedByKeyboardGoesToThePage()
{
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_E, Qt::AltModifier);
    QTRY_VERIFY(QApplication::activePopupWidget());
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_T);
    QTRY_COMPARE(clipboard(), u"of the page"_s);
    QTRY_COMPARE(pageField(), QString());
    QTRY_VERIFY(ask(u"document.hasFocus()"_s).toBool());
}

void tst_FieldShortcuts::findBarHasRoomToTypeIn_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("widthLater");
    QTest::newRow("wide") << 900 << 900;
    QTest::newRow("smallest screen") << 560 << 560;
    QTest::newRow("tile") << 400 << 400;
    QTest::newRow("made narrow") << 900 << 400;
    QTest::newRow("made wide") << 400 << 900;
}

/// In a narrow window the bar has two rows, and no caption is cut.
void tst_FieldShortcuts::findBarHasRoomToTypeIn()
{
    QFETCH(int, width);
    QFETCH(int, widthLater);
    m_session->active()->showNormal();
    m_session->active()->resize(width, 400);
    m_session->choose("mnuEditFind");
    m_session->active()->resize(widthLater, 400);
    const auto *bar = m_session->active()->findChild<PageFindBar *>();
    const auto *field = bar->findChild<QLineEdit *>();
    QTRY_VERIFY(field->isVisible());
    QTRY_VERIFY(field->width() > 15 * field->fontMetrics().averageCharWidth());
    const QList<QAbstractButton *> buttons =
        bar->findChildren<QAbstractButton *>(Qt::FindDirectChildrenOnly);
    QCOMPARE(buttons.size(), 5);
    for (const QAbstractButton *button : buttons) {
        QVERIFY2(bar->rect().contains(button->geometry()), qPrintable(button->text()));
        QVERIFY2(button->width() >= button->sizeHint().width(), qPrintable(button->text()));
    }
    const bool twoRows = bar->height() > 2 * field->height();
    QCOMPARE(twoRows, widthLater < 600);
    QVERIFY(bar->parentWidget()->rect().contains(bar->geometry()));
}

ORVANE_ENGINE_TEST_MAIN(tst_FieldShortcuts)
#include "tst_fieldshortcuts.moc"
