// How long the test of a popup's address takes against a long list of patterns. Ends with 1 when a
// limit is passed.
#include "AppFolder.h"
#include "BlockedList.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <algorithm>
#include <cstdio>
#include <vector>

using namespace Qt::StringLiterals;

namespace {

constexpr int addressLength = 200;
constexpr int rounds = 21;

enum class Shape { Hosts, InnerStars, Classes };

QByteArray pattern(Shape shape, int number)
{
    const QByteArray digits = QByteArray::number(number);
    switch (shape) {
    case Shape::Hosts:
        return "*//ad" + digits + ".example/*";
    case Shape::InnerStars:
        return "http*//*.example/*banner*" + digits + "*";
    case Shape::Classes:
        break;
    }
    return "http://[a-z]*.site#.example/?" + digits + "*";
}

bool fill(Shape shape, int patterns)
{
    QFile file(AppFolder::appData(u"PopupURLs.txt"_s));
    if (!file.open(QIODevice::WriteOnly))
        return false;
    for (int i = 0; i < patterns; ++i)
        file.write(pattern(shape, i + 1000000) + "\r\n");
    return true;
}

QString address()
{
    const QString start = u"http://www.site7.example/banner/"_s;
    return start + QString(addressLength - start.size(), u'a');
}

/// Milliseconds, the middle of several rounds.
double measure()
{
    const QString url = address();
    std::vector<double> times;
    for (int round = 0; round < rounds; ++round) {
        bool cancel = false;
        QElapsedTimer timer;
        timer.start();
        const bool allowed = isPopupAllowed(url, cancel);
        times.push_back(static_cast<double>(timer.nsecsElapsed()) / 1e6);
        if (!allowed)
            return -1;
    }
    std::nth_element(times.begin(), times.begin() + rounds / 2, times.end());
    return times[rounds / 2];
}

}

int main(int argc, char **argv)
{
    const QCoreApplication app(argc, argv);
    const QTemporaryDir folder;
    AppFolder::setPath(folder.path());
    if (!QDir(folder.path()).mkpath(u"AppData"_s))
        return 2;
    const struct {
        int patterns;
        double limit;
    } sizes[] = {{1000, 0.3}, {100000, 20}};
    const struct {
        Shape shape;
        const char *name;
    } shapes[] = {
        {Shape::Hosts, "hosts"}, {Shape::InnerStars, "inner stars"}, {Shape::Classes, "classes"}};
    bool held = true;
    for (const auto &size : sizes) {
        for (const auto &shape : shapes) {
            if (!fill(shape.shape, size.patterns))
                return 2;
            QElapsedTimer timer;
            timer.start();
            loadBlockedList();
            const double loading = static_cast<double>(timer.nsecsElapsed()) / 1e6;
            const double time = measure();
            const bool ok = time >= 0 && time <= size.limit;
            std::printf(
                "%6d patterns (%-11s): test %8.4f ms, limit %5.1f ms: %s; loading %.1f ms\n",
                size.patterns, shape.name, time, size.limit, ok ? "ok" : "TOO SLOW", loading);
            held = held && ok;
        }
    }
    return held ? 0 : 1;
}
