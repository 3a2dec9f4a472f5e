#include "CacheFolder.h"

#include "Log.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QFile>
#include <QPointer>
#include <QThreadPool>

using namespace Qt::StringLiterals;

namespace {
using Visit = std::function<void(const QFileInfo &file)>;

void visitFiles(const QString &folder, const Visit &visit)
{
    QDirIterator files(folder, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        visit(files.fileInfo());
    }
}

qint64 sizeOf(const QString &folder)
{
    qint64 bytes = 0;
    visitFiles(folder, [&bytes](const QFileInfo &file) { bytes += file.size(); });
    return bytes;
}

void removeEntries(const QString &folder)
{
    visitFiles(folder, [](const QFileInfo &file) {
        if (file.fileName() == "index"_L1 || file.fileName() == "the-real-index"_L1)
            return;
        if (!QFile::remove(file.filePath()) && file.exists())
            qCWarning(lcEngine) << "cannot remove" << file.filePath();
    });
}

/// Runs `work` on another thread.
void run(const std::function<qint64()> &work, QObject *receiver, const CacheFolder::Done &done)
{
    QThreadPool::globalInstance()->start([work, done, receiver = QPointer<QObject>(receiver)] {
        const qint64 bytes = work();
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [done, receiver, bytes] {
                if (receiver)
                    done(bytes);
            },
            Qt::QueuedConnection);
    });
}
}

namespace CacheFolder {

void measure(const QString &folder, QObject *receiver, const Done &done)
{
    run([folder] { return folder.isEmpty() ? qint64(0) : sizeOf(folder); }, receiver, done);
}

void clear(const QString &folder, QObject *receiver, const Done &done)
{
    run(
        [folder] {
            if (folder.isEmpty())
                return qint64(0);
            removeEntries(folder);
            return sizeOf(folder);
        },
        receiver, done);
}

}
