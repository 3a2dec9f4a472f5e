#pragma once

#include <QHash>
#include <QString>
#include <string>
#include <vector>

/// The entries of a list of patterns, in the list's order, which knows whether a pattern covers
/// one of them. Hundreds of thousands may come in a row.
class PatternEntries {
public:
    void append(const QString &entry);
    void removeAt(qsizetype row);
    /// Time is that of the whole list, for a pattern without wildcards that of one entry.
    bool isAnyCoveredBy(const QString &pattern) const;

private:
    /// How often each is there.
    QHash<QString, qsizetype> m_counts;
    std::vector<std::u32string> m_texts;
};
