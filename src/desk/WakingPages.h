#pragma once

#include <QString>
#include <QStringList>

/// The addresses of pages that are loading as they come back, kept in files: one that ends the
/// program stands there at the next start. They outlast the program, not the machine.
namespace WakingPages {
/// To be called before the page loads; costs next to nothing.
void begin(const QString &address);
void end(const QString &address);

/// Those that never ended.
QStringList left();
void forgetAll();
}
