// Files and links let go over a page.
#include "../EngineSession.h"
#include "DragAndDrop.h"
#include "EngineTest.h"
#include "FrameOpener.h"
#include "PopupScene.h"
#include "WebView.h"

#include <QAbstractButton>
#include <QDir>
#include <QMessageBox>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

class tst_pagedrops : public QObject, private EngineSession {
    Q_OBJECT

private slots:
    void init();
    void cleanup() { finish(); }
    void pageOpensWhatIsDropped_data();
    void pageOpensWhatIsDropped();
    void severalOpenHereAndInNewWindows();
    void spellingIsTheEngines_data();
    void spellingIsTheEngines();
    void filesAndLinksTogether_data();
    void filesAndLinksTogether();
    void manyAreAskedAbout_data();
    void manyAreAskedAbout();
    void pageMayTakeTheDrop();
    void fieldForFilesTakesThem();
    void takenLinkOpensWhereItSays();
    void killPopupsRefusesNoDrop();
    void profileIsTheFrames();
    void folderIsRefused();
    void onlyFilesAreGiven_data();
    void onlyFilesAreGiven();
    void aThousandFiles();
    void pictureOfAPageOpensAtItsAddress_data();
    void pictureOfAPageOpensAtItsAddress();
    void scriptIsNotRun();
    void findFieldLeavesFilesToTheFrame();

private:
    QWidget *view() const
    {
        return QWebEngineView::forPage(PopupScene::control(m_session->active())->page());
    }
    /// Drops it as a hand does, which is slow enough for the page to say that it takes it.
    void dropOnTaker(DragAndDrop drag)
    {
        script(u"delete document.body.dataset.over; 1"_s);
        QVERIFY(drag.over(view()) != Qt::IgnoreAction);
        QTRY_COMPARE(script(u"document.body.dataset.over"_s), u"1"_s);
        QVERIFY(drag.letGo(view()));
    }
    QUrl file(const QString &name, const QByteArray &contents) const
    {
        m_session->folder.write(name, contents);
        return QUrl::fromLocalFile(m_session->folder.file(name));
    }
};

void tst_pagedrops::init()
{
    begin();
    start();
}

void tst_pagedrops::pageOpensWhatIsDropped_data()
{
    QTest::addColumn<QString>("on");
    QTest::addColumn<QString>("dropped");
    for (const char *on : {"/home", "about:blank", "file"}) {
        for (const char *dropped : {"link", "file", "text file"})
            QTest::addRow("%s on %s", dropped, on)
                << QString::fromLatin1(on) << QString::fromLatin1(dropped);
    }
}

void tst_pagedrops::pageOpensWhatIsDropped()
{
    QFETCH(const QString, on);
    QFETCH(const QString, dropped);
    if (on == "file"_L1)
        go(file(u"first page.html"_s, "<title>first</title>").toString(QUrl::FullyEncoded));
    else if (on == "about:blank"_L1)
        go(on);
    QUrl what(url(u"/one"_s));
    if (dropped != "link"_L1)
        what = dropped == "file"_L1 ? file(u"a page.html"_s, "<title>dropped</title>")
                                    : file(u"notes.txt"_s, "text");
    QVERIFY(DragAndDrop({what}, what.toString()).drop(view()));
    QTRY_VERIFY(m_session->shows(what.toString(QUrl::FullyEncoded)));
    QCOMPARE(m_session->windows(), 1);
    QVERIFY(m_session->active()->browser()->goBack());
}

void tst_pagedrops::severalOpenHereAndInNewWindows()
{
    const QUrl one = file(u"one.html"_s, "<title>first file</title>");
    const QUrl two = file(u"two.html"_s, "<title>second file</title>");
    QVERIFY(DragAndDrop({one, two, QUrl::fromLocalFile(m_session->folder.path())}).drop(view()));
    QTRY_COMPARE(m_session->windows(), 2);
    QTRY_COMPARE(browserForms().first()->windowTitle(), u"first file"_s);
    QTRY_COMPARE(browserForms().last()->windowTitle(), u"second file"_s);
    QCOMPARE(m_session->windows(), 2);
}

void tst_pagedrops::spellingIsTheEngines_data()
{
    QTest::addColumn<QString>("first");
    QTest::addColumn<bool>("isFile");
    QTest::newRow("no path") << QString() << false;
    QTest::newRow("steps back") << u"/x/../one"_s << false;
    QTest::newRow("escaped steps back") << u"/x/%2e%2e/one"_s << false;
    QTest::newRow("apostrophe") << u"/one?a'b"_s << false;
    QTest::newRow("letter") << u"/one?\u00e4"_s << false;
    QTest::newRow("semicolon in a name") << u"a;b.html"_s << true;
    QTest::newRow("percent in a name") << u"a%41;b.html"_s << true;
}

/// The engine asks for a window for what it made of the address.
void tst_pagedrops::spellingIsTheEngines()
{
    QFETCH(const QString, first);
    QFETCH(const bool, isFile);
    const QUrl dropped =
        isFile ? file(first, "<title>dropped</title>") : QUrl(url(QString()) + first);
    QVERIFY(DragAndDrop({dropped, QUrl(url(u"/two"_s))}).drop(view()));
    QTRY_COMPARE(m_session->windows(), 2);
    QTRY_COMPARE(browserForms().last()->browser()->locationUrl(), url(u"/two"_s));
    QTRY_VERIFY(browserForms().first()->browser()->locationUrl() != url(u"/home"_s));
    QCOMPARE(m_session->windows(), 2);
}

void tst_pagedrops::filesAndLinksTogether_data()
{
    QTest::addColumn<bool>("fileFirst");
    QTest::newRow("file first") << true;
    QTest::newRow("link first") << false;
}

/// The engine asks for the file wherever that stands.
void tst_pagedrops::filesAndLinksTogether()
{
    QFETCH(const bool, fileFirst);
    const QUrl page = file(u"one.html"_s, "<title>a file</title>");
    QList<QUrl> dropped{QUrl(url(u"/one"_s)), QUrl(url(u"/two"_s))};
    dropped.insert(fileFirst ? 0 : 1, page);
    QVERIFY(DragAndDrop(dropped).drop(view()));
    for (qsizetype i = 0; i < dropped.size(); ++i) {
        QTRY_VERIFY(browserForms().size() > i);
        QTRY_COMPARE(browserForms().at(i)->browser()->locationUrl(),
                     dropped.at(i).toString(QUrl::FullyEncoded));
    }
    QCOMPARE(m_session->windows(), 3);
}

void tst_pagedrops::manyAreAskedAbout_data()
{
    QTest::addColumn<int>("number");
    QTest::addColumn<QMessageBox::StandardButton>("answer");
    QTest::newRow("as many as open unasked") << 16 << QMessageBox::NoButton;
    QTest::newRow("yes") << 17 << QMessageBox::Yes;
    QTest::newRow("no") << 17 << QMessageBox::No;
    QTest::newRow("a thousand, no") << 1000 << QMessageBox::No;
}

/// The first opens here in any case.
void tst_pagedrops::manyAreAskedAbout()
{
    QFETCH(const int, number);
    QFETCH(const QMessageBox::StandardButton, answer);
    QList<QUrl> urls;
    for (int i = 0; i < number; ++i)
        urls.append(QUrl(url(u"/one?%1"_s.arg(i))));
    QVERIFY(DragAndDrop(urls).drop(view()));
    if (answer != QMessageBox::NoButton) {
        QMessageBox *box = nullptr;
        QTRY_VERIFY((box = m_session->frame->findChild<QMessageBox *>()));
        QVERIFY(box->text().contains(QString::number(number - 1)));
        QCOMPARE(m_session->windows(), 1);
        box->button(answer)->click();
    }
    QTRY_COMPARE(m_session->windows(), answer == QMessageBox::No ? 1 : number);
    QTRY_VERIFY(!m_session->frame->findChild<QMessageBox *>());
    QTRY_COMPARE(browserForms().first()->browser()->locationUrl(), urls.first().toString());
}

void tst_pagedrops::pageMayTakeTheDrop()
{
    m_session->server.page("/taker",
                           "<title>taker</title><body style='height:500px'><script>"
                           "ondragover=e=>{e.preventDefault();document.body.dataset.over=1};"
                           "ondrop=e=>{e.preventDefault();"
                           "document.title='took '+(e.dataTransfer.files.length?"
                           "e.dataTransfer.files[0].name:e.dataTransfer.getData('text/uri-list'))}"
                           "</script>");
    go(url(u"/taker"_s));
    dropOnTaker(DragAndDrop({file(u"a.html"_s, "<title>a</title>")}));
    QTRY_COMPARE(m_session->active()->windowTitle(), u"took a.html"_s);
    dropOnTaker(DragAndDrop({QUrl(url(u"/one"_s))}));
    QTRY_COMPARE(m_session->active()->windowTitle(), "took "_L1 + url(u"/one"_s));
    QCOMPARE(m_session->location(), url(u"/taker"_s));
    QCOMPARE(m_session->windows(), 1);
    QCOMPARE(m_session->server.count("/one"), 0);
}

void tst_pagedrops::fieldForFilesTakesThem()
{
    m_session->server.page("/field",
                           "<title>field</title><body><input type=file multiple id=f style='"
                           "position:fixed;inset:0;width:100%;height:100%'><script>"
                           "ondragover=()=>document.body.dataset.over=1;"
                           "f.onchange=()=>document.title='took '+[...f.files].map(e=>e.name)"
                           "</script>");
    go(url(u"/field"_s));
    dropOnTaker(DragAndDrop({file(u"a.html"_s, "<title>a</title>"), file(u".b"_s, "b")}));
    QTRY_COMPARE(m_session->active()->windowTitle(), u"took a.html,.b"_s);
    QCOMPARE(m_session->location(), url(u"/field"_s));
    QCOMPARE(m_session->windows(), 1);
}

/// A page that collects links shows them as links of its own.
void tst_pagedrops::takenLinkOpensWhereItSays()
{
    m_session->server.page("/collector",
                           "<title>collector</title><body style='height:500px'><script>"
                           "ondragover=e=>{e.preventDefault();document.body.dataset.over=1};"
                           "ondrop=e=>{e.preventDefault();"
                           "document.body.innerHTML='<a target=_blank style=\"position:fixed;"
                           "inset:0\" href=\"'+e.dataTransfer.getData('text/uri-list')+'\">it</a>';"
                           "document.title='took'}</script>");
    go(url(u"/collector"_s));
    dropOnTaker(DragAndDrop({QUrl(url(u"/one"_s))}));
    QTRY_COMPARE(m_session->active()->windowTitle(), u"took"_s);
    QWidget *page = view()->focusProxy();
    // The engine drops what is done to a page before that is painted.
    const auto opens = [this, page] {
        if (m_session->server.count("/one") == 0)
            QTest::mouseClick(page, Qt::LeftButton, {}, page->rect().center());
        return m_session->shows(url(u"/one"_s));
    };
    QTRY_VERIFY(opens());
    QVERIFY(m_session->windows() > 1);
    QCOMPARE(browserForms().first()->browser()->locationUrl(), url(u"/collector"_s));
}

void tst_pagedrops::killPopupsRefusesNoDrop()
{
    m_session->choose("mnuToolsKillPopUps");
    QVERIFY(DragAndDrop({QUrl(url(u"/one"_s))}).drop(view()));
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    m_session->choose("mnuToolsKillPopUps");
}

void tst_pagedrops::profileIsTheFrames()
{
    const QUrl profile =
        file(u"day.orp"_s,
             "[URL_Count]\r\nCount=1\r\n[URLs]\r\nURL0=" + url(u"/two"_s).toUtf8() + "\r\n");
    m_session->choose("mnuFileNewBlankPage");
    int opened = 0;
    m_session->frame->opener().setProfileOpener(
        [&opened](const QString &, bool) { return ++opened > 0; });
    QVERIFY(DragAndDrop({profile}, profile.toString()).drop(view()));
    QTRY_COMPARE(opened, 1);
}

void tst_pagedrops::folderIsRefused()
{
    QCOMPARE(DragAndDrop({QUrl::fromLocalFile(m_session->folder.path())}).over(view()),
             Qt::IgnoreAction);
}

void tst_pagedrops::onlyFilesAreGiven_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("folder") << u"inner"_s;
    QTest::newRow("pipe") << u"pipe"_s;
    QTest::newRow("link to a pipe") << u"link"_s;
}

/// A page would read all of a folder, unasked, and nobody writes into a pipe that it waits for.
void tst_pagedrops::onlyFilesAreGiven()
{
    QFETCH(QString, name);
    const QString path = m_session->folder.file(name);
    const QString pipe = m_session->folder.file(u"pipe"_s);
    QVERIFY(QDir(m_session->folder.path()).mkpath(u"inner"_s));
    QCOMPARE(mkfifo(QFile::encodeName(pipe), 0600), 0);
    QVERIFY(QFile::link(pipe, m_session->folder.file(u"link"_s)));
    const QUrl plain = file(u"a.html"_s, "<title>a</title>");
    const QUrl other = QUrl::fromLocalFile(path);
    QCOMPARE(DragAndDrop({other}).over(view()), Qt::IgnoreAction);
    m_session->server.page("/names",
                           "<title>names</title><body style='height:500px'><script>"
                           "ondragover=e=>{e.preventDefault();document.body.dataset.over=1};"
                           "ondrop=e=>{e.preventDefault();document.title='took '"
                           "+[...e.dataTransfer.items].map(i=>i.webkitGetAsEntry()?.name)}"
                           "</script>");
    go(url(u"/names"_s));
    dropOnTaker(DragAndDrop({plain, other}));
    QTRY_COMPARE(m_session->active()->windowTitle(), u"took a.html"_s);
}

void tst_pagedrops::aThousandFiles()
{
    m_session->server.page("/many",
                           "<title>many</title><body style='height:500px'><script>"
                           "ondragover=e=>{e.preventDefault();document.body.dataset.over=1};"
                           "ondrop=e=>{e.preventDefault();"
                           "document.title='took '+e.dataTransfer.files.length}</script>");
    go(url(u"/many"_s));
    QList<QUrl> files;
    for (int i = 0; i < 1000; ++i)
        files.append(file(u"f%1.txt"_s.arg(i), "x"));
    dropOnTaker(DragAndDrop(files));
    QTRY_COMPARE(m_session->active()->windowTitle(), u"took 1000"_s);
    QCOMPARE(m_session->windows(), 1);
}

void tst_pagedrops::pictureOfAPageOpensAtItsAddress_data()
{
    QTest::addColumn<bool>("hasAddress");
    QTest::newRow("of the web") << true;
    QTest::newRow("made by the page") << false;
}

/// The engine makes a file of it, in which the page would write under an address of the user's.
void tst_pagedrops::pictureOfAPageOpensAtItsAddress()
{
    QFETCH(const bool, hasAddress);
    const QUrl made = file(u"made.html"_s, "<title>made</title>");
    auto *page = qobject_cast<WebView *>(view());
    int asked = 0;
    connect(page->page(), &QWebEnginePage::newWindowRequested, this, [&asked] { ++asked; });
    QVERIFY(DragAndDrop({made}).drop(page));
    // As the view tells of one that is dragged out of a page.
    emit page->dropped(hasAddress ? QStringList{url(u"/one"_s)} : QStringList(), true);
    QTRY_COMPARE(asked, 1);
    if (hasAddress)
        QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    else
        go(url(u"/two"_s));
    QCOMPARE(m_session->windows(), 1);
}

void tst_pagedrops::scriptIsNotRun()
{
    const QUrl run(u"javascript:document.title='ran'"_s);
    DragAndDrop({run}, run.toString()).drop(view());
    QVERIFY(DragAndDrop({QUrl(url(u"/one"_s))}).drop(view()));
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    QCOMPARE(m_session->windows(), 1);
    QTRY_COMPARE(m_session->active()->windowTitle(), u"the quick brown fox"_s);
    QVERIFY(m_session->active()->browser()->goBack());
    QTRY_VERIFY(m_session->shows(url(u"/home"_s)));
    QCOMPARE(script(u"document.title"_s), u"home page"_s);
}

void tst_pagedrops::findFieldLeavesFilesToTheFrame()
{
    m_session->active()->browser()->find();
    auto *field = m_session->active()->findChild<QLineEdit *>();
    QVERIFY(field);
    const QUrl page = file(u"a.html"_s, "x");
    QCOMPARE(DragAndDrop({page}, page.toString()).over(field), Qt::IgnoreAction);
    int opened = 0;
    m_session->frame->opener().setProfileOpener(
        [&opened](const QString &, bool) { return ++opened > 0; });
    const QUrl profile = file(u"day.orp"_s, "x");
    QVERIFY(DragAndDrop({profile}, profile.toString()).drop(field));
    QTRY_COMPARE(opened, 1);
    QVERIFY(field->text().isEmpty());
    QVERIFY(DragAndDrop({}, u"word"_s).drop(field));
    QCOMPARE(field->text(), u"word"_s);
}

ORVANE_ENGINE_TEST_MAIN(tst_pagedrops)
#include "tst_pagedrops.moc"
