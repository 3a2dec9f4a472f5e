#include "VisitModel.h"

#include "ShownAddress.h"
#include "ShownText.h"
#include "Texts.h"
#include "VisitHistory.h"

#include <QFont>
#include <QLocale>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"frmVisits"> texts;
/// What nobody scrolls through, and a list can be made of at each key.
constexpr size_t mostRows = 10'000;

using Stay = VisitIndex::Stay;

bool isLater(const Stay &one, const Stay &other)
{
    return one.time > other.time;
}

/// The last first. They mostly come in order: only by other hands than ours do they not.
std::vector<Stay> lastFirst(const VisitIndex &index, const std::vector<bool> &matches)
{
    std::vector<Stay> stays;
    for (auto stay = index.stays().rbegin(); stay != index.stays().rend(); ++stay) {
        if (matches[size_t(stay->page)])
            stays.push_back(*stay);
    }
    if (!std::is_sorted(stays.begin(), stays.end(), isLater))
        std::stable_sort(stays.begin(), stays.end(), isLater);
    return stays;
}

QDateTime timeOf(qint64 seconds)
{
    return QDateTime::fromSecsSinceEpoch(seconds);
}
}

VisitModel::VisitModel(const VisitHistory &history, QObject *parent)
    : QAbstractTableModel(parent)
    , m_history(history)
{
}

void VisitModel::show(const QString &searched)
{
    beginResetModel();
    m_rows.clear();
    m_index = m_history.sharedIndex();
    collect(searched);
    endResetModel();
}

void VisitModel::collect(const QString &searched)
{
    const VisitIndex &index = *m_index;
    const std::vector<Stay> stays = lastFirst(index, index.matches(searched));
    // By the day that a page was last put to: each once a day.
    std::vector<QDate> seen(size_t(index.pageCount()));
    QDate day;
    qint64 dayBegins = 0;
    m_isCut = false;
    for (const Stay &stay : stays) {
        const bool isNewDay = !day.isValid() || stay.time < dayBegins;
        if (isNewDay) {
            day = timeOf(stay.time).date();
            dayBegins = day.startOfDay().toSecsSinceEpoch();
        }
        if (std::exchange(seen[size_t(stay.page)], day) == day)
            continue;
        m_isCut = m_rows.size() >= mostRows;
        if (m_isCut)
            return;
        if (isNewDay)
            m_rows.push_back({day});
        m_rows.push_back({day, stay.time, stay.page});
    }
}

void VisitModel::translate()
{
    m_headers = {texts.at<"strTitle", "Title">(), texts.at<"strAddress", "Address">(),
                 texts.at<"strTime", "Time">()};
    emit headerDataChanged(Qt::Horizontal, 0, ColumnCount - 1);
}

QByteArray VisitModel::address(int row) const
{
    const int page = m_rows[size_t(row)].page;
    return page < 0 ? QByteArray() : m_index->page(page).address;
}

int VisitModel::rowOf(const QByteArray &address, QDate day) const
{
    for (size_t row = 0; row < m_rows.size(); ++row) {
        if (m_rows[row].day == day && m_rows[row].page >= 0 && this->address(int(row)) == address)
            return int(row);
    }
    return -1;
}

int VisitModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int VisitModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QString VisitModel::text(const Row &row, int column) const
{
    if (row.page < 0)
        return column == Title ? QLocale().toString(row.day, QLocale::LongFormat) : QString();
    const VisitIndex::Page &page = m_index->page(row.page);
    if (column == Time)
        return QLocale().toString(timeOf(row.time).time(), QLocale::ShortFormat);
    const QString title = shownText(QString::fromUtf8(page.title));
    return column == Title && !title.isEmpty() ? title
                                               : shownAddress(QString::fromUtf8(page.address));
}

QVariant VisitModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || size_t(index.row()) >= m_rows.size())
        return {};
    const Row &row = m_rows[size_t(index.row())];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return text(row, index.column());
    case Qt::FontRole: {
        QFont font;
        font.setBold(row.page < 0);
        return row.page < 0 ? font : QVariant();
    }
    default:
        return {};
    }
}

QVariant VisitModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal || role != Qt::DisplayRole)
        return {};
    return m_headers.value(section);
}

Qt::ItemFlags VisitModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::NoItemFlags;
    return isHeading(index.row())
        ? Qt::ItemIsEnabled | Qt::ItemNeverHasChildren
        : Qt::ItemIsEnabled | Qt::ItemIsSelectable | Qt::ItemNeverHasChildren;
}
