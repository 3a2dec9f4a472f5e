#pragma once

#include <QList>
#include <QRegularExpression>
#include <QString>
#include <memory>

class FolderEntries;

/// A pattern with "*" and "?" for whole file names, whatever their letter case.
QRegularExpression fileNamePattern(const QString &pattern);

/// The upper-cased name, by which file names are put in order. Most are plain ASCII, for which the
/// letter tables of all scripts need not be gone through.
QString upperCased(const QString &name);

/// The entries of one folder, hidden ones too, read a few at a time and then in order: by
/// upper-cased name, as another desktop's file system gives them. A folder that is missing or
/// cannot be read is an empty one.
class FolderListing {
public:
    struct Entry {
        QString name;
        /// The upper-cased name.
        QString order;
        /// Bytes; 0 for a folder, and where sizes were not asked for.
        qint64 size = 0;
        bool isLink = false;
        /// Neither a folder nor a pipe, a device or a link to nothing.
        bool isPlainFile = false;
    };

    /// Asking for the sizes costs a look at every file.
    enum class Sizes { Asked, NotAsked };

    FolderListing(const QString &path, const QRegularExpression &pattern,
                  Sizes sizes = Sizes::Asked);
    FolderListing(FolderListing &&) noexcept;
    ~FolderListing();

    /// Reads some more entries; false when none are left, from when on the lists are in order.
    bool readSome();

    /// What matches the pattern, folders included.
    const QList<Entry> &matches() const { return m_matches; }
    /// The folders, and links to folders.
    const QList<Entry> &folders() const { return m_folders; }

private:
    std::unique_ptr<FolderEntries> m_entries;
    QRegularExpression m_pattern;
    Sizes m_sizes;
    QList<Entry> m_matches;
    QList<Entry> m_folders;
};
