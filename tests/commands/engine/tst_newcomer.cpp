#include <QWebEngineView>

#include "../Session.h"
#include "Answer.h"
#include "EngineTest.h"

using namespace Qt::StringLiterals;

/// A first session with the program, on its real widgets, and the ways windows are opened.
class tst_Newcomer : public QObject {
    Q_OBJECT

private slots:
    void init() { m_session = std::make_unique<Session>(); }
    void cleanup() { m_session.reset(); }

    void firstSession();
    void addressWithoutAWindowOpensAMaximizedOne();
    void blankPageBesideAMaximizedWindow();
    void blankPageBesideANormalWindow();
    void homePageWindow();
    void clipboardWindow_data();
    void clipboardWindow();
    void currentPageWithoutAWindowIsHome();
    void escapeRestoresThePagesAddress();
    void backAndForwardButtons();

private:
    void clickPage();

    std::unique_ptr<Session> m_session;
};

/// Clicks near the upper left corner of the active page. A page takes no clicks before it is
/// painted, so this is for repeating until the click shows its effect.
void tst_Newcomer::clickPage()
{
    const auto *view = m_session->active()->findChild<QWebEngineView *>();
    if (view && view->focusProxy())
        QTest::mouseClick(view->focusProxy(), Qt::LeftButton, {}, QPoint(20, 18));
}

void tst_Newcomer::firstSession()
{
    TestServer &server = m_session->server;
    server.page("/one",
                "<title>One</title><body style='margin:0'><a href='/two' "
                "style='display:block;width:300px;height:80px;background:#cdf'>two</a>");
    m_session->folder.setSetting(u"Settings"_s, u"AskOnExit"_s, u"1"_s);
    m_session->start(server.url(u"/home"_s));
    QTRY_VERIFY(m_session->shows(server.url(u"/home"_s)));

    m_session->typeAddress(server.url(u"/one"_s));
    QTRY_VERIFY(m_session->shows(server.url(u"/one"_s)));
    QCOMPARE(m_session->windows(), 1);

    const auto followed = [&] {
        clickPage();
        return m_session->shows(server.url(u"/two"_s));
    };
    QTRY_VERIFY(followed());
    QTRY_COMPARE(m_session->address().text(), server.url(u"/two"_s));

    BrowserWindow *first = m_session->active();
    QTest::keyClick(m_session->frame.get(), Qt::Key_N, Qt::ControlModifier);
    QTRY_COMPARE(m_session->windows(), 2);
    QVERIFY(m_session->active() != first);
    QTRY_VERIFY(m_session->shows(server.url(u"/two"_s)));

    QWidget *tab = m_session->tabs().tab(first->tabKey());
    QVERIFY(tab);
    QTest::mouseClick(tab, Qt::LeftButton);
    QTRY_COMPARE(m_session->active(), first);
    QVERIFY(m_session->tabs().isPressed(first->tabKey()));

    Answer no(QMessageBox::No);
    QVERIFY(!m_session->frame->close());
    QCOMPARE(m_session->windows(), 2);
    Answer yes(QMessageBox::Yes);
    QVERIFY(m_session->frame->close());
    QCOMPARE(m_session->windows(), 0);
}

void tst_Newcomer::addressWithoutAWindowOpensAMaximizedOne()
{
    m_session->start();
    m_session->choose("mnuFileCloseAll");
    QTRY_COMPARE(m_session->windows(), 0);
    QVERIFY(!m_session->frame->activeChild());
    m_session->typeAddress(m_session->server.url(u"/one"_s));
    QCOMPARE(m_session->windows(), 1);
    QVERIFY(m_session->active()->isMaximized());
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/one"_s)));
}

void tst_Newcomer::blankPageBesideAMaximizedWindow()
{
    m_session->start();
    BrowserWindow *first = m_session->active();
    m_session->choose("mnuFileNewBlankPage");
    QCOMPARE(m_session->windows(), 2);
    BrowserWindow *second = m_session->active();
    QVERIFY(second != first);
    QTRY_COMPARE(m_session->location(), u"about:blank"_s);
    QTRY_VERIFY(m_session->tabs().isPressed(second->tabKey()));
    QVERIFY(!m_session->tabs().isPressed(first->tabKey()));
}

void tst_Newcomer::blankPageBesideANormalWindow()
{
    m_session->start();
    BrowserWindow *first = m_session->active();
    first->showNormal();
    m_session->choose("mnuFileNewBlankPage");
    QCOMPARE(m_session->windows(), 2);
    QVERIFY(m_session->active() != first);
    QVERIFY(!m_session->active()->isMaximized());
    QVERIFY(!m_session->active()->isMinimized());
    QTRY_COMPARE(m_session->location(), u"about:blank"_s);
}

void tst_Newcomer::homePageWindow()
{
    m_session->start(m_session->server.url(u"/one"_s));
    m_session->choose("mnuFileNewHomePage");
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/home"_s)));
    QCOMPARE(m_session->windows(), 2);
}

void tst_Newcomer::clipboardWindow_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("path");
    QTest::newRow("address") << u"/one"_s << u"/one"_s;
    QTest::newRow("empty") << u""_s << u"/home"_s;
}

void tst_Newcomer::clipboardWindow()
{
    QFETCH(QString, text);
    QFETCH(QString, path);
    m_session->start(m_session->server.url(u"/two"_s));
    QApplication::clipboard()->setText(text.isEmpty() ? text : m_session->server.url(text));
    m_session->frame->run(u"mnuFileNewFromClipboard"_s);
    QTRY_VERIFY(m_session->shows(m_session->server.url(path)));
    QCOMPARE(m_session->item("mnuFileNewFromClipboard")->isEnabled(), !text.isEmpty());
}

void tst_Newcomer::currentPageWithoutAWindowIsHome()
{
    m_session->start(m_session->server.url(u"/one"_s));
    m_session->choose("mnuFileClose");
    QTRY_COMPARE(m_session->windows(), 0);
    m_session->choose("mnuFileNewCurrent");
    QVERIFY(m_session->active()->isMaximized());
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/home"_s)));
}

void tst_Newcomer::escapeRestoresThePagesAddress()
{
    m_session->start(m_session->server.url(u"/one"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/one"_s)));
    auto *edit = m_session->frame->findChild<QLineEdit *>();
    edit->setFocus();
    edit->selectAll();
    QTest::keyClicks(edit, u"half an addr"_s);
    QTest::keyClick(edit, Qt::Key_Escape);
    QCOMPARE(m_session->address().text(), m_session->server.url(u"/one"_s));
}

void tst_Newcomer::backAndForwardButtons()
{
    m_session->start(m_session->server.url(u"/one"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/one"_s)));
    m_session->typeAddress(m_session->server.url(u"/two"_s));
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/two"_s)));
    m_session->choose("mnuNavigationBackwards");
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/one"_s)));
    m_session->choose("mnuNavigationForwards");
    QTRY_VERIFY(m_session->shows(m_session->server.url(u"/two"_s)));
    m_session->choose("mnuNavigationForwards");
    QVERIFY2(m_session->shows(m_session->server.url(u"/two"_s)), "nowhere to go is no error");
}

ORVANE_ENGINE_TEST_MAIN(tst_Newcomer)
#include "tst_newcomer.moc"
