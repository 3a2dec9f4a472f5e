#pragma once

#include "BookmarkFile.h"
#include "BookmarkReader.h"

#include <QHash>
#include <QList>
#include <QString>
#include <deque>
#include <memory>
#include <set>
#include <vector>

/// What came of an import.
struct ImportOutcome {
    /// What is new in the Favorites folder.
    int links = 0;
    int folders = 0;
    /// Links that were there already, under the same name in the same folder.
    int known = 0;
    int skipped = 0;
    /// The first ten thousand of those skipped.
    QList<BookmarkProblem> problems;
    /// It ended before the file did: the bookmark file could not be read, or nothing could be
    /// written any more.
    bool failed = false;
};

/// Brings the links and folders of a bookmark file into the Favorites folder, in small steps
/// between which its owner may stop for good. What is there already stays as it is, and each
/// shortcut is there whole or not at all.
class BookmarkImport {
public:
    /// `root` without a trailing slash; it is made when it is missing.
    BookmarkImport(const QString &file, const QString &root);
    ~BookmarkImport();

    /// One step; false when all is in.
    bool advance();
    /// To be called when the import is over, by itself or not: gives folders their dates. What was
    /// written may not be on the disk yet.
    void finish();

    const ImportOutcome &outcome() const { return m_outcome; }
    /// 0 to 100.
    int percent() const;

private:
    /// The shortcuts of one name in one folder.
    struct Name {
        int nextNumber = 1;
        // Mostly one, for which a hash would take over a kilobyte.
        std::set<QString> urls;
    };
    struct Folder {
        QString path;
        qint64 date = 0;
        bool isNew = false;
        QHash<QString, Name> names;
    };
    using FolderPtr = std::shared_ptr<Folder>;

    bool readFile();
    void place(const BookmarkItem &item);
    bool placeLink(const BookmarkItem &item);
    bool write(const QString &path, const BookmarkItem &item, const QString &title);
    void openFolder(const BookmarkItem &item);
    FolderPtr makeFolder(const BookmarkItem &item, const QString &name);
    void endFolder();
    void skip(const BookmarkProblem &problem);
    void notWritten(const BookmarkItem &item);

    BookmarkFile m_file;
    std::unique_ptr<BookmarkReader> m_reader;
    std::deque<BookmarkItem> m_items;
    bool m_allRead = false;
    QHash<QString, FolderPtr> m_folders;
    std::vector<FolderPtr> m_open;
    ImportOutcome m_outcome;
    int m_failuresInARow = 0;
};
