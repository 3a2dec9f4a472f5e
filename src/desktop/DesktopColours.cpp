#include "DesktopColours.h"

#include "DesktopBus.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusReply>
#include <QDBusVariant>
#include <utility>

using namespace Qt::StringLiterals;

namespace {
const QString service = u"org.freedesktop.portal.Desktop"_s;
const QString path = u"/org/freedesktop/portal/desktop"_s;
const QString settings = u"org.freedesktop.portal.Settings"_s;
const QString appearance = u"org.freedesktop.appearance"_s;
const QString scheme = u"color-scheme"_s;

/// Milliseconds.
constexpr int longestWait = 100;

QDBusMessage question()
{
    return QDBusMessage::createMethodCall(service, path, settings, u"Read"_s)
        << appearance << scheme;
}

/// Answers come in more wrappings than one, by the version of the service.
QVariant unpacked(QVariant value)
{
    while (value.metaType() == QMetaType::fromType<QDBusVariant>())
        value = value.value<QDBusVariant>().variant();
    return value;
}
}

DesktopColours::DesktopColours(QObject *parent)
    : QObject(parent)
{
    if (!DesktopBus::isThere())
        return;
    QDBusConnection bus = DesktopBus::session();
    bus.connect(service, path, settings, u"SettingChanged"_s, this,
                SLOT(noteSetting(QString, QString, QDBusVariant)));
    if (!askAtOnce())
        ask();
}

bool DesktopColours::askAtOnce()
{
    const QDBusConnection bus = DesktopBus::session();
    if (!bus.interface() || !bus.interface()->isServiceRegistered(service))
        return false;
    const QDBusReply<QDBusVariant> reply = bus.call(question(), QDBus::Block, longestWait);
    if (reply.isValid())
        take(QVariant::fromValue(reply.value()));
    return reply.isValid();
}

void DesktopColours::ask()
{
    auto *asked = new QDBusPendingCallWatcher(DesktopBus::session().asyncCall(question()), this);
    connect(asked, &QDBusPendingCallWatcher::finished, this, [this, asked] {
        asked->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *asked;
        // What was told meanwhile is newer.
        if (!reply.isError() && !m_isTold)
            take(QVariant::fromValue(reply.value()));
    });
}

void DesktopColours::noteSetting(const QString &group, const QString &key,
                                 const QDBusVariant &value)
{
    if (group != appearance || key != scheme)
        return;
    m_isTold = true;
    take(QVariant::fromValue(value));
}

/// 1: dark, 2: light; whatever else there may be one day is no wish.
void DesktopColours::take(const QVariant &value)
{
    const uint number = unpacked(value).toUInt();
    const Wish wish = number == 1 ? Wish::Dark : number == 2 ? Wish::Light : Wish::None;
    if (std::exchange(m_wish, wish) != wish)
        emit changed();
}
