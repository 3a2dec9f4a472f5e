#pragma once

#include "FolderListing.h"

#include <QList>
#include <QString>
#include <optional>

/// A shortcut of the links bar.
struct FavoriteLink {
    QString caption;
    QString url;
};

/// Writes a shortcut of the links bar, called `title` or else by its address; false where it cannot
/// be written.
bool addFavoriteLink(const QString &url, const QString &title);

/// Reads the shortcuts of one folder file by file, so that a large one can be read in pieces.
class LinksReading {
public:
    enum class Of {
        /// The folder "Links" in the user's Favorites folder.
        Links,
        /// That folder itself, without those in it.
        Favorites
    };

    /// Lists the folder; the files are read later.
    explicit LinksReading(Of folder = Of::Links);

    /// All the shortcut files there are, with an address or without.
    int seen() const { return int(m_files.size()); }
    bool atEnd() const { return m_next >= m_files.size(); }
    /// Reads the next file. Nothing for one without an address.
    std::optional<FavoriteLink> readNext();

private:
    QString m_folder; // with a slash at the end
    QList<FolderListing::Entry> m_files;
    qsizetype m_next = 0;
};
