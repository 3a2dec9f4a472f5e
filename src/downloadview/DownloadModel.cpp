#include "DownloadModel.h"

#include "DownloadList.h"
#include "ShownText.h"
#include "Texts.h"
#include "ToolTipText.h"

#include <QLocale>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"frmDownloads"> texts;
}

DownloadModel::DownloadModel(DownloadList &list, QObject *parent)
    : QAbstractTableModel(parent)
    , m_list(list)
    , m_headers(headerTexts())
{
    m_rows.reserve(list.all().size());
    for (const Download &download : list.all())
        m_rows.append(rowOf(download));
    connect(&list, &DownloadList::added, this, &DownloadModel::insert);
    connect(&list, &DownloadList::restored, this, &DownloadModel::appendRestored);
    connect(&list, &DownloadList::changed, this, &DownloadModel::update);
    m_erases.setSingleShot(true);
    connect(&m_erases, &QTimer::timeout, this, &DownloadModel::eraseGone);
    connect(&list, &DownloadList::removed, this, [this](const QString &id) {
        m_gone.insert(id);
        m_erases.start();
    });
}

DownloadModel::Row DownloadModel::rowOf(const Download &download)
{
    return {download, DownloadTexts::address(download.address),
            DownloadTexts::address(download.page)};
}

void DownloadModel::insert(const QString &id)
{
    const Download *download = m_list.find(id);
    if (!download)
        return;
    beginInsertRows({}, 0, 0);
    m_rows.prepend(rowOf(*download));
    endInsertRows();
}

void DownloadModel::appendRestored()
{
    QSet<QString> known;
    for (const Row &row : std::as_const(m_rows))
        known.insert(row.download.id);
    QList<Row> more;
    for (const Download &download : m_list.all()) {
        if (!known.contains(download.id))
            more.append(rowOf(download));
    }
    if (more.isEmpty())
        return;
    const int count = int(m_rows.size());
    beginInsertRows({}, count, count + int(more.size()) - 1);
    m_rows.append(more);
    endInsertRows();
}

/// Told in one piece, however many there are: each telling is a look through the whole of what is
/// shown. Of columns that stay as they are nothing is told, or rows would be sorted anew by them.
void DownloadModel::update(const QSet<QString> &ids)
{
    int first = -1;
    int last = -1;
    bool isOther = false;
    for (int i = 0; i < int(m_rows.size()); ++i) {
        Row &row = m_rows[i];
        if (!ids.contains(row.download.id))
            continue;
        const Download *now = m_list.find(row.download.id);
        if (!now)
            continue;
        const Download before = std::exchange(row.download, *now);
        if (now->address != before.address || now->page != before.page)
            row = rowOf(*now);
        isOther = isOther || now->name != before.name || now->address != before.address
            || now->page != before.page || now->size != before.size;
        first = first < 0 ? i : first;
        last = i;
    }
    if (last < 0)
        return;
    emit dataChanged(index(first, Progress), index(last, State));
    if (isOther)
        emit dataChanged(index(first, Name), index(last, Size));
}

void DownloadModel::eraseGone()
{
    const auto isGone = [this](int row) { return m_gone.contains(id(row)); };
    for (int last = int(m_rows.size()) - 1; last >= 0; --last) {
        if (!isGone(last))
            continue;
        int first = last;
        while (first > 0 && isGone(first - 1))
            --first;
        beginRemoveRows({}, first, last);
        m_rows.remove(first, last - first + 1);
        endRemoveRows();
        last = first;
    }
    m_gone.clear();
}

QStringList DownloadModel::headerTexts()
{
    // In the order of the columns.
    return {texts.at<"strName", "Name">(),         texts.at<"strAddress", "Address">(),
            texts.at<"strPage", "Page">(),         texts.at<"strSize", "Size">(),
            texts.at<"strProgress", "Progress">(), texts.at<"strState", "State">(),
            texts.at<"strWhen", "When">()};
}

void DownloadModel::translate()
{
    m_texts = DownloadTexts();
    m_headers = headerTexts();
    emit headerDataChanged(Qt::Horizontal, 0, ColumnCount - 1);
    if (!m_rows.isEmpty())
        emit dataChanged(index(0, 0), index(int(m_rows.size()) - 1, ColumnCount - 1));
}

int DownloadModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int DownloadModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : ColumnCount;
}

QString DownloadModel::stateOf(const Download &download) const
{
    const QString pace = download.state == Download::State::Running
        ? m_texts.pace(m_list.rate(download.id), m_list.secondsLeft(download.id))
        : QString();
    return m_texts.state(download, pace);
}

QString DownloadModel::text(const Row &row, int column) const
{
    const Download &download = row.download;
    switch (column) {
    case Name:
        return DownloadTexts::name(download);
    case Address:
        return row.address;
    case Page:
        return row.page;
    case Size:
        return DownloadTexts::size(download.size);
    case Progress:
        return m_texts.progress(download.received, download.size);
    case State:
        return stateOf(download);
    case When:
        return DownloadTexts::when(download.began);
    default:
        return {};
    }
}

QVariant DownloadModel::sortValue(const Row &row, int column)
{
    const Download &download = row.download;
    switch (column) {
    case Name:
        return download.name;
    case Address:
        return row.address;
    case Page:
        return row.page;
    case Size:
        return download.size;
    case Progress:
        return DownloadTexts::share(download.received, download.size);
    case State:
        return int(download.state);
    case When:
        return download.began;
    default:
        return {};
    }
}

QVariant DownloadModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const Row &row = m_rows.at(index.row());
    const Download &download = row.download;
    switch (role) {
    case Qt::DisplayRole:
    case Qt::AccessibleTextRole:
        return text(row, index.column());
    case Qt::AccessibleDescriptionRole:
        // What a row says beyond its name.
        return index.column() == Name ? text(row, Progress) + u", "_s + text(row, State)
                                      : QString();
    case Qt::ToolTipRole: {
        const QString detail = index.column() == State ? shownText(download.detail) : QString();
        const QString whole = text(row, index.column());
        return wrappedToolTip(detail.isEmpty() ? whole : whole + u" - "_s + detail);
    }
    case Qt::TextAlignmentRole:
        return index.column() == Size ? QVariant(int(Qt::AlignRight | Qt::AlignVCenter))
                                      : QVariant();
    case SortRole:
        return sortValue(row, index.column());
    case ShareRole:
        return download.isOver() ? QVariant()
                                 : DownloadTexts::share(download.received, download.size);
    default:
        return {};
    }
}

QVariant DownloadModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    return orientation == Qt::Horizontal && role == Qt::DisplayRole ? m_headers.value(section)
                                                                    : QVariant();
}
