#include "DownloadsWindow.h"

#include "DownloadActions.h"
#include "DownloadList.h"
#include "DownloadModel.h"
#include "DownloadView.h"
#include "FlowRows.h"
#include "Forms.h"
#include "Frame.h"
#include "Texts.h"
#include "ThemedIcon.h"
#include "WindowTabs.h"

#include <QCloseEvent>
#include <QHeaderView>
#include <QMdiArea>
#include <QSortFilterProxyModel>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr Texts<"frmDownloads"> texts;

/// Widths of the columns in digits; the last one takes what is left.
constexpr int digits[] = {28, 24, 17, 10, 11, 26, 18};
static_assert(std::size(digits) == DownloadModel::ColumnCount);

QToolButton *buttonOf(QAction *action)
{
    auto *button = new QToolButton;
    button->setDefaultAction(action);
    button->setObjectName(action->objectName());
    button->setToolButtonStyle(Qt::ToolButtonTextOnly);
    button->setFocusPolicy(Qt::StrongFocus);
    return button;
}

}

DownloadsWindow::DownloadsWindow(Frame &frame, DownloadList &list)
    : InnerWindow(frame)
    , m_list(list)
    , m_model(new DownloadModel(list, this))
    , m_sorted(new QSortFilterProxyModel(this))
    , m_view(new DownloadView)
    , m_actions(new DownloadActions(
          list, [this] { return chosen(); }, *this))
{
    setObjectName("frmDownloads"_L1);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowIcon(themedIcon(u"downloads"_s));
    m_refreshes.setSingleShot(true);
    m_refreshes.setInterval(0);
    makeContents();
    connectList();
    Forms::add(this);
    frame.windowTabs().addTab(tabKey(), {});
    frame.windowTabs().setIcon(tabKey(), windowIcon());
    DownloadsWindow::translate();
    connect(this, &QMdiSubWindow::windowStateChanged, this,
            [this](Qt::WindowStates before, Qt::WindowStates now) {
                if ((before & Qt::WindowActive) || !(now & Qt::WindowActive) || m_unloaded)
                    return;
                pressTab();
                m_frame.setAddressText(shownAddress());
            });
}

DownloadsWindow::~DownloadsWindow()
{
    disconnect(this, &QMdiSubWindow::windowStateChanged, this, nullptr);
    unload();
}

void DownloadsWindow::makeContents()
{
    m_sorted->setSourceModel(m_model);
    m_sorted->setSortRole(DownloadModel::SortRole);
    m_sorted->setSortLocaleAware(true);
    m_view->setModel(m_sorted);
    m_view->sortByColumn(DownloadModel::When, Qt::DescendingOrder);
    m_view->addActions(m_actions->all());
    arrangeColumns();
    auto *contents = new QWidget;
    auto *buttons = new FlowRows;
    const QList<QAction *> actions = m_actions->all();
    for (QAction *action : actions)
        buttons->addWidget(buttonOf(action));
    auto *layout = new QVBoxLayout(contents);
    layout->addWidget(m_view, 1);
    layout->addLayout(buttons);
    contents->setFocusProxy(m_view);
    setWidget(contents);
}

void DownloadsWindow::connectList()
{
    const auto refreshSoon = [this] { m_refreshes.start(); };
    connect(&m_refreshes, &QTimer::timeout, m_actions, &DownloadActions::refresh);
    connect(m_view->selectionModel(), &QItemSelectionModel::selectionChanged, this, refreshSoon);
    connect(&m_list, &DownloadList::changed, this, refreshSoon);
    connect(m_view, &DownloadView::openWanted, m_actions, &DownloadActions::open);
    connect(m_view, &DownloadView::pauseWanted, m_actions, &DownloadActions::pauseOrResume);
    connect(m_view, &DownloadView::copyWanted, m_actions, &DownloadActions::copyAddress);
    connect(m_view, &DownloadView::removeWanted, m_actions, &DownloadActions::remove);
    m_actions->refresh();
}

void DownloadsWindow::arrangeColumns()
{
    // What changes stands beside the name: a narrow window has no room for all.
    m_view->header()->moveSection(DownloadModel::Progress, 1);
    m_view->header()->moveSection(DownloadModel::State, 2);
    m_view->header()->moveSection(DownloadModel::Size, 3);
    const int digit = m_view->fontMetrics().horizontalAdvance(u'0');
    for (int column = 0; column < DownloadModel::ColumnCount; ++column)
        m_view->setColumnWidth(column, digits[column] * digit);
}

void DownloadsWindow::widenColumns()
{
    QHeaderView &header = *m_view->header();
    const int last = header.logicalIndex(DownloadModel::ColumnCount - 1);
    // With a width of its own it would stay that wide in a window that becomes narrower.
    header.setMinimumSectionSize(header.sectionSizeHint(last));
    for (int column = 0; column < DownloadModel::ColumnCount; ++column) {
        if (column != last)
            m_view->setColumnWidth(
                column, std::max(header.sectionSize(column), header.sectionSizeHint(column)));
    }
}

QList<Download> DownloadsWindow::chosen() const
{
    QList<Download> downloads;
    const QModelIndexList rows = m_view->selectionModel()->selectedRows();
    downloads.reserve(rows.size());
    for (const QModelIndex &row : rows) {
        if (const Download *download = m_list.find(m_model->id(m_sorted->mapToSource(row).row())))
            downloads.append(*download);
    }
    return downloads;
}

void DownloadsWindow::focusContents()
{
    m_view->setFocus();
}

void DownloadsWindow::copyAddresses()
{
    m_actions->copyAddress();
}

void DownloadsWindow::selectAll()
{
    m_view->selectAll();
}

void DownloadsWindow::selectNone()
{
    m_view->clearSelection();
}

void DownloadsWindow::translate()
{
    const QString caption = texts.at<"Caption", "Downloads">();
    setWindowTitle(caption);
    m_frame.windowTabs().setCaption(tabKey(), caption);
    m_frame.windowTabs().setToolTip(tabKey(), caption);
    m_view->setAccessibleName(caption);
    m_view->setEmptyText(texts.at<"strNoDownloads", "There are no downloads">());
    m_model->translate();
    widenColumns();
    m_actions->translate();
}

void DownloadsWindow::unload()
{
    if (std::exchange(m_unloaded, true))
        return;
    m_frame.windowTabs().removeTab(tabKey());
    Forms::remove(this);
}

void DownloadsWindow::closeEvent(QCloseEvent *event)
{
    unload();
    InnerWindow::closeEvent(event);
}

DownloadsWindow *DownloadsWindow::openIn(Frame &frame, DownloadList &list)
{
    if (auto *open = qobject_cast<DownloadsWindow *>(Forms::named("frmDownloads").value(0)))
        return open;
    const WindowState state = frame.newWindowState();
    if (const InnerWindow *active = activeInner(frame))
        frame.windowTabs().setPressed(active->tabKey(), false);
    auto *window = new DownloadsWindow(frame, list);
    frame.adopt(window);
    if (state == WindowState::Maximized)
        window->showMaximized();
    else
        window->show();
    return window;
}
