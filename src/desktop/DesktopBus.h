#pragma once

class QDBusConnection;

/// Where programs of the desktop are spoken to, without ever waiting for one of them.
namespace DesktopBus {
/// False where there is no session to speak to: nothing then starts one.
bool isThere();
/// Only while `isThere`; not connected where the session does not answer.
QDBusConnection session();
}
