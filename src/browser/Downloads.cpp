#include "Downloads.h"

#include "EngineOptions.h"
#include "Log.h"
#include "SaveJob.h"

#include <QDir>
#include <QSet>
#include <QStandardPaths>
#include <QWebEngineDownloadRequest>
#include <QWebEngineProfile>

using namespace Qt::StringLiterals;

namespace {
constexpr const char *toldBefore = "toldBefore";

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
    // Made before anything that saves pages connects, and so the first to hear of a request.
    QObject::connect(profile, &QWebEngineProfile::downloadRequested, profile,
                     [told = QSet<quint32>()](QWebEngineDownloadRequest *request) mutable {
                         request->setProperty(toldBefore, told.contains(request->id()));
                         told.insert(request->id());
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

bool goesOn(const QWebEngineDownloadRequest &request)
{
    return request.property(toldBefore).toBool();
}

}
