#pragma once

#include <QTreeWidget>

class FavoriteNode;

/// The tree of the favorites bar. It only tells what was chosen; opening a folder or a menu is its
/// owner's doing.
class FavoritesTree : public QTreeWidget {
    Q_OBJECT

public:
    explicit FavoritesTree(QWidget *parent = nullptr);

signals:
    /// A node was clicked, or chosen by the keyboard; a double click is one choice. `at` is where
    /// a menu is to come up, in global coordinates.
    void nodeClicked(FavoriteNode *node, const QPoint &at);

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void contextMenuEvent(QContextMenuEvent *event) override;

private:
    void chooseCurrent();

    bool m_ignoreRelease = false;
};
