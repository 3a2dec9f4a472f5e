#include "ProfileDrag.h"

#include <QMimeData>
#include <QUrl>

using namespace Qt::StringLiterals;

QString firstDraggedFile(const QMimeData &data)
{
    const QList<QUrl> urls = data.urls();
    return urls.isEmpty() ? QString() : urls.first().toLocalFile();
}

bool isProfileName(const QString &file)
{
    return file.endsWith(".orp"_L1, Qt::CaseInsensitive);
}
