#include "DraggedUrls.h"

#include "ShownText.h"

#include <QDropEvent>
#include <QFileInfo>
#include <QLineEdit>
#include <QMimeData>
#include <QTextBlock>
#include <QTextDocument>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
/// Characters of markup, and of the title.
constexpr qsizetype longestMarkup = 20'000;
constexpr qsizetype longestTitle = 200;
/// What the engine loads at most, in characters; for a longer one it puts an empty page.
constexpr qsizetype longestAddress = 2 * 1024 * 1024;

bool isOpenable(const QUrl &url)
{
    if (url.isLocalFile()) {
        const QFileInfo file(url.toLocalFile());
        return file.isFile() || !file.exists();
    }
    return url.isValid() && (url.scheme() == "http"_L1 || url.scheme() == "https"_L1)
        && url.toEncoded().size() <= longestAddress;
}

/// Markup that a page wrote. What it names, a style sheet say, is neither read nor fetched: it
/// could be any file of the user's, or a device that never ends.
class ForeignMarkup : public QTextDocument {
public:
    explicit ForeignMarkup(const QString &markup) { setHtml(markup); }

protected:
    QVariant loadResource(int, const QUrl &) override { return {}; }
};

/// The address of the first picture in the markup; empty where there is none.
QUrl pictureIn(const QString &markup)
{
    if (markup.size() > longestMarkup)
        return {};
    const ForeignMarkup document(markup);
    for (QTextBlock block = document.begin(); block.isValid(); block = block.next()) {
        for (auto part = block.begin(); !part.atEnd(); ++part) {
            const QTextCharFormat format = part.fragment().charFormat();
            if (format.isImageFormat())
                return QUrl(format.toImageFormat().name());
        }
    }
    return {};
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

QList<QUrl> givableUrls(const QMimeData &data)
{
    QList<QUrl> urls = data.urls();
    urls.removeIf([](const QUrl &url) { return url.isLocalFile() && !isOpenable(url); });
    return urls;
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

QStringList pageAddressesDragged(const QMimeData &data)
{
    const QList<QUrl> urls = data.urls();
    if (urls.isEmpty() || isUnopenableDragged(data))
        return {};
    const QUrl url = urls.first().isLocalFile() ? pictureIn(data.html()) : urls.first();
    return isOpenable(url) && !url.isLocalFile() ? QStringList{QString::fromLatin1(url.toEncoded())}
                                                 : QStringList();
}

QStringList draggedAddresses(const QDropEvent &event)
{
    const QMimeData &data = *event.mimeData();
    return event.source() ? pageAddressesDragged(data) : draggedAddresses(data);
}

QString draggedTitle(const QMimeData &data)
{
    const QString markup = data.html();
    if (markup.size() > longestMarkup)
        return {};
    QString title = ForeignMarkup(markup).toPlainText();
    // What stands for a picture.
    title.remove(QChar::ObjectReplacementCharacter);
    return shownText(title).simplified().left(longestTitle);
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
