#include "DesktopSession.h"

#include <QDBusMessage>

using namespace Qt::StringLiterals;

QStringList FakeNotifications::GetCapabilities(const QDBusMessage &call)
{
    call.setDelayedReply(isSilent);
    return capabilities;
}

uint FakeNotifications::Notify(const QString &program, uint replaced, const QString &,
                               const QString &title, const QString &body,
                               const QStringList &actions, const QVariantMap &hints, int)
{
    const uint number = replaced > 0 ? replaced : ++m_lastNumber;
    shown.append(
        {program, number, replaced, title, body, actions, hints.contains("image-data"_L1)});
    return number;
}

void FakeFileManager::ShowItems(const QStringList &addresses, const QString &)
{
    shown.append(addresses);
}

void FakeColours::change(uint value)
{
    scheme = value;
    emit SettingChanged(u"org.freedesktop.appearance"_s, u"color-scheme"_s, QDBusVariant(value));
}

QDBusVariant FakeColours::Read(const QString &group, const QString &key, const QDBusMessage &call)
{
    ++asked;
    call.setDelayedReply(isSilent);
    const bool isKnown = group == "org.freedesktop.appearance"_L1 && key == "color-scheme"_L1;
    // Wrapped once more, as this call does.
    return QDBusVariant(QVariant::fromValue(QDBusVariant(isKnown ? scheme : 0U)));
}

DesktopSession::DesktopSession()
    : m_bus(QString())
{
    m_daemon.start(
        u"dbus-daemon"_s,
        {u"--session"_s, u"--nofork"_s, u"--print-address=1"_s, u"--address=unix:tmpdir=/tmp"_s});
    if (!m_daemon.waitForReadyRead())
        return;
    const QString address = QString::fromUtf8(m_daemon.readLine()).trimmed();
    qputenv("DBUS_SESSION_BUS_ADDRESS", address.toUtf8());
    m_bus = QDBusConnection::connectToBus(address, u"the desktop of the test"_s);
    const auto all = QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals;
    m_bus.registerObject(u"/org/freedesktop/Notifications"_s, &notifications, all);
    m_bus.registerObject(u"/org/freedesktop/FileManager1"_s, &files, all);
    m_bus.registerObject(u"/org/freedesktop/portal/desktop"_s, &colours, all);
    m_bus.registerVirtualObject(FakeSecrets::path(), &secrets, QDBusConnection::SubPath);
    m_bus.connect({}, {}, u"com.canonical.Unity.LauncherEntry"_s, u"Update"_s, this,
                  SLOT(noteProgress(QString, QVariantMap)));
}

void DesktopSession::setKeyring(bool on)
{
    if (on)
        m_bus.registerService(FakeSecrets::service());
    else
        m_bus.unregisterService(FakeSecrets::service());
}

void DesktopSession::setColouring(bool on)
{
    const QString name = u"org.freedesktop.portal.Desktop"_s;
    if (on)
        m_bus.registerService(name);
    else
        m_bus.unregisterService(name);
}

DesktopSession::~DesktopSession()
{
    QDBusConnection::disconnectFromBus(m_bus.name());
    m_daemon.kill();
    m_daemon.waitForFinished();
}

void DesktopSession::setNotifying(bool on)
{
    const QString name = u"org.freedesktop.Notifications"_s;
    if (on)
        m_bus.registerService(name);
    else
        m_bus.unregisterService(name);
}

void DesktopSession::setFileManaging(bool on)
{
    const QString name = u"org.freedesktop.FileManager1"_s;
    if (on)
        m_bus.registerService(name);
    else
        m_bus.unregisterService(name);
}

void DesktopSession::noteProgress(const QString &entry, const QVariantMap &properties)
{
    progress.append({entry, properties});
}
