#pragma once

#include "FileDialogRequest.h"

class QWidget;

/// The desktop's Open, Save and folder dialogs behind string properties: set title, filter and the
/// like, show the dialog, test its result, then read FileName. One object may serve many dialogs.
class CommonDialog {
public:
    /// The longest file name a dialog hands back is one character shorter than this.
    static constexpr int nMaxFile = 1024;

    CommonDialog();

    /// The chosen name; also the name offered first. A cancelled dialog leaves it as it was, so
    /// the result of showOpen or showSave must be tested first.
    QString fileName() const;
    void setFileName(const QString &name);

    /// Descriptions and patterns in turn, parted by "|"; several patterns by ";".
    QString filter() const;
    void setFilter(const QString &filter);

    /// The chosen name without its folder, once a dialog was confirmed.
    QString fileTitle() const;
    void setFileTitle(const QString &title);

    QString dialogTitle() const;
    void setDialogTitle(const QString &title);

    QString initDir() const;
    void setInitDir(const QString &folder);

    /// What a name without extension gets, kept without dots; "txt" until set, empty for none.
    QString defaultExt() const;
    void setDefaultExt(const QString &extension);

    /// The filter chosen in the last dialog that was confirmed, counted from 1.
    int filterIndex() const;

    /// Asks for an existing file. Not 0 when the user confirmed.
    int showOpen(QWidget *owner, int filterIndex);
    /// Asks for a name to save under, with a question before an existing file is taken.
    int showSave(QWidget *owner, int filterIndex);

    /// The folder the user picked, or nothing.
    QString getFolderName(const QString &title);

private:
    int show(FileDialogRequest::Kind kind, QWidget *owner, int filterIndex);

    // As the platform's record has them: texts end in a NUL of their own, filters are parted by
    // NULs and end in two.
    QString m_file;
    QString m_fileTitle;
    QString m_filter;
    QString m_title;
    QString m_initDir;
    QString m_defaultExt;
    int m_filterIndex = 0;
};
