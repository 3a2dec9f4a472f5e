#pragma once

#include <QList>
#include <QPointer>
#include <QString>
#include <QWidget>
#include <functional>
#include <optional>

/// What one showing of a file dialog asks of the user.
struct FileDialogRequest {
    /// Several are taken from the dialog itself: an answer names one.
    enum class Kind { Open, OpenSeveral, Save, Folder };

    struct Filter {
        QString description;
        /// Wild-card patterns parted by ";".
        QString patterns;
    };

    Kind kind = Kind::Open;
    QPointer<QWidget> owner;
    QString title;
    QString initDir;
    /// The name offered first, with or without a folder.
    QString fileName;
    QList<Filter> filters;
    /// Counted from 1.
    int filterIndex = 1;
    /// Without a dot; empty leaves names as typed.
    QString defaultExt;
};

struct FileDialogAnswer {
    /// As typed or picked, absolute.
    QString fileName;
    int filterIndex = 1;
};

/// Answers a dialog in the user's place; nothing is a cancel.
using FileDialogAnswerer =
    std::function<std::optional<FileDialogAnswer>(const FileDialogRequest &)>;

/// Puts another answerer in, a null one gives the real dialogs back. Returns the one in force.
FileDialogAnswerer setFileDialogAnswerer(const FileDialogAnswerer &answerer);

/// Asks the answerer in force: the desktop's dialogs, or the one a test put in.
std::optional<FileDialogAnswer> askForFile(const FileDialogRequest &request);

/// `name` with the request's default extension, where it has none of its own. A name that an Open
/// dialog finds as typed stays as typed.
QString completedFileName(const FileDialogRequest &request, const QString &name);
