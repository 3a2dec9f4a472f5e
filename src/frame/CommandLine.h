#pragma once

#include <QString>

/// The command line without double quotes at its ends. The two ends are looked at independently:
/// a lone quote at either goes too.
QString unquoted(const QString &commandLine);
