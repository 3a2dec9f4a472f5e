#include "LineEnds.h"

namespace LineEnds {

QString toLf(const QString &text)
{
    if (!text.contains(u'\r'))
        return text;
    QString result(text.size(), Qt::Uninitialized);
    QChar *out = result.data();
    const QChar *in = text.constData();
    const QChar *end = in + text.size();
    while (in != end) {
        const QChar c = *in++;
        *out++ = c == u'\r' ? QChar(u'\n') : c;
        if (c == u'\r' && in != end && *in == u'\n')
            ++in;
    }
    result.truncate(out - result.constData());
    return result;
}

QString fromLf(const QString &text, QLatin1String end)
{
    const qsizetype breaks = text.count(u'\n');
    if (breaks == 0)
        return text;
    QString result(text.size() + breaks * (end.size() - 1), Qt::Uninitialized);
    QChar *out = result.data();
    for (const QChar c : text) {
        if (c != u'\n') {
            *out++ = c;
            continue;
        }
        for (const char part : end)
            *out++ = QLatin1Char(part);
    }
    return result;
}

}
