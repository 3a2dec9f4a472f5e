// What the user chose for the engine, as pages and servers see it.
#include "../EngineSession.h"
#include "DesktopLanguages.h"
#include "EngineTest.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSpinBox>
#include <QTcpServer>
#include <QWebEngineProfile>

using namespace Qt::StringLiterals;

class tst_engineoptions_engine : public QObject, private EngineSession {
    Q_OBJECT

private slots:
    void init() { begin(); }
    void cleanup() { finish(); }
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
    void rubbishInTheFile();
};

void tst_engineoptions_engine::engineAsItComes()
{
    QVERIFY(QNetworkProxyFactory::usesSystemConfiguration());
    start();
    QVERIFY(QNetworkProxyFactory::usesSystemConfiguration());
    go(url(u"/one"_s));
    QVERIFY(header("user-agent").startsWith("Mozilla/5.0"));
    const QStringList languages = DesktopLanguages::list().split(u',');
    QVERIFY(languages.size() >= 2);
    const QByteArray asked = header("accept-language");
    QVERIFY2(asked.startsWith((languages[0] + u',' + languages[1] + u";q=0.9"_s).toLatin1()),
             asked);
    QCOMPARE(script(u"navigator.languages.join()"_s), languages.join(u','));
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
    go(url(u"/count?again"_s));
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
    QTRY_COMPARE(browserForms().last()->browser()->locationUrl(), url(u"/two"_s));
    QTRY_VERIFY(browserForms().last()->browser()->hasDocument());
    QString markup;
    browserForms().last()->browser()->outerHtml([&markup](const QString &text) { markup = text; });
    QTRY_VERIFY(markup.contains("Second page"_L1));

    QTcpServer closed;
    QVERIFY(closed.listen(QHostAddress::LocalHost));
    const QString dead = "http://127.0.0.1:"_L1 + QString::number(closed.serverPort()) + u'/';
    closed.close();
    m_session->frame->navigateActive(dead);
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
    m_session->frame->navigateActive(url(u"/kept.pdf"_s));
    QTRY_VERIFY(QFile::exists(folder + "/kept.pdf"_L1));
    QTRY_COMPARE(m_session->location(), url(u"/shown.pdf"_s));
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
    m_session->frame->navigateActive(url(u"/file.bin"_s));
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
    m_session->frame->navigateActive(url(u"/other.bin"_s));
    const QString there =
        QStandardPaths::writableLocation(QStandardPaths::DownloadLocation) + "/other.bin"_L1;
    QTRY_VERIFY(QFile::exists(there));
    QVERIFY(QFile::remove(there));
}

/// The rule covers what a frame stores as well. A cookie itself would need a secure page to go to
/// another site at all.
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
    m_session->frame->navigateActive(u"http://some.test/b"_s);
    // Whoever is asked for the name may take its time.
    QTRY_COMPARE_WITH_TIMEOUT(script(u"document.querySelectorAll('#tryAgain').length"_s), u"1"_s,
                              60000);
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
    m_session->frame->navigateActive(u"http://some.test/x"_s);
    if (silent) {
        QTRY_VERIFY(dead.hasPendingConnections());
        QVERIFY(m_session->active()->browser()->isBusy());
        m_session->choose("mnuNavigationStop");
    }
    QTRY_VERIFY(!m_session->active()->browser()->isBusy());
    // The frame goes on: windows, local pages, the dialog.
    go(url(u"/one"_s));
    openAdvanced();
    find<QSpinBox>("txtProxyPort")->setValue(living.port());
    save();
    go(url(u"/two"_s));
    go(u"http://some.test/again"_s);
    QTRY_COMPARE(script(u"document.title"_s), u"again"_s);
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
