#include "DraggedUrls.h"

#include <QDropEvent>
#include <QFileInfo>
#include <QLineEdit>
#include <QMimeData>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
bool isOpenable(const QUrl &url)
{
    if (url.isLocalFile())
        return !QFileInfo(url.toLocalFile()).isDir();
    return url.isValid() && (url.scheme() == "http"_L1 || url.scheme() == "https"_L1);
}

class FileDragFilter : public QObject {
public:
    using QObject::QObject;

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() != QEvent::DragEnter
            || firstDraggedFile(*static_cast<QDropEvent *>(event)->mimeData()).isEmpty())
            return false;
        event->ignore();
        return true;
    }
};
}

QString firstDraggedFile(const QMimeData &data)
{
    const QList<QUrl> urls = data.urls();
    return urls.isEmpty() ? QString() : urls.first().toLocalFile();
}

bool isProfileName(const QString &file)
{
    return file.endsWith(".orp"_L1, Qt::CaseInsensitive);
}

bool isProfileDragged(const QMimeData &data)
{
    return isProfileName(firstDraggedFile(data)) && !isFolderDragged(data);
}

bool isFolderDragged(const QMimeData &data)
{
    const QString file = firstDraggedFile(data);
    return !file.isEmpty() && QFileInfo(file).isDir();
}

bool isUnopenableDragged(const QMimeData &data)
{
    const QList<QUrl> urls = data.urls();
    return !urls.isEmpty() && !isOpenable(urls.first());
}

QStringList draggedAddresses(const QMimeData &data)
{
    QStringList addresses;
    if (isProfileDragged(data) || isUnopenableDragged(data))
        return addresses;
    const QList<QUrl> urls = data.urls();
    for (const QUrl &url : urls) {
        if (isOpenable(url))
            addresses.append(QString::fromLatin1(url.toEncoded()));
    }
    return addresses;
}

void acceptAsCopy(QDropEvent &event)
{
    const bool copies = event.possibleActions() & Qt::CopyAction;
    event.setDropAction(copies ? Qt::CopyAction : Qt::LinkAction);
    event.accept();
}

void leaveFilesToTheFrame(QLineEdit &field)
{
    field.installEventFilter(new FileDragFilter(&field));
}
