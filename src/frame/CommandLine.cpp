#include "CommandLine.h"

QString unquoted(const QString &commandLine)
{
    QString text = commandLine;
    if (text.startsWith(u'"'))
        text.remove(0, 1);
    if (text.endsWith(u'"'))
        text.chop(1);
    return text;
}
