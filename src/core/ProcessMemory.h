#pragma once

#include <QtGlobal>

/// The memory of this program and all processes it has started, as /proc has it. Takes a while
/// where there are many.
namespace ProcessMemory {
/// Bytes: of each process its proportional share (PSS) where the system tells that, else, as of the
/// engine's sandboxed ones, what it has for itself alone, which is a little less. Finding that out
/// walks all pages of all processes: where they surely take no more than `limit`, a quick figure
/// above what they take, and not above `limit`, is told instead.
qint64 used(qint64 limit = -1);
/// The same of one process; 0: there is no such process.
qint64 of(qint64 process);
/// Bytes that the machine could give before it would have to take them from others; 0: not known.
qint64 available();
}
