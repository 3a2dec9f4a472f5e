#pragma once

#include <QPointer>
#include <QRect>

class Frame;
class QMdiSubWindow;
class QWidget;
class BrowserWindow;

/// How a window that a page asked for comes up, and what it takes from the user by that: the active
/// window and the keyboard. A window that may have to close itself again stays hidden until that is
/// settled, so that it never takes them for nothing.
class PopupEntrance {
public:
    enum Place { InFront, Behind };
    /// `window` is new, and not among the frame's yet.
    PopupEntrance(BrowserWindow &window, Frame &frame, Place place);

    /// Keeps the window hidden until it comes up. The area of inner windows does not know of it
    /// meanwhile, and may not: it takes its newest child for the active one as soon as that goes.
    /// `keeper` has it go with itself.
    void hold(QWidget &keeper);
    /// Puts the window among the frame's and shows it, once; in front it becomes the active one.
    /// Where its page has asked for a place of the engine control, the control has it.
    void comeUp();
    bool isUp() const { return m_isUp; }
    /// The window is about to close itself: what it took goes back to where it was, unless the
    /// user has gone elsewhere meanwhile.
    void giveBack();

private:
    BrowserWindow &m_window;
    Frame &m_frame;
    Place m_place;
    /// The active window and the focus before this one came up.
    QPointer<QMdiSubWindow> m_windowBefore;
    QPointer<QWidget> m_focusBefore;
    /// Of the engine control, while the window is held back: nobody has placed it.
    QRect m_unplaced;
    bool m_isUp = false;
};
