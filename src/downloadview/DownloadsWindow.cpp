#include "DownloadsWindow.h"

#include "DownloadActions.h"
#include "DownloadList.h"
#include "DownloadModel.h"
#include "DownloadView.h"
#include "Texts.h"

#include <QHeaderView>
#include <QSortFilterProxyModel>
#include <QVBoxLayout>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr char name[] = "frmDownloads";
constexpr Texts<"frmDownloads"> texts;

/// Widths of the columns in digits; the last one takes what is left.
constexpr int digits[] = {28, 24, 17, 10, 11, 26, 18};
static_assert(std::size(digits) == DownloadModel::ColumnCount);

}

DownloadsWindow::DownloadsWindow(Frame &frame, DownloadList &list)
    : ListWindow(frame, name, u"downloads"_s)
    , m_list(list)
    , m_model(new DownloadModel(list, this))
    , m_sorted(new QSortFilterProxyModel(this))
    , m_view(new DownloadView)
    , m_actions(new DownloadActions(
          list, [this] { return chosen(); }, *this))
{
    m_refreshes.setSingleShot(true);
    m_refreshes.setInterval(0);
    makeContents();
    connectList();
    DownloadsWindow::translate();
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
    auto *layout = new QVBoxLayout(contents);
    layout->addWidget(m_view, 1);
    layout->addLayout(buttonsFor(m_actions->all()));
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
    setCaption(caption);
    m_view->setAccessibleName(caption);
    m_view->setEmptyText(texts.at<"strNoDownloads", "There are no downloads">());
    m_model->translate();
    widenColumns();
    m_actions->translate();
}

DownloadsWindow *DownloadsWindow::openIn(Frame &frame, DownloadList &list)
{
    return openOne<DownloadsWindow>(frame, name, [&] { return new DownloadsWindow(frame, list); });
}
