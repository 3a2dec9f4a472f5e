// Navigations that leave no trace in the history, the visited links or the disk cache.
#include "ControlScene.h"
#include "EngineProfile.h"
#include "EngineTest.h"

#include <QDirIterator>
#include <QWebEngineHistory>
#include <QWebEngineProfile>

using namespace Qt::StringLiterals;

class tst_flags : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void ordinaryVisitLeavesItsTraces();
    void shellNavigationReplacesTheEntry();
    void replacedEntryIsReachedByBack();
    void linksOfThePageAreSkipped();
    void formsOfThePageAreSkipped();
    void redirectsLeaveNoLink();
    void linkThatWasThereStays();
    void firstPageMayBeFlagged();
    void refusedAddressLeavesNothing();
    void nothingIsWrittenToTheCache();
    void rangedMediaKeepWorking();

private:
    bool visited(const QString &path) const
    {
        return engineProfile()->visitedLinksContainsUrl(QUrl(m_scene->server.url(path)));
    }
    void open(const QString &path) { m_scene->open(m_scene->server.url(path)); }
    QString at() const { return QUrl(m_scene->browser->locationUrl()).path(); }
    int entries() const { return int(m_scene->browser->page()->history()->count()); }
    static bool cacheHolds(const QByteArray &text);

    std::unique_ptr<ControlScene> m_scene;
};

void tst_flags::init()
{
    m_scene = std::make_unique<ControlScene>();
    for (const char *name : {"a", "b", "c", "d"}) {
        const QByteArray page(name);
        m_scene->server.page('/' + page,
                             "<title>" + page
                                 + "</title><a id=c href=/c>c</a>"
                                   "<form id=f action=/d method=post><input name=x></form>");
    }
}

void tst_flags::cleanup()
{
    engineProfile()->clearAllVisitedLinks();
    m_scene.reset();
}

bool tst_flags::cacheHolds(const QByteArray &text)
{
    QDirIterator files(engineProfile()->cachePath(), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        QFile file(files.next());
        if (file.open(QIODevice::ReadOnly) && file.readAll().contains(text))
            return true;
    }
    return false;
}

void tst_flags::ordinaryVisitLeavesItsTraces()
{
    open(u"/a"_s);
    QVERIFY(engineProfileIsStored());
    open(u"/b"_s);
    QTRY_VERIFY(visited(u"/a"_s) && visited(u"/b"_s));
    QCOMPARE(entries(), 2);
}

void tst_flags::shellNavigationReplacesTheEntry()
{
    open(u"/a"_s);
    open(u"/b"_s);
    m_scene->events.flagsToSet = NavFlags::NoHistory;
    open(u"/c"_s);
    QCOMPARE(entries(), 2);
    QVERIFY(!visited(u"/c"_s));
    QVERIFY(visited(u"/b"_s));
    QCOMPARE(m_scene->events.count("before "_L1 + m_scene->server.url(u"/c"_s)), 1);
    m_scene->events.flagsToSet = 0;
    QVERIFY(m_scene->browser->goBack());
    QTRY_COMPARE(at(), u"/a"_s);
}

void tst_flags::replacedEntryIsReachedByBack()
{
    open(u"/a"_s);
    m_scene->events.flagsToSet = NavFlags::NoHistory;
    open(u"/b"_s);
    m_scene->events.flagsToSet = 0;
    open(u"/d"_s);
    QCOMPARE(entries(), 2);
    QVERIFY(m_scene->browser->goBack());
    QTRY_COMPARE(at(), u"/b"_s);
}

void tst_flags::linksOfThePageAreSkipped()
{
    open(u"/a"_s);
    m_scene->events.flagsToSet = NavFlags::NoHistory;
    m_scene->script(u"document.getElementById('c').click()"_s);
    m_scene->waitFor(m_scene->server.url(u"/c"_s));
    QVERIFY(!visited(u"/c"_s));
    m_scene->events.flagsToSet = 0;
    open(u"/d"_s);
    QVERIFY(m_scene->browser->goBack());
    m_scene->waitFor(m_scene->server.url(u"/a"_s));
    QVERIFY(!m_scene->browser->goBack());
    QVERIFY(m_scene->browser->goForward());
    m_scene->waitFor(m_scene->server.url(u"/d"_s));
}

void tst_flags::formsOfThePageAreSkipped()
{
    open(u"/a"_s);
    m_scene->events.flagsToSet = NavFlags::NoHistory;
    m_scene->script(u"document.getElementById('f').submit()"_s);
    m_scene->waitFor(m_scene->server.url(u"/d"_s));
    QVERIFY(!visited(u"/d"_s));
    QCOMPARE(m_scene->server.requests("/d").first().method, "POST");
    m_scene->events.flagsToSet = 0;
    open(u"/b"_s);
    QVERIFY(m_scene->browser->goBack());
    m_scene->waitFor(m_scene->server.url(u"/a"_s));
}

void tst_flags::redirectsLeaveNoLink()
{
    m_scene->server.redirect("/first", "/second");
    m_scene->server.redirect("/second", "/b");
    open(u"/a"_s);
    m_scene->events.flagsToSet = NavFlags::NoHistory;
    m_scene->browser->navigate(m_scene->server.url(u"/first"_s));
    m_scene->waitFor(m_scene->server.url(u"/b"_s));
    QCOMPARE(entries(), 1);
    QVERIFY(!visited(u"/first"_s) && !visited(u"/second"_s) && !visited(u"/b"_s));
}

void tst_flags::linkThatWasThereStays()
{
    open(u"/b"_s);
    open(u"/a"_s);
    QVERIFY(visited(u"/b"_s));
    m_scene->events.flagsToSet = NavFlags::NoHistory;
    open(u"/b"_s);
    QVERIFY(visited(u"/b"_s));
}

void tst_flags::firstPageMayBeFlagged()
{
    m_scene->events.flagsToSet = NavFlags::NoHistory;
    open(u"/a"_s);
    QVERIFY(!visited(u"/a"_s));
    QCOMPARE(entries(), 1);
}

void tst_flags::refusedAddressLeavesNothing()
{
    open(u"/a"_s);
    m_scene->events.flagsToSet = NavFlags::NoHistory;
    m_scene->events.refuse = true;
    const QString b = m_scene->server.url(u"/b"_s);
    m_scene->browser->navigate(b);
    QTRY_COMPARE(m_scene->events.count("before "_L1 + b), 1);
    m_scene->events.refuse = false;
    open(u"/c"_s);
    QCOMPARE(m_scene->server.count("/b"), 0);
    QCOMPARE(entries(), 1);
}

void tst_flags::nothingIsWrittenToTheCache()
{
    TestServer::Reply style;
    style.type = "text/css";
    style.headers = {{"Cache-Control", "max-age=3600"}};
    for (const char *name : {"plain", "secret"}) {
        const QByteArray mark(name);
        style.body = "body { color: red } /* body-of-style-" + mark + " */";
        m_scene->server.reply('/' + mark + ".css", style);
        TestServer::Reply page;
        page.headers = style.headers;
        page.body = "<link rel=stylesheet href=/" + mark + ".css><title>t</title><p>body-of-page-"
            + mark + "<script>fetch('/" + mark
            + ".css?f').then(r => r.text()).then("
              "() => document.title = 'fetched')</script>";
        m_scene->server.reply("/page-" + mark, page);
    }
    open(u"/page-plain"_s);
    QTRY_COMPARE(m_scene->events.titles.last(), u"fetched"_s);
    QTRY_VERIFY(cacheHolds("body-of-page-plain") && cacheHolds("body-of-style-plain"));
    m_scene->events.flagsToSet = NavFlags::NoWriteToCache;
    open(u"/page-secret"_s);
    QTRY_COMPARE(m_scene->events.titles.last(), u"fetched"_s);
    // What is written, is written in turn: the next one is there, so the one before would be.
    m_scene->events.flagsToSet = 0;
    m_scene->events.titles.append(QString());
    m_scene->browser->navigate(m_scene->server.url(u"/page-plain?again"_s));
    QTRY_COMPARE(m_scene->events.titles.last(), u"fetched"_s);
    QTRY_VERIFY(cacheHolds("page-plain?again"));
    QVERIFY(!cacheHolds("page-secret"));
    QVERIFY(!cacheHolds("secret.css"));
    QVERIFY(!cacheHolds("body-of-page-secret"));
    QVERIFY(!cacheHolds("body-of-style-secret"));
}

/// A mono wave file, long enough to be asked for in parts when one seeks to its end.
static QByteArray waveFile()
{
    const quint32 rate = 8000;
    const QByteArray samples(int(rate) * 400, char(128));
    QByteArray file;
    const auto put = [&file](quint32 value, int bytes) {
        for (int i = 0; i < bytes; ++i)
            file.append(char((value >> (8 * i)) & 0xff));
    };
    file += "RIFF";
    put(quint32(36 + samples.size()), 4);
    file += "WAVEfmt ";
    put(16, 4);
    put(1, 2);
    put(1, 2);
    put(rate, 4);
    put(rate, 4);
    put(1, 2);
    put(8, 2);
    file += "data";
    put(quint32(samples.size()), 4);
    return file + samples;
}

void tst_flags::rangedMediaKeepWorking()
{
    m_scene->server.file("/sound.wav", waveFile(), "audio/wav");
    m_scene->server.page("/media",
                         "<title>m</title><audio id=s src=/sound.wav preload=auto></audio><script>"
                         "s.onloadedmetadata = () => s.currentTime = 390;"
                         "s.onseeked = () => document.title = 'at ' + s.currentTime;"
                         "s.onerror = () => document.title = 'error';"
                         "fetch('/sound.wav', {headers: {Range: 'bytes=4-7'}})"
                         ".then(r => document.body.id = 's' + r.status)</script>");
    m_scene->events.flagsToSet = NavFlags::NoWriteToCache;
    open(u"/media"_s);
    QTRY_COMPARE(m_scene->events.titles.last(), u"at 390"_s);
    QTRY_COMPARE(m_scene->script(u"document.body.id"_s), u"s206"_s);
    QVERIFY(!cacheHolds("/sound.wav"));
}

ORVANE_ENGINE_TEST_MAIN(tst_flags)
#include "tst_flags.moc"
