#include "DesktopNotice.h"

#include "DesktopBus.h"
#include "Log.h"
#include "ProgramInfo.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

using namespace Qt::StringLiterals;

namespace {

const QString service = u"org.freedesktop.Notifications"_s;
const QString path = u"/org/freedesktop/Notifications"_s;
const QString clicked = u"default"_s;
/// The service's own choice of how long it stays.
constexpr int usualTime = -1;

QDBusMessage callOf(const QString &method)
{
    return QDBusMessage::createMethodCall(service, path, service, method);
}

}

DesktopNotice::DesktopNotice(QObject *parent)
    : QObject(parent)
{
}

void DesktopNotice::show(const QString &title, const QString &text, const QString &action)
{
    if (!DesktopBus::isThere())
        return;
    QDBusConnection bus = DesktopBus::session();
    if (!m_listens)
        m_listens = bus.connect(service, path, service, u"ActionInvoked"_s, this,
                                SLOT(actionInvoked(uint, QString)));
    auto *asked = new QDBusPendingCallWatcher(bus.asyncCall(callOf(u"GetCapabilities"_s)), this);
    connect(asked, &QDBusPendingCallWatcher::finished, this, [this, asked, title, text, action] {
        asked->deleteLater();
        const QDBusPendingReply<QStringList> reply = *asked;
        if (reply.isError()) {
            qCDebug(lcFrame) << "no notifications:" << reply.error().message();
            return;
        }
        const bool isMarkup = reply.value().contains("body-markup"_L1);
        send(title, isMarkup ? text.toHtmlEscaped() : text, action);
    });
}

void DesktopNotice::send(const QString &title, const QString &body, const QString &action)
{
    const QVariantMap hints{{u"desktop-entry"_s, ProgramInfo::desktopEntry()}};
    QDBusMessage call = callOf(u"Notify"_s);
    call << ProgramInfo::title() << m_number << ProgramInfo::desktopEntry() << title << body
         << QStringList{clicked, action} << hints << usualTime;
    auto *sent = new QDBusPendingCallWatcher(DesktopBus::session().asyncCall(call), this);
    connect(sent, &QDBusPendingCallWatcher::finished, this, [this, sent] {
        sent->deleteLater();
        const QDBusPendingReply<uint> reply = *sent;
        if (reply.isError())
            qCWarning(lcFrame) << "notification refused:" << reply.error().message();
        else
            m_number = reply.value();
    });
}

void DesktopNotice::actionInvoked(uint number, const QString &action)
{
    if (number == m_number && action == clicked)
        emit chosen();
}
