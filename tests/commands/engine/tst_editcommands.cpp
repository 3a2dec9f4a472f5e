#include <QCheckBox>
#include <QLabel>
#include <QMimeData>
#include <QPushButton>
#include <QWebEngineView>
#include <optional>

#include "../Session.h"
#include "EngineTest.h"
#include "PageFindBar.h"
#include "WebBrowserMaker.h"

using namespace Qt::StringLiterals;

/// The Edit menu on real pages: the real clipboard, every field, and the find bar.
class tst_EditCommands : public QObject {
    Q_OBJECT

private slots:
    void init() { m_session = std::make_unique<Session>(); }
    void cleanup() { m_session.reset(); }

    void copyOfAPageStaysRich();
    void selectNoneLeavesNothingSelected();
    void fieldOfThePage_data();
    void fieldOfThePage();
    void readOnlyTextIsNotCut();
    void pasteWithoutAFieldChangesNothing();
    void addressBarByShortcuts();
    void dialogFieldByShortcuts();
    void everyCommandOnAPageThatIsStillLoading();
    void hugeClipboard();
    void findCountsAndSteps();
    void findMatchesCase();
    void findOfNothing();
    void escapeReturnsToThePageWithTheHitSelected();
    void findStartsWithTheSelectedWord();
    void findFollowsTheNextPage();
    void editMenuActsInTheFindBar();
    void findWithoutAPageOpensNothing();

private:
    void openPage(const QByteArray &html);
    /// What a script of the page's own gives.
    QVariant ask(const QString &script);
    QWebEnginePage &page() const
    {
        return *m_session->active()->findChild<QWebEngineView *>()->page();
    }
    QWidget *engineWidget() const
    {
        return m_session->active()->findChild<QWebEngineView *>()->focusProxy();
    }
    static QString clipboard() { return QApplication::clipboard()->text(); }
    void focusField(const QString &id);
    PageFindBar &openFindBar();
    QString result() const
    {
        return m_session->active()
            ->findChild<PageFindBar *>()
            ->findChild<QLabel *>(u"lblResult"_s)
            ->text();
    }
    QLineEdit &findField() const
    {
        return *m_session->active()->findChild<PageFindBar *>()->findChild<QLineEdit *>();
    }

    std::unique_ptr<Session> m_session;
};

void tst_EditCommands::openPage(const QByteArray &html)
{
    m_session->server.page("/edit", "<title>Edit</title>" + html);
    m_session->start(m_session->server.url(u"/edit"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/edit"_s)));
    m_session->frame->activateWindow();
    QTRY_VERIFY(m_session->frame->isActiveWindow());
    m_session->active()->browser()->setFocus();
}

QVariant tst_EditCommands::ask(const QString &script)
{
    // An answer may come later than it is waited for.
    const auto answer = std::make_shared<std::optional<QVariant>>();
    page().runJavaScript(script, [answer](const QVariant &value) { *answer = value; });
    if (!QTest::qWaitFor([&] { return answer->has_value(); }, 10000))
        return u"no answer"_s;
    return **answer;
}

/// Focuses a field and selects its text; returns once the program knows of it.
void tst_EditCommands::focusField(const QString &id)
{
    ask(u"document.getElementById('%1').focus(), document.getElementById('%1').select()"_s.arg(id));
    QTRY_COMPARE(ask(u"document.activeElement.id"_s).toString(), id);
    QTRY_VERIFY(page().hasSelection());
}

void tst_EditCommands::copyOfAPageStaysRich()
{
    openPage("<p>some <b>bold</b> words");
    m_session->choose("mnuEditSelectAll");
    QTRY_VERIFY(page().hasSelection());
    m_session->choose("mnuEditCopy");
    QTRY_COMPARE(clipboard().trimmed(), u"some bold words"_s);
    QVERIFY(QApplication::clipboard()->mimeData()->html().contains("<b"_L1));
}

void tst_EditCommands::selectNoneLeavesNothingSelected()
{
    openPage("<p>some words");
    m_session->choose("mnuEditSelectAll");
    QTRY_VERIFY(page().hasSelection());
    m_session->choose("mnuEditSelectNone");
    QTRY_VERIFY(!page().hasSelection());
}

void tst_EditCommands::fieldOfThePage_data()
{
    QTest::addColumn<bool>("byShortcut");
    QTest::newRow("menu") << false;
    QTest::newRow("shortcut") << true;
}

void tst_EditCommands::fieldOfThePage()
{
    QFETCH(bool, byShortcut);
    const auto run = [&](const char *item, Qt::Key key) {
        if (byShortcut)
            QTest::keyClick(engineWidget(), key, Qt::ControlModifier);
        else
            m_session->choose(item);
    };
    openPage("<input id=one value=first><input id=two value=second>");
    const auto value = [&](const char *id) {
        return ask(u"document.getElementById('%1').value"_s.arg(QLatin1String(id))).toString();
    };
    focusField(u"one"_s);
    QTRY_COMPARE(m_session->active()->browser()->queryStatus(OleCmd::Cut), 3);
    run("mnuEditCut", Qt::Key_X);
    QTRY_COMPARE(clipboard(), u"first"_s);
    QTRY_COMPARE(value("one"), QString());
    focusField(u"two"_s);
    QTRY_COMPARE(m_session->active()->browser()->queryStatus(OleCmd::Paste), 3);
    run("mnuEditPaste", Qt::Key_V);
    QTRY_COMPARE(value("two"), u"first"_s);
    run("mnuEditUndo", Qt::Key_Z);
    QTRY_COMPARE(value("two"), u"second"_s);
    focusField(u"two"_s);
    run("mnuEditCopy", Qt::Key_C);
    QTRY_COMPARE(clipboard(), u"second"_s);
    ask(u"document.getElementById('two').setSelectionRange(0, 0)"_s);
    run("mnuEditSelectAll", Qt::Key_A);
    QTRY_COMPARE(page().selectedText(), u"second"_s);
}

void tst_EditCommands::readOnlyTextIsNotCut()
{
    openPage("<p>fixed words<input id=fixed readonly value='a value'>");
    m_session->choose("mnuEditSelectAll");
    QTRY_VERIFY(page().hasSelection());
    m_session->choose("mnuEditCut");
    focusField(u"fixed"_s);
    m_session->choose("mnuEditCut");
    QCOMPARE(ask(u"document.getElementById('fixed').value"_s).toString(), u"a value"_s);
    QCOMPARE(clipboard(), u"something"_s);
}

void tst_EditCommands::pasteWithoutAFieldChangesNothing()
{
    openPage("<p id=p>fixed words");
    m_session->choose("mnuEditPaste");
    QCOMPARE(ask(u"document.getElementById('p').textContent"_s).toString(), u"fixed words"_s);
}

void tst_EditCommands::addressBarByShortcuts()
{
    openPage("<p>words");
    auto *edit = m_session->address().findChild<QLineEdit *>();
    edit->setFocus();
    QTRY_VERIFY(edit->hasFocus());
    const QString address = edit->text();
    QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
    QCOMPARE(edit->selectedText(), address);
    QTest::keyClick(edit, Qt::Key_C, Qt::ControlModifier);
    QCOMPARE(clipboard(), address);
    QTest::keyClick(edit, Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(edit->text(), QString());
    QTest::keyClick(edit, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(edit->text(), address);
    QTest::keyClick(edit, Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(edit->text(), QString());
}

void tst_EditCommands::dialogFieldByShortcuts()
{
    openPage("<p>words of the page");
    m_session->choose("mnuFileOpen");
    QTRY_VERIFY(QApplication::activeModalWidget());
    auto *edit = QApplication::activeModalWidget()->findChild<QLineEdit *>();
    QVERIFY(edit);
    edit->setFocus();
    QTRY_VERIFY(edit->hasFocus());
    edit->setText(u"typed"_s);
    QTest::keyClick(edit, Qt::Key_A, Qt::ControlModifier);
    QTest::keyClick(edit, Qt::Key_X, Qt::ControlModifier);
    QCOMPARE(clipboard(), u"typed"_s);
    QCOMPARE(edit->text(), QString());
    QTest::keyClick(edit, Qt::Key_V, Qt::ControlModifier);
    QCOMPARE(edit->text(), u"typed"_s);
    QApplication::activeModalWidget()->close();
}

void tst_EditCommands::everyCommandOnAPageThatIsStillLoading()
{
    TestServer::Reply stall;
    stall.stallAfterHeaders = true;
    m_session->server.reply("/stall", stall);
    m_session->start(m_session->server.url(u"/stall"_s));
    QTRY_COMPARE(m_session->server.count("/stall"), 1);
    for (const char *item :
         {"mnuEditUndo", "mnuEditCut", "mnuEditCopy", "mnuEditPaste", "mnuEditFind",
          "mnuEditSelectAll", "mnuEditSelectNone", "mnuViewFontSize23", "mnuViewDocumentHTML"})
        m_session->choose(item);
    QVERIFY(Forms::named("frmSource").isEmpty());
    m_session->typeAddress(m_session->server.url(u"/one"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/one"_s)));
}

void tst_EditCommands::hugeClipboard()
{
    openPage("<textarea id=one>x</textarea>");
    focusField(u"one"_s);
    QTRY_COMPARE(m_session->active()->browser()->queryStatus(OleCmd::Paste), 3);
    QApplication::clipboard()->setText(QString(10'000'000, u'a'));
    m_session->choose("mnuEditPaste");
    QTRY_COMPARE_WITH_TIMEOUT(ask(u"document.getElementById('one').value.length"_s).toInt(),
                              10'000'000, 60000);
}

PageFindBar &tst_EditCommands::openFindBar()
{
    QTest::keyClick(m_session->frame.get(), Qt::Key_F, Qt::ControlModifier);
    return *m_session->active()->findChild<PageFindBar *>();
}

void tst_EditCommands::findCountsAndSteps()
{
    openPage("<p>fox one<p>Fox two<p>FOX three<p>forest");
    PageFindBar &bar = openFindBar();
    QVERIFY(bar.isVisible());
    QTRY_VERIFY(findField().hasFocus());
    QTest::keyClicks(&findField(), u"fo"_s);
    QTRY_COMPARE(result(), u"1 of 4"_s);
    QTest::keyClicks(&findField(), u"x"_s);
    QTRY_COMPARE(result(), u"1 of 3"_s);
    bar.findChild<QPushButton *>(u"cmdFindNext"_s)->click();
    QTRY_COMPARE(result(), u"2 of 3"_s);
    QTest::keyClick(&findField(), Qt::Key_Return);
    QTRY_COMPARE(result(), u"3 of 3"_s);
    QTest::keyClick(&findField(), Qt::Key_Return);
    QTRY_COMPARE(result(), u"1 of 3"_s);
    bar.findChild<QPushButton *>(u"cmdFindPrevious"_s)->click();
    QTRY_COMPARE(result(), u"3 of 3"_s);
    QTest::keyClick(&findField(), Qt::Key_Return, Qt::ShiftModifier);
    QTRY_COMPARE(result(), u"2 of 3"_s);
}

void tst_EditCommands::findMatchesCase()
{
    openPage("<p>fox one<p>Fox two<p>FOX three");
    PageFindBar &bar = openFindBar();
    QTest::keyClicks(&findField(), u"Fox"_s);
    QTRY_COMPARE(result(), u"1 of 3"_s);
    bar.findChild<QCheckBox *>()->click();
    QTRY_COMPARE(result(), u"1 of 1"_s);
    bar.findChild<QCheckBox *>()->click();
    QTRY_VERIFY(result().endsWith("of 3"_L1));
}

void tst_EditCommands::findOfNothing()
{
    openPage("<p>fox");
    openFindBar();
    QTest::keyClicks(&findField(), u"wolf"_s);
    QTRY_COMPARE(result(), u"Not found"_s);
    findField().clear();
    QTRY_COMPARE(result(), QString());
}

void tst_EditCommands::escapeReturnsToThePageWithTheHitSelected()
{
    openPage("<p>the quick brown fox");
    PageFindBar &bar = openFindBar();
    QTest::keyClicks(&findField(), u"brown"_s);
    QTRY_COMPARE(result(), u"1 of 1"_s);
    QTest::keyClick(&findField(), Qt::Key_Escape);
    QVERIFY(!bar.isVisible());
    QTRY_VERIFY(engineWidget()->hasFocus());
    QTRY_COMPARE(page().selectedText(), u"brown"_s);
}

void tst_EditCommands::findStartsWithTheSelectedWord()
{
    openPage("<p>fox <span id=s>hound</span> hound");
    ask(u"getSelection().selectAllChildren(document.getElementById('s'))"_s);
    QTRY_COMPARE(page().selectedText(), u"hound"_s);
    openFindBar();
    QCOMPARE(findField().text(), u"hound"_s);
    QTRY_VERIFY(result().endsWith("of 2"_L1));
}

void tst_EditCommands::findFollowsTheNextPage()
{
    m_session->server.page("/next", "<p>fox fox fox");
    openPage("<p>fox");
    openFindBar();
    QTest::keyClicks(&findField(), u"fox"_s);
    QTRY_COMPARE(result(), u"1 of 1"_s);
    m_session->typeAddress(m_session->server.url(u"/next"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/next"_s)));
    QTRY_COMPARE(result(), u"1 of 3"_s);
}

void tst_EditCommands::editMenuActsInTheFindBar()
{
    openPage("<input id=field value=old>");
    focusField(u"field"_s);
    QTest::keyClicks(engineWidget(), u"kept"_s);
    const auto value = [&] { return ask(u"document.getElementById('field').value"_s).toString(); };
    QTRY_COMPARE(value(), u"kept"_s);
    openFindBar();
    // It begins with what was sought last, in whatever window.
    findField().setText({});
    QTest::keyClicks(&findField(), u"sought"_s);
    m_session->choose("mnuEditUndo");
    QCOMPARE(findField().text(), QString());
    QApplication::clipboard()->setText(u"words"_s);
    m_session->choose("mnuEditPaste");
    m_session->choose("mnuEditPaste");
    QCOMPARE(findField().text(), u"wordswords"_s);
    m_session->choose("mnuEditSelectAll");
    m_session->choose("mnuEditCut");
    QCOMPARE(findField().text(), QString());
    QCOMPARE(clipboard(), u"wordswords"_s);
    QCOMPARE(value(), u"kept"_s);
}

void tst_EditCommands::findWithoutAPageOpensNothing()
{
    QWidget window;
    WebBrowser *browser = makeWebBrowser(&window);
    browser->find();
    QVERIFY(!window.findChild<PageFindBar *>());
}

ORVANE_ENGINE_TEST_MAIN(tst_EditCommands)
#include "tst_editcommands.moc"
