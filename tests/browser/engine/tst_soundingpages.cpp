// A page that plays sound goes on as if it were seen, wherever its window is. A machine without a
// sound device plays nothing that could be heard: which pages do is said here.
#include "EngineTest.h"
#include "FakeFrame.h"
#include "QtWebBrowser.h"
#include "TestServer.h"
#include "WebPage.h"

#include <QSet>

using namespace Qt::StringLiterals;

namespace {
QSet<const QWebEnginePage *> sounding;
}

/// Stands in for the library's.
bool QWebEnginePage::recentlyAudible() const
{
    return sounding.contains(this);
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

private:
    static WebPage *pageOf(const frmBrowser *form)
    {
        return static_cast<QtWebBrowser *>(form->brwWebBrowser())->page();
    }
    frmBrowser *open();
    static void sound(const frmBrowser *form, bool on);

    std::unique_ptr<TestServer> m_server;
    std::unique_ptr<FakeFrame> m_frame;
};

void tst_soundingpages::init()
{
    m_server = std::make_unique<TestServer>();
    m_server->page("/a", "<title>A</title>");
    m_frame = std::make_unique<FakeFrame>();
    QVERIFY(QTest::qWaitForWindowActive(m_frame->window()));
}

void tst_soundingpages::cleanup()
{
    m_frame.reset();
    m_server.reset();
    sounding.clear();
}

frmBrowser *tst_soundingpages::open()
{
    frmBrowser *form = m_frame->open(m_server->url(u"/a"_s));
    [&] { QTRY_VERIFY(form->brwWebBrowser()->HasDocument() && !form->brwWebBrowser()->Busy()); }();
    return form;
}

void tst_soundingpages::sound(const frmBrowser *form, bool on)
{
    if (on)
        sounding.insert(pageOf(form));
    else
        sounding.remove(pageOf(form));
    emit pageOf(form)->recentlyAudibleChanged(on);
}

void tst_soundingpages::coveredPageGoesOnWhileItSounds()
{
    const frmBrowser *music = open();
    const frmBrowser *silent = open();
    sound(music, true);
    frmBrowser *front = open();
    front->showMaximized();
    QTRY_VERIFY(!pageOf(silent)->isVisible());
    QVERIFY(pageOf(music)->isVisible());
    sound(music, false);
    QTRY_VERIFY(!pageOf(music)->isVisible());
}

void tst_soundingpages::minimizedPageGoesOnWhileItSounds()
{
    frmBrowser *music = open();
    frmBrowser *silent = open();
    sound(music, true);
    music->showMinimized();
    silent->showMinimized();
    QTRY_VERIFY(!pageOf(silent)->isVisible());
    QVERIFY(pageOf(music)->isVisible());
    sound(music, false);
    QTRY_VERIFY(!pageOf(music)->isVisible());
    music->showNormal();
    QTRY_VERIFY(pageOf(music)->isVisible());
}

void tst_soundingpages::soundThatStartsBehindIsNoticed()
{
    frmBrowser *covered = open();
    frmBrowser *minimized = open();
    minimized->showMinimized();
    frmBrowser *front = open();
    front->showMaximized();
    QTRY_VERIFY(!pageOf(covered)->isVisible() && !pageOf(minimized)->isVisible());
    for (const frmBrowser *form : {covered, minimized}) {
        sound(form, true);
        QTRY_VERIFY(pageOf(form)->isVisible());
    }
}

void tst_soundingpages::minimizedFrameHidesSilentPagesOnly()
{
    const frmBrowser *music = open();
    const frmBrowser *silent = open();
    sound(music, true);
    m_frame->window()->showMinimized();
    QTRY_VERIFY(!pageOf(silent)->isVisible());
    QVERIFY(pageOf(music)->isVisible());
    // What looks again which windows are in sight does not take this for one that is.
    sound(music, false);
    QTRY_VERIFY(!pageOf(music)->isVisible());
    m_frame->window()->showNormal();
    QTRY_VERIFY(pageOf(music)->isVisible() && pageOf(silent)->isVisible());
}

ORVANE_ENGINE_TEST_MAIN(tst_soundingpages)
#include "tst_soundingpages.moc"
