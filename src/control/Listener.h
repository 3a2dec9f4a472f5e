#pragma once

#include "WebBrowser.h"

#include <utility>

/// The window that is told what happens to its page; nobody from when it begins to go away.
class Listener {
public:
    void set(WebBrowserEvents *events) { m_events = events; }
    bool isThere() const { return m_events; }

    template <typename... Taken, typename... Given>
    void tell(void (WebBrowserEvents::*event)(Taken...), Given &&...given) const
    {
        if (m_events)
            (m_events->*event)(std::forward<Given>(given)...);
    }

private:
    WebBrowserEvents *m_events = nullptr;
};
