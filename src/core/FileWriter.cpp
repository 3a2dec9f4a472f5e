#include "FileWriter.h"

#include "DeviceFailure.h"
#include "FileStage.h"
#include "Log.h"

#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>
#endif

namespace {
using Failure = WriteResult::Failure;
constexpr int mostLinks = 40;

WriteResult logged(const WriteResult &result, const QString &path)
{
    if (!result && !result.isFailure(Failure::Taken))
        qCWarning(lcFiles) << "cannot write" << path << result.detail();
    return result;
}

FileWriter::Writer writerOf(const QByteArray &bytes)
{
    return [&bytes](QFileDevice &device) { return device.write(bytes) == bytes.size(); };
}

/// What went wrong as the device was written to. Of a write that goes half out nothing is said
/// before the next one.
WriteResult failureOf(QFile &device)
{
    const bool isRefused = device.error() == QFileDevice::NoError;
    const WriteResult first = failureOfDevice(device);
    if (!isRefused && !first.isFailure(Failure::Other))
        return first;
    device.unsetError();
    const bool isWell = device.write(QByteArray(64 * 1024, 'x')) > 0 && device.flush();
    if (!isWell)
        return failureOfDevice(device);
    return isRefused ? WriteResult(Failure::Refused) : first;
}

/// The whole content, with nothing held back: what a device takes last shows only as it is put
/// out, and a full disk then must not cost the old file.
WriteResult fill(FileStage &stage, const FileWriter::Writer &writer, FileWriter::Sync sync)
{
    if (stage.error())
        return WriteResult::of(stage.error());
    QFile &device = stage.device();
    const bool isWhole = writer(device);
    if (!isWhole || device.error() != QFileDevice::NoError || !device.flush())
        return failureOf(device);
    return WriteResult::of(sync == FileWriter::Sync::Now ? stage.sync() : std::error_code());
}

WriteResult replace(const QString &path, const FileWriter::Writer &writer)
{
    if (path.isEmpty())
        return WriteResult(Failure::FolderMissing);
    const QFileInfo old(path);
    const bool isThere = old.exists();
    // A link is left where links lead in a circle.
    if (old.isSymLink() || (isThere && (!old.isFile() || !old.isWritable())))
        return WriteResult(Failure::NotAllowed);
    FileStage stage(path);
    if (const WriteResult result = fill(stage, writer, FileWriter::Sync::Now); !result)
        return result;
    if (isThere && !stage.device().setPermissions(old.permissions()))
        return failureOfDevice(stage.device());
    std::error_code error = isThere ? std::make_error_code(std::errc::file_exists) : stage.create();
    if (error == std::errc::file_exists)
        error = stage.replace();
    if (error)
        return WriteResult::of(error);
    FileWriter::syncFolder(old.absolutePath());
    return {};
}
}

namespace FileWriter {

QString target(const QString &path)
{
    QString end = path;
    for (int i = 0; i < mostLinks && QFileInfo(end).isSymLink(); ++i)
        end = QFileInfo(end).symLinkTarget();
    return end;
}

WriteResult write(const QString &path, const Writer &writer)
{
    return logged(replace(target(path), writer), path);
}

WriteResult write(const QString &path, const QByteArray &bytes)
{
    return write(path, writerOf(bytes));
}

WriteResult create(const QString &path, const Writer &writer, Sync sync)
{
    const QFileInfo old(path);
    if (old.exists() || old.isSymLink())
        return WriteResult(Failure::Taken);
    FileStage stage(path);
    if (const WriteResult result = fill(stage, writer, sync); !result)
        return logged(result, path);
    const WriteResult result = WriteResult::of(stage.create());
    if (result && sync == Sync::Now)
        syncFolder(QFileInfo(path).absolutePath());
    return logged(result, path);
}

WriteResult create(const QString &path, const QByteArray &bytes, Sync sync)
{
    return create(path, writerOf(bytes), sync);
}

void syncFolder(const QString &folder)
{
#ifdef Q_OS_UNIX
    const int place = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_CLOEXEC);
    if (place < 0)
        return;
    if (::fsync(place) != 0 && errno != EINVAL && errno != ENOTSUP)
        qCWarning(lcFiles) << "not known to be on the disk:" << folder;
    ::close(place);
#else
    Q_UNUSED(folder)
#endif
}

void settle(const QString &folder)
{
#ifdef Q_OS_LINUX
    const int place = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_CLOEXEC);
    if (place < 0)
        return;
    if (::syncfs(place) != 0)
        qCWarning(lcFiles) << "not known to be on the disk:" << folder;
    ::close(place);
#else
    syncFolder(folder);
#endif
}

}
