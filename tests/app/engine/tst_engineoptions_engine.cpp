// What the user chose for the engine, as pages and servers see it, and the data it keeps.
#include "../Session.h"
#include "CookieFile.h"
#include "CookieList.h"
#include "EngineData.h"
#include "EngineOptions.h"
#include "EngineProfile.h"
#include "EngineTest.h"
#include "QtWebBrowser.h"
#include "WebPage.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDirIterator>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QNetworkProxy>
#include <QPushButton>
#include <QSpinBox>
#include <QTcpServer>
#include <QTreeWidget>
#include <QWebEngineProfile>
#include <QWebEngineScript>

using namespace Qt::StringLiterals;

class tst_engineoptions_engine : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { qputenv("PATH", "/nowhere"); }
    void init();
    void cleanup();
    void engineAsItComes();
    void startOptionsReachTheServer();
    void scriptsOffAtTheStart();
    void scriptsAreSwitchedOnOpenPages();
    void windowsSourceAndErrorPageWithoutScripts();
    void imagesOff();
    void fontsAndSizesOfOpenPages();
    void pdfIsShownOrDownloaded();
    void downloadsGoToTheFolder();
    void folderThatCannotBeMadeGivesTheDesktops();
    void thirdPartyCookies();
    void proxyIsUsedAndLeft();
    void proxyFromTheStart();
    void deadProxyIsHarmless_data();
    void deadProxyIsHarmless();
    void cookiesAreListedAndDeleted();
    void cookiesOfAnEarlierSessionAreListed();
    void allCookiesAreDeleted();
    void cacheIsMeasuredAndCleared();
    void clearingTheCacheLeavesLoadsAlone();
    void visitedLinksAreCleared();
    void rubbishInTheFile();

private:
    /// Starts the program with options, on the server's home page.
    void start(const EngineOptions &options = {});
    /// Ends program and engine; the folders stay.
    void stop();
    static QWidget *form() { return Forms::named("frmInternetOptions").value(0); }
    template <typename Control> static Control *find(const char *name)
    {
        return form()->findChild<Control *>(QLatin1String(name));
    }
    static void press(const char *name)
    {
        QTest::mouseClick(find<QPushButton>(name), Qt::LeftButton);
    }
    void openGeneral() const { m_session->choose("mnuToolsInternetOptions"); }
    void openAdvanced() const { m_session->choose("mnuToolsAdvancedInternetOptions"); }
    static void save()
    {
        press("cmdSave");
        QTRY_VERIFY(!form());
    }
    QString url(const QString &path) const { return m_session->server.url(path); }
    void go(const QString &address) const;
    WebPage *page() const
    {
        return qobject_cast<QtWebBrowser *>(m_session->active()->brwWebBrowser())->page();
    }
    /// What `code` gives in a world of the program's own, with scripts switched off too.
    QString script(const QString &code) const;
    QByteArray header(const char *name) const
    {
        return m_session->server.requests("/one").value(0).headers.value(name);
    }
    static QStringList cookieNames();
    static QStringList listedCookies();

    std::unique_ptr<Session> m_session;
};

void tst_engineoptions_engine::init()
{
    m_session = std::make_unique<Session>();
    QVERIFY(m_session->folder.isValid() && m_session->server.isListening());
}

void tst_engineoptions_engine::cleanup()
{
    stop();
    m_session.reset();
}

void tst_engineoptions_engine::start(const EngineOptions &options)
{
    if (options != EngineOptions())
        QVERIFY(options.write());
    m_session->start();
    QTRY_VERIFY(m_session->shows(url(u"/home"_s)));
}

void tst_engineoptions_engine::stop()
{
    m_session->end();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    dropEngineProfile();
    QNetworkProxyFactory::setUseSystemConfiguration(true);
}

void tst_engineoptions_engine::go(const QString &address) const
{
    m_session->frame->NavigateActive(address);
    QTRY_VERIFY2(m_session->shows(address), qPrintable(address));
}

QString tst_engineoptions_engine::script(const QString &code) const
{
    // An answer may come when nobody waits for it any more.
    auto result = std::make_shared<std::optional<QString>>();
    page()->runJavaScript(code, QWebEngineScript::ApplicationWorld,
                          [result](const QVariant &value) { *result = value.toString(); });
    [&] { QTRY_VERIFY(*result); }();
    return result->value_or(QString());
}

QStringList tst_engineoptions_engine::cookieNames()
{
    QStringList names;
    for (const StoredCookie &cookie : engineCookies()->cookies())
        names.append(QString::fromUtf8(cookie.name));
    names.sort();
    return names;
}

/// "site/name" as the dialog has them.
QStringList tst_engineoptions_engine::listedCookies()
{
    QStringList result;
    const auto *tree = find<QTreeWidget>("lstCookies");
    for (int index = 0; index < tree->topLevelItemCount(); ++index) {
        const QTreeWidgetItem &site = *tree->topLevelItem(index);
        for (int child = 0; child < site.childCount(); ++child)
            result.append(site.text(0) + u'/' + site.child(child)->text(0));
    }
    return result;
}

void tst_engineoptions_engine::engineAsItComes()
{
    QVERIFY(QNetworkProxyFactory::usesSystemConfiguration());
    start();
    QVERIFY(QNetworkProxyFactory::usesSystemConfiguration());
    go(url(u"/one"_s));
    QVERIFY(header("user-agent").startsWith("Mozilla/5.0"));
    QCOMPARE(header("accept-language"), QByteArray());
    QCOMPARE(engineProfile()->httpCacheMaximumSize(), 0);
    QVERIFY2(!m_session->folder.exists(u"AppData/Engine.ini"_s), "nothing was written");
}

void tst_engineoptions_engine::startOptionsReachTheServer()
{
    EngineOptions options;
    options.languages = u"de-AT, de,en"_s;
    options.userAgent = u"Mine/1.0 (test)"_s;
    options.cacheLimit = 30;
    start(options);
    go(url(u"/one"_s));
    QCOMPARE(header("accept-language"), "de-AT,de;q=0.9,en;q=0.8");
    QCOMPARE(header("user-agent"), "Mine/1.0 (test)");
    QCOMPARE(engineProfile()->httpCacheMaximumSize(), 30 * 1024 * 1024);
    QCOMPARE(script(u"navigator.languages.join()"_s), u"de-AT,de,en"_s);
}

void tst_engineoptions_engine::scriptsOffAtTheStart()
{
    m_session->server.page("/s",
                           "<title>still</title><script>document.title = 'ran'</script>"
                           "<noscript><p id=no>no</noscript>");
    EngineOptions options;
    options.scripts = false;
    start(options);
    go(url(u"/s"_s));
    QCOMPARE(script(u"document.title + !!document.getElementById('no')"_s), u"stilltrue"_s);
}

void tst_engineoptions_engine::scriptsAreSwitchedOnOpenPages()
{
    m_session->server.page("/count",
                           "<title>c</title><body data-n=0><script>setInterval("
                           "() => document.body.dataset.n = +document.body.dataset.n + 1, 5)"
                           "</script>");
    start();
    go(url(u"/count"_s));
    const auto count = [this] { return script(u"document.body.dataset.n"_s).toInt(); };
    QTRY_VERIFY(count() > 2);
    openAdvanced();
    find<QCheckBox>("chkScripts")->setChecked(false);
    save();
    int last = -1;
    QTRY_VERIFY(std::exchange(last, count()) == count());
    openAdvanced();
    find<QCheckBox>("chkScripts")->setChecked(true);
    save();
    go(url(u"/count"_s));
    QTRY_VERIFY(count() > 2);
}

void tst_engineoptions_engine::windowsSourceAndErrorPageWithoutScripts()
{
    m_session->server.page("/link", "<title>link</title><a id=a href=/two target=_blank>two</a>");
    EngineOptions options;
    options.scripts = false;
    start(options);
    go(url(u"/link"_s));
    script(u"document.getElementById('a').click()"_s);
    QTRY_COMPARE(m_session->windows(), 2);
    QTRY_COMPARE(browserForms().last()->brwWebBrowser()->LocationURL(), url(u"/two"_s));
    QTRY_VERIFY(browserForms().last()->brwWebBrowser()->HasDocument());
    QString markup;
    browserForms().last()->brwWebBrowser()->OuterHTML(
        [&markup](const QString &text) { markup = text; });
    QTRY_VERIFY(markup.contains("Second page"_L1));

    QTcpServer closed;
    QVERIFY(closed.listen(QHostAddress::LocalHost));
    const QString dead = "http://127.0.0.1:"_L1 + QString::number(closed.serverPort()) + u'/';
    closed.close();
    m_session->frame->NavigateActive(dead);
    QTRY_COMPARE(script(u"document.querySelectorAll('#tryAgain').length"_s), u"1"_s);
    QVERIFY(closed.listen(QHostAddress::LocalHost, quint16(QUrl(dead).port())));
    script(u"document.getElementById('tryAgain').click()"_s);
    QTRY_VERIFY2(closed.hasPendingConnections(), "the button of the error page works");
}

void tst_engineoptions_engine::imagesOff()
{
    const QByteArray image = "<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'></svg>";
    m_session->server.file("/i.svg", image, "image/svg+xml");
    m_session->server.page("/p", "<title>p</title><img src=/i.svg>");
    EngineOptions options;
    options.images = false;
    start(options);
    go(url(u"/p"_s));
    go(url(u"/one"_s));
    QCOMPARE(m_session->server.count("/i.svg"), 0);
    go(url(u"/p"_s));
    openAdvanced();
    find<QCheckBox>("chkImages")->setChecked(true);
    save();
    QTRY_COMPARE(m_session->server.count("/i.svg"), 1);
}

void tst_engineoptions_engine::fontsAndSizesOfOpenPages()
{
    m_session->server.page("/text",
                           "<title>t</title><p id=p>text</p><code id=c>code</code>"
                           "<p id=s style='font-size:3px'>small</p><span id=w>iiiiiiiiii</span>");
    start();
    go(url(u"/text"_s));
    const auto size = [this](const char *id) {
        return script(u"parseFloat(getComputedStyle(document.getElementById('%1')).fontSize)"_s.arg(
            QLatin1String(id)));
    };
    const auto width = [this] {
        return script(u"document.getElementById('w').getBoundingClientRect().width"_s).toDouble();
    };
    QCOMPARE(size("p"), u"16"_s);
    QCOMPARE(size("c"), u"13"_s);
    QCOMPARE(size("s"), u"3"_s);
    const double narrow = width();
    openAdvanced();
    find<QSpinBox>("txtMinimumSize")->setValue(15);
    auto *standard = find<QComboBox>("cboStandardFont");
    standard->setCurrentText(u"DejaVu Sans Mono"_s);
    QVERIFY(standard->currentIndex() > 0);
    save();
    // The computed size stays what the page says; what is drawn has the least size.
    QTRY_VERIFY(width() > narrow * 1.3);
    const auto height = [this] {
        return script(u"document.getElementById('s').getBoundingClientRect().height"_s).toDouble();
    };
    QTRY_VERIFY(height() >= 15);
    openAdvanced();
    find<QSpinBox>("txtFontSize")->setValue(30);
    find<QSpinBox>("txtFixedFontSize")->setValue(25);
    find<QSpinBox>("txtMinimumSize")->setValue(0);
    find<QComboBox>("cboStandardFont")->setCurrentIndex(0);
    save();
    QTRY_COMPARE(size("p"), u"30"_s);
    QTRY_COMPARE(size("c"), u"25"_s);
    QTRY_VERIFY(height() < 15);
}

static const QByteArray pdf =
    "%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj 2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1"
    ">>endobj 3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 99 99]>>endobj\ntrailer<</Root 1 0 R>>";

void tst_engineoptions_engine::pdfIsShownOrDownloaded()
{
    m_session->server.file("/shown.pdf", pdf, "application/pdf");
    m_session->server.file("/kept.pdf", pdf, "application/pdf");
    const QString folder = m_session->folder.file(u"down"_s);
    EngineOptions options;
    options.downloadFolder = folder;
    start(options);
    go(url(u"/shown.pdf"_s));
    QVERIFY(!QFile::exists(folder + "/shown.pdf"_L1));
    openAdvanced();
    find<QCheckBox>("chkPdf")->setChecked(false);
    save();
    m_session->frame->NavigateActive(url(u"/kept.pdf"_s));
    QTRY_VERIFY(QFile::exists(folder + "/kept.pdf"_L1));
}

void tst_engineoptions_engine::downloadsGoToTheFolder()
{
    TestServer::Reply file;
    file.type = "application/octet-stream";
    file.body = "bytes";
    m_session->server.reply("/file.bin", file);
    start();
    openAdvanced();
    const QString folder = m_session->folder.file(u"a/new folder"_s);
    find<QLineEdit>("txtDownloads")->setText(folder);
    save();
    m_session->frame->NavigateActive(url(u"/file.bin"_s));
    QTRY_COMPARE(m_session->folder.read(u"a/new folder/file.bin"_s), "bytes");
}

void tst_engineoptions_engine::folderThatCannotBeMadeGivesTheDesktops()
{
    TestServer::Reply file;
    file.type = "application/octet-stream";
    file.body = "bytes";
    m_session->server.reply("/other.bin", file);
    QVERIFY(m_session->folder.write(u"in-the-way"_s, "x"));
    EngineOptions options;
    options.downloadFolder = m_session->folder.file(u"in-the-way"_s);
    start(options);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(u"^cannot download to"_s));
    m_session->frame->NavigateActive(url(u"/other.bin"_s));
    const QString there =
        QStandardPaths::writableLocation(QStandardPaths::DownloadLocation) + "/other.bin"_L1;
    QTRY_VERIFY(QFile::exists(there));
    QVERIFY(QFile::remove(there));
}

/// A secure page: only there does a cookie go to another site at all.
void tst_engineoptions_engine::thirdPartyCookies()
{
    m_session->server.handle("/frame", [](const TestServer::Request &) {
        TestServer::Reply reply;
        reply.body = "<title>f</title><script>try { localStorage.setItem('a', '1');"
                     " parent.postMessage('stored', '*') } catch (e) {"
                     " parent.postMessage('refused', '*') }</script>";
        return reply;
    });
    const QString other = m_session->server.url(u"/frame"_s, u"localhost"_s);
    m_session->server.page("/outer",
                           "<title>wait</title><script>onmessage = e => document.title = e.data"
                           "</script><iframe src='"
                               + other.toUtf8() + "'></iframe>");
    start();
    go(url(u"/outer"_s));
    QTRY_COMPARE(script(u"document.title"_s), u"refused"_s);
    openGeneral();
    find<QCheckBox>("chkThirdParty")->setChecked(false);
    save();
    go(url(u"/one"_s));
    go(url(u"/outer"_s));
    QTRY_COMPARE(script(u"document.title"_s), u"stored"_s);
    openGeneral();
    QVERIFY(!find<QCheckBox>("chkThirdParty")->isChecked());
    find<QCheckBox>("chkThirdParty")->setChecked(true);
    save();
    go(url(u"/one"_s));
    go(url(u"/outer"_s));
    QTRY_COMPARE(script(u"document.title"_s), u"refused"_s);
}

void tst_engineoptions_engine::proxyIsUsedAndLeft()
{
    TestServer proxy;
    proxy.page("http://some.test/a", "<title>through</title>");
    start();
    openAdvanced();
    find<QComboBox>("cboProxy")->setCurrentIndex(2);
    find<QLineEdit>("txtProxyHost")->setText(u"127.0.0.1"_s);
    find<QSpinBox>("txtProxyPort")->setValue(proxy.port());
    save();
    // What is on this machine is never asked of a proxy.
    go(url(u"/one"_s));
    QCOMPARE(proxy.requests().size(), 0);
    go(u"http://some.test/a"_s);
    QTRY_COMPARE(script(u"document.title"_s), u"through"_s);
    QCOMPARE(proxy.count("http://some.test/a"), 1);
    openAdvanced();
    find<QComboBox>("cboProxy")->setCurrentIndex(1);
    save();
    proxy.forgetRequests();
    m_session->frame->NavigateActive(u"http://some.test/b"_s);
    QTRY_COMPARE(script(u"document.querySelectorAll('#tryAgain').length"_s), u"1"_s);
    QCOMPARE(proxy.count("http://some.test/b"), 0);
}

void tst_engineoptions_engine::proxyFromTheStart()
{
    TestServer proxy;
    proxy.page("http://some.test/a", "<title>through</title>");
    EngineOptions options;
    options.proxy = EngineOptions::Proxy::Http;
    options.proxyHost = u"127.0.0.1"_s;
    options.proxyPort = proxy.port();
    start(options);
    go(u"http://some.test/a"_s);
    QCOMPARE(proxy.count("http://some.test/a"), 1);
}

void tst_engineoptions_engine::deadProxyIsHarmless_data()
{
    QTest::addColumn<bool>("silent");
    QTest::newRow("refuses the connection") << false;
    QTest::newRow("takes it and says nothing") << true;
}

void tst_engineoptions_engine::deadProxyIsHarmless()
{
    QFETCH(bool, silent);
    QTcpServer dead;
    QVERIFY(dead.listen(QHostAddress::LocalHost));
    TestServer living;
    living.page("http://some.test/again", "<title>again</title>");
    EngineOptions options;
    options.proxy = EngineOptions::Proxy::Http;
    options.proxyHost = u"127.0.0.1"_s;
    options.proxyPort = dead.serverPort();
    if (!silent)
        dead.close();
    start(options);
    m_session->frame->NavigateActive(u"http://some.test/x"_s);
    if (silent) {
        QTRY_VERIFY(dead.hasPendingConnections());
        QVERIFY(m_session->active()->brwWebBrowser()->Busy());
        m_session->choose("mnuNavigationStop");
    }
    QTRY_VERIFY(!m_session->active()->brwWebBrowser()->Busy());
    // The frame goes on: windows, local pages, the dialog.
    go(url(u"/one"_s));
    openAdvanced();
    find<QSpinBox>("txtProxyPort")->setValue(living.port());
    save();
    go(url(u"/two"_s));
    go(u"http://some.test/again"_s);
    QTRY_COMPARE(script(u"document.title"_s), u"again"_s);
}

static TestServer::Reply withCookies()
{
    TestServer::Reply reply;
    reply.body = "<title>c</title>";
    reply.headers = {{"Set-Cookie", "session=1"},
                     {"Set-Cookie", "lasting=1; Max-Age=100000"},
                     {"Set-Cookie", "deep=1; Path=/deep"}};
    return reply;
}

void tst_engineoptions_engine::cookiesAreListedAndDeleted()
{
    m_session->server.reply("/c", withCookies());
    start();
    go(url(u"/c"_s));
    openGeneral();
    QTRY_COMPARE(
        listedCookies(),
        QStringList({u"127.0.0.1/deep"_s, u"127.0.0.1/lasting"_s, u"127.0.0.1/session"_s}));
    auto *tree = find<QTreeWidget>("lstCookies");
    tree->expandAll();
    tree->setCurrentItem(tree->topLevelItem(0)->child(1));
    press("cmdDeleteCookies");
    QTRY_COMPARE(listedCookies(), QStringList({u"127.0.0.1/deep"_s, u"127.0.0.1/session"_s}));
    form()->close();
    go(url(u"/one"_s));
    QCOMPARE(header("cookie"), "session=1");
}

void tst_engineoptions_engine::cookiesOfAnEarlierSessionAreListed()
{
    m_session->server.reply("/c", withCookies());
    start();
    go(url(u"/c"_s));
    QTRY_COMPARE(cookieNames(), QStringList({u"deep"_s, u"lasting"_s, u"session"_s}));
    const QString file = engineProfile()->persistentStoragePath() + "/Cookies"_L1;
    stop();
    // The engine writes them as its profile ends.
    QTRY_VERIFY(!readCookieFile(file).isEmpty());
    start();
    openGeneral();
    QTRY_COMPARE(listedCookies(), QStringList(u"127.0.0.1/lasting"_s));
    auto *tree = find<QTreeWidget>("lstCookies");
    tree->setCurrentItem(tree->topLevelItem(0));
    press("cmdDeleteCookies");
    QTRY_COMPARE(listedCookies(), QStringList());
    form()->close();
    m_session->server.forgetRequests();
    go(url(u"/one"_s));
    QVERIFY(!header("cookie").contains("lasting"));
}

void tst_engineoptions_engine::allCookiesAreDeleted()
{
    m_session->server.reply("/c", withCookies());
    start();
    go(url(u"/c"_s));
    go(m_session->server.url(u"/c"_s, u"localhost"_s));
    openGeneral();
    QTRY_COMPARE(listedCookies().size(), 6);
    press("cmdDeleteAllCookies");
    QTRY_VERIFY(form()->findChild<QMessageBox *>());
    QTest::mouseClick(form()->findChild<QMessageBox *>()->button(QMessageBox::Yes), Qt::LeftButton);
    QTRY_VERIFY(listedCookies().isEmpty());
    form()->close();
    go(url(u"/one"_s));
    QCOMPARE(header("cookie"), QByteArray());
}

static TestServer::Reply cached(const QByteArray &body)
{
    TestServer::Reply reply;
    reply.body = body;
    reply.headers = {{"Cache-Control", "max-age=3600"}};
    return reply;
}

void tst_engineoptions_engine::cacheIsMeasuredAndCleared()
{
    m_session->server.reply("/big", cached("<title>big</title>" + QByteArray(300'000, 'x')));
    start();
    go(url(u"/big"_s));
    go(url(u"/one"_s));
    go(url(u"/big"_s));
    QCOMPARE(m_session->server.count("/big"), 1);
    openGeneral();
    QTRY_VERIFY(find<QLabel>("lblCacheUsed")->text().startsWith("In use: 29"_L1)
                || find<QLabel>("lblCacheUsed")->text().startsWith("In use: 3"_L1));
    press("cmdClearCache");
    QTRY_VERIFY2(find<QLabel>("lblCacheUsed")->text().endsWith("bytes"_L1),
                 qPrintable(find<QLabel>("lblCacheUsed")->text()));
    form()->close();
    go(url(u"/one"_s));
    go(url(u"/big"_s));
    QCOMPARE(m_session->server.count("/big"), 2);
    go(url(u"/one"_s));
    go(url(u"/big"_s));
    QCOMPARE(m_session->server.count("/big"), 2);
}

void tst_engineoptions_engine::clearingTheCacheLeavesLoadsAlone()
{
    m_session->server.reply("/c", withCookies());
    m_session->server.reply("/kept", cached("<title>k</title>"));
    TestServer::Reply stalled;
    stalled.stallAfterHeaders = true;
    m_session->server.reply("/stalled", stalled);
    m_session->server.page("/now", "now");
    start();
    go(url(u"/kept"_s));
    go(url(u"/c"_s));
    script(
        u"fetch('/stalled').then(r => r.text()).then(() => 0, () => document.title = 'lost'); 0"_s);
    QTRY_COMPARE(m_session->server.count("/stalled"), 1);
    openGeneral();
    press("cmdClearCache");
    QTRY_VERIFY(find<QLabel>("lblCacheUsed")->text().endsWith("bytes"_L1));
    form()->close();
    script(
        u"fetch('/now').then(r => document.title += ' now', () => document.title = 'lost'); 0"_s);
    QTRY_COMPARE(script(u"document.title"_s), u"c now"_s);
    QVERIFY2(
        m_session->server.requests("/now").value(0).headers.value("cookie").contains("session"),
        "cookies of the session stay");
}

void tst_engineoptions_engine::visitedLinksAreCleared()
{
    start();
    go(url(u"/one"_s));
    QTRY_VERIFY(engineProfile()->visitedLinksContainsUrl(QUrl(url(u"/one"_s))));
    openGeneral();
    press("cmdClearLinks");
    QTRY_VERIFY(!engineProfile()->visitedLinksContainsUrl(QUrl(url(u"/one"_s))));
}

void tst_engineoptions_engine::rubbishInTheFile()
{
    QByteArray bytes = "[Engine]\r\n";
    for (const char *key : {"CacheLimit", "Scripts", "Images", "Proxy", "ProxyHost", "Languages",
                            "UserAgent", "FontSize", "DownloadFolder", "HardwareRendering"}) {
        bytes += QByteArray(key) + "=\x01\xfe rubbish\r\n";
        QTest::ignoreMessage(
            QtWarningMsg,
            QRegularExpression(u"^Engine.ini: %1 cannot be"_s.arg(QLatin1String(key))));
    }
    QVERIFY(m_session->folder.write(u"AppData/Engine.ini"_s, bytes));
    start();
    go(url(u"/one"_s));
    QVERIFY(header("user-agent").startsWith("Mozilla/5.0"));
}

ORVANE_ENGINE_TEST_MAIN(tst_engineoptions_engine)
#include "tst_engineoptions_engine.moc"
