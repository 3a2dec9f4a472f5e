#pragma once

class CookieList;
class QWebEngineProfile;

/// The one profile of all pages. It is made at the first call, with every option set before the
/// first page and never changed afterwards: a later change resets the network of all pages.
/// The data lives in a folder of its own for each application folder; while another process owns
/// that folder the profile is off the record.
QWebEngineProfile *engineProfile();

/// Whether this process owns the stored data (false: off the record).
bool engineProfileIsStored();

/// Whether scripts may ask for windows that the user did nothing for; else they get null at once.
/// May change at any time, also before there is a profile.
void setScriptsMayOpenWindows(bool may);

/// The profile's cookies.
CookieList *engineCookies();

/// The engine looks for another proxy only as a request begins, and uses it from the next request
/// on: this has a follower make such a first request, which goes nowhere.
void noticeProxy();

/// What goes with the profile in rooms that the engine's does not know. Null: it has nothing to do.
struct ProfileFollower {
    /// A profile has been made, and has no page yet.
    void (*begin)(QWebEngineProfile *profile) = nullptr;
    /// It is about to be dropped.
    void (*end)() = nullptr;
    /// The network is to be asked for something, see `noticeProxy`.
    void (*useProxy)() = nullptr;

    bool operator==(const ProfileFollower &) const = default;
};

/// For each profile from now on; once, however often it is called with the same.
void followProfile(const ProfileFollower &follower);

/// Ends the profile; every page but the followers' own must be gone.
void dropEngineProfile();
