#include "FavoritesTree.h"
#include "FavoriteNode.h"

#include <QContextMenuEvent>
#include <QCursor>
#include <QHeaderView>
#include <QKeyEvent>

namespace {
FavoriteNode *asNode(QTreeWidgetItem *item)
{
    // Nothing else is ever put into this tree.
    return static_cast<FavoriteNode *>(item);
}
}

FavoritesTree::FavoritesTree(QWidget *parent)
    : QTreeWidget(parent)
{
    setColumnCount(1);
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setEditTriggers(NoEditTriggers);
    // A click opens and closes a folder; the double click's own doing would undo it.
    setExpandsOnDoubleClick(false);
    setTextElideMode(Qt::ElideRight);
    connect(this, &QTreeWidget::itemClicked, this,
            [this](QTreeWidgetItem *item) { emit nodeClicked(asNode(item), QCursor::pos()); });
}

void FavoritesTree::mousePressEvent(QMouseEvent *event)
{
    m_ignoreRelease = false;
    QTreeWidget::mousePressEvent(event);
}

void FavoritesTree::mouseDoubleClickEvent(QMouseEvent *event)
{
    m_ignoreRelease = true;
    event->accept();
}

void FavoritesTree::mouseReleaseEvent(QMouseEvent *event)
{
    if (std::exchange(m_ignoreRelease, false))
        event->accept();
    else
        QTreeWidget::mouseReleaseEvent(event);
}

void FavoritesTree::keyPressEvent(QKeyEvent *event)
{
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (enter && !event->modifiers().testFlag(Qt::AltModifier)) {
        event->accept();
        if (!event->isAutoRepeat())
            chooseCurrent();
        return;
    }
    QTreeWidget::keyPressEvent(event);
}

void FavoritesTree::chooseCurrent()
{
    if (QTreeWidgetItem *item = currentItem()) {
        scrollToItem(item);
        emit nodeClicked(asNode(item), viewport()->mapToGlobal(visualItemRect(item).bottomLeft()));
    }
}

void FavoritesTree::contextMenuEvent(QContextMenuEvent *event)
{
    event->accept();
    const bool byMouse = event->reason() == QContextMenuEvent::Mouse;
    QTreeWidgetItem *item = byMouse ? itemAt(event->pos()) : currentItem();
    if (!item || asNode(item)->kind() == FavoriteNode::Kind::Folder)
        return;
    if (byMouse)
        emit nodeClicked(asNode(item), event->globalPos());
    else
        chooseCurrent();
}
