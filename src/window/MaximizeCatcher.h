#pragma once

#include <QObject>

class Frame;
class QTimer;
class BrowserWindow;

/// Puts the engine control of one browser window back in its place once, shortly after each page
/// has finished loading, while the frame's Maximize Catcher item is checked.
class MaximizeCatcher : public QObject {
    Q_OBJECT

public:
    /// Becomes a child of `window`.
    MaximizeCatcher(BrowserWindow &window, const Frame &frame);

private:
    void arm();
    void catchUp();

    BrowserWindow &m_window;
    const Frame &m_frame;
    QTimer *m_timer;
};
