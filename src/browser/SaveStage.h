#pragma once

#include <QString>
#include <QTemporaryDir>

/// The place where the engine writes a page that is being saved: a hidden folder beside the file
/// wanted, so that what was there before stays until the new files are whole. The folder goes with
/// the object.
class SaveStage {
public:
    explicit SaveStage(const QString &target);

    /// False where nothing can be written.
    bool isValid() const { return m_folder.isValid(); }
    /// Where to write instead of the target; of the same name.
    QString file() const { return m_folder.filePath(m_name); }
    /// Puts the file, and the folder of what belongs to it, in the place of the old ones. When
    /// that fails, or the disk is too full to trust what was written, the old ones are there as
    /// before.
    bool commit();
    /// Removes what is there so far; once more with the object, as a writer may not be through.
    void discard() { m_folder.remove(); }

private:
    bool isWhole() const;

    QString m_target;
    QString m_name;
    QTemporaryDir m_folder;
};
