#include "AddressList.h"

#include <algorithm>

namespace {
// One unit at a time, so that folded and stored text have the same positions.
char16_t fold(char16_t unit)
{
    return QChar::toCaseFolded(char32_t(unit)) <= 0xffff
        ? static_cast<char16_t>(QChar::toCaseFolded(char32_t(unit)))
        : unit;
}

QString folded(const QString &text)
{
    QString result = text;
    for (QChar &unit : result)
        unit = QChar(fold(unit.unicode()));
    return result;
}

quint64 childKey(int parent, QChar first)
{
    return quint64(parent) << 16 | first.unicode();
}
}

AddressList::AddressList()
{
    clear();
}

void AddressList::clear()
{
    m_order.clear();
    m_texts.clear();
    m_serials.clear();
    m_children.clear();
    m_nodes = {Node{QString(), 0, 0, 0}};
    m_lastSerial = 0;
}

qsizetype AddressList::positionOf(qint64 serial) const
{
    return std::lower_bound(m_order.cbegin(), m_order.cend(), serial) - m_order.cbegin();
}

int AddressList::find(const QString &text) const
{
    const auto serial = m_serials.constFind(text);
    if (serial == m_serials.cend())
        return -1;
    return static_cast<int>(m_order.size() - 1 - positionOf(*serial));
}

void AddressList::takeForTop(int row)
{
    const qsizetype position = m_order.size() - 1 - row;
    m_serials.remove(m_texts.take(m_order.at(position)));
    m_order.remove(position);
}

void AddressList::addOnTop(const QString &text)
{
    const qint64 serial = ++m_lastSerial;
    m_order.append(serial);
    m_texts.insert(serial, text);
    m_serials.insert(text, serial);
    indexText(text, serial);
}

// Every node on the way to the newest text has this text as its newest. An entry leaves only to
// come back on top over the same nodes, so no node ever has to look for its next newest.
void AddressList::indexText(const QString &text, qint64 serial)
{
    const QString key = folded(text);
    int node = 0;
    qsizetype at = 0;
    m_nodes[0].newest = serial;
    while (at < key.size()) {
        const auto child = m_children.constFind(childKey(node, key.at(at)));
        if (child == m_children.cend()) {
            addNode(node, key, at, key.size(), serial);
            return;
        }
        int next = *child;
        const QStringView label =
            QStringView(m_nodes.at(next).key)
                .sliced(m_nodes.at(next).from, m_nodes.at(next).to - m_nodes.at(next).from);
        const QStringView rest = QStringView(key).sliced(at);
        const auto differ = std::mismatch(label.cbegin(), label.cend(), rest.cbegin(), rest.cend());
        const qsizetype same = differ.first - label.cbegin();
        if (same < label.size())
            next = splitNode(node, next, same);
        m_nodes[next].newest = serial;
        node = next;
        at += same;
    }
}

int AddressList::addNode(int parent, const QString &key, qsizetype from, qsizetype to,
                         qint64 newest)
{
    const int node = static_cast<int>(m_nodes.size());
    m_nodes.append(Node{key, from, to, newest});
    m_children.insert(childKey(parent, key.at(from)), node);
    return node;
}

// Puts a node between `parent` and `node` for the first `at` units of the latter's text.
int AddressList::splitNode(int parent, int node, qsizetype at)
{
    const Node lower = m_nodes.at(node);
    const int upper = addNode(parent, lower.key, lower.from, lower.from + at, lower.newest);
    m_nodes[node].from += at;
    m_children.insert(childKey(upper, lower.key.at(lower.from + at)), node);
    return upper;
}

// Follows `text` from `at` units into `node`; false when no entry goes on like that.
bool AddressList::descend(QStringView text, int &node, qsizetype &at) const
{
    for (const QChar unit : text) {
        const QChar wanted(fold(unit.unicode()));
        const Node &current = m_nodes.at(node);
        if (current.from + at < current.to) {
            if (current.key.at(current.from + at) != wanted)
                return false;
            ++at;
            continue;
        }
        const auto child = m_children.constFind(childKey(node, wanted));
        if (child == m_children.cend())
            return false;
        node = *child;
        at = 1;
    }
    return true;
}

QString AddressList::completion(const QString &text, const QString &scheme) const
{
    int node = 0;
    qsizetype at = 0;
    if (m_order.isEmpty() || !descend(scheme, node, at) || !descend(text, node, at))
        return {};
    return m_texts.value(m_nodes.at(node).newest);
}
