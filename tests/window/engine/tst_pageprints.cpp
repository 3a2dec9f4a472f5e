#include <QMdiArea>
#include <QPrintDialog>
#include <QSignalSpy>
#include <QTest>

#include "EngineTest.h"
#include "PageAsks.h"
#include "PagePrinter.h"
#include "PopupScene.h"

using namespace Qt::StringLiterals;

/// Pages that want to be printed, or closed, more often than anybody wants it.
class tst_pageprints : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void manyPrintsInOneClick();
    void endlessPrintsCanBeEnded();
    void chosenPrintIsLeftAlone();
    void dialogGoesWithThePage_data();
    void dialogGoesWithThePage();
    void pageBehindOpensNoDialog();
    void windowsThatCloseThemselves();

private:
    QList<QPrintDialog *> dialogs() const;

    std::unique_ptr<PopupScene> m_scene;
    QPointer<BrowserWindow> m_form;
};

void tst_pageprints::init()
{
    m_scene = std::make_unique<PopupScene>();
    QVERIFY(m_scene->isReady());
    m_form = m_scene->openPage("<button id=b onclick='for (let i = 0; i < 30; i++) print();"
                               "document.title = \"through\"'>b</button>",
                               true);
}

void tst_pageprints::cleanup()
{
    m_scene.reset();
}

QList<QPrintDialog *> tst_pageprints::dialogs() const
{
    QList<QPrintDialog *> visible;
    for (QPrintDialog *each : m_scene->frame.window()->findChildren<QPrintDialog *>()) {
        if (each->isVisible())
            visible.append(each);
    }
    return visible;
}

void tst_pageprints::manyPrintsInOneClick()
{
    const QSignalSpy requests(PopupScene::control(m_form)->page(), &WebPage::printRequested);
    PopupScene::click(m_form, u"b"_s);
    QTRY_COMPARE(dialogs().size(), 1);
    QTRY_COMPARE(m_form->windowTitle(), u"through"_s);
    // Qt 6.4 hands on each of them, Qt 6.8 the first.
    QVERIFY(!requests.isEmpty());
    QVERIFY(!dialogs().first()->isModal());
    QVERIFY(!QApplication::activeModalWidget());
    // The page goes on, and so does every other.
    QCOMPARE(PopupScene::script(m_form, u"1 + 1"_s).toInt(), 2);
    QCOMPARE(dialogs().size(), 1);
    QCOMPARE(PageAsks::countIn(m_form), 0);
    dialogs().first()->reject();
    QCOMPARE(PopupScene::script(m_form, u"1 + 1"_s).toInt(), 2);
    QVERIFY(dialogs().isEmpty());
    QCOMPARE(PageAsks::countIn(m_form), 0);
}

void tst_pageprints::endlessPrintsCanBeEnded()
{
    PopupScene::script(m_form, u"window.n = 0; setInterval(() => { print(); window.n++ }, 0); 1"_s);
    QTRY_COMPARE(dialogs().size(), 1);
    QTRY_VERIFY(PopupScene::script(m_form, u"window.n > 50"_s).toBool());
    QCOMPARE(dialogs().size(), 1);
    dialogs().first()->reject();
    QTRY_VERIFY(PageAsks::shownIn(m_form));
    const PageQuestionBox *box = PageAsks::shownIn(m_form);
    QVERIFY(PageAsks::askerOf(box).startsWith("http://127.0.0.1:"_L1));
    QVERIFY(dialogs().isEmpty());
    PageAsks::press(PageAsks::yes(box));
    QTRY_COMPARE(dialogs().size(), 1);
    dialogs().first()->reject();
    QTRY_VERIFY(PageAsks::shownIn(m_form));
    PageAsks::noMore(PageAsks::shownIn(m_form))->click();
    PageAsks::press(PageAsks::no(PageAsks::shownIn(m_form)));
    PopupScene::script(m_form, u"window.n = 0; 1"_s);
    QTRY_VERIFY(PopupScene::script(m_form, u"window.n > 50"_s).toBool());
    QCOMPARE(PageAsks::countIn(m_form), 0);
    QVERIFY(dialogs().isEmpty());
}

/// The user's own print dialog is the only one while it is open.
void tst_pageprints::chosenPrintIsLeftAlone()
{
    QVERIFY(m_form->browser()->execCommand(OleCmd::Print, OleExecOpt::Default));
    QTRY_COMPARE(dialogs().size(), 1);
    QVERIFY(dialogs().first()->isModal());
    PopupScene::script(m_form, u"for (let i = 0; i < 5; i++) print(); 1"_s);
    QCOMPARE(PopupScene::script(m_form, u"1 + 1"_s).toInt(), 2);
    QCOMPARE(dialogs().size(), 1);
    QCOMPARE(PageAsks::countIn(m_form), 0);
    dialogs().first()->reject();
}

void tst_pageprints::dialogGoesWithThePage_data()
{
    QTest::addColumn<bool>("closes");
    QTest::newRow("another page") << false;
    QTest::newRow("window closed") << true;
}

void tst_pageprints::dialogGoesWithThePage()
{
    QFETCH(bool, closes);
    m_scene->server.page("/b", "<title>b</title>");
    PopupScene::script(m_form, u"print(); 1"_s);
    QTRY_COMPARE(dialogs().size(), 1);
    if (closes)
        m_form->close();
    else
        m_form->browser()->navigate(m_scene->server.url(u"/b"_s));
    QTRY_VERIFY(dialogs().isEmpty());
}

void tst_pageprints::pageBehindOpensNoDialog()
{
    m_scene->server.page("/other", "<title>other</title>");
    const BrowserWindow *other = m_scene->frame.open(m_scene->server.url(u"/other"_s));
    QTRY_COMPARE(other->windowTitle(), u"other"_s);
    PopupScene::script(m_form, u"print(); 1"_s);
    QTRY_VERIFY(PageAsks::shownIn(m_form));
    QVERIFY(dialogs().isEmpty());
    PageAsks::press(PageAsks::yes(PageAsks::shownIn(m_form)));
    QTRY_COMPARE(dialogs().size(), 1);
}

/// Each asks in itself, once, and the keyboard works in all of them.
void tst_pageprints::windowsThatCloseThemselves()
{
    QVERIFY(QTest::qWaitForWindowActive(m_scene->frame.window()));
    m_scene->server.page("/p",
                         "<title>p</title><script>onload = () => setInterval(close, 50)</script>");
    PopupScene::script(m_form,
                       u"let n = 0; const t = setInterval(() => { open('/p');"
                       "if (++n == 10) clearInterval(t) }, 100); 1"_s);
    QTRY_COMPARE_WITH_TIMEOUT(PopupScene::popups().size(), 10, 20000);
    for (const QPointer<BrowserWindow> window : PopupScene::popups())
        QTRY_COMPARE(PageAsks::countIn(window), 1);
    QVERIFY(!QApplication::activeModalWidget());
    QVERIFY(!m_scene->frame.window()->findChild<QWidget *>(u"MsgBox"_s));
    for (const QPointer<BrowserWindow> window : PopupScene::popups()) {
        m_scene->frame.area->setActiveSubWindow(window);
        PageQuestionBox *box = PageAsks::shownIn(window);
        PageAsks::waitUntilAnswerable(box);
        box->takeFocus();
        QTest::keyClick(PageAsks::yes(box), Qt::Key_Escape);
        QTRY_COMPARE(PageAsks::countIn(window), 0);
        QVERIFY(window);
    }
    m_scene->frame.area->setActiveSubWindow(m_form);
    QCOMPARE(PopupScene::script(m_form, u"1 + 1"_s).toInt(), 2);
}

ORVANE_ENGINE_TEST_MAIN(tst_pageprints)
#include "tst_pageprints.moc"
