// How long the test of a popup's address takes against a long list of patterns. Ends with 1 when a
// limit is passed.
#include "AppFolder.h"
#include "BlockedList.h"
#include "Report.h"
#include "Taken.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

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

/// Milliseconds; -1 when the popup is not allowed.
double measure()
{
    const QString url = address();
    QList<double> times;
    for (int round = 0; round < rounds; ++round) {
        bool cancel = false;
        bool allowed = false;
        times.append(takenBy([&] { allowed = isPopupAllowed(url, cancel); }).wall);
        if (!allowed)
            return -1;
    }
    return median(times);
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
        QString name;
    } shapes[] = {{Shape::Hosts, u"hosts"_s},
                  {Shape::InnerStars, u"inner stars"_s},
                  {Shape::Classes, u"classes"_s}};
    Report report;
    for (const auto &size : sizes) {
        for (const auto &shape : shapes) {
            if (!fill(shape.shape, size.patterns))
                return 2;
            const Taken loading = takenBy(loadBlockedList);
            const QString what = u"%1 patterns (%2)"_s.arg(size.patterns).arg(shape.name);
            const double time = measure();
            if (time < 0)
                report.missing(what + u": the popup was not allowed"_s);
            else
                report.atMost(what, time, size.limit, u"ms"_s);
            report.note(u"      loading %1 ms"_s.arg(loading.wall, 0, 'f', 1));
        }
    }
    return report.failed() ? 1 : 0;
}
