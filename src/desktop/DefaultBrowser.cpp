#include "DefaultBrowser.h"

#include "Log.h"
#include "ProgramInfo.h"

#include <QObject>
#include <QProcess>
#include <QStandardPaths>
#include <QTimer>

using namespace Qt::StringLiterals;

namespace {
/// Milliseconds; the tool asks others in turn.
constexpr int longest = 10'000;

QString entry()
{
    return ProgramInfo::desktopEntry() + ".desktop"_L1;
}

bool isInstalled()
{
    return !QStandardPaths::locate(QStandardPaths::ApplicationsLocation, entry()).isEmpty();
}

/// Runs the tool; `done` has what it printed, and nothing where it failed.
void run(const QStringList &arguments, QObject *receiver,
         const std::function<void(const std::optional<QByteArray> &printed)> &done)
{
    auto *tool = new QProcess(receiver);
    tool->setStandardErrorFile(QProcess::nullDevice());
    const auto end = [tool, receiver, done](const std::optional<QByteArray> &printed) {
        tool->disconnect(receiver);
        tool->deleteLater();
        done(printed);
    };
    QObject::connect(tool, &QProcess::finished, receiver, [tool, end](int code) {
        if (tool->exitStatus() == QProcess::NormalExit && code == 0)
            end(tool->readAllStandardOutput().trimmed());
        else
            end({});
    });
    QObject::connect(tool, &QProcess::errorOccurred, receiver, [end](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart)
            end({});
    });
    QTimer::singleShot(longest, tool, &QProcess::kill);
    tool->start(u"xdg-settings"_s, arguments);
}
}

namespace DefaultBrowser {

void find(QObject *receiver, const std::function<void(Is)> &found)
{
    if (!isInstalled()) {
        QTimer::singleShot(0, receiver, [found] { found(Is::Unknown); });
        return;
    }
    run({u"check"_s, u"default-web-browser"_s, entry()}, receiver,
        [found](const std::optional<QByteArray> &printed) {
            if (!printed)
                found(Is::Unknown);
            else
                found(*printed == "yes" ? Is::Orvane : Is::Another);
        });
}

void make(QObject *receiver, const std::function<void(bool)> &done)
{
    run({u"set"_s, u"default-web-browser"_s, entry()}, receiver,
        [done](const std::optional<QByteArray> &printed) {
            if (!printed)
                qCWarning(lcFiles) << "the desktop did not take this program for its browser";
            done(printed.has_value());
        });
}

}
