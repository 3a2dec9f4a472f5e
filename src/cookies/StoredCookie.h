#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QString>

/// A cookie without what it says.
struct StoredCookie {
    QByteArray name;
    /// As the cookie has it: with a leading dot where other hosts of the site get it too.
    QString domain;
    QString path;
    /// Invalid: it ends with the session.
    QDateTime expires;
    bool secure = false;

    bool operator==(const StoredCookie &) const = default;
    /// What makes two cookies the same one; none of the parts holds a line break.
    QByteArray key() const { return domain.toUtf8() + '\n' + path.toUtf8() + '\n' + name; }
};
