#include "ElidedAddress.h"

#include <QFontMetrics>
#include <QRegularExpression>
#include <algorithm>
#include <functional>

using namespace Qt::StringLiterals;

namespace {
constexpr QChar omission(u'…');
/// Nothing that is wider than a screen is measured whole.
constexpr qsizetype longestMeasured = 4096;

bool isNumber(const QString &host)
{
    const QString last = host.section(u':', 0, 0).section(u'.', -1);
    return !last.isEmpty()
        && std::all_of(last.begin(), last.end(), [](QChar c) { return c.isDigit(); });
}

QString cutOnTheLeft(const QString &host, const std::function<bool(const QString &)> &fits)
{
    QStringList labels = host.split(u'.');
    QString shown = host;
    while (!fits(shown) && labels.size() > 1) {
        labels.removeFirst();
        shown = omission + labels.join(u'.');
    }
    return shown;
}
}

QString elidedAddress(const QString &address, const QFontMetrics &metrics, int width,
                      Qt::TextElideMode mode)
{
    static const QRegularExpression form(u"^((?:[a-z-]+:)*[a-z][a-z0-9+.-]*://)([^/?#\\[]+)(.*)$"_s,
                                         QRegularExpression::CaseInsensitiveOption
                                             | QRegularExpression::DotMatchesEverythingOption);
    const QString text = address.left(longestMeasured);
    const QRegularExpressionMatch match = form.match(text);
    if (metrics.horizontalAdvance(text) <= width || !match.hasMatch()
        || isNumber(match.captured(2)))
        return metrics.elidedText(text, mode, width);
    const QString rest = match.captured(3);
    const QString host = cutOnTheLeft(match.captured(2), [&](const QString &shown) {
        const QString least = rest.isEmpty() ? QString() : QString(omission);
        return metrics.horizontalAdvance(match.captured(1) + shown + least) <= width;
    });
    const QString start = match.captured(1) + host;
    const int room = width - metrics.horizontalAdvance(start);
    return room < 0 ? metrics.elidedText(start, Qt::ElideRight, width)
                    : start + metrics.elidedText(rest, mode, room);
}
