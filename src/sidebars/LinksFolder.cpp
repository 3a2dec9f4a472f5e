#include "LinksFolder.h"
#include "FolderListing.h"
#include "InternetShortcut.h"
#include "modSpecialFolders.h"

using namespace Qt::StringLiterals;

LinksFolder readLinksFolder()
{
    const QString favorites = GetSpecialFolder(favoritesFolderNumber);
    if (favorites.isEmpty())
        return {};
    const QString folder = favorites + "/Links/"_L1;
    FolderListing listing(folder, fileNamePattern(u"*.url"_s));
    while (listing.readSome()) { }
    LinksFolder result;
    for (const FolderListing::Entry &file : listing.matches()) {
        ++result.seen;
        if (!file.isPlainFile)
            continue;
        const QString url = InternetShortcut::urlOfPlainFile(folder + file.name, file.size);
        if (!url.isEmpty())
            result.links.append({InternetShortcut::caption(file.name), url});
    }
    return result;
}
