#include "AskingSite.h"

#include <QStringList>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
/// A name of the network has 253 at most.
constexpr qsizetype longest = 300;

/// Empty where there is none.
QString siteOf(const QUrl &url)
{
    const bool isPlain = url.scheme() == "http"_L1;
    if (!url.isValid() || (!isPlain && url.scheme() != "https"_L1) || url.host().isEmpty())
        return {};
    QUrl site;
    site.setScheme(url.scheme());
    site.setHost(url.host());
    if (url.port() != (isPlain ? 80 : 443))
        site.setPort(url.port());
    const QString text = site.toString(QUrl::FullyEncoded).toLower();
    return text.size() <= longest ? text : QString();
}

/// Brackets stand around the numbers of IPv6, and around the names of sections.
QString withoutBrackets(QString site)
{
    return site.replace(u'[', "%5b"_L1).replace(u']', "%5d"_L1);
}

/// Only as `name` writes it: there is one section for each.
QString siteNamed(const QString &word)
{
    QString site = word;
    site.replace("%5b"_L1, "["_L1).replace("%5d"_L1, "]"_L1);
    const QString read = siteOf(QUrl(site, QUrl::StrictMode));
    return withoutBrackets(read) == word ? read : QString();
}
}

AskingSite AskingSite::of(const QUrl &asker, const QUrl &page)
{
    AskingSite result{siteOf(asker), siteOf(page), false};
    result.isPageUnknown = result.page.isEmpty();
    if (result.page == result.asker)
        result.page.clear();
    return result;
}

std::optional<AskingSite> AskingSite::fromName(const QString &name)
{
    const QStringList words = name.left(3 * longest).toLower().split(u' ');
    AskingSite result{siteNamed(words.first()), siteNamed(words.value(1)), false};
    const bool isOne = words.size() == 1;
    const bool isTwo = words.size() == 2 && !result.page.isEmpty() && result.page != result.asker;
    return !result.asker.isEmpty() && (isOne || isTwo) ? std::optional(result) : std::nullopt;
}

QString AskingSite::name() const
{
    return withoutBrackets(page.isEmpty() ? asker : asker + u' ' + page);
}
