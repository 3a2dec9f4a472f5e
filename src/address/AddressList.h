#pragma once

#include <QHash>
#include <QList>
#include <QString>

/// The entries of an address bar, most recent first, each once (case counts). Made for lists of a
/// hundred thousand: adding, finding an equal entry and finding a completion do not walk the list.
class AddressList {
public:
    AddressList();

    int count() const { return static_cast<int>(m_order.size()); }
    /// Entry `row`, 0 the most recent.
    QString at(int row) const { return m_texts.value(m_order.at(m_order.size() - 1 - row)); }
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
    // A node of the prefix tree: reached over the folded text key[from, to).
    struct Node {
        QString key;
        qsizetype from;
        qsizetype to;
        qint64 newest;
    };

    qsizetype positionOf(qint64 serial) const;
    void indexText(const QString &text, qint64 serial);
    int addNode(int parent, const QString &key, qsizetype from, qsizetype to, qint64 newest);
    int splitNode(int parent, int node, qsizetype at);
    bool descend(QStringView text, int &node, qsizetype &at) const;

    // Serials, oldest first, so that the top is the cheap end; they ascend.
    QList<qint64> m_order;
    QHash<qint64, QString> m_texts;
    QHash<QString, qint64> m_serials;
    QList<Node> m_nodes;
    QHash<quint64, int> m_children;
    qint64 m_lastSerial = 0;
};
