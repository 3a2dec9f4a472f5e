#pragma once

#include "FileDialogRequest.h"

#include <QFileDialog>

/// The desktop's own file dialog, kept open until what was typed may be taken: a folder that is
/// there, for Open a file that is there.
class DesktopFileDialog : public QFileDialog {
    Q_OBJECT

public:
    explicit DesktopFileDialog(const FileDialogRequest &request);

    /// Shows a dialog and waits for the user; nothing when cancelled.
    static std::optional<FileDialogAnswer> ask(const FileDialogRequest &request);

    void accept() override;

private:
    void applyFilters();
    void applyStart();
    QString typedPath() const;
    void setTypedName(const QString &name);

    FileDialogRequest m_request;
    QStringList m_nameFilters;
};
