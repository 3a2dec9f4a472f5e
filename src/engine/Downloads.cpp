#include "Downloads.h"

#include "EngineOptions.h"
#include "FileName.h"
#include "Log.h"
#include "SaveJob.h"

#include <QDir>
#include <QFileInfo>
#include <QHash>
#include <QSet>
#include <QStandardPaths>
#include <QWebEngineDownloadRequest>
#include <QWebEngineProfile>
#include <algorithm>
#include <memory>

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

/// Where the downloads go, by their numbers, so that two of one name do not meet.
using Targets = QHash<quint32, QString>;

/// Under a further name the engine writes, and takes the last one from whoever has it.
QString freeName(const QString &suggested, const QString &folder, const Targets &targets)
{
    const QString ending = u".download"_s;
    const auto isTaken = [&](const QString &name) {
        const QString path = folder + u'/' + name;
        const QFileInfo file(path);
        return file.exists() || file.isSymLink() || QFileInfo::exists(path + ending)
            || std::find(targets.begin(), targets.end(), path) != targets.end();
    };
    const qsizetype limit = FileName::longest - ending.size();
    const QString name = FileName::from(suggested, {}, u"download"_s, limit);
    return FileName::firstFree(name, 1, isTaken, limit);
}

void place(QWebEngineDownloadRequest &request, const std::shared_ptr<Targets> &targets)
{
    // One that the engine takes up again has its place.
    QString &target = (*targets)[request.id()];
    if (target.isEmpty()) {
        const QString folder = downloadFolder();
        target = folder + u'/' + freeName(request.suggestedFileName(), folder, *targets);
    }
    const QFileInfo file(target);
    request.setDownloadDirectory(file.path());
    request.setDownloadFileName(file.fileName());
    QObject::connect(&request, &QWebEngineDownloadRequest::stateChanged, &request,
                     [targets, id = request.id()](QWebEngineDownloadRequest::DownloadState state) {
                         if (state == QWebEngineDownloadRequest::DownloadCompleted
                             || state == QWebEngineDownloadRequest::DownloadCancelled)
                             targets->remove(id);
                     });
}
}

namespace Downloads {

void install(QWebEngineProfile *profile)
{
    QObject::connect(profile, &QWebEngineProfile::downloadRequested, profile,
                     [told = QSet<quint32>(), targets = std::make_shared<Targets>()](
                         QWebEngineDownloadRequest *request) mutable {
                         // The engine takes up a download whose connection broke, and tells of it
                         // once more. Its page must not be asked for then: that may be gone, and
                         // the program with it.
                         const bool isNew = !told.contains(request->id());
                         told.insert(request->id());
                         // A page being saved has its place already.
                         if (isNew && SaveJob::take(*request))
                             return;
                         if (request->state() != QWebEngineDownloadRequest::DownloadRequested)
                             return;
                         place(*request, targets);
                         // Not accepted before this returns means cancelled.
                         request->accept();
                         qCInfo(lcEngine) << "download to" << request->downloadDirectory()
                                          << request->downloadFileName();
                     });
}

}
