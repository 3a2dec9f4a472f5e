#pragma once

class QString;

/// Whether a desktop would run the file at `path` rather than show it: a launcher, a script, a
/// program or what holds one, by its name as well as by what is in it. A file that cannot be read
/// is told by its name.
bool isRunnable(const QString &path);
