#pragma once

#include <QDialog>

/// The about box: what the program is and which versions it is made of.
class AboutDialog : public QDialog {
    Q_OBJECT

public:
    /// Shows the about box over `owner`, the one that is open already if there is one.
    static void showOver(QWidget *owner);

    /// Program, toolkit and engine versions, one to a line, as a bug report needs them.
    static QString versionDetails();

private:
    explicit AboutDialog(QWidget *owner);
};
