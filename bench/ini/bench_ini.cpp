// What one read of a value costs in a settings file of 100 kB, against reading the file and
// finding the line by its text. Prints one line; exit status 1 over the limit.

#include "modINI.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>
#include <algorithm>
#include <functional>
#include <vector>

using namespace Qt::StringLiterals;

namespace {
constexpr double limit = 2.0;
constexpr int rounds = 400;
constexpr int readsInARound = 10;
constexpr int fileSize = 100'000;
constexpr int linesInASection = 50;

// Sections of settings as the program writes them; the value looked for is the last line.
QByteArray settings()
{
    QByteArray file;
    for (int line = 0; file.size() < fileSize; ++line) {
        const QByteArray number = QByteArray::number(line);
        if (line % linesInASection == 0)
            file += "[Section" + number + "]\r\n";
        file += "Item" + number + "=http://www.example.com/page" + number + ".html\r\n";
    }
    return file + "[Wanted]\r\nWanted-Key=found\r\n";
}

// The least one could do: no rules, just the bytes of the line.
QString readPlainly(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.readAll();
    const QByteArray start = "\nWanted-Key="_ba;
    const qsizetype line = bytes.indexOf(start);
    if (line < 0)
        return {};
    const qsizetype value = line + start.size();
    return QString::fromUtf8(bytes.sliced(value, bytes.indexOf('\r', value) - value));
}

QString readByTheStore(const QString &path)
{
    return ReadINI(u"Wanted"_s, u"Wanted-Key"_s, QString(), path);
}

// Microseconds of one read.
double timeOf(const std::function<QString()> &read)
{
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < readsInARound; ++i) {
        if (read() != "found"_L1)
            qFatal("the value was not found");
    }
    return double(timer.nsecsElapsed()) / (1000.0 * readsInARound);
}

double median(std::vector<double> times)
{
    const auto middle = times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2);
    std::nth_element(times.begin(), middle, times.end());
    return *middle;
}
}

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"Settings.ini"_s);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(settings()) < fileSize)
        qFatal("cannot write the settings file");
    file.close();

    const auto plain = [&path] { return readPlainly(path); };
    const auto store = [&path] { return readByTheStore(path); };
    std::vector<double> plainTimes;
    std::vector<double> storeTimes;
    for (int round = 0; round < rounds; ++round) {
        // Each goes first in half of the rounds, so that neither always finds warm caches.
        const bool plainFirst = round % 2 == 0;
        if (plainFirst)
            plainTimes.push_back(timeOf(plain));
        storeTimes.push_back(timeOf(store));
        if (!plainFirst)
            plainTimes.push_back(timeOf(plain));
    }
    const double ratio = median(storeTimes) / median(plainTimes);
    QTextStream(stdout)
        << u"ini: ratio %1 (limit %2) one read %3 us, plain %4 us, 100 kB, %5 rounds\n"_s
               .arg(ratio, 0, 'f', 2)
               .arg(limit, 0, 'f', 1)
               .arg(median(storeTimes), 0, 'f', 1)
               .arg(median(plainTimes), 0, 'f', 1)
               .arg(rounds);
    return ratio <= limit ? 0 : 1;
}
