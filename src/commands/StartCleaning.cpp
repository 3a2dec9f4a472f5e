#include "StartCleaning.h"

#include "AppFolder.h"
#include "DownloadFile.h"
#include "EngineOptions.h"
#include "Leftovers.h"
#include "RecoveredText.h"
#include "SpecialFolders.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>
#include <QThreadPool>
#include <atomic>
#include <memory>

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
    // The end of the program waits for it.
    auto isEnding = std::make_shared<std::atomic<bool>>(false);
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, qApp, [isEnding] { *isEnding = true; });
    QThreadPool::globalInstance()->start([all = folders(), favorites, isEnding] {
        const std::optional<QSet<QString>> needed = DownloadFile::stages(DownloadFile::path());
        // Where it cannot be read nothing is known to be of no use.
        Leftovers::removeNoted(
            [&needed](const QString &folder) { return !needed || needed->contains(folder); });
        for (const QString &folder : all)
            Leftovers::removeIn(folder);
        if (!favorites.isEmpty())
            Leftovers::removeIn(favorites, Leftovers::Depth::Tree, *isEnding);
    });
}
