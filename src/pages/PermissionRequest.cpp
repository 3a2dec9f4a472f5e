#include "PermissionRequest.h"

#include "EngineVersion.h"
#include "SharedAnswers.h"

#include <QMetaObject>
#include <QPointer>
#include <QWebEnginePage>
#if ORVANE_HAS_PERMISSION_OBJECTS
#include <QWebEnginePermission>
#endif
#if ORVANE_HAS_SCREEN_CHOICE
#include "ScreenChoice.h"

#include <QAbstractListModel>
#include <QWebEngineDesktopMediaRequest>
#include <QWebEngineHistory>
#endif
#include <utility>

PermissionRequest::PermissionRequest(const QUrl &asker, const QList<Permission> &permissions,
                                     const Settle &settle)
    : m_asker(asker)
    , m_permissions(permissions)
    , m_settle(settle)
{
}

PermissionRequest::~PermissionRequest()
{
    settle(false);
}

void PermissionRequest::settle(bool isAllowed)
{
    if (const Settle settle = std::exchange(m_settle, {}))
        settle(isAllowed);
}

void PermissionRequest::withdraw() const
{
    if (m_withdraw)
        m_withdraw();
}

void PermissionRequest::lose()
{
    m_settle = {};
    if (m_lost)
        m_lost();
}

namespace {
/// Inside its signal the engine stands still.
void handOver(QObject *receiver, const PermissionRequests::Handler &handler,
              const std::shared_ptr<PermissionRequest> &request)
{
    if (!request->permissions().isEmpty())
        QMetaObject::invokeMethod(
            receiver, [handler, request] { handler(request); }, Qt::QueuedConnection);
}

#if ORVANE_HAS_SCREEN_CHOICE
/// The engine does not tell whose script in the page wants it.
QUrl siteOf(const QWebEnginePage &page)
{
    QUrl site = page.history()->currentItem().url().adjusted(
        QUrl::RemoveQuery | QUrl::RemoveFragment | QUrl::RemoveUserInfo);
    // As the engine writes it, which asks for the screen once more when something is chosen.
    site.setPath(QStringLiteral("/"));
    return site;
}

std::shared_ptr<PermissionRequest> requestFor(QWebEnginePage &page,
                                              const QWebEngineDesktopMediaRequest &media)
{
    const auto choice = std::make_shared<QPointer<ScreenChoice>>();
    // The engine answers into the page, which must be there.
    const auto settle = [page = QPointer(&page), media, choice](bool isAllowed) {
        if (!page)
            return;
        const QModelIndex index = isAllowed && *choice ? (*choice)->chosen() : QModelIndex();
        if (!index.isValid())
            media.cancel();
        else if ((*choice)->isScreen())
            media.selectScreen(index);
        else
            media.selectWindow(index);
    };
    auto request = std::make_shared<PermissionRequest>(
        siteOf(page), QList<Permission>{Permission::Screen}, settle);
    request->setFields([media, choice](QWidget *parent) {
        *choice = new ScreenChoice(media.screensModel(), media.windowsModel(), parent);
        return choice->data();
    });
    return request;
}
#endif

/// The engine has one answer for it and for others of its site, which `give` hands over.
std::shared_ptr<PermissionRequest> sharedRequest(QWebEnginePage &page, const QUrl &asker,
                                                 const QList<Permission> &permissions,
                                                 const SharedAnswers::Give &give)
{
    const int number = SharedAnswers::nextNumber();
    auto request = std::make_shared<PermissionRequest>(
        asker, permissions, [number](bool isAllowed) { SharedAnswers::answer(number, isAllowed); });
    SharedAnswers::add(number, page, request, give);
    return request;
}

#if ORVANE_HAS_PERMISSION_OBJECTS
using Type = QWebEnginePermission::PermissionType;

QList<Permission> permissionsOf(Type type)
{
    switch (type) {
    case Type::Geolocation:
        return {Permission::Place};
    case Type::Notifications:
        return {Permission::Notifications};
    case Type::MediaVideoCapture:
        return {Permission::Camera};
    case Type::MediaAudioCapture:
        return {Permission::Microphone};
    case Type::MediaAudioVideoCapture:
        return {Permission::Camera, Permission::Microphone};
    case Type::DesktopVideoCapture:
    case Type::DesktopAudioVideoCapture:
        return {Permission::Screen};
    case Type::ClipboardReadWrite:
        return {Permission::Clipboard};
    case Type::LocalFontsAccess:
        return {Permission::Fonts};
    case Type::MouseLock:
        return {Permission::Pointer};
    default:
        return {};
    }
}
#else
using Feature = QWebEnginePage::Feature;

QList<Permission> permissionsOf(Feature feature)
{
    switch (feature) {
    case QWebEnginePage::Geolocation:
        return {Permission::Place};
    case QWebEnginePage::Notifications:
        return {Permission::Notifications};
    case QWebEnginePage::MediaVideoCapture:
        return {Permission::Camera};
    case QWebEnginePage::MediaAudioCapture:
        return {Permission::Microphone};
    case QWebEnginePage::MediaAudioVideoCapture:
        return {Permission::Camera, Permission::Microphone};
    case QWebEnginePage::DesktopVideoCapture:
    case QWebEnginePage::DesktopAudioVideoCapture:
        return {Permission::Screen};
    case QWebEnginePage::MouseLock:
        return {Permission::Pointer};
    default:
        return {};
    }
}

bool isOfTheOrigin(Feature feature)
{
    return feature == QWebEnginePage::Geolocation || feature == QWebEnginePage::Notifications;
}

/// An answer about the place or notifications stands in the engine for the origin, in whatever page
/// it asks next, until the program ends. The former is taken back at once: each further request is
/// told again. Notifications are looked up when one is shown, so a yes stays while its page does.
void answer(QWebEnginePage &page, const QUrl &asker, Feature feature, bool isAllowed)
{
    page.setFeaturePermission(asker, feature,
                              isAllowed ? QWebEnginePage::PermissionGrantedByUser
                                        : QWebEnginePage::PermissionDeniedByUser);
    if (feature == QWebEnginePage::Geolocation
        || (feature == QWebEnginePage::Notifications && !isAllowed))
        page.setFeaturePermission(asker, feature, QWebEnginePage::PermissionUnknown);
}
#endif
}

namespace PermissionRequests {

#if ORVANE_HAS_PERMISSION_OBJECTS
void watch(QWebEnginePage &page, QObject *receiver, const Handler &handler)
{
    QObject::connect(&page, &QWebEnginePage::permissionRequested, receiver,
                     [&page, receiver, handler](const QWebEnginePermission &permission) {
                         const auto give = [permission](bool isAllowed) {
                             if (isAllowed)
                                 permission.grant();
                             else
                                 permission.deny();
                         };
                         const auto request =
                             sharedRequest(page, permission.origin(),
                                           permissionsOf(permission.permissionType()), give);
                         request->setWithdraw([permission] { permission.reset(); });
                         handOver(receiver, handler, request);
                     });
#if ORVANE_HAS_SCREEN_CHOICE
    QObject::connect(&page, &QWebEnginePage::desktopMediaRequested, receiver,
                     [&page, receiver, handler](const QWebEngineDesktopMediaRequest &media) {
                         handOver(receiver, handler, requestFor(page, media));
                     });
#endif
}

/// The engine holds an answer for the frame that asked, which the next page of the site may get;
/// each request takes its own back.
void allowNotifications(QWebEnginePage &, const QUrl &) { }

void withdraw(QWebEnginePage &, const QUrl &, Permission) { }
#else
void watch(QWebEnginePage &page, QObject *receiver, const Handler &handler)
{
    QObject::connect(
        &page, &QWebEnginePage::featurePermissionRequested, receiver,
        [&page, receiver, handler](const QUrl &asker, Feature feature) {
            const auto give = [page = QPointer(&page), asker, feature](bool isAllowed) {
                if (page)
                    answer(*page, asker, feature, isAllowed);
            };
            const QList<Permission> permissions = permissionsOf(feature);
            handOver(receiver, handler,
                     isOfTheOrigin(feature)
                         ? sharedRequest(page, asker, permissions, give)
                         : std::make_shared<PermissionRequest>(asker, permissions, give));
        });
}

void allowNotifications(QWebEnginePage &page, const QUrl &asker)
{
    page.setFeaturePermission(asker, QWebEnginePage::Notifications,
                              QWebEnginePage::PermissionGrantedByUser);
}

void withdraw(QWebEnginePage &page, const QUrl &asker, Permission permission)
{
    if (permission == Permission::Notifications)
        page.setFeaturePermission(asker, QWebEnginePage::Notifications,
                                  QWebEnginePage::PermissionUnknown);
}
#endif

void forget(QWebEnginePage &page)
{
    SharedAnswers::forget(page);
}

}
