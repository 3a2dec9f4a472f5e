#include "FakeWebBrowser.h"
#include "Session.h"

#include <QMimeData>

using namespace Qt::StringLiterals;

/// The Edit menu with a counting engine: who is the target, and what exactly it is asked.
class tst_EditMenu : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void pageCommands_data();
    void pageCommands();
    void cutAndPasteNeedStatusThree_data();
    void cutAndPasteNeedStatusThree();
    void copyGoesToThePageThoughDisabled();
    void addressBarIsTheTargetWhileItHasTheFocus();
    void cutRemovesOnlyTheSelectedPart();
    void nothingSelectedLeavesTheClipboard();
    void pasteReplacesTheSelection();
    void pasteOfAnImageRemovesTheSelection();
    void selectAllAndNoneInTheAddressBar();
    void withoutAWindowTheAddressBarStillWorks();
    void withoutAWindowAndFocusElsewhereNothingHappens();
    void undoNeedsThePageAsActiveControl();
    void undoIsThePagesAloneThoughTheAddressBarIsFocused();
    void findFocusesThePageFirst();
    void fieldsBesideThePageAreTheTargetWhileTheyHaveTheFocus();
    void readOnlyFieldIsNotPastedInto();
    void searchBarLeavesThePageTheTarget();
    void enabling();
    void menuOpenedByKeyboardLeavesTheTarget();
    void menuOpenedByKeyboardLeavesTheField();

private:
    FakeWebBrowser &page() const
    {
        return *static_cast<FakeWebBrowser *>(m_session->active()->browser());
    }
    /// What the page was asked to do; menus that get ready also ask it for its zoom.
    QList<FakeWebBrowser::Exec> calls() const
    {
        QList<FakeWebBrowser::Exec> result = page().executed;
        result.removeIf(
            [](const FakeWebBrowser::Exec &call) { return call.command == OleCmd::Zoom; });
        return result;
    }
    QLineEdit &addressEdit() const { return *m_session->address().findChild<QLineEdit *>(); }
    void focusAddress(const QString &text)
    {
        m_session->frame->activateWindow();
        addressEdit().setFocus();
        QTRY_VERIFY(addressEdit().hasFocus());
        m_session->address().setText(text);
    }
    void closeEveryWindow()
    {
        m_session->choose("mnuFileCloseAll");
        QTRY_COMPARE(m_session->windows(), 0);
    }
    static QString clipboard() { return QApplication::clipboard()->text(); }

    std::unique_ptr<FakeEngine> m_engine;
    std::unique_ptr<Session> m_session;
};

void tst_EditMenu::init()
{
    m_engine = std::make_unique<FakeEngine>();
    m_session = std::make_unique<Session>();
    m_session->start(u"http://one/"_s);
    m_session->frame->activateWindow();
    QTRY_VERIFY(m_session->frame->isActiveWindow());
    page().setFocus();
    QApplication::clipboard()->setText(u"before"_s);
}

void tst_EditMenu::cleanup()
{
    m_session.reset();
    m_engine.reset();
}

void tst_EditMenu::pageCommands_data()
{
    QTest::addColumn<QByteArray>("item");
    QTest::addColumn<int>("command");
    QTest::addColumn<bool>("four");
    QTest::newRow("undo") << QByteArray("mnuEditUndo") << 15 << true;
    QTest::newRow("cut") << QByteArray("mnuEditCut") << 11 << false;
    QTest::newRow("copy") << QByteArray("mnuEditCopy") << 12 << true;
    QTest::newRow("paste") << QByteArray("mnuEditPaste") << 13 << false;
    QTest::newRow("select all") << QByteArray("mnuEditSelectAll") << 17 << true;
    QTest::newRow("select none") << QByteArray("mnuEditSelectNone") << 18 << true;
}

void tst_EditMenu::pageCommands()
{
    QFETCH(QByteArray, item);
    QFETCH(int, command);
    QFETCH(bool, four);
    m_session->choose(item.constData());
    QCOMPARE(calls().size(), 1);
    const FakeWebBrowser::Exec call = calls().first();
    QCOMPARE(int(call.command), command);
    QCOMPARE(call.option, OleExecOpt::Default);
    QCOMPARE(call.hasIn, four);
    QCOMPARE(call.hasOut, four);
    if (four) {
        QCOMPARE(call.in.metaType(), QMetaType::fromType<qint16>());
        QCOMPARE(call.in.toInt(), 0);
    }
}

void tst_EditMenu::cutAndPasteNeedStatusThree_data()
{
    QTest::addColumn<QByteArray>("item");
    QTest::addColumn<int>("status");
    for (const char *item : {"mnuEditCut", "mnuEditPaste"}) {
        for (const int status : {0, 1, 2, 7})
            QTest::addRow("%s %d", item, status) << QByteArray(item) << status;
    }
}

void tst_EditMenu::cutAndPasteNeedStatusThree()
{
    QFETCH(QByteArray, item);
    QFETCH(int, status);
    page().status = status;
    m_session->choose(item.constData());
    QVERIFY(calls().isEmpty());
}

void tst_EditMenu::copyGoesToThePageThoughDisabled()
{
    page().status = OleCmdStatus::Supported;
    m_session->choose("mnuEditCopy");
    QCOMPARE(calls().size(), 1);
}

void tst_EditMenu::addressBarIsTheTargetWhileItHasTheFocus()
{
    focusAddress(u"http://two/"_s);
    for (const char *item :
         {"mnuEditCut", "mnuEditCopy", "mnuEditPaste", "mnuEditSelectAll", "mnuEditSelectNone"})
        m_session->choose(item);
    QVERIFY(calls().isEmpty());
    page().setFocus();
    m_session->choose("mnuEditSelectAll");
    QCOMPARE(calls().size(), 1);
}

void tst_EditMenu::cutRemovesOnlyTheSelectedPart()
{
    focusAddress(u"http://two/three"_s);
    m_session->address().setSelStart(7);
    m_session->address().setSelLength(4);
    m_session->choose("mnuEditCut");
    QCOMPARE(m_session->address().text(), u"http://three"_s);
    QCOMPARE(clipboard(), u"two/"_s);
}

void tst_EditMenu::nothingSelectedLeavesTheClipboard()
{
    focusAddress(u"http://two/"_s);
    m_session->address().setSelStart(3);
    m_session->choose("mnuEditCopy");
    m_session->choose("mnuEditCut");
    QCOMPARE(clipboard(), u"before"_s);
    QCOMPARE(m_session->address().text(), u"http://two/"_s);
}

void tst_EditMenu::pasteReplacesTheSelection()
{
    focusAddress(u"http://two/"_s);
    m_session->address().setSelStart(7);
    m_session->address().setSelLength(3);
    m_session->choose("mnuEditPaste");
    QCOMPARE(m_session->address().text(), u"http://before/"_s);
    m_session->choose("mnuEditPaste");
    QCOMPARE(m_session->address().text(), u"http://beforebefore/"_s);
}

void tst_EditMenu::pasteOfAnImageRemovesTheSelection()
{
    focusAddress(u"http://two/"_s);
    auto *data = new QMimeData;
    data->setImageData(QImage(4, 4, QImage::Format_RGB32));
    QApplication::clipboard()->setMimeData(data);
    m_session->choose("mnuEditSelectAll");
    m_session->choose("mnuEditPaste");
    QCOMPARE(m_session->address().text(), QString());
}

void tst_EditMenu::selectAllAndNoneInTheAddressBar()
{
    focusAddress(u"http://two/"_s);
    m_session->choose("mnuEditSelectAll");
    QCOMPARE(m_session->address().selText(), u"http://two/"_s);
    m_session->choose("mnuEditSelectNone");
    QCOMPARE(m_session->address().selLength(), 0);
    QCOMPARE(m_session->address().selStart(), 11);
}

void tst_EditMenu::withoutAWindowTheAddressBarStillWorks()
{
    closeEveryWindow();
    focusAddress(u"http://two/"_s);
    m_session->choose("mnuEditSelectAll");
    m_session->choose("mnuEditCopy");
    QCOMPARE(clipboard(), u"http://two/"_s);
    m_session->choose("mnuEditSelectNone");
    m_session->choose("mnuEditPaste");
    QCOMPARE(m_session->address().text(), u"http://two/http://two/"_s);
}

void tst_EditMenu::withoutAWindowAndFocusElsewhereNothingHappens()
{
    closeEveryWindow();
    focusAddress(u"http://two/"_s);
    QLineEdit other(m_session->frame.get());
    other.show();
    other.setFocus();
    QTRY_VERIFY(other.hasFocus());
    for (const char *item : {"mnuEditSelectAll", "mnuEditCut", "mnuEditCopy", "mnuEditPaste"})
        m_session->choose(item);
    QCOMPARE(m_session->address().text(), u"http://two/"_s);
    QCOMPARE(clipboard(), u"before"_s);
}

void tst_EditMenu::undoNeedsThePageAsActiveControl()
{
    QLineEdit other(m_session->active()->widget());
    other.show();
    other.setFocus();
    QTRY_VERIFY(other.hasFocus());
    m_session->choose("mnuEditUndo");
    QVERIFY(calls().isEmpty());
    page().setFocus();
    m_session->choose("mnuEditUndo");
    QCOMPARE(calls().size(), 1);
}

void tst_EditMenu::undoIsThePagesAloneThoughTheAddressBarIsFocused()
{
    focusAddress(u"http://two/"_s);
    QTest::keyClicks(&addressEdit(), u"x"_s);
    const QString text = m_session->address().text();
    m_session->choose("mnuEditUndo");
    QCOMPARE(m_session->address().text(), text);
    QCOMPARE(calls().size(), 1);
}

void tst_EditMenu::findFocusesThePageFirst()
{
    focusAddress(u"http://two/"_s);
    const int before = page().focused;
    QTest::keyClick(m_session->frame.get(), Qt::Key_F, Qt::ControlModifier);
    QCOMPARE(page().focused, before + 1);
    QCOMPARE(page().finds, 1);
    closeEveryWindow();
    m_session->frame->run(u"mnuEditFind"_s);
    QVERIFY(!m_session->active());
}

void tst_EditMenu::fieldsBesideThePageAreTheTargetWhileTheyHaveTheFocus()
{
    QLineEdit field(m_session->active()->widget());
    field.show();
    field.setFocus();
    QTRY_VERIFY(field.hasFocus());
    QTest::keyClicks(&field, u"one two"_s);
    m_session->choose("mnuEditSelectAll");
    QCOMPARE(field.selectedText(), u"one two"_s);
    m_session->choose("mnuEditCopy");
    QCOMPARE(clipboard(), u"one two"_s);
    m_session->choose("mnuEditSelectNone");
    QVERIFY(!field.hasSelectedText());
    m_session->choose("mnuEditPaste");
    QCOMPARE(field.text(), u"one twoone two"_s);
    field.setSelection(0, 4);
    m_session->choose("mnuEditCut");
    QCOMPARE(field.text(), u"twoone two"_s);
    QCOMPARE(clipboard(), u"one "_s);
    m_session->choose("mnuEditUndo");
    QCOMPARE(field.text(), u"one twoone two"_s);
    QVERIFY2(calls().isEmpty(), "the page is not meant");
    page().setFocus();
    m_session->choose("mnuEditPaste");
    QCOMPARE(calls().size(), 1);
}

void tst_EditMenu::readOnlyFieldIsNotPastedInto()
{
    QLineEdit field(u"fixed"_s, m_session->active()->widget());
    field.setReadOnly(true);
    field.show();
    field.setFocus();
    QTRY_VERIFY(field.hasFocus());
    for (const char *item : {"mnuEditSelectAll", "mnuEditPaste", "mnuEditCut", "mnuEditUndo"})
        m_session->choose(item);
    QCOMPARE(field.text(), u"fixed"_s);
    QVERIFY(calls().isEmpty());
}

void tst_EditMenu::searchBarLeavesThePageTheTarget()
{
    m_session->choose("mnuViewSearchBar");
    auto *query = m_session->frame->findChild<AddressBox *>(u"brwSearch"_s);
    QVERIFY(query && query->isVisible());
    auto *field = query->findChild<QLineEdit *>();
    field->setFocus();
    QTRY_VERIFY(field->hasFocus());
    QTest::keyClicks(field, u"words"_s);
    m_session->choose("mnuEditSelectAll");
    QVERIFY(!field->hasSelectedText());
    QCOMPARE(calls().size(), 1);
    QCOMPARE(calls().first().command, OleCmd::SelectAll);
}

void tst_EditMenu::enabling()
{
    const auto enabled = [this](const char *name) { return m_session->item(name)->isEnabled(); };
    QVERIFY(enabled("mnuEditUndo"));
    QVERIFY(enabled("mnuEditFind"));
    closeEveryWindow();
    QTRY_VERIFY(!enabled("mnuEditUndo"));
    QVERIFY(!enabled("mnuEditFind"));
    for (const char *item :
         {"mnuEditCut", "mnuEditCopy", "mnuEditPaste", "mnuEditSelectAll", "mnuEditSelectNone"})
        QVERIFY2(enabled(item), item);
}

void tst_EditMenu::menuOpenedByKeyboardLeavesTheTarget()
{
    focusAddress(u"http://two/"_s);
    QTest::keyClick(&addressEdit(), Qt::Key_E, Qt::AltModifier);
    QTRY_VERIFY(QApplication::activePopupWidget());
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_A);
    QCOMPARE(m_session->address().selText(), u"http://two/"_s);
    QVERIFY(calls().isEmpty());
}

void tst_EditMenu::menuOpenedByKeyboardLeavesTheField()
{
    QLineEdit field(u"words"_s, m_session->active()->widget());
    field.show();
    field.setFocus();
    QTRY_VERIFY(field.hasFocus());
    QTest::keyClick(&field, Qt::Key_E, Qt::AltModifier);
    QTRY_VERIFY(QApplication::activePopupWidget());
    QTest::keyClick(QApplication::activePopupWidget(), Qt::Key_A);
    QCOMPARE(field.selectedText(), u"words"_s);
    QVERIFY(calls().isEmpty());
}

QTEST_MAIN(tst_EditMenu)
#include "tst_editmenu.moc"
