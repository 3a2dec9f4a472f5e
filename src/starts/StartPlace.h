#pragma once

#include "FolderLock.h"

#include <QString>

#include <memory>

/// The folder in which the starts of one application folder find the program that runs: the user's
/// alone, and one program's while that lives, however it ends. Who has it takes the folder away
/// again as he goes.
class StartPlace {
public:
    /// The folder, made where it is missing: in that of the session, else in that for temporary
    /// files. Empty where no folder can be the user's alone; nobody is found then.
    static QString folder();
    /// The name of the socket in it.
    static QString socketIn(const QString &folder);

    /// Takes the folder for this program; null while another has it, or where there is none.
    static std::unique_ptr<StartPlace> take();
    ~StartPlace();

    QString socket() const { return socketIn(m_folder); }

private:
    explicit StartPlace(const QString &folder);

    QString m_folder;
    FolderLock m_lock;
};
