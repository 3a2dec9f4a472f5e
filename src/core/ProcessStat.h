#pragma once

#include <QtGlobal>

/// What the system tells of any process in one line, as /proc has it.
namespace ProcessStat {
/// 0: there is no such process.
qint64 parent(qint64 process);
/// Milliseconds that it has had of processors since it began; -1: there is no such process.
qint64 processorTime(qint64 process);
}
