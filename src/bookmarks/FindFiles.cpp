#include "FindFiles.h"

#include <QFileInfo>

#include <algorithm>
#include <limits>

namespace {
qint64 sizeInTwoParts(qint64 bytes)
{
    const qint64 high = bytes >> 32;
    const qint64 low = bytes & 0xffffffff;
    return high * -1 + low;
}
}

FolderWalk::FolderWalk(QString &path, const QString &pattern, qint16 &fileCount, qint16 &dirCount,
                       const Report &report)
    : m_pattern(fileNamePattern(pattern))
    , m_fileCount(fileCount)
    , m_dirCount(dirCount)
    , m_report(report)
{
    if (!path.endsWith(u'/'))
        path += u'/';
    enter(path, QFileInfo(path).canonicalFilePath());
}

void FolderWalk::enter(const QString &path, const QString &canonical)
{
    m_levels.push_back({path, canonical, FolderListing(path, m_pattern)});
}

bool FolderWalk::advance()
{
    if (m_levels.empty() || m_overflowed)
        return false;
    Level &level = m_levels.back();
    if (!level.listed)
        list(level);
    else if (level.nextMatch < level.listing.matches().size())
        reportMatch(level);
    else if (level.nextFolder < level.listing.folders().size())
        reportFolder(level);
    else
        m_levels.pop_back();
    return !m_levels.empty() && !m_overflowed;
}

void FolderWalk::list(Level &level)
{
    if (level.listing.readSome())
        return;
    level.listed = true;
    count(m_dirCount, level.listing.folders().size());
}

void FolderWalk::reportMatch(Level &level)
{
    const FolderListing::Entry &entry = level.listing.matches().at(level.nextMatch++);
    m_size += sizeInTwoParts(entry.size);
    if (count(m_fileCount, 1))
        m_report(level.path, entry, true);
}

void FolderWalk::reportFolder(Level &level)
{
    const FolderListing::Entry entry = level.listing.folders().at(level.nextFolder++);
    const QString path = level.path + entry.name + u'/';
    const QString canonical =
        entry.isLink ? QFileInfo(path).canonicalFilePath() : level.canonical + u'/' + entry.name;
    m_report(level.path, entry, false);
    const bool inside = std::any_of(m_levels.cbegin(), m_levels.cend(), [&](const Level &outer) {
        return outer.canonical == canonical;
    });
    if (!inside)
        enter(path, canonical);
}

bool FolderWalk::count(qint16 &counter, qsizetype more)
{
    const qsizetype room = std::numeric_limits<qint16>::max() - counter;
    m_overflowed = more > room;
    counter = static_cast<qint16>(counter + std::min(more, room));
    return !m_overflowed;
}
