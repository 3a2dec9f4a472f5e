#include "FolderTree.h"
#include "FavoriteFile.h"
#include "FolderListing.h"
#include "ThemedIcon.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QScopedValueRollback>

using namespace Qt::StringLiterals;

namespace {
constexpr int pathRole = Qt::UserRole;
constexpr int isReadRole = Qt::UserRole + 1;

QList<FolderListing::Entry> foldersIn(const QString &path)
{
    // No file name is empty, so only folders are looked for.
    FolderListing listing(path, fileNamePattern({}));
    while (listing.readSome()) { }
    return listing.folders();
}
}

FolderTree::FolderTree(const QString &root, const QString &caption, QWidget *parent)
    : QTreeWidget(parent)
{
    setHeaderHidden(true);
    setUniformRowHeights(true);
    setEditTriggers(NoEditTriggers);
    connect(this, &QTreeWidget::itemExpanded, this,
            [this](QTreeWidgetItem *item) { readFolder(*item); });
    connect(this, &QTreeWidget::itemChanged, this,
            [this](QTreeWidgetItem *item) { rename(*item); });
    const QScopedValueRollback guard(m_filling, true);
    QTreeWidgetItem *top = makeItem(root, caption);
    addTopLevelItem(top);
    readFolder(*top);
    top->setExpanded(true);
    setCurrentItem(top);
}

QString FolderTree::folder() const
{
    const QTreeWidgetItem *item = currentItem() ? currentItem() : topLevelItem(0);
    return item->data(0, pathRole).toString();
}

QTreeWidgetItem *FolderTree::makeItem(const QString &path, const QString &text)
{
    auto *item = new QTreeWidgetItem({text});
    item->setIcon(0, themedIcon(u"folder-closed"_s));
    item->setData(0, pathRole, path);
    return item;
}

void FolderTree::readFolder(QTreeWidgetItem &item)
{
    if (item.data(0, isReadRole).toBool())
        return;
    const QScopedValueRollback guard(m_filling, true);
    item.setData(0, isReadRole, true);
    const QString path = item.data(0, pathRole).toString();
    for (const FolderListing::Entry &entry : foldersIn(path)) {
        QTreeWidgetItem *child = makeItem(path + u'/' + entry.name, entry.name);
        // Whether there is something in it shows when it is opened.
        child->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
        item.addChild(child);
    }
    if (item.childCount() == 0)
        item.setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
}

bool FolderTree::addFolder(const QString &name)
{
    QTreeWidgetItem *parent = currentItem() ? currentItem() : topLevelItem(0);
    const auto path = FavoriteFile::createFolder(parent->data(0, pathRole).toString(), name);
    if (!path)
        return false;
    QTreeWidgetItem *item = nullptr;
    {
        const QScopedValueRollback guard(m_filling, true);
        item = makeItem(*path, QFileInfo(*path).fileName());
        item->setData(0, isReadRole, true);
        item->setFlags(item->flags() | Qt::ItemIsEditable);
        readFolder(*parent);
        // A folder that was not read yet has just been read with the new one in it.
        for (int i = parent->childCount() - 1; i >= 0; --i) {
            if (parent->child(i)->data(0, pathRole).toString() == *path)
                delete parent->takeChild(i);
        }
        parent->addChild(item);
        parent->setExpanded(true);
    }
    setCurrentItem(item);
    scrollToItem(item);
    editItem(item);
    emit folderChanged();
    return true;
}

void FolderTree::rename(QTreeWidgetItem &item)
{
    if (m_filling)
        return;
    const QScopedValueRollback guard(m_filling, true);
    const QFileInfo old(item.data(0, pathRole).toString());
    const QString name = FavoriteFile::name(item.text(0), old.fileName());
    const QString path = old.dir().filePath(name);
    const bool same = name == old.fileName();
    // Renaming would replace an empty folder of that name.
    if (!same && !QFileInfo::exists(path) && QDir().rename(old.filePath(), path)) {
        item.setData(0, pathRole, path);
        item.setText(0, name);
        emit folderChanged();
        return;
    }
    if (!same)
        QApplication::beep();
    item.setText(0, old.fileName());
}
