#include "FileUpdate.h"

#include "FileWriter.h"
#include "FolderLock.h"
#include "Log.h"

#include <QFile>
#include <QFileInfo>

namespace {
using Failure = WriteResult::Failure;

constexpr qint64 largestFile = 256 * 1024 * 1024;

WriteResult notLocked(const QString &folder)
{
    return WriteResult(QFileInfo(folder).isDir() ? Failure::Busy : Failure::FolderMissing);
}
}

namespace FileUpdate {

std::optional<QByteArray> readAll(const QString &path)
{
    // Opening a pipe would wait for whoever writes to it.
    const QFileInfo info(path);
    if (!info.isFile() || info.size() > largestFile)
        return {};
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return {};
    return file.readAll();
}

WriteResult change(const QString &path, const Change &change)
{
    const QString file = FileWriter::target(path);
    const QString folder = QFileInfo(file).path();
    const FolderLock lock(folder);
    if (!lock.isHeld())
        return notLocked(folder);
    QByteArray old;
    const bool exists = QFileInfo::exists(file);
    if (exists) {
        const std::optional<QByteArray> bytes = readAll(file);
        if (!bytes) {
            qCWarning(lcFiles) << "cannot read" << file << "and so leaves it as it is";
            return WriteResult(Failure::Unreadable);
        }
        old = *bytes;
    }
    const std::optional<QByteArray> changed = change(old);
    if (!changed)
        return WriteResult(Failure::Refused);
    return exists && *changed == old ? WriteResult() : FileWriter::write(file, *changed);
}

WriteResult replace(const QString &path, const QByteArray &bytes)
{
    return change(path, [&bytes](const QByteArray &) { return std::optional(bytes); });
}

WriteResult clear(const QString &path)
{
    const QString file = FileWriter::target(path);
    const QString folder = QFileInfo(file).path();
    const FolderLock lock(folder);
    if (!lock.isHeld())
        return notLocked(folder);
    const QFileInfo info(file);
    if (!info.exists())
        return {};
    return info.isFile() ? FileWriter::write(file, QByteArray()) : WriteResult(Failure::Unreadable);
}

}
