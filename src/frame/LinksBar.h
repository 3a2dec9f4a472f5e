#pragma once

#include <QObject>
#include <QTimer>
#include <functional>
#include <memory>

class Frame;
class LinksReading;
class ToolBar;

/// Fills `tbLinks` with one button for each shortcut in the folder "Links" of the user's Favorites,
/// in the order of the files' names, each followed by a separator. A click opens the address that
/// the button's tool tip shows. A large folder is read in pieces, between which the frame stays
/// usable. A link that is dropped on the bar becomes one of them.
class LinksBar : public QObject {
    Q_OBJECT

public:
    LinksBar(Frame &frame, ToolBar &bar, QObject *parent);
    ~LinksBar() override;

    /// Removes all buttons, and fills the bar anew when `shown`; a hidden bar stays empty. The
    /// first piece is there at once. Returns how many shortcut files were seen.
    int rebuild(bool shown);
    /// Fills the bar when it has no buttons.
    void fillIfEmpty();
    /// Rebuilds a moment later: at the start a folder of a thousand links does not hold up the
    /// first page. A bar that is hidden by then stays empty.
    void rebuildSoon(const std::function<bool()> &isShown);
    /// Whether buttons may still come by themselves.
    bool isPending() const { return m_start.isActive() || m_reading; }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void addDropped(const QString &url, const QString &title);
    void addSome();
    void stop();

    Frame &m_frame;
    ToolBar &m_bar;
    std::function<bool()> m_isShown;
    std::unique_ptr<LinksReading> m_reading; // only until its end
    QTimer m_start;
    QTimer m_piece;
};
