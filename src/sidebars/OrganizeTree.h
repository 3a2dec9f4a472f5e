#pragma once

#include <QSet>
#include <QStringList>
#include <QTreeWidget>

/// The favorites below one folder, to be put in order: renamed in place, moved by dragging or by
/// cut and paste, several at once, deleted to the desktop's trash, shown by name or by date. Every
/// change is one of the files themselves, at once.
class OrganizeTree : public QTreeWidget {
    Q_OBJECT

public:
    /// `root` without a trailing slash; it may be missing.
    explicit OrganizeTree(const QString &root, QWidget *parent = nullptr);

    /// Makes a folder in the current one, selects it and lets its name be edited; false when it
    /// cannot be made.
    bool addFolder(const QString &name);
    void renameCurrent();
    /// To the trash; asks before what cannot go there is deleted for good.
    void deleteSelected();
    /// Puts files and folders, by their paths, into a folder, where they get a number if their
    /// name is taken. False when one of them cannot be moved; the others are.
    bool move(const QStringList &paths, const QString &folder);

    /// The paths of what is selected, without what is in a selected folder.
    QStringList selectedPaths() const;
    /// The folder that is current, or that the current favorite is in.
    QString folder() const;

protected:
    /// False when the desktop has no trash for it; the file is then still there.
    virtual bool moveToTrash(const QString &path);
    void keyPressEvent(QKeyEvent *event) override;
    void startDrag(Qt::DropActions actions) override;
    void dropEvent(QDropEvent *event) override;

private:
    void readFolder(QTreeWidgetItem *parent, const QString &path);
    void expanded(QTreeWidgetItem *item);
    void reload(const QStringList &select);
    void reopen(QTreeWidgetItem *parent, const QSet<QString> &open, const QSet<QString> &select);
    void rename(QTreeWidgetItem &item);
    void deleteForGood(const QStringList &paths);
    QString dropFolder(const QPoint &at) const;

    QString m_root;
    QStringList m_cut;
    bool m_filling = false;
};
