#pragma once

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QVariantAnimation>

class CoolBar;
class Frame;
class FrameBody;
class QMainWindow;
class QMenuBar;

/// The frame over the whole screen. Its menu bar and its tool bars are above the upper edge then,
/// and slide in over the windows, which keep their places, while the pointer is at that edge, the
/// keyboard is in one of the bars or a menu of theirs is open.
class FrameFullScreen : public QObject {
    Q_OBJECT

public:
    FrameFullScreen(QMainWindow &window, Frame &frame, FrameBody &body, CoolBar &bars);
    ~FrameFullScreen() override;

    /// Fills the screen, or gives the frame back what it was before, maximized or not.
    void toggle();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void followState(Qt::WindowStates before);
    void begin();
    void end();
    int menuHeight() const;
    int barsHeight() const;
    void place();
    void placeSoon();
    void reveal(bool atOnce);
    void retreat();
    bool isWanted() const;
    bool holds(const QWidget *widget) const;

    QMainWindow &m_window;
    Frame &m_frame;
    FrameBody &m_body;
    CoolBar &m_bars;
    QMenuBar &m_menu;
    /// Where the pointer calls for the bars; there is one while the screen is filled.
    QPointer<QWidget> m_edge;
    QVariantAnimation m_slide;
    /// Looks whether the bars are still wanted, while they are in sight.
    QTimer m_watch;
    /// Of the bars, from 0 to 1.
    double m_inSight = 1;
    bool m_isPlacing = false;
    bool m_wasMaximized = false;
};
