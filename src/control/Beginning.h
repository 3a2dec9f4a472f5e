#pragma once

#include "UserAct.h"
#include "WebBrowser.h"

/// Who brings a navigation about.
class Beginning {
public:
    /// How the engine says that a navigation began.
    enum class Type { Typed, Link, Form, Step, Redirect, Other };

    /// An event is on its way to the page.
    void noteEvent(const QEvent &event) { m_act.note(event); }
    /// The program has been given an address, by a page if `forPage`.
    void name(bool forPage) { m_forPage = forPage; }
    /// A step of the user's through the history is on its way, or there was none to go.
    void step(bool goes) { m_stepping = goes; }
    /// For the navigation that now begins; what was noted counts for this one only.
    Arrival take(Type type);

private:
    UserAct m_act;
    bool m_forPage = false;
    bool m_stepping = false;
};
