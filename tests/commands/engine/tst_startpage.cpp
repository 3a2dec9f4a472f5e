// The program's own start page: what it offers opens, only the user gets there, and a home page
// that cannot be reached has it too.
#include <QJsonArray>
#include <QJsonDocument>
#include <QTcpServer>

#include "../EngineSession.h"
#include "Answer.h"
#include "ClosedWindows.h"
#include "EngineTest.h"
#include "FavoritesHome.h"
#include "PageScripts.h"
#include "StartContents.h"

using namespace Qt::StringLiterals;

class tst_StartPage : public QObject, private EngineSession {
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void isTypedLikeAnyAddress_data();
    void isTypedLikeAnyAddress();
    void isTheHomePageIfWanted();
    void offersFavorites();
    void offersAFewOfManyFavorites();
    void favoriteOpensHere();
    void favoriteOfAFileOpens();
    void offersProfiles();
    void profileThatIsGone();
    void closedWindowComesBack();
    void staysOutOfClosedWindows();
    void searches();
    void withoutAnEngineNothingIsSearched();
    void withNothingToOffer();
    void titlesAreTexts();
    void backAndForth();
    void reloadShowsWhatIsNew();
    void inAPrivateWindow();
    void withScriptsOff();
    void homePageThatCannotBeReached_data();
    void homePageThatCannotBeReached();
    void otherPageThatCannotBeReached();
    void linesOfAPageChooseNothing();

private:
    static constexpr auto startPage = "orvane:start"_L1;

    /// The texts of the links below a heading.
    QStringList offered(const QString &heading) const
    {
        const QString json =
            script(u"JSON.stringify([...document.querySelectorAll('section')].filter(s => "
                   u"s.querySelector('h2').textContent === '%1').flatMap(s => "
                   u"[...s.querySelectorAll('a')].map(a => a.textContent)))"_s.arg(heading));
        QStringList texts;
        for (const auto &text : QJsonDocument::fromJson(json.toUtf8()).array())
            texts.append(text.toString());
        return texts;
    }
    void press(const QString &text) const
    {
        script(
            u"[...document.querySelectorAll('a')].find(a => a.textContent === '%1').click()"_s.arg(
                text));
    }
    bool isFilled() const
    {
        return script(u"!!document.getElementById('startParts')"_s) == "true"_L1;
    }
    void openStart() const
    {
        go(startPage);
        QTRY_VERIFY(isFilled());
    }
    /// With the page "/two".
    void profile(const QString &name) const
    {
        QVERIFY(m_session->folder.write("Profiles/"_L1 + name + ".orp"_L1,
                                        "[Profile_URLS]\r\nURL1=" + url(u"/two"_s).toUtf8()
                                            + "\r\n[URL_Count]\r\nCount=1\r\n"));
    }
    void engines(const QByteArray &file) const
    {
        QVERIFY(m_session->folder.write(u"AppData/SearchEngines.ini"_s, file));
    }

    /// A server that has gone.
    static QString nobody()
    {
        QTcpServer server;
        server.listen(QHostAddress::LocalHost);
        return "http://127.0.0.1:"_L1 + QString::number(server.serverPort());
    }
    void close(const QString &path) const
    {
        for (BrowserWindow *window : browserForms()) {
            if (window->browser()->locationUrl() == url(path))
                window->close();
        }
    }

    std::unique_ptr<FavoritesHome> m_home;
};

void tst_StartPage::init()
{
    ClosedWindows::clear();
    m_home = std::make_unique<FavoritesHome>();
    begin();
}

void tst_StartPage::cleanup()
{
    finish();
    m_home.reset();
}

void tst_StartPage::isTypedLikeAnyAddress_data()
{
    QTest::addColumn<QString>("typed");
    QTest::newRow("as it is") << u"orvane:start"_s;
    QTest::newRow("large letters") << u"Orvane:START"_s;
    QTest::newRow("with blanks") << u"  orvane:start "_s;
}

void tst_StartPage::isTypedLikeAnyAddress()
{
    QFETCH(const QString, typed);
    start();
    m_session->typeAddress(typed);
    QTRY_VERIFY(m_session->shows(startPage));
    QTRY_COMPARE(m_session->active()->windowTitle(), u"Start"_s);
    QCOMPARE(m_session->address().text(), QString(startPage));
}

void tst_StartPage::isTheHomePageIfWanted()
{
    QVERIFY(m_session->folder.setSetting(u"Settings"_s, u"Home-URL"_s, startPage));
    m_session->start();
    QTRY_VERIFY(m_session->shows(startPage));
    QTRY_VERIFY(isFilled());
}

void tst_StartPage::offersFavorites()
{
    m_home->writeLink(u"Links/bar.url"_s, "http://127.0.0.1/bar");
    m_home->writeLink(u"b.url"_s, "http://127.0.0.1/b");
    m_home->writeLink(u"A.url"_s, "http://127.0.0.1/a");
    m_home->writeLink(u"folder/below.url"_s, "http://127.0.0.1/below");
    m_home->write(u"not one.txt"_s, "x");
    start();
    openStart();
    QCOMPARE(offered(u"Favorites"_s), QStringList({u"bar"_s, u"A"_s, u"b"_s}));
}

void tst_StartPage::offersAFewOfManyFavorites()
{
    for (int i = 0; i < 1000; ++i)
        m_home->writeLink(u"%1.url"_s.arg(i, 4, 10, QChar(u'0')), "http://127.0.0.1/");
    start();
    openStart();
    const QStringList shown = offered(u"Favorites"_s);
    QCOMPARE(shown.size(), StartContents::mostFavorites);
    QCOMPARE(shown.first(), u"0000"_s);
}

void tst_StartPage::favoriteOpensHere()
{
    m_home->writeLink(u"one.url"_s, url(u"/one"_s).toUtf8());
    start();
    openStart();
    press(u"one"_s);
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    QCOMPARE(m_session->windows(), 1);
    QVERIFY(!m_session->server.requests("/one").first().headers.contains("referer"));
}

/// No page of the engine's may lead there by itself.
void tst_StartPage::favoriteOfAFileOpens()
{
    m_session->folder.write(u"page.html"_s, "<title>of a file</title>");
    const QString file = u"file://"_s + m_session->folder.file(u"page.html"_s);
    m_home->writeLink(u"file.url"_s, file.toUtf8());
    start();
    openStart();
    press(u"file"_s);
    QTRY_COMPARE(m_session->active()->windowTitle(), u"of a file"_s);
}

void tst_StartPage::offersProfiles()
{
    const QString file = m_session->folder.file(u"Profiles/my set.orp"_s);
    profile(u"my set"_s);
    start();
    m_session->frame->openProfile(file, true);
    QTRY_VERIFY(m_session->shows(url(u"/two"_s)));
    openStart();
    QCOMPARE(offered(u"Recent Profiles"_s), QStringList(u"my set"_s));
    const int before = m_session->windows();
    press(u"my set"_s);
    QTRY_COMPARE(m_session->windows(), before + 1);
    QTRY_VERIFY(m_session->shows(url(u"/two"_s)));
}

void tst_StartPage::profileThatIsGone()
{
    const QString file = m_session->folder.file(u"Profiles/gone.orp"_s);
    profile(u"gone"_s);
    start();
    m_session->frame->openProfile(file, true);
    QTRY_VERIFY(m_session->shows(url(u"/two"_s)));
    openStart();
    QCOMPARE(offered(u"Recent Profiles"_s), QStringList(u"gone"_s));
    QVERIFY(QFile::remove(file));
    const Answer answer(QMessageBox::Ok);
    press(u"gone"_s);
    QTRY_COMPARE(answer.count(), 1);
    QVERIFY(answer.text().contains("not there any more"_L1));
    m_session->choose("mnuViewRefresh");
    QTRY_COMPARE(offered(u"Recent Profiles"_s), QStringList());
}

void tst_StartPage::closedWindowComesBack()
{
    start();
    for (const QString &path : {u"/one"_s, u"/two"_s}) {
        m_session->frame->openBrowserWindow(url(path), WindowState::AsOthers);
        QTRY_VERIFY(m_session->shows(url(path)));
    }
    QTRY_COMPARE(m_session->active()->windowTitle(), u"Two"_s);
    close(u"/two"_s);
    close(u"/one"_s);
    QTRY_COMPARE(m_session->windows(), 1);
    QTRY_VERIFY(m_session->active());
    openStart();
    QCOMPARE(offered(u"Recently Closed Windows"_s),
             QStringList({u"the quick brown fox"_s, u"Two"_s}));
    press(u"Two"_s);
    QTRY_COMPARE(m_session->windows(), 2);
    QTRY_VERIFY(m_session->shows(url(u"/two"_s)));
    QCOMPARE(ClosedWindows::all().size(), 1);
}

/// The page can be opened at any time.
void tst_StartPage::staysOutOfClosedWindows()
{
    start();
    openStart();
    m_session->active()->close();
    QTRY_COMPARE(m_session->windows(), 0);
    QVERIFY(ClosedWindows::isEmpty());
}

void tst_StartPage::searches()
{
    engines("[Engines]\r\nCount=1\r\nURL1=Mine\r\n[Engine URLs]\r\nMine="
            + url(u"/found"_s).toUtf8() + "?q=<SearchString>\r\n[Data]\r\nSearchSelection=0\r\n");
    m_session->server.page("/found", "<title>found</title>");
    start();
    openStart();
    QCOMPARE(script(u"document.querySelector('#startSearch').placeholder"_s),
             u"Search with Mine"_s);
    script(u"document.querySelector('#startSearch').value = 'a&b=c \u00e4';"
           u"document.querySelector('form').requestSubmit()"_s);
    QTRY_COMPARE(m_session->active()->windowTitle(), u"found"_s);
    QCOMPARE(m_session->server.requests("/found").first().path,
             QByteArray("/found?q=a%26b%3Dc%20%C3%A4"));
}

void tst_StartPage::withoutAnEngineNothingIsSearched()
{
    start();
    openStart();
    QCOMPARE(script(u"document.querySelectorAll('form').length"_s), u"0"_s);
}

void tst_StartPage::withNothingToOffer()
{
    start();
    openStart();
    QVERIFY(script(u"document.body.innerText"_s).contains("will be offered here"_L1));
}

/// Of a page that calls itself what it likes.
void tst_StartPage::titlesAreTexts()
{
    m_session->server.page("/bad",
                           "<title>&lt;img src=x onerror=alert(1)&gt;%MARK%%PARTS%\u202e"
                           "</title>x");
    start();
    m_session->frame->openBrowserWindow(url(u"/bad"_s), WindowState::AsOthers);
    QTRY_VERIFY(m_session->active()->windowTitle().contains("onerror"_L1));
    m_session->active()->close();
    QTRY_COMPARE(m_session->windows(), 1);
    openStart();
    QCOMPARE(script(u"document.querySelectorAll('img').length"_s), u"0"_s);
    const QString shown = offered(u"Recently Closed Windows"_s).value(0);
    QVERIFY2(shown.startsWith("<img src=x onerror=alert(1)>%MARK%%PARTS%"_L1), qPrintable(shown));
}

void tst_StartPage::backAndForth()
{
    start();
    openStart();
    go(url(u"/one"_s));
    m_session->active()->browser()->goBack();
    QTRY_VERIFY(m_session->shows(startPage));
    QTRY_VERIFY(isFilled());
    m_session->active()->browser()->goForward();
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
}

void tst_StartPage::reloadShowsWhatIsNew()
{
    start();
    openStart();
    QCOMPARE(offered(u"Favorites"_s), QStringList());
    m_home->writeLink(u"new.url"_s, "http://127.0.0.1/");
    m_session->choose("mnuViewRefresh");
    QTRY_COMPARE(offered(u"Favorites"_s), QStringList(u"new"_s));
}

void tst_StartPage::inAPrivateWindow()
{
    m_home->writeLink(u"one.url"_s, url(u"/one"_s).toUtf8());
    start();
    m_session->frame->openPrivateWindow(startPage, WindowState::AsOthers);
    QTRY_VERIFY(m_session->shows(startPage));
    QTRY_VERIFY(isFilled());
    press(u"one"_s);
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    QVERIFY(m_session->active()->isPrivate());
}

void tst_StartPage::withScriptsOff()
{
    m_home->writeLink(u"one.url"_s, url(u"/one"_s).toUtf8());
    EngineOptions options;
    options.scripts = false;
    start(options);
    openStart();
    QCOMPARE(offered(u"Favorites"_s), QStringList(u"one"_s));
}

void tst_StartPage::homePageThatCannotBeReached_data()
{
    QTest::addColumn<QString>("path");
    QTest::newRow("without a path") << QString();
    QTest::newRow("with a slash") << u"/"_s;
    QTest::newRow("with a path") << u"/home"_s;
}

/// So that a start without a network is of use.
void tst_StartPage::homePageThatCannotBeReached()
{
    QFETCH(const QString, path);
    m_home->writeLink(u"one.url"_s, url(u"/one"_s).toUtf8());
    const QString home = nobody() + path;
    QVERIFY(m_session->folder.setSetting(u"Settings"_s, u"Home-URL"_s, home));
    m_session->start();
    QTRY_VERIFY(script(u"document.body.innerText"_s).contains("This is your home page"_L1));
    QVERIFY(script(u"document.body.innerText"_s).contains("refused the connection"_L1));
    QCOMPARE(offered(u"Favorites"_s), QStringList(u"one"_s));
    press(u"one"_s);
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
}

void tst_StartPage::otherPageThatCannotBeReached()
{
    m_home->writeLink(u"one.url"_s, url(u"/one"_s).toUtf8());
    start();
    m_session->frame->navigateActive(nobody() + "/other"_L1);
    QTRY_VERIFY(script(u"document.body.innerText"_s).contains("refused the connection"_L1));
    QCOMPARE(offered(u"Favorites"_s), QStringList());
}

/// Even one that knew the mark of the program's own lines.
void tst_StartPage::linesOfAPageChooseNothing()
{
    start();
    go(url(u"/one"_s));
    const QString line = u"console.debug('"_s + PageScripts::mark()
        + u"' + JSON.stringify(['chosen', true, JSON.stringify(['favorite', '"_s + url(u"/two"_s)
        + u"'])])); console.debug('after')"_s;
    script(line);
    go(url(u"/home"_s));
    QCOMPARE(m_session->server.count("/two"), 0);
}

ORVANE_ENGINE_TEST_MAIN(tst_StartPage)
#include "tst_startpage.moc"
