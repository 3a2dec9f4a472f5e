// Notifications of pages on the desktop.
#include "DesktopSession.h"
#include "EngineProfile.h"
#include "EngineTest.h"
#include "EngineVersion.h"
#include "PageAsks.h"
#include "PopupScene.h"
#include "SitePermissions.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using SitePermissions::Word;

class tst_pagenotifications : public QObject {
    Q_OBJECT

private slots:
    void initTestCase();
    void init();
    void cleanup();
    void siteIsAlwaysNamed();
    void wordsAreBounded();
    void withoutPermissionNothingIsShown();
    void permissionEndsWithThePage();
    void rememberedIsThereBeforeItIsAskedFor();
    void clickBringsThePageToTheFront();
    void userClosesIt();
    void pageClosesIt();
    void sameTagTakesItsPlace();
    void aThousand();
    void withoutAServiceThePageIsTold();
    void windowClosedWhileOneIsShown();

private:
    const QList<FakeNotifications::Notice> &shown() const { return m_session->notifications.shown; }
    QString site() const { return m_scene->server.url(QString()); }
    void run(const QString &code) const { PopupScene::script(m_form, code + u"; 1"_s); }
    QString log() const { return PopupScene::script(m_form, u"log.join(' | ')"_s).toString(); }
    void allow() const
    {
        QVERIFY(SitePermissions::keep(AskingSite::of(QUrl(site()), QUrl(site())),
                                      {Permission::Notifications}, Word::Allow));
        run(u"Notification.requestPermission().then(told)"_s);
        QTRY_COMPARE(log(), u"granted"_s);
        run(u"log = []"_s);
    }

    std::unique_ptr<DesktopSession> m_session;
    std::unique_ptr<PopupScene> m_scene;
    QPointer<BrowserWindow> m_form;
};

namespace {
const QByteArray script = R"(<script>
var log = [];
const told = value => { log.push(value) };
function show(title, options) {
  const n = new Notification(title, options);
  for (const event of ['show', 'click', 'close', 'error'])
    n.addEventListener(event, () => log.push(event + ' ' + title));
  return n;
}
</script>)";
}

void tst_pagenotifications::initTestCase()
{
    m_session = std::make_unique<DesktopSession>();
    QVERIFY(m_session->isRunning());
}

void tst_pagenotifications::init()
{
    m_session->setNotifying(true);
    m_session->notifications.shown.clear();
    m_session->notifications.closed.clear();
    // The budget is a profile's.
    dropEngineProfile();
    m_scene = std::make_unique<PopupScene>();
    QVERIFY(m_scene->isReady());
    m_scene->server.page("/other", "<title>other</title>" + script);
    m_form = m_scene->openPage(script, true);
}

void tst_pagenotifications::cleanup()
{
    m_scene.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
}

void tst_pagenotifications::siteIsAlwaysNamed()
{
    allow();
    run(u"show('https://bank.example', {body: 'Sign <b>in</b>\\nnow'})"_s);
    QTRY_COMPARE(shown().size(), 1);
    QCOMPARE(shown().first().title, site());
    QCOMPARE(shown().first().body, u"https://bank.example\nSign &lt;b&gt;in&lt;/b&gt; now"_s);
    QTRY_COMPARE(log(), u"show https://bank.example"_s);
}

void tst_pagenotifications::wordsAreBounded()
{
    allow();
    run(u"show('t'.repeat(100000), {body: '\\u202e' + 'x\\n'.repeat(100000)})"_s);
    QTRY_COMPARE(shown().size(), 1);
    QVERIFY(shown().first().body.size() < 600);
    QCOMPARE(shown().first().body.count(u'\n'), 1);
    QVERIFY(!shown().first().body.contains(QChar(0x202e)));
    QCOMPARE(shown().first().title, site());
}

void tst_pagenotifications::withoutPermissionNothingIsShown()
{
    run(u"show('unasked')"_s);
    QTRY_COMPARE(log(), u"error unasked"_s);
    QVERIFY(shown().isEmpty());
    QVERIFY(!PageAsks::shownIn(m_form));
}

/// The user said yes to this page, once.
void tst_pagenotifications::permissionEndsWithThePage()
{
    run(u"Notification.requestPermission().then(told)"_s);
    QTRY_VERIFY(PageAsks::shownIn(m_form));
    const QPointer<PageQuestionBox> box = PageAsks::shownIn(m_form);
    PageAsks::press(PageAsks::yes(box));
    QTRY_COMPARE(log(), u"granted"_s);
    m_form->browser()->navigate(m_scene->server.url(u"/other"_s));
    QTRY_COMPARE(m_form->browser()->locationUrl(), m_scene->server.url(u"/other"_s));
    QTRY_VERIFY(!m_form->browser()->isBusy());
    run(u"show('after')"_s);
    QTRY_COMPARE(log(), u"error after"_s);
    QVERIFY(shown().isEmpty());
}

void tst_pagenotifications::rememberedIsThereBeforeItIsAskedFor()
{
#if ORVANE_HAS_PERMISSION_OBJECTS
    QSKIP("The engine lets it be allowed only to whoever asks.");
#endif
    allow();
    m_form->browser()->navigate(m_scene->server.url(u"/other"_s));
    QTRY_COMPARE(m_form->browser()->locationUrl(), m_scene->server.url(u"/other"_s));
    QTRY_VERIFY(!m_form->browser()->isBusy());
    QCOMPARE(PopupScene::script(m_form, u"Notification.permission"_s).toString(), u"granted"_s);
    run(u"show('news')"_s);
    QTRY_COMPARE(shown().size(), 1);
    // Removed from the file, it is gone with the page.
    QVERIFY(SitePermissions::removeAll());
    m_form->browser()->navigate(m_scene->server.url(u"/opener"_s));
    QTRY_COMPARE(m_form->browser()->locationUrl(), m_scene->server.url(u"/opener"_s));
    QTRY_VERIFY(!m_form->browser()->isBusy());
    QCOMPARE(PopupScene::script(m_form, u"Notification.permission"_s).toString(), u"default"_s);
}

void tst_pagenotifications::clickBringsThePageToTheFront()
{
    allow();
    const QSignalSpy wanted(m_form, &InnerWindow::frontWanted);
    run(u"show('news')"_s);
    QTRY_COMPARE(shown().size(), 1);
    QTRY_VERIFY([&] {
        emit m_session->notifications.ActionInvoked(shown().first().number, u"default"_s);
        QCoreApplication::processEvents();
        return !wanted.isEmpty();
    }());
    QTRY_VERIFY(log().contains("click news"_L1));
}

void tst_pagenotifications::userClosesIt()
{
    allow();
    run(u"show('news')"_s);
    QTRY_COMPARE(shown().size(), 1);
    QTRY_VERIFY([&] {
        emit m_session->notifications.NotificationClosed(shown().first().number, 2);
        return log().contains("close news"_L1);
    }());
}

void tst_pagenotifications::pageClosesIt()
{
    allow();
    run(u"window.n = show('news')"_s);
    QTRY_VERIFY(log().contains("show news"_L1));
    QTRY_COMPARE(shown().size(), 1);
    run(u"n.close()"_s);
    QTRY_COMPARE(m_session->notifications.closed, QList<uint>{shown().first().number});
}

void tst_pagenotifications::sameTagTakesItsPlace()
{
    allow();
    run(u"show('other'); show('another')"_s);
    QTRY_COMPARE(shown().size(), 2);
    QVERIFY(shown().first().number != shown().last().number);
    m_session->notifications.shown.clear();
    run(u"show('one', {tag: 'x'})"_s);
    QTRY_COMPARE(shown().size(), 1);
    const uint first = shown().first().number;
    QTRY_VERIFY([&] {
        run(u"show('two', {tag: 'x'})"_s);
        return shown().last().replaced == first;
    }());
}

/// Few of them come up, and each page is told what became of its own.
void tst_pagenotifications::aThousand()
{
    allow();
    // In portions: the engine takes its time for each, and the page answers nothing meanwhile.
    run(u"let left = 1000; const portion = () => { for (let i = 0; i < 20; ++i) show('flood' + "
        u"--left); "
        "if (left > 0) setTimeout(portion, 0) }; portion()"_s);
    const auto closed = [this] {
        return PopupScene::script(m_form, u"log.filter(each => each.startsWith('close')).length"_s)
            .toInt();
    };
    QTRY_VERIFY_WITH_TIMEOUT(closed() >= 995, 60'000);
    // Those of tests before may have come late.
    const auto count = std::count_if(shown().begin(), shown().end(), [](const auto &each) {
        return each.body.startsWith("flood"_L1);
    });
    QVERIFY(count > 0 && count <= 10);
    QTRY_VERIFY(count - m_session->notifications.closed.size() <= 5);
}

void tst_pagenotifications::withoutAServiceThePageIsTold()
{
    m_session->setNotifying(false);
    allow();
    run(u"show('news')"_s);
    QTRY_VERIFY(log().contains("close news"_L1));
    QVERIFY(shown().isEmpty());
}

void tst_pagenotifications::windowClosedWhileOneIsShown()
{
    allow();
    run(u"show('news')"_s);
    QTRY_COMPARE(shown().size(), 1);
    m_form->unload();
    QTRY_VERIFY(!m_form);
    emit m_session->notifications.ActionInvoked(shown().first().number, u"default"_s);
    m_form = m_scene->openPage(script, true);
    QTRY_COMPARE(PopupScene::script(m_form, u"1 + 1"_s).toInt(), 2);
}

ORVANE_ENGINE_TEST_MAIN(tst_pagenotifications)
#include "tst_pagenotifications.moc"
