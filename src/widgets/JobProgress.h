#pragma once

#include <QString>

class QProgressDialog;
class QWidget;

/// A progress window over `owner` that leaves the windows usable, shows itself only when the job
/// takes a while, and tells nothing but `label` until it is given a range. It deletes itself when
/// closed. `name` is its object name.
QProgressDialog *openJobProgress(QWidget *owner, const QString &name, const QString &label,
                                 const QString &cancel);
