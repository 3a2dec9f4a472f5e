#pragma once

#include <QTreeWidget>

/// The folders below one folder, read as they are opened, to choose one from and to make new ones.
class FolderTree : public QTreeWidget {
    Q_OBJECT

public:
    /// `root` without a trailing slash; `caption` is what it is shown as. It may be missing.
    FolderTree(const QString &root, const QString &caption, QWidget *parent = nullptr);

    /// The path of the folder chosen.
    QString folder() const;
    /// Makes a folder in the one chosen, chooses it and lets its name be edited; false when it
    /// cannot be made.
    bool addFolder(const QString &name);

signals:
    /// A folder was made or renamed on disk.
    void folderChanged();

private:
    QTreeWidgetItem *makeItem(const QString &path, const QString &text);
    void readFolder(QTreeWidgetItem &item);
    void rename(QTreeWidgetItem &item);

    bool m_filling = false;
};
