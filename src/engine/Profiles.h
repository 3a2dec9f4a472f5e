#pragma once

#include <QList>
#include <QString>

class CookieList;
class QWebEngineProfile;

/// What goes with each profile in rooms that the engine's does not know. Null: it has nothing to
/// do.
struct ProfileFollower {
    /// A profile has been made, and has no page yet.
    void (*begin)(QWebEngineProfile *profile) = nullptr;
    /// It is about to be dropped.
    void (*end)(QWebEngineProfile *profile) = nullptr;
    /// The network is to be asked for something, see `noticeProxy`.
    void (*useProxy)(QWebEngineProfile *profile) = nullptr;

    bool operator==(const ProfileFollower &) const = default;
};

/// For each profile from now on; once, however often it is called with the same.
void followProfile(const ProfileFollower &follower);

/// Whether scripts may ask for windows that the user did nothing for; else they get null at once.
/// May change at any time, also before there is a profile.
void setScriptsMayOpenWindows(bool may);

/// The engine looks for another proxy only as a request begins, and uses it from the next request
/// on: this has a follower make such a first request, which goes nowhere.
void noticeProxy();

/// What is alike for the profile of all pages and for those of private windows.
namespace Profiles {
/// Sets every option of a new profile, before its first page. `cookieFile` is the engine's; empty
/// where it stores none.
void begin(QWebEngineProfile *profile, const QString &cookieFile);
/// Deletes it; every page but the followers' own must be gone.
void end(QWebEngineProfile *profile);
/// Those that there are.
const QList<QWebEngineProfile *> &all();
/// Null for one that `begin` has not seen.
CookieList *cookies(const QWebEngineProfile &profile);
}
