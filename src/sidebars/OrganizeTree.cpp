#include "OrganizeTree.h"
#include "FavoriteFile.h"
#include "FolderListing.h"
#include "InternetShortcut.h"
#include "Log.h"
#include "MsgBox.h"
#include "Texts.h"
#include "ThemedIcon.h"

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QDrag>
#include <QDropEvent>
#include <QFileInfo>
#include <QHeaderView>
#include <QKeyEvent>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace {
constexpr int pathRole = Qt::UserRole;
constexpr int folderRole = Qt::UserRole + 1;
constexpr int orderRole = Qt::UserRole + 2;
constexpr int isReadRole = Qt::UserRole + 3;
constexpr int nameColumn = 0;
constexpr int dateColumn = 1;
constexpr int nameWidth = 320;

constexpr Texts<"frmOrganizeFavorites"> texts;

// Favorites before folders, as in the favorites bar, each by upper-cased name or by date.
class Node : public QTreeWidgetItem {
public:
    // Most dates are never in view.
    QVariant data(int column, int role) const override
    {
        if (column != dateColumn || role != Qt::DisplayRole)
            return QTreeWidgetItem::data(column, role);
        const qint64 seconds = data(dateColumn, orderRole).toLongLong();
        return QLocale().toString(QDateTime::fromSecsSinceEpoch(seconds), QLocale::ShortFormat);
    }
    bool operator<(const QTreeWidgetItem &other) const override
    {
        const bool isFolder = data(nameColumn, folderRole).toBool();
        if (isFolder != other.data(nameColumn, folderRole).toBool())
            return !isFolder;
        const bool byDate = treeWidget() && treeWidget()->sortColumn() == dateColumn;
        if (byDate)
            return data(dateColumn, orderRole).toLongLong()
                < other.data(dateColumn, orderRole).toLongLong();
        return data(nameColumn, orderRole).toString()
            < other.data(nameColumn, orderRole).toString();
    }
};

Node *makeNode(const QString &path, bool isFolder)
{
    static const QIcon folder = themedIcon(u"folder-closed"_s);
    static const QIcon link = themedIcon(u"link"_s);
    const QFileInfo info(path);
    auto *node = new Node;
    const QString name = info.fileName();
    node->setText(nameColumn, isFolder ? name : InternetShortcut::caption(name));
    node->setIcon(nameColumn, isFolder ? folder : link);
    node->setData(nameColumn, pathRole, path);
    node->setData(nameColumn, folderRole, isFolder);
    node->setData(nameColumn, orderRole, name.toUpper());
    node->setData(dateColumn, orderRole, info.lastModified().toSecsSinceEpoch());
    node->setFlags(node->flags() | Qt::ItemIsEditable);
    return node;
}

QString pathOf(const QTreeWidgetItem &item)
{
    return item.data(nameColumn, pathRole).toString();
}

bool isTaken(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() || info.isSymLink();
}

// Never onto something: renaming would replace an empty folder.
bool renameOnDisk(const QString &from, const QString &to)
{
    if (!isTaken(to) && QDir().rename(from, to))
        return true;
    qCWarning(lcFiles) << "cannot rename" << from << "to" << to;
    return false;
}

QString freePath(const QString &folder, const QFileInfo &file)
{
    const bool isLink = file.fileName().endsWith(u".url"_s, Qt::CaseInsensitive) && !file.isDir();
    const QString name = isLink ? InternetShortcut::caption(file.fileName()) : file.fileName();
    const QString suffix = file.fileName().mid(name.size());
    QString path = folder + u'/' + name + suffix;
    for (int number = 2; isTaken(path); ++number)
        path = u"%1/%2 (%3)%4"_s.arg(folder, name, QString::number(number), suffix);
    return path;
}
}

OrganizeTree::OrganizeTree(const QString &root, QWidget *parent)
    : QTreeWidget(parent)
    , m_root(root)
{
    setHeaderLabels({texts.at<"strName", "Name">(), texts.at<"strDate", "Date">()});
    setColumnWidth(nameColumn, nameWidth);
    setUniformRowHeights(true);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(EditKeyPressed);
    setExpandsOnDoubleClick(true);
    setDragDropMode(DragDrop);
    setDefaultDropAction(Qt::MoveAction);
    setSortingEnabled(true);
    sortByColumn(nameColumn, Qt::AscendingOrder);
    connect(this, &QTreeWidget::itemExpanded, this, &OrganizeTree::expanded);
    connect(this, &QTreeWidget::itemChanged, this,
            [this](QTreeWidgetItem *item) { rename(*item); });
    reload({});
}

void OrganizeTree::readFolder(QTreeWidgetItem *parent, const QString &path)
{
    const QScopedValueRollback guard(m_filling, true);
    FolderListing listing(path, fileNamePattern(u"*.url"_s), FolderListing::Sizes::NotAsked);
    while (listing.readSome()) { }
    QList<QTreeWidgetItem *> nodes;
    for (const FolderListing::Entry &file : listing.matches()) {
        if (!QFileInfo(path + u'/' + file.name).isDir())
            nodes.append(makeNode(path + u'/' + file.name, false));
    }
    for (const FolderListing::Entry &folder : listing.folders()) {
        nodes.append(makeNode(path + u'/' + folder.name, true));
        // Whether there is something in it shows when it is opened.
        nodes.last()->setChildIndicatorPolicy(QTreeWidgetItem::ShowIndicator);
    }
    parent->addChildren(nodes);
}

void OrganizeTree::expanded(QTreeWidgetItem *item)
{
    if (item->data(nameColumn, isReadRole).toBool())
        return;
    const QScopedValueRollback guard(m_filling, true);
    item->setData(nameColumn, isReadRole, true);
    readFolder(item, pathOf(*item));
    if (item->childCount() == 0)
        item->setChildIndicatorPolicy(QTreeWidgetItem::DontShowIndicatorWhenChildless);
}

// Shows what is on disk, with the same folders open.
void OrganizeTree::reload(const QStringList &select)
{
    QSet<QString> open;
    for (QTreeWidgetItemIterator it(this); *it; ++it) {
        if ((*it)->isExpanded())
            open.insert(pathOf(**it));
    }
    for (const QString &path : select)
        open.insert(QFileInfo(path).path());
    clear();
    readFolder(invisibleRootItem(), m_root);
    reopen(invisibleRootItem(), open, QSet<QString>(select.cbegin(), select.cend()));
    if (!currentItem() && topLevelItemCount() > 0)
        setCurrentItem(topLevelItem(0), nameColumn, QItemSelectionModel::NoUpdate);
}

void OrganizeTree::reopen(QTreeWidgetItem *parent, const QSet<QString> &open,
                          const QSet<QString> &select)
{
    // Opening sorts nothing but what comes in, so the places here stay.
    for (int i = 0; i < parent->childCount(); ++i) {
        QTreeWidgetItem *item = parent->child(i);
        if (select.contains(pathOf(*item))) {
            setCurrentItem(item, nameColumn, QItemSelectionModel::NoUpdate);
            item->setSelected(true);
        }
        if (open.contains(pathOf(*item))) {
            item->setExpanded(true);
            reopen(item, open, select);
        }
    }
}

QString OrganizeTree::folder() const
{
    const QTreeWidgetItem *item = currentItem();
    while (item && !item->data(nameColumn, folderRole).toBool())
        item = item->parent();
    return item ? pathOf(*item) : m_root;
}

QStringList OrganizeTree::selectedPaths() const
{
    QStringList paths;
    for (const QTreeWidgetItem *item : selectedItems()) {
        const QTreeWidgetItem *above = item->parent();
        while (above && !above->isSelected())
            above = above->parent();
        if (!above)
            paths.append(pathOf(*item));
    }
    return paths;
}

bool OrganizeTree::addFolder(const QString &name)
{
    const auto path = FavoriteFile::createFolder(folder(), name);
    if (!path)
        return false;
    reload({*path});
    renameCurrent();
    return true;
}

void OrganizeTree::renameCurrent()
{
    if (currentItem())
        editItem(currentItem(), nameColumn);
}

void OrganizeTree::rename(QTreeWidgetItem &item)
{
    if (m_filling)
        return;
    const QFileInfo old(pathOf(item));
    const bool isFolder = item.data(nameColumn, folderRole).toBool();
    const QString oldName = isFolder ? old.fileName() : InternetShortcut::caption(old.fileName());
    const QString suffix = old.fileName().mid(oldName.size());
    const QString name = FavoriteFile::name(item.text(nameColumn), oldName);
    QString path = old.filePath();
    if (name != oldName) {
        path = old.path() + u'/' + name + suffix;
        if (!renameOnDisk(old.filePath(), path)) {
            QApplication::beep();
            path = old.filePath();
        }
    }
    // The editor is still at work on the item.
    QMetaObject::invokeMethod(
        this, [this, path] { reload({path}); }, Qt::QueuedConnection);
}

bool OrganizeTree::move(const QStringList &paths, const QString &folder)
{
    bool good = true;
    QStringList moved;
    for (const QString &path : paths) {
        const QFileInfo file(path);
        if (file.path() == folder)
            continue;
        // A folder cannot go into itself.
        const bool isInside = (folder + u'/').startsWith(path + u'/');
        const QString target = freePath(folder, file);
        if (!isInside && renameOnDisk(path, target))
            moved.append(target);
        else
            good = false;
    }
    reload(moved);
    return good;
}

/// The toolkit moves a file into the current folder where the home folder has no place for data.
bool OrganizeTree::moveToTrash(const QString &path)
{
    const QString place = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return !place.isEmpty() && QDir().mkpath(place) && QFile::moveToTrash(path);
}

void OrganizeTree::deleteSelected()
{
    QStringList left;
    for (const QString &path : selectedPaths()) {
        if (!moveToTrash(path))
            left.append(path);
    }
    reload({});
    if (left.isEmpty())
        return;
    const QString question =
        texts.at<"strDeleteForGood", "%1 cannot be moved to the trash. Delete it for good?">().arg(
            left.size() == 1 ? QFileInfo(left.first()).completeBaseName()
                             : texts.at<"strSeveral", "What is selected">());
    MsgBox::ask(window(), question, {}, [this, left](MsgBox::Answer answer) {
        if (answer == MsgBox::Answer::Yes)
            deleteForGood(left);
    });
}

void OrganizeTree::deleteForGood(const QStringList &paths)
{
    for (const QString &path : paths) {
        const QFileInfo info(path);
        // Of a link only itself goes, never what it leads to.
        const bool isFolder = info.isDir() && !info.isSymLink();
        if (isFolder ? !QDir(path).removeRecursively() : !QFile::remove(path)) {
            qCWarning(lcFiles) << "cannot delete" << path;
            QApplication::beep();
        }
    }
    reload({});
}

void OrganizeTree::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Delete))
        deleteSelected();
    else if (event->matches(QKeySequence::Cut))
        m_cut = selectedPaths();
    else if (event->matches(QKeySequence::Paste) && !m_cut.isEmpty()) {
        if (!move(std::exchange(m_cut, {}), folder()))
            QApplication::beep();
    } else
        QTreeWidget::keyPressEvent(event);
}

// The drop moves the files and reads the tree anew; nothing is to be taken out of it here.
void OrganizeTree::startDrag(Qt::DropActions)
{
    auto *drag = new QDrag(this);
    drag->setMimeData(model()->mimeData(selectedIndexes()));
    drag->exec(Qt::MoveAction);
}

void OrganizeTree::dropEvent(QDropEvent *event)
{
    if (event->source() != this)
        return event->ignore();
    event->acceptProposedAction();
    const QString target = dropFolder(event->position().toPoint());
    // The items are in use until the drag is over.
    QMetaObject::invokeMethod(
        this,
        [this, target, paths = selectedPaths()] {
            if (!move(paths, target))
                QApplication::beep();
        },
        Qt::QueuedConnection);
}

QString OrganizeTree::dropFolder(const QPoint &at) const
{
    const QTreeWidgetItem *item = itemAt(at);
    if (item && dropIndicatorPosition() != OnItem)
        item = item->parent();
    while (item && !item->data(nameColumn, folderRole).toBool())
        item = item->parent();
    return item ? pathOf(*item) : m_root;
}
