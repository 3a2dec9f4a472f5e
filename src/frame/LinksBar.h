#pragma once

#include <QObject>
#include <functional>

class Frame;
class ToolBar;

/// Fills `tbLinks` with one button for each shortcut in the folder "Links" of the user's Favorites,
/// in the order of the files' names, each followed by a separator. A click opens the address that
/// the button's tool tip shows.
class LinksBar : public QObject {
    Q_OBJECT

public:
    LinksBar(Frame &frame, ToolBar &bar, QObject *parent);

    /// Removes all buttons, and fills the bar anew when `shown`; a hidden bar stays empty. Returns
    /// how many shortcut files were seen.
    int rebuild(bool shown);
    /// Fills the bar when it has no buttons.
    void fillIfEmpty();
    /// Rebuilds a moment later: at the start a folder of a thousand links does not hold up the
    /// first page. A bar that is hidden by then stays empty.
    void rebuildSoon(const std::function<bool()> &isShown);

private:
    Frame &m_frame;
    ToolBar &m_bar;
};
