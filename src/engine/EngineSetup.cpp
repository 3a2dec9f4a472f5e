#include "EngineSetup.h"

#include "CookiePolicy.h"
#include "DesktopLanguages.h"
#include "EngineOptions.h"
#include "EngineVersion.h"
#include "Spelling.h"

#include <QNetworkProxy>
#include <QStringList>
#if ORVANE_HAS_CLIENT_HINTS
#include <QWebEngineClientHints>
#endif
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <algorithm>

using namespace Qt::StringLiterals;

namespace {
constexpr int bytesPerMegabyte = 1024 * 1024;

void setFont(QWebEngineSettings &settings, QWebEngineSettings::FontFamily which,
             const QString &family)
{
    if (family.isEmpty())
        settings.resetFontFamily(which);
    else
        settings.setFontFamily(which, family);
}

void useSettings(QWebEngineSettings &settings, const EngineOptions &options)
{
    settings.setAttribute(QWebEngineSettings::JavascriptEnabled, options.scripts);
    settings.setAttribute(QWebEngineSettings::AutoLoadImages, options.images);
    settings.setAttribute(QWebEngineSettings::PdfViewerEnabled, options.pdfInPage);
    setFont(settings, QWebEngineSettings::StandardFont, options.standardFont);
    setFont(settings, QWebEngineSettings::SerifFont, options.serifFont);
    setFont(settings, QWebEngineSettings::SansSerifFont, options.sansSerifFont);
    setFont(settings, QWebEngineSettings::FixedFont, options.fixedFont);
    settings.setFontSize(QWebEngineSettings::DefaultFontSize, options.fontSize);
    settings.setFontSize(QWebEngineSettings::DefaultFixedFontSize, options.fixedFontSize);
    settings.setFontSize(QWebEngineSettings::MinimumFontSize, options.minimumFontSize);
}

/// The engine follows the application's proxy.
void useProxy(const EngineOptions &options)
{
    const auto port = quint16(options.proxyPort);
    switch (options.proxy) {
    case EngineOptions::Proxy::System:
        QNetworkProxyFactory::setUseSystemConfiguration(true);
        break;
    case EngineOptions::Proxy::None:
        QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
        break;
    case EngineOptions::Proxy::Http:
        QNetworkProxy::setApplicationProxy({QNetworkProxy::HttpProxy, options.proxyHost, port});
        break;
    case EngineOptions::Proxy::Socks5:
        QNetworkProxy::setApplicationProxy({QNetworkProxy::Socks5Proxy, options.proxyHost, port});
        break;
    }
}

/// The engine would go on naming itself beside the name that the user chose.
void useUserAgent(QWebEngineProfile &profile, const QString &userAgent)
{
    profile.setHttpUserAgent(userAgent);
#if ORVANE_HAS_CLIENT_HINTS
    profile.clientHints()->setAllClientHintsEnabled(false);
#endif
}

/// The header's value: each language a tenth less wanted than the one before.
QString acceptLanguage(const QString &languages)
{
    QStringList result;
    int tenths = 10;
    for (const QString &language : languages.split(u',')) {
        const QString tag = language.trimmed();
        result.append(tenths == 10 ? tag : tag + ";q=0."_L1 + QString::number(tenths));
        tenths = std::max(tenths - 1, 1);
    }
    return result.join(u',');
}
}

namespace EngineSetup {

void prepare(const EngineOptions &options)
{
    if (options.proxy != EngineOptions::Proxy::System)
        useProxy(options);
}

void start(QWebEngineProfile *profile, const EngineOptions &options)
{
    CookiePolicy::instance().setRefusesThirdParty(options.refuseThirdPartyCookies);
    profile->setHttpAcceptLanguage(
        acceptLanguage(options.languages.isEmpty() ? DesktopLanguages::list() : options.languages));
    Spelling::use(profile, options);
    if (options == EngineOptions())
        return;
    useSettings(*profile->settings(), options);
    if (!options.userAgent.isEmpty())
        useUserAgent(*profile, options.userAgent);
    if (options.cacheLimit > 0)
        profile->setHttpCacheMaximumSize(options.cacheLimit * bytesPerMegabyte);
}

void change(QWebEngineProfile *profile, const EngineOptions &options)
{
    CookiePolicy::instance().setRefusesThirdParty(options.refuseThirdPartyCookies);
    useSettings(*profile->settings(), options);
    Spelling::use(profile, options);
    useProxy(options);
}

}
