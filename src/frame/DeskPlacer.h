#pragma once

#include "Desk.h"

#include <QPointer>

class BrowserWindow;
class Frame;
class MdiArea;

/// Puts a desk's windows back into the frame, in front of those that are there: `open` for each,
/// then `finish`. The desk and the area are to outlive it.
class DeskPlacer {
public:
    DeskPlacer(Frame &frame, MdiArea &area, const Desk &desk);

    /// The window of that index, which waits for its page. One whose place is not known gets the
    /// next one of the cascade.
    BrowserWindow *open(qsizetype index);
    /// Gives those that are still there their states and their order, and makes the one active that
    /// was, or the one in front.
    void finish();

    /// Those that are there, in the order of the desk.
    QList<BrowserWindow *> windows() const;

private:
    Frame &m_frame;
    MdiArea &m_area;
    const Desk &m_desk;
    QList<QPointer<BrowserWindow>> m_windows;
};
