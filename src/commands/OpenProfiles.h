#pragma once

#include <QObject>
#include <QPointer>
#include <QString>
#include <list>

#include "BrowserWindow.h"
#include "Desk.h"
#include "WriteResult.h"

class Frame;
class MdiArea;

/// What came of a save, and the file which that is about.
struct ProfileSaved {
    WriteResult result;
    QString file;
};

/// The two kinds of profiles.
enum class ProfileKind { Addresses, Windows };

/// A profile that was opened or saved, and its windows.
struct OpenProfile {
    QString file;
    ProfileKind kind = ProfileKind::Addresses;
    /// Its windows when it was opened or saved.
    Desk kept;
    QList<QPointer<BrowserWindow>> windows;
};

/// Which profiles are open in the frame. A window belongs to the profile that opened it or that was
/// saved with it, and a new one to that of the window the user was in, or to none where that has
/// none. A profile whose last window closes is no longer open.
class OpenProfiles : public QObject {
    Q_OBJECT

public:
    OpenProfiles(Frame &frame, MdiArea &area, QObject *parent);

    /// The windows belong to the profile from now on, and to no other.
    void add(const QString &file, ProfileKind kind, const QList<BrowserWindow *> &windows);
    /// The one of the active window; where that has none, the one used last. Null: none is open.
    OpenProfile *current();
    /// Its windows, in the order in which they were loaded.
    static QList<BrowserWindow *> windowsOf(const OpenProfile &profile);

    /// Writes a desk as a profile of that kind.
    static WriteResult write(const QString &file, ProfileKind kind, const Desk &desk);
    /// Writes the profile as its windows are now.
    WriteResult save(OpenProfile &profile);
    /// The same where its windows have changed since, or its file is not there any more; the old
    /// file is kept beside it, with a "~" behind its name.
    ProfileSaved saveChanged(OpenProfile &profile);

private:
    OpenProfile *find(const BrowserWindow *window);
    void join(BrowserWindow *window);
    void forgetClosed();
    Desk deskOf(const OpenProfile &profile) const;

    Frame &m_frame;
    /// The one used last is the last.
    std::list<OpenProfile> m_profiles;
};
