// What pages ask their user for: place, notifications, camera, microphone, screen, pointer.
#include "EngineProfile.h"
#include "EngineTest.h"
#include "EngineVersion.h"
#include "PageAsks.h"
#include "PagePermissions.h"
#include "PageQuestions.h"
#include "PermissionRules.h"
#include "PopupScene.h"
#include "SitePermissions.h"
#include "Unlogged.h"

#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDir>
#include <QMdiArea>
#include <QMessageBox>
#include <QProcess>
#include <QTest>

using namespace Qt::StringLiterals;
using SitePermissions::Word;

class tst_permissions : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void allowed_data();
    void allowed();
    void refused_data();
    void refused();
    void afterAClick_data();
    void afterAClick();
    void oneAnswerIsForOneQuestion();
    void allAllowedIsAllGranted();
    void refusalEndsWhatNobodyWaitsFor();
    void twoWindowsOfASiteAreOneQuestion_data();
    void twoWindowsOfASiteAreOneQuestion();
    void bothAreOneQuestion();
    void answerHoldsWhileThePageIsThere();
    void nextPageAsksAnew();
    void sameQuestionIsAskedOnce();
    void rememberedAnswersAtOnce_data();
    void rememberedAnswersAtOnce();
    void keptOutOfHistoryIsNotRemembered();
    void whatCannotBeKeptIsTold();
    void frameAsksInItsOwnName();
    void frameInAnotherPageIsAnother();
    void framesOwnAnswerIsNotThePages();
    void sandboxedFrameIsRefused();
    void documentsWithoutASite_data();
    void documentsWithoutASite();
    void emptyWindowAsksForItsOpener();
    void plainConnectionIsRefused();
    void notificationsOfFramesAreRefused();
    void navigationAnswersNo_data();
    void navigationAnswersNo();
    void whoTakesBackTooMuchIsRefused();
    void closingAnswersNo();
    void closesItselfWhileAsking_data();
    void closesItselfWhileAsking();
    void endOfTheRendererAnswersNo();
    void aThousandRequests();
    void aHundredFrames();
    void firstScriptOfAPageIsHeard();
    void whatIsHeardBeforeItsPageStays();
    void useAheadOfItsPageIsShown();
    // The engine's own search for the place may stand still after it.
    void yesIsNotForAFrameElsewhere();

private:
    QString site() const { return m_scene->server.url(QString()); }
    void run(const QString &code) const { PopupScene::script(m_form, code + u"; 1"_s); }
    QString log() const { return PopupScene::script(m_form, u"log.join(' | ')"_s).toString(); }
    PageQuestionBox *shown() const { return PageAsks::shownIn(m_form); }
    /// Waits for the question, and presses a button of it until it is taken.
    void answer(bool yes, bool isForGood = false) const
    {
        QTRY_VERIFY(shown());
        const QPointer<PageQuestionBox> box = shown();
        if (isForGood) {
            auto *remember = box->findChild<QCheckBox *>(u"chkRemember"_s);
            QVERIFY(remember && remember->isVisible());
            remember->setChecked(true);
        }
        PageAsks::press(yes ? PageAsks::yes(box) : PageAsks::no(box));
    }
    /// The window hears only now that the page it shows has come.
    void comeLate() const
    {
        WebPage *page = PopupScene::control(m_form)->page();
        page->noteArrival();
        m_form->questions()->pageChanged(page->committedUrl());
    }
    static std::optional<Word> kept(const QString &site, Permission permission)
    {
        return SitePermissions::answer(AskingSite::of(QUrl(site), QUrl(site)), permission);
    }

    std::unique_ptr<PopupScene> m_scene;
    QPointer<BrowserWindow> m_form;
};

namespace {
/// What a page asks with, and what it was told. Of the place: 1 is refused, 2 that nobody knows it,
/// which the engine leaves the page to find out at times, by a limit that begins with the leave, or
/// with the request where another one waits.
/// For fonts it waits, as the engine may hear of that before it hears of the click.
const QByteArray script = R"(<script>
var log = [];
const told = name => value => { log.push(name + ' ' + value) };
const stream = name => [s => { log.push(name + ' yes'); window.stream = s },
                        e => { log.push(name + ' ' + e.name) }];
const ask = {
  place(limit = 8000) {
    navigator.geolocation.getCurrentPosition(
        told('place yes'), e => told('place')(e.code === 3 ? 2 : e.code), {timeout: limit});
  },
  notifications() { Notification.requestPermission().then(told('notifications')) },
  microphone() { navigator.mediaDevices.getUserMedia({audio: true}).then(...stream('microphone')) },
  camera() { navigator.mediaDevices.getUserMedia({video: true}).then(...stream('camera')) },
  pointer() {
    document.onpointerlockchange = () => log.push('pointer ' + !!document.pointerLockElement);
    document.onpointerlockerror = () => log.push('pointer error');
    document.body.requestPointerLock();
  },
  screen() { navigator.mediaDevices.getDisplayMedia({video: true}).then(...stream('screen')) },
  clipboard() {
    navigator.clipboard.readText().then(t => log.push('clipboard ' + t), e => log.push('clipboard ' + e.name));
  },
  fonts() {
    setTimeout(() => queryLocalFonts().then(f => log.push('fonts ' + (f.length > 0)),
                                            e => log.push('fonts ' + e.name)), 200);
  },
  both() { navigator.mediaDevices.getUserMedia({video: true, audio: true}).then(...stream('both')) },
};
onmessage = event => { log.push(event.data) };
</script>)";

/// A frame that asks as soon as it is there, and tells the top what came of it.
QByteArray frame(const char *what)
{
    return "<body>" + script + "<script>log.push = text => top.postMessage(text, '*');ask."
        + QByteArray(what) + "()</script>";
}
}

void tst_permissions::init()
{
    m_scene = std::make_unique<PopupScene>();
    QVERIFY(m_scene->isReady());
    for (const char *what : {"place", "notifications", "camera"})
        m_scene->server.page(QByteArray("/frame-") + what, frame(what));
    m_scene->server.page("/other", "<title>other</title>" + script);
    m_form = m_scene->openPage(script, true);
}

void tst_permissions::cleanup()
{
    m_scene.reset();
}

void tst_permissions::allowed_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("told");
    QTest::newRow("place") << u"place"_s << u"where you are"_s << u"place 2"_s;
    QTest::newRow("notifications")
        << u"notifications"_s << u"notifications"_s << u"notifications granted"_s;
    QTest::newRow("microphone") << u"microphone"_s << u"your microphone"_s << u"microphone yes"_s;
    QTest::newRow("camera") << u"camera"_s << u"your camera"_s << u"camera yes"_s;
}

void tst_permissions::allowed()
{
    QFETCH(QString, what);
    QFETCH(QString, text);
    QFETCH(QString, told);
    run(u"ask."_s + what + u"()"_s);
    QTRY_VERIFY(shown());
    QCOMPARE(PageAsks::askerOf(shown()), site());
    QVERIFY(PageAsks::textOf(shown()).contains(text));
    QCOMPARE(log(), QString());
    QCOMPARE(PageAsks::yes(shown())->text().remove(u'&'), u"Allow"_s);
    QCOMPARE(PageAsks::no(shown())->text().remove(u'&'), u"Refuse"_s);
    answer(true);
    QTRY_COMPARE(log(), told);
    QVERIFY(SitePermissions::all().isEmpty());
}

void tst_permissions::refused_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("told");
    QTest::newRow("place") << u"place"_s << u"place 1"_s;
    QTest::newRow("notifications") << u"notifications"_s << u"notifications denied"_s;
    QTest::newRow("microphone") << u"microphone"_s << u"microphone NotAllowedError"_s;
    QTest::newRow("camera") << u"camera"_s << u"camera NotAllowedError"_s;
    QTest::newRow("both") << u"both"_s << u"both NotAllowedError"_s;
}

void tst_permissions::refused()
{
    QFETCH(QString, what);
    QFETCH(QString, told);
    run(u"ask."_s + what + u"()"_s);
    answer(false);
    QTRY_COMPARE(log(), told);
    // It holds: the page need not try.
    run(u"log = []; ask."_s + what + u"()"_s);
    QTRY_COMPARE(log(), told);
    QVERIFY(!shown());
    QVERIFY(SitePermissions::all().isEmpty());
}

void tst_permissions::afterAClick_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<bool>("yes");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("told");
    QTest::newRow("pointer") << u"pointer"_s << true << u"mouse pointer"_s << u"pointer true"_s;
    QTest::newRow("pointer refused")
        << u"pointer"_s << false << u"mouse pointer"_s << u"pointer error"_s;
    QTest::newRow("screen") << u"screen"_s << true << u"your screen"_s << u"screen yes"_s;
    QTest::newRow("screen refused")
        << u"screen"_s << false << u"your screen"_s << u"screen NotAllowedError"_s;
#if ORVANE_HAS_PERMISSION_OBJECTS
    QTest::newRow("clipboard") << u"clipboard"_s << true << u"clipboard"_s << u"clipboard copied"_s;
    QTest::newRow("clipboard refused")
        << u"clipboard"_s << false << u"clipboard"_s << u"clipboard NotAllowedError"_s;
    QTest::newRow("fonts") << u"fonts"_s << true << u"fonts"_s << u"fonts true"_s;
    // The engine tells of none then, and no error.
    QTest::newRow("fonts refused") << u"fonts"_s << false << u"fonts"_s << u"fonts false"_s;
#endif
}

/// What the engine lets a page ask for after an act of its user only.
void tst_permissions::afterAClick()
{
    QFETCH(QString, what);
    QFETCH(bool, yes);
    QFETCH(QString, text);
    QFETCH(QString, told);
    m_form = m_scene->openPage(
        script + "<button id=b onclick='ask." + what.toUtf8() + "()'>b</button>", true);
    QApplication::clipboard()->setText(u"copied"_s);
    run(u"ask."_s + what + u"()"_s);
    PopupScene::click(m_form, u"b"_s);
    QTRY_VERIFY2(shown(), qPrintable(log()));
    QVERIFY(PageAsks::textOf(shown()).contains(text));
    QCOMPARE(PageAsks::askerOf(shown()), site());
    if (auto *choice = shown()->findChild<QComboBox *>(u"cboScreen"_s)) {
        QTRY_VERIFY(choice->count() > 0);
        choice->setCurrentIndex(0);
    }
    answer(yes);
    QTRY_VERIFY2(log().endsWith(told), qPrintable(log()));
}

/// Where the engine has but one answer for both, the yes holds for what the page asks next.
void tst_permissions::oneAnswerIsForOneQuestion()
{
    run(u"ask.notifications(); ask.place()"_s);
    QTRY_VERIFY(shown());
    const QPointer<PageQuestionBox> first = shown();
    answer(true);
    QTRY_VERIFY(shown() && shown() != first);
    QVERIFY(!log().contains("place"_L1));
    answer(false);
    QTRY_VERIFY(log().contains("place 1"_L1));
    QTRY_VERIFY(log().contains("notifications "_L1));
    run(u"log = []; ask.notifications()"_s);
    QTRY_COMPARE(log(), u"notifications granted"_s);
    QVERIFY(!shown());
    run(u"log = []; ask.place()"_s);
    QTRY_COMPARE(log(), u"place 1"_s);
}

void tst_permissions::allAllowedIsAllGranted()
{
    run(u"ask.notifications(); ask.place()"_s);
    QTRY_VERIFY(shown());
    const QPointer<PageQuestionBox> first = shown();
    answer(true);
    QTRY_VERIFY(shown() && shown() != first);
    answer(true);
    QTRY_VERIFY(log().contains("place 2"_L1));
    QTRY_VERIFY(log().contains("notifications granted"_L1));
}

void tst_permissions::refusalEndsWhatNobodyWaitsFor()
{
    if (!answersAreForAllKinds)
        QSKIP("The engine has an answer for each request.");
    run(u"ask.notifications(); ask.place()"_s);
    answer(false);
    QTRY_VERIFY(log().contains("place 1"_L1));
    QTRY_VERIFY(!shown());
    run(u"log = []; ask.place()"_s);
    answer(true);
    QTRY_COMPARE(log(), u"place 2"_s);
}

void tst_permissions::twoWindowsOfASiteAreOneQuestion_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<bool>("yes");
    QTest::addColumn<QString>("told");
    QTest::newRow("allowed") << u"place"_s << true << u"place 2"_s;
    QTest::newRow("refused") << u"place"_s << false << u"place 1"_s;
    QTest::newRow("allowed notifications")
        << u"notifications"_s << true << u"notifications granted"_s;
    QTest::newRow("refused notifications")
        << u"notifications"_s << false << u"notifications denied"_s;
}

/// The engine tells both, so neither is left with a question that nobody waits for.
void tst_permissions::twoWindowsOfASiteAreOneQuestion()
{
    QFETCH(QString, what);
    QFETCH(bool, yes);
    QFETCH(QString, told);
    const QPointer<BrowserWindow> first = m_scene->openPage(script);
    m_form = m_scene->openPage(script);
    first->move(m_form->geometry().bottomRight() - QPoint(200, 200));
    for (const BrowserWindow *each : {first.data(), m_form.data()}) {
        PopupScene::script(each, u"ask.%1(); 1"_s.arg(what));
        QTRY_VERIFY(PageAsks::shownIn(each));
    }
    answer(yes);
    QTRY_COMPARE(log(), told);
    QTRY_VERIFY(!PageAsks::shownIn(first));
    m_form = first;
    QTRY_COMPARE(log(), told);
    run(u"log = []; ask.%1()"_s.arg(what));
    QTRY_COMPARE(log(), told);
    QVERIFY(!shown());
    QVERIFY(SitePermissions::all().isEmpty());
}

/// In another page a site is another one who asks, though the engine does not tell them apart.
void tst_permissions::yesIsNotForAFrameElsewhere()
{
    m_scene->server.page("/around",
                         script + "<iframe allow='geolocation *' src='"
                             + m_scene->server.url(u"/frame-place"_s).toUtf8() + "'></iframe>");
    const QPointer<BrowserWindow> around =
        m_scene->frame.open(m_scene->server.url(u"/around"_s, u"localhost"_s));
    PopupScene::waitUntilLoaded(around);
    QTRY_VERIFY(PageAsks::shownIn(around));
    m_form = m_scene->openPage(script);
    run(u"ask.place()"_s);
    answer(true);
    QTRY_VERIFY(!shown());
    const auto toldAround = [&around] {
        return PopupScene::script(around, u"log.join(' | ')"_s).toString();
    };
    QCOMPARE(toldAround(), QString());
    QVERIFY(PageAsks::shownIn(around));
    PageAsks::press(PageAsks::no(PageAsks::shownIn(around)));
    QTRY_COMPARE(toldAround(), u"place 1"_s);
    // What is covered is told nothing.
    m_form->mdiArea()->setActiveSubWindow(m_form);
    run(u"log = []; ask.place()"_s);
    QTRY_VERIFY2(log().endsWith(u"place 2"_s), qPrintable(log()));
    QVERIFY(!shown());
}

void tst_permissions::bothAreOneQuestion()
{
    run(u"ask.both()"_s);
    QTRY_VERIFY(shown());
    QVERIFY(PageAsks::textOf(shown()).contains("your camera and your microphone"_L1));
    answer(true, true);
    QTRY_COMPARE(log(), u"both yes"_s);
    QCOMPARE(kept(site(), Permission::Camera), Word::Allow);
    QCOMPARE(kept(site(), Permission::Microphone), Word::Allow);
    run(u"log = []; ask.camera()"_s);
    QTRY_COMPARE(log(), u"camera yes"_s);
    QVERIFY(!shown());
}

void tst_permissions::answerHoldsWhileThePageIsThere()
{
    run(u"ask.place()"_s);
    answer(true);
    QTRY_COMPARE(log(), u"place 2"_s);
    for (int again = 0; again < 3; ++again) {
        run(u"log = []; ask.place()"_s);
        QTRY_COMPARE(log(), u"place 2"_s);
        QVERIFY(!shown());
    }
    run(u"log = []; ask.camera()"_s);
    QTRY_VERIFY(shown());
}

void tst_permissions::nextPageAsksAnew()
{
    for (const bool yes : {true, false}) {
        for (const char *what : {"place", "notifications", "camera"}) {
            run(u"log = []; ask.%1()"_s.arg(QLatin1String(what)));
            answer(yes);
            QTRY_VERIFY(!log().isEmpty());
            m_form->browser()->navigate(m_scene->server.url(u"/other"_s));
            QTRY_COMPARE(m_form->browser()->locationUrl(), m_scene->server.url(u"/other"_s));
            QTRY_VERIFY(!m_form->browser()->isBusy());
            run(u"ask.%1()"_s.arg(QLatin1String(what)));
            QTRY_VERIFY2(shown(), what);
            QCOMPARE(log(), QString());
            answer(false);
            m_form->browser()->navigate(m_scene->server.url(u"/opener"_s));
            QTRY_COMPARE(m_form->browser()->locationUrl(), m_scene->server.url(u"/opener"_s));
            QTRY_VERIFY(!m_form->browser()->isBusy());
        }
    }
}

void tst_permissions::sameQuestionIsAskedOnce()
{
    run(u"ask.place(); ask.place(); ask.place()"_s);
    answer(true);
    QTRY_COMPARE(log(), u"place 2 | place 2 | place 2"_s);
    QVERIFY(!shown());
}

void tst_permissions::rememberedAnswersAtOnce_data()
{
    QTest::addColumn<bool>("yes");
    QTest::newRow("yes") << true;
    QTest::newRow("no") << false;
}

void tst_permissions::rememberedAnswersAtOnce()
{
    QFETCH(bool, yes);
    run(u"ask.place()"_s);
    answer(yes, true);
    QTRY_COMPARE(log(), yes ? u"place 2"_s : u"place 1"_s);
    QCOMPARE(kept(site(), Permission::Place), yes ? Word::Allow : Word::Refuse);
    BrowserWindow *next = m_scene->openPage(script, true);
    PopupScene::script(next, u"ask.place(); 1"_s);
    QTRY_COMPARE(PopupScene::script(next, u"log.join()"_s).toString(),
                 yes ? u"place 2"_s : u"place 1"_s);
    QVERIFY(!PageAsks::shownIn(next));
    // Taken out of the file, it is asked again, also by the next page of the site.
    QVERIFY(SitePermissions::removeAll());
    BrowserWindow *last = m_scene->openPage(script, true);
    PopupScene::script(last, u"ask.place(); 1"_s);
    QTRY_VERIFY(PageAsks::shownIn(last));
}

void tst_permissions::keptOutOfHistoryIsNotRemembered()
{
    PopupScene::control(m_form)->page()->setIsListed(false);
    run(u"ask.place()"_s);
    QTRY_VERIFY(shown());
    const auto *remember = shown()->findChild<QCheckBox *>(u"chkRemember"_s);
    QVERIFY(!remember || !remember->isVisible());
    answer(true);
    QTRY_COMPARE(log(), u"place 2"_s);
    QVERIFY(!m_scene->folder.exists(u"AppData/Permissions.ini"_s));
}

void tst_permissions::whatCannotBeKeptIsTold()
{
    const Unlogged quiet;
    QVERIFY(QDir().mkpath(SitePermissions::path()));
    run(u"ask.place()"_s);
    answer(true, true);
    QTRY_COMPARE(log(), u"place 2"_s);
    const auto box = [] { return qobject_cast<QMessageBox *>(QApplication::activeModalWidget()); };
    QTRY_VERIFY(box());
    QVERIFY(box()->text().contains(SitePermissions::path()));
    box()->close();
}

void tst_permissions::frameAsksInItsOwnName()
{
    const QString other = m_scene->server.url(QString(), u"localhost"_s);
    m_form = m_scene->openPage(script + "<iframe allow='geolocation *' src='" + other.toUtf8()
                                   + "/frame-place'></iframe>",
                               true);
    QTRY_VERIFY(shown());
    QCOMPARE(PageAsks::askerOf(shown()), other);
    answer(true, true);
    QTRY_COMPARE(log(), u"place 2"_s);
    QCOMPARE(m_scene->folder.read(u"AppData/Permissions.ini"_s),
             '[' + other.toUtf8() + ' ' + site().toUtf8() + "]\r\nPlace=Allow\r\n");
    // The page itself is not the frame.
    run(u"log = []; ask.place()"_s);
    QTRY_VERIFY(shown());
    QCOMPARE(PageAsks::askerOf(shown()), site());
    QCOMPARE(log(), QString());
}

/// What a site was allowed in one page it was not in another, nor on its own.
void tst_permissions::frameInAnotherPageIsAnother()
{
    const QString other = m_scene->server.url(QString(), u"localhost"_s);
    QVERIFY(SitePermissions::keep(AskingSite::of(QUrl(other), QUrl(u"https://shop.example/"_s)),
                                  {Permission::Place}, Word::Allow));
    QVERIFY(SitePermissions::keep(AskingSite::of(QUrl(other), QUrl(other)), {Permission::Place},
                                  Word::Allow));
    m_form = m_scene->openPage(script + "<iframe allow='geolocation *' src='" + other.toUtf8()
                                   + "/frame-place'></iframe>",
                               true);
    QTRY_VERIFY(shown());
    QCOMPARE(PageAsks::askerOf(shown()), other);
    answer(false);
    QTRY_COMPARE(log(), u"place 1"_s);
}

void tst_permissions::framesOwnAnswerIsNotThePages()
{
    QVERIFY(SitePermissions::keep(AskingSite::of(QUrl(site()), QUrl(site())), {Permission::Place},
                                  Word::Allow));
    const QString other = m_scene->server.url(QString(), u"localhost"_s);
    // Nested, so that the page's own site is around it twice.
    m_scene->server.page("/nest",
                         "<iframe allow='geolocation *' src='" + other.toUtf8()
                             + "/frame-place'></iframe>");
    m_form =
        m_scene->openPage(script + "<iframe allow='geolocation *' src='/nest'></iframe>", true);
    QTRY_VERIFY(shown());
    QCOMPARE(PageAsks::askerOf(shown()), other);
    answer(false);
    QTRY_COMPARE(log(), u"place 1"_s);
}

void tst_permissions::sandboxedFrameIsRefused()
{
    m_form = m_scene->openPage(script
                                   + "<iframe sandbox='allow-scripts' allow='geolocation *' "
                                     "src='/frame-place'></iframe>",
                               true);
    QTRY_COMPARE(log(), u"place 1"_s);
    QVERIFY(!shown());
}

void tst_permissions::documentsWithoutASite_data()
{
    QTest::addColumn<QString>("code");
    const QString markup = QString::fromUtf8(frame("place"))
                               .replace(u"'"_s, u"\\'"_s)
                               .replace(u"\n"_s, u" "_s)
                               .replace(u"</"_s, u"<\\/"_s);
    QTest::newRow("data frame") << u"f.src = 'data:text/html,' + encodeURIComponent('%1')"_s.arg(
        markup);
    QTest::newRow("data in a sandbox")
        << u"f.sandbox = 'allow-scripts'; f.srcdoc = '%1'"_s.arg(markup);
}

void tst_permissions::documentsWithoutASite()
{
    QFETCH(QString, code);
    run(u"const f = document.createElement('iframe'); f.allow = 'geolocation *'; "_s + code
        + u"; document.body.append(f)"_s);
    QTRY_COMPARE(log(), u"place 1"_s);
    QVERIFY(!shown());
}

/// What it writes into it is its own.
void tst_permissions::emptyWindowAsksForItsOpener()
{
    m_form = m_scene->openPage(script
                                   + "<button id=b onclick=\"w = window.open('about:blank'); "
                                     "setTimeout(() => w.navigator.geolocation.getCurrentPosition("
                                     "told('yes'), e => told('popup')(e.code)), 0)\">b</button>",
                               true);
    PopupScene::click(m_form, u"b"_s);
    QTRY_COMPARE(PopupScene::popups().size(), 2);
    BrowserWindow *popup = PopupScene::popups().last();
    QTRY_VERIFY(PageAsks::shownIn(popup));
    QCOMPARE(PageAsks::askerOf(PageAsks::shownIn(popup)), site());
    QVERIFY(!shown());
    popup->unload();
    QTRY_VERIFY(PopupScene::popups().size() == 1);
    QVERIFY(SitePermissions::all().isEmpty());
}

void tst_permissions::plainConnectionIsRefused()
{
    m_scene->server.page("/plain", "<title>plain</title>" + script);
    const QString url = m_scene->server.url(u"/plain"_s, u"plain.example"_s);
    QVERIFY(SitePermissions::keep(AskingSite::of(QUrl(url), QUrl(url)), {Permission::Place},
                                  Word::Allow));
    m_form->browser()->navigate(url);
    QTRY_COMPARE(m_form->browser()->locationUrl(), url);
    QTRY_VERIFY(!m_form->browser()->isBusy());
    QCOMPARE(PopupScene::script(m_form, u"isSecureContext || !!navigator.mediaDevices"_s).toBool(),
             false);
    run(u"ask.place(); ask.notifications()"_s);
    QTRY_COMPARE(PopupScene::script(m_form, u"log.length"_s).toInt(), 2);
    QVERIFY(log().contains("place 1"_L1));
    QVERIFY(log().contains("notifications denied"_L1));
    QVERIFY(!shown());
}

void tst_permissions::notificationsOfFramesAreRefused()
{
    const QString other = m_scene->server.url(QString(), u"localhost"_s);
    m_form = m_scene->openPage(
        script + "<iframe src='" + other.toUtf8() + "/frame-notifications'></iframe>", true);
    QTRY_VERIFY(log().startsWith("notifications "_L1));
    QVERIFY(log() != u"notifications granted"_s);
    QVERIFY(!shown());
}

void tst_permissions::navigationAnswersNo_data()
{
    QTest::addColumn<QString>("what");
    for (const char *what : {"place", "notifications", "camera", "both"})
        QTest::newRow(what) << QString::fromLatin1(what);
}

/// And none of it goes to the next page, which can ask for the same.
void tst_permissions::navigationAnswersNo()
{
    QFETCH(QString, what);
    run(u"ask.%1()"_s.arg(what));
    QTRY_VERIFY(shown());
    run(u"location = '/other'"_s);
    QTRY_COMPARE(m_form->browser()->locationUrl(), m_scene->server.url(u"/other"_s));
    QTRY_VERIFY(!shown());
    PopupScene::waitUntilLoaded(m_form);
    run(u"ask.%1()"_s.arg(what));
    QTRY_VERIFY(shown());
    answer(false);
    QTRY_VERIFY(!log().isEmpty());
}

/// The next page of the window is not heard then, until the user acts; what it asks is refused.
void tst_permissions::whoTakesBackTooMuchIsRefused()
{
    run(u"ask.place(); ask.camera(); ask.notifications()"_s);
    for (const Permission each :
         {Permission::Place, Permission::Camera, Permission::Notifications}) {
        const QString kind = PermissionRules::kindOf(QUrl(site() + u'/'), {each});
        QTRY_VERIFY(m_form->questions()->isAsking(kind));
    }
    run(u"location = '/other'"_s);
    QTRY_COMPARE(m_form->browser()->locationUrl(), m_scene->server.url(u"/other"_s));
    QTRY_VERIFY(!shown());
    PopupScene::waitUntilLoaded(m_form);
    QVERIFY(m_form->questions()->isSilenced());
    run(u"ask.place(); ask.camera()"_s);
    QTRY_VERIFY(log().contains("place 1"_L1));
    QTRY_VERIFY(log().contains("camera NotAllowedError"_L1));
    QVERIFY(!shown());
}

void tst_permissions::closingAnswersNo()
{
    run(u"ask.place(); ask.camera(); ask.notifications()"_s);
    QTRY_VERIFY(shown());
    m_form->unload();
    QTRY_VERIFY(!m_form);
    m_form = m_scene->openPage(script, true);
    run(u"ask.place()"_s);
    answer(true);
    QTRY_COMPARE(log(), u"place 2"_s);
}

void tst_permissions::closesItselfWhileAsking_data()
{
    navigationAnswersNo_data();
}

void tst_permissions::closesItselfWhileAsking()
{
    QFETCH(QString, what);
    m_scene->server.page("/closing",
                         script + "<script>ask." + what.toUtf8() + "(); close()</script>");
    m_form = m_scene->openPage(
        script + "<button id=b onclick=\"window.open('/closing')\">b</button>", true);
    PopupScene::click(m_form, u"b"_s);
    QTRY_COMPARE(PopupScene::popups().size(), 2);
    BrowserWindow *popup = PopupScene::popups().last();
    QTRY_VERIFY(PageAsks::shownIn(popup));
    popup->unload();
    QTRY_COMPARE(PopupScene::popups().size(), 1);
    m_form->mdiArea()->setActiveSubWindow(m_form);
    run(u"ask.place()"_s);
    QTRY_VERIFY(shown());
    answer(true);
    QTRY_COMPARE(log(), u"place 2"_s);
}

void tst_permissions::endOfTheRendererAnswersNo()
{
    run(u"ask.place(); ask.camera()"_s);
    QTRY_VERIFY(shown());
    WebPage *page = PopupScene::control(m_form)->page();
    QProcess::execute(u"kill"_s, {u"-9"_s, QString::number(page->renderProcessPid())});
    QTRY_VERIFY(!shown());
    m_form->browser()->refresh();
    QTRY_VERIFY(!m_form->browser()->isBusy() && m_form->browser()->hasDocument());
    QTRY_COMPARE(PopupScene::script(m_form, u"log.length"_s).toInt(), 0);
    run(u"ask.place()"_s);
    answer(true);
    QTRY_COMPARE(log(), u"place 2"_s);
}

void tst_permissions::aThousandRequests()
{
    run(u"for (let i = 0; i < 1000; ++i) ask.place(1e6)"_s);
    answer(false);
    QTRY_COMPARE(PopupScene::script(m_form, u"log.length"_s).toInt(), 1000);
    QVERIFY(!shown());
    QCOMPARE(PopupScene::script(m_form, u"log.every(each => each == 'place 1')"_s).toBool(), true);
    run(u"log = []; for (let i = 0; i < 100; ++i) ask.camera()"_s);
    answer(false);
    QTRY_COMPARE(PopupScene::script(m_form, u"log.length"_s).toInt(), 100);
    QVERIFY(!shown());
}

/// Each is a site of its own, and none waits for ever.
void tst_permissions::aHundredFrames()
{
    const Unlogged quiet;
    QByteArray frames;
    for (int number = 0; number < 100; ++number)
        frames += "<iframe allow='geolocation *' src='"
            + m_scene->server.url(u"/frame-place"_s, u"s%1.localhost"_s.arg(number)).toUtf8()
            + "'></iframe>";
    m_form = m_scene->openPage(script + frames, true);
    QTRY_VERIFY(shown());
    const auto isThrough = [this] {
        if (auto *box = shown()) {
            if (PageAsks::noMore(box) && PageAsks::noMore(box)->isVisible())
                PageAsks::noMore(box)->setChecked(true);
            PageAsks::no(box)->click();
        }
        return PopupScene::script(m_form, u"log.length"_s).toInt() == 100;
    };
    QTRY_VERIFY_WITH_TIMEOUT(isThrough(), 60'000);
    QCOMPARE(PopupScene::script(m_form, u"log.every(each => each == 'place 1')"_s).toBool(), true);
}

void tst_permissions::firstScriptOfAPageIsHeard()
{
    m_scene->server.page("/first",
                         "<!doctype html>" + script + "<script>ask.notifications()</script>");
    for (int again = 0; again < 3; ++again) {
        m_form->browser()->navigate(m_scene->server.url(u"/first"_s));
        QTRY_COMPARE(m_form->browser()->locationUrl(), m_scene->server.url(u"/first"_s));
        answer(true);
        QTRY_COMPARE(log(), u"notifications granted"_s);
        m_form->browser()->navigate(m_scene->server.url(u"/other"_s));
        QTRY_COMPARE(m_form->browser()->locationUrl(), m_scene->server.url(u"/other"_s));
    }
}

/// The engine hands requests over on a way of their own, which may be shorter than that of the word
/// that their page has come.
void tst_permissions::whatIsHeardBeforeItsPageStays()
{
    run(u"ask.place()"_s);
    QTRY_VERIFY(shown());
    const QPointer<PageQuestionBox> box = shown();
    comeLate();
    QCOMPARE(shown(), box.data());
    QCOMPARE(log(), QString());
    answer(true);
    QTRY_COMPARE(log(), u"place 2"_s);
    // The answer was the page's own, too.
    comeLate();
    run(u"log = []; ask.place()"_s);
    QTRY_COMPARE(log(), u"place 2"_s);
    QVERIFY(!shown());
}

void tst_permissions::useAheadOfItsPageIsShown()
{
    const QList<Permission> camera{Permission::Camera};
    const PagePermissions &permissions = PopupScene::control(m_form)->page()->permissions();
    run(u"ask.camera()"_s);
    answer(true);
    QTRY_COMPARE(log(), u"camera yes"_s);
    comeLate();
    QCOMPARE(permissions.inUse(), camera);
    m_form->browser()->refresh();
    QTRY_VERIFY(permissions.inUse().isEmpty());
}

int main(int argc, char **argv)
{
    // A name of the web for this machine, over a connection in the clear.
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS",
            qgetenv("QTWEBENGINE_CHROMIUM_FLAGS")
                + " --use-fake-device-for-media-stream --host-resolver-rules=\"MAP plain.example "
                  "127.0.0.1\"");
    return runEngineTest<tst_permissions>(argc, argv);
}
#include "tst_permissions.moc"
