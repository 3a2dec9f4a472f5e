#include "DesktopNotice.h"

#include "DesktopBus.h"
#include "Log.h"
#include "ProgramInfo.h"

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QPointer>
#include <utility>

using namespace Qt::StringLiterals;

/// As the service takes pictures: RGBA, a byte each.
struct NoticePicture {
    QImage image;
};

static QDBusArgument &operator<<(QDBusArgument &argument, const NoticePicture &picture)
{
    const QImage &image = picture.image;
    constexpr int bitsPerSample = 8;
    constexpr int channels = 4;
    argument.beginStructure();
    argument << image.width() << image.height() << int(image.bytesPerLine()) << true
             << bitsPerSample << channels
             << QByteArray(reinterpret_cast<const char *>(image.constBits()), image.sizeInBytes());
    argument.endStructure();
    return argument;
}

/// Pictures are only ever sent.
static const QDBusArgument &operator>>(const QDBusArgument &argument, NoticePicture &)
{
    return argument;
}

Q_DECLARE_METATYPE(NoticePicture)

namespace {

const QString service = u"org.freedesktop.Notifications"_s;
const QString path = u"/org/freedesktop/Notifications"_s;
const QString clicked = u"default"_s;
/// The service's own choice of how long it stays.
constexpr int usualTime = -1;
/// Pixels.
constexpr int largestPicture = 96;

QDBusMessage callOf(const QString &method)
{
    return QDBusMessage::createMethodCall(service, path, service, method);
}

void closeNumber(uint number)
{
    DesktopBus::session().send(callOf(u"CloseNotification"_s) << number);
}

QVariant pictureHint(const QImage &picture)
{
    static const int type = qDBusRegisterMetaType<NoticePicture>().id();
    Q_UNUSED(type)
    const QSize size = picture.size().boundedTo({largestPicture, largestPicture});
    const QImage small = picture.scaled(size, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                             .convertToFormat(QImage::Format_RGBA8888);
    return QVariant::fromValue(NoticePicture{small});
}

}

DesktopNotice::DesktopNotice(QObject *parent)
    : QObject(parent)
{
}

DesktopNotice::~DesktopNotice() = default;

void DesktopNotice::listen()
{
    if (m_listens)
        return;
    QDBusConnection bus = DesktopBus::session();
    m_listens = bus.connect(service, path, service, u"ActionInvoked"_s, this,
                            SLOT(actionInvoked(uint, QString)))
        && bus.connect(service, path, service, u"NotificationClosed"_s, this,
                       SLOT(notificationClosed(uint)));
}

void DesktopNotice::show(const QString &title, const QString &text, const QString &action,
                         const QImage &picture)
{
    m_isUnwanted = false;
    if (!DesktopBus::isThere()) {
        QMetaObject::invokeMethod(this, &DesktopNotice::gone, Qt::QueuedConnection);
        return;
    }
    listen();
    auto *asked = new QDBusPendingCallWatcher(
        DesktopBus::session().asyncCall(callOf(u"GetCapabilities"_s)), this);
    connect(asked, &QDBusPendingCallWatcher::finished, this,
            [this, asked, title, text, action, picture] {
                asked->deleteLater();
                const QDBusPendingReply<QStringList> reply = *asked;
                if (reply.isError()) {
                    qCDebug(lcFrame) << "no notifications:" << reply.error().message();
                    emit gone();
                    return;
                }
                const bool isMarkup = reply.value().contains("body-markup"_L1);
                send(title, isMarkup ? text.toHtmlEscaped() : text, action, picture);
            });
}

void DesktopNotice::send(const QString &title, const QString &body, const QString &action,
                         const QImage &picture)
{
    if (m_isUnwanted)
        return;
    QVariantMap hints{{u"desktop-entry"_s, ProgramInfo::desktopEntry()}};
    if (!picture.isNull())
        hints.insert(u"image-data"_s, pictureHint(picture));
    QDBusMessage call = callOf(u"Notify"_s);
    call << ProgramInfo::title() << m_number << ProgramInfo::desktopEntry() << title << body
         << QStringList{clicked, action} << hints << usualTime;
    // Outlives this: what comes up after nobody wants it any more is to go again.
    auto *sent = new QDBusPendingCallWatcher(DesktopBus::session().asyncCall(call));
    connect(sent, &QDBusPendingCallWatcher::finished, sent, [sent, self = QPointer(this)] {
        sent->deleteLater();
        const QDBusPendingReply<uint> reply = *sent;
        if (reply.isError())
            qCWarning(lcFrame) << "notification refused:" << reply.error().message();
        if (self)
            self->noteAnswer(reply.isError() ? 0 : reply.value());
        else if (!reply.isError())
            closeNumber(reply.value());
    });
}

/// 0: it was refused.
void DesktopNotice::noteAnswer(uint number)
{
    m_number = number;
    if (m_isUnwanted)
        close();
    else if (number == 0)
        emit gone();
}

void DesktopNotice::close()
{
    m_isUnwanted = true;
    const uint number = std::exchange(m_number, 0);
    if (number > 0)
        closeNumber(number);
}

void DesktopNotice::notificationClosed(uint number)
{
    if (number != m_number || number == 0)
        return;
    m_number = 0;
    emit gone();
}

void DesktopNotice::actionInvoked(uint number, const QString &action)
{
    if (number == m_number && action == clicked)
        emit chosen();
}
