// A page that plays sound goes on as if it were seen, wherever its window is. The sound is real:
// the engine plays it, and tells by itself which of its pages can be heard.
#include "EngineTest.h"
#include "FakeFrame.h"
#include "QtWebBrowser.h"
#include "TestServer.h"
#include "WebPage.h"

#include <QDataStream>
#include <QWebEngineView>
#include <QWindow>

using namespace Qt::StringLiterals;

namespace {
// Pages may play on only where the user has clicked in them. A click on this one starts a tone that
// goes on until it is told to end.
constexpr char soundingPage[] = R"(<!DOCTYPE html><title>A</title>
<body style="margin:0;height:100vh">
<script>
const tone = new Audio('/tone.wav');
const start = () => { tone.loop = true; tone.play(); };
const end = () => tone.loop = false;
onclick = start;
</script>)";

/// One second of a tone: a WAV file of 8-bit samples.
QByteArray toneFile()
{
    constexpr int rate = 8000, period = 20;
    QByteArray bytes;
    QDataStream file(&bytes, QIODevice::WriteOnly);
    file.setByteOrder(QDataStream::LittleEndian);
    file.writeRawData("RIFF", 4);
    file << quint32(36 + rate);
    file.writeRawData("WAVEfmt ", 8);
    file << quint32(16) << quint16(1) << quint16(1) << quint32(rate) << quint32(rate) << quint16(1)
         << quint16(8);
    file.writeRawData("data", 4);
    file << quint32(rate);
    for (int i = 0; i < rate; ++i)
        file << quint8(i % period < period / 2 ? 160 : 96);
    return bytes;
}
}

class tst_soundingpages : public QObject {
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void coveredPageGoesOnWhileItSounds();
    void minimizedPageGoesOnWhileItSounds();
    void soundThatStartsBehindIsNoticed();
    void minimizedFrameHidesSilentPagesOnly();
    void tabTellsOfSound();
    void soundThatComesAndGoesDoesNotFlicker();
    void mutedPageStaysMutedWhileItSleeps();

private:
    static WebPage *pageOf(const BrowserWindow *form)
    {
        return static_cast<QtWebBrowser *>(form->browser())->page();
    }
    static QString script(const BrowserWindow *form, const QString &code);
    /// What the engine has said of the page, and what the page itself knows.
    static bool isVisible(const BrowserWindow *form)
    {
        return pageOf(form)->isVisible()
            && script(form, u"document.visibilityState"_s) == "visible"_L1;
    }
    static bool isHidden(const BrowserWindow *form)
    {
        return !pageOf(form)->isVisible()
            && script(form, u"document.visibilityState"_s) == "hidden"_L1;
    }
    BrowserWindow *open();
    BrowserWindow *openSounding();

    std::unique_ptr<TestServer> m_server;
    std::unique_ptr<FakeFrame> m_frame;
};

void tst_soundingpages::init()
{
    m_server = std::make_unique<TestServer>();
    m_server->page("/a", soundingPage);
    m_server->file("/tone.wav", toneFile(), "audio/wav");
    m_frame = std::make_unique<FakeFrame>();
    QVERIFY(QTest::qWaitForWindowActive(m_frame->window()));
}

void tst_soundingpages::cleanup()
{
    m_frame.reset();
    m_server.reset();
}

QString tst_soundingpages::script(const BrowserWindow *form, const QString &code)
{
    QString result;
    bool answered = false;
    pageOf(form)->runJavaScript(code, [&](const QVariant &value) {
        result = value.toString();
        answered = true;
    });
    [&] { QTRY_VERIFY(answered); }();
    return result;
}

BrowserWindow *tst_soundingpages::open()
{
    BrowserWindow *form = m_frame->open(m_server->url(u"/a"_s));
    [&] { QTRY_VERIFY(form->browser()->hasDocument() && !form->browser()->isBusy()); }();
    return form;
}

BrowserWindow *tst_soundingpages::openSounding()
{
    BrowserWindow *form = open();
    const auto *view = form->findChild<QWebEngineView *>();
    // A page takes a click only once it is painted.
    [&] {
        QTRY_VERIFY([&] {
            if (!script(form, u"navigator.userActivation.hasBeenActive"_s).startsWith(u't'))
                QTest::mouseClick(m_frame->window()->windowHandle(), Qt::LeftButton, {},
                                  view->mapTo(m_frame->window(), view->rect().center()));
            return pageOf(form)->recentlyAudible();
        }());
    }();
    return form;
}

void tst_soundingpages::coveredPageGoesOnWhileItSounds()
{
    const BrowserWindow *music = openSounding();
    const BrowserWindow *silent = open();
    BrowserWindow *front = open();
    front->showMaximized();
    QTRY_VERIFY(isHidden(silent));
    QVERIFY(isVisible(music));
    script(music, u"end()"_s);
    QTRY_VERIFY(isHidden(music));
    QVERIFY(!pageOf(music)->recentlyAudible());
}

void tst_soundingpages::minimizedPageGoesOnWhileItSounds()
{
    BrowserWindow *music = openSounding();
    BrowserWindow *silent = open();
    music->showMinimized();
    silent->showMinimized();
    QTRY_VERIFY(isHidden(silent));
    QVERIFY(isVisible(music));
    script(music, u"end()"_s);
    QTRY_VERIFY(isHidden(music));
    QVERIFY(!pageOf(music)->recentlyAudible());
    music->showNormal();
    QTRY_VERIFY(isVisible(music));
}

void tst_soundingpages::soundThatStartsBehindIsNoticed()
{
    BrowserWindow *covered = openSounding();
    BrowserWindow *minimized = openSounding();
    minimized->showMinimized();
    BrowserWindow *front = open();
    front->showMaximized();
    for (const BrowserWindow *form : {covered, minimized})
        script(form, u"end()"_s);
    QTRY_VERIFY(isHidden(covered) && isHidden(minimized));
    for (const BrowserWindow *form : {covered, minimized}) {
        script(form, u"start()"_s);
        QTRY_VERIFY(isVisible(form));
        QVERIFY(pageOf(form)->recentlyAudible());
    }
}

void tst_soundingpages::minimizedFrameHidesSilentPagesOnly()
{
    const BrowserWindow *music = openSounding();
    const BrowserWindow *silent = open();
    m_frame->window()->showMinimized();
    QTRY_VERIFY(isHidden(silent));
    QVERIFY(isVisible(music));
    // What looks again which windows are in sight does not take this for one that is.
    script(music, u"end()"_s);
    QTRY_VERIFY(isHidden(music));
    m_frame->window()->showNormal();
    QTRY_VERIFY(isVisible(music) && isVisible(silent));
}

void tst_soundingpages::tabTellsOfSound()
{
    BrowserWindow *music = openSounding();
    const QString key = music->tabKey();
    QTRY_COMPARE(m_frame->tabs.find(key)->sound, PageSound::Playing);
    music->turnSound();
    QVERIFY(pageOf(music)->isAudioMuted());
    QCOMPARE(m_frame->tabs.find(key)->sound, PageSound::Muted);
    music->turnSound();
    QVERIFY(!pageOf(music)->isAudioMuted());
    QTRY_COMPARE(m_frame->tabs.find(key)->sound, PageSound::Playing);
    script(music, u"end()"_s);
    QTRY_COMPARE(m_frame->tabs.find(key)->sound, PageSound::None);
}

void tst_soundingpages::soundThatComesAndGoesDoesNotFlicker()
{
    BrowserWindow *music = openSounding();
    const QString key = music->tabKey();
    QTRY_COMPARE(m_frame->tabs.find(key)->sound, PageSound::Playing);
    const int before = m_frame->tabs.find(key)->soundChanges;
    for (int i = 0; i < 1000; ++i)
        emit pageOf(music)->recentlyAudibleChanged(i % 2 == 0);
    script(music,
           u"let times = 0; const storm = setInterval(() => { for (let i = 0; i < 10; ++i)"
           "{ tone.pause(); tone.play(); } if (++times == 100) { clearInterval(storm);"
           "document.title = 'over'; } }, 1)"_s);
    QTRY_COMPARE(music->windowTitle(), u"over"_s);
    QVERIFY(m_frame->tabs.find(key)->soundChanges <= before + 4);
}

void tst_soundingpages::mutedPageStaysMutedWhileItSleeps()
{
    BrowserWindow *form = open();
    const QString key = form->tabKey();
    open();
    form->turnSound();
    form->fallAsleep();
    QVERIFY(form->isAsleep());
    QVERIFY(form->browser()->isMuted());
    QCOMPARE(m_frame->tabs.find(key)->sound, PageSound::Muted);
    form->turnSound();
    QCOMPARE(m_frame->tabs.find(key)->sound, PageSound::None);
    form->turnSound();
    form->wake();
    QTRY_VERIFY(pageOf(form) && pageOf(form)->isAudioMuted());
    QCOMPARE(m_frame->tabs.find(key)->sound, PageSound::Muted);
}

int main(int argc, char **argv)
{
    // Played to nobody: a machine that has a sound device is to stay silent.
    qputenv("QTWEBENGINE_CHROMIUM_FLAGS",
            qgetenv("QTWEBENGINE_CHROMIUM_FLAGS") + " --disable-audio-output");
    return runEngineTest<tst_soundingpages>(argc, argv);
}

#include "tst_soundingpages.moc"
