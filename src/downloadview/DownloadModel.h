#pragma once

#include "DownloadTexts.h"

#include <QAbstractTableModel>
#include <QSet>
#include <QTimer>

class DownloadList;

/// The downloads as a table, in the list's order. A row is named as its file, for those too who
/// cannot see it.
class DownloadModel : public QAbstractTableModel {
    Q_OBJECT

public:
    enum Column { Name, Address, Page, Size, Progress, State, When, ColumnCount };
    enum Role {
        /// What a column is sorted by.
        SortRole = Qt::UserRole,
        /// Of `Progress`: hundredths, -1 unknown; null for one that is over.
        ShareRole,
    };

    explicit DownloadModel(DownloadList &list, QObject *parent = nullptr);

    QString id(int row) const { return m_rows.at(row).download.id; }
    /// The language or the locale is another one now.
    void translate();

    int rowCount(const QModelIndex &parent = {}) const override;
    int columnCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    struct Row {
        Download download;
        // Made once: an address may be long.
        QString address;
        QString page;
    };

    static Row rowOf(const Download &download);
    void insert(const QString &id);
    void appendRestored();
    void update(const QSet<QString> &ids);
    void eraseGone();
    QString text(const Row &row, int column) const;
    QString stateOf(const Download &download) const;
    static QVariant sortValue(const Row &row, int column);

    static QStringList headerTexts();

    DownloadList &m_list;
    DownloadTexts m_texts;
    QStringList m_headers;
    QList<Row> m_rows;
    /// Taken out of the list; their rows go together, as a view looks at all of its rows each time.
    QSet<QString> m_gone;
    QTimer m_erases;
};
