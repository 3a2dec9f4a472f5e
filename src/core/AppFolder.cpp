#include "AppFolder.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {
QString chosenFolder;
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

QString path()
{
    return chosenFolder.isEmpty() ? executableFolder() : chosenFolder;
}

void setPath(const QString &folder)
{
    chosenFolder = folder;
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
