// Addresses and titles of hostile pages in the whole program: the address bar, captions, tabs, the
// status line, the lists of windows and of the history, the page of errors.
#include "../EngineSession.h"
#include "EngineTest.h"
#include "StatusStrip.h"
#include "TabButton.h"

#include <QMenu>

using namespace Qt::StringLiterals;

class tst_shownnames : public QObject, private EngineSession {
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { finish(); }
    void titles();
    void userNameInTheAddress();
    void addressOnTheWay();
    void linkUnderThePointer_data();
    void linkUnderThePointer();
    void errorPage();

private:
    QLineEdit *bar() const { return m_session->address().findChild<QLineEdit *>(); }
    QString status() const
    {
        return m_session->active()->findChild<StatusStrip *>()->accessibleName();
    }
};

void tst_shownnames::titles()
{
    m_session->server.page("/t",
                           "<title>x</title><script>document.title = "
                           "'Your\\u202E bank\\u0007\\u2066 - \\u200Fsafe'</script>");
    start();
    go(url(u"/t"_s));
    QTRY_COMPARE(m_session->active()->windowTitle(), u"Your bank  - safe"_s);
    const auto *tab = m_session->tabs().findChild<TabButton *>();
    QCOMPARE(tab->accessibleName(), u"Your Bank ..."_s);
    QCOMPARE(tab->accessibleDescription(), u"Your bank  - safe"_s);
}

/// The bar shows the host, keeps the address and opens it again.
void tst_shownnames::userNameInTheAddress()
{
    start();
    const QString plain = url(u"/one"_s);
    const QString disguised = QString(plain).replace("http://"_L1, "http://www.bank.example@"_L1);
    m_session->frame->navigateActive(disguised);
    QTRY_COMPARE(m_session->active()->browser()->isBusy(), false);
    QTRY_COMPARE(m_session->server.count("/one"), 1);
    QTRY_COMPARE(bar()->text(), plain);
    QVERIFY(!m_session->active()->windowTitle().contains(u"bank"_s));
    bar()->setFocus();
    QTest::keyClick(bar(), Qt::Key_Return);
    QTRY_COMPARE(m_session->server.count("/one"), 2);
    QCOMPARE(bar()->text(), plain);
}

/// Before anything has come, the window is called by what was asked for.
void tst_shownnames::addressOnTheWay()
{
    TestServer::Reply silent;
    silent.silent = true;
    m_session->server.reply("/hang", silent);
    start();
    const QString plain = url(u"/hang"_s);
    const QString disguised = QString(plain).replace("http://"_L1, "http://www.bank.example@"_L1);
    m_session->frame->openBrowserWindow(disguised, WindowState::AsOthers);
    QTRY_COMPARE(m_session->server.count("/hang"), 1);
    QCOMPARE(m_session->active()->windowTitle(), plain);
    QCOMPARE(bar()->text(), plain);
    QTRY_VERIFY(status().contains(plain));
    QVERIFY(!status().contains(u"bank"_s));
}

void tst_shownnames::linkUnderThePointer_data()
{
    QTest::addColumn<QString>("link");
    QTest::addColumn<QString>("shown");
    const auto row = [](const QString &link, const QString &shown) {
        QTest::addRow("%s", qPrintable(shown)) << link << shown;
    };
    row(u"https://www.bank.example@evil.example/"_s, u"https://evil.example/"_s);
    row(u"https://www.bank.example/\u202Egpj.exe"_s,
        u"https://www.bank.example/%E2%80%AEgpj.exe"_s);
    row(u"https://b\u0430nk.example/"_s, u"https://xn--bnk-6cd.example/"_s);
    row(u"https://\u0430\u0440\u0440\u04cf\u0435.com/"_s, u"https://xn--80ak6aa92e.com/"_s);
    row(u"https://b\u00fccher.example/stra\u00dfe"_s, u"https://b\u00fccher.example/stra\u00dfe"_s);
}

void tst_shownnames::linkUnderThePointer()
{
    QFETCH(const QString, link);
    QFETCH(const QString, shown);
    m_session->server.page("/links",
                           "<meta charset=utf-8><style>a { position: fixed; inset: 0 }</style>"
                           "<a href='"
                               + link.toUtf8() + "'>www.bank.example</a>");
    start();
    go(url(u"/links"_s));
    QWidget *page = m_session->active()->browser()->widget();
    for (int x = 20; x < 60 && !status().startsWith(shown); ++x) {
        QTest::mouseMove(page->window(), page->mapTo(page->window(), QPoint(x, 40)));
        QCoreApplication::processEvents();
    }
    QTRY_COMPARE(status(), shown);
}

void tst_shownnames::errorPage()
{
    start();
    const QString address = u"http://www.bank.example@127.0.0.1:1/\u202Ex"_s;
    m_session->frame->navigateActive(address);
    QTRY_VERIFY(script(u"document.querySelector('code')?.textContent ?? ''"_s).startsWith(u"http"));
    QCOMPARE(script(u"document.querySelector('code').textContent"_s),
             u"http://127.0.0.1:1/%E2%80%AEx"_s);
    QCOMPARE(bar()->text(), u"http://127.0.0.1:1/%E2%80%AEx"_s);
}

ORVANE_ENGINE_TEST_MAIN(tst_shownnames)
#include "tst_shownnames.moc"
