#include "ControlScene.h"
#include "EngineTest.h"
#include "HitOverlay.h"
#include "PageFindBar.h"
#include "TempAppFolder.h"
#include "WebView.h"

#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <algorithm>

using namespace Qt::StringLiterals;

/// What the find bar finds in real pages, and what they notice of it.
class tst_PageFind : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void hitsAreCounted();
    void narrowBarHasRoomForItsRows();
    void hitsAreAlongTheScrollBar();
    void wholeWords_data();
    void wholeWords();
    void wholeWordsAreWalked();
    void pageSeesNothingOfWholeWords();
    void pageCannotFoolWholeWords();
    void marksFollowThePage();
    void hitStaysSelected();
    void closedBarLeavesThePageWhereItIs();
    void nextPageIsLookedThrough();
    void lastTextIsKept();
    void againOpensTheBar();
    void hugePages_data();
    void hugePages();

private:
    QtWebBrowser &browser() const { return *m_scene->browser; }
    PageFindBar &bar() const { return *browser().widget()->findChild<PageFindBar *>(); }
    QLineEdit &field() const { return *bar().findChild<QLineEdit *>(); }
    QCheckBox &wholeWord() const { return *bar().findChild<QCheckBox *>(u"chkWholeWord"_s); }
    QString result() const { return bar().findChild<QLabel *>(u"lblResult"_s)->text(); }
    HitOverlay *overlay() const { return m_scene->window.findChild<HitOverlay *>(); }
    void open(const QByteArray &html)
    {
        m_scene->server.page("/page",
                             "<!doctype html><meta charset=utf-8><title>page</title>" + html);
        m_scene->open(m_scene->server.url(u"/page"_s));
        QTRY_VERIFY(paints() > 0);
    }
    int paints() const
    {
        return m_scene->script(u"performance.getEntriesByType('paint').length"_s).toInt();
    }
    void look(const QString &text, bool whole = false)
    {
        browser().find();
        wholeWord().setChecked(whole);
        field().setText(text);
    }

    std::unique_ptr<TempAppFolder> m_folder;
    std::unique_ptr<ControlScene> m_scene;
};

void tst_PageFind::init()
{
    m_folder = std::make_unique<TempAppFolder>();
    TextFinder::last() = {};
    m_scene = std::make_unique<ControlScene>();
}

void tst_PageFind::cleanup()
{
    m_scene.reset();
    m_folder.reset();
}

void tst_PageFind::hitsAreCounted()
{
    open("<p>one two one</p><p>ONE onerous</p>");
    look(u"one"_s);
    QTRY_COMPARE(result(), u"1 of 4"_s);
    QCOMPARE(field().accessibleDescription(), u"1 of 4"_s);
    browser().findAgain(false);
    QTRY_COMPARE(result(), u"2 of 4"_s);
    browser().findAgain(true);
    browser().findAgain(true);
    QTRY_COMPARE(result(), u"4 of 4"_s);
    bar().findChild<QCheckBox *>(u"chkMatchCase"_s)->setChecked(true);
    QTRY_VERIFY(result().endsWith(u"of 3"_s));
    field().setText(u"nowhere"_s);
    QTRY_COMPARE(result(), u"Not found"_s);
    QCOMPARE(field().accessibleDescription(), u"Not found"_s);
    field().clear();
    QTRY_COMPARE(result(), QString());
}

void tst_PageFind::narrowBarHasRoomForItsRows()
{
    open("<p>cat");
    browser().widget()->resize(400, 300);
    look(u"cat"_s);
    const QList<QWidget *> parts = bar().findChildren<QWidget *>(Qt::FindDirectChildrenOnly);
    QVERIFY(parts.size() > 6);
    const auto fits = [&](const QWidget *part) {
        return part->height() >= part->minimumSizeHint().height()
            && bar().rect().contains(part->geometry());
    };
    QTRY_VERIFY(std::all_of(parts.begin(), parts.end(), fits));
    QCOMPARE(bar().height(), bar().sizeHint().height());
}

/// By the engine, or over it: coloured marks where the bar alone has none.
void tst_PageFind::hitsAreAlongTheScrollBar()
{
    QByteArray lines;
    for (int i = 0; i < 200; ++i)
        lines += i % 20 == 0 ? "<p>needle</p>" : "<p>hay</p>";
    open(lines);
    const QWidget *view = m_scene->window.findChild<WebView *>();
    const auto marks = [&] {
        const QImage image =
            m_scene->window.grab(QRect(view->mapTo(&m_scene->window, QPoint()), view->size()))
                .toImage();
        int rows = 0;
        for (int y = 20; y < image.height() - 20; ++y)
            rows += image.pixelColor(image.width() - 7, y).saturation() > 100;
        return rows;
    };
    QCOMPARE(marks(), 0);
    look(u"needle"_s);
    QTRY_COMPARE(result(), u"1 of 10"_s);
    QTRY_VERIFY(marks() >= 9);
    wholeWord().setChecked(true);
    QTRY_COMPARE(result(), u"1 of 10"_s);
    QTRY_VERIFY(browser().page()->selectedText().isEmpty());
    QTRY_VERIFY(overlay() && overlay()->isVisible());
    QTRY_VERIFY(marks() >= 9);
    field().setText(u"needl"_s);
    QTRY_COMPARE(result(), u"Not found"_s);
    QTRY_COMPARE(marks(), 0);
    field().setText(u"needle"_s);
    QTRY_VERIFY(marks() >= 9);
    bar().dismiss();
    QTRY_COMPARE(marks(), 0);
}

void tst_PageFind::wholeWords_data()
{
    QTest::addColumn<QByteArray>("html");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("told");
    QTest::newRow("plain") << QByteArray("<p>one ones on-one (one) stone One_ ONE") << u"one"_s
                           << u"1 of 4"_s;
    QTest::newRow("letters of all scripts")
        << QByteArray("<p>Öl Köln öl Ölung ölÖ") << u"öl"_s << u"1 of 2"_s;
    QTest::newRow("over elements")
        << QByteArray("<p>f<b>o</b>o fo<i>od</i> <span>f</span>oo") << u"foo"_s << u"1 of 2"_s;
    QTest::newRow("not over blocks")
        << QByteArray("<p>fo</p><p>o</p><div>f<div>x</div>oo</div>fo<br>o") << u"foo"_s
        << u"Not found"_s;
    QTest::newRow("words in a row")
        << QByteArray("<p>a\n   cat cat a catalog a&nbsp;cat") << u"a cat"_s << u"1 of 2"_s;
    QTest::newRow("hidden") << QByteArray(
        "<p hidden>foo</p><p>foo</p><script>'foo'</script><style>foo{}</style>"
        "<textarea>foo</textarea>")
                            << u"foo"_s << u"1 of 1"_s;
    QTest::newRow("signs") << QByteArray("<p>c++ c+ (c++) x.c++y a.b axb") << u"c++"_s
                           << u"1 of 3"_s;
    QTest::newRow("no pattern") << QByteArray("<p>a.b axb a.bc") << u"a.b"_s << u"1 of 1"_s;
    QTest::newRow("quotes") << QByteArray("<p>say \"x\\y\" %QUERY%") << u"\"x\\y\""_s
                            << u"1 of 1"_s;
}

void tst_PageFind::wholeWords()
{
    QFETCH(QByteArray, html);
    QFETCH(QString, text);
    QFETCH(QString, told);
    open(html);
    look(text, true);
    QTRY_COMPARE(result(), told);
}

void tst_PageFind::wholeWordsAreWalked()
{
    open("<p>cat</p><p style='margin-top:3000px'>cats cat</p><p style='margin-top:3000px'>cat</p>");
    look(u"cat"_s, true);
    QTRY_COMPARE(result(), u"1 of 3"_s);
    QCOMPARE(m_scene->script(u"scrollY"_s).toInt(), 0);
    browser().findAgain(false);
    QTRY_COMPARE(result(), u"2 of 3"_s);
    QTRY_VERIFY(m_scene->script(u"scrollY"_s).toInt() > 2000);
    browser().findAgain(false);
    QTRY_COMPARE(result(), u"3 of 3"_s);
    browser().findAgain(false);
    QTRY_COMPARE(result(), u"1 of 3"_s);
    QTRY_COMPARE(m_scene->script(u"scrollY < 100 ? 'top' : 'below'"_s), u"top"_s);
    browser().findAgain(true);
    QTRY_COMPARE(result(), u"3 of 3"_s);
    wholeWord().setChecked(false);
    QTRY_VERIFY(result().endsWith(u"of 4"_s));
    QVERIFY(!overlay());
}

void tst_PageFind::pageSeesNothingOfWholeWords()
{
    open(
        "<p id=p>one two one<script>let changes = 0; new MutationObserver(l => changes += l.length)"
        ".observe(document, {subtree: true, childList: true, attributes: true, characterData: "
        "true});"
        "let selections = 0; document.addEventListener('selectionchange', () => ++selections);"
        "const before = Object.keys(window).length</script>");
    look(u"one"_s, true);
    QTRY_COMPARE(result(), u"1 of 2"_s);
    browser().findAgain(false);
    QTRY_COMPARE(result(), u"2 of 2"_s);
    QCOMPARE(m_scene->script(u"[changes, selections, Object.keys(window).length - before, "
                             "typeof orvaneWords].join()"_s),
             u"0,0,0,undefined"_s);
}

void tst_PageFind::pageCannotFoolWholeWords()
{
    open("<img name=documentElement><img name=createTreeWalker><img name=body>"
         "<form><input name=parentNode><input name=localName><input name=scrollIntoView>one"
         "<p>one</p></form><script>"
         "for (const type of [String, RegExp, Array, Set, Range, Element, Node, TreeWalker])"
         "  for (const name of Object.getOwnPropertyNames(type.prototype))"
         "    try { Object.defineProperty(type.prototype, name, {get() { throw 'caught' }}) } "
         "catch {}"
         "</script>");
    look(u"one"_s, true);
    QTRY_COMPARE(result(), u"1 of 2"_s);
    browser().findAgain(false);
    QTRY_COMPARE(result(), u"2 of 2"_s);
}

void tst_PageFind::marksFollowThePage()
{
    open("<p>cat</p><p style='margin-top:3000px'>cat</p>");
    look(u"cat"_s, true);
    QTRY_COMPARE(result(), u"1 of 2"_s);
    const auto yellow = [this] {
        const QImage image = m_scene->window.grab().toImage();
        int count = 0;
        for (int y = 0; y < 60; ++y) {
            for (int x = 0; x < 60; ++x)
                count += image.pixelColor(x, y).saturation() > 60;
        }
        return count;
    };
    QTRY_VERIFY(yellow() > 50);
    m_scene->script(u"scrollTo(0, 1000), 1"_s);
    QTRY_COMPARE(yellow(), 0);
    m_scene->script(u"scrollTo(0, 0), 1"_s);
    QTRY_VERIFY(yellow() > 50);
    browser().setZoom(200);
    QTRY_VERIFY(yellow() > 200);
}

void tst_PageFind::hitStaysSelected()
{
    open("<p>cat cats cat</p>");
    look(u"cat"_s, true);
    QTRY_COMPARE(result(), u"1 of 2"_s);
    browser().findAgain(false);
    QTRY_COMPARE(result(), u"2 of 2"_s);
    bar().dismiss();
    QTRY_COMPARE(m_scene->script(u"String(getSelection()) + getSelection().anchorOffset"_s),
                 u"cat9"_s);
    QVERIFY(!overlay());
}

/// Its first field may be far away.
void tst_PageFind::closedBarLeavesThePageWhereItIs()
{
    open("<p>cat</p><p style='margin-top:5000px'><input id=far>");
    QVERIFY(QTest::qWaitForWindowActive(&m_scene->window));
    look(u"cat"_s);
    QTRY_COMPARE(result(), u"1 of 1"_s);
    QTRY_VERIFY(field().hasFocus());
    QTest::keyClick(&field(), Qt::Key_Escape);
    QVERIFY(bar().isHidden());
    QTRY_VERIFY(m_scene->window.findChild<WebView *>()->focusProxy()->hasFocus());
    QCOMPARE(m_scene->script(u"document.activeElement.id + scrollY"_s), u"0"_s);
}

void tst_PageFind::nextPageIsLookedThrough()
{
    open("<p>cat cats cat</p>");
    look(u"cat"_s, true);
    QTRY_COMPARE(result(), u"1 of 2"_s);
    m_scene->server.page("/next", "<title>next</title><p>cat");
    m_scene->open(m_scene->server.url(u"/next"_s));
    QTRY_COMPARE(result(), u"1 of 1"_s);
    wholeWord().setChecked(false);
    QTRY_COMPARE(result(), u"1 of 1"_s);
    m_scene->open(m_scene->server.url(u"/page"_s));
    QTRY_COMPARE(result(), u"1 of 3"_s);
}

void tst_PageFind::lastTextIsKept()
{
    open("<p>cat cats cat</p>");
    look(u"cat"_s, true);
    QTRY_COMPARE(result(), u"1 of 2"_s);
    m_scene.reset();
    m_scene = std::make_unique<ControlScene>();
    open("<p>a cat, cats</p>");
    browser().find();
    QCOMPARE(field().text(), u"cat"_s);
    QVERIFY(wholeWord().isChecked());
    QTRY_COMPARE(result(), u"1 of 1"_s);
    // What is selected goes before it.
    bar().dismiss();
    m_scene->script(u"getSelection().setBaseAndExtent(document.querySelector('p').firstChild, 0, "
                    "document.querySelector('p').firstChild, 1), 1"_s);
    QTRY_COMPARE(browser().page()->selectedText(), u"a"_s);
    browser().find();
    QCOMPARE(field().text(), u"a"_s);
}

void tst_PageFind::againOpensTheBar()
{
    open("<p>cat cats cat</p>");
    browser().findAgain(false);
    QVERIFY(bar().isVisible());
    QVERIFY(field().text().isEmpty());
    look(u"cats"_s);
    QTRY_COMPARE(result(), u"1 of 1"_s);
    bar().dismiss();
    m_scene.reset();
    m_scene = std::make_unique<ControlScene>();
    open("<p>cats cats</p>");
    browser().findAgain(false);
    QTRY_COMPARE(result(), u"1 of 2"_s);
    QCOMPARE(field().text(), u"cats"_s);
    browser().findAgain(false);
    QTRY_COMPARE(result(), u"2 of 2"_s);
}

void tst_PageFind::hugePages_data()
{
    QTest::addColumn<QByteArray>("html");
    QTest::addColumn<bool>("whole");
    QByteArray lines;
    for (int i = 0; i < 100000; ++i)
        lines += "needle<br>";
    QTest::newRow("100,000 hits") << lines << false;
    QTest::newRow("100,000 words") << lines << true;
    const QByteArray text = "<pre>" + QByteArray("hay hay hay needle hay\n").repeated(450000);
    QTest::newRow("10 MB") << text << false;
    QTest::newRow("10 MB of words") << text << true;
}

/// The interface goes on meanwhile, and an answer comes.
void tst_PageFind::hugePages()
{
    QFETCH(QByteArray, html);
    QFETCH(bool, whole);
    m_scene->server.page("/page", "<title>page</title>" + html);
    browser().navigate(m_scene->server.url(u"/page"_s));
    QTRY_VERIFY_WITH_TIMEOUT(browser().hasDocument() && !browser().isBusy(), 60000);
    look(u"needle"_s, whole);
    // Typed over before the first answer.
    field().setText(u"needle"_s);
    QTRY_VERIFY_WITH_TIMEOUT(result().startsWith(u"1 of"_s), 60000);
    if (whole)
        QVERIFY(result().startsWith(u"1 of more than"_s));
    browser().findAgain(false);
    QTRY_VERIFY_WITH_TIMEOUT(result().startsWith(u"2 of"_s), 60000);
    bar().dismiss();
}

ORVANE_ENGINE_TEST_MAIN(tst_PageFind)
#include "tst_pagefind.moc"
