#pragma once

#include <QObject>
#include <functional>

class AddressBox;
class Frame;
class MdiArea;

/// What the frame's address bar tells and does: it shows where the active window is, unless the
/// user is typing in it, and Enter sends that window to what he typed; Escape puts back what is
/// shown.
class FrameAddress : public QObject {
    Q_OBJECT

public:
    /// Lives as long as `bar`, which stands around `windows`.
    FrameAddress(AddressBox &bar, Frame &frame, const MdiArea &windows);

    // As `Frame` has them.
    void setText(const QString &url);
    void add(const QString &url, bool showText);
    void keepTyping(const std::function<void()> &change);

private:
    void navigate();
    void restore();
    bool isUsers() const;

    AddressBox &m_bar;
    Frame &m_frame;
    const MdiArea &m_windows;
    /// What the user types is not to be replaced, wherever the keyboard is at the moment.
    bool m_keepsTyping = false;
};
