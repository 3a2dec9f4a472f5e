// Addresses that are other programs' on this desktop, as pages ask for them.
#include "EngineTest.h"
#include "FakePrograms.h"
#include "PageAsks.h"
#include "PopupScene.h"
#include "SitePermissions.h"
#include "StatusStrip.h"

#include <QLoggingCategory>
#include <QMessageBox>
#include <QTest>

using namespace Qt::StringLiterals;

class tst_outside : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void clickOnALinkIsAskedAbout();
    void everyClickIsAskedAbout();
    void answerIsRemembered_data();
    void answerIsRemembered();
    void whatIsNotKeptIsTold();
    void othersAnswersAreNotUsed();
    void anotherPageInItsPlace_data();
    void anotherPageInItsPlace();
    void addressIsOneArgument();
    void withoutAProgramTheStatusSaysSo();
    void whatNothingOpensIsNotAskedAbout_data();
    void whatNothingOpensIsNotAskedAbout();
    void longAddressIsNotAskedAbout();
    void longAddressIsShownCut();
    void aFloodIsOneQuestion_data();
    void aFloodIsOneQuestion();
    void frameIsNamedAsOne();
    void frameOfAnotherSiteThatUsesTheTop();
    void whoSendsThereIsNamed();
    void windowForItGoes_data();
    void windowForItGoes();
    void questionGoesWithThePage_data();
    void questionGoesWithThePage();
    void windowClosedWhileItIsLookedFor();
    void pagesMenuAsksInItsWindow();
    void silencedPageIsNotHeard();

private:
    PageQuestionBox *question() const { return PageAsks::shownIn(m_form); }
    QString status() const { return m_form->statusBar()->text(); }
    QString site(const TestServer &server, const QString &host = u"127.0.0.1"_s) const
    {
        return u"http://%1:%2"_s.arg(host).arg(server.port());
    }
    void open(const QByteArray &html) { m_form = m_scene->openPage(html, true); }
    void run(const QString &code) const { PopupScene::script(m_form, code + u"; 1"_s); }

    FakePrograms m_programs;
    std::unique_ptr<PopupScene> m_scene;
    QPointer<BrowserWindow> m_form;
};

void tst_outside::initTestCase()
{
    m_programs.add(u"tel"_s, u"Telephone & Co."_s);
    m_programs.add(u"orvane-call"_s, u"Caller"_s);
}

void tst_outside::init()
{
    m_programs.forget();
    m_scene = std::make_unique<PopupScene>();
    QVERIFY(m_scene->isReady());
    m_scene->server.page("/other",
                         "<title>other</title><button id=c>c</button>"
                         "<script>c.onclick = () => opener.location = 'tel:1'</script>");
    m_scene->server.redirect("/call", "tel:302");
}

void tst_outside::cleanup()
{
    m_scene.reset();
}

void tst_outside::clickOnALinkIsAskedAbout()
{
    open("<a id=a href='tel:+49-30'>call</a>");
    PopupScene::click(m_form, u"a"_s);
    QTRY_VERIFY(question());
    QVERIFY(!QApplication::activeModalWidget());
    QCOMPARE(PageAsks::askerOf(question()), site(m_scene->server));
    QCOMPARE(PageAsks::textOf(question()).split(u'\n'),
             QStringList({u"This page wants to open another program:"_s, u"Telephone & Co."_s,
                          u"tel:+49-30"_s}));
    QCOMPARE(m_programs.opened(), QStringList());
    PageAsks::press(PageAsks::yes(question()));
    QTRY_COMPARE(m_programs.opened(), QStringList(u"1 arguments: tel:+49-30"_s));
    QTRY_COMPARE(m_form->windowTitle(), u"opener"_s);
    QVERIFY(!question());
}

/// Refused once, it is asked about when the user clicks once more, and not when a script does.
void tst_outside::everyClickIsAskedAbout()
{
    open("<a id=a href='tel:1'>call</a>");
    for (int i = 0; i < 3; ++i) {
        PopupScene::click(m_form, u"a"_s);
        QTRY_VERIFY(question());
        PageAsks::press(PageAsks::no(question()));
        QTRY_VERIFY(!question());
        run(u"for (let i = 0; i < 10; ++i) location = 'tel:2'"_s);
        QTRY_VERIFY(!m_form->browser()->isBusy());
        QVERIFY(!question());
    }
    QCOMPARE(m_programs.opened(), QStringList());
}

void tst_outside::answerIsRemembered_data()
{
    QTest::addColumn<bool>("allows");
    QTest::newRow("open") << true;
    QTest::newRow("not") << false;
}

/// For the site and the kind of address; still, a script does not start one after the other.
void tst_outside::answerIsRemembered()
{
    QFETCH(const bool, allows);
    open("<a id=a href='tel:1'>call</a><a id=b href='orvane-call:1'>other</a>");
    PopupScene::click(m_form, u"a"_s);
    QTRY_VERIFY(question());
    auto *remember = question()->findChild<QCheckBox *>(u"chkRemember"_s);
    QVERIFY(remember && remember->isVisible() && !remember->isChecked());
    remember->setChecked(true);
    PageAsks::press(allows ? PageAsks::yes(question()) : PageAsks::no(question()));
    QTRY_COMPARE(m_programs.opened().size(), allows ? 1 : 0);
    PopupScene::click(m_form, u"a"_s);
    QTRY_COMPARE(m_programs.opened().size(), allows ? 2 : 0);
    if (!allows)
        QTRY_COMPARE(status(), u" This address is not opened: tel:1"_s);
    QVERIFY(!question());
    run(u"for (let i = 0; i < 100; ++i) location = 'tel:2'"_s);
    QTRY_VERIFY(!m_form->browser()->isBusy());
    PopupScene::click(m_form, u"b"_s);
    QTRY_VERIFY(question());
    QVERIFY(PageAsks::textOf(question()).contains("orvane-call:1"_L1));
    QCOMPARE(m_programs.opened().size(), allows ? 2 : 0);
    const QList<SitePermissions::Answer> kept = SitePermissions::all();
    QCOMPARE(kept.size(), 1);
    QCOMPARE(kept.first().site.name(), site(m_scene->server));
    QCOMPARE(kept.first().scheme, u"tel"_s);
}

/// The answer itself holds.
void tst_outside::whatIsNotKeptIsTold()
{
    QVERIFY(QDir(m_scene->folder.path()).mkpath(u"AppData/Permissions.ini"_s));
    open("<a id=a href='tel:1'>call</a>");
    PopupScene::click(m_form, u"a"_s);
    QTRY_VERIFY(question());
    question()->findChild<QCheckBox *>(u"chkRemember"_s)->setChecked(true);
    PageAsks::press(PageAsks::yes(question()));
    QTRY_VERIFY(QApplication::activeModalWidget());
    const auto *told = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    QVERIFY(told);
    QVERIFY2(told->text().contains("Permissions.ini"_L1), qPrintable(told->text()));
    QApplication::activeModalWidget()->close();
    QTRY_COMPARE(m_programs.opened(), QStringList(u"1 arguments: tel:1"_s));
}

/// A frame does not get what the page around it may, and no page what another one may.
void tst_outside::othersAnswersAreNotUsed()
{
    const AskingSite own = AskingSite::of(QUrl(site(m_scene->server)), QUrl(site(m_scene->server)));
    QVERIFY(bool(
        SitePermissions::keep(own, {Permission::Program}, SitePermissions::Word::Allow, u"tel"_s)));
    m_scene->server.page("/frame", "<script>location = 'tel:1'</script>");
    open("<iframe src='" + m_scene->server.url(u"/frame"_s, u"localhost"_s).toUtf8()
         + "'></iframe>");
    QTRY_VERIFY(question());
    QVERIFY(!question()->findChild<QCheckBox *>(u"chkRemember"_s));
    m_form->browser()->navigate(m_scene->server.url(u"/frame"_s, u"localhost"_s));
    QTRY_VERIFY(question()
                && PageAsks::askerOf(question()) == site(m_scene->server, u"localhost"_s));
    QCOMPARE(m_programs.opened(), QStringList());
}

void tst_outside::anotherPageInItsPlace_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("page that opened its window") << 0;
    QTest::newRow("page in a window that it opened") << 1;
    QTest::newRow("frame of another site") << 2;
    QTest::newRow("site that a link leads over") << 3;
}

/// What the user allowed a site for good does not start programs for others, and nobody asks in its
/// name alone.
void tst_outside::anotherPageInItsPlace()
{
    QFETCH(const int, way);
    const QUrl bank(site(m_scene->server));
    QVERIFY(bool(SitePermissions::keep(AskingSite::of(bank, bank), {Permission::Program},
                                       SitePermissions::Word::Allow, u"tel"_s)));
    const auto other = [this](const QString &path) {
        return m_scene->server.url(path, u"localhost"_s).toUtf8();
    };
    const QByteArray opens = "<button id=b>b</button><script>b.onclick = () => { w = open('";
    if (way == 0) {
        m_scene->server.page("/bank", "bank");
        m_scene->server.page("/opening",
                             opens + site(m_scene->server).toUtf8() + "/bank') }</script>");
        BrowserWindow *opening = m_scene->frame.open(QString::fromUtf8(other(u"/opening"_s)), true);
        PopupScene::waitUntilLoaded(opening);
        PopupScene::click(opening, u"b"_s);
        m_form = PopupScene::waitForPopup();
        PopupScene::waitUntilLoaded(m_form);
        PopupScene::script(opening, u"w.location = 'tel:1'; 1"_s);
    } else if (way == 1) {
        open(opens + other(u"/other"_s) + "') }</script>");
        PopupScene::click(m_form, u"b"_s);
        BrowserWindow *opened = PopupScene::waitForPopup();
        PopupScene::waitUntilLoaded(opened);
        PopupScene::click(opened, u"c"_s);
    } else if (way == 2) {
        m_scene->server.page(
            "/frame", "<a target=_top href='tel:1' style='display:block;height:140px'>a</a>");
        open("<iframe id=f src='" + other(u"/frame"_s) + "'></iframe>");
        // A frame of another process takes clicks only once it is painted.
        QTRY_VERIFY((PopupScene::click(m_form, u"f"_s), question()));
    } else {
        open("<a id=a href='" + other(u"/call"_s) + "'>a</a>");
        PopupScene::click(m_form, u"a"_s);
    }
    QTRY_VERIFY(question());
    QVERIFY(PageAsks::textOf(question()).startsWith("This page, a frame in it or a page tied"_L1));
    QVERIFY(!question()->findChild<QCheckBox *>(u"chkRemember"_s));
    QCOMPARE(m_programs.opened(), QStringList());
}

void tst_outside::addressIsOneArgument()
{
    open("<a id=a>call</a><script>a.href = 'tel:1\" $(touch x) `y`; z|&\\'%u \\n-e'</script>");
    PopupScene::click(m_form, u"a"_s);
    QTRY_VERIFY(question());
    QVERIFY(!PageAsks::textOf(question()).contains(u'\r'));
    QCOMPARE(PageAsks::textOf(question()).count(u'\n'), 2);
    PageAsks::press(PageAsks::yes(question()));
    QTRY_COMPARE(m_programs.opened().size(), 1);
    const QString got = m_programs.opened().first();
    QVERIFY2(got.startsWith("1 arguments: tel:1"_L1), qPrintable(got));
    QVERIFY2(got.contains("touch"_L1) && got.endsWith("-e"_L1), qPrintable(got));
}

void tst_outside::withoutAProgramTheStatusSaysSo()
{
    open("<a id=a href='orvane-nosuch:thing'>x</a>");
    PopupScene::click(m_form, u"a"_s);
    QTRY_COMPARE(status(), u" There is no program for this address: orvane-nosuch:thing"_s);
    QVERIFY(!question());
    QTRY_COMPARE(m_form->windowTitle(), u"opener"_s);
}

void tst_outside::whatNothingOpensIsNotAskedAbout_data()
{
    QTest::addColumn<QString>("address");
    for (const char *each : {"vbscript:x", "ws://127.0.0.1/", "filesystem:http://127.0.0.1/x"})
        QTest::newRow(each) << QString::fromLatin1(each);
}

void tst_outside::whatNothingOpensIsNotAskedAbout()
{
    QFETCH(const QString, address);
    open("<a id=a href='tel:1'>call</a>");
    run(u"location = '%1'"_s.arg(address));
    QTRY_VERIFY(!m_form->browser()->isBusy());
    QVERIFY(!question());
    // What comes after it is asked about, and it was not.
    PopupScene::click(m_form, u"a"_s);
    QTRY_VERIFY(question());
    QVERIFY(PageAsks::textOf(question()).endsWith("tel:1"_L1));
}

void tst_outside::longAddressIsNotAskedAbout()
{
    open("x");
    run(u"location = 'tel:' + '1'.repeat(100000)"_s);
    QTRY_VERIFY(status().startsWith(u" This address is not opened: tel:111"_s));
    QVERIFY(status().size() < 300);
    QVERIFY(!question());
}

void tst_outside::longAddressIsShownCut()
{
    open("x");
    run(u"location = 'tel:' + '1'.repeat(5000)"_s);
    QTRY_VERIFY(question());
    QVERIFY(PageAsks::textOf(question()).size() < 400);
    PageAsks::press(PageAsks::yes(question()));
    QTRY_COMPARE(m_programs.opened(), QStringList(u"1 arguments: tel:"_s + QString(5000, u'1')));
}

void tst_outside::aFloodIsOneQuestion_data()
{
    QTest::addColumn<QString>("each");
    QTest::addColumn<int>("number");
    QTest::newRow("script") << u"location = 'tel:' + i"_s << 1000;
    QTest::newRow("frames") << u"const f = document.createElement('iframe'); f.src = 'tel:' + i;"_s
                               u"document.body.append(f)"_s
                            << 1000;
    QTest::newRow("windows") << u"window.open('tel:' + i)"_s << 200;
    QTest::newRow("windows, later")
        << u"{ const w = window.open(''); if (w) w.location = 'tel:' + i }"_s << 10;
    QTest::newRow("clicks") << u"{ const a = document.createElement('a'); a.href = 'tel:' + i;"
                               "document.body.append(a); a.click() }"_s
                            << 1000;
    QTest::newRow("many kinds") << u"location = (i % 2 ? 'tel:' : 'orvane-call:') + i"_s << 1000;
}

/// As the page comes, and once more after the answer.
void tst_outside::aFloodIsOneQuestion()
{
    QFETCH(const QString, each);
    QFETCH(const int, number);
    QLoggingCategory::setFilterRules(u"orvane.engine.info=false"_s);
    const QString flood = u"for (let i = 0; i < %1; ++i) { %2 }"_s.arg(number).arg(each);
    open("x<script>addEventListener('load', () => { " + flood.toUtf8() + " })</script>");
    QTRY_VERIFY(question());
    const QPointer<PageQuestionBox> first = question();
    QTRY_VERIFY(!m_form->browser()->isBusy());
    run(flood);
    QTRY_VERIFY(!m_form->browser()->isBusy());
    QCOMPARE(PageAsks::countIn(m_form), 1);
    QCOMPARE(question(), first);
    PageAsks::press(PageAsks::yes(first));
    QTRY_COMPARE(m_programs.opened().size(), 1);
    run(flood);
    run(u"document.title = 'through'"_s);
    QTRY_COMPARE(m_form->windowTitle(), u"through"_s);
    for (const BrowserWindow *form : browserForms())
        QTRY_COMPARE(PageAsks::countIn(form), 0);
    QCOMPARE(m_programs.opened().size(), 1);
    QLoggingCategory::setFilterRules({});
}

void tst_outside::frameIsNamedAsOne()
{
    m_scene->server.page("/frame", "<script>location = 'tel:1'</script>");
    open("<iframe src='" + m_scene->server.url(u"/frame"_s, u"localhost"_s).toUtf8()
         + "'></iframe>");
    QTRY_VERIFY(question());
    QCOMPARE(PageAsks::askerOf(question()), site(m_scene->server));
    QVERIFY(PageAsks::textOf(question()).startsWith("A frame in this page wants"_L1));
}

/// The engine keeps it from that, as its user did nothing with it.
void tst_outside::frameOfAnotherSiteThatUsesTheTop()
{
    m_scene->server.page("/frame",
                         "<script>try { top.location = 'tel:1' } catch { }"
                         "parent.postMessage('tried', '*')</script>");
    open("<script>onmessage = e => document.title = e.data</script><iframe src='"
         + m_scene->server.url(u"/frame"_s, u"localhost"_s).toUtf8() + "'></iframe>");
    QTRY_COMPARE(m_form->windowTitle(), u"tried"_s);
    QTRY_VERIFY(!m_form->browser()->isBusy());
    QCOMPARE(PageAsks::countIn(m_form), 0);
}

void tst_outside::whoSendsThereIsNamed()
{
    open("x");
    m_form->browser()->navigate(m_scene->server.url(u"/call"_s, u"localhost"_s));
    QTRY_VERIFY(question());
    QCOMPARE(PageAsks::askerOf(question()), site(m_scene->server, u"localhost"_s));
    QVERIFY(PageAsks::textOf(question()).endsWith("tel:302"_L1));
    QTRY_VERIFY(!m_form->browser()->isBusy());
    QTRY_COMPARE(m_form->windowTitle(), u"opener"_s);
}

void tst_outside::windowForItGoes_data()
{
    QTest::addColumn<QByteArray>("code");
    QTest::newRow("for it") << QByteArray("window.open('tel:302')");
    QTest::newRow("without opener") << QByteArray("window.open('tel:302', '', 'noopener')");
    QTest::newRow("sent there") << QByteArray("window.open('/call')");
    QTest::newRow("empty at first")
        << QByteArray("{ const w = window.open(''); w.location = 'tel:302' }");
    QTest::newRow("blank at first")
        << QByteArray("{ const w = window.open('about:blank'); w.location = 'tel:302' }");
}

void tst_outside::windowForItGoes()
{
    QFETCH(const QByteArray, code);
    open("<button id=b>b</button><script>b.onclick = () => { " + code + " }</script>");
    PopupScene::click(m_form, u"b"_s);
    QTRY_VERIFY(question());
    QTRY_COMPARE(PopupScene::popups().size(), 0);
    QVERIFY(question());
    QVERIFY(PageAsks::textOf(question()).endsWith("tel:302"_L1));
    PageAsks::press(PageAsks::yes(question()));
    QTRY_COMPARE(m_programs.opened(), QStringList(u"1 arguments: tel:302"_s));
}

void tst_outside::questionGoesWithThePage_data()
{
    QTest::addColumn<int>("way");
    QTest::newRow("another page") << 0;
    QTest::newRow("window closed") << 1;
    QTest::newRow("page that leaves") << 2;
}

void tst_outside::questionGoesWithThePage()
{
    QFETCH(const int, way);
    open(way == 2 ? "<script>onload = () => { location = 'tel:1';"
                    "setTimeout(() => location = '/other', 100) }</script>"
                  : "<script>onload = () => { location = 'tel:1' }</script>");
    if (way < 2)
        QTRY_VERIFY(question());
    if (way == 0)
        m_form->browser()->navigate(m_scene->server.url(u"/other"_s));
    else if (way == 1)
        m_form->close();
    if (way == 1)
        QTRY_VERIFY(!m_form);
    else
        QTRY_COMPARE(m_form->windowTitle(), u"other"_s);
    QVERIFY(!question());
    QCOMPARE(m_programs.opened(), QStringList());
}

void tst_outside::windowClosedWhileItIsLookedFor()
{
    for (int i = 0; i < 5; ++i) {
        open("<script>onload = () => { location = 'tel:1' }</script>");
        m_form->unload();
        QTRY_VERIFY(!m_form);
    }
    open("<a id=a href='tel:1'>call</a>");
    PopupScene::click(m_form, u"a"_s);
    QTRY_VERIFY(question());
    QCOMPARE(m_programs.opened(), QStringList());
}

void tst_outside::pagesMenuAsksInItsWindow()
{
    open("<a id=a href='tel:1'>call</a>");
    m_form->browser()->followLink(u"tel:1"_s);
    QTRY_VERIFY(question());
    QCOMPARE(PopupScene::popups().size(), 0);
    QVERIFY(PageAsks::textOf(question()).endsWith("tel:1"_L1));
}

void tst_outside::silencedPageIsNotHeard()
{
    open("<a id=a href='tel:1'>call</a>");
    for (int i = 0; i < 2; ++i) {
        PopupScene::click(m_form, u"a"_s);
        QTRY_VERIFY(question());
        if (PageAsks::noMore(question()))
            PageAsks::noMore(question())->setChecked(true);
        PageAsks::press(PageAsks::no(question()));
        QTRY_VERIFY(!question());
    }
    PopupScene::click(m_form, u"a"_s);
    QTRY_COMPARE(status(), u" This address is not opened: tel:1"_s);
    QVERIFY(!question());
}

ORVANE_ENGINE_TEST_MAIN(tst_outside)
#include "tst_outside.moc"
