// How a window's page is given up, and what stands for it meanwhile.
#include "QtWebBrowser.h"

#include "PageActivity.h"
#include "SleepPicture.h"
#include "SleepReasons.h"

#include <QElapsedTimer>
#include <QTimer>
#include <utility>

namespace {
using namespace std::chrono_literals;
/// A page that does not tell when it is in sight is by then.
constexpr auto untilInSight = 500ms;
/// Each takes about ten milliseconds.
constexpr int mostPicturesInARow = 5;
constexpr int pictureRowMs = 200;
}

/// The page goes.
void QtWebBrowser::navigateLater(const QString &url, const PageState &state)
{
    wait(url, state, {});
}

void QtWebBrowser::wait(const QString &url, const PageState &state, const QByteArray &picture)
{
    m_listener.tell(&WebBrowserEvents::contextMenuOver);
    PageState coming = state;
    coming.zoom = m_zoom.waitAt(QUrl(url), state.zoom);
    m_navigator.waitAt(url, coming);
    tellUse();
    m_sound.tell(isMuted());
    if (m_life.host())
        m_life.host()->showPicture(picture);
}

SleepLimit QtWebBrowser::maySleep() const
{
    return page() ? sleepLimitOf(*page(), m_navigator.state()) : SleepLimit::Nothing;
}

void QtWebBrowser::askToSleep(const std::function<bool()> &mayStill,
                              const std::function<void(bool)> &done)
{
    // Without a process there is nobody to ask.
    if (page() && page()->renderProcessPid() != 0)
        page()->activity().askToGo(mayStill, done);
    else
        QTimer::singleShot(0, this, [mayStill, done] { done(mayStill()); });
}

void QtWebBrowser::fallAsleep()
{
    if (!page() || !m_life.host())
        return;
    m_life.host()->endFullScreen();
    if (page()->isVisible())
        takePicture();
    const QByteArray picture = std::exchange(m_picture, {});
    wait(locationUrl(), pageState(), picture);
}

/// Many windows that go at once must not hold the interface for it.
void QtWebBrowser::takePassingPicture()
{
    static QElapsedTimer sinceLast;
    static int inARow = 0;
    inARow = sinceLast.isValid() && sinceLast.elapsed() < pictureRowMs ? inARow + 1 : 0;
    sinceLast.start();
    if (inARow < mostPicturesInARow)
        takePicture();
}

void QtWebBrowser::takePicture()
{
    if (m_life.view() && m_life.view()->isVisible())
        m_picture = SleepPicture::packed(m_life.view()->grab());
}

void QtWebBrowser::dropPictureSoon()
{
    if (!isWaiting()) {
        QTimer::singleShot(untilInSight, this, [this] {
            if (!isWaiting() && !isBusy() && m_life.host())
                m_life.host()->dropPicture();
        });
    }
}
