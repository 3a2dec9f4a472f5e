#include "FileAppend.h"

#include "DeviceFailure.h"
#include "FileWriter.h"
#include "FolderLock.h"

#include <QFile>
#include <QFileInfo>

namespace {
using Failure = WriteResult::Failure;

QByteArray bytesAt(QFile &file, qint64 place, qint64 count)
{
    return file.seek(place) ? file.read(count) : QByteArray();
}

bool isSixteenBits(QFile &file)
{
    const QByteArray begin = bytesAt(file, 0, 2);
    return begin == QByteArrayView("\xFE\xFF") || begin == QByteArrayView("\xFF\xFE");
}

bool endsInALine(QFile &file)
{
    return file.size() > 0 && bytesAt(file, file.size() - 1, 1) != "\n";
}

/// By one write where there is room; why there is none is said by the next.
bool putOut(QFile &file, QByteArrayView bytes)
{
    while (!bytes.isEmpty()) {
        const qint64 written = file.write(bytes.data(), bytes.size());
        if (written <= 0)
            return false;
        bytes = bytes.sliced(written);
    }
    return true;
}

/// Half a line is taken back; not where another program, that knows no lock, has added to it.
void takeBack(QFile &file, qint64 size, qint64 most)
{
    if (file.size() > size && file.size() < size + most)
        file.resize(size);
}
}

WriteResult FileAppend::add(const QString &path, const QByteArray &lines)
{
    const QString target = FileWriter::target(path);
    const QFileInfo there(target);
    const FolderLock lock(there.path());
    if (!lock.isHeld())
        return WriteResult(QFileInfo(there.path()).isDir() ? Failure::Busy
                                                           : Failure::FolderMissing);
    // Opening a pipe would wait for whoever reads from it.
    if (there.isSymLink() || (there.exists() && !there.isFile()))
        return WriteResult(Failure::NotAllowed);
    QFile file(target);
    if (!file.open(QIODevice::ReadWrite | QIODevice::Append | QIODevice::Unbuffered,
                   QFileDevice::ReadOwner | QFileDevice::WriteOwner))
        return failureOfDevice(file);
    if (isSixteenBits(file))
        return WriteResult(Failure::SixteenBits);
    const QByteArray bytes = endsInALine(file) ? '\n' + lines : lines;
    const qint64 size = file.size();
    if (putOut(file, bytes))
        return {};
    const WriteResult failed = failureOfDevice(file);
    takeBack(file, size, bytes.size());
    return failed;
}
