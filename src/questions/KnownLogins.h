#pragma once

#include <QHash>
#include <QSet>
#include <QString>
#include <optional>

/// What the user entered for servers and proxies, by who asks and for which realm.
class KnownLogins {
public:
    struct Login {
        QString user;
        QString password;
    };

    /// What `address` is to be told. Nothing where nothing is known, or where it was told once and
    /// asks again: then it was wrong. `navigation` numbers the loads of pages, and is 0 for what is
    /// no page: a load that another one ended before the answer had gone out asks once more.
    std::optional<Login> take(const QString &realm, const QString &address, int navigation = 0);
    bool has(const QString &realm, const Login &login) const
    {
        const Login known = m_logins.value(realm).login;
        return m_logins.contains(realm) && known.user == login.user
            && known.password == login.password;
    }
    /// Whether anybody was told: before, it cannot have turned out to be right.
    bool wasTold(const QString &realm) const { return !m_logins.value(realm).told.isEmpty(); }
    /// The user name last entered; empty: none.
    QString user(const QString &realm) const { return m_logins.value(realm).login.user; }
    void put(const QString &realm, const Login &login) { m_logins.insert(realm, {login, {}}); }
    /// Removes what was wrong.
    void remove(const QString &realm) { m_logins.remove(realm); }

private:
    struct Known {
        Login login;
        /// The navigations in which each address was told.
        QHash<QString, QSet<int>> told;
    };

    QHash<QString, Known> m_logins;
};
