#pragma once

#include "StageName.h"

#include <QString>

#include <memory>
#include <system_error>

class FolderLock;

/// A hidden folder for what is made beside its place until it is whole. It is locked and goes with
/// the object, with all that is in it. One that a killed program left is nobody's: as it may be
/// anywhere, a note in AppData/Unfinished says where until it is gone.
class StageFolder {
public:
    explicit StageFolder(const QString &parent, StageName::Kind kind = StageName::Kind::Passing);
    ~StageFolder();
    StageFolder(const StageFolder &) = delete;
    StageFolder &operator=(const StageFolder &) = delete;

    /// One that an earlier object kept; null where it is gone or has an owner.
    static std::unique_ptr<StageFolder> take(const QString &path);

    /// False where nothing can be written.
    bool isValid() const { return m_lock != nullptr; }
    /// Why there is none.
    std::error_code error() const { return m_error; }
    QString path() const { return m_path; }
    QString filePath(const QString &name) const { return m_path + u'/' + name; }
    /// Removes what is there so far; once more with the object, as a writer may not be through.
    void remove();
    /// It stays after the object, with its note.
    void keep() { m_keeps = true; }
    bool isKept() const { return m_keeps; }
    /// It is still at its path, not removed, and no folder on the way to it moved or renamed.
    bool isThere() const;

    /// Where the notes are, each the path of a folder in UTF-8.
    static QString notes();

private:
    StageFolder(const QString &path, std::unique_ptr<FolderLock> lock);

    void note();

    QString m_path;
    QString m_note;
    std::unique_ptr<FolderLock> m_lock;
    std::error_code m_error;
    bool m_keeps = false;
};
