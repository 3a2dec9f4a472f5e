#include "AppFolder.h"

#include <QCoreApplication>

using namespace Qt::StringLiterals;

namespace {
QString chosenFolder;
QString chosenSettings;
}

namespace AppFolder {

QString path()
{
    return chosenFolder.isEmpty() ? QCoreApplication::applicationDirPath() : chosenFolder;
}

void setPath(const QString &folder)
{
    chosenFolder = folder;
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
