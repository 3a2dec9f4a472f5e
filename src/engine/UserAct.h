#pragma once

#include <QDeadlineTimer>

class QEvent;

/// What the user did last in a page that follows a link there: he let a mouse button or a finger
/// go, pressed Enter or the space bar, or dropped something. The engine does not say whether a
/// navigation is a link's or a script's; that one comes right after such an act, and is the first
/// to do so, is the best that can be known.
class UserAct {
public:
    static bool isOne(const QEvent &event);
    /// An event on its way to the page; others than those are no acts.
    void note(const QEvent &event);
    /// Whether there was one, not long ago. It counts for one navigation only.
    bool take();

private:
    QDeadlineTimer m_counts = QDeadlineTimer(0);
};
