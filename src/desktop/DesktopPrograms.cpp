#include "DesktopPrograms.h"

#include "DesktopBus.h"
#include "Log.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDesktopServices>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace {

using DesktopPrograms::Failed;

/// Milliseconds that a file manager may take to start.
constexpr int longestStart = 10000;

/// The desktop's own opener tells by its status whether there was a program; it may live as long
/// as that does, and after us.
void runOpener(const QString &opener, const QString &path, const Failed &failed)
{
    auto *process = new QProcess;
    process->setStandardInputFile(QProcess::nullDevice());
    process->setStandardOutputFile(QProcess::nullDevice());
    process->setStandardErrorFile(QProcess::nullDevice());
    const auto end = [process, path, failed](bool isTaken) {
        process->deleteLater();
        if (isTaken)
            return;
        qCWarning(lcFiles) << "no program took" << path;
        failed();
    };
    QObject::connect(process, &QProcess::finished, process,
                     [end](int code, QProcess::ExitStatus status) {
                         end(status == QProcess::NormalExit && code == 0);
                     });
    QObject::connect(process, &QProcess::errorOccurred, process,
                     [end](QProcess::ProcessError error) {
                         if (error == QProcess::FailedToStart)
                             end(false);
                     });
    process->start(opener, {path}, QIODevice::NotOpen);
}

void showFolderOnly(const QString &file, const Failed &failed)
{
    DesktopPrograms::open(QFileInfo(file).absolutePath(), failed);
}

}

namespace DesktopPrograms {

void open(const QString &path, const Failed &failed)
{
    const QString opener = QStandardPaths::findExecutable(u"xdg-open"_s);
    if (!opener.isEmpty())
        runOpener(opener, path, failed);
    else if (!QDesktopServices::openUrl(QUrl::fromLocalFile(path)))
        failed();
}

void showInFolder(const QStringList &files, const Failed &failed)
{
    const QString first = files.value(0);
    if (!DesktopBus::isThere()) {
        showFolderOnly(first, failed);
        return;
    }
    QStringList addresses;
    for (const QString &file : files)
        addresses.append(QString::fromLatin1(QUrl::fromLocalFile(file).toEncoded()));
    QDBusMessage call = QDBusMessage::createMethodCall(
        u"org.freedesktop.FileManager1"_s, u"/org/freedesktop/FileManager1"_s,
        u"org.freedesktop.FileManager1"_s, u"ShowItems"_s);
    call << addresses << QString();
    auto *watcher = new QDBusPendingCallWatcher(DesktopBus::session().asyncCall(call, longestStart),
                                                QCoreApplication::instance());
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [watcher, first, failed] {
                         watcher->deleteLater();
                         if (const QDBusPendingReply<> reply = *watcher; reply.isError())
                             showFolderOnly(first, failed);
                     });
}

}
