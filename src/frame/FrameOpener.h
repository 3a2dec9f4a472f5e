#pragma once

#include "Frame.h"

#include <QObject>
#include <QString>
#include <functional>

class QDropEvent;

/// What opens in the frame from outside: what the program was started on, what a later start hands
/// over, profiles, and files that are dropped where nothing else takes them.
class FrameOpener : public QObject {
    Q_OBJECT

public:
    /// Lives as long as the frame's window, whose drops it takes.
    explicit FrameOpener(Frame &frame);

    /// Opens a profile file for `openProfile`; arguments and result are the same.
    using ProfileOpener = std::function<bool(const QString &file, bool quiet)>;
    void setProfileOpener(const ProfileOpener &opener) { m_profileOpener = opener; }
    /// What opens the windows of an earlier start as this one loads, before what it was started on;
    /// false where there were none.
    using DeskOpener = std::function<bool()>;
    void setDeskOpener(const DeskOpener &opener) { m_deskOpener = opener; }

    /// `text`: an address or a profile file, perhaps in double quotes, relative to the current
    /// folder. Private: in a window that is; of a profile, whose windows are not, what is in it.
    void openFirst(const QString &text, Privacy privacy = Privacy::Ordinary);
    /// As at the start of the program, in a window besides: opens what `text` names, relative to
    /// `folder`.
    void openAlso(const QString &text, const QString &folder, Privacy privacy = Privacy::Ordinary);
    /// As `Frame` has it.
    bool openProfile(const QString &file, bool quiet) const;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void open(const QString &address, WindowState state, Privacy privacy);
    void drop(QDropEvent &event);

    Frame &m_frame;
    ProfileOpener m_profileOpener;
    DeskOpener m_deskOpener;
};
