#include "StartSound.h"

#include "AppFolder.h"
#include "Log.h"
#include "ProgramInfo.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTimer>
#include <chrono>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// Long enough for the first page to be on its way, short enough to belong to the splash.
constexpr auto delay = 400ms;

/// In a movable folder beside the program, else where only programs start it.
QString playerProgram()
{
#ifdef Q_OS_WIN
    return AppFolder::program() + "/orvane-sound.exe"_L1;
#else
    const QString beside = AppFolder::program() + "/orvane-sound"_L1;
    const QString installed =
        AppFolder::program() + u'/' + ProgramInfo::helperFolder() + "/orvane-sound"_L1;
    return QFileInfo(beside).isFile() ? beside : QDir::cleanPath(installed);
#endif
}

// The sound libraries live in a program of their own. Merely linking them costs this one 3 ms and
// 1.5 MB at each start, and a sound server that does not answer would hold the interface.
void startPlayer()
{
    const QString sound = AppFolder::appData(u"Drums.wav"_s);
    if (!QFileInfo(sound).isFile()) {
        qCWarning(lcStart) << "no start sound at" << sound;
        return;
    }
    QProcess player;
    player.setProgram(playerProgram());
    player.setArguments({sound});
    player.setStandardOutputFile(QProcess::nullDevice());
    // A machine without sound is an ordinary one: the sound libraries' complaints are no news. Who
    // wants to read them starts the player by hand.
    player.setStandardErrorFile(QProcess::nullDevice());
    if (!player.startDetached())
        qCWarning(lcStart) << "no start sound:" << player.errorString();
}

}

void playStartSound()
{
    QTimer::singleShot(delay, Qt::CoarseTimer, qApp, startPlayer);
}
