#include "Downloads.h"

#include "EngineOptions.h"
#include "Log.h"
#include "SaveJob.h"

#include <QDir>
#include <QStandardPaths>
#include <QWebEngineDownloadRequest>
#include <QWebEngineProfile>

using namespace Qt::StringLiterals;

namespace {
QString downloadFolder()
{
    const QString chosen = EngineOptions::read().downloadFolder;
    if (!chosen.isEmpty()) {
        if (QDir().mkpath(chosen))
            return chosen;
        qCWarning(lcEngine) << "cannot download to" << chosen;
    }
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation);
    if (!folder.isEmpty() && QDir().mkpath(folder))
        return folder;
    return QStandardPaths::writableLocation(QStandardPaths::TempLocation);
}
}

namespace Downloads {

void install(QWebEngineProfile *profile)
{
    QObject::connect(profile, &QWebEngineProfile::downloadRequested, profile,
                     [](QWebEngineDownloadRequest *request) {
                         // A page being saved has its place already.
                         if (request->state() != QWebEngineDownloadRequest::DownloadRequested
                             || SaveJob::awaits(*request))
                             return;
                         request->setDownloadDirectory(downloadFolder());
                         // Not accepted before this returns means cancelled.
                         request->accept();
                         qCInfo(lcEngine) << "download to" << request->downloadDirectory()
                                          << request->downloadFileName();
                     });
}

}
