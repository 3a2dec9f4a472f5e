#include <QPushButton>
#include <QStatusBar>
#include <QWebEnginePage>
#include <csignal>

#include "../Session.h"
#include "EngineTest.h"
#include "ProfilePages.h"
#include "QtWebBrowser.h"
#include "ScreenReader.h"
#include "WebPage.h"

using namespace Qt::StringLiterals;

/// The program goes on whatever a screen reader reads while windows and pages come and go, and
/// what stands on a page can be read.
class tst_ScreenReader : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void pageIsRead();
    void pageOpenBeforeTheReaderIsRead();
    void sleepingWindowsAreReadAgain_data();
    void sleepingWindowsAreReadAgain();
    void windowsSleepAndWake();
    void profileIsReadWhileItLoads();
    void closedWindowsAreReadNoMore();
    void crashedPageIsRead_data();
    void crashedPageIsRead();
    void fullScreenIsRead();
    void popupsAreReadAsTheyComeAndGo();

private:
    QString url(const QString &path) const { return m_session->server.url(path); }
    QString read() { return m_reader->read(m_session->frame.get()); }
    /// Opens a profile of `count` pages of one host.
    void openProfile(int count) const;
    bool isSeen() const
    {
        const auto *browser = qobject_cast<QtWebBrowser *>(m_session->active()->browser());
        return browser->page()->isVisible()
            && browser->page()->lifecycleState() == QWebEnginePage::LifecycleState::Active;
    }
    bool isLoaded() const { return m_session->frame->findChild<QStatusBar *>()->isHidden(); }
    /// The widget that the keyboard and the mouse of the active page go to.
    QWidget *page() const
    {
        return m_session->active()->browser()->widget()->focusProxy()->focusProxy();
    }

    std::unique_ptr<Session> m_session;
    std::unique_ptr<ScreenReader> m_reader;
};

void tst_ScreenReader::init()
{
    m_session = std::make_unique<Session>();
    m_reader = std::make_unique<ScreenReader>();
}

void tst_ScreenReader::cleanup()
{
    m_reader.reset();
    m_session.reset();
}

void tst_ScreenReader::openProfile(int count) const
{
    QByteArray bytes = "[Profile_URLS]\r\n";
    for (int i = 1; i <= count; ++i) {
        const QByteArray number = QByteArray::number(i);
        m_session->server.page("/page" + number,
                               "<title>p" + number + "</title><h1>Page number " + number
                                   + "</h1><input><button>Press</button>");
        bytes += "URL" + number + '=' + url(u"/page"_s).toUtf8() + number + "\r\n";
    }
    bytes += "[URL_Count]\r\nCount=" + QByteArray::number(count) + "\r\n";
    m_session->folder.write(u"Profiles/x.orp"_s, bytes);
    m_session->start(m_session->folder.file(u"Profiles/x.orp"_s));
    QCOMPARE(m_session->windows(), count);
}

void tst_ScreenReader::pageIsRead()
{
    m_session->start(url(u"/two"_s));
    QTRY_VERIFY(read().contains(u"Second page"_s));
}

void tst_ScreenReader::pageOpenBeforeTheReaderIsRead()
{
    m_reader.reset();
    m_session->start(url(u"/two"_s));
    QTRY_VERIFY(m_session->shows(url(u"/two"_s)));
    m_reader = std::make_unique<ScreenReader>();
    QTRY_VERIFY(read().contains(u"Second page"_s));
}

void tst_ScreenReader::sleepingWindowsAreReadAgain_data()
{
    QTest::addColumn<int>("count");
    QTest::newRow("a few sleep") << 60;
    QTest::newRow("most sleep") << 200;
#ifndef __SANITIZE_ADDRESS__ // where this row alone would take many minutes
    QTest::newRow("nearly all sleep") << 1000;
#endif
}

void tst_ScreenReader::sleepingWindowsAreReadAgain()
{
    QFETCH(int, count);
    openProfile(count);
    QTRY_VERIFY_WITH_TIMEOUT(isLoaded(), 180'000);
    read();
    QVERIFY(m_reader->met() > 3 * count);
    for (int i = 1; i <= 5; ++i) {
        QTest::keyClick(m_session->frame.get(), Qt::Key_Tab, Qt::ControlModifier);
        read();
        QTRY_VERIFY(m_session->shows(url(u"/page"_s + QString::number(i))));
        QTRY_VERIFY(read().contains(u"Page number "_s + QString::number(i)));
    }
}

void tst_ScreenReader::windowsSleepAndWake()
{
    constexpr int count = 60;
    openProfile(count);
    QTRY_VERIFY_WITH_TIMEOUT(isLoaded(), 90'000);
    // Some fall asleep when all have come.
    const auto asleep = [] {
        const QList<BrowserWindow *> windows = browserForms();
        return std::count_if(windows.cbegin(), windows.cend(),
                             [](const BrowserWindow *each) { return each->isAsleep(); });
    };
    QTRY_COMPARE(asleep(), count - ProfilePages::mostPages);
    for (int round = 0; round < 2; ++round) {
        for (BrowserWindow *window : browserForms())
            window->wake();
        const auto isAwake = [this] {
            read();
            const QList<BrowserWindow *> windows = browserForms();
            // What nobody has gone to may fall asleep once more.
            for (BrowserWindow *each : windows)
                each->wake();
            return std::all_of(windows.cbegin(), windows.cend(), [](const BrowserWindow *each) {
                return each->browser()->hasDocument() && !each->browser()->isBusy();
            });
        };
        QTRY_VERIFY_WITH_TIMEOUT(isAwake(), 90'000);
        for (BrowserWindow *window : browserForms()) {
            window->fallAsleep();
            QVERIFY(window->isAsleep());
            read();
        }
    }
    QCOMPARE(m_session->windows(), count);
    QTest::mouseClick(m_session->tabs().tab(browserForms().first()->tabKey()), Qt::LeftButton);
    QTRY_VERIFY(read().contains(u"Page number 1"_s));
}

void tst_ScreenReader::profileIsReadWhileItLoads()
{
    openProfile(70);
    const auto readOn = [this] {
        read();
        return isLoaded();
    };
    QTRY_VERIFY_WITH_TIMEOUT(readOn(), 180'000);
    read();
}

void tst_ScreenReader::closedWindowsAreReadNoMore()
{
    m_session->start(url(u"/one"_s));
    m_session->frame->openBrowserWindow(url(u"/two"_s), WindowState::AsOthers);
    QTRY_VERIFY(read().contains(u"Second page"_s));
    m_session->active()->close();
    read();
    QTRY_VERIFY(!read().contains(u"Second page"_s));
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    m_session->choose("mnuFileCloseAll");
    read();
    QTRY_COMPARE(m_session->windows(), 0);
    read();
}

void tst_ScreenReader::crashedPageIsRead_data()
{
    QTest::addColumn<QString>("then");
    QTest::newRow("reload") << u"reload"_s;
    QTest::newRow("back") << u"back"_s;
    QTest::newRow("navigate") << u"navigate"_s;
    QTest::newRow("close") << u"close"_s;
}

void tst_ScreenReader::crashedPageIsRead()
{
    m_session->start(url(u"/one"_s));
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    m_session->frame->navigateActive(url(u"/two"_s));
    QTRY_VERIFY(read().contains(u"Second page"_s));
    auto *browser = qobject_cast<QtWebBrowser *>(m_session->active()->browser());
    ::kill(pid_t(browser->page()->renderProcessPid()), SIGKILL);
    // Later engines keep nodes for some moments after the tree that they ask for their parent, and
    // end the program when they are read there.
    constexpr bool isReadWhileItDies = QT_VERSION < QT_VERSION_CHECK(6, 8, 0);
    const auto readOn = [this, browser] {
        if (isReadWhileItDies)
            read();
        return browser->page()->renderProcessPid() == 0;
    };
    QTRY_VERIFY(readOn());
    read();
    for (int i = 0; i < 10; ++i) {
        QCoreApplication::processEvents();
        read();
    }
    QFETCH(QString, then);
    if (then == "reload"_L1)
        QTest::mouseClick(m_session->active()->findChild<QPushButton *>(u"cmdReload"_s),
                          Qt::LeftButton);
    else if (then == "back"_L1)
        m_session->choose("mnuNavigationBackwards");
    else if (then == "navigate"_L1)
        m_session->frame->navigateActive(url(u"/one"_s));
    else
        m_session->active()->close();
    if (then == "close"_L1) {
        QTRY_COMPARE(m_session->windows(), 0);
        read();
        return;
    }
    const QString expected = then == "reload"_L1 ? url(u"/two"_s) : url(u"/one"_s);
    QTRY_VERIFY(m_session->shows(expected));
    QTRY_VERIFY(read().contains(then == "reload"_L1 ? u"Second page"_s : u"two"_s));
    QTRY_VERIFY(isSeen());
    QTRY_VERIFY(!m_session->active()->findChild<QPushButton *>(u"cmdReload"_s));
    QCOMPARE(browser->historySteps().size(), then == "navigate"_L1 ? 2 : 1);
}

void tst_ScreenReader::fullScreenIsRead()
{
    m_session->server.page("/full",
                           "<title>-</title><p>Wide page</p><script>"
                           "onclick = () => document.documentElement.requestFullscreen();"
                           "document.onfullscreenchange = () => document.title ="
                           " document.fullscreenElement ? 'full' : 'not'</script>");
    m_session->start(url(u"/full"_s));
    QTRY_VERIFY(read().contains(u"Wide page"_s));
    const BrowserWindow *window = m_session->active();
    QWidget *view = page();
    const auto readUntil = [&](const QString &title) {
        read();
        if (view->window() != m_session->frame.get())
            m_reader->read(view->window());
        return window->windowTitle() == title;
    };
    // The engine drops what is done to a page before that is painted.
    const auto becomesFull = [&] {
        if (view->window() == m_session->frame.get())
            QTest::mouseClick(view, Qt::LeftButton, {}, view->rect().center());
        return readUntil(u"full"_s);
    };
    QTRY_VERIFY(becomesFull());
    QTRY_VERIFY(view->window() != m_session->frame.get());
    read();
    QTest::keyClick(view, Qt::Key_Escape);
    QTRY_VERIFY(readUntil(u"not"_s));
    QTRY_VERIFY(read().contains(u"Wide page"_s));
}

void tst_ScreenReader::popupsAreReadAsTheyComeAndGo()
{
    m_session->server.page("/pop", "<p>Popped up</p>");
    m_session->server.page("/opener",
                           "<title>-</title><script>onkeydown = () => open('/pop', 'pop',"
                           " 'width=300,height=200')</script>");
    m_session->start(url(u"/opener"_s));
    QTRY_VERIFY(m_session->shows(url(u"/opener"_s)));
    for (int i = 0; i < 3; ++i) {
        const auto opens = [this] {
            if (m_session->windows() == 1)
                QTest::keyClick(page(), Qt::Key_A);
            return m_session->windows() == 2;
        };
        QTRY_VERIFY(opens());
        QTRY_VERIFY(read().contains(u"Popped up"_s));
        m_session->active()->close();
        read();
        QTRY_COMPARE(m_session->windows(), 1);
        read();
    }
}

ORVANE_ENGINE_TEST_MAIN(tst_ScreenReader)
#include "tst_screenreader.moc"
