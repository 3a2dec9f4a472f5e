// Plays one wave file and ends. A program of its own, so that the browser neither loads the sound
// libraries nor waits for a sound server.

#include <QAudioDevice>
#include <QCoreApplication>
#include <QMediaDevices>
#include <QSoundEffect>
#include <QTimer>
#include <QUrl>
#include <chrono>

using namespace std::chrono_literals;

namespace {
enum ExitStatus { Played = 0, WrongUse = 1, NoDevice = 2, BrokenFile = 3 };

// A server that takes the sound and never plays it must not leave this program behind.
constexpr auto longest = 15s;
}

int main(int argc, char *argv[])
{
    const QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2) {
        qWarning("usage: orvane-sound FILE.wav");
        return WrongUse;
    }
    QTimer::singleShot(longest, &app, [] { QCoreApplication::exit(NoDevice); });
    if (QMediaDevices::defaultAudioOutput().isNull()) {
        qWarning("no sound device");
        return NoDevice;
    }

    QSoundEffect effect;
    QObject::connect(&effect, &QSoundEffect::statusChanged, &app, [&effect] {
        if (effect.status() == QSoundEffect::Error)
            QCoreApplication::exit(BrokenFile);
    });
    QObject::connect(&effect, &QSoundEffect::playingChanged, &app, [&effect] {
        if (!effect.isPlaying())
            QCoreApplication::exit(Played);
    });
    effect.setSource(QUrl::fromLocalFile(arguments.at(1)));
    effect.play();
    return QCoreApplication::exec();
}
