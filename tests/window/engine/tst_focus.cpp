// The keyboard focus stays where the user left it, whatever pages do, and hidden pages rest.
#include "EngineTest.h"
#include "FakeFrame.h"
#include "QtWebBrowser.h"
#include "TestServer.h"
#include "WebPage.h"

#include <QDialog>
#include <QLineEdit>
#include <QToolBar>

using namespace Qt::StringLiterals;

class tst_focus : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void typingIsNeverInterrupted();
    void pageHasTheFocusInTheFirstWindow();
    void pageThatMissedTheFocusIsToldAgain();
    void pageKeepsTheFocusAcrossSites();
    void pageKeepsTheFocusOnAnErrorPage();
    void fieldKeepsTheFocusAcrossSites();
    void fieldKeepsTheFocusOnAnErrorPage();
    void windowSwitchGivesTheFocusToItsPage();
    void pageBehindLeavesTheFieldAlone();
    void dialogGivesTheFocusBack();
    void closedWindowHandsTheFocusOn();
    void minimizedPageIsHidden();
    void coveredPageIsHidden();
    void windowOpenedOverAnotherHidesIt();

private:
    QtWebBrowser *browserOf(const BrowserWindow *form)
    {
        return static_cast<QtWebBrowser *>(form->browser());
    }
    bool pageHasFocus(const BrowserWindow *form)
    {
        const QWidget *focus = QApplication::focusWidget();
        return focus && browserOf(form)->widget()->isAncestorOf(focus);
    }
    QString script(const BrowserWindow *form, const QString &code);
    BrowserWindow *open(const QString &path);
    void go(const BrowserWindow *form, const QString &url);
    bool isHidden(const BrowserWindow *form)
    {
        return script(form, u"document.visibilityState"_s) == "hidden"_L1;
    }

    std::unique_ptr<TestServer> m_server;
    std::unique_ptr<FakeFrame> m_frame;
    QLineEdit *m_field = nullptr;
};

void tst_focus::init()
{
    m_server = std::make_unique<TestServer>();
    m_server->page("/a", "<title>A</title><body>a");
    m_server->page("/greedy",
                   "<title>Greedy</title><input id=i autofocus><script>"
                   "setInterval(() => { window.focus(); i.focus(); i.click(); }, 50)</script>");
    m_frame = std::make_unique<FakeFrame>();
    auto *window = static_cast<QMainWindow *>(m_frame->window());
    auto *bar = new QToolBar(window);
    m_field = new QLineEdit(bar);
    bar->addWidget(m_field);
    window->addToolBar(bar);
    window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(window));
}

void tst_focus::cleanup()
{
    m_frame.reset();
    m_server.reset();
}

QString tst_focus::script(const BrowserWindow *form, const QString &code)
{
    QString result;
    bool answered = false;
    browserOf(form)->page()->runJavaScript(code, [&](const QVariant &value) {
        result = value.toString();
        answered = true;
    });
    [&] { QTRY_VERIFY(answered); }();
    return result;
}

BrowserWindow *tst_focus::open(const QString &path)
{
    BrowserWindow *form = m_frame->open(m_server->url(path));
    [&] {
        QTRY_COMPARE(browserOf(form)->locationUrl(), m_server->url(path));
        QTRY_VERIFY(!browserOf(form)->isBusy());
    }();
    return form;
}

void tst_focus::go(const BrowserWindow *form, const QString &url)
{
    form->browser()->navigate(url);
    QTRY_COMPARE(browserOf(form)->locationUrl(), url);
    QTRY_VERIFY(!browserOf(form)->isBusy());
}

void tst_focus::typingIsNeverInterrupted()
{
    QList<BrowserWindow *> forms;
    for (int i = 0; i < 20; ++i)
        forms.append(m_frame->open({}));
    m_field->setFocus();
    QString typed;
    for (int i = 0; i < 200; ++i) {
        if (i % 10 == 0) {
            // Every second one goes to another site, and gets another widget for it.
            const QString host = i % 20 == 0 ? u"127.0.0.1"_s : u"localhost"_s;
            forms.at(i / 10)->browser()->navigate(m_server->url(u"/greedy"_s, host));
        }
        const QChar key(u'a' + i % 26);
        typed.append(key);
        QVERIFY(QApplication::focusWidget() == m_field);
        QTest::keyClick(QApplication::focusWidget(), char(key.unicode()), Qt::NoModifier, 5);
    }
    for (const BrowserWindow *form : std::as_const(forms))
        QTRY_COMPARE(form->windowTitle(), u"Greedy"_s);
    QCOMPARE(m_field->text(), typed);
    QVERIFY(m_field->hasFocus());
}

void tst_focus::pageHasTheFocusInTheFirstWindow()
{
    const BrowserWindow *form = open(u"/a"_s);
    QTRY_VERIFY(pageHasFocus(form));
    QTRY_COMPARE(script(form, u"String(document.hasFocus())"_s), u"true"_s);
}

void tst_focus::pageThatMissedTheFocusIsToldAgain()
{
    const BrowserWindow *form = open(u"/a"_s);
    QTRY_VERIFY(pageHasFocus(form));
    QTRY_COMPARE(script(form, u"String(document.hasFocus())"_s), u"true"_s);
    // The widget has the keyboard, and the page does not know.
    QFocusEvent lost(QEvent::FocusOut, Qt::OtherFocusReason);
    QCoreApplication::sendEvent(QApplication::focusWidget(), &lost);
    QTRY_COMPARE(script(form, u"String(document.hasFocus())"_s), u"false"_s);
    QVERIFY(pageHasFocus(form));
    go(form, m_server->url(u"/a?again"_s));
    QTRY_COMPARE(script(form, u"String(document.hasFocus())"_s), u"true"_s);
}

void tst_focus::pageKeepsTheFocusAcrossSites()
{
    const BrowserWindow *form = open(u"/a"_s);
    QTRY_VERIFY(pageHasFocus(form));
    m_server->page("/keys",
                   "<title></title><body>text<script>"
                   "onkeydown = e => document.title += e.key</script>");
    go(form, m_server->url(u"/keys"_s, u"localhost"_s));
    QTRY_VERIFY(pageHasFocus(form));
    QTRY_COMPARE(script(form, u"String(document.hasFocus())"_s), u"true"_s);
    // A page takes keys from when it is painted.
    QTRY_VERIFY([&] {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_X);
        return form->windowTitle().startsWith(u'x');
    }());
}

void tst_focus::pageKeepsTheFocusOnAnErrorPage()
{
    const BrowserWindow *form = open(u"/a"_s);
    QTRY_VERIFY(pageHasFocus(form));
    go(form, u"http://127.0.0.1:1/"_s);
    QTRY_VERIFY(pageHasFocus(form));
    go(form, m_server->url(u"/a"_s));
    QTRY_VERIFY(pageHasFocus(form));
}

void tst_focus::fieldKeepsTheFocusAcrossSites()
{
    const BrowserWindow *form = open(u"/a"_s);
    m_field->setFocus();
    go(form, m_server->url(u"/greedy"_s, u"localhost"_s));
    go(form, m_server->url(u"/greedy"_s));
    QVERIFY(m_field->hasFocus());
}

void tst_focus::fieldKeepsTheFocusOnAnErrorPage()
{
    const BrowserWindow *form = open(u"/a"_s);
    m_field->setFocus();
    go(form, u"http://127.0.0.1:1/"_s);
    QVERIFY(m_field->hasFocus());
}

void tst_focus::windowSwitchGivesTheFocusToItsPage()
{
    BrowserWindow *first = open(u"/a"_s);
    const BrowserWindow *second = open(u"/a"_s);
    QTRY_VERIFY(pageHasFocus(second));
    m_frame->area->setActiveSubWindow(first);
    QTRY_VERIFY(pageHasFocus(first));
}

void tst_focus::pageBehindLeavesTheFieldAlone()
{
    const BrowserWindow *first = open(u"/a"_s);
    open(u"/greedy"_s);
    m_field->setFocus();
    go(first, m_server->url(u"/greedy"_s, u"localhost"_s));
    QVERIFY(m_field->hasFocus());
    QVERIFY(!pageHasFocus(first));
}

void tst_focus::dialogGivesTheFocusBack()
{
    const BrowserWindow *form = open(u"/a"_s);
    for (const bool inPage : {true, false}) {
        if (inPage)
            form->browser()->widget()->setFocus();
        else
            m_field->setFocus();
        QTRY_COMPARE(pageHasFocus(form), inPage);
        auto dialog = std::make_unique<QDialog>(m_frame->window());
        auto *inside = new QLineEdit(dialog.get());
        dialog->open();
        QTRY_VERIFY(inside->hasFocus());
        dialog->reject();
        dialog.reset();
        QTRY_COMPARE(pageHasFocus(form), inPage);
        QTRY_COMPARE(m_field->hasFocus(), !inPage);
    }
}

void tst_focus::closedWindowHandsTheFocusOn()
{
    const BrowserWindow *first = open(u"/a"_s);
    BrowserWindow *second = open(u"/a"_s);
    QTRY_VERIFY(pageHasFocus(second));
    second->unload();
    QTRY_VERIFY(pageHasFocus(first));
}

void tst_focus::minimizedPageIsHidden()
{
    BrowserWindow *form = open(u"/a"_s);
    QVERIFY(!isHidden(form));
    form->showMinimized();
    QTRY_VERIFY(isHidden(form));
    form->showNormal();
    QTRY_VERIFY(!isHidden(form));
}

void tst_focus::coveredPageIsHidden()
{
    BrowserWindow *behind = open(u"/a"_s);
    BrowserWindow *front = open(u"/a"_s);
    QVERIFY(!isHidden(behind) && !isHidden(front));
    front->showMaximized();
    QTRY_VERIFY(isHidden(behind));
    QVERIFY(!isHidden(front));
    m_frame->area->setActiveSubWindow(behind);
    QTRY_VERIFY(!isHidden(behind));
    m_frame->area->setActiveSubWindow(front);
    front->showNormal();
    QTRY_VERIFY(!isHidden(behind) && !isHidden(front));
}

void tst_focus::windowOpenedOverAnotherHidesIt()
{
    const BrowserWindow *behind = open(u"/a"_s);
    BrowserWindow *front = m_frame->open(m_server->url(u"/a"_s), true);
    QTRY_VERIFY(isHidden(behind));
    front->unload();
    QTRY_VERIFY(!isHidden(behind));
}

ORVANE_ENGINE_TEST_MAIN(tst_focus)
#include "tst_focus.moc"
