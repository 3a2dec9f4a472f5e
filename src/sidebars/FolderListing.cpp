#include "FolderListing.h"
#include "StripNulls.h"

#include <QDirIterator>
#include <QFileInfo>

#include <algorithm>

namespace {
// So few that a caller with an eye on the clock may look at it after each call.
constexpr int entriesAtOnce = 100;

void putInOrder(QList<FolderListing::Entry> &entries)
{
    std::sort(entries.begin(), entries.end(),
              [](const FolderListing::Entry &a, const FolderListing::Entry &b) {
                  return a.order != b.order ? a.order < b.order : a.name < b.name;
              });
}
}

QRegularExpression fileNamePattern(const QString &pattern)
{
    // Brackets are common in file names and no wildcards there.
    QString text = QRegularExpression::escape(pattern);
    text.replace(QLatin1StringView("\\*"), QLatin1StringView(".*"));
    text.replace(QLatin1StringView("\\?"), QLatin1StringView("."));
    return QRegularExpression(QRegularExpression::anchoredPattern(text),
                              QRegularExpression::CaseInsensitiveOption
                                  | QRegularExpression::DotMatchesEverythingOption);
}

FolderListing::FolderListing(const QString &path, const QRegularExpression &pattern)
    : m_iterator(std::make_unique<QDirIterator>(
        path, QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot))
    , m_pattern(pattern)
{
}

FolderListing::FolderListing(FolderListing &&) noexcept = default;

FolderListing::~FolderListing() = default;

bool FolderListing::readSome()
{
    for (int read = 0; read < entriesAtOnce; ++read) {
        if (!m_iterator || !m_iterator->hasNext()) {
            m_iterator.reset();
            putInOrder(m_matches);
            putInOrder(m_folders);
            return false;
        }
        m_iterator->next();
        const QString name = StripNulls(m_iterator->fileName());
        const QFileInfo info = m_iterator->fileInfo();
        const bool isFolder = info.isDir();
        const bool matches = m_pattern.match(name).hasMatch();
        if (!isFolder && !matches)
            continue;
        const bool isPlainFile = !isFolder && info.isFile();
        const Entry entry{name, name.toUpper(), isFolder ? 0 : info.size(), info.isSymLink(),
                          isPlainFile};
        if (matches)
            m_matches.append(entry);
        if (isFolder)
            m_folders.append(entry);
    }
    return true;
}
