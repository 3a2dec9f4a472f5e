#include "VisitFile.h"

#include "AppFolder.h"
#include "FileAppend.h"
#include "FileUpdate.h"
#include "Log.h"

#include <QFile>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace {
constexpr qint64 mostBytes = 96LL * 1024 * 1024;
constexpr int mostVisits = 500'000;

/// The end of the file, from the beginning of a line.
QByteArray lastLines(const QString &path)
{
    // Opening a pipe would wait for whoever writes to it.
    if (!QFileInfo(path).isFile())
        return {};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        qCWarning(lcFiles) << "cannot read" << path << "and so knows no earlier visits";
        return {};
    }
    const qint64 skipped = std::max<qint64>(0, file.size() - mostBytes);
    file.seek(skipped);
    QByteArray bytes = file.read(mostBytes);
    if (skipped > 0)
        bytes.remove(0, bytes.indexOf('\n') + 1);
    return bytes;
}

/// Where the last so many lines begin.
qsizetype beginOfLast(int lines, const QByteArray &bytes)
{
    qsizetype begin = bytes.size();
    for (int i = 0; i < lines && begin > 0; ++i)
        begin = begin > 1 ? bytes.lastIndexOf('\n', begin - 2) + 1 : 0;
    return begin;
}

/// Calls `take` with each line and its line feed, if it has one, until that says no.
template <typename Take> void forEachLine(QByteArrayView bytes, Take take)
{
    while (!bytes.isEmpty()) {
        const qsizetype feed = bytes.indexOf('\n');
        const qsizetype length = feed < 0 ? bytes.size() : feed + 1;
        if (!take(bytes.first(length)))
            return;
        bytes = bytes.sliced(length);
    }
}

std::optional<VisitLine::Parts> visitIn(QByteArrayView line)
{
    return VisitLine::read(line.endsWith('\n') ? line.chopped(1) : line);
}
}

namespace VisitFile {

QString path()
{
    return AppFolder::appData(u"History.txt"_s);
}

VisitIndex read(const QString &file, qint64 now, const std::atomic<bool> &isGivenUp)
{
    VisitIndex index(now);
    const QByteArray bytes = lastLines(file);
    forEachLine(QByteArrayView(bytes).sliced(beginOfLast(mostVisits, bytes)),
                [&](QByteArrayView line) {
                    // Half a line is one that the program could not write whole.
                    if (const auto visit = visitIn(line); visit && line.endsWith('\n'))
                        index.add(*visit);
                    return !isGivenUp;
                });
    if (!isGivenUp)
        index.rank();
    return index;
}

WriteResult append(const QString &file, const QList<Visit> &visits)
{
    QByteArray lines;
    for (const Visit &visit : visits)
        lines += VisitLine::of(visit);
    return FileAppend::add(file, lines);
}

WriteResult erase(const QString &file, const VisitErasure &erasure)
{
    if (!QFileInfo::exists(file))
        return {};
    if (erasure.isOfAll())
        return FileUpdate::clear(file);
    return FileUpdate::change(file, [&erasure](const QByteArray &old) {
        QByteArray left;
        left.reserve(old.size());
        forEachLine(old, [&](QByteArrayView line) {
            const auto visit = visitIn(line);
            if (!visit || !erasure.covers(*visit))
                left.append(line);
            return true;
        });
        return std::optional(left);
    });
}

}
