#pragma once

#include <QString>

/// `text` as the text of a menu item: no longer than `most` characters, and every "&" for itself.
inline QString menuText(QString text, qsizetype most)
{
    if (text.size() > most && text.at(most).isLowSurrogate())
        --most;
    text.truncate(most);
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}
