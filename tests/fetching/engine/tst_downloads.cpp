// Navigations that turn out to be files to keep, against a real server.
#include "ControlScene.h"
#include "EngineProfile.h"
#include "EngineTest.h"

#include <QFile>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QWebEngineDownloadRequest>
#include <QWebEngineHistory>
#include <QWebEngineProfile>
#include <QWebEngineSettings>

using namespace Qt::StringLiterals;

namespace {
const QByteArray paper =
    "%PDF-1.4\n1 0 obj<</Type/Catalog/Pages 2 0 R>>endobj 2 0 obj<</Type/Pages/Kids[3 0 R]/Count 1"
    ">>endobj 3 0 obj<</Type/Page/Parent 2 0 R/MediaBox[0 0 99 99]>>endobj\ntrailer<</Root 1 0 R>>";
}

class tst_downloads : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void connectionBreaksAfterTheWindowClosed();
    void windowStaysOnItsPage_data();
    void windowStaysOnItsPage();
    void fileFromALinkLeavesThePage();
    void windowWithoutAPageStaysWithoutOne();
    void stalledFileLeavesTheWindowFree();
    void windowClosedAsTheFileBegins();
    void pageThatIsSlowToLeave();
    void pageThatIsSlowToLeaveKeepsItsOwnAddresses();
    void nextPageComesAsEver();
    void namesFromTheServer_data();
    void namesFromTheServer();
    void namesFromThePage_data();
    void namesFromThePage();
    void namesFromTheAddress_data();
    void namesFromTheAddress();
    void longNamesArrive_data();
    void longNamesArrive();
    void whatIsThereStays();
    void downloadsOfOneNameAtOnce();

private:
    QString url(const QString &path) const { return m_server->url(path); }
    static QString kept(const QString &name)
    {
        return QStandardPaths::writableLocation(QStandardPaths::DownloadLocation) + u'/' + name;
    }
    bool arrived(const QString &address) const
    {
        return m_events->count("complete "_L1 + address) > 0 && !m_browser->isBusy();
    }
    static QStringList allKept()
    {
        return QDir(kept({})).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    void showPage();
    void arrives(const QString &name) const;

    std::unique_ptr<ControlScene> m_scene;
    TestServer *m_server = nullptr;
    RecordedEvents *m_events = nullptr;
    QtWebBrowser *m_browser = nullptr;
};

void tst_downloads::init()
{
    m_scene = std::make_unique<ControlScene>();
    m_server = &m_scene->server;
    m_events = &m_scene->events;
    m_browser = m_scene->browser;
    QVERIFY(m_server->isListening());
    m_server->page("/a", "<title>Page A</title><a id=f href=/attached.html>file</a>");
    m_server->page("/b", "<title>Page B</title>b");
    TestServer::Reply attached;
    attached.headers = {{"Content-Disposition", "attachment; filename=attached.html"}};
    attached.body = "<title>not to be shown</title>";
    m_server->reply("/attached.html", attached);
    TestServer::Reply bytes;
    bytes.type = "application/octet-stream";
    bytes.body = "bytes";
    m_server->reply("/bytes.bin", bytes);
    m_server->file("/paper.pdf", paper, "application/pdf");
    m_server->redirect("/moved.bin", "/bytes.bin");
}

void tst_downloads::cleanup()
{
    m_scene.reset();
    QDir(QStandardPaths::writableLocation(QStandardPaths::DownloadLocation)).removeRecursively();
}

void tst_downloads::showPage()
{
    m_browser->navigate(url(u"/a"_s));
    QTRY_VERIFY(arrived(url(u"/a"_s)));
    QTRY_COMPARE(m_events->titles.value(m_events->titles.size() - 1), u"Page A"_s);
    m_events->lines.clear();
}

void tst_downloads::windowStaysOnItsPage_data()
{
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("file");
    QTest::newRow("attachment") << u"/attached.html"_s << u"attached.html"_s;
    QTest::newRow("bytes") << u"/bytes.bin"_s << u"bytes.bin"_s;
    QTest::newRow("after a redirection") << u"/moved.bin"_s << u"bytes.bin"_s;
    QTest::newRow("PDF not shown in the page") << u"/paper.pdf"_s << u"paper.pdf"_s;
}

void tst_downloads::windowStaysOnItsPage()
{
    QFETCH(QString, path);
    QFETCH(QString, file);
    showPage();
    m_browser->page()->settings()->setAttribute(QWebEngineSettings::PdfViewerEnabled, false);
    m_browser->navigate(url(path));
    QTRY_VERIFY(QFile::exists(kept(file)));
    QTRY_VERIFY(!m_browser->isBusy());
    QTRY_COMPARE(m_browser->locationUrl(), url(u"/a"_s));
    QTRY_COMPARE(m_browser->page()->url().toString(), url(u"/a"_s));
    QCOMPARE(m_browser->locationUrl(), url(u"/a"_s));
    QCOMPARE(m_events->navigation(), QStringList("before "_L1 + url(path)));
    QVERIFY(m_browser->hasDocument());
    QCOMPARE(m_browser->page()->history()->count(), 1);
    QVERIFY2(!m_events->statuses.last().contains(path), qPrintable(m_events->statuses.last()));
}

void tst_downloads::fileFromALinkLeavesThePage()
{
    showPage();
    m_browser->page()->runJavaScript(u"document.getElementById('f').click()"_s);
    QTRY_VERIFY(QFile::exists(kept(u"attached.html"_s)));
    QTRY_VERIFY(!m_browser->isBusy());
    QTRY_COMPARE(m_browser->locationUrl(), url(u"/a"_s));
    QCOMPARE(m_events->navigation(), QStringList("before "_L1 + url(u"/attached.html"_s)));
}

void tst_downloads::windowWithoutAPageStaysWithoutOne()
{
    m_browser->navigate(url(u"/bytes.bin"_s));
    QTRY_VERIFY(QFile::exists(kept(u"bytes.bin"_s)));
    QTRY_VERIFY(!m_browser->isBusy());
    QCOMPARE(m_events->navigation(), QStringList("before "_L1 + url(u"/bytes.bin"_s)));
    QCOMPARE(m_browser->locationUrl(), QString());
    QVERIFY(!m_browser->hasDocument());
}

/// The window is free as soon as it is known to be a file, however long that takes to come.
void tst_downloads::stalledFileLeavesTheWindowFree()
{
    TestServer::Reply stalled;
    // Of a kind that is not judged by its first bytes.
    stalled.type = "application/x-parcel";
    stalled.stallAfterHeaders = true;
    m_server->reply("/stalled.bin", stalled);
    showPage();
    m_browser->navigate(url(u"/stalled.bin"_s));
    QTRY_COMPARE(m_server->count("/stalled.bin"), 1);
    QTRY_VERIFY(!m_browser->isBusy());
    QTRY_COMPARE(m_browser->locationUrl(), url(u"/a"_s));
    QCOMPARE(m_events->navigation(), QStringList("before "_L1 + url(u"/stalled.bin"_s)));
}

/// The engine takes the file up again by itself.
void tst_downloads::connectionBreaksAfterTheWindowClosed()
{
    TestServer::Reply stalled;
    stalled.type = "application/x-parcel";
    stalled.stallAfterHeaders = true;
    m_server->reply("/stalled.bin", stalled);
    const QSignalSpy requests(engineProfile(), &QWebEngineProfile::downloadRequested);
    showPage();
    m_browser->navigate(url(u"/stalled.bin"_s));
    QTRY_COMPARE(requests.count(), 1);
    QTRY_VERIFY(!m_browser->isBusy());
    m_scene.reset();
    QTRY_VERIFY(requests.count() > 1);
}

/// The engine asks such a page before anything else, and names the other address meanwhile.
/// The engine asks where a file is to go a moment before or after it tells the page that its load
/// has ended, which differs from time to time.
void tst_downloads::windowClosedAsTheFileBegins()
{
    TestServer::Reply stalled;
    stalled.type = "application/x-parcel";
    stalled.stallAfterHeaders = true;
    // No more than the connections that the engine keeps to one server.
    for (int round = 1; round <= 4; ++round) {
        const QByteArray path = "/stalled" + QByteArray::number(round);
        m_server->reply(path, stalled);
        ControlScene closing;
        closing.open(url(u"/a"_s));
        QSignalSpy ended(closing.browser, &WebBrowser::loadEnded);
        closing.browser->navigate(url(QString::fromLatin1(path)));
        QTRY_VERIFY(!ended.isEmpty());
        delete closing.browser->page();
        m_browser->navigate(url(u"/a?"_s + QString::number(round)));
        QTRY_VERIFY(m_events->count("complete "_L1 + url(u"/a?"_s + QString::number(round))) == 1);
    }
}

void tst_downloads::pageThatIsSlowToLeave()
{
    m_server->page("/slow",
                   "<title>Slow</title><script>addEventListener('beforeunload', () => {"
                   "const start = Date.now(); while (Date.now() - start < 200); })</script>");
    const QString slow = url(u"/slow"_s);
    m_browser->navigate(slow);
    QTRY_VERIFY(arrived(slow));
    m_events->lines.clear();
    m_browser->navigate(url(u"/bytes.bin"_s));
    QTRY_VERIFY(QFile::exists(kept(u"bytes.bin"_s)));
    QTRY_VERIFY(!m_browser->isBusy());
    QCOMPARE(m_browser->locationUrl(), slow);
    QCOMPARE(m_events->navigation(), QStringList("before "_L1 + url(u"/bytes.bin"_s)));
    m_events->lines.clear();
    const QString next = url(u"/b"_s);
    m_browser->navigate(next);
    QTRY_VERIFY(arrived(next));
    QCOMPARE(m_events->navigation(),
             QStringList({"before "_L1 + next, "navigated "_L1 + next, "complete "_L1 + next}));
}

void tst_downloads::pageThatIsSlowToLeaveKeepsItsOwnAddresses()
{
    m_server->page("/slow",
                   "<title>Slow</title><script>addEventListener('beforeunload', () => {"
                   "history.pushState(null, '', '/pushed'); })</script>");
    m_browser->navigate(url(u"/slow"_s));
    QTRY_VERIFY(arrived(url(u"/slow"_s)));
    m_browser->navigate(url(u"/bytes.bin"_s));
    QTRY_VERIFY(QFile::exists(kept(u"bytes.bin"_s)));
    QTRY_VERIFY(!m_browser->isBusy());
    QTRY_COMPARE(m_browser->locationUrl(), url(u"/pushed"_s));
}

void tst_downloads::nextPageComesAsEver()
{
    showPage();
    m_browser->navigate(url(u"/bytes.bin"_s));
    QTRY_VERIFY(QFile::exists(kept(u"bytes.bin"_s)));
    QTRY_VERIFY(!m_browser->isBusy());
    m_events->lines.clear();
    const QString next = url(u"/b"_s);
    m_browser->navigate(next);
    QTRY_VERIFY(arrived(next));
    QCOMPARE(m_events->navigation(),
             QStringList({"before "_L1 + next, "navigated "_L1 + next, "complete "_L1 + next}));
    QCOMPARE(m_browser->locationUrl(), next);
}

/// Alone, and nowhere but in the folder for it.
void tst_downloads::arrives(const QString &name) const
{
    QTRY_COMPARE(allKept(), QStringList(name));
    QTRY_COMPARE(QFileInfo(kept(name)).size(), 5);
    QVERIFY(!m_browser->isBusy());
}

void tst_downloads::namesFromTheServer_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *tag, const QByteArray &encoded, const QString &name) {
        QTest::newRow(tag) << "attachment; filename*=UTF-8''" + encoded << name;
    };
    row("plain", "news.bin", u"news.bin"_s);
    row("line feed", "a%0Ab.bin", u"a b.bin"_s);
    row("bell", "a%07b.bin", u"ab.bin"_s);
    row("turned round", "a%E2%80%AEnib.exe", u"anib.exe"_s);
    row("isolated", "a%E2%81%A6nib%E2%81%A9.bin", u"anib.bin"_s);
    row("hidden", ".bashrc", u"bashrc"_s);
    row("out of the folder", "..%2F..%2Fx.bin", u"x.bin"_s);
    row("device", "con.txt", u"_con.txt"_s);
    row("another desktop's path", "C%3A%5Ca%5Cb.bin", u"C a b.bin"_s);
    row("scripts", "%E3%83%8B%D0%B6%F0%9F%98%80.bin", u"ニж😀.bin"_s);
    QTest::newRow("blanks and dots")
        << QByteArray("attachment; filename=\" a . .bin . \"") << u"a.bin"_s;
    QTest::newRow("folder above") << QByteArray("attachment; filename=\"..\"") << u"download"_s;
    QTest::newRow("folder") << QByteArray("attachment; filename=\".\"") << u"download"_s;
}

void tst_downloads::namesFromTheServer()
{
    QFETCH(QByteArray, header);
    QFETCH(QString, name);
    TestServer::Reply reply{
        200, "bytes", "application/x-parcel", {{"Content-Disposition", header}}};
    m_server->reply("/", reply);
    showPage();
    m_browser->navigate(url(u"/"_s));
    arrives(name);
}

void tst_downloads::namesFromThePage_data()
{
    QTest::addColumn<QString>("wanted");
    QTest::addColumn<QString>("name");
    QTest::newRow("line feed") << u"a\\nb.bin"_s << u"a b.bin"_s;
    QTest::newRow("bell") << u"a\\u0007b.bin"_s << u"ab.bin"_s;
    QTest::newRow("turned round") << u"a\\u202enib.exe"_s << u"anib.exe"_s;
    QTest::newRow("hidden") << u".bashrc"_s << u"bashrc"_s;
    QTest::newRow("folder above") << u".."_s << u"download"_s;
    QTest::newRow("out of the folder") << u"../../x.bin"_s << u"x.bin"_s;
}

void tst_downloads::namesFromThePage()
{
    QFETCH(QString, wanted);
    QFETCH(QString, name);
    showPage();
    m_browser->page()->runJavaScript(
        u"const a = document.createElement('a'); a.href = '/bytes.bin'; a.download = '%1';"
        u"document.body.append(a); a.click();"_s.arg(wanted));
    arrives(name);
}

void tst_downloads::namesFromTheAddress_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QString>("name");
    QTest::newRow("line feed") << QByteArray("/a%0Ab.bin") << u"a b.bin"_s;
    QTest::newRow("bell") << QByteArray("/a%07b.bin") << u"ab.bin"_s;
    QTest::newRow("turned round") << QByteArray("/a%E2%80%AEnib.exe") << u"anib.exe"_s;
    QTest::newRow("hidden") << QByteArray("/.bashrc") << u"bashrc"_s;
    QTest::newRow("out of the folder") << QByteArray("/..%2F..%2Fx.bin") << u"x.bin"_s;
}

void tst_downloads::namesFromTheAddress()
{
    QFETCH(QByteArray, path);
    QFETCH(QString, name);
    m_server->reply(path, {200, "bytes", "application/x-parcel", {}});
    showPage();
    m_browser->navigate(url(QString::fromLatin1(path)));
    arrives(name);
}

void tst_downloads::longNamesArrive_data()
{
    QTest::addColumn<QString>("letter");
    QTest::newRow("one byte") << u"x"_s;
    QTest::newRow("three bytes") << u"ニ"_s;
    QTest::newRow("four bytes") << u"😀"_s;
}

void tst_downloads::longNamesArrive()
{
    QFETCH(QString, letter);
    const QByteArray wanted = QUrl::toPercentEncoding(letter.repeated(404) + u".bin"_s);
    m_server->reply("/long",
                    {200,
                     "bytes",
                     "application/x-parcel",
                     {{"Content-Disposition", "attachment; filename*=UTF-8''" + wanted}}});
    showPage();
    for (int number = 1; number <= 2; ++number) {
        m_browser->navigate(url(u"/long"_s));
        // Beside what has arrived there is what the engine and the program write into, hidden.
        QTRY_VERIFY(allKept().size() == number
                    && allKept().filter(QRegularExpression(u"^\\."_s)).isEmpty());
        for (const QString &name : allKept()) {
            QVERIFY2(name.startsWith(letter.repeated(50)) && name.endsWith(".bin"_L1),
                     qPrintable(name));
            QCOMPARE(QFileInfo(kept(name)).size(), 5);
        }
    }
}

void tst_downloads::whatIsThereStays()
{
    QVERIFY(QDir().mkpath(kept({})));
    const auto write = [](const QString &name) {
        QFile file(kept(name));
        return file.open(QIODevice::WriteOnly) && file.write("mine") == 4;
    };
    QVERIFY(write(u"bytes.bin"_s) && write(u"bytes (1).bin.download"_s));
    QVERIFY(QFile::link(u"/nowhere/at/all"_s, kept(u"bytes (2).bin"_s)));
    showPage();
    for (const QString &name : {u"bytes (1).bin"_s, u"bytes (3).bin"_s}) {
        m_browser->navigate(url(u"/bytes.bin"_s));
        QTRY_COMPARE(QFileInfo(kept(name)).size(), 5);
        QTRY_VERIFY(!m_browser->isBusy());
    }
    QCOMPARE(QFileInfo(kept(u"bytes.bin"_s)).size(), 4);
    QCOMPARE(QFileInfo(kept(u"bytes (1).bin.download"_s)).size(), 4);
    QVERIFY(QFileInfo(kept(u"bytes (2).bin"_s)).isSymLink());
}

void tst_downloads::downloadsOfOneNameAtOnce()
{
    showPage();
    m_browser->page()->runJavaScript(
        u"for (let i = 0; i < 3; ++i) { const a = document.createElement('a');"
        u"a.href = URL.createObjectURL(new Blob(['bytes'])); a.download = 'same.bin';"
        u"document.body.append(a); a.click(); }"_s);
    const QStringList all{u"same (1).bin"_s, u"same (2).bin"_s, u"same.bin"_s};
    QTRY_COMPARE(allKept(), all);
    for (const QString &name : all)
        QTRY_COMPARE(QFileInfo(kept(name)).size(), 5);
}

ORVANE_ENGINE_TEST_MAIN(tst_downloads)
#include "tst_downloads.moc"
