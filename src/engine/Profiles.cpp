#include "Profiles.h"

#include "CookieList.h"
#include "CookiePolicy.h"
#include "EngineOptions.h"
#include "EngineSetup.h"
#include "EngineVersion.h"
#include "OwnScheme.h"
#include "PageScripts.h"
#include "RefusedAddress.h"

#include <QWebEngineProfile>
#include <QWebEngineSettings>

namespace {
QList<QWebEngineProfile *> theProfiles;
QList<ProfileFollower> theFollowers;
bool scriptsMayOpenWindows = true;

void setOptions(QWebEngineProfile *profile)
{
    QWebEngineSettings *settings = profile->settings();
    settings->setAttribute(QWebEngineSettings::FullScreenSupportEnabled, true);
    settings->setAttribute(QWebEngineSettings::FocusOnNavigationEnabled, false);
    settings->setAttribute(QWebEngineSettings::PluginsEnabled, true);
    settings->setAttribute(QWebEngineSettings::ErrorPageEnabled, true);
    settings->setAttribute(QWebEngineSettings::JavascriptCanOpenWindows, scriptsMayOpenWindows);
    // It is asked for like the camera.
    settings->setAttribute(QWebEngineSettings::ScreenCaptureEnabled, true);
    // The engine asks for a window for what is dropped on a page that does not take it.
    settings->setAttribute(QWebEngineSettings::NavigateOnDropEnabled, true);
}

/// `step` is one of a follower's.
template <typename Step> void tellFollowers(Step step, QWebEngineProfile *profile)
{
    for (const ProfileFollower &follower : std::as_const(theFollowers)) {
        if (follower.*step)
            (follower.*step)(profile);
    }
}
}

void followProfile(const ProfileFollower &follower)
{
    if (!theFollowers.contains(follower))
        theFollowers.append(follower);
}

void setScriptsMayOpenWindows(bool may)
{
    scriptsMayOpenWindows = may;
    for (QWebEngineProfile *profile : std::as_const(theProfiles))
        profile->settings()->setAttribute(QWebEngineSettings::JavascriptCanOpenWindows, may);
}

void noticeProxy()
{
    for (QWebEngineProfile *profile : std::as_const(theProfiles))
        tellFollowers(&ProfileFollower::useProxy, profile);
}

namespace Profiles {

void begin(QWebEngineProfile *profile, const QString &cookieFile)
{
    theProfiles.append(profile);
    setOptions(profile);
#if ORVANE_HAS_PERMISSION_OBJECTS
    // What is refused is not kept beside the cookies.
    profile->setPersistentPermissionsPolicy(
        QWebEngineProfile::PersistentPermissionsPolicy::AskEveryTime);
#endif
    EngineSetup::start(profile, EngineOptions::read());
    new CookieList(profile->cookieStore(), cookieFile, profile);
    profile->setUrlRequestInterceptor(new FilesGuard(profile));
    OwnScheme::install(profile);
    PageScripts::install(profile);
    CookiePolicy::instance().install(profile);
    tellFollowers(&ProfileFollower::begin, profile);
}

void end(QWebEngineProfile *profile)
{
    tellFollowers(&ProfileFollower::end, profile);
    theProfiles.removeOne(profile);
    delete profile;
}

const QList<QWebEngineProfile *> &all()
{
    return theProfiles;
}

CookieList *cookies(const QWebEngineProfile &profile)
{
    return profile.findChild<CookieList *>(QString(), Qt::FindDirectChildrenOnly);
}

}
