#include "EngineProfile.h"

#include "AppFolder.h"
#include "CookieList.h"
#include "CookiePolicy.h"
#include "EngineOptions.h"
#include "EngineSetup.h"
#include "EngineSwitches.h"
#include "EngineVersion.h"
#include "Log.h"
#include "PageScripts.h"
#include "RefusedAddress.h"

#include <QDir>
#include <QLockFile>
#include <QStandardPaths>
#include <QWebEngineProfile>
#include <QWebEngineSettings>

using namespace Qt::StringLiterals;

namespace {
QWebEngineProfile *theProfile = nullptr;
std::unique_ptr<QLockFile> theLock;
CookieList *theCookies = nullptr;
QList<ProfileFollower> theFollowers;
bool scriptsMayOpenWindows = true;

/// Two application folders are two browsers.
QString profileName()
{
    return u"folder-"_s + AppFolder::mark();
}

/// Takes the stored data for this process; false while another process has it.
bool lockData(const QString &dataFolder)
{
    if (!QDir().mkpath(dataFolder))
        return false;
    theLock = std::make_unique<QLockFile>(dataFolder + "/in-use.lock"_L1);
    theLock->setStaleLockTime(0);
    if (theLock->tryLock(0))
        return true;
    theLock.reset();
    return false;
}

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

QWebEngineProfile *makeProfile()
{
    const EngineOptions options = EngineOptions::read();
    EngineSetup::prepare(options);
    // The first profile starts the engine.
    const EngineSwitches switches;
    const QString name = profileName();
    const QString inFolder = "/QtWebEngine/"_L1 + name;
    const QString data =
        QStandardPaths::writableLocation(QStandardPaths::AppLocalDataLocation) + inFolder;
    QWebEngineProfile *profile = nullptr;
    if (lockData(data)) {
        profile = new QWebEngineProfile(name);
        profile->setPersistentStoragePath(data);
        profile->setCachePath(QStandardPaths::writableLocation(QStandardPaths::CacheLocation)
                              + inFolder);
    } else {
        qCInfo(lcEngine) << "another process has" << data << "- nothing is stored by this one";
        profile = new QWebEngineProfile;
    }
    setOptions(profile);
#if ORVANE_HAS_PERMISSION_OBJECTS
    // What is refused is not kept beside the cookies.
    profile->setPersistentPermissionsPolicy(
        QWebEngineProfile::PersistentPermissionsPolicy::AskEveryTime);
#endif
    EngineSetup::start(profile, options);
    theCookies =
        new CookieList(profile->cookieStore(), theLock ? data + "/Cookies"_L1 : QString(), profile);
    profile->setUrlRequestInterceptor(new InnerFilesGuard(profile));
    PageScripts::install(profile);
    CookiePolicy::instance().install(profile);
    for (const ProfileFollower &follower : std::as_const(theFollowers)) {
        if (follower.begin)
            follower.begin(profile);
    }
    return profile;
}
}

QWebEngineProfile *engineProfile()
{
    if (!theProfile)
        theProfile = makeProfile();
    return theProfile;
}

bool engineProfileIsStored()
{
    return theLock != nullptr;
}

void setScriptsMayOpenWindows(bool may)
{
    scriptsMayOpenWindows = may;
    if (theProfile)
        theProfile->settings()->setAttribute(QWebEngineSettings::JavascriptCanOpenWindows, may);
}

CookieList *engineCookies()
{
    engineProfile();
    return theCookies;
}

void noticeProxy()
{
    for (const ProfileFollower &follower : std::as_const(theFollowers)) {
        if (follower.useProxy)
            follower.useProxy();
    }
}

void followProfile(const ProfileFollower &follower)
{
    if (!theFollowers.contains(follower))
        theFollowers.append(follower);
}

void dropEngineProfile()
{
    if (theProfile) {
        for (const ProfileFollower &follower : std::as_const(theFollowers)) {
            if (follower.end)
                follower.end();
        }
    }
    delete std::exchange(theProfile, nullptr);
    theLock.reset();
}
