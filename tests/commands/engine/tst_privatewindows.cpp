#include "../Session.h"
#include "CertificateExceptions.h"
#include "ClosedWindows.h"
#include "CrashNotice.h"
#include "DownloadList.h"
#include "DripServer.h"
#include "EngineProfile.h"
#include "EngineTest.h"
#include "PageAsks.h"
#include "PageCertificates.h"
#include "PageHold.h"
#include "PrivateProfiles.h"
#include "Profiles.h"
#include "SitePermissions.h"
#include "WebPage.h"

#include <QWebEngineProfile>
#include <QWebEngineScriptCollection>
#include <QWebEngineView>

using namespace Qt::StringLiterals;

namespace {
QString logged;
QtMessageHandler before = nullptr;

void keepLog(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    logged += message + u'\n';
    before(type, context, message);
}
}

/// What private windows know, share and leave, in the whole program with the real engine.
class tst_PrivateWindows : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void cookiesAndStorageAreTheirOwn();
    void nextSessionBeginsEmpty();
    void profilesAreSetUpAlike();
    void windowsOfTheirsArePrivate();
    void goBackAndForward();
    void tabSaysSo();
    void closedOnesDoNotComeBack();
    void certificatesLetPassAreTheirOwn();
    void loginsAreTheirOwn();
    void keptYesDoesNotCount();
    void listOfDownloadsForgetsThem();
    void downloadOutlastsTheLastWindow();
    void sessionEndsWithAPageThatIsHeld();
    void lastCloseEndsAllThatIsOpen();
    void logDoesNotNameTheirSites();

private:
    QString url(const QString &path) const { return m_session->server.url(path); }
    /// Chooses the menu item, and goes there.
    BrowserWindow *openPrivate(const QString &path);
    static WebPage *pageOf(const BrowserWindow *window)
    {
        const auto *view = window->findChild<QWebEngineView *>();
        return view ? qobject_cast<WebPage *>(view->page()) : nullptr;
    }
    static bool isLoaded(const BrowserWindow *window, const QString &url)
    {
        return window && window->browser()->locationUrl() == url && !window->browser()->isBusy()
            && window->browser()->hasDocument();
    }
    static QVariant run(const BrowserWindow *window, const QString &script);
    QByteArray cookieSentTo(const QByteArray &path) const
    {
        return m_session->server.requests(path).last().headers.value("cookie");
    }
    static int privateProfiles() { return int(Profiles::all().size()) - 1; }

    std::unique_ptr<Session> m_session;
};

void tst_PrivateWindows::init()
{
    m_session = std::make_unique<Session>();
    m_session->server.page("/blank", "<title>Blank</title>");
    m_session->start(url(u"/home"_s));
    QTRY_VERIFY(m_session->shows(url(u"/home"_s)));
    QCOMPARE(privateProfiles(), 0);
}

void tst_PrivateWindows::cleanup()
{
    m_session->end();
    QTRY_COMPARE(privateProfiles(), 0);
    CertificateExceptions::instance().clear();
    ClosedWindows::clear();
    m_session.reset();
}

BrowserWindow *tst_PrivateWindows::openPrivate(const QString &path)
{
    m_session->choose("mnuFileNewPrivate");
    BrowserWindow *window = m_session->active();
    window->browser()->navigate(url(path));
    if (!QTest::qWaitFor([&] { return isLoaded(window, url(path)); }, patience))
        return nullptr;
    return window;
}

QVariant tst_PrivateWindows::run(const BrowserWindow *window, const QString &script)
{
    const auto result = std::make_shared<std::optional<QVariant>>();
    pageOf(window)->runJavaScript(script, [result](const QVariant &value) { *result = value; });
    if (!QTest::qWaitFor([&] { return result->has_value(); }))
        return u"no answer"_s;
    return **result;
}

void tst_PrivateWindows::cookiesAndStorageAreTheirOwn()
{
    const QString store =
        u"document.cookie = 'name=%1; max-age=9999'; localStorage.setItem('name', '%1'); 1"_s;
    const QString stored = u"document.cookie + ' ' + localStorage.getItem('name')"_s;
    run(m_session->active(), store.arg(u"ordinary"_s));
    const BrowserWindow *one = openPrivate(u"/one"_s);
    QVERIFY(one && one->isPrivate());
    QCOMPARE(run(one, stored).toString(), u" null"_s);
    QCOMPARE(cookieSentTo("/one"), QByteArray());
    run(one, store.arg(u"private"_s));
    const BrowserWindow *two = openPrivate(u"/two"_s);
    QVERIFY(two);
    QCOMPARE(cookieSentTo("/two"), QByteArray("name=private"));
    QCOMPARE(run(two, stored).toString(), u"name=private private"_s);
    m_session->choose("mnuFileNewHomePage");
    QVERIFY(!m_session->active()->isPrivate());
    QTRY_VERIFY(m_session->shows(url(u"/home"_s)));
    QCOMPARE(cookieSentTo("/home"), QByteArray("name=ordinary"));
    QCOMPARE(run(m_session->active(), stored).toString(), u"name=ordinary ordinary"_s);
}

void tst_PrivateWindows::nextSessionBeginsEmpty()
{
    BrowserWindow *one = openPrivate(u"/one"_s);
    QVERIFY(one);
    run(one, u"document.cookie = 'name=first; max-age=9999'; localStorage.a = 1"_s);
    BrowserWindow *two = openPrivate(u"/two"_s);
    QVERIFY(two);
    QCOMPARE(privateProfiles(), 1);
    one->close();
    run(two, u"1"_s);
    QCOMPARE(privateProfiles(), 1);
    two->close();
    QTRY_COMPARE(privateProfiles(), 0);
    const BrowserWindow *next = openPrivate(u"/one"_s);
    QVERIFY(next);
    QCOMPARE(cookieSentTo("/one"), QByteArray());
    QCOMPARE(run(next, u"document.cookie + localStorage.length"_s).toString(), u"0"_s);
    QVERIFY(pageOf(next)->profile()->isOffTheRecord());
}

void tst_PrivateWindows::profilesAreSetUpAlike()
{
    const BrowserWindow *window = openPrivate(u"/one"_s);
    QVERIFY(window);
    const QWebEngineProfile &own = *pageOf(window)->profile();
    const QWebEngineProfile &ordinary = *engineProfile();
    QVERIFY(&own != &ordinary);
    QVERIFY(own.isOffTheRecord());
    QCOMPARE(own.httpUserAgent(), ordinary.httpUserAgent());
    QCOMPARE(own.httpAcceptLanguage(), ordinary.httpAcceptLanguage());
    QCOMPARE(own.scripts()->count(), ordinary.scripts()->count());
    const auto sent = [this](const QByteArray &path) {
        QHash<QByteArray, QByteArray> headers = m_session->server.requests(path).last().headers;
        headers.remove("cookie");
        return headers;
    };
    m_session->choose("mnuFileNewBlankPage");
    m_session->active()->browser()->navigate(url(u"/two"_s));
    QTRY_VERIFY(m_session->shows(url(u"/two"_s)));
    QCOMPARE(sent("/one"), sent("/two"));
}

void tst_PrivateWindows::windowsOfTheirsArePrivate()
{
    m_session->server.page("/opens",
                           "<title>Opens</title><a id=a href='/two' target=_blank>two</a>");
    BrowserWindow *opener = openPrivate(u"/opens"_s);
    QVERIFY(opener);
    const auto isOnly = [](int windows) {
        QList<BrowserWindow *> all = browserForms();
        all.removeIf([](const BrowserWindow *each) { return !each->isPrivate(); });
        return all.size() == windows;
    };
    // A script's, which can reach it.
    run(opener, u"window.made = window.open('/one'); 1"_s);
    QTRY_VERIFY(isOnly(2) && isLoaded(browserForms().last(), url(u"/one"_s)));
    QCOMPARE(run(opener, u"made.document.title"_s).toString(), u"the quick brown fox"_s);
    QCOMPARE(pageOf(browserForms().last())->profile(), pageOf(opener)->profile());
    // A link's.
    run(opener, u"document.getElementById('a').click()"_s);
    QTRY_VERIFY(isOnly(3) && isLoaded(browserForms().last(), url(u"/two"_s)));
    // The menu's and the key's.
    m_session->choose("mnuFileNewCurrent");
    QTRY_VERIFY(isOnly(4));
    QTest::keyClick(m_session->active(), Qt::Key_N, Qt::ControlModifier);
    QTRY_VERIFY(isOnly(5));
    QCOMPARE(m_session->windows(), 6);
    QCOMPARE(privateProfiles(), 1);
}

void tst_PrivateWindows::goBackAndForward()
{
    const BrowserWindow *window = openPrivate(u"/one"_s);
    QVERIFY(window);
    window->browser()->navigate(url(u"/two"_s));
    QTRY_VERIFY(isLoaded(window, url(u"/two"_s)));
    QVERIFY(window->browser()->goBack());
    QTRY_VERIFY(isLoaded(window, url(u"/one"_s)));
    QVERIFY(window->browser()->goForward());
    QTRY_VERIFY(isLoaded(window, url(u"/two"_s)));
}

void tst_PrivateWindows::tabSaysSo()
{
    const BrowserWindow *window = openPrivate(u"/two"_s);
    QVERIFY(window);
    const QWidget *tab = m_session->tabs().tab(window->tabKey());
    QTRY_COMPARE(tab->accessibleName(), u"Two, private"_s);
    QTRY_COMPARE(m_session->address().text(), url(u"/two"_s));
}

void tst_PrivateWindows::closedOnesDoNotComeBack()
{
    BrowserWindow *window = openPrivate(u"/one"_s);
    QVERIFY(window);
    window->close();
    QVERIFY(ClosedWindows::isEmpty());
    QTRY_COMPARE(m_session->windows(), 1);
}

void tst_PrivateWindows::certificatesLetPassAreTheirOwn()
{
    TestServer server(TestServer::Kind::Https);
    server.page("/secure", "<title>Secure</title>");
    const QString secure = server.url(u"/secure"_s);
    m_session->choose("mnuFileNewPrivate");
    const BrowserWindow *window = m_session->active();
    window->browser()->navigate(secure);
    const auto goOn = [](const BrowserWindow *in) {
        auto *button = in->findChild<QAbstractButton *>(u"cmdGoOn"_s);
        return button && button->isEnabled() ? button : nullptr;
    };
    QTRY_VERIFY(goOn(window));
    goOn(window)->click();
    QTRY_VERIFY(isLoaded(window, secure) && window->windowTitle() == u"Secure"_s);
    QVERIFY(!pageOf(window)->certificates().exceptions().isEmpty());
    QVERIFY(CertificateExceptions::instance().isEmpty());
    m_session->choose("mnuFileNewBlankPage");
    const BrowserWindow *ordinary = m_session->active();
    QVERIFY(ordinary != window);
    ordinary->browser()->navigate(secure);
    QTRY_VERIFY(ordinary->findChild<QAbstractButton *>(u"cmdGoOn"_s));
    QCOMPARE(server.count("/secure"), 1);
}

void tst_PrivateWindows::loginsAreTheirOwn()
{
    const QByteArray known = "Basic " + QByteArray("me:secret").toBase64();
    m_session->server.handle("/inside", [known](const TestServer::Request &request) {
        TestServer::Reply reply;
        if (request.headers.value("authorization") == known) {
            reply.body = "<title>Inside</title>";
        } else {
            reply.status = 401;
            reply.body = "<title>Outside</title>";
            reply.headers = {{"WWW-Authenticate", "Basic realm=\"private\""}};
        }
        return reply;
    });
    BrowserWindow *window = openPrivate(u"/inside"_s);
    QVERIFY(window);
    QTRY_VERIFY(PageAsks::shownIn(window));
    const PageQuestionBox *box = PageAsks::shownIn(window);
    box->findChild<QLineEdit *>(u"txtUser"_s)->setText(u"me"_s);
    box->findChild<QLineEdit *>(u"txtPassword"_s)->setText(u"secret"_s);
    // Nothing is kept of it, so nobody is asked whether to.
    QVERIFY(box->findChildren<QCheckBox *>(u"chkKeep"_s).isEmpty());
    PageAsks::press(PageAsks::yes(box));
    QTRY_COMPARE(window->windowTitle(), u"Inside"_s);
    m_session->choose("mnuFileNewBlankPage");
    const BrowserWindow *ordinary = m_session->active();
    ordinary->browser()->navigate(url(u"/inside"_s));
    QTRY_VERIFY(PageAsks::shownIn(ordinary));
    window->close();
    QTRY_COMPARE(privateProfiles(), 0);
    const BrowserWindow *next = openPrivate(u"/inside"_s);
    QVERIFY(next);
    QTRY_VERIFY(PageAsks::shownIn(next));
}

void tst_PrivateWindows::keptYesDoesNotCount()
{
    const QUrl site(url({}));
    const AskingSite asker = AskingSite::of(site, site);
    QVERIFY(SitePermissions::keep(asker, {Permission::Place}, SitePermissions::Word::Allow));
    const QByteArray kept = m_session->folder.read(u"AppData/Permissions.ini"_s);
    BrowserWindow *window = openPrivate(u"/one"_s);
    QVERIFY(window);
    const QString ask = u"navigator.geolocation.getCurrentPosition(() => {}, () => {}); 1"_s;
    run(window, ask);
    QTRY_VERIFY(PageAsks::shownIn(window));
    const PageQuestionBox *box = PageAsks::shownIn(window);
    const auto *remember = box->findChild<QCheckBox *>(u"chkRemember"_s);
    QVERIFY(!remember || !remember->isVisible());
    PageAsks::press(PageAsks::no(box));
    QTRY_VERIFY(!PageAsks::shownIn(window));
    // Notifications go to another program, which may keep them: nobody is asked.
    QCOMPARE(run(window, u"Notification.requestPermission(); Notification.permission"_s).toString(),
             run(window, u"Notification.permission"_s).toString());
    QVERIFY(!PageAsks::shownIn(window));
    QCOMPARE(m_session->folder.read(u"AppData/Permissions.ini"_s), kept);
    QVERIFY(SitePermissions::keep(asker, {Permission::Place}, SitePermissions::Word::Refuse));
    window->browser()->refresh();
    QTRY_COMPARE(m_session->server.count("/one"), 2);
    QTRY_VERIFY(isLoaded(window, url(u"/one"_s)));
    run(window,
        u"window.told = 0; navigator.geolocation.getCurrentPosition(() => {},"
        u" e => { window.told = e.code }); 1"_s);
    QTRY_COMPARE(run(window, u"window.told"_s).toInt(), 1);
    QVERIFY(!PageAsks::shownIn(window));
}

void tst_PrivateWindows::listOfDownloadsForgetsThem()
{
    TestServer::Reply reply;
    reply.body = "contents";
    reply.type = "application/octet-stream";
    reply.headers = {{"Content-Disposition", "attachment; filename=mine.bin"}};
    m_session->server.reply("/mine.bin", reply);
    BrowserWindow *window = openPrivate(u"/one"_s);
    QVERIFY(window);
    window->browser()->navigate(url(u"/mine.bin"_s));
    QTRY_COMPARE(downloadList().all().size(), 1);
    QTRY_COMPARE(downloadList().all().first().state, Download::State::Done);
    const Download entry = downloadList().all().first();
    QVERIFY(entry.isPrivate() && !entry.leavesTrace && entry.page.isEmpty());
    window->close();
    QTRY_COMPARE(downloadList().all().size(), 0);
    QTRY_COMPARE(privateProfiles(), 0);
    QFile file(entry.path());
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("contents"));
    QVERIFY(file.remove());
}

void tst_PrivateWindows::downloadOutlastsTheLastWindow()
{
    DripServer slow(QByteArray(200'000, 'x'));
    BrowserWindow *window = openPrivate(u"/one"_s);
    QVERIFY(window);
    window->browser()->navigate(slow.url(u"slow.bin"_s));
    QTRY_COMPARE(slow.waiting(), 1);
    QTRY_COMPARE(downloadList().all().size(), 1);
    const QString path = downloadList().all().first().path();
    window->close();
    QTRY_COMPARE(m_session->windows(), 1);
    // Another session has nothing to do with it.
    BrowserWindow *next = openPrivate(u"/two"_s);
    QVERIFY(next);
    QCOMPARE(privateProfiles(), 2);
    QCOMPARE(downloadList().all().first().state, Download::State::Running);
    slow.finish();
    QTRY_COMPARE(QFileInfo(path).size(), 200'000);
    QTRY_COMPARE(downloadList().all().size(), 0);
    QTRY_COMPARE(privateProfiles(), 1);
    QCOMPARE(run(next, u"document.title"_s).toString(), u"Two"_s);
    QVERIFY(QFile::remove(path));
}

/// As one that is being printed, or whose script waits for an answer.
void tst_PrivateWindows::sessionEndsWithAPageThatIsHeld()
{
    BrowserWindow *window = openPrivate(u"/one"_s);
    QVERIFY(window);
    auto hold = std::make_unique<PageHold>(pageOf(window), PageHold::AtExit::GoesWithPage);
    window->close();
    QTRY_COMPARE(m_session->windows(), 1);
    const BrowserWindow *next = openPrivate(u"/two"_s);
    QVERIFY(next);
    QCOMPARE(privateProfiles(), 2);
    hold.reset();
    QTRY_COMPARE(privateProfiles(), 1);
    QCOMPARE(run(next, u"document.title"_s).toString(), u"Two"_s);
}

/// Its question, its tools and a preview of it among them.
void tst_PrivateWindows::lastCloseEndsAllThatIsOpen()
{
    logged.clear();
    before = qInstallMessageHandler(keepLog);
    BrowserWindow *window = openPrivate(u"/one"_s);
    QVERIFY(window);
    m_session->choose("mnuFilePrintPreview");
    QTRY_COMPARE(Forms::named("frmPrintPreview").size(), 1);
    m_session->choose("mnuToolsDeveloper");
    QTRY_VERIFY(m_session->frame->activeChild() != window);
    window->mdiArea()->setActiveSubWindow(window);
    run(window, u"navigator.geolocation.getCurrentPosition(() => {}, () => {}); 1"_s);
    QTRY_VERIFY(PageAsks::shownIn(window));
    window->close();
    QTRY_COMPARE(m_session->windows(), 1);
    for (QWidget *preview : Forms::named("frmPrintPreview"))
        preview->close();
    QTRY_COMPARE(privateProfiles(), 0);
    qInstallMessageHandler(before);
    QVERIFY2(!logged.contains(u"profile"_s), qPrintable(logged));
}

/// Also not of a page that does not answer, and that its user ends.
void tst_PrivateWindows::logDoesNotNameTheirSites()
{
    m_session->choose("mnuFileNewPrivate");
    BrowserWindow *window = m_session->active();
    const QString there = m_session->server.url(u"/one"_s, u"hidden-walnut.localhost"_s);
    window->browser()->navigate(there);
    QTRY_VERIFY(isLoaded(window, there));
    logged.clear();
    QLoggingCategory::setFilterRules(u"orvane.*=true"_s);
    before = qInstallMessageHandler(keepLog);
    pageOf(window)->runJavaScript(u"setTimeout(() => { for (;;); }, 0)"_s);
    QTRY_VERIFY(PageAsks::shownIn(window));
    PageAsks::press(PageAsks::yes(PageAsks::shownIn(window)));
    const auto isEnded = [window] {
        const auto *notice = window->findChild<CrashNotice *>();
        return notice && notice->isVisible();
    };
    QTRY_VERIFY(isEnded());
    qInstallMessageHandler(before);
    QLoggingCategory::setFilterRules({});
    QVERIFY2(logged.contains(u"(private)"_s), qPrintable(logged));
    QVERIFY2(!logged.contains(u"walnut"_s), qPrintable(logged));
}

ORVANE_ENGINE_TEST_MAIN(tst_PrivateWindows)
#include "tst_privatewindows.moc"
