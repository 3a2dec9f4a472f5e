#include "DownloadRetry.h"

#include "CookieList.h"
#include "DownloadEnd.h"
#include "DownloadList.h"
#include "DownloadStage.h"
#include "Downloads.h"
#include "EngineOptions.h"
#include "LeftDownload.h"
#include "Log.h"
#include "Profiles.h"
#include "RangeDownload.h"
#include "RangeProbe.h"

#include <QFileInfo>
#include <QPointer>
#include <QWebEngineProfile>

using namespace Qt::StringLiterals;

namespace {
using Problem = Download::Problem;

WebManners mannersOf(const QWebEngineProfile &profile)
{
    return {profile.httpUserAgent().toLatin1(), profile.httpAcceptLanguage().toLatin1(),
            Profiles::cookies(profile)->withValues(),
            EngineOptions::read().proxy == EngineOptions::Proxy::System};
}

/// The server can tell whether it has the same file still.
bool canGoOn(const Download &download)
{
    const RangeAsked asked{download.received, download.size, download.etag, download.lastModified};
    return download.isOfWeb() && download.isRepeatable && download.received > 0
        && (download.size < 0 || download.received < download.size) && !asked.condition().isEmpty();
}

void beginAnew(const QString &id, Problem why)
{
    downloadList().change(id, [why](Download &download) {
        download.stage.clear();
        download.received = 0;
        download.etag.clear();
        download.lastModified.clear();
        download.problem = why;
    });
    if (Downloads::beginAnew(id))
        return;
    downloadList().change(id, [](Download &download) {
        download.state = Download::State::Failed;
        download.problem = Problem::Other;
    });
}

void retry(const QString &id, const MannersNow &manners)
{
    if (Downloads::goOn(id))
        return;
    const Download *entry = downloadList().find(id);
    if (!entry)
        return;
    Download download = *entry;
    std::unique_ptr<DownloadStage> stage = DownloadStage::take(download.stage);
    if (!stage && QFileInfo(download.stage).isDir()) {
        qCWarning(lcEngine) << "another program has" << download.stage;
        downloadList().change(id, [](Download &other) {
            other.state = Download::State::Failed;
            other.problem = Problem::InUse;
        });
        return;
    }
    const bool hasBytes = stage && !stage->arrived().isEmpty();
    download.received = hasBytes ? QFileInfo(stage->arrived()).size() : 0;
    if (hasBytes && LeftDownload::isWhole(download)) {
        stage->setAside();
        DownloadEnd::begin(id, std::move(stage));
    } else if (hasBytes && canGoOn(download)) {
        RangeDownload::begin(id, std::move(stage), manners,
                             [](const QString &other) { beginAnew(other, Problem::NoRanges); });
    } else {
        DownloadStage::drop(std::move(stage));
        beginAnew(id, download.received > 0 ? Problem::NoRanges : Problem::None);
    }
}
}

namespace DownloadRetry {

void install(QWebEngineProfile *profile)
{
    const MannersNow manners = [profile = QPointer(profile)] {
        return profile ? mannersOf(*profile) : WebManners();
    };
    new RangeProbe(downloadList(), manners, profile);
    downloadList().setRetry([manners](const QString &id) { retry(id, manners); });
    QObject::connect(profile, &QObject::destroyed, &downloadList(),
                     [] { downloadList().setRetry({}); });
}

}
