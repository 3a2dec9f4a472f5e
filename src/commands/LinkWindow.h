#pragma once

#include <QObject>
#include <QPointer>

class BrowserWindow;
class Frame;

/// The window that its user has links of the others opened in, beside the page that has them.
class LinkWindow : public QObject {
public:
    /// Lives as long as the frame's window.
    explicit LinkWindow(Frame &frame);

    bool is(const BrowserWindow &window) const { return m_window == &window; }
    /// Null: none.
    void set(BrowserWindow *window) { m_window = window; }
    /// Opens `url` in it; where there is none, in a new window, which it is from then on. It comes
    /// to the front only where nothing of its page is to be seen. A link of
    /// a private window where it is not, or the other way round, opens in a window of its own.
    void open(const QString &url, const BrowserWindow &from);

private:
    Frame &m_frame;
    QPointer<BrowserWindow> m_window;
};
