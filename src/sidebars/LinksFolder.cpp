#include "LinksFolder.h"
#include "InternetShortcut.h"
#include "SpecialFolders.h"

using namespace Qt::StringLiterals;

LinksReading::LinksReading()
{
    const QString favorites = specialFolder(favoritesFolderNumber);
    if (favorites.isEmpty())
        return;
    m_folder = favorites + "/Links/"_L1;
    FolderListing listing(m_folder, fileNamePattern(u"*.url"_s));
    while (listing.readSome()) { }
    m_files = listing.matches();
}

std::optional<FavoriteLink> LinksReading::readNext()
{
    const FolderListing::Entry &file = m_files.at(m_next++);
    if (!file.isPlainFile)
        return {};
    const QString url = InternetShortcut::urlOfPlainFile(m_folder + file.name, file.size);
    if (url.isEmpty())
        return {};
    return FavoriteLink{InternetShortcut::caption(file.name), url};
}
