#include "LineEnds.h"
#include "RichTextBox.h"

#include <QDrag>
#include <QDropEvent>
#include <QMimeData>
#include <QPointer>

namespace {

QString firstLocalFile(const QMimeData *source)
{
    const QList<QUrl> urls = source->urls();
    for (const QUrl &url : urls) {
        if (url.isLocalFile())
            return url.toLocalFile();
    }
    return {};
}

bool canTake(const QMimeData *source)
{
    return source->hasText() || !firstLocalFile(source).isEmpty();
}

}

QMimeData *RichTextBox::selectedData() const
{
    auto *selection = new QMimeData;
    selection->setText(plainSelection());
    return selection;
}

void RichTextBox::dragSelection()
{
    m_droppedHere = false;
    auto *drag = new QDrag(this);
    drag->setMimeData(selectedData());
    const QPointer<RichTextBox> guard(this);
    const Qt::DropAction action = drag->exec(Qt::CopyAction | Qt::MoveAction, Qt::MoveAction);
    // A move within the box has taken the text from its old place itself.
    if (guard && action == Qt::MoveAction && !m_droppedHere)
        insert({});
}

void RichTextBox::dragEnterEvent(QDragEnterEvent *event)
{
    if (canTake(event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void RichTextBox::dragMoveEvent(QDragMoveEvent *event)
{
    if (!canTake(event->mimeData())) {
        event->ignore();
        return;
    }
    if (firstLocalFile(event->mimeData()).isEmpty())
        setDropPlace(positionAt(event->position().toPoint()));
    event->acceptProposedAction();
}

void RichTextBox::dragLeaveEvent(QDragLeaveEvent *event)
{
    Q_UNUSED(event);
    setDropPlace(-1);
}

void RichTextBox::dropEvent(QDropEvent *event)
{
    setDropPlace(-1);
    if (!canTake(event->mimeData())) {
        event->ignore();
        return;
    }
    event->acceptProposedAction();
    const QString file = firstLocalFile(event->mimeData());
    if (!file.isEmpty()) {
        Q_EMIT fileDropped(file);
        return;
    }
    const qsizetype at = positionAt(event->position().toPoint());
    const bool own = event->source() == this;
    m_droppedHere = own;
    if (own && event->dropAction() == Qt::MoveAction) {
        if (at < selectionStart() || at > selectionEnd())
            moveText(at);
        return;
    }
    const QString text = LineEnds::toLf(event->mimeData()->text());
    replace(at, 0, text);
    select(at, at + text.size());
}
