#pragma once

class QString;

/// Whether a path leads to what is there and neither file nor folder. Who asks waits for the disk a
/// second at most; of one that does not answer by then, as a network's whose server has
/// gone, this says no, and of the others too while several questions are open: whoever opens the
/// file is left to wait for it.
bool isPipeOrDevice(const QString &path);
