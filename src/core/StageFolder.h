#pragma once

#include <QString>

#include <memory>

class FolderLock;

/// A hidden folder for what is made beside its place until it is whole. It is locked and goes with
/// the object, with all that is in it. One that a killed program left is nobody's: as it may be
/// anywhere, a note in AppData/Unfinished says where until it is gone.
class StageFolder {
public:
    explicit StageFolder(const QString &parent);
    ~StageFolder();
    StageFolder(const StageFolder &) = delete;
    StageFolder &operator=(const StageFolder &) = delete;

    /// False where nothing can be written.
    bool isValid() const { return m_lock != nullptr; }
    QString filePath(const QString &name) const { return m_path + u'/' + name; }
    /// Removes what is there so far; once more with the object, as a writer may not be through.
    void remove();

    /// Where the notes are, each the path of a folder in UTF-8.
    static QString notes();

private:
    void note();

    QString m_path;
    QString m_note;
    std::unique_ptr<FolderLock> m_lock;
};
