#include "RefusedAddress.h"

#include "OwnPages.h"
#include "PipesAndDevices.h"

#include <QRegularExpression>
#include <QSet>
#include <QUrl>
#include <QWebEngineUrlRequestInfo>

using namespace Qt::StringLiterals;

namespace {
constexpr auto innerFiles = "qrc"_L1;
constexpr auto sourceOf = "view-source"_L1;

/// Pages of the engine's that tell something and do nothing.
bool isHarmlessName(const QString &name)
{
    static const QSet<QString> names{u"accessibility"_s,
                                     u"attribution-internals"_s,
                                     u"blob-internals"_s,
                                     u"conversion-internals"_s,
                                     u"credits"_s,
                                     u"device-log"_s,
                                     u"dino"_s,
                                     u"gpu"_s,
                                     u"histograms"_s,
                                     u"indexeddb-internals"_s,
                                     u"media-internals"_s,
                                     u"net-internals"_s,
                                     u"network-error"_s,
                                     u"network-errors"_s,
                                     u"process-internals"_s,
                                     u"qt"_s,
                                     u"quota-internals"_s,
                                     u"sandbox"_s,
                                     u"serviceworker-internals"_s,
                                     u"tracing"_s,
                                     u"ukm"_s,
                                     u"user-actions"_s,
                                     u"version"_s,
                                     u"webrtc-internals"_s,
                                     u"webrtc-logs"_s};
    return names.contains(name);
}

/// The engine takes "chrome:x", "chrome:///x" and "CHROME://X" for one address.
bool isHarmlessPage(const QString &address)
{
    static const QRegularExpression form(u"^chrome:/*([a-z-]+)(?:[/?#].*)?$"_s,
                                         QRegularExpression::CaseInsensitiveOption
                                             | QRegularExpression::DotMatchesEverythingOption);
    const QRegularExpressionMatch match = form.match(address);
    return match.hasMatch() && isHarmlessName(match.captured(1).toLower());
}
}

bool isRefusedAddress(const QUrl &url)
{
    static const QSet<QString> refused{
        innerFiles,         u"chrome-devtools"_s, u"chrome-error"_s,     u"chrome-extension"_s,
        u"chrome-native"_s, u"chrome-search"_s,   u"chrome-untrusted"_s, u"devtools"_s};
    const QString scheme = url.scheme();
    if (refused.contains(scheme))
        return true;
    const QString text = QString::fromLatin1(url.toEncoded());
    if (scheme == sourceOf) {
        const QString of = QUrl::fromPercentEncoding(text.sliced(scheme.size() + 1).toLatin1());
        return isRefusedAddress(QUrl(of.trimmed()));
    }
    if (scheme == ownScheme)
        return !isOwnPage(url);
    if (scheme == "about"_L1)
        return url.path() != "blank"_L1 && url.path() != "srcdoc"_L1;
    return scheme == "chrome"_L1 && !isHarmlessPage(text);
}

bool isRefusedToPages(const QUrl &url)
{
    return url.scheme() == ownScheme || isRefusedAddress(url);
}

void FilesGuard::interceptRequest(QWebEngineUrlRequestInfo &info)
{
    const QUrl url = info.requestUrl();
    const bool isPart = info.resourceType() != QWebEngineUrlRequestInfo::ResourceTypeMainFrame;
    const bool isKept = url.scheme() == innerFiles || (url.scheme() == ownScheme && isPart)
        || (url.isLocalFile() && isPipeOrDevice(url.toLocalFile()));
    if (isKept)
        info.block(true);
}
