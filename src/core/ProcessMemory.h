#pragma once

#include <QtGlobal>

/// The memory of this program and all processes it has started, as /proc has it. Takes a while
/// where there are many.
namespace ProcessMemory {
/// Bytes: of each process its proportional share (PSS) where the system tells that, else, as of the
/// engine's sandboxed ones, what it has for itself alone, which is a little less.
qint64 used();
/// Bytes that the machine could give before it would have to take them from others; 0: not known.
qint64 available();
}
