#include "DownloadName.h"

#include "DownloadList.h"
#include "FileName.h"

#include <QFileInfo>
#include <QMimeDatabase>
#include <QSet>
#include <QWebEngineDownloadRequest>

using namespace Qt::StringLiterals;

namespace {
/// What the engine makes up where it knows no name.
constexpr auto madeUp = "qwe_download"_L1;

/// As the engine has it, without what it made up: what a page made by itself has an address that
/// says nothing.
QString told(const QWebEngineDownloadRequest &request)
{
    const QString name = request.suggestedFileName();
    const bool isNumber =
        request.url().scheme() == "blob"_L1 && request.url().path().endsWith(u'/' + name);
    return isNumber || name.startsWith(madeUp) ? QString() : name;
}

/// For a name that says nothing of the type.
QString endingFor(const QString &name, const QString &type)
{
    const QMimeDatabase types;
    if (!FileName::endingOf(name).isEmpty() || !types.mimeTypesForFileName(name).isEmpty())
        return {};
    const QString suffix = types.mimeTypeForName(type).preferredSuffix();
    return suffix.isEmpty() || type == "application/octet-stream"_L1 ? QString() : u'.' + suffix;
}
}

namespace DownloadName {

QString of(const QWebEngineDownloadRequest &request)
{
    const QString name = FileName::from(told(request), {}, u"download"_s);
    const QString ending = endingFor(name, request.mimeType());
    return ending.isEmpty() ? name : FileName::from(name, ending, u"download"_s);
}

QString of(const QUrl &address)
{
    return FileName::from(address.fileName(QUrl::FullyDecoded), {}, u"download"_s);
}

QString freeIn(const QString &folder, const QString &name)
{
    QSet<QString> promised;
    for (const Download &download : downloadList().all()) {
        if (download.isUnderWay() && download.folder == folder)
            promised.insert(download.name);
    }
    return FileName::firstFree(name, 1, [&](const QString &candidate) {
        const QFileInfo file(folder + u'/' + candidate);
        return promised.contains(candidate) || file.exists() || file.isSymLink();
    });
}

}
