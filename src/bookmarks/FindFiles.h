#pragma once

#include "FolderListing.h"

#include <QString>
#include <functional>
#include <vector>

/// A walk through a folder tree for the files that match a pattern, done in small steps so that
/// its owner can stop between any two. In each folder the matches come first, then each subfolder
/// followed by what is in it. A folder whose name matches comes as a match too. A link to a folder
/// that the walk is already in is reported and not entered.
class FolderWalk {
public:
    /// Told of everything met: the containing folder with its trailing slash, the entry in it, and
    /// whether it came as a match.
    using Report =
        std::function<void(const QString &path, const FolderListing::Entry &entry, bool isFile)>;

    /// Appends the trailing slash that `path` may lack. The counts go up as the walk goes on.
    FolderWalk(QString &path, const QString &pattern, qint16 &fileCount, qint16 &dirCount,
               const Report &report);

    /// One step; false when the walk is over.
    bool advance();
    /// True when the walk ended because there was more than a count can hold (32,767): the one
    /// too many was neither counted nor reported.
    bool overflowed() const { return m_overflowed; }
    /// What the sizes of the matches come to, as far as the walk got. The part of a size above
    /// 4 GB counts -1 per 4 GB.
    qint64 size() const { return m_size; }

private:
    struct Level {
        QString path;
        QString canonical;
        FolderListing listing;
        bool listed = false;
        qsizetype nextMatch = 0;
        qsizetype nextFolder = 0;
    };

    void enter(const QString &path, const QString &canonical);
    void list(Level &level);
    void reportMatch(Level &level);
    void reportFolder(Level &level);
    bool count(qint16 &counter, qsizetype more);

    QRegularExpression m_pattern;
    qint16 &m_fileCount;
    qint16 &m_dirCount;
    Report m_report;
    std::vector<Level> m_levels;
    qint64 m_size = 0;
    bool m_overflowed = false;
};
