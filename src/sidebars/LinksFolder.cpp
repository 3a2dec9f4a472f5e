#include "LinksFolder.h"
#include "FavoriteFile.h"
#include "InternetShortcut.h"
#include "ShownAddress.h"
#include "ShownText.h"
#include "SpecialFolders.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
/// Both with a slash at the end; empty without a home.
QString favoritesFolder()
{
    const QString favorites = specialFolder(favoritesFolderNumber);
    return favorites.isEmpty() ? QString() : QString(favorites + u'/');
}

QString linksFolder()
{
    const QString favorites = favoritesFolder();
    return favorites.isEmpty() ? QString() : QString(favorites + "Links/"_L1);
}

/// What a link without a title is called: the file that it leads to, or the site.
QString nameOf(const QUrl &url)
{
    const QString file = shownText(url.fileName());
    return file.isEmpty() ? shownSite(url) : file;
}
}

bool addFavoriteLink(const QString &url, const QString &title)
{
    const QString folder = linksFolder();
    if (folder.isEmpty())
        return false;
    QString name = title.isEmpty() ? nameOf(QUrl(url)) : title;
    // The page may have called it so, and a hidden file would be seen nowhere else.
    while (name.startsWith(u'.'))
        name.remove(0, 1);
    return FavoriteFile::create(folder, FavoriteFile::name(name, u"Link"_s), url, name).has_value();
}

LinksReading::LinksReading(Of folder)
    : m_folder(folder == Of::Links ? linksFolder() : favoritesFolder())
{
    if (m_folder.isEmpty())
        return;
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
