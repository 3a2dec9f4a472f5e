#include "DesktopBus.h"

#include <QDBusConnection>
#include <QFileInfo>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {
/// Empty: there is none. The library would look for a display's session then, or start one for us.
QString addressOfBus()
{
    const QString told = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (!told.isEmpty())
        return told;
    const QString usual = qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/bus"_s;
    if (!QFileInfo::exists(usual))
        return {};
    return u"unix:path="_s + QString::fromLatin1(QUrl::toPercentEncoding(usual, "/"));
}
}

namespace DesktopBus {

bool isThere()
{
    return !addressOfBus().isEmpty();
}

/// Not the toolkit's own: that one is tried once, as the program starts, and stays what it was
/// then.
QDBusConnection session()
{
    const QString name = u"Orvane's desktop"_s;
    const QDBusConnection known(name);
    if (known.isConnected())
        return known;
    QDBusConnection::disconnectFromBus(name);
    return QDBusConnection::connectToBus(addressOfBus(), name);
}

}
