#include "FolderListing.h"
#include "FolderEntries.h"

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

QString upperCased(const QString &name)
{
    QString result(name.size(), Qt::Uninitialized);
    QChar *out = result.data();
    for (const QChar character : name) {
        const char16_t unit = character.unicode();
        if (unit >= 0x80)
            return name.toUpper();
        *out++ = unit >= u'a' && unit <= u'z' ? QChar(char16_t(unit - (u'a' - u'A'))) : character;
    }
    return result;
}

FolderListing::FolderListing(const QString &path, const QRegularExpression &pattern, Sizes sizes)
    : m_entries(std::make_unique<FolderEntries>(path))
    , m_pattern(pattern)
    , m_sizes(sizes)
{
}

FolderListing::FolderListing(FolderListing &&) noexcept = default;

FolderListing::~FolderListing() = default;

bool FolderListing::readSome()
{
    for (int read = 0; read < entriesAtOnce; ++read) {
        if (!m_entries || !m_entries->next()) {
            m_entries.reset();
            putInOrder(m_matches);
            putInOrder(m_folders);
            return false;
        }
        const QString &name = m_entries->name();
        const bool isFolder = m_entries->isFolder();
        const bool matches = m_pattern.match(name).hasMatch();
        if (!isFolder && !matches)
            continue;
        const bool hasSize = !isFolder && m_sizes == Sizes::Asked;
        const Entry entry{name, upperCased(name), hasSize ? m_entries->size() : 0,
                          m_entries->isLink(), m_entries->isPlainFile()};
        if (matches)
            m_matches.append(entry);
        if (isFolder)
            m_folders.append(entry);
    }
    return true;
}
