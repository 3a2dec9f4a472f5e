#include "AddressCompletion.h"

#include "OwnPages.h"

#include <QDir>
#include <QFileInfo>
#include <QHostAddress>
#include <QRegularExpression>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
/// Line breaks come with pasted addresses that were wrapped.
QString cleaned(const QString &text)
{
    QString result;
    result.reserve(text.size());
    for (const QChar c : text) {
        if (c != u'\r' && c != u'\n' && c != u'\t' && !c.isNull())
            result.append(c);
    }
    return result.trimmed();
}

bool looksLikePath(const QString &text)
{
    return (text.startsWith(u'/') && !text.startsWith("//"_L1)) || text.startsWith("~/"_L1)
        || text.startsWith("./"_L1) || text.startsWith("../"_L1);
}

QUrl localFile(const QString &text)
{
    QString path = text;
    if (path.startsWith("~/"_L1))
        path.replace(0, 1, QDir::homePath());
    const QFileInfo file(path);
    return QUrl::fromLocalFile(QDir::cleanPath(file.absoluteFilePath()));
}

/// The scheme in lower case; empty for "host:port" and other text without one.
QString schemeOf(const QString &text)
{
    static const QRegularExpression form(u"^([a-z][a-z0-9+.-]+):(.*)$"_s,
                                         QRegularExpression::CaseInsensitiveOption
                                             | QRegularExpression::DotMatchesEverythingOption);
    static const QRegularExpression port(u"^\\d{1,5}([/?#].*)?$"_s,
                                         QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return {};
    const QString scheme = match.captured(1).toLower();
    static const QStringList withNumbers{u"tel"_s, u"sms"_s, u"mailto"_s, u"data"_s,
                                         u"javascript"_s};
    if (port.match(match.captured(2)).hasMatch() && !withNumbers.contains(scheme))
        return {};
    return scheme;
}

/// "http:host", "http:/host" and backslashes are understood; no host is no address.
QUrl webAddress(const QString &scheme, const QString &rest)
{
    qsizetype start = 0;
    while (start < rest.size() && (rest.at(start) == u'/' || rest.at(start) == u'\\'))
        ++start;
    const QUrl url(scheme + "://"_L1 + rest.mid(start), QUrl::TolerantMode);
    return url.isValid() && !url.host().isEmpty() ? url : QUrl();
}

QUrl withScheme(const QString &scheme, const QString &text)
{
    const QString rest = text.mid(scheme.size() + 1);
    if (scheme == "javascript"_L1)
        return {};
    if (scheme == "http"_L1 || scheme == "https"_L1)
        return webAddress(scheme, rest);
    if (scheme == "about"_L1 || scheme == ownScheme)
        return QUrl(scheme + u':' + rest.toLower());
    const QUrl url(scheme + u':' + rest, QUrl::TolerantMode);
    return url.isValid() ? url : QUrl();
}
}

QUrl completeAddress(const QString &text)
{
    const QString address = cleaned(text);
    if (address.isEmpty())
        return {};
    if (looksLikePath(address))
        return localFile(address);
    // Without brackets the colons of an IPv6 address would be taken for a scheme or a port.
    QHostAddress host;
    if (address.count(u':') > 1 && host.setAddress(address))
        return QUrl("http://["_L1 + address + "]/"_L1);
    const QString scheme = schemeOf(address);
    if (!scheme.isEmpty())
        return withScheme(scheme, address);
    return webAddress(u"http"_s, address);
}

bool isOpenedHere(const QUrl &address)
{
    static const QStringList schemes{u"http"_s,  u"https"_s, u"file"_s,        u"data"_s,
                                     u"about"_s, u"blob"_s,  u"view-source"_s, u"chrome"_s,
                                     u"qrc"_s,   ownScheme};
    return schemes.contains(address.scheme());
}
