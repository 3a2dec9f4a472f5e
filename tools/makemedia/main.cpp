// Makes the pictures and sounds that ship in AppData.

#include "Drums.h"
#include "Logo.h"

#include <QDir>
#include <QFile>
#include <QGuiApplication>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication app(argc, argv);
    const QStringList arguments = QGuiApplication::arguments();
    if (arguments.size() != 3) {
        qWarning("usage: makemedia ICON.svg FOLDER");
        return 1;
    }
    const QDir folder(arguments.at(2));
    QFile drums(folder.filePath(u"Drums.wav"_s));
    const QByteArray wave = drumsWave();
    const bool done = drums.open(QIODevice::WriteOnly) && drums.write(wave) == wave.size()
        && logo(arguments.at(1)).save(folder.filePath(u"Logo.jpg"_s), "JPG", 92);
    if (!done)
        qWarning("makemedia: cannot write to %s", qPrintable(folder.path()));
    return done ? 0 : 1;
}
