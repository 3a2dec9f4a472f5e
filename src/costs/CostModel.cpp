#include "CostModel.h"

#include "BrowserWindow.h"
#include "ShownAddress.h"
#include "ShownText.h"
#include "Texts.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLocale>
#include <QUrl>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr Texts<"frmCosts"> texts;

/// Numbers stand below each other.
int alignmentOf(int column)
{
    const bool isNumber = column >= CostModel::Memory;
    return int(isNumber ? Qt::AlignRight : Qt::AlignLeft) | int(Qt::AlignVCenter);
}
}

CostModel::CostModel(QObject *parent)
    : QAbstractTableModel(parent)
{
    Row program;
    program.process = QCoreApplication::applicationPid();
    program.title = QGuiApplication::applicationDisplayName();
    m_rows.push_back(program);
}

void CostModel::update(Row &row)
{
    row.process = row.window->browser()->process();
    row.isAsleep = row.window->browser()->isWaiting();
    row.title = shownText(row.window->windowTitle());
    row.site = shownSite(QUrl(row.window->browser()->locationUrl()));
}

void CostModel::refresh()
{
    for (int row = rowCount() - 1; row > 0; --row) {
        const BrowserWindow *each = m_rows[size_t(row)].window;
        if (each && !each->isUnloaded())
            continue;
        beginRemoveRows({}, row, row);
        m_rows.erase(m_rows.begin() + row);
        endRemoveRows();
    }
    const QList<BrowserWindow *> windows = browserForms();
    for (BrowserWindow *window : windows) {
        const bool isKnown = std::any_of(m_rows.cbegin(), m_rows.cend(),
                                         [window](const Row &row) { return row.window == window; });
        if (isKnown)
            continue;
        beginInsertRows({}, rowCount(), rowCount());
        m_rows.emplace_back();
        m_rows.back().window = window;
        endInsertRows();
    }
    std::for_each(m_rows.begin() + 1, m_rows.end(), update);
    countSharers();
    emit dataChanged(index(0, 0), index(rowCount() - 1, ColumnCount - 1));
}

void CostModel::countSharers()
{
    QHash<qint64, int> users;
    for (const Row &row : m_rows)
        ++users[row.process];
    for (Row &row : m_rows)
        row.sharers = users.value(row.process);
}

void CostModel::setCosts(const CostMeter::Costs &costs)
{
    m_costs = costs;
    refresh();
}

QList<qint64> CostModel::processes() const
{
    QList<qint64> processes;
    for (const Row &row : m_rows) {
        if (row.process != 0 && !processes.contains(row.process))
            processes.append(row.process);
    }
    return processes;
}

BrowserWindow *CostModel::window(int row) const
{
    return m_rows[size_t(row)].window;
}

CostMeter::Cost CostModel::sum() const
{
    CostMeter::Cost sum;
    for (const CostMeter::Cost &each : m_costs) {
        sum.memory += each.memory;
        if (each.processor >= 0)
            sum.processor = std::max(0, sum.processor) + each.processor;
    }
    return sum;
}

void CostModel::translate()
{
    m_headers = {texts.at<"strTitle", "Title">(), texts.at<"strSite", "Site">(),
                 texts.at<"strMemory", "Memory">(), texts.at<"strProcessor", "Processor">()};
    emit headerDataChanged(Qt::Horizontal, 0, ColumnCount - 1);
    refresh();
}

int CostModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_rows.size());
}

int CostModel::columnCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(ColumnCount);
}

QString CostModel::text(const Row &row, int column) const
{
    if (column == Title)
        return row.title;
    if (column == Site)
        return row.site;
    const auto cost = m_costs.constFind(row.process);
    if (row.isAsleep)
        return column == Memory ? texts.at<"strAsleep", "asleep">() : QString();
    if (cost == m_costs.constEnd())
        return {};
    const QLocale locale;
    if (column == Processor)
        return cost->processor < 0 ? QString() : locale.toString(cost->processor) + u" %"_s;
    const QString size =
        locale.formattedDataSize(cost->memory, 0, QLocale::DataSizeTraditionalFormat);
    return row.sharers < 2
        ? size
        : texts.at<"strShared", "%1, %2 windows together">().arg(size).arg(row.sharers);
}

QVariant CostModel::sortValue(const Row &row, int column) const
{
    const CostMeter::Cost cost = m_costs.value(row.process);
    switch (column) {
    case Memory:
        return row.process == 0 ? qint64(-1) : cost.memory;
    case Processor:
        return cost.processor;
    default:
        return text(row, column);
    }
}

QVariant CostModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || size_t(index.row()) >= m_rows.size())
        return {};
    const Row &row = m_rows[size_t(index.row())];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return text(row, index.column());
    case Qt::TextAlignmentRole:
        return alignmentOf(index.column());
    case SortRole:
        return sortValue(row, index.column());
    default:
        return {};
    }
}

QVariant CostModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    if (orientation != Qt::Horizontal)
        return {};
    if (role == Qt::TextAlignmentRole)
        return alignmentOf(section);
    return role == Qt::DisplayRole ? m_headers.value(section) : QVariant();
}
