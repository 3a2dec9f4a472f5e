#include "KnownLogins.h"

namespace {
/// The engine asks once for a realm, and goes on with that; more are requests on their way at once.
constexpr qsizetype mostTold = 1000;
/// Of one address, however often its page is loaded anew: what is wrong is not to be tried for
/// ever.
constexpr qsizetype mostTimes = 10;
}

std::optional<KnownLogins::Login> KnownLogins::take(const QString &realm, const QString &address,
                                                    int navigation)
{
    const auto found = m_logins.find(realm);
    if (found == m_logins.end())
        return {};
    if (found->told.size() >= mostTold)
        found->told.clear();
    QSet<int> &told = found->told[address];
    if (told.contains(navigation) || told.size() >= mostTimes)
        return {};
    told.insert(navigation);
    return found->login;
}
