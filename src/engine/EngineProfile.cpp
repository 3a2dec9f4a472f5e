#include "EngineProfile.h"

#include "AppFolder.h"
#include "Dictionaries.h"
#include "EngineOptions.h"
#include "EngineSetup.h"
#include "EngineSwitches.h"
#include "Log.h"
#include "OwnScheme.h"
#include "Profiles.h"
#include "Settings.h"

#include <QDir>
#include <QGuiApplication>
#include <QLockFile>
#include <QPalette>
#include <QStandardPaths>
#include <QWebEngineProfile>

using namespace Qt::StringLiterals;

namespace {
QWebEngineProfile *theProfile = nullptr;
std::unique_ptr<QLockFile> theLock;

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

/// The engine can be told once, as it starts: neither palette nor style hints reach its pages.
EngineSwitches::Pages coloursOfPages()
{
    if (!Settings::pagesFollowColours.isOne())
        return EngineSwitches::Pages::Light;
    const bool isDark = QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
    return isDark ? EngineSwitches::Pages::Dark : EngineSwitches::Pages::AsEngine;
}

QWebEngineProfile *makeProfile()
{
    EngineSetup::prepare(EngineOptions::read());
    // The first profile starts the engine.
    const EngineSwitches switches(coloursOfPages());
    Dictionaries::announce();
    OwnScheme::announce();
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
    Profiles::begin(profile, theLock ? data + "/Cookies"_L1 : QString());
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

CookieList *engineCookies()
{
    return Profiles::cookies(*engineProfile());
}

void dropEngineProfile()
{
    while (!Profiles::all().isEmpty())
        Profiles::end(Profiles::all().last());
    theProfile = nullptr;
    theLock.reset();
}
