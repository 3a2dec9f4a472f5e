// Start-up time and memory of the program against a bare view, in turn.
#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>

#include "Measurement.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int rounds = 9;
constexpr int manyLinks = 1000;
constexpr double ratioLimit = 1.10;
constexpr double defaultRatioLimit = 0.65;

struct Series {
    QList<double> times;
    QList<double> memories;

    void add(const Start &start)
    {
        times.append(start.milliseconds);
        memories.append(start.megabytes);
    }
};

double median(QList<double> values)
{
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

/// A folder of the program's own with the given settings; the built one stays as it is.
QString makeApplicationFolder(const QTemporaryDir &place, const QByteArray &settings)
{
    const QString built = QString::fromLocal8Bit(ORVANE_FOLDER);
    QDir().mkpath(place.filePath(u"AppData"_s));
    QFile::copy(built + "/orvane"_L1, place.filePath(u"orvane"_s));
    const QDir appData(built + "/AppData"_L1);
    for (const QString &name : appData.entryList(QDir::Files))
        QFile::copy(appData.filePath(name), place.filePath("AppData/"_L1 + name));
    QFile file(place.filePath(u"AppData/Settings.ini"_s));
    QFile::remove(file.fileName());
    if (!file.open(QIODevice::WriteOnly) || file.write(settings) < 0)
        qFatal("no application folder");
    return place.filePath(u"orvane"_s);
}

bool report(const char *what, double ratio, double limit)
{
    const bool kept = ratio <= limit;
    std::printf("startup: %s ratio %.3f (limit %.2f)%s\n", what, ratio, limit, kept ? "" : " OVER");
    return kept;
}

}

int main(int argc, char **argv)
{
    QCoreApplication app(argc, argv);
    const QTemporaryDir quietPlace;
    const QTemporaryDir splashPlace;
    const QString orvane = makeApplicationFolder(
        quietPlace, "[Options]\r\nShow-Splash=0\r\n[Settings]\r\nAskOnExit=0\r\n");
    const QString withSplash = makeApplicationFolder(splashPlace, "[Settings]\r\nAskOnExit=0\r\n");
    const QString bare = QString::fromLocal8Bit(BARE_VIEW);
    // The backend the program picks by itself where there is no graphics device.
    const bool software = QDir(u"/dev/dri"_s).entryList({u"renderD*"_s}, QDir::System).isEmpty();
    const QStringList picked =
        software ? QStringList{u"QT_QUICK_BACKEND=software"_s} : QStringList();

    Measurement measurement;
    measurement.run(bare, picked);
    measurement.run(orvane, {});
    Series same, ours, linked, splash, byDefault;
    for (int round = 0; round < rounds; ++round) {
        same.add(measurement.run(bare, picked));
        ours.add(measurement.run(orvane, {}));
        linked.add(measurement.run(orvane, {}, manyLinks));
        byDefault.add(measurement.run(bare, {}));
        splash.add(measurement.run(withSplash, {}));
    }

    std::printf("startup: medians of %d rounds; bare view %.0f ms %.0f MB, Orvane %.0f ms %.0f MB, "
                "with %d links %.0f ms %.0f MB, with splash %.0f ms %.0f MB, "
                "bare view at its defaults %.0f ms\n",
                rounds, median(same.times), median(same.memories), median(ours.times),
                median(ours.memories), manyLinks, median(linked.times), median(linked.memories),
                median(splash.times), median(splash.memories), median(byDefault.times));
    bool kept = report("time", median(ours.times) / median(same.times), ratioLimit);
    kept &= report("time with links", median(linked.times) / median(same.times), ratioLimit);
    kept &= report("memory", median(ours.memories) / median(same.memories), ratioLimit);
    if (software)
        kept &= report("time against the defaults", median(ours.times) / median(byDefault.times),
                       defaultRatioLimit);
    return kept ? 0 : 1;
}
