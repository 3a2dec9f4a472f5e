#include "OwnPages.h"

#include <QRegularExpression>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
/// What follows the scheme, without the place in the page; empty for addresses of other kinds.
QString ownName(const QUrl &address)
{
    return address.scheme() == ownScheme
        ? address.toString(QUrl::RemoveScheme | QUrl::RemoveFragment)
        : QString();
}
}

bool isOwnPage(const QUrl &address)
{
    return isStartPage(address) || !guidePage(address).isEmpty();
}

bool isStartPage(const QUrl &address)
{
    return ownName(address) == "start"_L1;
}

QString guidePage(const QUrl &address)
{
    static const QRegularExpression form(u"^guide(?:/([a-z-]+))?$"_s);
    const QRegularExpressionMatch match = form.match(ownName(address));
    if (!match.hasMatch())
        return {};
    return match.hasCaptured(1) ? match.captured(1) : u"user-guide"_s;
}
