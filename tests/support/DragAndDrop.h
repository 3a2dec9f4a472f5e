#pragma once

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <memory>

/// Data dragged over the widgets of this program, offered to them as the window system does.
class DragAndDrop {
public:
    explicit DragAndDrop(const QList<QUrl> &urls, const QString &text = {})
        : m_data(std::make_unique<QMimeData>())
    {
        if (!urls.isEmpty())
            m_data->setUrls(urls);
        if (!text.isEmpty())
            m_data->setText(text);
    }

    /// What pages give with their links.
    void setMarkup(const QString &markup) { m_data->setHtml(markup); }

    /// What a source allows; a copy, a move and a link unless set.
    Qt::DropActions allowed = Qt::CopyAction | Qt::MoveAction | Qt::LinkAction;

    /// The action that the pointer shows over `widget`; IgnoreAction: it may not be let go there.
    Qt::DropAction over(QWidget *widget)
    {
        const QPoint place = widget->rect().center();
        QDragEnterEvent enter(place, allowed, m_data.get(), Qt::LeftButton, {});
        QApplication::sendEvent(widget, &enter);
        if (!enter.isAccepted())
            return Qt::IgnoreAction;
        QDragMoveEvent move(place, allowed, m_data.get(), Qt::LeftButton, {});
        move.setDropAction(enter.dropAction());
        move.accept();
        QApplication::sendEvent(widget, &move);
        return move.isAccepted() ? move.dropAction() : Qt::IgnoreAction;
    }
    /// Lets it go over `widget`; false where that is not possible.
    bool drop(QWidget *widget) { return over(widget) != Qt::IgnoreAction && letGo(widget); }
    /// Lets it go where it is, over `widget`.
    bool letGo(QWidget *widget)
    {
        QDropEvent drop(widget->rect().center(), allowed, m_data.get(), Qt::LeftButton, {});
        QApplication::sendEvent(widget, &drop);
        return drop.isAccepted();
    }

private:
    std::unique_ptr<QMimeData> m_data;
};
