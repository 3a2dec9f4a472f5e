#pragma once

#include <QStringList>

/// Menu items whose commands do not exist yet. They stand in the menu, disabled. A command that
/// comes is taken off this list; nothing is ever added.
QStringList notBuiltYet();
