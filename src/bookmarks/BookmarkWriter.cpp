#include "BookmarkWriter.h"
#include "BookmarkText.h"
#include "FavoriteFile.h"
#include "InternetShortcut.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {
constexpr int deepestIndent = 32;

// The lines every reader of such files looks for.
constexpr const char *head =
    "<!DOCTYPE NETSCAPE-Bookmark-file-1>\n"
    "<META HTTP-EQUIV=\"Content-Type\" CONTENT=\"text/html; charset=UTF-8\">\n"
    "<TITLE>Bookmarks</TITLE>\n"
    "<H1>Bookmarks</H1>\n"
    "<DL><p>\n";
constexpr const char *foot = "</DL><p>\n";

// The title that the file was made for, as long as its name still is the one made from it.
QString titleOf(const QString &fileName, const InternetShortcut::Contents &contents)
{
    const QString caption = InternetShortcut::caption(fileName);
    const QString kept = BookmarkText::title(contents.title);
    if (!kept.isEmpty()) {
        const QString name = FavoriteFile::name(kept, {});
        if (name.isEmpty() || caption == name || caption.startsWith(name + u" ("_s))
            return kept;
    }
    const QString title = BookmarkText::title(caption);
    return title.isEmpty() ? BookmarkText::titleOf(contents.url) : title;
}
}

BookmarkWriter::BookmarkWriter(const QString &root)
    : m_pattern(fileNamePattern(u"*.url"_s))
    , m_bytes(head)
{
    enter(root);
}

BookmarkWriter::~BookmarkWriter() = default;

void BookmarkWriter::enter(const QString &path)
{
    m_levels.push_back({path + u'/',
                        FolderListing(path, m_pattern, FolderListing::Sizes::NotAsked),
                        false,
                        0,
                        false,
                        0,
                        {}});
}

bool BookmarkWriter::advance()
{
    if (m_levels.empty())
        return false;
    Level &level = m_levels.back();
    if (!level.listed)
        level.listed = !level.listing.readSome();
    else if (level.nextMatch < level.listing.matches().size())
        readLink(level);
    else if (!level.written)
        writeLinks(level);
    else if (level.nextFolder < level.listing.folders().size())
        enterNext(level);
    else
        leave();
    return true;
}

// Of what is in a folder, each link and each folder counts the same.
int BookmarkWriter::percent() const
{
    double share = 0;
    for (auto level = m_levels.crbegin(); level != m_levels.crend(); ++level) {
        const qsizetype all = level->listing.matches().size() + level->listing.folders().size();
        const qsizetype done = level->nextMatch + level->nextFolder;
        const bool hasOpenFolder = level != m_levels.crbegin();
        share = all == 0 ? 0 : (double(done) - (hasOpenFolder ? 1 : 0) + share) / double(all);
    }
    return m_levels.empty() ? 100 : static_cast<int>(100 * share);
}

void BookmarkWriter::readLink(Level &level)
{
    const FolderListing::Entry &entry = level.listing.matches().at(level.nextMatch++);
    const QString &name = entry.name;
    const QString path = level.path + name;
    InternetShortcut::Contents contents = InternetShortcut::contents(path);
    contents.url = BookmarkText::address(contents.url);
    if (contents.url.isEmpty()) {
        m_skipped += QFileInfo(path).isDir() ? 0 : 1;
        return;
    }
    const QString title = titleOf(name, contents);
    const QString shown = title + u".url"_s;
    level.links.push_back(
        {shown == name ? entry.order : upperCased(shown), title, contents.url, contents.date});
}

void BookmarkWriter::writeLinks(Level &level)
{
    const auto key = [](const Link &link) {
        return std::tie(link.order, link.title, link.url, link.date);
    };
    std::sort(level.links.begin(), level.links.end(),
              [&key](const Link &a, const Link &b) { return key(a) < key(b); });
    const QByteArray before = indent() + "<DT><A HREF=\"";
    const Link *last = nullptr;
    for (const Link &link : level.links) {
        // The same twice in one folder is one.
        if (last && last->title == link.title && last->url == link.url)
            continue;
        last = &link;
        m_bytes += before;
        m_bytes += BookmarkText::escaped(link.url);
        m_bytes += "\" ADD_DATE=\"";
        m_bytes += QByteArray::number(link.date);
        m_bytes += "\">";
        m_bytes += BookmarkText::escaped(link.title);
        m_bytes += "</A>\n";
        ++m_links;
    }
    level.links = {};
    level.written = true;
}

void BookmarkWriter::enterNext(Level &level)
{
    const FolderListing::Entry &entry = level.listing.folders().at(level.nextFolder++);
    const QString path = level.path + entry.name;
    const QFileInfo info(path);
    if (entry.isLink && isInside(info.canonicalFilePath()))
        return;
    const QByteArray date = QByteArray::number(info.lastModified().toSecsSinceEpoch());
    // The name that a folder would be given by an import.
    const QString name = FavoriteFile::name(BookmarkText::title(entry.name), u"Folder"_s);
    m_bytes += indent() + "<DT><H3 ADD_DATE=\"" + date + "\" LAST_MODIFIED=\"" + date + "\">"
        + BookmarkText::escaped(name) + "</H3>\n" + indent() + "<DL><p>\n";
    ++m_folders;
    enter(path);
}

void BookmarkWriter::leave()
{
    m_levels.pop_back();
    m_bytes += m_levels.empty() ? QByteArray(foot) : indent() + "</DL><p>\n";
}

bool BookmarkWriter::isInside(const QString &canonical) const
{
    return std::any_of(m_levels.cbegin(), m_levels.cend(), [&](const Level &level) {
        return QFileInfo(level.path).canonicalFilePath() == canonical;
    });
}

QByteArray BookmarkWriter::indent() const
{
    return QByteArray(4 * std::min<qsizetype>(qsizetype(m_levels.size()), deepestIndent), ' ');
}
