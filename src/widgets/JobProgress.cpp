#include "JobProgress.h"

#include <QProgressDialog>

namespace {
/// Short jobs show no progress; milliseconds.
constexpr int patience = 800;
}

QProgressDialog *openJobProgress(QWidget *owner, const QString &name, const QString &label,
                                 const QString &cancel)
{
    auto *progress = new QProgressDialog(label, cancel, 0, 0, owner);
    progress->setObjectName(name);
    progress->setAttribute(Qt::WA_DeleteOnClose);
    progress->setWindowModality(Qt::NonModal);
    progress->setMinimumDuration(patience);
    progress->setAutoReset(false);
    return progress;
}
