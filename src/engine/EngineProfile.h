#pragma once

class CookieList;
class QWebEngineProfile;

/// The one profile of all pages but those of private windows (`PrivateProfiles`). It is made at the
/// first call, with every option set before the first page and never changed afterwards: a later
/// change resets the network of all pages.
/// The data lives in a folder of its own for each application folder; while another process owns
/// that folder the profile is off the record.
QWebEngineProfile *engineProfile();

/// Whether this process owns the stored data (false: off the record).
bool engineProfileIsStored();

/// The profile's cookies.
CookieList *engineCookies();

/// Ends the profile, and private ones that are left; every page but the followers' own must be
/// gone.
void dropEngineProfile();
