#pragma once

#include <QAbstractTableModel>
#include <QDate>
#include <memory>
#include <vector>

class VisitHistory;
class VisitIndex;

/// The visits by day, the last first, each page once a day; a heading stands above each day. A row
/// is named as its page, for those too who cannot see it.
class VisitModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Title, Address, Time, ColumnCount };

    explicit VisitModel(const VisitHistory &history, QObject *parent = nullptr);

    /// Only those whose title or address has each of these words; all for none. Read anew from the
    /// history, of which the newest 10,000 rows are shown.
    void show(const QString &searched);
    /// There are more than are shown.
    bool isCut() const { return m_isCut; }
    void translate();

    bool isHeading(int row) const { return m_rows[size_t(row)].page < 0; }
    /// Of a row with a page: that page's, exact.
    QByteArray address(int row) const;
    QDate day(int row) const { return m_rows[size_t(row)].day; }
    /// The row of that page on that day; -1 for none.
    int rowOf(const QByteArray &address, QDate day) const;

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    struct Row {
        QDate day;
        /// Of the last visit on that day.
        qint64 time = 0;
        /// -1: the heading of the day.
        int page = -1;
    };

    QString text(const Row &row, int column) const;
    void collect(const QString &searched);

    const VisitHistory &m_history;
    /// What the rows are of.
    std::shared_ptr<const VisitIndex> m_index;
    std::vector<Row> m_rows;
    QStringList m_headers;
    bool m_isCut = false;
};
