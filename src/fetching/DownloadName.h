#pragma once

#include <QString>

class QUrl;
class QWebEngineDownloadRequest;

/// What a file is called that the engine is about to bring: by its server, else by the page, else
/// by its address, else by its type.
namespace DownloadName {
QString of(const QWebEngineDownloadRequest &request);
/// As long as nothing else is known.
QString of(const QUrl &address);
/// `name`, or one like it that nothing in the folder has and no download under way is to have.
QString freeIn(const QString &folder, const QString &name);
}
