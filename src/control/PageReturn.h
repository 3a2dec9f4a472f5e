#pragma once

#include "WebBrowser.h"

#include <QUrl>
#include <optional>

class NavigationHistory;
class WebPage;

/// How a page that was given up comes back as it was: what it is to come back with is known here
/// from the time it is waited for until it is there.
class PageReturn {
public:
    /// What `page` would need.
    static PageState stateOf(WebPage &page, const NavigationHistory &history, StateDepth depth);

    /// The page at `url` is to come with `state`.
    void await(const QString &url, const PageState &state);
    bool isAwaited() const { return m_isAwaited; }
    const PageState &state() const { return m_state; }
    /// The page is to come with that zoom factor.
    void setZoom(double factor) { m_state.zoom = factor; }
    void setMuted(bool muted) { m_state.isMuted = muted; }
    /// Gives a page that has shown nothing yet what does not come by its load, and has the engine
    /// load it out of its history; false: there is none, and its address is to be loaded.
    bool bring(WebPage &page);
    /// A page is shown at `address`.
    void pageCame(WebPage &page, const QString &address, NavigationHistory &history);
    /// It is there, or is not to come any more.
    void forget();
    /// Where a page that came back is, until it tells of that itself: one that nobody sees scrolls
    /// without a word.
    const std::optional<QPoint> &untoldScroll() const { return m_untoldScroll; }
    void noteScroll() { m_untoldScroll.reset(); }

private:
    void scroll(WebPage &page) const;

    QUrl m_url;
    PageState m_state;
    /// Of the history, those that are passed over.
    QList<int> m_skipped;
    bool m_isAwaited = false;
    std::optional<QPoint> m_untoldScroll;
};
