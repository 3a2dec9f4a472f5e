#include "ShownAddress.h"

#include "ShownHost.h"
#include "ShownText.h"

#include <QUrl>
#include <algorithm>
#include <unicode/uchar.h>

using namespace Qt::StringLiterals;

namespace {
/// Letters of a host in a question.
constexpr qsizetype longestHost = 60;
constexpr qsizetype leastLabels = 3;

/// Schemes that stand before another address.
constexpr QLatin1StringView wrappers[] = {"view-source"_L1, "blob"_L1, "filesystem"_L1};

bool isWrapper(const QString &scheme)
{
    return std::find(std::begin(wrappers), std::end(wrappers), scheme) != std::end(wrappers);
}

QUrl inner(const QUrl &url)
{
    return QUrl(QString::fromLatin1(url.toEncoded()).mid(url.scheme().size() + 1));
}

bool isReadable(uint character)
{
    const auto c = static_cast<UChar32>(character);
    return character >= 0x80 && u_isalnum(c) && u_charDirection(c) == U_LEFT_TO_RIGHT
        && !isUnseen(character);
}

/// Decodes the escapes of whole characters that can be read.
QString readable(const QByteArray &encoded)
{
    QString result;
    for (qsizetype at = 0; at < encoded.size();) {
        qsizetype end = at;
        while (end + 2 < encoded.size() && encoded.at(end) == '%')
            end += 3;
        if (end == at) {
            result += QLatin1Char(encoded.at(at++));
            continue;
        }
        const QByteArray escapes = encoded.sliced(at, end - at);
        const QByteArray bytes = QByteArray::fromPercentEncoding(escapes);
        const QString text = QString::fromUtf8(bytes);
        const QList<uint> characters = text.toUcs4();
        if (text.toUtf8() == bytes && 3 * bytes.size() == escapes.size()) {
            for (const uint c : characters) {
                const QString one = QString::fromUcs4(reinterpret_cast<const char32_t *>(&c), 1);
                result +=
                    isReadable(c) ? one : QString::fromLatin1(one.toUtf8().toPercentEncoding());
            }
        } else {
            result += QString::fromLatin1(escapes);
        }
        at = end;
    }
    return result;
}

QString bracketed(const QString &host)
{
    return host.contains(u':') ? u'[' + host + u']' : shownHost(host);
}

QString portOf(const QUrl &url)
{
    return url.port() < 0 ? QString() : u':' + QString::number(url.port());
}

/// In the form that addresses have for characters they cannot hold.
QString escapedForAddress(const QString &text)
{
    QString result;
    for (const uint c : text.toUcs4()) {
        const QString one = QString::fromUcs4(reinterpret_cast<const char32_t *>(&c), 1);
        result += isUnseen(c) ? QString::fromLatin1(one.toUtf8().toPercentEncoding()) : one;
    }
    return result;
}

QString cutOnTheLeft(const QString &host)
{
    QStringList labels = host.split(u'.');
    qsizetype length = host.size();
    bool cut = false;
    while (length > longestHost && labels.size() > leastLabels) {
        length -= labels.takeFirst().size() + 1;
        cut = true;
    }
    return cut ? u'…' + labels.join(u'.') : host;
}
}

QString shownAddress(const QUrl &url)
{
    if (url.isEmpty())
        return {};
    if (!url.isValid())
        return escapedText(url.toString());
    if (isWrapper(url.scheme()))
        return url.scheme() + u':' + shownAddress(inner(url));
    if (url.host().isEmpty())
        return readable(url.toEncoded());
    const QByteArray rest = url.toEncoded(QUrl::RemoveScheme | QUrl::RemoveAuthority);
    return url.scheme() + "://"_L1 + bracketed(url.host(QUrl::FullyEncoded)) + portOf(url)
        + readable(rest);
}

QString shownAddress(const QString &text)
{
    const QUrl url(text, QUrl::TolerantMode);
    return url.isValid() && !url.scheme().isEmpty() ? shownAddress(url) : escapedText(text);
}

QString editableAddress(const QString &text)
{
    const QUrl url(text, QUrl::TolerantMode);
    if (isWrapper(url.scheme())) {
        const qsizetype prefix = url.scheme().size() + 1;
        return text.first(prefix) + editableAddress(text.sliced(prefix));
    }
    const QString host = url.host(QUrl::FullyEncoded);
    const bool looksLikeAnother =
        shownHost(host).contains("xn--"_L1) && !text.contains(host, Qt::CaseInsensitive);
    if (url.isValid() && !host.isEmpty() && (!url.userInfo().isEmpty() || looksLikeAnother))
        return QString::fromLatin1(url.toEncoded(QUrl::RemoveUserInfo));
    return escapedForAddress(text);
}

QString shownSite(const QUrl &url)
{
    if (isWrapper(url.scheme()))
        return shownSite(inner(url));
    const QString scheme = url.scheme();
    const QString host = url.host(QUrl::FullyEncoded);
    if (host.isEmpty())
        return scheme.isEmpty() ? QString() : scheme + u':';
    const bool ownPort =
        (scheme == "http"_L1 && url.port() == 80) || (scheme == "https"_L1 && url.port() == 443);
    return scheme + "://"_L1 + cutOnTheLeft(bracketed(host)) + (ownPort ? QString() : portOf(url));
}

QString breakableSite(const QString &site)
{
    constexpr QChar mayBreak(0x200b);
    QString result;
    for (const QChar letter : site) {
        if (letter.isLetterOrNumber())
            result += mayBreak;
        result += letter;
    }
    return result;
}
