#include "FileUpdate.h"

#include "FolderLock.h"
#include "Log.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

namespace {
constexpr qint64 largestFile = 256 * 1024 * 1024;

// Where the bytes of `path` really are, so that all who reach one file lock one folder.
QString target(const QString &path)
{
    const QFileInfo info(path);
    if (!info.isSymLink())
        return path;
    const QString real = info.canonicalFilePath();
    return real.isEmpty() ? info.symLinkTarget() : real;
}

bool write(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    // What fails only as the buffer is written out is no error to `commit`, which would put an
    // empty file in place on a full disk.
    if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.flush()
        && file.commit())
        return true;
    qCWarning(lcFiles) << "cannot write" << path << file.errorString();
    return false;
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

bool change(const QString &path, const Change &change)
{
    const QString file = target(path);
    const FolderLock lock(QFileInfo(file).path());
    if (!lock.isHeld())
        return false;
    QByteArray old;
    const bool exists = QFileInfo::exists(file);
    if (exists) {
        const std::optional<QByteArray> bytes = readAll(file);
        if (!bytes) {
            qCWarning(lcFiles) << "cannot read" << file << "and so leaves it as it is";
            return false;
        }
        old = *bytes;
    }
    const std::optional<QByteArray> changed = change(old);
    if (!changed)
        return false;
    return (exists && *changed == old) || write(file, *changed);
}

bool replace(const QString &path, const QByteArray &bytes)
{
    return change(path, [&bytes](const QByteArray &) { return std::optional(bytes); });
}

}
