#pragma once

#include <QtGlobal>

/// The processes below `root`, itself included.
qint64 processCount(qint64 root);
/// Proportional set size of the process tree below `root`, in kB: shared pages are counted once.
qint64 treeMemory(qint64 root);
/// Processor time the process tree below `root` has used so far, in milliseconds.
qint64 treeProcessorTime(qint64 root);
