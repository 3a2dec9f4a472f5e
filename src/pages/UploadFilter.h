#pragma once

#include "FileDialogRequest.h"

#include <QStringList>

/// The filters of a dialog for a page that takes these kinds of files ("image/*", "text/plain") and
/// endings (".txt"); the last one is for all files. What is neither is left out.
QList<FileDialogRequest::Filter> uploadFilters(const QStringList &types);
