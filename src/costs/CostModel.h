#pragma once

#include <QAbstractTableModel>
#include <QPointer>
#include <vector>

#include "CostMeter.h"

class BrowserWindow;

/// The windows with pages and what the processes of their pages take; in the first row the program
/// itself. A row keeps its place while its window is there.
class CostModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Title, Site, Memory, Processor, ColumnCount };
    /// What a column is sorted by.
    static constexpr int SortRole = Qt::UserRole;

    explicit CostModel(QObject *parent = nullptr);

    /// The windows as they are now, with what was measured last.
    void refresh();
    void setCosts(const CostMeter::Costs &costs);
    /// Whose costs are shown.
    QList<qint64> processes() const;
    /// Null for the program's row.
    BrowserWindow *window(int row) const;
    /// All processes together.
    CostMeter::Cost sum() const;
    void translate();

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Row {
        QPointer<BrowserWindow> window;
        qint64 process = 0;
        QString title;
        QString site;
        bool isAsleep = false;
        /// Windows with pages of this process.
        int sharers = 1;
    };

    static void update(Row &row);
    void countSharers();
    QString text(const Row &row, int column) const;
    QVariant sortValue(const Row &row, int column) const;

    std::vector<Row> m_rows;
    CostMeter::Costs m_costs;
    QStringList m_headers;
};
