#include "KnownLogins.h"

namespace {
/// The engine asks once for a realm, and goes on with that; more are requests on their way at once.
constexpr qsizetype mostTold = 1000;
}

std::optional<KnownLogins::Login> KnownLogins::take(const QString &realm, const QString &address)
{
    const auto found = m_logins.find(realm);
    if (found == m_logins.end() || found->told.contains(address))
        return {};
    if (found->told.size() >= mostTold)
        found->told.clear();
    found->told.insert(address);
    return found->login;
}
