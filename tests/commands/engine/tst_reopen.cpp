// Closed windows come back as they were, whatever state they were closed in.
#include <QWebEngineHistory>

#include <csignal>

#include "../EngineSession.h"
#include "ClosedWindows.h"
#include "EngineTest.h"
#include "PageAsks.h"

using namespace Qt::StringLiterals;

class tst_Reopen : public QObject, private EngineSession {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { finish(); }

    void closedOnItsWayElsewhere();
    void closedWhileItsScriptWaits();
    void closedAfterItsPageDied();
    void textInAFrameOfAnotherSite();
    void hostThatIsGone();
    void answerToAForm();
    void manyAtOnce();
    void windowsThatPagesOpenedPushNoneOff();
    void whileNoPageIsInFront();

private:
    QWebEnginePage *page() const
    {
        return static_cast<QtWebBrowser *>(m_session->active()->browser())->page();
    }
    void open(const QString &path)
    {
        m_session->frame->openBrowserWindow(url(path), WindowState::AsOthers);
        QTRY_VERIFY(m_session->shows(url(path)));
    }
    void close() const
    {
        const int before = m_session->windows();
        m_session->active()->close();
        QTRY_COMPARE(m_session->windows(), before - 1);
    }
    void reopen(const QString &path) const
    {
        m_session->choose("mnuWindowReopen");
        QTRY_VERIFY2(m_session->shows(url(path)), qPrintable(m_session->location()));
    }
};

void tst_Reopen::init()
{
    ClosedWindows::clear();
    begin();
    start();
}

void tst_Reopen::closedOnItsWayElsewhere()
{
    TestServer::Reply slow;
    slow.silent = true;
    m_session->server.reply("/slow", slow);
    open(u"/one"_s);
    m_session->active()->browser()->navigate(url(u"/slow"_s));
    QTRY_COMPARE(m_session->server.count("/slow"), 1);
    close();
    reopen(u"/one"_s);
    QCOMPARE(m_session->active()->shownAddress(), url(u"/one"_s));
    QCOMPARE(m_session->active()->windowTitle(), u"the quick brown fox"_s);
}

void tst_Reopen::closedWhileItsScriptWaits()
{
    open(u"/one"_s);
    page()->runJavaScript(u"setTimeout(() => alert('wait'), 0)"_s);
    const WhenAsked asked(m_session->active(),
                          [this](PageQuestionBox *) { m_session->active()->close(); });
    QTRY_COMPARE(m_session->windows(), 1);
    QCOMPARE(asked.count(), 1);
    reopen(u"/one"_s);
    QCOMPARE(PageAsks::countIn(m_session->active()), 0);
}

void tst_Reopen::closedAfterItsPageDied()
{
    open(u"/one"_s);
    go(url(u"/two"_s));
    bool isDead = false;
    connect(page(), &QWebEnginePage::renderProcessTerminated, this, [&] { isDead = true; });
    ::kill(pid_t(page()->renderProcessPid()), SIGKILL);
    QTRY_VERIFY(isDead);
    close();
    reopen(u"/two"_s);
    QCOMPARE(m_session->active()->browser()->historySteps().size(), 1);
}

void tst_Reopen::textInAFrameOfAnotherSite()
{
    m_session->server.page(
        "/inner",
        "<textarea id=t></textarea><script>setInterval(() => top.postMessage("
        "t.value.toUpperCase() || document.activeElement.tagName, '*'), 50)</script>");
    m_session->server.page("/outer",
                           "<title>outer</title><script>onmessage = e => document.title = e.data"
                           "</script><iframe src='"
                               + m_session->server.url(u"/inner"_s, u"localhost"_s).toUtf8()
                               + "'></iframe>");
    open(u"/outer"_s);
    QWidget *control = m_session->active()->findChild<QWebEngineView *>()->focusProxy();
    QTRY_VERIFY((QTest::mouseClick(control, Qt::LeftButton, {}, QPoint(60, 40)),
                 page()->title() == "TEXTAREA"_L1));
    QTest::keyClicks(control, u"half a letter"_s);
    QTRY_COMPARE(m_session->active()->windowTitle(), u"HALF A LETTER"_s);
    QTRY_VERIFY_WITH_TIMEOUT(qUncompress(m_session->active()->browser()->pageState().history)
                                 .contains(QByteArray("h\0a\0l\0f\0 \0a\0", 12)),
                             15'000);
    close();
    reopen(u"/outer"_s);
    QTRY_COMPARE(page()->title(), u"HALF A LETTER"_s);
}

void tst_Reopen::hostThatIsGone()
{
    auto other = std::make_unique<TestServer>();
    other->page("/there", "<title>there</title>");
    const QString address = other->url(u"/there"_s);
    open(u"/one"_s);
    go(address);
    close();
    other.reset();
    m_session->choose("mnuWindowReopen");
    QTRY_VERIFY(m_session->active()->browser()->hasDocument()
                && !m_session->active()->browser()->isBusy());
    QCOMPARE(m_session->location(), address);
    QVERIFY(m_session->active()->browser()->goBack());
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    close();
    reopen(u"/one"_s);
}

void tst_Reopen::answerToAForm()
{
    m_session->server.page("/form", "<form id=f method=post action=/answer><input name=a value=1>");
    m_session->server.page("/answer", "<title>answer</title>");
    open(u"/form"_s);
    page()->runJavaScript(u"f.submit(); 1"_s);
    QTRY_VERIFY(m_session->shows(url(u"/answer"_s)));
    close();
    reopen(u"/answer"_s);
    int sent = 0;
    for (const TestServer::Request &request : m_session->server.requests("/answer"))
        sent += request.method == "POST" ? 1 : 0;
    QCOMPARE(sent, 1);
}

/// A page that opens one after the other for its user to close takes nothing of his away.
void tst_Reopen::windowsThatPagesOpenedPushNoneOff()
{
    const QStringList mine{url(u"/one"_s), url(u"/two"_s)};
    for (const QString &address : mine) {
        open(QUrl(address).path());
        close();
    }
    for (int i = 0; i < 2 * ClosedWindows::most; ++i) {
        page()->runJavaScript(u"open('/popup%1'); 1"_s.arg(i));
        QTRY_COMPARE(m_session->windows(), 2);
        QTRY_COMPARE(m_session->location(), url(u"/popup%1"_s.arg(i)));
        close();
    }
    QStringList unasked;
    QStringList others;
    while (const std::optional<ClosedWindow> closed = ClosedWindows::take())
        (closed->wasUnasked ? unasked : others).append(closed->address);
    QCOMPARE(others, QStringList({mine.last(), mine.first()}));
    // The newest of the others can be had back all the same.
    QCOMPARE(unasked.size(), ClosedWindows::mostUnasked);
    QCOMPARE(unasked.first(), url(u"/popup%1"_s.arg(2 * ClosedWindows::most - 1)));
}

void tst_Reopen::manyAtOnce()
{
    for (int i = 0; i < 200; ++i) {
        m_session->frame->openBrowserWindow(url(u"/w%1"_s.arg(i)), WindowState::AsOthers);
        m_session->active()->close();
        if (i % 7 == 0)
            QCoreApplication::processEvents();
    }
    QTRY_COMPARE(m_session->windows(), 1);
    for (int i = 0; i < 200; ++i)
        m_session->choose("mnuWindowReopen");
    QCOMPARE(m_session->windows(), 1 + ClosedWindows::most);
    const QList<BrowserWindow *> all = browserForms();
    for (BrowserWindow *window : all.mid(1))
        QTRY_VERIFY(!window->browser()->isBusy() && window->browser()->hasDocument());
    QCOMPARE(m_session->active()->browser()->locationUrl(), url(u"/w175"_s));
}

void tst_Reopen::whileNoPageIsInFront()
{
    open(u"/one"_s);
    close();
    m_session->choose("mnuToolsDownloads");
    QTRY_VERIFY(m_session->frame->activeChild() && !m_session->active());
    m_session->frame->activeChild()->showMaximized();
    m_session->choose("mnuWindowReopen");
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    QVERIFY(m_session->active()->isMaximized());
}

int main(int argc, char *argv[])
{
    return runEngineTest<tst_Reopen>(argc, argv);
}
#include "tst_reopen.moc"
