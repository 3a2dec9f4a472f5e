#include "AppFolder.h"

#include "InstalledFolder.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {
QString chosenFolder;
QString chosenProgram;
QString chosenSettings;

QString executableFolder()
{
    if (QCoreApplication::instance())
        return QCoreApplication::applicationDirPath();
    // The rendering is chosen before there is an application object to ask.
    return QFileInfo(QFileInfo(u"/proc/self/exe"_s).canonicalFilePath()).path();
}
}

namespace AppFolder {

void begin()
{
    const ProgramFolders folders = InstalledFolder::choose(executableFolder());
    // The superuser could write to what ships, which is everybody's: he does without.
    const bool isMade = InstalledFolder::prepare(folders);
    const bool isForAll = QFileInfo(folders.shipped + "/AppData"_L1).isWritable();
    chosenFolder = isMade || isForAll ? folders.application : folders.shipped;
}

void look()
{
    const ProgramFolders folders = InstalledFolder::choose(executableFolder());
    const bool isThere =
        folders.shipped.isEmpty() || QFileInfo(folders.application + "/AppData"_L1).isDir();
    chosenFolder = isThere ? folders.application : folders.shipped;
}

QString path()
{
    return chosenFolder.isEmpty() ? executableFolder() : chosenFolder;
}

void setPath(const QString &folder)
{
    chosenFolder = folder;
    chosenProgram = folder;
}

QString program()
{
    return chosenProgram.isEmpty() ? executableFolder() : chosenProgram;
}

QString mark()
{
    const QFileInfo folder(path());
    const QString canonical = folder.canonicalFilePath();
    const QByteArray name = (canonical.isEmpty() ? folder.absoluteFilePath() : canonical).toUtf8();
    const QByteArray hash = QCryptographicHash::hash(name, QCryptographicHash::Sha256).toHex();
    return QString::fromLatin1(hash.first(16));
}

QString appData(const QString &name)
{
    return path() + "/AppData/"_L1 + name;
}

QString settingsPath()
{
    return chosenSettings;
}

void setSettingsPath(const QString &file)
{
    chosenSettings = file;
}

}
