// What one read of a value costs in a settings file of 100 kB, against reading the file and
// finding the line by its text. Measured with many sections and with a single long one; the worse
// ratio counts. Prints one line; exit status 1 over the limit.

#include "IniStore.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QTextStream>
#include <algorithm>
#include <functional>
#include <string_view>
#include <vector>

using namespace Qt::StringLiterals;

namespace {
constexpr double limit = 2.0;
constexpr int rounds = 400;
constexpr int readsInARound = 10;
constexpr int fileSize = 100'000;

// Lines as the program writes them; the value looked for is the last.
QByteArray settings(int linesInASection)
{
    QByteArray file;
    for (int line = 0; file.size() < fileSize; ++line) {
        const QByteArray number = QByteArray::number(line);
        if (line % linesInASection == 0)
            file += "[Section" + number + "]\r\n";
        file += "Item" + number + "=http://www.example.com/page" + number + ".html\r\n";
    }
    return file + "Wanted-Key=found\r\n";
}

// The least one could do: no rules, just the bytes of the line.
QString readPlainly(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return {};
    const QByteArray bytes = file.readAll();
    const std::string_view start = "\nWanted-Key=";
    const std::size_t line =
        std::string_view(bytes.constData(), std::size_t(bytes.size())).find(start);
    if (line == std::string_view::npos)
        return {};
    const auto value = static_cast<qsizetype>(line + start.size());
    return QString::fromUtf8(bytes.sliced(value, bytes.indexOf('\r', value) - value));
}

QString readByTheStore(const QString &path, const QString &section)
{
    return readIni(section, u"Wanted-Key"_s, QString(), path);
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

struct Result {
    double plain = 0.0;
    double store = 0.0;
    double ratio() const { return store / plain; }
};

// In a file of sections of that many lines.
Result measure(const QString &path, int linesInASection)
{
    const QByteArray bytes = settings(linesInASection);
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write the settings file");
    file.close();
    const qsizetype last = bytes.lastIndexOf('[') + 1;
    const QString section =
        QString::fromLatin1(bytes.sliced(last, bytes.indexOf(']', last) - last));

    const auto plain = [&path] { return readPlainly(path); };
    const auto store = [&path, &section] { return readByTheStore(path, section); };
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
    return {median(plainTimes), median(storeTimes)};
}
}

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    const QString path = folder.filePath(u"Settings.ini"_s);
    const Result sections = measure(path, 50);
    const Result oneSection = measure(path, fileSize);
    const double worse = std::max(sections.ratio(), oneSection.ratio());
    const auto number = [](double value, int digits) {
        return QString::number(value, 'f', digits);
    };
    QTextStream(stdout) << "ini: ratio " << number(worse, 2) << " (limit " << number(limit, 1)
                        << ") 100 kB; many sections: one read " << number(sections.store, 1)
                        << " us, plain " << number(sections.plain, 1)
                        << " us; one section: " << number(oneSection.store, 1) << " us, plain "
                        << number(oneSection.plain, 1) << " us\n";
    return worse <= limit ? 0 : 1;
}
