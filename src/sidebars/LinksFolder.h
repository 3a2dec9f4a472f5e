#pragma once

#include <QList>
#include <QString>

/// A shortcut of the links bar.
struct FavoriteLink {
    QString caption;
    QString url;
};

struct LinksFolder {
    /// Those shortcuts that have an address, in the order of their upper-cased file names.
    QList<FavoriteLink> links;
    /// All the shortcut files there are, with an address or without.
    int seen = 0;
};

/// Reads the folder "Links" in the user's Favorites folder.
LinksFolder readLinksFolder();
