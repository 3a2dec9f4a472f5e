#include "InstalledFolder.h"

#include "FolderLock.h"
#include "Log.h"
#include "ProgramInfo.h"
#include "ShippedFiles.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {
constexpr auto usersOnly = QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner;

bool hasAppData(const QString &folder)
{
    return QFileInfo(folder + "/AppData"_L1).isDir();
}

bool isMovable(const QString &folder)
{
    return hasAppData(folder) && QFileInfo(folder).isWritable()
        && QFileInfo(folder + "/AppData"_L1).isWritable();
}

/// One that is named by a path that is none counts as not named.
QString settingsFolder()
{
    const QString named = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation);
    return QDir::isAbsolutePath(named) ? named : QDir::homePath() + "/.config"_L1;
}

bool make(const QString &folder)
{
    if (QFileInfo(folder).isDir() || QDir().mkdir(folder, usersOnly))
        return true;
    qCWarning(lcStart) << "cannot make the folder" << folder;
    return false;
}
}

namespace InstalledFolder {

ProgramFolders choose(const QString &program)
{
    if (isMovable(program))
        return {program, {}};
    const QString installed = QDir::cleanPath(program + u'/' + ProgramInfo::sharedFolder());
    const QString shipped = hasAppData(program) ? program : installed;
    if (!hasAppData(shipped))
        return {program, {}};
    return {settingsFolder() + "/orvane"_L1, shipped};
}

bool prepare(const ProgramFolders &folders)
{
    if (folders.shipped.isEmpty())
        return true;
    const QString parent = QFileInfo(folders.application).path();
    const QString appData = folders.application + "/AppData"_L1;
    if (!QDir().mkpath(parent) || !make(folders.application) || !make(appData)
        || !make(folders.application + "/Profiles"_L1))
        return false;
    const FolderLock lock(appData);
    return lock.isHeld() && ShippedFiles::bring(folders.shipped + "/AppData"_L1, appData);
}

}
