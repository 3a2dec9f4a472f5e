// Pages that download more than anybody asked for.
#include "DownloadList.h"
#include "EngineProfile.h"
#include "EngineTest.h"
#include "PageAsks.h"
#include "PageDownloads.h"
#include "PopupScene.h"
#include "SitePermissions.h"
#include "Transfer.h"

#include <QDir>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QSignalSpy>
#include <QTest>
#include <QWebEngineProfile>
#include <algorithm>

using namespace Qt::StringLiterals;
using State = Download::State;

class tst_pagedownloads : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void threeComeUnasked();
    void yesIsForAllOfThePage();
    void noIsForAllThatWait();
    void noHolds();
    void anActOfTheUserGivesThreeMore();
    void typedAddressesAreNeverAskedAbout();
    void questionGoesWithThePage_data();
    void questionGoesWithThePage();
    void heldOneIsTakenByHand();
    void nextPageIsAskedAnew();
    void frameAsksInItsOwnName_data();
    void frameAsksInItsOwnName();
    void yesToAFrameIsNoYesToThePage();
    void rememberedIsNotAsked_data();
    void rememberedIsNotAsked();
    void remembersForPagesThatHaveGone_data();
    void remembersForPagesThatHaveGone();
    void aThousandInARow_data();
    void aThousandInARow();
    void emptyWindowGoesWithItsFile();

private:
    static QString folder()
    {
        return QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    }
    static QStringList kept() { return QDir(folder()).entryList(QDir::Files); }
    static QStringList all()
    {
        return QDir(folder()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    static int count(State state)
    {
        const QList<Download> &list = downloadList().all();
        return int(std::count_if(list.begin(), list.end(),
                                 [state](const Download &each) { return each.state == state; }));
    }
    /// The page begins so many, with no act of the user's. The engine lets it
    /// begin ten in a second.
    void begin(int number, int from = 0) const
    {
        PopupScene::script(m_form, u"go(%1, %2); 1"_s.arg(from).arg(from + number));
    }

    /// With these attributes; "%1" is the server's port.
    void addFrame(const QString &attributes) const
    {
        const QString port = QString::number(m_scene->server.port());
        PopupScene::script(m_form,
                           u"document.body.insertAdjacentHTML('beforeend', `<iframe %1>`); 1"_s.arg(
                               QString(attributes).replace("%1"_L1, port)));
    }

    std::unique_ptr<PopupScene> m_scene;
    QPointer<BrowserWindow> m_form;
};

void tst_pagedownloads::init()
{
    QVERIFY(downloadList().all().isEmpty());
    m_scene = std::make_unique<PopupScene>();
    QVERIFY(m_scene->isReady());
    m_scene->server.page("/other", "<title>other</title>");
    m_form =
        m_scene->openPage("<button id=b onclick='go(100, 103)'>b</button><script>function go(from, "
                          "to) {"
                          "for (let i = from; i < to; ++i) { const a = document.createElement('a');"
                          "a.download = 'f' + i + '.txt'; a.href = URL.createObjectURL(new "
                          "Blob(['bytes']));"
                          "a.click(); } }</script>",
                          true);
}

void tst_pagedownloads::cleanup()
{
    m_scene.reset();
    QStringList ids;
    for (const Download &each : downloadList().all())
        ids.append(each.id);
    downloadList().remove(ids);
    QTRY_COMPARE(all(), kept());
    QDir(folder()).removeRecursively();
}

void tst_pagedownloads::threeComeUnasked()
{
    begin(3);
    QTRY_COMPARE(count(State::Done), 3);
    QCOMPARE(PopupScene::script(m_form, u"1 + 1"_s).toInt(), 2);
    QCOMPARE(PageAsks::countIn(m_form), 0);
    QCOMPARE(kept(), QStringList({u"f0.txt"_s, u"f1.txt"_s, u"f2.txt"_s}));
}

void tst_pagedownloads::yesIsForAllOfThePage()
{
    begin(6);
    QTRY_VERIFY(PageAsks::shownIn(m_form));
    QTRY_COMPARE(count(State::Held), 3);
    QTRY_COMPARE(count(State::Done), 3);
    QCOMPARE(kept().size(), 3);
    const PageQuestionBox *box = PageAsks::shownIn(m_form);
    QVERIFY(PageAsks::askerOf(box).startsWith("http://127.0.0.1:"_L1));
    QVERIFY(!QApplication::activeModalWidget());
    PageAsks::press(PageAsks::yes(box));
    QTRY_COMPARE(count(State::Done), 6);
    begin(3, 10);
    QTRY_COMPARE(count(State::Done), 9);
    QCOMPARE(PageAsks::countIn(m_form), 0);
    QCOMPARE(kept().size(), 9);
    for (const QString &name : kept())
        QCOMPARE(QFileInfo(folder() + u'/' + name).size(), 5);
}

void tst_pagedownloads::noIsForAllThatWait()
{
    begin(6);
    QTRY_COMPARE(count(State::Held), 3);
    QTRY_VERIFY(PageAsks::shownIn(m_form));
    PageAsks::press(PageAsks::no(PageAsks::shownIn(m_form)));
    QTRY_COMPARE(count(State::Cancelled), 3);
    QTRY_COMPARE(count(State::Done), 3);
    QTRY_COMPARE(all(), QStringList({u"f0.txt"_s, u"f1.txt"_s, u"f2.txt"_s}));
}

void tst_pagedownloads::noHolds()
{
    begin(4);
    QTRY_VERIFY(PageAsks::shownIn(m_form));
    PageAsks::press(PageAsks::no(PageAsks::shownIn(m_form)));
    QTRY_COMPARE(count(State::Done), 3);
    // One after the other: the engine loses one that begins while it drops another.
    begin(1, 10);
    QTRY_COMPARE(count(State::Cancelled), 2);
    begin(1, 11);
    QTRY_COMPARE(count(State::Cancelled), 3);
    QCOMPARE(PageAsks::countIn(m_form), 0);
    QTRY_COMPARE(all().size(), 3);
}

void tst_pagedownloads::anActOfTheUserGivesThreeMore()
{
    begin(3);
    QTRY_COMPARE(count(State::Done), 3);
    PopupScene::click(m_form, u"b"_s);
    QTRY_COMPARE(count(State::Done), 6);
    QCOMPARE(PageAsks::countIn(m_form), 0);
    begin(1, 10);
    QTRY_VERIFY(PageAsks::shownIn(m_form));
}

void tst_pagedownloads::typedAddressesAreNeverAskedAbout()
{
    m_scene->server.reply("/file", {200, "bytes", "application/x-parcel", {}});
    for (int i = 1; i <= 6; ++i) {
        m_form->browser()->navigate(m_scene->server.url(u"/file"_s));
        QTRY_COMPARE(count(State::Done), i);
        QTRY_VERIFY(!m_form->browser()->isBusy());
    }
    QCOMPARE(PageAsks::countIn(m_form), 0);
}

void tst_pagedownloads::questionGoesWithThePage_data()
{
    QTest::addColumn<bool>("closes");
    QTest::newRow("another page") << false;
    QTest::newRow("window closed") << true;
}

void tst_pagedownloads::questionGoesWithThePage()
{
    QFETCH(bool, closes);
    begin(5);
    QTRY_COMPARE(count(State::Held), 2);
    QTRY_VERIFY(PageAsks::shownIn(m_form));
    if (closes)
        m_form->close();
    else
        m_form->browser()->navigate(m_scene->server.url(u"/other"_s));
    QTRY_COMPARE(count(State::Cancelled), 2);
    QTRY_COMPARE(count(State::Done), 3);
    QTRY_COMPARE(all().size(), 3);
}

void tst_pagedownloads::heldOneIsTakenByHand()
{
    begin(5);
    QTRY_COMPARE(count(State::Held), 2);
    const QString first = downloadList().all().first().id;
    downloadList().resume(first);
    QTRY_COMPARE(downloadList().find(first)->state, State::Done);
    QTRY_VERIFY(PageAsks::shownIn(m_form));
    PageAsks::press(PageAsks::no(PageAsks::shownIn(m_form)));
    QTRY_COMPARE(count(State::Cancelled), 1);
    QTRY_COMPARE(count(State::Done), 4);
}

void tst_pagedownloads::rememberedIsNotAsked_data()
{
    QTest::addColumn<bool>("yes");
    QTest::newRow("yes") << true;
    QTest::newRow("no") << false;
}

void tst_pagedownloads::rememberedIsNotAsked()
{
    QFETCH(bool, yes);
    begin(4);
    QTRY_VERIFY(PageAsks::shownIn(m_form));
    const QPointer<PageQuestionBox> box = PageAsks::shownIn(m_form);
    box->findChild<QCheckBox *>(u"chkRemember"_s)->setChecked(true);
    PageAsks::press(yes ? PageAsks::yes(box) : PageAsks::no(box));
    QTRY_COMPARE(count(State::Done), yes ? 4 : 3);
    QVERIFY(m_scene->folder.read(u"AppData/Permissions.ini"_s)
                .contains(yes ? "Downloads=Allow" : "Downloads=Refuse"));
    const QSignalSpy came(m_form, &BrowserWindow::documentCompleted);
    m_form->browser()->refresh();
    QTRY_VERIFY(!came.isEmpty());
    PopupScene::waitUntilLoaded(m_form);
    begin(3, 10);
    QTRY_COMPARE(count(State::Done), yes ? 7 : 6);
    // Until the engine has asked: what it asks for after its page has gone would be kept.
    const QSignalSpy asked(engineProfile(), &QWebEngineProfile::downloadRequested);
    begin(1, 13);
    QTRY_COMPARE(asked.size(), 1);
    QCOMPARE(downloadList().all().size(), yes ? 8 : 7);
    QTRY_COMPARE(count(State::Done), yes ? 8 : 6);
    QCOMPARE(PageAsks::countIn(m_form), 0);
}

void tst_pagedownloads::remembersForPagesThatHaveGone_data()
{
    QTest::addColumn<DownloadAsker>("asker");
    QTest::addColumn<QUrl>("page");
    QTest::addColumn<QUrl>("file");
    QTest::addColumn<bool>("isRefused");
    const QUrl refused(u"https://refused.example/a/page"_s);
    const QUrl other(u"https://other.example/"_s);
    QTest::newRow("of the page") << DownloadAsker() << refused << other << true;
    QTest::newRow("of another page") << DownloadAsker() << other << refused << false;
    QTest::newRow("of a frame") << DownloadAsker{refused} << refused << other << true;
    QTest::newRow("of a frame in another page")
        << DownloadAsker{refused} << other << other << false;
    QTest::newRow("of a frame without a site")
        << DownloadAsker{{}, true} << refused << refused << false;
    QTest::newRow("made by a page that is not known")
        << DownloadAsker{refused} << QUrl() << QUrl(u"blob:https://refused.example/1"_s) << true;
    QTest::newRow("of a page that is not known") << DownloadAsker() << QUrl() << refused << true;
    QTest::newRow("of nobody") << DownloadAsker() << QUrl() << QUrl(u"data:,text"_s) << false;
}

/// Nobody can be asked any more.
void tst_pagedownloads::remembersForPagesThatHaveGone()
{
    QFETCH(DownloadAsker, asker);
    QFETCH(QUrl, page);
    QFETCH(QUrl, file);
    QFETCH(bool, isRefused);
    const QUrl site(u"https://refused.example/"_s);
    QVERIFY(SitePermissions::keep(AskingSite::of(site, site), {Permission::Downloads},
                                  SitePermissions::Word::Refuse));
    QCOMPARE(PageDownloads::judgeOfGone(asker, page, file),
             isRefused ? PageDownloads::Verdict::Refused : PageDownloads::Verdict::Go);
}

void tst_pagedownloads::nextPageIsAskedAnew()
{
    begin(4);
    QTRY_VERIFY(PageAsks::shownIn(m_form));
    PageAsks::press(PageAsks::yes(PageAsks::shownIn(m_form)));
    QTRY_COMPARE(count(State::Done), 4);
    // A script's doing, which is no act of the user's.
    PopupScene::script(m_form, u"location.href = '/opener?again'; 1"_s);
    QTRY_VERIFY(m_form->browser()->locationUrl().endsWith("?again"_L1));
    PopupScene::waitUntilLoaded(m_form);
    begin(1, 20);
    QTRY_VERIFY(PageAsks::shownIn(m_form));
    QCOMPARE(count(State::Held), 1);
}

void tst_pagedownloads::frameAsksInItsOwnName_data()
{
    QTest::addColumn<QString>("frame");
    QTest::addColumn<QByteArray>("begins");
    QTest::addColumn<QString>("host");
    const QByteArray link = "const a = document.createElement('a'); a.download = 'x';"
                            "document.body.append(a); a.href = ";
    const QByteArray server = link + "'/file?' + i; a.click();";
    const QByteArray made = link + "URL.createObjectURL(new Blob(['bytes'])); a.click();";
    const QByteArray frames = "const f = document.createElement('iframe'); f.src = '/file?' + i;"
                              "document.body.append(f);";
    const QString other = u"src=http://localhost:%1/frame"_s;
    QTest::newRow("of another site") << other << server << u"localhost"_s;
    QTest::newRow("of another site, what it made") << other << made << u"localhost"_s;
    QTest::newRow("frames in one of another site") << other << frames << u"localhost"_s;
    QTest::newRow("of the page's site") << u"src=/frame"_s << server << u"127.0.0.1"_s;
    QTest::newRow("shut off from its site")
        << u"sandbox='allow-scripts allow-downloads' "_s + other << frames << u"127.0.0.1"_s;
}

/// One that has no site asks as a frame in the page.
void tst_pagedownloads::frameAsksInItsOwnName()
{
    QFETCH(QString, frame);
    QFETCH(QByteArray, begins);
    QFETCH(QString, host);
    m_scene->server.reply("/file", {200, "bytes", "application/x-parcel", {}});
    m_scene->server.page("/frame",
                         "<body><script>for (let i = 0; i < 4; ++i) { " + begins + " }</script>");
    addFrame(frame);
    QTRY_VERIFY(PageAsks::shownIn(m_form));
    QTRY_COMPARE(count(State::Held), 1);
    PageQuestionBox *box = PageAsks::shownIn(m_form);
    QCOMPARE(PageAsks::askerOf(box), u"http://%1:%2"_s.arg(host).arg(m_scene->server.port()));
    const bool isPages = frame == "src=/frame"_L1;
    QCOMPARE(PageAsks::textOf(box).startsWith("A frame"_L1), !isPages);
    PageAsks::press(PageAsks::yes(box));
    QTRY_COMPARE(count(State::Done), 4);
}

void tst_pagedownloads::yesToAFrameIsNoYesToThePage()
{
    m_scene->server.page("/frame",
                         "<body><script>for (let i = 0; i < 4; ++i) { const a ="
                         "document.createElement('a'); a.download = 'of frame'; a.href ="
                         "URL.createObjectURL(new Blob(['bytes'])); a.click() }</script>");
    addFrame(u"src=http://localhost:%1/frame"_s);
    QTRY_VERIFY(PageAsks::shownIn(m_form));
    PageAsks::press(PageAsks::yes(PageAsks::shownIn(m_form)));
    QTRY_COMPARE(count(State::Done), 4);
    begin(1);
    QTRY_VERIFY(PageAsks::shownIn(m_form));
    QVERIFY(PageAsks::askerOf(PageAsks::shownIn(m_form)).startsWith("http://127.0.0.1:"_L1));
    QCOMPARE(count(State::Held), 1);
}

void tst_pagedownloads::aThousandInARow_data()
{
    QTest::addColumn<QString>("each");
    QTest::addColumn<int>("number");
    const QString frame = u"const f = document.createElement('iframe'); f.name = 'f' + i;"_s;
    const QString add = u"document.body.append(f);"_s;
    QTest::newRow("of a server") << frame + u"f.src = '/file?' + i;"_s + add << 1000;
    QTest::newRow("made by the page") << frame
            + u"f.src = URL.createObjectURL(new Blob(['bytes'], {type: 'application/x-parcel'}));"_s
            + add << 300;
    QTest::newRow("answers to forms") << frame + add
            + u"const form = document.createElement('form'); form.method = 'post';"
              "form.action = '/file?' + i; form.target = f.name; document.body.append(form);"
              "form.submit();"_s << 300;
}

/// Each is on the list or refused; none is lost on the way, and none is there
/// twice.
void tst_pagedownloads::aThousandInARow()
{
    QFETCH(QString, each);
    QFETCH(int, number);
    QLoggingCategory::setFilterRules(u"orvane.engine.warning=false"_s);
    begin(4);
    QTRY_VERIFY(PageAsks::shownIn(m_form));
    PageAsks::press(PageAsks::yes(PageAsks::shownIn(m_form)));
    QTRY_COMPARE(count(State::Done), 4);
    m_scene->server.reply("/file", {200, "bytes", "application/x-parcel", {}});
    for (int from = 0; from < number; from += 50)
        PopupScene::script(m_form,
                           u"for (let i = %1; i < %1 + 50; ++i) { "_s.arg(from) + each + " } 1"_L1);
    QTRY_COMPARE_WITH_TIMEOUT(count(State::Running), 0, 120'000);
    QTRY_COMPARE_WITH_TIMEOUT(kept().size(), number + 4, 60'000);
    QTRY_COMPARE(all().size(), number + 4);
    for (const QString &name : kept())
        QCOMPARE(QFileInfo(folder() + u'/' + name).size(), 5);
    QCOMPARE(downloadList().all().size(), std::min<qsizetype>(number + 4, DownloadList::most));
    QLoggingCategory::setFilterRules({});
}

/// It has asked for nothing itself, and the file that its opener makes in it comes as it goes, or
/// late, or never: the last of the functions, for that reason.
void tst_pagedownloads::emptyWindowGoesWithItsFile()
{
    PopupScene::script(m_form,
                       u"b.onclick = () => { const w = open('');"
                       "const a = w.document.createElement('a'); a.download = 'own.txt';"
                       "a.href = w.URL.createObjectURL(new w.Blob(['bytes'])); a.click();"
                       "w.close(); }; 1"_s);
    PopupScene::click(m_form, u"b"_s);
    QTRY_COMPARE(PopupScene::popups().size(), 0);
    begin(1);
    QTRY_VERIFY(kept().contains(u"f0.txt"_s));
    QTRY_VERIFY(count(State::Running) == 0);
}

ORVANE_ENGINE_TEST_MAIN(tst_pagedownloads)
#include "tst_pagedownloads.moc"
