#include "PermissionRules.h"

#include "AskingSite.h"

#include <QHostAddress>

using namespace Qt::StringLiterals;

namespace {
bool isTrustworthy(const QUrl &asker)
{
    if (asker.scheme() != "http"_L1)
        return asker.scheme() == "https"_L1 || asker.scheme() == "file"_L1;
    const QString host = asker.host();
    return host == "localhost"_L1 || host.endsWith(".localhost"_L1)
        || QHostAddress(host).isLoopback();
}
}

namespace PermissionRules {

bool isBarred(const QUrl &asker, const AskingSite &site, const QList<Permission> &permissions)
{
    if (asker.scheme().isEmpty() || (asker.host().isEmpty() && asker.scheme() != "file"_L1))
        return true;
    if (!permissions.contains(Permission::Pointer) && !isTrustworthy(asker))
        return true;
    // They come up on the desktop, where nothing says which page they are from but the name.
    return permissions.contains(Permission::Notifications) && !site.page.isEmpty();
}

bool isCapture(Permission permission)
{
    return permission == Permission::Camera || permission == Permission::Microphone
        || permission == Permission::Screen;
}

bool isOneAnswer(const AskingSite &site, const QList<Permission> &permissions)
{
    return site.canBeKept()
        && (permissions == QList{Permission::Place}
            || permissions == QList{Permission::Notifications});
}

QString keyOf(const QUrl &asker, Permission permission)
{
    return asker.toString(QUrl::FullyEncoded) + u' ' + QString::number(int(permission));
}

QString kindOf(const QUrl &asker, const QList<Permission> &permissions)
{
    QString kind = u"permission "_s + asker.toString(QUrl::FullyEncoded);
    for (const Permission permission : permissions)
        kind += u' ' + QString::number(int(permission));
    return kind;
}

}
