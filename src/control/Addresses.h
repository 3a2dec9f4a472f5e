#pragma once

#include <QString>
#include <QUrl>

/// What navigation wants to know of addresses.
namespace Addresses {

/// As the engine and the files have it, byte-exact.
inline QString encoded(const QUrl &url)
{
    return QString::fromLatin1(url.toEncoded());
}

inline bool isBlank(const QUrl &url)
{
    return url.scheme() == QLatin1String("about");
}

inline bool isWeb(const QUrl &url)
{
    return url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
}

/// A script can give its page no other address than one of the same site.
inline bool isSameSite(const QUrl &one, const QUrl &other)
{
    return one.scheme() == other.scheme() && one.authority() == other.authority();
}

inline bool isSamePage(const QUrl &one, const QUrl &other)
{
    return one.adjusted(QUrl::RemoveFragment) == other.adjusted(QUrl::RemoveFragment);
}

}
