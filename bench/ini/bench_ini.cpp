// What one read of a value costs in a settings file of 100 kB, against reading the file and
// finding the line by its text. Measured with many sections and with a single long one; the worse
// ratio counts. Exit status 1 over the limit.

#include "IniStore.h"
#include "Report.h"
#include "Taken.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <functional>
#include <string_view>

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
    QList<double> plainTimes;
    QList<double> storeTimes;
    for (int round = 0; round < rounds; ++round) {
        // Each goes first in half of the rounds, so that neither always finds warm caches.
        const bool plainFirst = round % 2 == 0;
        if (plainFirst)
            plainTimes.append(timeOf(plain));
        storeTimes.append(timeOf(store));
        if (!plainFirst)
            plainTimes.append(timeOf(plain));
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
    Report report;
    report.note(
        u"100 kB; many sections: one read %1 us, plain %2 us; one section: %3 us, plain %4 us"_s
            .arg(sections.store, 0, 'f', 1)
            .arg(sections.plain, 0, 'f', 1)
            .arg(oneSection.store, 0, 'f', 1)
            .arg(oneSection.plain, 0, 'f', 1));
    report.atMost(u"one read against the plain one"_s,
                  std::max(sections.ratio(), oneSection.ratio()), limit, u"times"_s);
    return report.failed() ? 1 : 0;
}
