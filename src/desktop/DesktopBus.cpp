#include "DesktopBus.h"

#include <QDBusConnection>
#include <QFileInfo>

using namespace Qt::StringLiterals;

namespace DesktopBus {

bool isThere()
{
    // Without either the library would look for a display's session, or start one for us.
    return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS")
        || QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + u"/bus"_s);
}

QDBusConnection session()
{
    return QDBusConnection::sessionBus();
}

}
