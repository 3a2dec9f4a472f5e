#pragma once

#include "FolderListing.h"

#include <QHash>
#include <QSet>
#include <QTimer>
#include <QWidget>
#include <memory>
#include <optional>

class FavoriteNode;
class FavoritesTree;
class FolderWalk;
class Frame;
class QMenu;
class QPushButton;
class QToolButton;

/// The side bar that shows the user's Favorites folder as a tree. A click on a shortcut asks in a
/// menu whether to open it here or in a new window; a link that is dropped here becomes one.
class FavoritesBar : public QWidget {
    Q_OBJECT

public:
    explicit FavoritesBar(Frame &frame, QWidget *parent = nullptr);
    ~FavoritesBar() override;

    /// Builds the tree anew, a few nodes at a time while the interface lives on; `refreshed` tells
    /// of the end. A refresh while one is under way starts over. Folders that were open are open
    /// again.
    void refresh();
    /// True from the first show on, which fills the tree.
    bool isInitialised() const { return m_initialised; }
    /// True until the tree shows all there is.
    bool isRefreshing() const { return m_walk != nullptr; }

    /// Asks for a name and a folder for the active window's page, and writes the shortcut. Beeps
    /// when there is no page to add.
    void addCurrentPage();
    /// The same for any page; `title` is what it is called at first.
    void addPage(const QString &url, const QString &title);

    /// Opens the dialog that puts the favorites in order. The tree is not built anew after it.
    void organize();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

signals:
    /// The close button was pressed.
    void exitRequested();
    /// `Refresh` has come to its end.
    void refreshed();

protected:
    void showEvent(QShowEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Opened {
        QString key;
        QString tag;
    };

    void makeContextMenu();
    void continueRefresh();
    void endRefresh();
    void removeAllNodes();
    void reopenFolders();
    void showFinishedNode();
    void addNode(const QString &path, const FolderListing::Entry &entry, bool isFile);
    void nodeClicked(FavoriteNode &node, const QPoint &at);
    void contextMenuClosed();
    void openLink();
    void openNew();

    Frame &m_frame;
    QPushButton *m_add;
    QPushButton *m_organize;
    QToolButton *m_exit;
    FavoritesTree *m_tree;
    QMenu *m_contextMenu;

    QString m_favoritesRoot;
    bool m_initialised = false;
    /// The shortcut whose menu is open. A copy: the tree may be built anew meanwhile.
    std::optional<Opened> m_currentNode;
    int m_menusOpened = 0;

    QHash<QString, FavoriteNode *> m_nodes;
    /// The last node at the top, until all that is in it has been added to it.
    std::unique_ptr<FavoriteNode> m_unfinished;
    QSet<QString> m_wereOpen;
    std::unique_ptr<FolderWalk> m_walk;
    qint16 m_files = 0;
    qint16 m_folders = 0;
    QTimer m_slice;
};
