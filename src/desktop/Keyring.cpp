#include "Keyring.h"

#include "DesktopBus.h"
#include "Log.h"
#include "ProgramInfo.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QLibrary>
#include <algorithm>
#include <qt6keychain/keychain.h>

using namespace Qt::StringLiterals;

namespace {
/// Milliseconds that the session may take to say who is there.
constexpr int longestLook = 500;

/// The services that are spoken to by the library itself, and the one that it loads another for.
constexpr QLatin1StringView wallets[] = {"org.kde.kwalletd5"_L1, "org.kde.kwalletd6"_L1};
constexpr auto secrets = "org.freedesktop.secrets"_L1;

bool isAmong(const QStringList &names)
{
    static const bool speaksToSecrets = QLibrary(u"secret-1"_s, 0).load();
    return (speaksToSecrets && names.contains(secrets))
        || std::any_of(std::begin(wallets), std::end(wallets),
                       [&names](QLatin1StringView each) { return names.contains(each); });
}

/// Never in a file of its own where there is no keyring.
void start(QKeychain::Job *job, const QString &key)
{
    job->setKey(key);
    job->setInsecureFallback(false);
    QObject::connect(job, &QKeychain::Job::finished, job, [](const QKeychain::Job *done) {
        if (done->error() != QKeychain::NoError && done->error() != QKeychain::EntryNotFound)
            qCWarning(lcFiles) << "keyring:" << done->errorString();
    });
    job->start();
}
}

namespace Keyring {

void look(QObject *receiver, const std::function<void(bool isThere)> &told)
{
    if (!DesktopBus::isThere()) {
        told(false);
        return;
    }
    const QDBusMessage call =
        QDBusMessage::createMethodCall(u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s,
                                       u"org.freedesktop.DBus"_s, u"ListNames"_s);
    auto *asked =
        new QDBusPendingCallWatcher(DesktopBus::session().asyncCall(call, longestLook), receiver);
    QObject::connect(asked, &QDBusPendingCallWatcher::finished, receiver, [asked, told] {
        asked->deleteLater();
        const QDBusPendingReply<QStringList> reply = *asked;
        told(!reply.isError() && isAmong(reply.value()));
    });
}

void read(const QString &key, QObject *receiver,
          const std::function<void(const QString &text)> &done)
{
    auto *job = new QKeychain::ReadPasswordJob(ProgramInfo::title());
    QObject::connect(job, &QKeychain::Job::finished, receiver, [job, done] {
        if (job->error() == QKeychain::NoError)
            done(job->textData());
    });
    start(job, key);
}

void write(const QString &key, const QString &text, QObject *receiver,
           const std::function<void()> &failed)
{
    auto *job = new QKeychain::WritePasswordJob(ProgramInfo::title());
    job->setTextData(text);
    QObject::connect(job, &QKeychain::Job::finished, receiver, [job, failed] {
        if (job->error() != QKeychain::NoError)
            failed();
    });
    start(job, key);
}

void remove(const QString &key)
{
    start(new QKeychain::DeletePasswordJob(ProgramInfo::title()), key);
}

}
