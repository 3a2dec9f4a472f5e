#include "StartCleaning.h"

#include "AppFolder.h"
#include "EngineOptions.h"
#include "Leftovers.h"
#include "RecoveredText.h"
#include "SpecialFolders.h"

#include <QDir>
#include <QStandardPaths>
#include <QThreadPool>

using namespace Qt::StringLiterals;

namespace {
QStringList folders()
{
    QStringList result{AppFolder::appData({}).chopped(1), RecoveredText::folder(),
                       AppFolder::path() + "/Profiles"_L1, EngineOptions::read().downloadFolder,
                       QDir::homePath()};
    for (const auto place : {QStandardPaths::DocumentsLocation, QStandardPaths::DownloadLocation})
        result.append(QStandardPaths::writableLocation(place));
    result.removeAll(QString());
    result.removeDuplicates();
    return result;
}
}

void startCleaning()
{
    const QString favorites = specialFolder(favoritesFolderNumber);
    QThreadPool::globalInstance()->start([all = folders(), favorites] {
        Leftovers::removeNoted();
        for (const QString &folder : all)
            Leftovers::removeIn(folder);
        if (!favorites.isEmpty())
            Leftovers::removeIn(favorites, Leftovers::Depth::Tree);
    });
}
