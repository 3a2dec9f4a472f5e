#pragma once

#include <QDialog>

struct ImportOutcome;

/// The list of what an import left out, with the line of the file and the reason.
class SkippedDialog : public QDialog {
    Q_OBJECT

public:
    SkippedDialog(const ImportOutcome &outcome, QWidget *owner);
};
