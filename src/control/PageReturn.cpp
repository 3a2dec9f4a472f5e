#include "PageReturn.h"

#include "Addresses.h"
#include "Log.h"
#include "NavigationHistory.h"
#include "PageScripts.h"
#include "PrivateProfiles.h"
#include "WebPage.h"

#include <QBuffer>
#include <QDataStream>

#include <QWebEngineHistory>
#include <QWebEngineScript>

using namespace Qt::StringLiterals;

namespace {
constexpr double leastZoom = 0.25;
constexpr double mostZoom = 5;
/// Of a fast and a small packing: most of it is text.
constexpr int packing = 1;

QByteArray packed(WebPage &page, const NavigationHistory &history)
{
    if (page.history()->count() == 0)
        return {};
    QByteArray bytes;
    QDataStream stream(&bytes, QBuffer::WriteOnly);
    stream << history.skippedPlaces(&page) << *page.history();
    return qCompress(bytes, packing);
}

/// The page tells in its own pixels, before it is zoomed.
QPoint scrollOf(const WebPage &page)
{
    return (page.scrollPosition() / page.zoomFactor()).toPoint();
}
}

PageState PageReturn::stateOf(WebPage &page, const NavigationHistory &history, StateDepth depth)
{
    PageState state;
    if (depth == StateDepth::All)
        state.history = packed(page, history);
    state.scroll = scrollOf(page);
    state.zoom = page.zoomFactor();
    state.isMuted = page.isAudioMuted();
    state.hasTyped = page.hasTyped();
    state.leavesTrace = page.isListed();
    return state;
}

void PageReturn::await(const QString &url, const PageState &state)
{
    m_url = QUrl(url);
    m_state = state;
    m_skipped.clear();
    m_isAwaited = true;
}

bool PageReturn::bring(WebPage &page)
{
    page.setZoomFactor(qBound(leastZoom, m_state.zoom, mostZoom));
    page.setAudioMuted(m_state.isMuted);
    if (m_state.history.isEmpty())
        return false;
    const QByteArray bytes = qUncompress(m_state.history);
    QDataStream stream(bytes);
    stream >> m_skipped >> *page.history();
    if (page.history()->count() == 0) {
        qCWarning(lcEngine) << "the history of a page could not be read:"
                            << PrivateProfiles::siteForLog(page);
        return false;
    }
    // The engine has made the page anew.
    page.renewInterceptor();
    page.setZoomFactor(qBound(leastZoom, m_state.zoom, mostZoom));
    page.setAudioMuted(m_state.isMuted);
    return true;
}

void PageReturn::pageCame(WebPage &page, const QString &address, NavigationHistory &history)
{
    m_untoldScroll.reset();
    if (!m_isAwaited)
        return;
    if (!Addresses::isSamePage(QUrl(address), m_url)) {
        forget();
        return;
    }
    history.skip(&page, m_skipped);
    if (m_state.hasTyped)
        page.noteTyped();
    m_untoldScroll = m_state.scroll;
    scroll(page);
}

void PageReturn::forget()
{
    m_isAwaited = false;
    m_state = {};
    m_skipped.clear();
}

/// The engine may know an older place, or none.
void PageReturn::scroll(WebPage &page) const
{
    const QPoint to = m_state.scroll;
    const QString place = to.isNull() ? u"null"_s : u"[%1, %2]"_s.arg(to.x()).arg(to.y());
    page.runJavaScript(
        PageScripts::isolatedSource(u"scroll-back.js"_s).replace("%PLACE%"_L1, place),
        QWebEngineScript::ApplicationWorld);
}
