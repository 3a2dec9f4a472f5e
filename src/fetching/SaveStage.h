#pragma once

#include "StageFolder.h"

#include <QString>

/// The place where the engine writes a page that is being saved: a hidden folder beside the file
/// wanted, so that what was there before stays until the new files are whole. The folder goes with
/// the object. Made and asked by one thread at a time.
class SaveStage {
public:
    explicit SaveStage(const QString &target);
    ~SaveStage();
    SaveStage(const SaveStage &) = delete;
    SaveStage &operator=(const SaveStage &) = delete;

    /// False where nothing can be written.
    bool isValid() const { return m_folder.isValid(); }
    /// Where to write instead of the target. Its name is one whose folder of parts nobody has.
    QString file() const { return m_folder.filePath(m_name); }
    /// Puts the folder of what belongs to the file beside the target, then the file in the target's
    /// place: that one step makes the new page of the old one, whenever this may end. What was
    /// there that no save of this page wrote stays; the parts of the page replaced go. When it
    /// fails, or the disk is too full to trust what was written, the old page is there as before.
    /// Waits for the disk.
    bool commit();
    /// Removes what is there so far; once more with the object, as a writer may not be through.
    void discard() { m_folder.remove(); }

private:
    bool isWhole() const;
    bool listParts() const;
    bool placeParts();
    void takePartsBack();

    QString m_target;
    QString m_name;
    /// Of the target's neighbours.
    QString m_parts;
    bool m_placed = false;
    StageFolder m_folder;
};
