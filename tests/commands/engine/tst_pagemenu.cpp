#include <QMenu>
#include <QMimeData>
#include <QWebEngineView>
#include <csignal>

#include "../Session.h"
#include "AddFavoriteDialog.h"
#include "EngineTest.h"
#include "FakePrograms.h"
#include "PageAsks.h"
#include "PageQuestions.h"
#include "QtWebBrowser.h"
#include "SourceEditor.h"
#include "SourceWindow.h"
#include "Unlogged.h"
#include "WebPage.h"

using namespace Qt::StringLiterals;

/// The menus that open on pages, in the whole program.
class tst_pagemenu : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { m_programs.add(u"tel"_s, u"Telephone"_s); }
    void init();
    void cleanup();

    void pageItself();
    void stepsOfThePage();
    void link();
    void linkOpensHere();
    void linkOpensInANewWindowWhilePopupsAreKilled();
    void linkOpensBehind();
    void linkOpensPrivately();
    void linkWindow();
    void linkWindowIsChosen();
    void addressAndTextAreCopied();
    void linkBecomesAFavorite();
    void scriptRunsNowhereElse_data();
    void scriptRunsNowhereElse();
    void otherProgramIsAskedFor();
    void image();
    void sound();
    void selection();
    void selectionIsQuoted();
    void selectionIsSearchedFor();
    void selectionIsAnAddress_data();
    void selectionIsAnAddress();
    void field();
    void richField();
    void manyAtOnce();
    void byKeyboard_data();
    void byKeyboard();
    void byKeyboardInAField();
    void pageMayHaveItsOwn();
    void withShiftItIsTheUsers();
    void goesWithThePage_data();
    void goesWithThePage();
    void anotherWindowInFront();
    void scriptOpensNone();

private:
    void open(const QByteArray &body);
    static BrowserWindow *at(int index) { return browserForms().value(index); }
    static WebPage *pageOf(const BrowserWindow *window)
    {
        return qobject_cast<QtWebBrowser *>(window->browser())->page();
    }
    QWidget *view() const
    {
        return m_session->active()->findChild<QWebEngineView *>()->focusProxy();
    }
    QVariant run(const QString &script) const;
    /// Presses the right button on the element with that id, or beside all of them.
    void press(const QString &id, Qt::KeyboardModifiers keys = {}) const;
    QMenu *menuOn(const QString &id, Qt::KeyboardModifiers keys = {}) const
    {
        press(id, keys);
        return menu();
    }
    static QMenu *menu()
    {
        [] { QTRY_VERIFY(QApplication::activePopupWidget()); }();
        return qobject_cast<QMenu *>(QApplication::activePopupWidget());
    }
    static QAction *line(const QMenu *menu, const char *name)
    {
        return menu ? menu->findChild<QAction *>(QLatin1String(name)) : nullptr;
    }
    /// Names of what can be chosen.
    static QStringList lines(const QMenu *menu)
    {
        QStringList names;
        for (const QAction *each : menu->actions()) {
            if (!each->isSeparator() && each->isEnabled())
                names.append(each->objectName());
        }
        return names;
    }
    /// As the user does.
    static void choose(QMenu *menu, const char *name)
    {
        QAction *chosen = line(menu, name);
        QVERIFY2(chosen && chosen->isEnabled(), name);
        QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(chosen).center());
    }
    QString url(const QString &path) const { return m_session->server.url(path); }

    std::unique_ptr<Session> m_session;
    FakePrograms m_programs;
    const Unlogged m_unlogged;
};

void tst_pagemenu::init()
{
    m_session = std::make_unique<Session>();
    QApplication::clipboard()->clear();
}

void tst_pagemenu::cleanup()
{
    if (QWidget *popup = QApplication::activePopupWidget())
        popup->close();
    m_session.reset();
}

void tst_pagemenu::open(const QByteArray &body)
{
    m_session->server.page("/home",
                           "<title>home page</title><body style='height:2000px'>"
                           "<style>#beside{position:fixed;left:500px;top:300px}"
                           "</style><div id=beside></div>"
                               + body);
    m_session->start();
    QTRY_VERIFY(m_session->shows(url(u"/home"_s)));
    // From Qt 6.8 on a menu takes a press for the one that opened it while no mouse was ever seen.
    QTest::mouseMove(m_session->frame->windowHandle(), QPoint());
    // The engine drops what is done to a page before that is painted.
    QTRY_VERIFY(run(u"performance.getEntriesByType('paint').length"_s).toInt() > 0);
}

QVariant tst_pagemenu::run(const QString &script) const
{
    const auto result = std::make_shared<std::optional<QVariant>>();
    pageOf(m_session->active())->runJavaScript(script, [result](const QVariant &value) {
        *result = value;
    });
    [&] { QTRY_VERIFY(*result); }();
    return result->value_or(QVariant());
}

void tst_pagemenu::press(const QString &id, Qt::KeyboardModifiers keys) const
{
    const QVariantList place =
        run(u"var r = document.getElementById('%1').getBoundingClientRect();"
            "[r.left + Math.min(10, r.width / 2), r.top + Math.min(8, r.height / 2)]"_s.arg(id))
            .toList();
    QCOMPARE(place.size(), 2);
    QTest::mouseClick(view(), Qt::RightButton, keys,
                      QPoint(place.at(0).toInt(), place.at(1).toInt()));
}

void tst_pagemenu::pageItself()
{
    open("<p>text");
    QMenu *menu = menuOn(u"beside"_s);
    QCOMPARE(
        lines(menu),
        (QStringList{u"mnuPageReload"_s, u"mnuPageSave"_s, u"mnuPagePrint"_s, u"mnuPageSource"_s,
                     u"mnuPageSourceCame"_s, u"mnuPageTools"_s, u"mnuPageLinkWindow"_s}));
    QCOMPARE(line(menu, "mnuPageReload")->text(), u"&Reload"_s);
    QVERIFY(!menu->actions().first()->isSeparator() && !menu->actions().last()->isSeparator());
    choose(menu, "mnuPageReload");
    QTRY_COMPARE(m_session->server.count("/home"), 2);
    QTRY_VERIFY(m_session->shows(url(u"/home"_s)));
    choose(menuOn(u"beside"_s), "mnuPageSource");
    QTRY_COMPARE(Forms::named("frmSource").size(), 1);
    m_session->frame->activateWindow();
    choose(menuOn(u"beside"_s), "mnuPageSourceCame");
    QTRY_COMPARE(Forms::named("frmSource").size(), 2);
}

void tst_pagemenu::stepsOfThePage()
{
    open("<p>text");
    m_session->frame->navigateActive(url(u"/one"_s));
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    run(u"document.body.insertAdjacentHTML('beforeend', '<p id=beside>text')"_s);
    QTest::mouseClick(view(), Qt::RightButton, {}, QPoint(500, 300));
    QVERIFY(!line(menu(), "mnuPageForward")->isEnabled());
    choose(menu(), "mnuPageBack");
    QTRY_VERIFY(m_session->shows(url(u"/home"_s)));
    QTRY_VERIFY(run(u"performance.getEntriesByType('paint').length"_s).toInt() > 0);
    choose(menuOn(u"beside"_s), "mnuPageForward");
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
}

void tst_pagemenu::link()
{
    open("<a id=a href=/two>the  <b>link</b></a>");
    QCOMPARE(lines(menuOn(u"a"_s)),
             (QStringList{u"mnuLinkOpen"_s, u"mnuLinkNew"_s, u"mnuLinkBehind"_s,
                          u"mnuLinkPrivate"_s, u"mnuLinkWindow"_s, u"mnuLinkSave"_s,
                          u"mnuLinkFavorite"_s, u"mnuLinkCopy"_s, u"mnuLinkCopyText"_s}));
}

void tst_pagemenu::linkOpensHere()
{
    open("<a id=a href=/two>link</a>");
    choose(menuOn(u"a"_s), "mnuLinkOpen");
    QTRY_VERIFY(m_session->shows(url(u"/two"_s)));
    QCOMPARE(m_session->windows(), 1);
}

/// A window that the user opens himself is never refused.
void tst_pagemenu::linkOpensInANewWindowWhilePopupsAreKilled()
{
    open("<a id=a href=/two>link</a>");
    m_session->choose("mnuToolsKillPopUps");
    choose(menuOn(u"a"_s), "mnuLinkNew");
    QTRY_VERIFY(m_session->shows(url(u"/two"_s)));
    QCOMPARE(m_session->windows(), 2);
    m_session->choose("mnuToolsKillPopUps");
}

void tst_pagemenu::linkOpensBehind()
{
    open("<a id=a href=/two>link</a>");
    const BrowserWindow *before = m_session->active();
    const QString shown = m_session->address().text();
    choose(menuOn(u"a"_s), "mnuLinkBehind");
    QTRY_COMPARE(m_session->windows(), 2);
    QTRY_COMPARE(at(1)->windowTitle(), u"Two"_s);
    QCOMPARE(m_session->active(), before);
    QCOMPARE(m_session->address().text(), shown);
    QVERIFY(m_session->tabs().isPressed(before->tabKey()));
    QVERIFY(before->isMaximized());
}

/// And what opens from there is private as well.
void tst_pagemenu::linkOpensPrivately()
{
    open("<a id=a href=/one>link</a>");
    choose(menuOn(u"a"_s), "mnuLinkPrivate");
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    QCOMPARE(m_session->windows(), 2);
    QVERIFY(!at(0)->isPrivate() && at(1)->isPrivate());
    QTRY_VERIFY(run(u"performance.getEntriesByType('paint').length"_s).toInt() > 0);
    run(u"document.querySelector('a').id = 'c'"_s);
    choose(menuOn(u"c"_s), "mnuLinkNew");
    QTRY_COMPARE(m_session->windows(), 3);
    QVERIFY(at(2)->isPrivate());
}

void tst_pagemenu::linkWindow()
{
    open("<a id=a href=/one>link</a><br><br><a id=b href=/two>link</a>");
    choose(menuOn(u"a"_s), "mnuLinkWindow");
    QTRY_COMPARE(m_session->windows(), 2);
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    // Beside each other, the window that has the links stays the active one.
    m_session->choose("mnuWindowTileVertical");
    m_session->frame->findChild<QMdiArea *>()->setActiveSubWindow(at(0));
    choose(menuOn(u"b"_s), "mnuLinkWindow");
    QTRY_COMPARE(at(1)->browser()->locationUrl(), url(u"/two"_s));
    QCOMPARE(m_session->windows(), 2);
    QCOMPARE(m_session->active(), at(0));
    // Out of sight, it comes to the front.
    at(0)->showMaximized();
    QTRY_VERIFY(!at(1)->isSeen());
    choose(menuOn(u"a"_s), "mnuLinkWindow");
    QTRY_COMPARE(m_session->active(), at(1));
    QTRY_COMPARE(m_session->location(), url(u"/one"_s));
    // In the window itself there is nothing to choose.
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    QTRY_VERIFY(run(u"performance.getEntriesByType('paint').length"_s).toInt() > 0);
    run(u"document.querySelector('a').id = 'c'"_s);
    QMenu *own = menuOn(u"c"_s);
    QVERIFY(!line(own, "mnuLinkWindow")->isEnabled());
    own->close();
    // Gone, another takes its place.
    at(1)->close();
    QTRY_COMPARE(m_session->windows(), 1);
    choose(menuOn(u"b"_s), "mnuLinkWindow");
    QTRY_COMPARE(m_session->windows(), 2);
}

void tst_pagemenu::linkWindowIsChosen()
{
    open("<a id=a href=/two>link</a>");
    QMenu *menu = menuOn(u"beside"_s);
    QVERIFY(!line(menu, "mnuPageLinkWindow")->isChecked());
    choose(menu, "mnuPageLinkWindow");
    m_session->frame->openBrowserWindow(url(u"/one"_s), WindowState::AsOthers);
    QTRY_VERIFY(m_session->shows(url(u"/one"_s)));
    QTRY_VERIFY(run(u"performance.getEntriesByType('paint').length"_s).toInt() > 0);
    run(u"document.querySelector('a').id = 'a'"_s);
    choose(menuOn(u"a"_s), "mnuLinkWindow");
    QTRY_COMPARE(at(0)->browser()->locationUrl(), url(u"/two"_s));
    QTRY_COMPARE(m_session->active(), at(0));
    QTRY_VERIFY(m_session->shows(url(u"/two"_s)));
    QTRY_VERIFY(run(u"performance.getEntriesByType('paint').length"_s).toInt() > 0);
    QTest::mouseClick(view(), Qt::RightButton, {}, QPoint(500, 300));
    QVERIFY(line(this->menu(), "mnuPageLinkWindow")->isChecked());
    choose(this->menu(), "mnuPageLinkWindow");
    QTest::mouseClick(view(), Qt::RightButton, {}, QPoint(500, 300));
    QVERIFY(!line(this->menu(), "mnuPageLinkWindow")->isChecked());
}

void tst_pagemenu::addressAndTextAreCopied()
{
    open("<a id=a href='/two?a=1&amp;b=%20ü'>the\n  <b>link</b></a>");
    choose(menuOn(u"a"_s), "mnuLinkCopy");
    QCOMPARE(QApplication::clipboard()->text(), url(u"/two?a=1&b=%20%C3%BC"_s));
    choose(menuOn(u"a"_s), "mnuLinkCopyText");
    QCOMPARE(QApplication::clipboard()->text(), u"the link"_s);
}

void tst_pagemenu::linkBecomesAFavorite()
{
    open("<a id=a href=/two>the link</a>");
    choose(menuOn(u"a"_s), "mnuLinkFavorite");
    AddFavoriteDialog *dialog = nullptr;
    QTRY_VERIFY((dialog = m_session->frame->findChild<AddFavoriteDialog *>()));
    QCOMPARE(dialog->findChild<QLineEdit *>()->text(), u"the link"_s);
    dialog->reject();
}

void tst_pagemenu::scriptRunsNowhereElse_data()
{
    QTest::addColumn<QByteArray>("address");
    QTest::newRow("script") << QByteArray("javascript:document.title='ran'");
    QTest::newRow("script, in disguise") << QByteArray(" JAVA\tscript:document.title='ran'");
    QTest::newRow("file") << QByteArray("file:///etc/hostname");
    QTest::newRow("source of a file") << QByteArray("view-source:file:///etc/hostname");
    QTest::newRow("data") << QByteArray("data:text/html,<title>data</title>");
    QTest::newRow("inner file") << QByteArray("qrc:/qt-project.org");
    QTest::newRow("engine") << QByteArray("chrome://version");
}

/// What a click on the link would not do either, no window of the user's does.
void tst_pagemenu::scriptRunsNowhereElse()
{
    QFETCH(QByteArray, address);
    open("<a id=a href=\"" + address.replace("\t", "&#9;") + "\">the link</a>");
    QMenu *menu = menuOn(u"a"_s);
    QCOMPARE(lines(menu), (QStringList{u"mnuLinkCopy"_s, u"mnuLinkCopyText"_s}));
    for (const char *name :
         {"mnuLinkOpen", "mnuLinkNew", "mnuLinkBehind", "mnuLinkPrivate", "mnuLinkWindow"})
        QVERIFY(!line(menu, name));
}

void tst_pagemenu::otherProgramIsAskedFor()
{
    open("<a id=a href=tel:1>call</a>");
    QMenu *menu = menuOn(u"a"_s);
    QCOMPARE(lines(menu), (QStringList{u"mnuLinkOpen"_s, u"mnuLinkCopy"_s, u"mnuLinkCopyText"_s}));
    choose(menu, "mnuLinkOpen");
    const PageQuestions *questions = m_session->active()->questions();
    QTRY_VERIFY(questions->shownQuestion());
    QVERIFY(PageAsks::textOf(qobject_cast<PageQuestionBox *>(questions->shownQuestion()))
                .endsWith("tel:1"_L1));
    QCOMPARE(m_session->windows(), 1);
    QCOMPARE(m_session->location(), url(u"/home"_s));
}

void tst_pagemenu::image()
{
    TestServer::Reply picture;
    picture.type = "image/svg+xml";
    picture.body = "<svg xmlns='http://www.w3.org/2000/svg' width='60' height='60'>"
                   "<rect width='60' height='60' fill='red'/></svg>";
    m_session->server.reply("/picture.svg", picture);
    open("<img id=a src=/picture.svg width=60 height=60>");
    QTRY_VERIFY(run(u"document.getElementById('a').complete"_s).toBool());
    QMenu *menu = menuOn(u"a"_s);
    QCOMPARE(lines(menu),
             (QStringList{u"mnuImageOpen"_s, u"mnuImageSave"_s, u"mnuImageCopy"_s,
                          u"mnuImageCopyAddress"_s}));
    choose(menu, "mnuImageCopyAddress");
    QCOMPARE(QApplication::clipboard()->text(), url(u"/picture.svg"_s));
    choose(menuOn(u"a"_s), "mnuImageCopy");
    QTRY_VERIFY(QApplication::clipboard()->mimeData()->hasImage());
    choose(menuOn(u"a"_s), "mnuImageOpen");
    QTRY_COMPARE(m_session->windows(), 2);
    QTRY_COMPARE(m_session->location(), url(u"/picture.svg"_s));
}

void tst_pagemenu::sound()
{
    TestServer::Reply sound;
    sound.type = "audio/wav";
    constexpr int samples = 80'000;
    sound.body = QByteArray::fromHex("52494646") + QByteArray::fromHex("a4380100") + "WAVEfmt "
        + QByteArray::fromHex("1000000001000100401f0000401f000001000800") + "data"
        + QByteArray::fromHex("80380100") + QByteArray(samples, char(0x80));
    m_session->server.reply("/sound.wav", sound);
    open("<audio id=a src=/sound.wav controls preload=auto></audio>");
    QTRY_VERIFY(run(u"document.getElementById('a').readyState >= 2"_s).toBool());
    QMenu *menu = menuOn(u"a"_s);
    QVERIFY(line(menu, "mnuMediaPlay") && !line(menu, "mnuMediaPause"));
    QVERIFY(line(menu, "mnuMediaControls")->isChecked());
    QVERIFY(!line(menu, "mnuMediaRepeat")->isChecked());
    QVERIFY(line(menu, "mnuMediaSave")->isEnabled());
    choose(menu, "mnuMediaRepeat");
    QTRY_VERIFY(run(u"document.getElementById('a').loop"_s).toBool());
    menu = menuOn(u"a"_s);
    QVERIFY(line(menu, "mnuMediaRepeat")->isChecked());
    choose(menu, "mnuMediaMute");
    QTRY_VERIFY(run(u"document.getElementById('a').muted"_s).toBool());
    choose(menuOn(u"a"_s), "mnuMediaPlay");
    QTRY_VERIFY(!run(u"document.getElementById('a').paused"_s).toBool());
    menu = menuOn(u"a"_s);
    QVERIFY(!line(menu, "mnuMediaPlay"));
    choose(menu, "mnuMediaPause");
    QTRY_VERIFY(run(u"document.getElementById('a').paused"_s).toBool());
    choose(menuOn(u"a"_s), "mnuMediaCopyAddress");
    QCOMPARE(QApplication::clipboard()->text(), url(u"/sound.wav"_s));
}

void tst_pagemenu::selection()
{
    open("<p id=a>some words &amp; more</p>");
    run(u"getSelection().selectAllChildren(document.getElementById('a'))"_s);
    QMenu *menu = menuOn(u"a"_s);
    QVERIFY(!line(menu, "mnuPageReload") && !line(menu, "mnuTextOpen"));
    choose(menu, "mnuTextCopy");
    QTRY_COMPARE(QApplication::clipboard()->text(), u"some words & more"_s);
}

void tst_pagemenu::selectionIsQuoted()
{
    open("<p id=a>1 &lt; 2</p><p id=b>second</p>");
    run(u"getSelection().setBaseAndExtent(document.getElementById('a'), 0,"
        "document.getElementById('b'), 1)"_s);
    choose(menuOn(u"a"_s), "mnuTextQuote");
    QTRY_COMPARE(Forms::named("frmSource").size(), 1);
    const auto *source = qobject_cast<SourceWindow *>(Forms::named("frmSource").first());
    const QString quote = u"<blockquote cite=\"%1\">\r\n<p>1 &lt; 2</p>\r\n<p>second</p>\r\n"
                          "</blockquote>\r\n"_s.arg(url(u"/home"_s));
    QCOMPARE(source->editor().text(), quote);
    // Another goes behind the first, where the caret is.
    m_session->frame->activateWindow();
    choose(menuOn(u"a"_s), "mnuTextQuote");
    QCOMPARE(Forms::named("frmSource").size(), 1);
    QCOMPARE(source->editor().text(), quote + quote);
}

void tst_pagemenu::selectionIsSearchedFor()
{
    m_session->folder.write(u"AppData/SearchEngines.ini"_s,
                            "[Engines]\r\nCount=2\r\nURL1=One\r\nURL2=Rock & Roll\r\n"
                            "[Engine URLs]\r\nOne=http://127.0.0.1:1/\r\nRock & Roll="
                                + url(u"/find?q=<SearchString>&x=1"_s).toUtf8()
                                + "\r\n[Data]\r\nSearchSelection=1\r\n");
    m_session->server.page("/find", "<title>found</title>");
    open("<p id=a>C#  &amp; 100% = fine, and so on for a long while</p>");
    run(u"getSelection().selectAllChildren(document.getElementById('a'))"_s);
    QMenu *menu = menuOn(u"a"_s);
    QCOMPARE(line(menu, "mnuTextSearch")->text(),
             u"&Search Rock && Roll for \"C# && 100% = fine, and so on f\u2026\""_s);
    choose(menu, "mnuTextSearch");
    QTRY_VERIFY(!m_session->server.requests("/find").isEmpty());
    QCOMPARE(m_session->server.requests("/find").first().path,
             QByteArray("/find?q=C%23%20%26%20100%25%20%3D%20fine%2C%20and%20so%20on%20for%20a%20"
                        "long%20while&x=1"));
    QCOMPARE(m_session->windows(), 2);
}

void tst_pagemenu::selectionIsAnAddress_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("caption");
    QTest::newRow("with a scheme")
        << u"https://example.org/a?b=1&c"_s << u"&Open https://example.org/a?b=1&&c"_s;
    QTest::newRow("without") << u"(example.org/a)."_s << u"&Open http://example.org/a"_s;
    QTest::newRow("in brackets") << u"<http://example.org/tree_(plant)>"_s
                                 << u"&Open http://example.org/tree_(plant)"_s;
    QTest::newRow("who it is not")
        << u"https://bank.example@example.org/"_s << u"&Open https://example.org/"_s;
    QTest::newRow("words") << u"no address"_s << QString();
    QTest::newRow("script") << u"javascript:alert(1)"_s << QString();
    QTest::newRow("file") << u"file:///etc/hostname"_s << QString();
    QTest::newRow("local path") << u"/etc/hostname"_s << QString();
    QTest::newRow("mail") << u"me@example.org"_s << QString();
    QTest::newRow("two") << u"example.org example.com"_s << QString();
}

void tst_pagemenu::selectionIsAnAddress()
{
    QFETCH(QString, text);
    QFETCH(QString, caption);
    open("<p id=a>" + text.toHtmlEscaped().toUtf8() + "</p>");
    run(u"getSelection().selectAllChildren(document.getElementById('a'))"_s);
    const QAction *open = line(menuOn(u"a"_s), "mnuTextOpen");
    QCOMPARE(open ? open->text() : QString(), caption);
}

void tst_pagemenu::field()
{
    open("<input id=a value='some words'>");
    run(u"document.getElementById('a').select()"_s);
    QMenu *menu = menuOn(u"a"_s);
    QVERIFY(!line(menu, "mnuFieldPasteText") && !line(menu, "mnuTextQuote"));
    QVERIFY(!line(menu, "mnuTextCopy"));
    const auto value = [this] { return run(u"document.getElementById('a').value"_s).toString(); };
    choose(menu, "mnuFieldCut");
    QTRY_COMPARE(value(), QString());
    QTRY_COMPARE(QApplication::clipboard()->text(), u"some words"_s);
    choose(menuOn(u"a"_s), "mnuFieldUndo");
    QTRY_COMPARE(value(), u"some words"_s);
    choose(menuOn(u"a"_s), "mnuFieldRedo");
    QTRY_COMPARE(value(), QString());
    choose(menuOn(u"a"_s), "mnuFieldPaste");
    QTRY_COMPARE(value(), u"some words"_s);
    choose(menuOn(u"a"_s), "mnuFieldSelectAll");
    QTRY_COMPARE(run(u"document.getElementById('a').selectionEnd"_s).toInt(), 10);
    QApplication::clipboard()->setText(u"other"_s);
    choose(menuOn(u"a"_s), "mnuFieldCopy");
    QTRY_COMPARE(QApplication::clipboard()->text(), u"some words"_s);
    choose(menuOn(u"a"_s), "mnuFieldDelete");
    QTRY_COMPARE(value(), QString());
    menu = menuOn(u"a"_s);
    QVERIFY(!line(menu, "mnuFieldCut")->isEnabled() && !line(menu, "mnuFieldDelete")->isEnabled());
}

void tst_pagemenu::richField()
{
    open("<p>text</p><div id=a contenteditable style='height:40px'></div>");
    auto *formatted = new QMimeData;
    formatted->setHtml(u"<b>bold</b>"_s);
    formatted->setText(u"bold"_s);
    QApplication::clipboard()->setMimeData(formatted);
    run(u"document.getElementById('a').focus()"_s);
    choose(menuOn(u"a"_s), "mnuFieldPasteText");
    const auto markup = u"document.getElementById('a').innerHTML"_s;
    QTRY_COMPARE(run(markup).toString(), u"bold"_s);
}

void tst_pagemenu::manyAtOnce()
{
    open("<a href=/two><img id=a src=/picture.png alt=words width=60 height=60></a>");
    run(u"getSelection().selectAllChildren(document.body)"_s);
    const QMenu *menu = menuOn(u"a"_s);
    for (const char *name : {"mnuLinkOpen", "mnuImageCopyAddress"})
        QVERIFY2(line(menu, name), name);
    QVERIFY(!line(menu, "mnuPageReload"));
    bool wasGap = true;
    for (const QAction *each : menu->actions()) {
        QVERIFY(!(wasGap && each->isSeparator()));
        wasGap = each->isSeparator();
    }
    QVERIFY(!wasGap);
}

void tst_pagemenu::byKeyboard_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::addColumn<Qt::KeyboardModifiers>("modifiers");
    QTest::newRow("Shift+F10") << Qt::Key_F10 << Qt::KeyboardModifiers(Qt::ShiftModifier);
    QTest::newRow("Menu") << Qt::Key_Menu << Qt::KeyboardModifiers();
}

void tst_pagemenu::byKeyboard()
{
    QFETCH(Qt::Key, key);
    QFETCH(Qt::KeyboardModifiers, modifiers);
    open("<p style='height:100px'>text</p><a id=a href=/two>link</a>");
    view()->setFocus();
    run(u"document.getElementById('a').focus()"_s);
    QTest::keyClick(view()->window()->windowHandle(), key, modifiers);
    QMenu *opened = menu();
    QVERIFY(line(opened, "mnuLinkOpen"));
    const int top = run(u"document.getElementById('a').getBoundingClientRect().top"_s).toInt();
    QVERIFY(opened->y() >= view()->mapToGlobal(QPoint(0, top)).y() - 5);
    // By its access key.
    QTest::keyClick(opened, Qt::Key_L);
    QTRY_VERIFY(m_session->shows(url(u"/two"_s)));
}

void tst_pagemenu::byKeyboardInAField()
{
    open("<input id=a value=words>");
    view()->setFocus();
    run(u"document.getElementById('a').select()"_s);
    QTest::keyClick(view(), Qt::Key_F10, Qt::ShiftModifier);
    QVERIFY(line(menu(), "mnuFieldCut")->isEnabled());
}

void tst_pagemenu::pageMayHaveItsOwn()
{
    open("<p id=a style='height:30px'>text</p><script>addEventListener('contextmenu', e => {"
         "e.preventDefault(); document.title = 'own' })</script>");
    press(u"a"_s);
    QTRY_COMPARE(m_session->active()->windowTitle(), u"own"_s);
    QVERIFY(!QApplication::activePopupWidget());
}

void tst_pagemenu::withShiftItIsTheUsers()
{
    open("<p id=a style='height:30px' oncontextmenu='return false'>text</p><script>"
         "for (const each of [window, document, document.documentElement])"
         "each.addEventListener('contextmenu', e => { e.preventDefault();"
         "e.stopImmediatePropagation(); document.title = 'own' }, true)</script>");
    QVERIFY(line(menuOn(u"a"_s, Qt::ShiftModifier), "mnuPageReload"));
    QCOMPARE(m_session->active()->windowTitle(), u"home page"_s);
}

void tst_pagemenu::goesWithThePage_data()
{
    QTest::addColumn<QString>("how");
    for (const char *how : {"page goes on", "window closes", "process ends", "program ends"})
        QTest::newRow(how) << QString::fromLatin1(how);
}

void tst_pagemenu::goesWithThePage()
{
    QFETCH(QString, how);
    open("<a id=a href=/two>link</a>");
    const QPointer<QMenu> opened = menuOn(u"a"_s);
    QVERIFY(opened);
    if (how == "page goes on"_L1)
        run(u"setTimeout(() => { location = '/one' })"_s);
    else if (how == "window closes"_L1)
        m_session->active()->close();
    else if (how == "process ends"_L1)
        QCOMPARE(::kill(pid_t(pageOf(m_session->active())->renderProcessPid()), SIGKILL), 0);
    else
        m_session->end();
    QTRY_VERIFY(!opened);
    QVERIFY(!QApplication::activePopupWidget());
}

/// The line acts in the window that it was opened in.
void tst_pagemenu::anotherWindowInFront()
{
    open("<p id=a>text");
    BrowserWindow *first = m_session->active();
    QMenu *opened = menuOn(u"beside"_s);
    m_session->frame->openBrowserWindow(url(u"/one"_s), WindowState::AsOthers);
    QVERIFY(m_session->active() != first);
    choose(opened, "mnuPageReload");
    QTRY_COMPARE(m_session->server.count("/home"), 2);
    QCOMPARE(m_session->active(), first);
    QTRY_COMPARE(m_session->server.count("/one"), 1);
}

void tst_pagemenu::scriptOpensNone()
{
    open("<a id=a href=/two>link</a>");
    QCOMPARE(run(u"for (let i = 0; i < 1000; ++i) document.getElementById('a').dispatchEvent("
                 "new MouseEvent('contextmenu', {bubbles: true, cancelable: true, button: 2}));"
                 "1"_s)
                 .toInt(),
             1);
    QVERIFY(!QApplication::activePopupWidget());
    // Those of the user's take each other's place.
    for (int i = 0; i < 5; ++i)
        QVERIFY(menuOn(u"a"_s));
    QTRY_COMPARE(m_session->frame->findChildren<QMenu *>(u"mnuPage"_s).size(), 1);
}

ORVANE_ENGINE_TEST_MAIN(tst_pagemenu)
#include "tst_pagemenu.moc"
