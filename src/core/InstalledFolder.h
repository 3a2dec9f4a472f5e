#pragma once

#include <QString>

/// Where the application folder is, and what ships with the program.
struct ProgramFolders {
    /// The application folder: AppData and Profiles are in it.
    QString application;
    /// What holds the AppData that ships, where that is another folder; else empty.
    QString shipped;

    bool operator==(const ProgramFolders &) const = default;
};

/// The one rule of where the user's files are. A program whose own folder has AppData in it, and
/// may be written to, is a movable one and keeps all there. Else the program was installed for all
/// users of the machine, or is on a disk that nobody may write to: each of them has an application
/// folder of his own among his settings, to which what ships is brought.
namespace InstalledFolder {
/// For an executable in the folder `program`. Where nothing ships, that folder stays it all.
ProgramFolders choose(const QString &program);

/// Makes the application folder, for its user alone, and brings what ships and is new; false where
/// that cannot be. What the user has changed or removed is never touched; a file that he left as it
/// came is replaced by what a later program ships in its place. Costs some milliseconds.
bool prepare(const ProgramFolders &folders);
}
