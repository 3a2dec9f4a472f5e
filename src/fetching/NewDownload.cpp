#include "NewDownload.h"

#include "DownloadList.h"
#include "DownloadName.h"
#include "DownloadPages.h"
#include "EngineOptions.h"
#include "Log.h"

#include <QDir>
#include <QStandardPaths>
#include <QWebEngineDownloadRequest>

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

/// What "data:" has for an address is the file itself.
QUrl addressOf(const QWebEngineDownloadRequest &request)
{
    return request.url().scheme() == "data"_L1 ? QUrl("data:"_L1 + request.mimeType())
                                               : request.url();
}

Download entry(const QUrl &address, const QString &name, const PageOrigin &origin)
{
    Download download;
    download.id = DownloadList::newId();
    download.folder = downloadFolder();
    download.name = DownloadName::freeIn(download.folder, name);
    download.address = address;
    download.began = QDateTime::currentDateTimeUtc();
    download.isRepeatable = download.isOfWeb();
    download.page = origin.page;
    download.leavesTrace = origin.leavesTrace;
    return download;
}
}

namespace NewDownload {

Download of(const QWebEngineDownloadRequest &request, const DownloadSource &source)
{
    Download download = entry(addressOf(request), DownloadName::of(request), source.origin);
    download.isRepeatable = download.isRepeatable && !source.isAnswerToForm;
    return download;
}

Download at(const QUrl &url, const WebPage &page)
{
    return entry(url, DownloadName::of(url), page.origin());
}

}
