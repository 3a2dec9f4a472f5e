#include "WebOrigin.h"

#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
int portOf(const QUrl &url)
{
    constexpr int httpPort = 80;
    constexpr int httpsPort = 443;
    return url.port(url.scheme() == "https"_L1 ? httpsPort : httpPort);
}
}

bool isWeb(const QUrl &url)
{
    return url.scheme() == "http"_L1 || url.scheme() == "https"_L1;
}

bool sameOrigin(const QUrl &one, const QUrl &other)
{
    return isWeb(one) && one.scheme() == other.scheme() && one.host() == other.host()
        && portOf(one) == portOf(other);
}
