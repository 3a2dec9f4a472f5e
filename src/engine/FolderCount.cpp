#include "FolderCount.h"

#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QPointer>
#include <QThreadPool>

namespace {
/// The engine follows links to folders before it leaves out what is behind them; one that leads
/// back to a folder above it has no end there.
int count(const QString &folder)
{
    struct Place {
        QString path;
        bool isLinked;
    };
    int entries = 0;
    int files = 0;
    QList<Place> left{{folder, false}};
    while (!left.isEmpty() && entries <= FolderCount::most) {
        const Place place = left.takeLast();
        QDirIterator each(place.path, QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        while (each.hasNext() && ++entries <= FolderCount::most) {
            each.next();
            const QFileInfo info = each.fileInfo();
            const bool isLinked = place.isLinked || info.isSymLink();
            if (info.isDir())
                left.append({each.filePath(), isLinked});
            else if (info.isFile() && !isLinked)
                ++files;
        }
    }
    return entries > FolderCount::most ? FolderCount::most + 1 : files;
}
}

namespace FolderCount {

void of(const QString &folder, QObject *receiver, const std::function<void(int files)> &done)
{
    QThreadPool::globalInstance()->start([folder, receiver = QPointer(receiver), done] {
        QMetaObject::invokeMethod(
            qApp,
            [receiver, done, files = count(folder)] {
                if (receiver)
                    done(files);
            },
            Qt::QueuedConnection);
    });
}

}
