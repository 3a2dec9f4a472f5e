#include "FavoritesBar.h"
#include "AddFavoriteDialog.h"
#include "BrowserWindow.h"
#include "DraggedUrls.h"
#include "FavoriteNode.h"
#include "FavoritesTree.h"
#include "FindFiles.h"
#include "Frame.h"
#include "InternetShortcut.h"
#include "Log.h"
#include "OrganizeFavoritesDialog.h"
#include "ShownAddress.h"
#include "SideBarControls.h"
#include "SpecialFolders.h"
#include "WebBrowser.h"

#include <QApplication>
#include <QDropEvent>
#include <QElapsedTimer>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QToolButton>

using namespace Qt::StringLiterals;

namespace {
// Time that filling the tree takes from the interface at once.
constexpr int sliceMs = 25;
// Pixels: the height of the buttons, and both sides of the close button.
constexpr int buttonHeight = 24;
constexpr QSize usualSize(240, 400);

// A rectangle without a width or a height is none a control can have.
void place(QWidget &control, const QRect &rect)
{
    if (rect.width() >= 0 && rect.height() >= 0)
        control.setGeometry(rect);
}
}

FavoritesBar::FavoritesBar(Frame &frame, QWidget *parent)
    : QWidget(parent)
    , m_frame(frame)
    , m_add(new QPushButton(u"&Add Favorite"_s, this))
    , m_organize(new QPushButton(u"&Organize"_s, this))
    , m_exit(makeCloseButton(this))
    , m_tree(new FavoritesTree(this))
    , m_contextMenu(new QMenu(u"&Context Menu"_s, this))
{
    // Shown by its command only, whatever shows the window it is in.
    hide();
    m_add->setObjectName("cmdAdd"_L1);
    m_organize->setObjectName("cmdOrganize"_L1);
    m_tree->setObjectName("tvFavorites"_L1);
    m_tree->setAccessibleName(u"Favorites"_s);
    setAcceptDrops(true);
    makeContextMenu();
    m_slice.setInterval(0);
    connect(&m_slice, &QTimer::timeout, this, &FavoritesBar::continueRefresh);
    connect(m_add, &QPushButton::clicked, this, &FavoritesBar::addCurrentPage);
    connect(m_organize, &QPushButton::clicked, this, &FavoritesBar::organize);
    connect(m_exit, &QToolButton::clicked, this, &FavoritesBar::exitRequested);
    connect(m_tree, &FavoritesTree::nodeClicked, this,
            [this](FavoriteNode *node, const QPoint &at) { nodeClicked(*node, at); });
}

FavoritesBar::~FavoritesBar()
{
    removeAllNodes();
}

void FavoritesBar::makeContextMenu()
{
    m_contextMenu->setObjectName("mnuContext"_L1);
    const auto add = [this](const char *name, const QString &caption) {
        QAction *item = m_contextMenu->addAction(caption);
        item->setObjectName(QLatin1StringView(name));
        return item;
    };
    connect(add("mnuOpenLink", u"Open Link"_s), &QAction::triggered, this, &FavoritesBar::openLink);
    connect(add("mnuOpenNew", u"Open Link in New Window"_s), &QAction::triggered, this,
            &FavoritesBar::openNew);
    m_contextMenu->addSeparator()->setObjectName("mnuContextBar0"_L1);
    add("mnuCancel", u"&Cancel"_s);
    connect(m_contextMenu, &QMenu::aboutToHide, this, &FavoritesBar::contextMenuClosed);
}

void FavoritesBar::showEvent(QShowEvent *event)
{
    QWidget::showEvent(event);
    if (m_initialised)
        return;
    m_initialised = true;
    refresh();
}

void FavoritesBar::dragEnterEvent(QDragEnterEvent *event)
{
    if (!draggedAddresses(*event).isEmpty())
        acceptAsCopy(*event);
}

/// Of several the first, for which the dialog asks.
void FavoritesBar::dropEvent(QDropEvent *event)
{
    acceptAsCopy(*event);
    const QString url = draggedAddresses(*event).value(0);
    const QString title = draggedTitle(*event->mimeData());
    // Where it comes from waits for the drop to end.
    QTimer::singleShot(0, this, [this, url, title] {
        addPage(url, title.isEmpty() ? shownAddress(QUrl(url)) : title);
    });
}

void FavoritesBar::refresh()
{
    // Folders that an unfinished refresh was still to open again stay on its list.
    for (auto node = m_nodes.cbegin(); node != m_nodes.cend(); ++node) {
        if ((*node)->childCount() > 0 && (*node)->isExpanded())
            m_wereOpen.insert(node.key());
    }
    const qsizetype before = m_nodes.size();
    removeAllNodes();
    // Most likely there are about as many again.
    m_nodes.reserve(before);
    m_favoritesRoot = specialFolder(favoritesFolderNumber);
    if (m_favoritesRoot.isEmpty()) {
        endRefresh();
        return;
    }
    m_files = 0;
    m_folders = 0;
    m_walk =
        std::make_unique<FolderWalk>(m_favoritesRoot, u"*.url"_s, m_files, m_folders,
                                     [this](const QString &path, const FolderListing::Entry &entry,
                                            bool isFile) { addNode(path, entry, isFile); });
    m_slice.start();
}

void FavoritesBar::continueRefresh()
{
    QElapsedTimer time;
    time.start();
    while (m_walk->advance()) {
        if (time.hasExpired(sliceMs))
            return;
    }
    if (m_walk->overflowed())
        qCWarning(lcFiles) << "too many favorites; shown are the first of" << m_favoritesRoot;
    endRefresh();
}

void FavoritesBar::endRefresh()
{
    m_slice.stop();
    m_walk.reset();
    showFinishedNode();
    reopenFolders();
    emit refreshed();
}

void FavoritesBar::removeAllNodes()
{
    m_slice.stop();
    m_walk.reset();
    m_nodes.clear();
    m_unfinished.reset();
    m_tree->clear();
}

void FavoritesBar::reopenFolders()
{
    for (const QString &key : std::as_const(m_wereOpen)) {
        if (FavoriteNode *node = m_nodes.value(key))
            node->setExpanded(true);
    }
    m_wereOpen.clear();
}

void FavoritesBar::addNode(const QString &folder, const FolderListing::Entry &entry, bool isFile)
{
    const QString &name = entry.name;
    const QString key = isFile ? folder + name : folder + name + u'/';
    FavoriteNode *&node = m_nodes[key];
    if (isFile) {
        node = new FavoriteNode(FavoriteNode::Kind::Link, key, InternetShortcut::caption(name));
        if (entry.isPlainFile)
            node->setTag(InternetShortcut::urlOfPlainFile(key, entry.size));
    } else {
        node = new FavoriteNode(FavoriteNode::Kind::Folder, key, name);
    }
    // The walk comes to a folder before what is in it; the root has no node.
    if (folder != m_favoritesRoot) {
        m_nodes.value(folder)->addChild(node);
    } else {
        showFinishedNode();
        m_unfinished.reset(node);
    }
}

// A node at the top comes into the tree with all that is in it: a child added to a tree in view
// costs more than reading its file.
void FavoritesBar::showFinishedNode()
{
    if (m_unfinished)
        m_tree->addTopLevelItem(m_unfinished.release());
}

void FavoritesBar::nodeClicked(FavoriteNode &node, const QPoint &at)
{
    if (node.tag().isEmpty()) {
        if (node.childCount() > 0)
            node.setExpanded(!node.isExpanded());
        return;
    }
    m_currentNode = Opened{node.key(), node.tag()};
    ++m_menusOpened;
    m_contextMenu->popup(at);
}

// The menu hides before its chosen item acts, so the node is forgotten only after that, and not
// when another click has opened the menu again by then.
void FavoritesBar::contextMenuClosed()
{
    QMetaObject::invokeMethod(
        this,
        [this, closed = m_menusOpened] {
            if (closed == m_menusOpened)
                m_currentNode.reset();
        },
        Qt::QueuedConnection);
}

void FavoritesBar::openLink()
{
    if (m_currentNode)
        m_frame.navigateActive(QString(m_currentNode->tag));
}

void FavoritesBar::openNew()
{
    if (m_currentNode)
        m_frame.openBrowserWindow(QString(m_currentNode->tag), m_frame.newWindowState());
}

void FavoritesBar::addCurrentPage()
{
    if (!m_frame.activeChild())
        return;
    const BrowserWindow *page = activeBrowser(m_frame);
    addPage(page ? page->browser()->locationUrl() : QString(),
            page ? page->windowTitle() : QString());
}

void FavoritesBar::addPage(const QString &url, const QString &title)
{
    const QString root = specialFolder(favoritesFolderNumber);
    if (url.isEmpty() || root.isEmpty()) {
        QApplication::beep();
        return;
    }
    auto *dialog = new AddFavoriteDialog({url, title, root}, m_frame.window());
    connect(dialog, &AddFavoriteDialog::changed, this, [this] {
        if (m_initialised)
            refresh();
    });
    dialog->open();
}

void FavoritesBar::organize()
{
    const QString root = specialFolder(favoritesFolderNumber);
    if (!root.isEmpty())
        (new OrganizeFavoritesDialog(root, m_frame.window()))->open();
}

QSize FavoritesBar::sizeHint() const
{
    return usualSize.expandedTo(minimumSizeHint());
}

// Both captions are readable, the buttons being of one width.
QSize FavoritesBar::minimumSizeHint() const
{
    const int widest = std::max(m_add->sizeHint().width(), m_organize->sizeHint().width());
    return {2 * widest + buttonHeight, buttonHeight + m_tree->minimumSizeHint().height()};
}

void FavoritesBar::resizeEvent(QResizeEvent *event)
{
    QWidget::resizeEvent(event);
    // Of an odd number of pixels the first button has one more.
    const int both = width() - buttonHeight;
    const int first = (both + 1) / 2;
    place(*m_add, {0, 0, first, buttonHeight});
    place(*m_organize, {first, 0, both - first, buttonHeight});
    place(*m_exit, {both, 0, buttonHeight, buttonHeight});
    place(*m_tree, {0, buttonHeight, width(), height() - buttonHeight});
}
