#pragma once

#include "FolderListing.h"

#include <QByteArray>
#include <QString>
#include <vector>

/// Makes the bookmark file of a Favorites folder, in small steps: every folder and every shortcut
/// with its name and date, in the order in which they are shown.
class BookmarkWriter {
public:
    /// `root` without a trailing slash; it may be missing.
    explicit BookmarkWriter(const QString &root);
    ~BookmarkWriter();

    /// One step; false when all is gathered.
    bool advance();

    /// The whole file, once all is gathered.
    const QByteArray &bytes() const { return m_bytes; }
    /// How much of all is gathered, 0 to 100, as far as can be told: how much is in folders that
    /// are still to be opened is not known.
    int percent() const;
    int links() const { return m_links; }
    int folders() const { return m_folders; }
    /// Shortcuts without an address, which are left out.
    int skipped() const { return m_skipped; }

private:
    struct Link {
        /// What it is placed by.
        QString order;
        QString title;
        QString url;
        qint64 date = 0;
    };
    struct Level {
        QString path;
        FolderListing listing;
        bool listed = false;
        qsizetype nextMatch = 0;
        bool written = false;
        qsizetype nextFolder = 0;
        std::vector<Link> links;
    };

    void enter(const QString &path);
    void readLink(Level &level);
    void writeLinks(Level &level);
    void enterNext(Level &level);
    void leave();
    bool isInside(const QString &canonical) const;
    QByteArray indent() const;

    const QRegularExpression m_pattern;
    std::vector<Level> m_levels;
    QByteArray m_bytes;
    int m_links = 0;
    int m_folders = 0;
    int m_skipped = 0;
};
