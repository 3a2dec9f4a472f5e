#pragma once

#include <QHash>
#include <QList>
#include <QString>

/// The entries of an address bar, most recent first, each once (case counts). Made for lists of a
/// hundred thousand: adding, finding an equal entry and finding a completion do not walk the list.
class AddressList {
public:
    AddressList();

    int count() const { return static_cast<int>(m_entries.size()); }
    /// Entry `row`, 0 the most recent.
    const QString &at(int row) const { return entry(row).text; }
    /// The row of the entry equal to `text`, -1 when there is none.
    int find(const QString &text) const;
    /// Puts `text` at the top; an equal entry must have been removed from `row` before.
    void addOnTop(const QString &text);
    /// Takes an entry out that is to be put on top next.
    void takeForTop(int row);
    void clear();

    /// The topmost entry that begins with `scheme` followed by `text`, whatever the case; empty
    /// when there is none.
    QString completion(const QString &text, const QString &scheme = {}) const;

private:
    struct Entry {
        QString text;
        qint64 serial;
    };
    // A node of the prefix tree: reached over the folded text key[from, to).
    struct Node {
        QString key;
        qsizetype from;
        qsizetype to;
        qint64 newest;
    };

    const Entry &entry(int row) const { return m_entries.at(m_entries.size() - 1 - row); }
    qsizetype positionOf(qint64 serial) const;
    void indexText(const QString &text, qint64 serial);
    int addNode(int parent, const QString &key, qsizetype from, qsizetype to, qint64 newest);
    int splitNode(int parent, int node, qsizetype at);
    bool descend(QStringView text, int &node, qsizetype &at) const;

    // Oldest first, so that the top is the cheap end; serials ascend.
    QList<Entry> m_entries;
    QHash<QString, qint64> m_serials;
    QList<Node> m_nodes;
    QHash<quint64, int> m_children;
    qint64 m_lastSerial = 0;
};
