#pragma once

#include <QString>
#include <memory>

/// The entries of one folder, hidden ones too, one after the other in no order: with as few looks
/// at each as the system needs, as tens of thousands are read in a row. Entries whose names are no
/// text are left out. A folder that is missing or cannot be read is an empty one.
class FolderEntries {
public:
    explicit FolderEntries(const QString &path);
    ~FolderEntries();

    /// On to the next entry, the first one too; false when none is left.
    bool next();

    const QString &name() const { return m_name; }
    /// A folder, or a link to one.
    bool isFolder() const { return m_isFolder; }
    bool isLink() const { return m_isLink; }
    /// Neither a folder nor a pipe, a device or a link to nothing.
    bool isPlainFile() const { return m_isPlainFile; }
    /// Bytes, asked of the system anew.
    qint64 size() const;

private:
    struct Folder;

    std::unique_ptr<Folder> m_folder;
    QString m_name;
    bool m_isFolder = false;
    bool m_isLink = false;
    bool m_isPlainFile = false;
};
