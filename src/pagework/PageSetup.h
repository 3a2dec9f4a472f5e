#pragma once

#include <QPageLayout>
#include <functional>

class QWidget;

/// Paper, orientation and margins of printed pages, for every page and as long as the program
/// runs.
namespace PageSetup {
QPageLayout layout();
void setLayout(const QPageLayout &layout);
/// Opens the dialog over `owner`; `changed` is called when it was accepted.
void open(QWidget *owner, const std::function<void()> &changed = {});
}
