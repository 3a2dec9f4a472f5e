// The address bar of the whole program while addresses are typed that bring no page, and while
// windows come and go.
#include <QDesktopServices>

#include "../EngineSession.h"
#include "EngineTest.h"
#include "StatusStrip.h"

using namespace Qt::StringLiterals;

/// The desktop's mail program.
class MailProgram : public QObject {
    Q_OBJECT

public slots:
    void open(const QUrl &url) { opened.append(url); }

public:
    QList<QUrl> opened;
};

class tst_addressbar : public QObject, private EngineSession {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { finish(); }
    void addressNotReachedIsTakenBack_data();
    void addressNotReachedIsTakenBack();
    void typedTextIsKept();
    void textThatIsNoAddressStays();
    void mailAddressGoesToTheMailProgram();
    void popupOfATimerIsNamedWhenItComes();

private:
    QString shown() const { return m_session->address().text(); }
    void clickTab(const BrowserWindow *window) const
    {
        QTest::mouseClick(m_session->tabs().tab(window->tabKey()), Qt::LeftButton);
    }
};

void tst_addressbar::init()
{
    begin();
    TestServer::Reply silent;
    silent.silent = true;
    m_session->server.reply("/hang", silent);
    TestServer::Reply nothing;
    nothing.status = 204;
    m_session->server.reply("/nothing", nothing);
    start();
}

void tst_addressbar::addressNotReachedIsTakenBack_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("stopped") << u"/hang"_s;
    QTest::newRow("nothing") << u"/nothing"_s;
}

void tst_addressbar::addressNotReachedIsTakenBack()
{
    QFETCH(const QString, path);
    m_session->typeAddress(url(path));
    QCOMPARE(shown(), url(path));
    QTRY_COMPARE(m_session->server.count(path.toUtf8()), 1);
    if (path == "/hang"_L1)
        m_session->choose("mnuNavigationStop");
    QTRY_COMPARE(shown(), url(u"/home"_s));
}

void tst_addressbar::typedTextIsKept()
{
    m_session->active()->browser()->navigate(url(u"/nothing"_s));
    auto *edit = m_session->frame->findChild<QLineEdit *>();
    edit->setFocus();
    edit->selectAll();
    QTest::keyClicks(edit, u"half an addr"_s);
    QTRY_COMPARE(m_session->server.count("/nothing"), 1);
    QTRY_VERIFY(!m_session->active()->browser()->isBusy());
    QCOMPARE(shown(), u"half an addr"_s);
}

void tst_addressbar::textThatIsNoAddressStays()
{
    m_session->typeAddress(u"foo:bar"_s);
    QTRY_COMPARE(m_session->active()->statusBar()->text(),
                 u" Addresses of this kind are not opened here: foo:bar"_s);
    QCOMPARE(shown(), u"foo:bar"_s);
    QCOMPARE(m_session->location(), url(u"/home"_s));
}

void tst_addressbar::mailAddressGoesToTheMailProgram()
{
    MailProgram program;
    QDesktopServices::setUrlHandler(u"mailto"_s, &program, "open");
    m_session->typeAddress(u"mailto:a@b.example"_s);
    QCOMPARE(program.opened, QList<QUrl>{QUrl(u"mailto:a@b.example"_s)});
    QCOMPARE(shown(), url(u"/home"_s));
    // Not for a page, a list or a file, which the user need not have read.
    m_session->frame->navigateActive(u"mailto:c@d.example"_s);
    script(u"location = 'mailto:e@f.example'; 1"_s);
    QTRY_VERIFY(!m_session->active()->browser()->isBusy());
    QDesktopServices::unsetUrlHandler(u"mailto"_s);
    QCOMPARE(program.opened.size(), 1);
}

void tst_addressbar::popupOfATimerIsNamedWhenItComes()
{
    m_session->server.page("/timer",
                           "<title>timer</title><script>setTimeout(() => { w = window.open('');"
                           " w.document.write('<title>FAKE</title>'); }, 1)</script>");
    m_session->typeAddress(url(u"/timer"_s));
    QTRY_COMPARE(m_session->windows(), 2);
    QTRY_COMPARE(browserForms().last()->windowTitle(), u"FAKE"_s);
    QTRY_COMPARE(m_session->active(), browserForms().last());
    QTRY_COMPARE(shown(), u"about:blank"_s);
    clickTab(browserForms().first());
    QTRY_COMPARE(shown(), url(u"/timer"_s));
    clickTab(browserForms().last());
    QTRY_COMPARE(shown(), u"about:blank"_s);
}

ORVANE_ENGINE_TEST_MAIN(tst_addressbar)
#include "tst_addressbar.moc"
