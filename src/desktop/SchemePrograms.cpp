#include "SchemePrograms.h"

#include "Log.h"
#include "ProgramInfo.h"

#include <QCoreApplication>
#include <QPointer>
#include <QThreadPool>
#include <QUrl>
#include <memory>

// The library has members of that name.
#undef signals
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>

using namespace Qt::StringLiterals;

namespace {
using Programs = std::unique_ptr<GAppInfo, decltype(&g_object_unref)>;

Programs held(GAppInfo *program)
{
    return {program, &g_object_unref};
}

void tell(const QPointer<QObject> &receiver, const std::function<void()> &what)
{
    QMetaObject::invokeMethod(
        qApp,
        [receiver, what] {
            if (receiver)
                what();
        },
        Qt::QueuedConnection);
}

std::optional<SchemeProgram> lookUp(const QString &scheme)
{
    const Programs program =
        held(g_app_info_get_default_for_uri_scheme(scheme.toUtf8().constData()));
    if (!program || !g_app_info_get_id(program.get()))
        return {};
    const SchemeProgram found{
        QString::fromUtf8(g_app_info_get_id(program.get())),
        QString::fromUtf8(g_app_info_get_display_name(program.get())).simplified()};
    // It would hand the address back to us.
    if (found.id == ProgramInfo::desktopEntry() + ".desktop"_L1)
        return {};
    return found;
}

bool run(const QString &id, const QByteArray &address)
{
    const Programs program =
        held(reinterpret_cast<GAppInfo *>(g_desktop_app_info_new(id.toUtf8().constData())));
    if (!program)
        return false;
    GList list{const_cast<char *>(address.constData()), nullptr, nullptr};
    GError *error = nullptr;
    if (g_app_info_launch_uris(program.get(), &list, nullptr, &error))
        return true;
    qCWarning(lcFiles) << "cannot start" << id << (error ? error->message : "");
    g_clear_error(&error);
    return false;
}
}

namespace SchemePrograms {

void find(const QString &scheme, QObject *receiver,
          const std::function<void(const std::optional<SchemeProgram> &program)> &found)
{
    QThreadPool::globalInstance()->start([scheme, receiver = QPointer(receiver), found] {
        tell(receiver, [found, program = lookUp(scheme)] { found(program); });
    });
}

void start(const SchemeProgram &program, const QUrl &address, QObject *receiver,
           const std::function<void()> &failed)
{
    QThreadPool::globalInstance()->start(
        [id = program.id, bytes = address.toEncoded(), receiver = QPointer(receiver), failed] {
            if (!run(id, bytes))
                tell(receiver, failed);
        });
}

}
