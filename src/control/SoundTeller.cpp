#include "SoundTeller.h"

#include "Listener.h"
#include "PageLife.h"
#include "WebBrowser.h"

#include <utility>

namespace {
using namespace std::chrono_literals;
constexpr auto pace = 200ms;
}

SoundTeller::SoundTeller(const PageLife &life, const Listener &listener)
    : m_life(life)
    , m_listener(listener)
{
    m_pace.setSingleShot(true);
    m_pace.setInterval(pace);
    connect(&m_pace, &QTimer::timeout, this, [this] {
        if (m_life.page())
            tell(false);
    });
    connect(&life, &PageLife::came, this, [this](WebPage *page, WebView *, QObject *bond) {
        const auto tellSoon = [this] {
            if (!m_pace.isActive())
                m_pace.start();
        };
        connect(page, &QWebEnginePage::recentlyAudibleChanged, bond, tellSoon);
        connect(page, &QWebEnginePage::audioMutedChanged, bond, tellSoon);
        connect(page, &QWebEnginePage::renderProcessTerminated, bond, tellSoon);
        tellSoon();
    });
}

void SoundTeller::tell(bool isMuted)
{
    const WebPage *page = m_life.page();
    PageSound sound = isMuted ? PageSound::Muted : PageSound::None;
    if (page && page->isAudioMuted())
        sound = PageSound::Muted;
    else if (page)
        sound = page->recentlyAudible() ? PageSound::Playing : PageSound::None;
    if (std::exchange(m_told, sound) != sound)
        m_listener.tell(&WebBrowserEvents::soundChange, sound);
}
