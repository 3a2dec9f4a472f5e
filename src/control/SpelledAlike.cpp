#include "SpelledAlike.h"

#include <QDir>
#include <QUrl>
#include <tuple>

using namespace Qt::StringLiterals;

namespace {
/// Bytes, one to a character: what escapes stand for need not be text.
QString plain(const QString &escaped)
{
    return QString::fromLatin1(QByteArray::fromPercentEncoding(escaped.toLatin1()));
}

QString pathOf(const QUrl &url)
{
    // From the root on, also where there is none.
    return QDir::cleanPath(u'/' + plain(url.path(QUrl::FullyEncoded)));
}

int portOf(const QUrl &url)
{
    if (url.scheme() == "http"_L1)
        return url.port(80);
    return url.scheme() == "https"_L1 ? url.port(443) : url.port();
}

auto partsOf(const QUrl &url)
{
    return std::tuple(url.scheme(), url.userInfo(), url.host(), portOf(url), pathOf(url),
                      plain(url.query(QUrl::FullyEncoded)),
                      plain(url.fragment(QUrl::FullyEncoded)));
}
}

bool areSpelledAlike(const QUrl &one, const QUrl &other)
{
    return one == other || partsOf(one) == partsOf(other);
}
