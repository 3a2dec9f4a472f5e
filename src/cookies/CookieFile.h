#pragma once

#include <QList>
#include <QString>

#include <QNetworkCookie>

/// The cookies in the engine's own file, which the engine does not list. What it has not written
/// yet is not among them. Nothing, and a line in the log, when the file cannot be read as such.
QList<QNetworkCookie> readCookieFile(const QString &path);
