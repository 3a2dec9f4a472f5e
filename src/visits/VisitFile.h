#pragma once

#include "VisitErasure.h"
#include "VisitIndex.h"
#include "WriteResult.h"

#include <QList>
#include <atomic>

/// The file of the visits: a line each (`VisitLine`), the newest last. Other lines are nobody's:
/// they are passed over as it is read, and stay.
namespace VisitFile {
/// In the application folder.
QString path();

/// The newest 500,000 visits of the last 96 MB. Given up half-way when `isGivenUp`.
VisitIndex read(const QString &file, qint64 now, const std::atomic<bool> &isGivenUp);
/// Of kept addresses and titles. Nothing is logged.
WriteResult append(const QString &file, const QList<Visit> &visits);
/// Replaces the file by one without them.
WriteResult erase(const QString &file, const VisitErasure &erasure);
}
