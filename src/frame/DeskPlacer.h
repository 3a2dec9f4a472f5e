#pragma once

#include "Desk.h"

#include <QPointer>
#include <QSize>

class BrowserWindow;
class Frame;
class MdiArea;
class QWidget;

/// Puts a desk back: the frame as it is made, unless that fills the screen or is minimized; then,
/// in front of the windows that are there, its windows with `open` for each, and `finish`. The desk
/// and the area are to outlive it.
class DeskPlacer {
public:
    /// Windows that have places stand anywhere on each other: the area is not painted until this
    /// object goes, or each that comes would have all be painted.
    DeskPlacer(Frame &frame, MdiArea &area, const Desk &desk);
    ~DeskPlacer();
    Q_DISABLE_COPY_MOVE(DeskPlacer)

    /// The window of that index, which waits for its page. One whose place is not known gets the
    /// next one of the cascade.
    BrowserWindow *open(qsizetype index);
    /// Gives those that are still there their states and their order, and makes the one active that
    /// was, or the one in front.
    void finish();

    /// Those that are there, in the order of the desk.
    QList<BrowserWindow *> windows() const;

private:
    void placeFrame(QWidget &frame);

    Frame &m_frame;
    MdiArea &m_area;
    const Desk &m_desk;
    /// What the area has as soon as the frame is in its place.
    QSize m_room;
    QList<QPointer<BrowserWindow>> m_windows;
};
