#pragma once

class QDBusConnection;

/// Where programs of the desktop are spoken to, without waiting for one of them, but for
/// the colours to begin with.
namespace DesktopBus {
/// False where there is no session to speak to: nothing then starts one.
bool isThere();
/// Only while `isThere`; not connected where the session does not answer.
QDBusConnection session();
}
